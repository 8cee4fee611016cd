#pragma once

#include "com/Conversion.h"
#include "com/Object.h"

#include <OrvDBFaces.h>

#include <string>
#include <utility>

namespace bench {

/// A channel object of a device, as far as a module asks it: its two keys.
class InternalItem final : public com::DualObject<InternalItem, ITamInternalAppObject> {
  public:
    InternalItem(std::wstring deviceKey, std::wstring objectKey)
        : deviceKey_(std::move(deviceKey)), objectKey_(std::move(objectKey)) {}

    /// It is of no class that could be created.
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }

    HRESULT STDMETHODCALLTYPE get_TamDeviceKey(BSTR* value) override { return Answer(value, deviceKey_); }
    HRESULT STDMETHODCALLTYPE get_TamInternalObjectKey(BSTR* value) override {
        return Answer(value, objectKey_);
    }
    HRESULT STDMETHODCALLTYPE get_TamObjectContainer(IDispatch** value) override { return None(value); }
    HRESULT STDMETHODCALLTYPE get_TempTamDeviceKey(BSTR* value) override {
        return Answer(value, temporaryDeviceKey_);
    }
    HRESULT STDMETHODCALLTYPE put_TempTamDeviceKey(BSTR value) override {
        return Store(temporaryDeviceKey_, value);
    }
    HRESULT STDMETHODCALLTYPE get_TempTamInternalObjectKey(BSTR* value) override {
        return Answer(value, temporaryObjectKey_);
    }
    HRESULT STDMETHODCALLTYPE put_TempTamInternalObjectKey(BSTR value) override {
        return Store(temporaryObjectKey_, value);
    }
    HRESULT STDMETHODCALLTYPE get_TamDevice(IDispatch** value) override { return None(value); }
    HRESULT STDMETHODCALLTYPE get_Status(long* value) override { return Answer(value, status_); }
    HRESULT STDMETHODCALLTYPE put_Status(long value) override {
        status_ = value;
        return S_OK;
    }

  private:
    HRESULT None(IDispatch** value) noexcept { return Answer(value, com::Ref<IDispatch>()); }

    std::wstring deviceKey_;
    std::wstring objectKey_;
    std::wstring temporaryDeviceKey_;
    std::wstring temporaryObjectKey_;
    long status_ = 0;
};

} // namespace bench
