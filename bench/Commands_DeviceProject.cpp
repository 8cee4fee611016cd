#include "bench/Commands.h"
#include "bench/DevicePoints.h"
#include "bench/DeviceProject.h"
#include "bench/Explanations.h"
#include "bench/Text.h"

#include <cstddef>
#include <string>
#include <utility>

namespace bench {

namespace {

/// "AI1.Filter" as a channel's key and a point's name; the command line has
/// seen to it that there is a point.
std::pair<std::wstring, std::wstring> Split(const std::wstring& text) {
    const std::size_t mark = text.find(L'.');
    return {text.substr(0, mark), text.substr(mark + 1)};
}

/// Sets what the command line says of the channels.
void SetPoints(const OpenedDevice& device, const Options& options) {
    for (const auto& [name, value] : options.values) {
        const auto [key, point] = Split(name);
        SetPoint(device.Module(), device.At(key), point, value);
    }
    for (const std::wstring& name : options.displayedOfChannels) {
        const auto [key, point] = Split(name);
        SetDisplayed(device.Module(), device.At(key), point, true);
    }
}

/// "12.5; 4", as the user writes numbers.
std::string Position(IAppObject& app) {
    return Utf8(com::TextOf(NumberOf(app, &IAppObject::get_XPosition))) + "; " +
           Utf8(com::TextOf(NumberOf(app, &IAppObject::get_YPosition)));
}

std::string Shown(const Json& value) {
    if (value.is_boolean()) {
        return value.get<bool>() ? "in displays" : "not in displays";
    }
    return value.is_string() ? value.get<std::string>() : "";
}

/// What a project made of the channels' points or of the module's items.
void TellChanges(const Json& changes, const std::string& heading, Table table, const char* nameMember,
                 const char* extraMember, Answer& answer) {
    if (changes.empty()) {
        return;
    }
    answer.Heading(heading);
    for (const Json& change : changes) {
        table.Add({Shown(change["objectKey"]), Shown(change[nameMember]), Shown(change["before"]),
                   Shown(change["after"]), extraMember != nullptr ? Shown(change[extraMember]) : ""});
    }
    answer.Add(table);
}

} // namespace

void DeviceSave(Host& host, const Options& options, Answer& answer) {
    OpenedDevice device(host, options, answer);
    OpenDevice(device, options, answer);
    Place(host, options);
    if (options.fetch) {
        for (const Channel& channel : device.Channels()) {
            device.Fetch(channel);
        }
    }
    SetPoints(device, options);
    const xml::Node project = SaveProject(device);
    const Json elements = ReadElements(project);
    const std::string text = xml::Print(project);
    if (!options.output.empty()) {
        xml::Save(project, options.output);
        answer.data["file"] = Utf8(options.output);
    }
    answer.data["elements"] = elements;
    answer.data["project"] = text;
    Table table({"Element of the project", "DevKey", "TamObjectKey"});
    for (const Json& element : elements) {
        const Json& key = element["objectKey"];
        table.Add({element["element"], element["deviceKey"],
                   key.is_null() ? "(the module)" : key.get<std::string>()});
    }
    answer.Heading("The device as one project");
    answer.Add(table);
    if (options.output.empty()) {
        answer.Heading("The document");
        answer.Document(text);
    } else {
        answer.Line("\nWritten to " + Utf8(options.output) + ".");
    }
}

void DeviceLoad(Host& host, const Options& options, Answer& answer) {
    OpenedDevice device(host, options, answer);
    AddSource(options.project, answer);
    const Json result = LoadProject(device, options, answer);
    Json channels = Json::array();
    std::string keys;
    for (const Channel& channel : device.Channels()) {
        channels.push_back(ReadChannel(device, channel));
        keys += (keys.empty() ? "" : ", ") + Utf8(channel.key);
    }
    const std::string userName = TextOf(host.App(), &IAppObject::get_UserName);
    answer.data["project"] = Utf8(options.project);
    answer.data.update(result);
    answer.data["module"] = {{"userName", userName},
                             {"x", NumberOf(host.App(), &IAppObject::get_XPosition)},
                             {"y", NumberOf(host.App(), &IAppObject::get_YPosition)},
                             {"deviceKey", TextOf(host.Tam(), &ITamObject::get_DeviceKey)},
                             {"points", ReadPoints(host.App())}};
    answer.data["channels"] = channels;

    answer.Heading("What " + Utf8(options.project) + " restored");
    Fields fields;
    fields.Add("Module", "\"" + userName + "\" at " + Position(host.App()));
    fields.Add("Channels", keys.empty() ? "none" : keys);
    fields.Add("Passed over", result["passedOver"].empty() ? "nothing"
                                                           : Count(result["passedOver"].size(), "element") +
                                                                 " of other devices or blocks");
    answer.Add(fields);
    for (const Json& note : result["notes"]) {
        answer.Line("\n" + note.get<std::string>());
    }
    TellChanges(result["restored"], "Points that are not as their definitions make them",
                Table({"Channel", "Point", "By definition", "Restored", "Enumeration"}), "name", "enumDesc",
                answer);
    TellChanges(result["broughtInLine"], "Items of the module that were brought in line with their channels",
                Table({"Channel", "Item of the module", "By the stream", "By the channel"}), "moduleItem",
                nullptr, answer);
}

void DeviceExport(Host& host, const Options& options, Answer& answer) {
    OpenedDevice device(host, options, answer);
    OpenDevice(device, options, answer);
    SetPoints(device, options);
    ExportLoaded(host, options, answer);
}

} // namespace bench
