#pragma once

#include "com/Object.h"
#include "core/KeyedCollection.h"

#include <OrvDBFaces.h>
#include <OrvHost.h>

#include <string>

namespace orv {

/// One channel of a device: what it measures or drives, and the setups that
/// may be chosen for it ("value,text;" each).
class DeviceChannel final : public com::DualObject<DeviceChannel, IChannel, IChannelSetup> {
  public:
    DeviceChannel(BSTR key, BSTR value, BSTR setup)
        : key_(com::View(key)), value_(com::View(value)), setup_(com::View(setup)) {}
    static REFCLSID ClassId() noexcept { return __uuidof(::DeviceChannel); }

    // IChannel
    HRESULT STDMETHODCALLTYPE get_ChannelValue(BSTR* value) override { return Answer(value, value_); }
    HRESULT STDMETHODCALLTYPE get_SetupText(BSTR* value) override { return Answer(value, setup_); }

    // IChannelSetup
    HRESULT STDMETHODCALLTYPE get_key(BSTR* value) override { return Answer(value, key_); }
    HRESULT STDMETHODCALLTYPE put_ChannelValue(BSTR value) override { return Store(value_, value); }
    HRESULT STDMETHODCALLTYPE put_SetupText(BSTR value) override { return Store(setup_, value); }

  private:
    std::wstring key_;
    std::wstring value_;
    std::wstring setup_;
};

/// The device of a module: its key, its channels under their internal object
/// keys, and the module object on the sheet. It keeps the module; the module
/// knows its device by key only, so nothing goes round in a circle.
class Device final : public com::DualObject<Device, IDevice, IDeviceSetup> {
  public:
    static REFCLSID ClassId() noexcept { return __uuidof(::Device); }

    // IDevice
    HRESULT STDMETHODCALLTYPE get_DeviceKey(BSTR* value) override { return Answer(value, key_); }
    /// Empty for a key without a channel: not every object of a module has one.
    HRESULT STDMETHODCALLTYPE Channel(BSTR internalObjectKey, IChannel** value) override {
        return Get(value, [&] {
            const com::Ref<DeviceChannel>* found = channels_.FindKey(com::View(internalObjectKey));
            return found != nullptr ? *found : com::Ref<DeviceChannel>();
        });
    }
    HRESULT STDMETHODCALLTYPE Container(ITamInternalAppObject* internalObject, IDispatch** value) override {
        return Get(value, [&] {
            com::CheckSet(internalObject);
            return container_;
        });
    }

    // IDeviceSetup
    HRESULT STDMETHODCALLTYPE put_DeviceKey(BSTR value) override { return Store(key_, value); }
    HRESULT STDMETHODCALLTYPE AddChannel(BSTR internalObjectKey, BSTR value, BSTR setup,
                                         IChannel** channel) override {
        return Get(channel, [&] {
            auto added = DeviceChannel::Make(internalObjectKey, value, setup);
            channels_.Add(com::View(internalObjectKey), added);
            return added;
        });
    }
    HRESULT STDMETHODCALLTYPE ClearChannels() override {
        return Do([&] { channels_.Clear(); });
    }
    HRESULT STDMETHODCALLTYPE get_ChannelCount(long* value) override {
        return Get(value, [&] { return static_cast<long>(channels_.Count()); });
    }
    HRESULT STDMETHODCALLTYPE get_ChannelAt(long position, IChannel** value) override {
        return Get(value, [&] {
            const com::Ref<DeviceChannel>* found = channels_.FindPosition(position);
            if (found == nullptr) {
                throw tam::RunTimeError(tam::RunTime::Subscript);
            }
            return *found;
        });
    }
    HRESULT STDMETHODCALLTYPE SetContainer(IDispatch* container) override {
        return Do([&] { container_ = com::Ref<IDispatch>(container); });
    }

  private:
    std::wstring key_;
    tam::KeyedCollection<com::Ref<DeviceChannel>> channels_;
    com::Ref<IDispatch> container_;
};

} // namespace orv
