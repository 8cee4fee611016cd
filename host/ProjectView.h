#pragma once

#include "com/Object.h"

#include <OrvDBFaces.h>
#include <OrvHost.h>

namespace orv {

/// The view of a project. It has no window: it counts what it was asked for.
class ProjectView final : public com::DualObject<ProjectView, IHostView, IShowCounter> {
  public:
    static REFCLSID ClassId() noexcept { return __uuidof(::ProjectView); }

    // IHostView: the slots before the one that application objects call
    HRESULT STDMETHODCALLTYPE Reserved01() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved02() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved03() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved04() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved05() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved06() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved07() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved08() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved09() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved10() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved11() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved12() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved13() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved14() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved15() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved16() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved17() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved18() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved19() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved20() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved21() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved22() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved23() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved24() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved25() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved26() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved27() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved28() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved29() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved30() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved31() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved32() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved33() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved34() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved35() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved36() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved37() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved38() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved39() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved40() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved41() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved42() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved43() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved44() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved45() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved46() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved47() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved48() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved49() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved50() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ShowObject() override {
        ++shows_;
        return S_OK;
    }

    // IShowCounter
    HRESULT STDMETHODCALLTYPE get_ShowCount(long* value) override { return Answer(value, shows_); }

  private:
    long shows_ = 0;
};

} // namespace orv
