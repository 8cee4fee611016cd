#include "page/Html.h"

#include "drawing/Layout.h"
#include "drawing/Svg.h"
#include "page/Base64.h"
#include "page/Sha256.h"
#include "page/Style.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace page {

using drawing::Escaped;

namespace {

constexpr const char* kBlock = "block";
constexpr const char* kModule = "module";
constexpr const char* kEnumerations = "enumerations";
constexpr const char* kFindings = "findings";

std::string IdOf(std::size_t table) {
    return "points-" + std::to_string(table + 1);
}

/// Nothing is fetched from anywhere, no script runs, and no style but this one holds.
std::string Policy(const std::string& style) {
    const std::array<std::uint8_t, 32> digest = Sha256(style);
    return "default-src 'none'; img-src data:; style-src 'sha256-" +
           Base64(std::string(digest.begin(), digest.end())) + "'; base-uri 'none'; form-action 'none'";
}

std::string Head(const Page& page) {
    const std::string style = Style();
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta http-equiv=\"Content-Security-Policy\" content=\"" +
           Policy(style) +
           "\">\n<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<meta name=\"color-scheme\" content=\"light dark\">\n"
           "<meta name=\"referrer\" content=\"no-referrer\">\n<link rel=\"icon\" href=\"data:,\">\n<title>" +
           Escaped(page.title.empty() ? "Device sheet" : page.title) + "</title>\n<style>" + style +
           "</style>\n</head>\n";
}

std::string Count(std::size_t number, const char* noun) {
    return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

drawing::SvgOptions OptionsOf(const Page& page) {
    const auto isWired = [](const drawing::Pin& pin) { return pin.isWired; };
    const drawing::Block& module = page.sheet.module;
    const auto wired = std::count_if(module.inputs.begin(), module.inputs.end(), isWired) +
                       std::count_if(module.outputs.begin(), module.outputs.end(), isWired);
    drawing::SvgOptions options;
    options.title = "The block of " + page.title;
    options.description = Count(module.inputs.size(), "input") + " at the left, " +
                          Count(module.outputs.size(), "output") + " at the right, " +
                          Count(static_cast<std::size_t>(wired), "point") + " wired.";
    if (!page.sheet.channels.empty()) {
        options.description += " " + Count(page.sheet.channels.size(), "channel") + " beside it, " +
                               Count(page.sheet.mirrors.size(), "point") +
                               " of them joined to the module's items.";
    }
    options.icon = page.icon.empty() ? "" : "data:image/png;base64," + Base64(page.icon);
    return options;
}

/// A block of a page; `prefix` is before the identifiers of its elements.
std::string DrawingHtml(const drawing::Sheet& sheet, drawing::Format format, const std::string& prefix,
                        drawing::SvgOptions options) {
    options.prefix = prefix;
    options.isDocument = false;
    return drawing::Svg(Draw(sheet, drawing::WidthByTable, format), sheet, options);
}

/// Where lines have no room, each channel is a drawing of its own, whose pins say what they
/// are joined to.
drawing::Sheet ChannelAlone(const drawing::Sheet& sheet, std::size_t channel) {
    drawing::Sheet alone{sheet.channels[channel], {}, {}};
    for (const drawing::Mirror& mirror : sheet.mirrors) {
        const drawing::Pin* const item = Find(sheet, mirror.module);
        const auto& [block, side, index] = mirror.channel;
        auto& pins = side == drawing::Side::Input ? alone.module.inputs : alone.module.outputs;
        if (block == channel + 1 && index < pins.size() && item != nullptr) {
            pins[index].isWired = true;
            pins[index].wiredTo = item->name;
        }
    }
    return alone;
}

/// The block twice: one of the two is shown, by the width of the window.
std::string Drawings(const Page& page) {
    const drawing::SvgOptions options = OptionsOf(page);
    std::string html =
        "<div class=\"block-wide\">" + DrawingHtml(page.sheet, drawing::Format::Wide, "block-wide", options) +
        "</div>\n<div class=\"block-narrow\">" +
        DrawingHtml({page.sheet.module, {}, {}}, drawing::Format::Narrow, "block-narrow", options);
    for (std::size_t i = 0; i < page.sheet.channels.size(); ++i) {
        drawing::SvgOptions own;
        own.title = "The channel " + page.sheet.channels[i].name;
        html += DrawingHtml(ChannelAlone(page.sheet, i), drawing::Format::Narrow,
                            "block-narrow-" + std::to_string(i + 1), own);
    }
    return html + "</div>\n";
}

std::string Link(const std::string& id, const std::string& text) {
    return "<li><a href=\"#" + id + "\">" + text + "</a></li>\n";
}

std::string Header(const Page& page) {
    std::string html =
        "<header>\n<h1>" + Escaped(page.title.empty() ? "Device sheet" : page.title) + "</h1>\n";
    if (!page.subtitle.empty()) {
        html += "<p class=\"subtitle\">" + Escaped(page.subtitle) + "</p>\n";
    }
    html += "<nav aria-label=\"Contents\"><ul>\n" + Link(kBlock, "Block") + Link(kModule, "Module");
    for (std::size_t i = 0; i < page.points.size(); ++i) {
        html += Link(IdOf(i), HeadingHtml(page.points[i].title, page.points[i].rows.size()));
    }
    if (!page.enumerations.empty()) {
        html += Link(kEnumerations, HeadingHtml("Enumerations", page.enumerations.size()));
    }
    if (page.isChecked) {
        html += Link(kFindings, HeadingHtml("Findings", page.findings.size()));
    }
    return html + "</ul></nav>\n</header>\n";
}

std::string Section(const char* id, const std::string& heading, const std::string& content) {
    return "<section aria-labelledby=\"" + std::string(id) + "\">\n<h2 id=\"" + id + "\">" + heading +
           "</h2>\n" + content + "</section>\n";
}

std::string Overview(const Page& page) {
    std::string facts;
    for (const Facts& group : page.identity) {
        facts += FactsHtml(group);
    }
    // A device is wider than its module alone: it takes the whole width, or is drawn apart.
    return std::string("<div class=\"overview") + (page.sheet.channels.empty() ? "" : " device") + "\">\n" +
           Section(
               kBlock, "Block",
               "<figure>\n" + Drawings(page) +
                   "<figcaption>Inputs left, outputs right; below each name its type, beside each pin its "
                   "address. A filled arrow is wired, and the tag says to what. Pale names are hidden." +
                   (page.sheet.channels.empty() ? ""
                                                : " Lines join points that have one value; where there are "
                                                  "none, the tags of channels name "
                                                  "the other one.") +
                   "</figcaption>\n</figure>\n") +
           Section(kModule, "Module", "<div class=\"facts\">\n" + facts + "</div>\n") + "</div>\n";
}

std::string Enumerations(const Page& page) {
    if (page.enumerations.empty()) {
        return "";
    }
    std::string html = "<div class=\"enumerations\">\n";
    for (const Enumeration& enumeration : page.enumerations) {
        html += EnumerationHtml(enumeration);
    }
    return Section(kEnumerations, HeadingHtml("Enumerations", page.enumerations.size()), html + "</div>\n");
}

std::string Findings(const Page& page) {
    if (!page.isChecked) {
        return "";
    }
    std::string html;
    for (const Finding& finding : page.findings) {
        html += FindingHtml(finding);
    }
    return Section(kFindings, HeadingHtml("Findings", page.findings.size()),
                   page.findings.empty()
                       ? "<p class=\"good\">The check found nothing to complain about.</p>\n"
                       : "<ul class=\"findings\">\n" + html + "</ul>\n");
}

} // namespace

std::string Html(const Page& page) {
    std::string html = Head(page) + "<body>\n<a class=\"skip\" href=\"#main\">Skip to the content</a>\n" +
                       Header(page) + "<main id=\"main\">\n" + Overview(page);
    for (std::size_t i = 0; i < page.points.size(); ++i) {
        html += TableHtml(page.points[i], IdOf(i));
    }
    html += Enumerations(page) + Findings(page) + "</main>\n";
    if (!page.origin.empty()) {
        html += "<footer>" + Escaped(page.origin) + "</footer>\n";
    }
    return html + "</body>\n</html>\n";
}

std::string Svg(const Page& page) {
    return drawing::Svg(Draw(page.sheet), page.sheet, OptionsOf(page));
}

} // namespace page
