#pragma once

#include "com/Object.h"
#include "host/Folders.h"

#include <OrvDBFaces.h>
#include <OrvHost.h>

namespace orv {

/// Tells where the controller databases lie.
class DatabaseLocation final : public com::DualObject<DatabaseLocation, IDatabaseLocation> {
  public:
    static REFCLSID ClassId() noexcept { return __uuidof(::DatabaseLocation); }

    HRESULT STDMETHODCALLTYPE Reserved01() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved02() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Path(BSTR* value) override { return Get(value, DatabaseFolder); }
};

} // namespace orv
