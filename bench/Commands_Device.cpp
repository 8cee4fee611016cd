#include "bench/Commands.h"
#include "bench/Device.h"
#include "bench/Text.h"

#include <functional>

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
    return item.contains("value") ? name + " = " + TextOr(item, "value") : name;
}

Table PointTable(const Json& points, bool ofChannel) {
    std::vector<std::string> headings{"", "Name", "Type (SNVT)", "Value", "Displayed as", "Visible"};
    if (ofChannel) {
        headings.emplace_back("Item of the module");
    }
    Table table(headings);
    for (const Json& point : points) {
        std::vector<std::string> cells{point["kind"],
                                       point["name"],
                                       TypeCell(point),
                                       TextOr(point, "value"),
                                       TextOr(point, "display"),
                                       point["visible"].get<bool>() ? "yes" : "hidden"};
        if (ofChannel) {
            cells.push_back(ItemCell(point["moduleItem"]));
        }
        table.Add(cells);
    }
    return table;
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

Table ChangeTable(const Json& changes) {
    Table table({"Point", "", "Value", "Displayed as", "Item of the module", "Its value"});
    for (const Json& change : changes) {
        for (const char* const when : {"before", "after"}) {
            const bool isFirst = when == std::string("before");
            const Json& state = change[when];
            table.Add({isFirst ? change["name"] : "", when, state["value"], state["display"],
                       isFirst ? TextOr(change, "moduleItem", "none") : "", TextOr(state, "moduleItem")});
        }
    }
    return table;
}

/// The enumerations that the device has given; a channel number has none.
void TellEnumerations(const Json& changes, Report& report) {
    Fields fields;
    for (const Json& change : changes) {
        const std::string before = TextOr(change["before"], "enumDesc");
        const std::string after = TextOr(change["after"], "enumDesc");
        if (!before.empty() || !after.empty()) {
            fields.Add(change["name"].get<std::string>() + ", before", before.empty() ? "none" : before);
            fields.Add(change["name"].get<std::string>() + ", after", after.empty() ? "none" : after);
        }
    }
    report.Heading("Enumerations of the attributes");
    fields.IsEmpty() ? report.Line("  none") : report.Add(fields);
}

} // namespace

void DeviceTree(Host& host, const Options& options, Report& report) {
    SampleDevice device(host, options, report);
    device.PlaceAll();
    Json module;
    host.Step("reading the module", [&] {
        module = {{"name", TextOf(host.App(), &IAppObject::get_UserName)},
                  {"definition", TextOf(host.App(), &IAppObject::get_UniqueIDString)},
                  {"deviceKey", TextOf(host.Tam(), &ITamObject::get_DeviceKey)},
                  {"points", ReadPoints(host.App())}};
    });
    report.data["module"] = module;
    report.Heading("Device " + Utf8(device.Key()) + ": module \"" + module["name"].get<std::string>() + "\"");
    report.Add(PointTable(module["points"], false));
    Json& channels = report.data["channels"] = Json::array();
    for (const Channel& channel : device.Channels()) {
        const Json state = ReadChannel(device, channel);
        report.Heading("Channel " + state["objectKey"].get<std::string>() + " of " +
                       state["deviceKey"].get<std::string>() + ": " + state["name"].get<std::string>());
        report.Add(PointTable(state["points"], true));
        channels.push_back(state);
    }
}

void DeviceFetch(Host& host, const Options& options, Report& report) {
    SampleDevice device(host, options, report);
    device.PlaceAll();
    const Channel& channel = device.At(options.objectKey);
    const Json before = ReadPoints(device, channel);
    device.Fetch(channel);
    const Json after = ReadPoints(device, channel);
    const Json changes =
        ReadChanges(before, after, [](const Json& point) { return point["kind"] == "attribute"; });
    report.data["objectKey"] = Utf8(channel.key);
    report.data["attributes"] = changes;
    report.Heading("Attributes of " + Utf8(channel.key) + ", before and after getting data from the device");
    report.Add(ChangeTable(changes));
    TellEnumerations(changes, report);
}

void DeviceSet(Host& host, const Options& options, Report& report) {
    SampleDevice device(host, options, report);
    device.PlaceAll();
    const Channel& channel = device.At(options.objectKey);
    report.data["objectKey"] = Utf8(channel.key);
    Json& changes = report.data["changes"] = Json::array();
    for (const auto& [name, value] : options.values) {
        const Json before = ReadPoints(device, channel);
        SetPoint(host, channel, name, value);
        const Json after = ReadPoints(device, channel);
        const auto isSet = [&](const Json& point) {
            return point["kind"] != "output" &&
                   lstrcmpiW(Wide(point["name"].get<std::string>()).c_str(), name.c_str()) == 0;
        };
        for (const Json& change : ReadChanges(before, after, isSet)) {
            changes.push_back(change);
        }
    }
    report.Heading("Points of " + Utf8(channel.key));
    report.Add(ChangeTable(changes));
}

} // namespace bench
