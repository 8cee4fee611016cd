#pragma once

#include "com/Object.h"

#include <OrvDBFaces.h>
#include <OrvHost.h>

#include <string>

namespace orv {

/// The database compiler: checks an object's export document and answers its
/// image and the sizes that it takes in the controller.
class CompilersInterop final : public com::DualObject<CompilersInterop, ICompilersInterop> {
  public:
    static REFCLSID ClassId() noexcept { return __uuidof(::CompilersInterop); }

    /// errDatabaseFolder for a text that names no folder.
    HRESULT STDMETHODCALLTYPE SetDBPath(BSTR path) override;
    /// errNoDatabasePath before SetDBPath; errNotAnExportDocument, with what is
    /// wrong and where. A failure leaves all three arguments as they were.
    HRESULT STDMETHODCALLTYPE CompileTamObject(VARIANT* document, VARIANT* cdbSize,
                                               VARIANT* ddbSize) override;

  private:
    std::wstring databasePath_;
};

} // namespace orv
