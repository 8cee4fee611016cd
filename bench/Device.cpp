#include "bench/Device.h"

#include "bench/Commands.h"
#include "bench/DevicePoints.h"
#include "bench/Text.h"

#include <algorithm>
#include <utility>

namespace bench {

namespace {

/// A channel of the sample device. The first entry of a setup is the one that
/// the device works with, the others are what it could be set to.
struct SampleChannel {
    const wchar_t* kind;
    const wchar_t* key;
    const wchar_t* identifier;
    /// Without one the device knows no channel for the object.
    const wchar_t* value;
    const wchar_t* setup;
};

constexpr SampleChannel kSampleChannels[] = {
    {L"ai", L"AI1", L"o_tam_ai_id", L"5", L"2,Ni1000;1,Pt1000;3,0-10 V"},
    {L"ao", L"AO1", L"o_tam_ao_id", L"10", L"4,0-10 V;5,2-10 V"},
    {L"di", L"DI1", L"o_tam_di_id", L"14", L""},
    {L"do", L"DO1", L"o_tam_do_id", L"22", L""},
    {L"ctx", L"CTX1", L"o_inpcntx_id", nullptr, nullptr}, // reads the module's other inputs
};

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

/// The folder of the samples: beside the program, else where it was started.
std::wstring Samples() {
    constexpr const wchar_t* kFolder = L"samples\\";
    const std::wstring beside = ProgramFolder() + kFolder;
    return IsFile(beside + L"device.xml") ? beside : FullPath(kFolder);
}

constexpr const wchar_t* kModuleIdentifier = L"o_tam_id";

std::string NoChannels(const std::wstring& firmware) {
    return "firmware " + Utf8(firmware) +
           " of the device has no objects for channels: its library does not list the module";
}

} // namespace

SampleDevice::SampleDevice(Host& host, const Options& options, Report& report)
    : host_(host), firmware_(options.firmware) {
    host.LoadStream();
    host.Step("opening the device", [&] {
        com::Call(host.Tam(), &ITamObject::put_DeviceKey, com::Bstr(Key()).Get());
        DescribeChannels();
        DescribeFirmware();
    });
    report.Line("Opened device " + Utf8(Key()) + ": module " + Summary(host) + ".");
    report.data["deviceKey"] = Utf8(Key());
    report.data["firmware"] = Utf8(firmware_);
}

SampleDevice::~SampleDevice() {
    for (const Channel& channel : channels_) {
        channel.app->Destroy();
    }
}

void SampleDevice::DescribeFirmware() {
    const auto context = Create<IDeviceContext>(__uuidof(DeviceContext));
    const auto setup = Face<IDeviceContextSetup>(context);
    com::Call(setup, &IDeviceContextSetup::Load, com::Bstr(Samples() + L"device.xml").Get());
    com::Call(setup, &IDeviceContextSetup::put_FirmwareVersion, com::Bstr(firmware_).Get());
    manager_ = Create<ITamObjectManager>(__uuidof(TamObjectManager));
    com::Call(manager_, &ITamObjectManager::Init, context.Get());
}

void SampleDevice::DescribeChannels() {
    device_ = Create<IDevice>(__uuidof(Device));
    const auto setup = Face<IDeviceSetup>(device_);
    com::Call(setup, &IDeviceSetup::put_DeviceKey, com::Bstr(Key()).Get());
    com::Call(setup, &IDeviceSetup::SetContainer, &host_.App());
    for (const SampleChannel& sample : kSampleChannels) {
        if (sample.value != nullptr) {
            com::Ref<IChannel> added;
            com::Call(setup, &IDeviceSetup::AddChannel, com::Bstr(sample.key).Get(),
                      com::Bstr(sample.value).Get(), com::Bstr(sample.setup).Get(), added.Put());
        }
    }
}

bool SampleDevice::IsChannelObject(const std::wstring& identifier) {
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

std::wstring SampleDevice::IdentifierOf(const std::wstring& kind) {
    const bool hasAny = IsChannelObject(kSampleChannels[0].identifier);
    const auto* const found =
        std::find_if(std::begin(kSampleChannels), std::end(kSampleChannels),
                     [&](const SampleChannel& sample) { return SameKey(sample.kind, kind); });
    std::wstring identifier = found != std::end(kSampleChannels) ? found->identifier : kind;
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
                                               Utf8(kSampleChannels[0].identifier));
        }
    });
    return identifier;
}

const Channel& SampleDevice::Place(const std::wstring& identifier, const std::wstring& key) {
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

void SampleDevice::PlaceAll() {
    for (const SampleChannel& sample : kSampleChannels) {
        TakeFromModule(*this, Place(IdentifierOf(sample.identifier), sample.key));
    }
}

const Channel* SampleDevice::Find(const std::wstring& key) const noexcept {
    const auto found = std::find_if(channels_.begin(), channels_.end(),
                                    [&](const Channel& channel) { return SameKey(channel.key, key); });
    return found != channels_.end() ? &*found : nullptr;
}

const Channel& SampleDevice::At(const std::wstring& key) const {
    const Channel* found = nullptr;
    host_.Step("looking up the channel", [&] {
        found = Find(key);
        if (found == nullptr) {
            throw BenchError(E_INVALIDARG, "the device has no channel object \"" + Utf8(key) + "\"");
        }
    });
    return *found;
}

void SampleDevice::Fetch(const Channel& channel) const {
    host_.Step("getting data for " + Utf8(channel.key),
               [&] { com::Call(channel.app, &IAppObject::ObjectDebug); });
}

} // namespace bench
