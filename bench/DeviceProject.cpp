#include "bench/DeviceProject.h"

#include "bench/DevicePoints.h"
#include "bench/Explanations.h"
#include "bench/Text.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace bench {

namespace {

// What the component puts before all else into the element of a channel; the
// module's has the device's key too.
constexpr const wchar_t* kDeviceKey = L"DevKey";
constexpr const wchar_t* kObjectKey = L"TamObjectKey";

constexpr const wchar_t* kXPosition = L"X_Position";

struct SavedChannel {
    std::wstring identifier;
    std::wstring key;
    xml::Node element;
};

/// What a project document holds for one device, checked as a whole.
class Project {
  public:
    Project(OpenedDevice& device, const std::wstring& file)
        : device_(device)
        , file_(Utf8(file))
        , moduleName_(WideOf(device.Module().App(), &IAppObject::get_UniqueIDString))
        , document_(xml::LoadFile(file)) {
        com::Ref<IXMLDOMElement> root;
        com::Call(document_, &IXMLDOMDocument::get_documentElement, root.Put());
        xml::ForEachElement(xml::Node(root), [&](const xml::Node& element) { Sort(element); });
        if (!module) {
            Refuse("holds no module of device " + Utf8(device.Key()));
        }
    }

    xml::Node module;
    std::vector<SavedChannel> channels;
    std::vector<xml::Node> others;

  private:
    [[noreturn]] void Refuse(const std::string& reason) const {
        throw BenchError(E_INVALIDARG, file_ + " " + reason);
    }

    void Sort(const xml::Node& element) {
        const std::wstring name = xml::NameOf(element);
        const bool isChannel = device_.IsChannelObject(name);
        const bool hasKey = static_cast<bool>(xml::Select(element, kObjectKey));
        if (name != moduleName_ && !isChannel && !hasKey) {
            others.push_back(element); // another object of the sheet
            return;
        }
        if (!xml::Select(element, kDeviceKey)) {
            Refuse("is damaged: an element " + Utf8(name) + " names no device");
        }
        if (xml::TextAt(element, kDeviceKey) != device_.Key()) {
            others.push_back(element);
        } else if (name == moduleName_) {
            if (module) {
                Refuse("holds two modules of device " + Utf8(device_.Key()));
            }
            module = element;
        } else {
            AddChannel(name, xml::TextAt(element, kObjectKey), element);
        }
    }

    void AddChannel(const std::wstring& name, const std::wstring& key, const xml::Node& element) {
        if (key.empty()) {
            Refuse("is damaged: an element " + Utf8(name) + " names no channel");
        }
        if (!device_.IsChannelObject(name)) {
            Refuse("has the channel " + Utf8(key) +
                   " of a kind that the firmware of the device lacks: " + Utf8(name));
        }
        if (std::any_of(channels.begin(), channels.end(),
                        [&](const SavedChannel& other) { return SameKey(other.key, key); })) {
            Refuse("has the channel " + Utf8(key) + " twice");
        }
        channels.push_back({name, key, element});
    }

    OpenedDevice& device_;
    std::string file_;
    std::wstring moduleName_;
    xml::Document document_;
};

/// What a point has: an output whether it is in displays.
Json ValueOf(const Json& point) {
    return point["kind"] == "output" ? point["displayable"] : point["value"];
}

/// The points of a channel that are no longer as its definition made them.
void AddRestored(const Channel& channel, const Json& before, const Json& after, Json& restored) {
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (before[i] != after[i]) {
            const auto type = after[i].find("type");
            restored.push_back(
                {{"objectKey", Utf8(channel.key)},
                 {"name", after[i]["name"]},
                 {"before", ValueOf(before[i])},
                 {"after", ValueOf(after[i])},
                 {"enumDesc", type != after[i].end() && !type->is_null() ? (*type)["enumDesc"] : Json()}});
        }
    }
}

Json ElementOf(const xml::Node& element) {
    const bool isChannel = static_cast<bool>(xml::Select(element, kObjectKey));
    return {{"element", Utf8(xml::NameOf(element))},
            {"deviceKey", Utf8(xml::TextAt(element, kDeviceKey))},
            {"objectKey", isChannel ? Json(Utf8(xml::TextAt(element, kObjectKey))) : Json()}};
}

/// The module writes positions in the user's form and reads a point alone.
void NotePosition(const xml::Node& module, IAppObject& app, Json& notes) {
    const std::wstring written = xml::TextAt(module, kXPosition);
    if (written.find(L',') != std::wstring::npos) {
        notes.push_back("The module writes its position with the user's decimal mark and reads it with a "
                        "point alone: " +
                        Utf8(written) + " came back as " +
                        Utf8(com::TextOf(NumberOf(app, &IAppObject::get_XPosition))) + ".");
    }
}

void LoadChannel(OpenedDevice& device, const SavedChannel& saved, Json& restored) {
    const Channel& channel = device.Place(saved.identifier, saved.key);
    const Json before = ReadPoints(*channel.app.Get());
    device.Module().Step("XmlLoad of " + Utf8(saved.key),
                         [&] { com::Call(channel.app, &IAppObject::XmlLoad, saved.element.Get()); });
    AddRestored(channel, before, ReadPoints(*channel.app.Get()), restored);
}

} // namespace

Json OpenDevice(OpenedDevice& device, const Options& options, Answer& answer) {
    if (!options.project.empty()) {
        AddSource(options.project, answer);
        return LoadProject(device, options, answer);
    }
    device.PlaceAll();
    return nullptr;
}

Json LoadProject(OpenedDevice& device, const Options& options, const Answer& answer) {
    const std::wstring& file = options.project;
    Host& host = device.Module();
    Json result = {{"loaded", Json::array()},
                   {"passedOver", Json::array()},
                   {"restored", Json::array()},
                   {"broughtInLine", Json::array()},
                   {"notes", Json::array()}};
    host.Step("reading the project", [&] {
        const Project project(device, file);
        host.Step("XmlLoad", [&] { com::Call(host.App(), &IAppObject::XmlLoad, project.module.Get()); });
        if (answer.HasErrorReport() && !options.tolerateBoxes) {
            throw BenchError(E_INVALIDARG, Utf8(file) + " is damaged: the component could not read the "
                                                        "module to its end");
        }
        NotePosition(project.module, host.App(), result["notes"]);
        result["loaded"].push_back(ElementOf(project.module));
        for (const SavedChannel& saved : project.channels) {
            LoadChannel(device, saved, result["restored"]);
            result["loaded"].push_back(ElementOf(saved.element));
        }
        for (const xml::Node& other : project.others) {
            result["passedOver"].push_back(ElementOf(other));
        }
    });
    // A project keeps no values of the module: its points are the stream's.
    for (const Channel& channel : device.Channels()) {
        for (const Json& change : BringInLine(device, channel)) {
            result["broughtInLine"].push_back(change);
        }
    }
    return result;
}

xml::Node SaveProject(const OpenedDevice& device) {
    Host& host = device.Module();
    const xml::Document document = xml::New();
    xml::Node project = xml::Append(document, xml::Node(document), L"Project");
    host.Step("XMLSave", [&] { com::Call(host.App(), &IAppObject::XMLSave, project.Get(), document.Get()); });
    for (const Channel& channel : device.Channels()) {
        host.Step("XMLSave of " + Utf8(channel.key),
                  [&] { com::Call(channel.app, &IAppObject::XMLSave, project.Get(), document.Get()); });
    }
    return project;
}

Json ReadElements(const xml::Node& project) {
    Json elements = Json::array();
    xml::ForEachElement(project, [&](const xml::Node& element) { elements.push_back(ElementOf(element)); });
    return elements;
}

} // namespace bench
