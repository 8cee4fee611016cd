#include "com/Dom.h"
#include "tests/host/GenericObjects.h"
#include "tests/support/Errors.h"

#include "com/LateBound.h"

#include <initializer_list>
#include <string>

namespace hosttest {

namespace {

/// The object of a channel, as a device is asked about it.
class ChannelObject final : public com::DualObject<ChannelObject, ITamInternalAppObject> {
  public:
    static REFCLSID ClassId() noexcept { return CLSID_NULL; }

    STDMETHODIMP get_TamDeviceKey(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_TamInternalObjectKey(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_TamObjectContainer(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP get_TempTamDeviceKey(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_TempTamDeviceKey(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_TempTamInternalObjectKey(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_TempTamInternalObjectKey(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_TamDevice(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Status(long*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Status(long) override { return E_NOTIMPL; }
};

class DeviceTest : public testing::Test {
  protected:
    com::Ref<IChannel> Add(const wchar_t* key, const wchar_t* value, const wchar_t* setup) {
        com::Ref<IChannel> channel;
        EXPECT_EQ(S_OK, setup_->AddChannel(com::Bstr(key).Get(), com::Bstr(value).Get(),
                                           com::Bstr(setup).Get(), channel.Put()));
        return channel;
    }
    com::Ref<IChannel> Find(const wchar_t* key) {
        com::Ref<IChannel> channel;
        EXPECT_EQ(S_OK, device_->Channel(com::Bstr(key).Get(), channel.Put()));
        return channel;
    }
    com::Ref<IDispatch> Container() {
        const auto asking = ChannelObject::Make();
        com::Ref<IDispatch> container;
        EXPECT_EQ(S_OK, device_->Container(asking.Get(), container.Put()));
        return container;
    }

    com::Ref<IDevice> device_ = Create<IDevice>(__uuidof(Device));
    com::Ref<IDeviceSetup> setup_ = device_.As<IDeviceSetup>();
};

TEST_F(DeviceTest, HasTheKeyThatItWasGiven) {
    EXPECT_EQ(L"", TextOf(*device_.Get(), &IDevice::get_DeviceKey));
    ASSERT_EQ(S_OK, setup_->put_DeviceKey(com::Bstr(L"DEV7").Get()));
    EXPECT_EQ(L"DEV7", TextOf(*device_.Get(), &IDevice::get_DeviceKey));
}

TEST_F(DeviceTest, FindsItsChannelsWithoutRegardToCase) {
    const auto added = Add(L"AI1", L"21.5", L"3,Auto;0,Off");
    Add(L"DO2", L"1", L"");
    EXPECT_TRUE(com::SameObject(added.Get(), Find(L"ai1").Get()));
    EXPECT_EQ(L"21.5", TextOf(*added.Get(), &IChannel::get_ChannelValue));
    EXPECT_EQ(L"3,Auto;0,Off", TextOf(*added.Get(), &IChannel::get_SetupText));
    EXPECT_EQ(L"AI1", TextOf(*added.As<IChannelSetup>().Get(), &IChannelSetup::get_key));
    EXPECT_EQ(L"1", TextOf(*Find(L"DO2").Get(), &IChannel::get_ChannelValue));
}

TEST_F(DeviceTest, HasNoChannelForAnUnknownKey) {
    Add(L"AI1", L"", L"");
    EXPECT_FALSE(Find(L"1"));
    EXPECT_FALSE(Find(L"AI2"));
    EXPECT_FALSE(Find(L""));
}

TEST_F(DeviceTest, RefusesASecondChannelOfAKey) {
    Add(L"AI1", L"1", L"");
    com::Ref<IChannel> channel;
    EXPECT_EQ(support::kDuplicateKey,
              setup_->AddChannel(com::Bstr(L"ai1").Get(), nullptr, nullptr, channel.Put()));
    EXPECT_FALSE(channel);
    EXPECT_EQ(1, LongOf(*setup_.Get(), &IDeviceSetup::get_ChannelCount));
    EXPECT_EQ(L"1", TextOf(*Find(L"AI1").Get(), &IChannel::get_ChannelValue));
}

TEST_F(DeviceTest, ListsItsChannelsInTheirOrder) {
    Add(L"DI1", L"", L"");
    Add(L"AI1", L"", L"");
    ASSERT_EQ(2, LongOf(*setup_.Get(), &IDeviceSetup::get_ChannelCount));
    const wchar_t* const keys[] = {L"DI1", L"AI1"};
    for (long position = 1; position <= 2; ++position) {
        com::Ref<IChannel> channel;
        ASSERT_EQ(S_OK, setup_->get_ChannelAt(position, channel.Put()));
        EXPECT_EQ(keys[position - 1], TextOf(*channel.As<IChannelSetup>().Get(), &IChannelSetup::get_key));
    }
    for (const long position : {-1L, 0L, 3L}) {
        com::Ref<IChannel> channel;
        EXPECT_EQ(support::kSubscript, setup_->get_ChannelAt(position, channel.Put()));
        EXPECT_FALSE(channel);
    }
    ASSERT_EQ(S_OK, setup_->ClearChannels());
    EXPECT_EQ(0, LongOf(*setup_.Get(), &IDeviceSetup::get_ChannelCount));
    EXPECT_FALSE(Find(L"AI1"));
}

TEST_F(DeviceTest, ShowsWhatAChannelIsSetTo) {
    const auto channel = Add(L"AI1", L"1", L"0,Off");
    const auto setup = channel.As<IChannelSetup>();
    ASSERT_EQ(S_OK, setup->put_ChannelValue(com::Bstr(L"2").Get()));
    ASSERT_EQ(S_OK, setup->put_SetupText(com::Bstr(L"1,On").Get()));
    EXPECT_EQ(L"2", TextOf(*Find(L"AI1").Get(), &IChannel::get_ChannelValue));
    EXPECT_EQ(L"1,On", TextOf(*Find(L"AI1").Get(), &IChannel::get_SetupText));
}

TEST_F(DeviceTest, NamesItsModuleAsTheContainerOfItsObjects) {
    EXPECT_FALSE(Container());
    const auto module = Create<IDispatch>(__uuidof(Project));
    ASSERT_EQ(S_OK, setup_->SetContainer(module.Get()));
    EXPECT_TRUE(com::SameObject(module.Get(), Container().Get()));
    com::Ref<IDispatch> nobody;
    EXPECT_EQ(support::kObjectNotSet, device_->Container(nullptr, nobody.Put()));
    ASSERT_EQ(S_OK, setup_->SetContainer(nullptr));
    EXPECT_FALSE(Container());
}

TEST_F(DeviceTest, IsSetUpByName) {
    VARIANT arguments[] = {com::Variant(L"AI1").Detach(), com::Variant(L"5").Detach(),
                           com::Variant(L"0,Off").Detach()};
    const com::Variant channel = com::CallMember(*device_.Get(), L"AddChannel", arguments);
    ASSERT_EQ(VT_DISPATCH, channel.Get().vt);
    com::PutMember(*channel.Get().pdispVal, L"ChannelValue", com::Variant(L"6").Get());
    com::PutMember(*device_.Get(), L"DeviceKey", com::Variant(L"D1").Get());
    EXPECT_EQ(L"6", TextOf(*Find(L"AI1").Get(), &IChannel::get_ChannelValue));
    const com::Variant key = com::GetMember(*device_.Get(), L"DeviceKey");
    EXPECT_EQ(L"D1", com::View(key.Get().bstrVal));
    for (VARIANT& argument : arguments) {
        VariantClear(&argument);
    }
}

TEST_F(DeviceTest, LeavesNothingBehind) {
    auto channel = Add(L"AI1", L"", L"");
    auto module = Create<IDispatch>(__uuidof(Project));
    ASSERT_EQ(S_OK, setup_->SetContainer(module.Get()));
    module.Reset();
    setup_.Reset();
    device_.Reset();
    EXPECT_EQ(S_FALSE, HostDll::Get().CanUnloadNow());
    channel.Reset();
    EXPECT_EQ(S_OK, HostDll::Get().CanUnloadNow());
}

class DeviceContextTest : public testing::Test {
  protected:
    com::Ref<IXMLDOMDocument2> Document() {
        com::Ref<IDispatch> document;
        EXPECT_EQ(S_OK, context_->get_Document(document.Put()));
        return document.As<IXMLDOMDocument2>();
    }
    bool Holds(const wchar_t* path) {
        com::Ref<IXMLDOMNode> node;
        Document()->selectSingleNode(com::Bstr(path).Get(), node.Put());
        return static_cast<bool>(node);
    }

    com::Ref<IDeviceContext> context_ = Create<IDeviceContext>(__uuidof(DeviceContext));
    com::Ref<IDeviceContextSetup> setup_ = context_.As<IDeviceContextSetup>();
};

TEST_F(DeviceContextTest, StartsWithoutDocumentAndVersion) {
    EXPECT_FALSE(Document());
    EXPECT_EQ(L"", TextOf(*context_.Get(), &IDeviceContext::get_FirmwareVersion));
}

TEST_F(DeviceContextTest, LoadsTheSampleDevice) {
    const std::wstring beside = SampleFolder();
    const std::wstring file =
        beside.substr(0, beside.size() - std::wstring(L"channels\\").size()) + L"device.xml";
    ASSERT_EQ(S_OK, setup_->Load(com::Bstr(file).Get())) << LastError();
    ASSERT_EQ(S_OK, setup_->put_FirmwareVersion(com::Bstr(L"V2_10").Get()));
    EXPECT_EQ(L"V2_10", TextOf(*context_.Get(), &IDeviceContext::get_FirmwareVersion));
    EXPECT_TRUE(Holds(L"Device/FWVersion/V2_10/Objects/Library/O_Tam_id"));
    EXPECT_FALSE(Holds(L"Device/FWVersion/V1_00/Objects/Library/O_Tam_id"));
    EXPECT_TRUE(Holds(L"Device/FWVersion/V1_00/Objects/Library/o_tam_ai_id"));
    EXPECT_FALSE(Holds(L"Device/FWVersion/V3_00/Objects/Library"));
}

TEST_F(DeviceContextTest, KeepsItsDocumentWhenAnotherFailsToLoad) {
    ASSERT_EQ(S_OK, setup_->LoadXml(com::Bstr(L"<Device><First/></Device>").Get()));
    EXPECT_EQ(kDeviceDocument, setup_->LoadXml(com::Bstr(L"<Device>").Get()));
    const std::wstring text = L"The text cannot be read as XML";
    EXPECT_EQ(text, LastError().substr(0, text.size()));
    EXPECT_EQ(kDeviceDocument, setup_->Load(com::Bstr(L"C:\\no such file.xml").Get()));
    const std::wstring file = L"\"C:\\no such file.xml\" cannot be read as XML";
    EXPECT_EQ(file, LastError().substr(0, file.size()));
    EXPECT_TRUE(Holds(L"Device/First"));
}

TEST_F(DeviceContextTest, ReplacesItsDocument) {
    ASSERT_EQ(S_OK, setup_->LoadXml(com::Bstr(L"<Device><First/></Device>").Get()));
    ASSERT_EQ(S_OK, setup_->LoadXml(com::Bstr(L"<Device><Second/></Device>").Get()));
    EXPECT_FALSE(Holds(L"Device/First"));
    EXPECT_TRUE(Holds(L"Device/Second"));
}

} // namespace

} // namespace hosttest
