#pragma once

#include "view/Window.h"

#include "drawing/Palette.h"

#include <windows.h>

#include <commctrl.h>

#include <memory>
#include <type_traits>

namespace view {

/// The pictures of the toolbar, in the order of their place in an image list.
enum class Glyph { Open, Save, Undo, Redo, Edit, ZoomIn, ZoomOut, Fit, Si, Us, Findings, Source };
inline constexpr int kGlyphs = 12;

struct DestroyImages {
    void operator()(HIMAGELIST images) const noexcept { ImageList_Destroy(images); }
};
using Images = std::unique_ptr<std::remove_pointer_t<HIMAGELIST>, DestroyImages>;

/// The pictures in a size and a colour: they are drawn as lines, so each scale has sharp ones.
Images MakeGlyphs(Scaling scaling, drawing::Colour colour);

} // namespace view
