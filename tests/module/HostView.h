#pragma once

#include "com/Object.h"

#include <OrvDBFaces.h>

#include <functional>

namespace modules {

/// A host's view that keeps what it was asked for: `shown` counts the call that
/// an application object makes, `others` every other slot.
class View final : public com::DualObject<View, IHostView> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }

    int shown = 0;
    int others = 0;
    HRESULT result = S_OK;
    /// Called while the object waits for the view.
    std::function<void()> whileShown;

    STDMETHODIMP Reserved01() override { return Other(); }
    STDMETHODIMP Reserved02() override { return Other(); }
    STDMETHODIMP Reserved03() override { return Other(); }
    STDMETHODIMP Reserved04() override { return Other(); }
    STDMETHODIMP Reserved05() override { return Other(); }
    STDMETHODIMP Reserved06() override { return Other(); }
    STDMETHODIMP Reserved07() override { return Other(); }
    STDMETHODIMP Reserved08() override { return Other(); }
    STDMETHODIMP Reserved09() override { return Other(); }
    STDMETHODIMP Reserved10() override { return Other(); }
    STDMETHODIMP Reserved11() override { return Other(); }
    STDMETHODIMP Reserved12() override { return Other(); }
    STDMETHODIMP Reserved13() override { return Other(); }
    STDMETHODIMP Reserved14() override { return Other(); }
    STDMETHODIMP Reserved15() override { return Other(); }
    STDMETHODIMP Reserved16() override { return Other(); }
    STDMETHODIMP Reserved17() override { return Other(); }
    STDMETHODIMP Reserved18() override { return Other(); }
    STDMETHODIMP Reserved19() override { return Other(); }
    STDMETHODIMP Reserved20() override { return Other(); }
    STDMETHODIMP Reserved21() override { return Other(); }
    STDMETHODIMP Reserved22() override { return Other(); }
    STDMETHODIMP Reserved23() override { return Other(); }
    STDMETHODIMP Reserved24() override { return Other(); }
    STDMETHODIMP Reserved25() override { return Other(); }
    STDMETHODIMP Reserved26() override { return Other(); }
    STDMETHODIMP Reserved27() override { return Other(); }
    STDMETHODIMP Reserved28() override { return Other(); }
    STDMETHODIMP Reserved29() override { return Other(); }
    STDMETHODIMP Reserved30() override { return Other(); }
    STDMETHODIMP Reserved31() override { return Other(); }
    STDMETHODIMP Reserved32() override { return Other(); }
    STDMETHODIMP Reserved33() override { return Other(); }
    STDMETHODIMP Reserved34() override { return Other(); }
    STDMETHODIMP Reserved35() override { return Other(); }
    STDMETHODIMP Reserved36() override { return Other(); }
    STDMETHODIMP Reserved37() override { return Other(); }
    STDMETHODIMP Reserved38() override { return Other(); }
    STDMETHODIMP Reserved39() override { return Other(); }
    STDMETHODIMP Reserved40() override { return Other(); }
    STDMETHODIMP Reserved41() override { return Other(); }
    STDMETHODIMP Reserved42() override { return Other(); }
    STDMETHODIMP Reserved43() override { return Other(); }
    STDMETHODIMP Reserved44() override { return Other(); }
    STDMETHODIMP Reserved45() override { return Other(); }
    STDMETHODIMP Reserved46() override { return Other(); }
    STDMETHODIMP Reserved47() override { return Other(); }
    STDMETHODIMP Reserved48() override { return Other(); }
    STDMETHODIMP Reserved49() override { return Other(); }
    STDMETHODIMP Reserved50() override { return Other(); }
    STDMETHODIMP ShowObject() override {
        ++shown;
        if (whileShown) {
            whileShown();
        }
        return result;
    }

  private:
    HRESULT Other() {
        ++others;
        return S_OK;
    }
};

/// A host's document: the parent of an application object.
class Sheet final : public com::DualObject<Sheet, IHostDocument> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }

    com::Ref<IDispatch> view;
    HRESULT result = S_OK;

    STDMETHODIMP get_View(IDispatch** value) override {
        *value = SUCCEEDED(result) ? com::Ref<IDispatch>(view).Detach() : nullptr;
        return result;
    }
};

} // namespace modules
