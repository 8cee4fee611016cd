#include "drawing/Svg.h"

#include "drawing/Palette.h"
#include "drawing/TextWidth.h"

#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace drawing {

namespace {

constexpr std::pair<Paint, const char*> kPaints[] = {{Paint::Body, "body"},
                                                     {Paint::Head, "head"},
                                                     {Paint::Outline, "outline"},
                                                     {Paint::Title, "title"},
                                                     {Paint::Subtitle, "subtitle"},
                                                     {Paint::Name, "name"},
                                                     {Paint::HiddenName, "hidden-name"},
                                                     {Paint::Note, "note"},
                                                     {Paint::Address, "address"},
                                                     {Paint::OpenLead, "open-lead"},
                                                     {Paint::WiredLead, "wired-lead"},
                                                     {Paint::HiddenLead, "hidden-lead"},
                                                     {Paint::OpenPin, "open-pin"},
                                                     {Paint::WiredPin, "wired-pin"},
                                                     {Paint::Tag, "tag"},
                                                     {Paint::TagText, "tag-text"},
                                                     {Paint::Mirror, "mirror"},
                                                     {Paint::MirrorPort, "mirror-port"}};

constexpr std::pair<Font, const char*> kFonts[] = {
    {Font::Title, "f-title"}, {Font::Subtitle, "f-subtitle"}, {Font::Name, "f-name"},
    {Font::Note, "f-note"},   {Font::Address, "f-address"},   {Font::Tag, "f-tag"}};

template <class Key, std::size_t n>
const char* NameOf(const std::pair<Key, const char*> (&names)[n], Key key) {
    for (const auto& [known, name] : names) {
        if (known == key) {
            return name;
        }
    }
    return "";
}

/// In hundredths, whatever the user's decimal mark is.
std::string Number(double number) {
    const long long hundredths = std::llround(number * 100);
    const long long size = hundredths < 0 ? -hundredths : hundredths;
    std::string text;
    if (hundredths < 0) {
        text = '-';
    }
    text += std::to_string(size / 100);
    if (size % 100 != 0) {
        text += '.';
        text += static_cast<char>('0' + size % 100 / 10);
        if (size % 10 != 0) {
            text += static_cast<char>('0' + size % 10);
        }
    }
    return text;
}

std::string Attribute(const char* name, const std::string& value) {
    return std::string(" ") + name + "=\"" + value + "\"";
}

std::string Attribute(const char* name, double value) {
    return Attribute(name, Number(value));
}

std::string Points(const std::vector<Point>& points) {
    std::string text;
    for (const Point& point : points) {
        text += (text.empty() ? "" : " ") + Number(point.x) + "," + Number(point.y);
    }
    return text;
}

std::string Area(const Rectangle& area) {
    return Attribute("x", area.x) + Attribute("y", area.y) + Attribute("width", area.width) +
           Attribute("height", area.height);
}

/// A shape as an element.
class ElementWriter {
  public:
    ElementWriter(const Paint& paint, const SvgOptions& options)
        : class_(Attribute("class", NameOf(kPaints, paint))), options_(options) {}

    std::string operator()(const Rectangle& rectangle) const {
        return "<rect" + class_ + Area(rectangle) +
               (rectangle.radius > 0 ? Attribute("rx", rectangle.radius) : "") + "/>";
    }
    std::string operator()(const Line& line) const {
        return "<polyline" + class_ + Attribute("points", Points(line.points)) + "/>";
    }
    std::string operator()(const Polygon& polygon) const {
        return "<polygon" + class_ + Attribute("points", Points(polygon.points)) + "/>";
    }
    std::string operator()(const Text& text) const {
        const char* const anchor = text.anchor == Anchor::Start    ? ""
                                   : text.anchor == Anchor::Middle ? " text-anchor=\"middle\""
                                                                   : " text-anchor=\"end\"";
        const std::string classes =
            class_.substr(0, class_.size() - 1) + " " + NameOf(kFonts, text.font) + "\"";
        return "<text" + classes + Attribute("x", text.at.x) + Attribute("y", text.at.y) + anchor + ">" +
               Escaped(text.text) + "</text>";
    }
    std::string operator()(const Picture& picture) const {
        return options_.icon.empty()
                   ? ""
                   : "<image" + Area(picture.area) + Attribute("href", Escaped(options_.icon)) + "/>";
    }

  private:
    std::string class_;
    const SvgOptions& options_;
};

std::string ColourText(Colour colour) {
    constexpr const char* kDigits = "0123456789abcdef";
    std::string text = "#";
    for (int shift = 20; shift >= 0; shift -= 4) {
        text += kDigits[colour >> static_cast<unsigned>(shift) & 0xFU];
    }
    return text;
}

std::string Colours(Scheme scheme) {
    std::string text = ".block-drawing .ground{fill:" + ColourText(Background(scheme)) + "}";
    for (const auto& [paint, name] : kPaints) {
        const Look look = LookOf(paint, scheme);
        text +=
            std::string(".block-drawing .") + name + "{fill:" + (look.fill ? ColourText(*look.fill) : "none");
        if (look.stroke) {
            text += ";stroke:" + ColourText(*look.stroke);
        }
        text += "}";
    }
    return text;
}

} // namespace

std::string Escaped(std::string_view text) {
    std::string escaped;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        const char32_t character = NextCharacter(text, at);
        const bool isControl = (character < 0x20 && character != '\t' && character != '\n') ||
                               (character >= 0x7F && character <= 0x9F);
        // What Unicode has for no character: 32 in a row, and the last two of each plane.
        const bool isNone = (character & 0xFFFEU) == 0xFFFEU ||
                            (character >= 0xFDD0 && character <= 0xFDEF) || character == 0xFFFD;
        switch (character) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        case '\'':
            escaped += "&#39;";
            break;
        default:
            escaped += isControl || isNone ? "\uFFFD" : std::string(text.substr(start, at - start));
        }
    }
    return escaped;
}

std::string InWords(const Pin& pin, Side side) {
    std::string words = (side == Side::Input ? "input " : "output ") + pin.name;
    if (!pin.type.empty()) {
        words += ", type " + pin.type;
    }
    if (!pin.address.empty()) {
        words += ", address " + pin.address;
    }
    if (pin.isWired) {
        words += pin.wiredTo.empty() ? ", wired" : ", wired to " + pin.wiredTo;
    }
    return pin.isHidden ? words + ", hidden" : words;
}

std::string SvgStyle() {
    std::string style =
        ".block-drawing text{font-family:system-ui,\"Segoe UI\",Roboto,\"Helvetica Neue\",Arial,sans-serif}";
    for (const auto& [font, name] : kFonts) {
        const FontShape shape = ShapeOf(font);
        style += std::string(".block-drawing .") + name + "{font-size:" + Number(shape.size) + "px" +
                 (shape.isBold ? ";font-weight:600" : "") + "}";
    }
    for (const auto& [paint, name] : kPaints) {
        const Look look = LookOf(paint, Scheme::Light);
        if (look.stroke) {
            style += std::string(".block-drawing .") + name + "{stroke-width:" + Number(look.strokeWidth) +
                     (look.isDashed ? ";stroke-dasharray:4 3" : "") + "}";
        }
    }
    return style + Colours(Scheme::Light) + "@media screen and (prefers-color-scheme:dark){" +
           Colours(Scheme::Dark) + "}";
}

std::string Svg(const Drawing& drawing, const Sheet& sheet, const SvgOptions& options) {
    const std::string title = options.prefix + "-title";
    const std::string description = options.prefix + "-description";
    // Lines of one unit lie between whole numbers, so that they are crisp.
    std::string svg =
        "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"block-drawing\" role=\"img\"" +
        Attribute("aria-labelledby", title + " " + description) +
        Attribute("viewBox", "-0.5 -0.5 " + Number(drawing.width) + " " + Number(drawing.height)) +
        Attribute("width", drawing.width) + Attribute("height", drawing.height) + ">\n<title" +
        Attribute("id", title) + ">" + Escaped(options.title) + "</title>\n<desc" +
        Attribute("id", description) + ">" + Escaped(options.description) + "</desc>\n";
    if (options.isDocument) {
        svg += "<style>" + SvgStyle() + "</style>\n<rect class=\"ground\"" +
               Area({-0.5, -0.5, drawing.width, drawing.height}) + "/>\n";
    }
    std::optional<PinId> open;
    for (const Item& item : drawing.items) {
        if (open && item.pin != open) {
            svg += "</g>\n";
            open.reset();
        }
        const Pin* const pin = item.pin ? Find(sheet, *item.pin) : nullptr;
        if (pin != nullptr && !open) {
            svg += "<g><title>" + Escaped(InWords(*pin, item.pin->side)) + "</title>";
            open = item.pin;
        }
        svg += std::visit(ElementWriter(item.paint, options), item.shape) + (open ? "" : "\n");
    }
    return svg + (open ? "</g>\n" : "") + "</svg>\n";
}

} // namespace drawing
