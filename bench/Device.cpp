#include "bench/Device.h"

#include "bench/Commands.h"
#include "bench/Text.h"

#include <algorithm>

namespace bench {

namespace {

/// A channel of the sample device. The first entry of a setup is the one that
/// the device works with, the others are what it could be set to.
struct SampleChannel {
    const wchar_t* key;
    const wchar_t* identifier;
    /// Without one the device knows no channel for the object.
    const wchar_t* value;
    const wchar_t* setup;
};

constexpr SampleChannel kSampleChannels[] = {
    {L"AI1", L"o_tam_ai_id", L"5", L"2,Ni1000;1,Pt1000;3,0-10 V"},
    {L"AO1", L"o_tam_ao_id", L"10", L"4,0-10 V;5,2-10 V"},
    {L"DI1", L"o_tam_di_id", L"14", L""},
    {L"DO1", L"o_tam_do_id", L"22", L""},
    {L"CTX1", L"o_inpcntx_id", nullptr, nullptr}, // reads the module's other inputs
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
    const com::Ref<J> face = object.template As<J>();
    com::CheckSet(face.Get());
    return face;
}

/// The folder of the samples: beside the program, else where it was started.
std::wstring Samples() {
    constexpr const wchar_t* kFolder = L"samples\\";
    const std::wstring beside = ProgramFolder() + kFolder;
    return IsFile(beside + L"device.xml") ? beside : FullPath(kFolder);
}

bool SameKey(const std::wstring& left, const std::wstring& right) {
    return CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_EQUAL;
}

Json ReadPoint(IInput& input) {
    return {{"kind", "input"},
            {"name", TextOf(input, &IInput::get_Name)},
            {"visible", FlagOf(input, &IInput::get_Visible)},
            {"accepts", ReadAccepted(input)},
            {"value", TextOf(input, &IInput::get_Value)}};
}

Json ReadPoint(IOutput& output) {
    com::Ref<ISNVType> type;
    com::Check(output.get_SNVTType(type.Put()));
    return {{"kind", "output"},
            {"name", TextOf(output, &IOutput::get_Name)},
            {"visible", FlagOf(output, &IOutput::get_Visible)},
            {"type", ReadType(type.Get())}};
}

Json ReadPoint(IAttribute& attribute) {
    com::Ref<ISNVType> type;
    com::Check(attribute.get_SNVTType(type.Put()));
    return {{"kind", "attribute"},
            {"name", TextOf(attribute, &IAttribute::get_Name)},
            {"visible", FlagOf(attribute, &IAttribute::get_Visible)},
            {"type", ReadType(type.Get())},
            {"value", TextOf(attribute, &IAttribute::get_Value)},
            {"display", type ? Json(TextOf(attribute, &IAttribute::get_DispValue)) : Json()}};
}

/// The module's item for a point of a channel; null when it has none.
Json ReadItem(IAppObject& module, const Json& point, const std::wstring& name) {
    if (point["kind"] == "input") {
        const auto input = FindInput(module, name);
        return input ? ReadPoint(*input.Get()) : Json();
    }
    if (point["kind"] == "output") {
        const auto output = FindOutput(module, name);
        return output ? ReadPoint(*output.Get()) : Json();
    }
    const auto attribute = FindAttribute(module, name);
    return attribute ? ReadPoint(*attribute.Get()) : Json();
}

} // namespace

SampleDevice::SampleDevice(Host& host, const Options& options, Report& report) : host_(host) {
    LoadAndTell(host, report);
    host.Step("opening the device", [&] {
        com::Check(host.Tam().put_DeviceKey(com::Bstr(Key()).Get()));
        DescribeChannels();
        DescribeFirmware(options.firmware);
    });
    report.data["deviceKey"] = Utf8(Key());
    report.data["firmware"] = Utf8(options.firmware);
}

SampleDevice::~SampleDevice() {
    for (const Channel& channel : channels_) {
        channel.app->Destroy();
    }
}

void SampleDevice::DescribeFirmware(const std::wstring& version) {
    const auto context = Create<IDeviceContext>(__uuidof(DeviceContext));
    const auto setup = Face<IDeviceContextSetup>(context);
    com::Check(setup->Load(com::Bstr(Samples() + L"device.xml").Get()));
    com::Check(setup->put_FirmwareVersion(com::Bstr(version).Get()));
    manager_ = Create<ITamObjectManager>(__uuidof(TamObjectManager));
    com::Check(manager_->Init(context.Get()));
}

void SampleDevice::DescribeChannels() {
    device_ = Create<IDevice>(__uuidof(Device));
    const auto setup = Face<IDeviceSetup>(device_);
    com::Check(setup->put_DeviceKey(com::Bstr(Key()).Get()));
    com::Check(setup->SetContainer(&host_.App()));
    for (const SampleChannel& sample : kSampleChannels) {
        if (sample.value != nullptr) {
            com::Ref<IChannel> added;
            com::Check(setup->AddChannel(com::Bstr(sample.key).Get(), com::Bstr(sample.value).Get(),
                                         com::Bstr(sample.setup).Get(), added.Put()));
        }
    }
}

bool SampleDevice::IsChannelObject(const std::wstring& identifier) {
    VARIANT_BOOL answer = VARIANT_FALSE;
    host_.Step("IsTamInternalObject",
               [&] { com::Check(manager_->IsTamInternalObject(com::Bstr(identifier).Get(), &answer)); });
    return answer != VARIANT_FALSE;
}

const Channel& SampleDevice::Place(const std::wstring& identifier, const std::wstring& key) {
    host_.Step("placing " + Utf8(key), [&] {
        if (Find(key) != nullptr) {
            throw BenchError(E_INVALIDARG, "the device has a channel object \"" + Utf8(key) + "\" already");
        }
        Channel channel{key, nullptr, nullptr};
        com::Bstr wanted(key);
        com::Check(manager_->CreateTamInternalAppObject(wanted.Address(), device_.Get(), channel.app.Put()));
        if (!channel.app) {
            throw BenchError(E_FAIL, "the firmware of the device has no objects for channels");
        }
        channel.item = Face<ITamInternalAppObject>(channel.app);
        IAppObject& app = *channel.app.Get();
        VARIANT_BOOL done = VARIANT_FALSE;
        com::Check(app.putref_XmlSNVTDoc(host_.CatalogueDocument().Get()));
        com::Check(app.Init(com::Bstr(identifier).Get(), &done));
        if (done == VARIANT_FALSE) {
            throw BenchError(E_FAIL, "Init(\"" + Utf8(identifier) + "\") answered False");
        }
        com::Check(app.Create());
        com::Check(app.put_GlobalKey(com::Bstr(kSheetKey + key).Get()));
        com::Check(app.put_ExtendedKey(com::Bstr(kProjectKey + key).Get()));
        com::Check(app.put_UserName(com::Bstr(key).Get()));
        com::Check(app.put_XPosition(kColumn));
        com::Check(app.put_YPosition(kRow * static_cast<double>(channels_.size())));
        channels_.push_back(std::move(channel));
    });
    return channels_.back();
}

void SampleDevice::PlaceAll() {
    for (const SampleChannel& sample : kSampleChannels) {
        if (!IsChannelObject(sample.identifier)) {
            throw BenchError(E_FAIL, "the firmware of the device has no objects for channels");
        }
        Place(sample.identifier, sample.key);
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
    host_.Step("getting data for " + Utf8(channel.key), [&] { com::Check(channel.app->ObjectDebug()); });
}

Json ReadPoints(IAppObject& object) {
    Json points = Json::array();
    const auto add = [&](auto& point) { points.push_back(ReadPoint(point)); };
    ForEachInput(object, add);
    ForEachOutput(object, add);
    ForEachAttribute(object, add);
    return points;
}

Json ReadPoints(const SampleDevice& device, const Channel& channel) {
    Json points = ReadPoints(*channel.app.Get());
    for (Json& point : points) {
        const std::wstring name = channel.key + L"_" + Wide(point["name"].get<std::string>());
        point["moduleItem"] = ReadItem(device.Module().App(), point, name);
    }
    return points;
}

Json ReadChannel(const SampleDevice& device, const Channel& channel) {
    Json result;
    device.Module().Step("reading " + Utf8(channel.key), [&] {
        IAppObject& app = *channel.app.Get();
        result = {
            {"objectKey", TextOf(*channel.item.Get(), &ITamInternalAppObject::get_TamInternalObjectKey)},
            {"deviceKey", TextOf(*channel.item.Get(), &ITamInternalAppObject::get_TamDeviceKey)},
            {"name", TextOf(app, &IAppObject::get_Name)},
            {"definition", TextOf(app, &IAppObject::get_UniqueIDString)},
            {"description", TextOf(app, &IAppObject::get_Description)},
            {"userName", TextOf(app, &IAppObject::get_UserName)},
            {"globalKey", TextOf(app, &IAppObject::get_GlobalKey)},
            {"x", NumberOf(app, &IAppObject::get_XPosition)},
            {"y", NumberOf(app, &IAppObject::get_YPosition)},
            {"virtual", FlagOf(app, &IAppObject::get_IsVirtual)},
            {"points", ReadPoints(device, channel)}};
    });
    return result;
}

void SetPoint(Host& host, const Channel& channel, const std::wstring& name, const std::wstring& value) {
    const std::string title = Utf8(channel.key) + "." + Utf8(name);
    host.Step("setting " + title, [&] {
        const com::Bstr text(value);
        if (const auto attribute = FindAttribute(*channel.app.Get(), name)) {
            com::Check(attribute->put_Value(text.Get()));
        } else if (const auto input = FindInput(*channel.app.Get(), name)) {
            com::Check(input->put_Value(text.Get()));
        } else {
            throw BenchError(E_INVALIDARG, "there is no attribute or input \"" + title + "\"");
        }
    });
}

} // namespace bench
