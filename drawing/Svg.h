#pragma once

#include "drawing/DisplayList.h"
#include "drawing/Sheet.h"

#include <string>
#include <string_view>

namespace drawing {

struct SvgOptions {
    /// What the picture is, for those who do not see it.
    std::string title = {};
    std::string description = {};
    /// The address of the module's icon, "data:…" for one within the document; no
    /// icon without it.
    std::string icon = {};
    /// Before the identifiers of elements, which are to be unique in a document.
    std::string prefix = "block";
    /// A document of its own, with its style and a background. Else it is a part of
    /// a page, which has SvgStyle.
    bool isDocument = true;
};

/// The drawing as SVG. Each pin has a title, which browsers show beside the pointer.
std::string Svg(const Drawing& drawing, const Sheet& sheet, const SvgOptions& options);

/// The style of the drawing's elements, with light colours, and dark ones for
/// screens of those who prefer them.
std::string SvgStyle();

/// A text as XML and HTML take it in content and in quoted attributes. What cannot
/// stand there becomes U+FFFD.
std::string Escaped(std::string_view text);

/// "input AO1_In1, type 81 lev_percent, address 1, wired to AI1_Out"
std::string InWords(const Pin& pin, Side side);

} // namespace drawing
