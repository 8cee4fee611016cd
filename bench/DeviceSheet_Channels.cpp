#include "bench/DevicePoints.h"
#include "bench/DeviceSheet.h"
#include "bench/Text.h"

#include "page/Page.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

namespace bench {

namespace {

std::string TextOr(const Json& object, const char* member) {
    const auto found = object.find(member);
    return found != object.end() && found->is_string() ? found->get<std::string>() : "";
}

std::string TypeOf(const Json& point) {
    const Json type = point.value("type", Json());
    return type.is_null() ? "" : TypeTitle(type);
}

/// Where the module's block has an item; nothing for an attribute, which has no pin.
std::optional<drawing::PinId> PinOfModule(const drawing::Block& module, const Json& item) {
    if (item.is_null() || item["kind"] == "attribute") {
        return std::nullopt;
    }
    const drawing::Side side = item["kind"] == "input" ? drawing::Side::Input : drawing::Side::Output;
    const auto& pins = side == drawing::Side::Input ? module.inputs : module.outputs;
    const auto found = std::find_if(pins.begin(), pins.end(), [&](const drawing::Pin& pin) {
        return pin.name == item["name"].get<std::string>();
    });
    if (found == pins.end()) {
        return std::nullopt;
    }
    return drawing::PinId{0, side, static_cast<std::size_t>(found - pins.begin())};
}

/// A channel as a block beside the module, joined to the items that have its values.
void AddBlock(const Json& channel, drawing::Sheet& sheet) {
    const std::size_t number = sheet.channels.size() + 1;
    drawing::Block block;
    block.name = channel["objectKey"];
    block.subtitle = channel["name"];
    for (const Json& point : channel["points"]) {
        if (point["kind"] == "attribute") {
            continue;
        }
        const drawing::Side side = point["kind"] == "input" ? drawing::Side::Input : drawing::Side::Output;
        auto& pins = side == drawing::Side::Input ? block.inputs : block.outputs;
        drawing::Pin pin;
        pin.name = point["name"];
        pin.type = TypeOf(point);
        pin.isHidden = !point["visible"].get<bool>();
        if (const auto item = PinOfModule(sheet.module, point["moduleItem"])) {
            sheet.mirrors.push_back({*item, {number, side, pins.size()}});
        }
        pins.push_back(std::move(pin));
    }
    sheet.channels.push_back(std::move(block));
}

page::Table TableOf(const Json& channel) {
    page::Table table{
        "Channel " + channel["objectKey"].get<std::string>(),
        channel["name"].get<std::string>() + " (" + channel["definition"].get<std::string>() +
            "): its points, and the module's items that have the same values.",
        "The channel has no points.",
        {{"Name"}, {"Kind"}, {"Type"}, {"Value", true}, {"Displayed as"}, {"Item of the module"}, {"Marks"}},
        {}};
    for (const Json& point : channel["points"]) {
        const Json& item = point["moduleItem"];
        const bool isHidden = !point["visible"].get<bool>();
        const bool isDisplayed = point.value("displayable", false);
        table.rows.push_back({{point["name"]},
                              {point["kind"]},
                              {TypeOf(point)},
                              {TextOr(point, "value")},
                              {TextOr(point, "display")},
                              {item.is_null() ? "" : TextOr(item, "name")},
                              {isHidden && isDisplayed ? "in displays, hidden"
                               : isDisplayed           ? "in displays"
                               : isHidden              ? "hidden"
                                                       : ""}});
    }
    return table;
}

} // namespace

void AddChannels(const OpenedDevice& device, page::Page& page) {
    for (const Channel& placed : device.Channels()) {
        const Json channel = ReadChannel(device, placed);
        AddBlock(channel, page.sheet);
        page.points.push_back(TableOf(channel));
    }
}

} // namespace bench
