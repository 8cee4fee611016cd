// The commands that act on a device with its channels: tree, place, fetch, set. Each shows
// the channels' points beside the module's, to which their values are mirrored.

#include "bench/Commands.h"
#include "bench/DevicePoints.h"
#include "bench/DeviceProject.h"
#include "bench/Text.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace bench {

namespace {

std::string TextOr(const Json& object, const char* member, const std::string& otherwise = "") {
    const auto found = object.find(member);
    return found != object.end() && found->is_string() ? found->get<std::string>() : otherwise;
}

std::string TypeCell(const Json& point) {
    if (point["kind"] == "input") {
        std::string accepted;
        for (const Json& id : point["accepts"]) {
            accepted += (accepted.empty() ? "accepts " : ",") + id.get<std::string>();
        }
        return accepted;
    }
    return TypeTitle(point["type"]);
}

/// "AI1_Offset = -0.50"; empty for a point that the module has no item for.
std::string ItemCell(const Json& item) {
    if (item.is_null()) {
        return "";
    }
    const std::string name = item["name"];
    const std::string value = TextOr(item, "value");
    return value.empty() ? name : name + " = " + value;
}

/// Where the configuration of a definition overrules its VISIBLE, it is named.
std::string VisibleCell(const Json& point) {
    const bool isVisible = point["visible"];
    const Json visibility = point.value("visibility", Json());
    const bool isConfigured = visibility.is_object() && visibility["TAMConfig"].is_string();
    const bool isShown =
        visibility.is_object() && visibility["VISIBLE"].is_string() && visibility["VISIBLE"] != "0";
    if (isConfigured && isShown != isVisible) {
        return isVisible ? "yes (TAMConfig)" : "no (TAMConfig)";
    }
    return isVisible ? "yes" : "no";
}

std::string DisplayCell(const Json& point) {
    return point.value("displayable", false) ? "(in displays)" : TextOr(point, "display");
}

Table PointTable(const Json& points, bool ofChannel) {
    std::vector<std::string> headings{"", "Name", "Type (SNVT)", "Value", "Displayed as", "Visible"};
    if (ofChannel) {
        headings.emplace_back("Item of the module");
    }
    Table table(headings);
    for (const Json& point : points) {
        std::vector<std::string> cells{point["kind"],          point["name"],      TypeCell(point),
                                       TextOr(point, "value"), DisplayCell(point), VisibleCell(point)};
        if (ofChannel) {
            cells.push_back(ItemCell(point["moduleItem"]));
        }
        table.Add(cells);
    }
    return table;
}

void TellChannel(const Json& channel, Answer& answer) {
    answer.Heading("Channel " + channel["objectKey"].get<std::string>() + " of " +
                   channel["deviceKey"].get<std::string>() + ": " + channel["name"].get<std::string>() +
                   " (" + channel["definition"].get<std::string>() + ")");
    answer.Add(PointTable(channel["points"], true));
}

Json StateOf(const Json& point) {
    const Json& item = point["moduleItem"];
    return {{"value", TextOr(point, "value")},
            {"display", TextOr(point, "display")},
            {"enumDesc", point.contains("type") ? Json(TextOr(point["type"], "enumDesc")) : Json()},
            {"moduleItem", item.is_null() ? Json() : Json(TextOr(item, "value"))}};
}

/// What became of a channel's points, those that are chosen.
Json ReadChanges(const Json& before, const Json& after, const std::function<bool(const Json&)>& isChosen) {
    Json changes = Json::array();
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (isChosen(after[i])) {
            const Json& item = after[i]["moduleItem"];
            changes.push_back({{"name", after[i]["name"]},
                               {"kind", after[i]["kind"]},
                               {"moduleItem", item.is_null() ? Json() : item["name"]},
                               {"before", StateOf(before[i])},
                               {"after", StateOf(after[i])}});
        }
    }
    return changes;
}

/// A point's state before and after, each in a row; one row for an unchanged point.
Table ChangeTable(const Json& changes) {
    Table table({"Point", "", "Value", "Displayed as", "Item of the module", "Its value"});
    for (const Json& change : changes) {
        const std::string item = TextOr(change, "moduleItem", "(has none)");
        const auto add = [&](const char* when, const Json& state, bool isFirst) {
            table.Add({isFirst ? change["name"] : "", when, state["value"], state["display"],
                       isFirst ? item : "", TextOr(state, "moduleItem")});
        };
        if (change["before"] == change["after"]) {
            add("unchanged", change["after"], true);
        } else {
            add("before", change["before"], true);
            add("after", change["after"], false);
        }
    }
    return table;
}

/// The enumerations that the device has given; a channel number has none.
void TellEnumerations(const Json& changes, Answer& answer) {
    Fields fields;
    for (const Json& change : changes) {
        const std::string before = TextOr(change["before"], "enumDesc");
        const std::string after = TextOr(change["after"], "enumDesc");
        if (before != after) {
            fields.Add(change["name"].get<std::string>() + ", before", before.empty() ? "none" : before);
            fields.Add(change["name"].get<std::string>() + ", after", after.empty() ? "none" : after);
        }
    }
    if (!fields.IsEmpty()) {
        answer.Heading("Enumerations: number and label of each entry");
        answer.Add(fields);
    }
}

} // namespace

void DeviceTree(Host& host, const Options& options, Answer& answer) {
    OpenedDevice device(host, options, answer);
    OpenDevice(device, options, answer);
    Json module;
    host.Step("reading the module", [&] {
        module = {{"name", TextOf(host.App(), &IAppObject::get_UserName)},
                  {"definition", TextOf(host.App(), &IAppObject::get_UniqueIDString)},
                  {"deviceKey", TextOf(host.Tam(), &ITamObject::get_DeviceKey)},
                  {"points", ReadPoints(host.App())}};
    });
    answer.data["module"] = module;
    answer.Heading("Device " + Utf8(device.Key()) + ": module \"" + module["name"].get<std::string>() + "\"");
    answer.Add(PointTable(module["points"], false));
    Json& channels = answer.data["channels"] = Json::array();
    for (const Channel& channel : device.Channels()) {
        channels.push_back(ReadChannel(device, channel));
        TellChannel(channels.back(), answer);
    }
}

void DevicePlace(Host& host, const Options& options, Answer& answer) {
    OpenedDevice device(host, options, answer);
    OpenDevice(device, options, answer);
    const std::wstring identifier = device.IdentifierOf(options.kind);
    const Channel& channel = device.Place(identifier, options.objectKey);
    TakeFromModule(device, channel);
    const Json& state = answer.data["channel"] = ReadChannel(device, channel);
    TellChannel(state, answer);
    const bool hasItems = std::any_of(state["points"].begin(), state["points"].end(),
                                      [](const Json& point) { return !point["moduleItem"].is_null(); });
    if (!hasItems) {
        answer.Line("\nThe module has no items whose names begin with " + Utf8(channel.key) +
                    "_, so nothing that is set here goes on to it.");
    }
    Json& keys = answer.data["channels"] = Json::array();
    std::string all;
    for (const Channel& placed : device.Channels()) {
        keys.push_back(Utf8(placed.key));
        all += (all.empty() ? "" : ", ") + Utf8(placed.key);
    }
    answer.Line("\nThe device has the channels " + all + " now.");
}

void DeviceFetch(Host& host, const Options& options, Answer& answer) {
    OpenedDevice device(host, options, answer);
    OpenDevice(device, options, answer);
    const Channel& channel = device.At(options.objectKey);
    const Json before = ReadPoints(device, channel);
    device.Fetch(channel);
    const Json after = ReadPoints(device, channel);
    const Json changes =
        ReadChanges(before, after, [](const Json& point) { return point["kind"] == "attribute"; });
    answer.data["objectKey"] = Utf8(channel.key);
    answer.data["attributes"] = changes;
    answer.Heading("Attributes of " + Utf8(channel.key) + ", before and after getting data from the device");
    answer.Add(ChangeTable(changes));
    TellEnumerations(changes, answer);
}

void DeviceSet(Host& host, const Options& options, Answer& answer) {
    OpenedDevice device(host, options, answer);
    OpenDevice(device, options, answer);
    const Channel& channel = device.At(options.objectKey);
    Json changes = Json::array();
    for (const auto& [name, value] : options.values) {
        const Json before = ReadPoints(device, channel);
        SetPoint(host, channel, name, value);
        const Json after = ReadPoints(device, channel);
        const auto isSet = [&, &pointName = name](const Json& point) {
            return point["kind"] != "output" && SameKey(Wide(point["name"].get<std::string>()), pointName);
        };
        for (const Json& change : ReadChanges(before, after, isSet)) {
            changes.push_back(change);
        }
    }
    answer.data["objectKey"] = Utf8(channel.key);
    answer.data["changes"] = changes;
    answer.Heading("Points of " + Utf8(channel.key) + ", and what became of the module's items");
    answer.Add(ChangeTable(changes));
}

} // namespace bench
