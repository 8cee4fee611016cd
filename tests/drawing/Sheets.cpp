#include "tests/drawing/Sheets.h"

#include <variant>

namespace drawingtest {

using namespace drawing;

double EvenWidth(std::string_view text, Font font) {
    return static_cast<double>(text.size()) * ShapeOf(font).size / 2;
}

Pin OpenPin(const std::string& name, const std::string& type, const std::string& address) {
    return {.name = name, .type = type, .address = address};
}

Pin WiredPin(const std::string& name, const std::string& wiredTo) {
    return {.name = name, .type = "95 switch", .address = "2", .isWired = true, .wiredTo = wiredTo};
}

Sheet SmallSheet() {
    Sheet sheet;
    sheet.module = {.name = "Reading room",
                    .subtitle = "Remote I/O",
                    .hasIcon = true,
                    .inputs = {OpenPin("AO1_In1", "81 lev_percent", "11"), WiredPin("DO1_In1", "DI1_Out"),
                               OpenPin("CTX1_In1", "", "")},
                    .outputs = {WiredPin("DI1_Out", "DO1_In1"), OpenPin("AI1_Out", "105 temp_p", "14")}};
    return sheet;
}

Sheet SheetWithChannels() {
    Sheet sheet;
    sheet.module.name = "Reading room";
    sheet.module.inputs = {OpenPin("AO1_In1"), OpenPin("AO1_In2"), OpenPin("DO1_In1")};
    sheet.module.outputs = {OpenPin("AI1_Out"), OpenPin("AO1_Out"), OpenPin("DO1_Out")};
    sheet.channels = {
        {.name = "AI1", .outputs = {OpenPin("Out")}},
        {.name = "AO1", .inputs = {OpenPin("In1"), OpenPin("In2")}, .outputs = {OpenPin("Out")}},
        {.name = "DO1", .inputs = {OpenPin("In1")}, .outputs = {OpenPin("Out")}}};
    sheet.mirrors = {
        {{0, Side::Output, 0}, {1, Side::Output, 0}}, {{0, Side::Input, 0}, {2, Side::Input, 0}},
        {{0, Side::Input, 1}, {2, Side::Input, 1}},   {{0, Side::Output, 1}, {2, Side::Output, 0}},
        {{0, Side::Input, 2}, {3, Side::Input, 0}},   {{0, Side::Output, 2}, {3, Side::Output, 0}}};
    return sheet;
}

std::vector<std::string> TextsOf(const Drawing& drawing, Paint paint) {
    std::vector<std::string> texts;
    for (const Text& text : ShapesOf<Text>(drawing, paint)) {
        texts.push_back(text.text);
    }
    return texts;
}

std::vector<std::string> TextsOf(const Drawing& drawing, const PinId& pin) {
    std::vector<std::string> texts;
    for (const Item& item : drawing.items) {
        const auto* const text = std::get_if<Text>(&item.shape);
        if (text != nullptr && item.pin == pin) {
            texts.push_back(text->text);
        }
    }
    return texts;
}

namespace {

struct Corners {
    std::vector<Point>& all;

    void Add(const Rectangle& area) const {
        all.push_back({area.x, area.y});
        all.push_back({area.x + area.width, area.y + area.height});
    }
    void operator()(const Rectangle& area) const { Add(area); }
    void operator()(const Picture& picture) const { Add(picture.area); }
    void operator()(const Line& line) const { all.insert(all.end(), line.points.begin(), line.points.end()); }
    void operator()(const Polygon& polygon) const {
        all.insert(all.end(), polygon.points.begin(), polygon.points.end());
    }
    void operator()(const Text& text) const { all.push_back(text.at); }
};

} // namespace

std::vector<Point> CornersOf(const Drawing& drawing) {
    std::vector<Point> corners;
    for (const Item& item : drawing.items) {
        std::visit(Corners{corners}, item.shape);
    }
    return corners;
}

} // namespace drawingtest
