#pragma once

#include "com/Dll.h"
#include "com/Ref.h"

#include <windows.h>

#include <unknwn.h>

namespace com {

/// An object with one interface that is not dual: identity, count, live count.
/// Made with a count of 1.
template <class I>
class Counted : public I {
  public:
    Counted() = default;
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        if (out == nullptr) {
            return E_POINTER;
        }
        const bool known = iid == IID_IUnknown || iid == __uuidof(I);
        *out = known ? static_cast<I*>(this) : nullptr;
        if (!known) {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        CountIsWritten();
        if (left == 0) {
            delete this;
        }
        return left;
    }

  protected:
    virtual ~Counted() = default;

  private:
    ULONG references_ = 1;
    LiveCount live_;
};

} // namespace com
