#include "bench/Device.h"

#include "bench/Commands.h"
#include "bench/DevicePoints.h"
#include "bench/Text.h"

#include <algorithm>
#include <string>
#include <utility>

namespace bench {

namespace {

// Where a drawing would put the channels: below each other, beside the module.
constexpr const wchar_t* kSheetKey = L"SHEET1\\";
constexpr const wchar_t* kProjectKey = L"PROJECT\\SHEET1\\";
constexpr double kColumn = 30;
constexpr double kRow = 10;

template <class I>
com::Ref<I> Create(REFCLSID clsid) {
    com::Ref<I> object;
    com::Check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(I), object.PutVoid()));
    return object;
}

template <class J, class I>
com::Ref<J> Face(const com::Ref<I>& object) {
    com::Ref<J> face = object.template As<J>();
    com::CheckSet(face.Get());
    return face;
}

/// A kind that every firmware with channel objects has.
constexpr const wchar_t* kCommonKind = L"ai";

constexpr const wchar_t* kModuleIdentifier = L"o_tam_id";

std::string NoChannels(const std::wstring& firmware) {
    return "firmware " + Utf8(firmware) +
           " of the device has no objects for channels: its library does not list the module";
}

} // namespace

OpenedDevice::OpenedDevice(Host& host, const Options& options, Answer& answer)
    : host_(host)
    , file_(ReadDeviceFile(options.deviceFile))
    , firmware_(options.firmware.empty() ? file_.firmware : options.firmware) {
    host.LoadStreamFile(file_.stream, file_.streamFile);
    host.Step("opening the device", [&] {
        com::Call(host.Tam(), &ITamObject::put_DeviceKey, com::Bstr(Key()).Get());
        DescribeChannels();
        DescribeFirmware();
    });
    answer.Line("Opened device " + Utf8(Key()) + ": module " + Summary(host) + ".");
    answer.data["device"] = Utf8(file_.path);
    answer.data["deviceKey"] = Utf8(Key());
    answer.data["firmware"] = Utf8(firmware_);
}

OpenedDevice::~OpenedDevice() {
    for (const Channel& channel : channels_) {
        channel.app->Destroy();
    }
}

void OpenedDevice::DescribeFirmware() {
    const auto context = Create<IDeviceContext>(__uuidof(DeviceContext));
    const auto setup = Face<IDeviceContextSetup>(context);
    com::Call(setup, &IDeviceContextSetup::Load, com::Bstr(FullPath(file_.firmwareFile)).Get());
    com::Call(setup, &IDeviceContextSetup::put_FirmwareVersion, com::Bstr(firmware_).Get());
    manager_ = Create<ITamObjectManager>(__uuidof(TamObjectManager));
    com::Call(manager_, &ITamObjectManager::Init, context.Get());
}

void OpenedDevice::DescribeChannels() {
    device_ = Create<IDevice>(__uuidof(Device));
    const auto setup = Face<IDeviceSetup>(device_);
    com::Call(setup, &IDeviceSetup::put_DeviceKey, com::Bstr(Key()).Get());
    com::Call(setup, &IDeviceSetup::SetContainer, &host_.App());
    for (const DescribedChannel& channel : file_.channels) {
        if (channel.terminal) {
            com::Ref<IChannel> added;
            com::Call(setup, &IDeviceSetup::AddChannel, com::Bstr(channel.key).Get(),
                      com::Bstr(*channel.terminal).Get(), com::Bstr(channel.setup).Get(), added.Put());
        }
    }
}

bool OpenedDevice::IsChannelObject(const std::wstring& identifier) {
    VARIANT_BOOL answer = VARIANT_FALSE;
    host_.Step("IsTamInternalObject", [&] {
        const auto failure = com::Attempt([&] {
            com::Call(manager_, &ITamObjectManager::IsTamInternalObject, com::Bstr(identifier).Get(),
                      &answer);
        });
        if (failure) {
            throw BenchError(failure->code,
                             "firmware " + Utf8(firmware_) +
                                 " of the device has no object library: " + Utf8(failure->Description()));
        }
    });
    return answer != VARIANT_FALSE;
}

std::wstring OpenedDevice::IdentifierOf(const std::wstring& kind) {
    const bool hasAny = IsChannelObject(IdentifierOfKind(kCommonKind));
    std::wstring identifier = IdentifierOfKind(kind);
    const bool isKnown = IsChannelObject(identifier);
    host_.Step("choosing the kind of channel", [&] {
        if (!hasAny) {
            throw BenchError(E_FAIL, NoChannels(firmware_));
        }
        if (SameKey(identifier, kModuleIdentifier)) {
            throw BenchError(E_INVALIDARG, "\"" + Utf8(kind) + "\" is the module itself, not a channel");
        }
        if (!isKnown) {
            throw BenchError(E_INVALIDARG, "there is no kind of channel \"" + Utf8(kind) +
                                               "\": it is ai, ao, di, do, ctx or an identifier such as " +
                                               Utf8(IdentifierOfKind(kCommonKind)));
        }
    });
    return identifier;
}

const Channel& OpenedDevice::Place(const std::wstring& identifier, const std::wstring& key) {
    host_.Step("placing " + Utf8(key), [&] {
        if (key.empty()) {
            throw BenchError(E_INVALIDARG, "a channel object needs a key");
        }
        if (Find(key) != nullptr) {
            throw BenchError(E_INVALIDARG, "the device has a channel object \"" + Utf8(key) + "\" already");
        }
        Channel channel{key, nullptr, nullptr};
        com::Bstr wanted(key);
        com::Call(manager_, &ITamObjectManager::CreateTamInternalAppObject, wanted.Address(), device_.Get(),
                  channel.app.Put());
        if (!channel.app) {
            throw BenchError(E_FAIL, NoChannels(firmware_));
        }
        channel.item = Face<ITamInternalAppObject>(channel.app);
        IAppObject& app = *channel.app.Get();
        VARIANT_BOOL done = VARIANT_FALSE;
        com::Call(app, &IAppObject::putref_XmlSNVTDoc, host_.CatalogueDocument().Get());
        com::Call(app, &IAppObject::Init, com::Bstr(identifier).Get(), &done);
        if (done == VARIANT_FALSE) {
            throw BenchError(E_FAIL, "Init(\"" + Utf8(identifier) + "\") answered False");
        }
        com::Call(app, &IAppObject::Create);
        com::Call(app, &IAppObject::put_GlobalKey, com::Bstr(kSheetKey + key).Get());
        com::Call(app, &IAppObject::put_ExtendedKey, com::Bstr(kProjectKey + key).Get());
        com::Call(app, &IAppObject::put_UserName, com::Bstr(key).Get());
        com::Call(app, &IAppObject::put_XPosition, kColumn);
        com::Call(app, &IAppObject::put_YPosition, kRow * static_cast<double>(channels_.size()));
        channels_.push_back(std::move(channel));
    });
    return channels_.back();
}

void OpenedDevice::PlaceAll() {
    for (const DescribedChannel& channel : file_.channels) {
        TakeFromModule(*this, Place(IdentifierOf(channel.kind), channel.key));
    }
}

const Channel* OpenedDevice::Find(const std::wstring& key) const noexcept {
    const auto found = std::find_if(channels_.begin(), channels_.end(),
                                    [&](const Channel& channel) { return SameKey(channel.key, key); });
    return found != channels_.end() ? &*found : nullptr;
}

const Channel& OpenedDevice::At(const std::wstring& key) const {
    const Channel* found = nullptr;
    host_.Step("looking up the channel", [&] {
        found = Find(key);
        if (found == nullptr) {
            throw BenchError(E_INVALIDARG, "the device has no channel object \"" + Utf8(key) + "\"");
        }
    });
    return *found;
}

void OpenedDevice::Fetch(const Channel& channel) const {
    host_.Step("getting data for " + Utf8(channel.key),
               [&] { com::Call(channel.app, &IAppObject::ObjectDebug); });
}

} // namespace bench
