#include "bench/Commands.h"
#include "bench/Device.h"
#include "bench/Text.h"

#include <algorithm>

namespace bench {

namespace {

// What the component puts before all else into the element of a channel.
constexpr const wchar_t* kDeviceKey = L"DevKey";
constexpr const wchar_t* kObjectKey = L"TamObjectKey";

/// "AI1.Filter" as a channel's key and a point's name.
std::pair<std::wstring, std::wstring> Split(const std::wstring& text) {
    const std::size_t mark = text.find(L'.');
    if (mark == std::wstring::npos) {
        throw BenchError(E_INVALIDARG, "\"" + Utf8(text) + "\" is not of the form KEY.NAME");
    }
    return {text.substr(0, mark), text.substr(mark + 1)};
}

Json ReadElements(const xml::Node& project) {
    Json elements = Json::array();
    xml::ForEachElement(project, [&](const xml::Node& element) {
        const bool isChannel = static_cast<bool>(xml::Select(element, kObjectKey));
        elements.push_back(
            {{"element", Utf8(xml::NameOf(element))},
             {"deviceKey", Utf8(xml::TextAt(element, kDeviceKey))},
             {"objectKey", isChannel ? Json(Utf8(xml::TextAt(element, kObjectKey))) : Json()}});
    });
    return elements;
}

std::string ValueOf(const Json& point) {
    const auto value = point.find("value");
    return value != point.end() ? value->get<std::string>() : "";
}

/// "12.5; 4", as the user writes numbers.
std::string Position(IAppObject& app) {
    return Utf8(com::TextOf(NumberOf(app, &IAppObject::get_XPosition))) + "; " +
           Utf8(com::TextOf(NumberOf(app, &IAppObject::get_YPosition)));
}

/// The points of a channel that are no longer as its definition made them.
Json ReadRestored(const std::string& key, const Json& before, const Json& after) {
    Json restored = Json::array();
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (before[i] != after[i]) {
            restored.push_back(
                {{"objectKey", key},
                 {"name", after[i]["name"]},
                 {"before", ValueOf(before[i])},
                 {"after", ValueOf(after[i])},
                 {"enumDesc", after[i].contains("type") ? after[i]["type"]["enumDesc"] : Json()}});
        }
    }
    return restored;
}

/// Loads one document: the module that is there, and objects made for the
/// channels that it names.
class Loading {
  public:
    Loading(SampleDevice& device, Report& report)
        : device_(device), moduleName_(WideOf(device.Module().App(), &IAppObject::get_UniqueIDString)) {
        report.data["loaded"] = Json::array();
        report.data["passedOver"] = Json::array();
        report.data["restored"] = Json::array();
        data_ = &report.data;
    }

    void Take(const xml::Node& element) {
        const std::wstring name = xml::NameOf(element);
        if (name == moduleName_) {
            device_.Module().Step("XmlLoad",
                                  [&] { com::Check(device_.Module().App().XmlLoad(element.Get())); });
            hasModule_ = true;
            Add("loaded", name, L"");
        } else if (IsOurs(element) && device_.IsChannelObject(name)) {
            TakeChannel(element, name, xml::TextAt(element, kObjectKey));
        } else {
            Add("passedOver", name, xml::TextAt(element, kObjectKey));
        }
    }

    bool HasModule() const noexcept { return hasModule_; }

  private:
    bool IsOurs(const xml::Node& element) const {
        return xml::Select(element, kObjectKey) && xml::TextAt(element, kDeviceKey) == device_.Key();
    }

    void TakeChannel(const xml::Node& element, const std::wstring& name, const std::wstring& key) {
        const Channel& channel = device_.Place(name, key);
        const Json before = ReadPoints(*channel.app.Get());
        device_.Module().Step("XmlLoad of " + Utf8(key),
                              [&] { com::Check(channel.app->XmlLoad(element.Get())); });
        const Json after = ReadPoints(*channel.app.Get());
        for (const Json& point : ReadRestored(Utf8(key), before, after)) {
            (*data_)["restored"].push_back(point);
        }
        Add("loaded", name, key);
    }

    void Add(const char* list, const std::wstring& name, const std::wstring& key) {
        (*data_)[list].push_back({{"element", Utf8(name)}, {"objectKey", Utf8(key)}});
    }

    SampleDevice& device_;
    std::wstring moduleName_;
    Json* data_ = nullptr;
    bool hasModule_ = false;
};

} // namespace

void DeviceSave(Host& host, const Options& options, Report& report) {
    SampleDevice device(host, options, report);
    device.PlaceAll();
    Place(host, options);
    if (options.fetch) {
        for (const Channel& channel : device.Channels()) {
            device.Fetch(channel);
        }
    }
    for (const auto& [name, value] : options.values) {
        const auto [key, point] = Split(name);
        SetPoint(host, device.At(key), point, value);
    }
    const xml::Document document = xml::New();
    const xml::Node project = xml::Append(document, xml::Node(document), L"Project");
    host.Step("XMLSave", [&] { com::Check(host.App().XMLSave(project.Get(), document.Get())); });
    for (const Channel& channel : device.Channels()) {
        host.Step("XMLSave of " + Utf8(channel.key),
                  [&] { com::Check(channel.app->XMLSave(project.Get(), document.Get())); });
    }
    const Json elements = ReadElements(project);
    report.data["elements"] = elements;
    report.data["project"] = xml::Print(project);
    Table table({"Element of the project", "DevKey", "TamObjectKey"});
    for (const Json& element : elements) {
        const Json& key = element["objectKey"];
        table.Add({element["element"], element["deviceKey"], key.is_null() ? "" : key.get<std::string>()});
    }
    report.Heading("The device as one project");
    report.Add(table);
    if (options.output.empty()) {
        report.Heading("The document");
        report.Block(xml::Print(project));
        return;
    }
    xml::Save(project, options.output);
    report.data["file"] = Utf8(options.output);
    report.Line("\nWritten to " + Utf8(options.output) + ".");
}

void DeviceLoad(Host& host, const Options& options, Report& report) {
    SampleDevice device(host, options, report);
    const xml::Document document = xml::LoadFile(options.project);
    com::Ref<IXMLDOMElement> root;
    com::Check(document->get_documentElement(root.Put()));
    Loading loading(device, report);
    xml::ForEachElement(xml::Node(root), [&](const xml::Node& element) { loading.Take(element); });
    if (!loading.HasModule()) {
        throw BenchError(E_INVALIDARG, Utf8(options.project) + " holds no module");
    }
    Json& channels = report.data["channels"] = Json::array();
    std::string keys;
    for (const Channel& channel : device.Channels()) {
        channels.push_back(ReadChannel(device, channel));
        keys += (keys.empty() ? "" : ", ") + Utf8(channel.key);
    }
    const std::string userName = TextOf(host.App(), &IAppObject::get_UserName);
    report.data["module"] = {{"userName", userName},
                             {"x", NumberOf(host.App(), &IAppObject::get_XPosition)},
                             {"y", NumberOf(host.App(), &IAppObject::get_YPosition)},
                             {"deviceKey", TextOf(host.Tam(), &ITamObject::get_DeviceKey)}};
    report.Heading("What " + Utf8(options.project) + " restored");
    Fields fields;
    fields.Add("Module", "\"" + userName + "\" at " + Position(host.App()));
    fields.Add("Channels", keys.empty() ? "none" : keys);
    fields.Add("Passed over", Count(report.data["passedOver"].size(), "element"));
    report.Add(fields);
    report.Heading("Points that differ from their definitions");
    Table table({"Channel", "Point", "By definition", "Restored", "Enumeration"});
    for (const Json& point : report.data["restored"]) {
        table.Add({point["objectKey"], point["name"], point["before"], point["after"],
                   point["enumDesc"].is_null() ? "" : point["enumDesc"].get<std::string>()});
    }
    report.Add(table);
}

void DeviceExport(Host& host, const Options& options, Report& report) {
    SampleDevice device(host, options, report);
    device.PlaceAll();
    for (const auto& [name, value] : options.values) {
        const auto [key, point] = Split(name);
        SetPoint(host, device.At(key), point, value);
    }
    ExportLoaded(host, options, report);
}

} // namespace bench
