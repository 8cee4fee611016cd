#include "view/SheetView.h"

#include "view/IconFile.h"
#include "view/resource.h"
#include "view/SheetAccessible.h"

#include "bench/Text.h"
#include "drawing/Layout.h"
#include "drawing/Svg.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace view {

namespace {

using drawing::PinId;

/// A sheet that would be smaller as a whole is shown from its top.
constexpr double kReadable = 0.6;

/// What BeginPaint lends, until this ends.
struct Painted {
    explicit Painted(HWND owner) noexcept : window(owner), target(BeginPaint(owner, &paint)) {}
    ~Painted() { EndPaint(window, &paint); }
    Painted(const Painted&) = delete;
    Painted& operator=(const Painted&) = delete;

    HWND window;
    PAINTSTRUCT paint{};
    HDC target;
};

} // namespace

SheetView::SheetView(HWND parent, int id, Events events) : events_(std::move(events)) {
    Shape shape{.className = VIEW_SHEET_CLASS};
    shape.style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS;
    shape.classStyle = CS_DBLCLKS;
    shape.parent = parent;
    shape.id = id;
    Create(shape);
    viewport_.SetDpi(Scaling::Of(parent).Dpi());
    TellName();
}

void SheetView::Show(drawing::Sheet sheet, const std::string& icon) {
    icon_.reset(IconOfFile(icon, 2 * Scaling::Of(Handle())(32)));
    sheet.module.hasIcon = icon_ != nullptr;
    sheet_ = std::move(sheet);
    drawing_ = drawing::Draw(sheet_);
    picked_.reset();
    isShown_ = true;
    NotifyWinEvent(EVENT_OBJECT_REORDER, Handle(), OBJID_CLIENT, CHILDID_SELF);
    viewport_.SetSheet({drawing_.width, drawing_.height});
    if (viewport_.Zoom() < kReadable) {
        ShowTop();
    }
    TellName();
    TellZoom();
    Repaint();
}

void SheetView::ShowTop() {
    RECT area{};
    GetClientRect(Handle(), &area);
    const double width = drawing_.width * viewport_.Scale();
    const double room = area.right - 2 * Viewport::kMargin;
    const double times = std::clamp(room / width, kReadable / viewport_.Zoom(), 1 / viewport_.Zoom());
    viewport_.ZoomAbout({0, 0}, times);
    const drawing::Point corner = viewport_.ToScreen(drawing::Point{0, 0});
    const double left = std::max(Viewport::kMargin, (area.right - drawing_.width * viewport_.Scale()) / 2);
    viewport_.Drag(left - corner.x, Viewport::kMargin - corner.y);
}

void SheetView::Refresh(drawing::Sheet sheet) {
    sheet.module.hasIcon = icon_ != nullptr;
    sheet_ = std::move(sheet);
    drawing_ = drawing::Draw(sheet_);
    viewport_.SetSheetSize({drawing_.width, drawing_.height}); // what a pin is wired to takes room
    TellName();
    TellZoom();
}

void SheetView::Clear() {
    sheet_ = {};
    drawing_ = {};
    picked_.reset();
    isShown_ = false;
    NotifyWinEvent(EVENT_OBJECT_REORDER, Handle(), OBJID_CLIENT, CHILDID_SELF);
    TellName();
    Repaint();
}

void SheetView::Pick(std::optional<PinId> pin) {
    if (pin == picked_) {
        return;
    }
    picked_ = pin;
    if (picked_) {
        if (const drawing::Rectangle* const area = drawing::AreaOf(drawing_, *picked_)) {
            viewport_.Reveal(*area);
        }
    }
    TellName();
    if (const auto spot = PickedSpot()) {
        NotifyWinEvent(EVENT_OBJECT_SELECTION, Handle(), OBJID_CLIENT, static_cast<LONG>(*spot) + 1);
    }
    Repaint();
}

void SheetView::ZoomIn() {
    viewport_.ZoomIn();
    TellZoom();
}

void SheetView::ZoomOut() {
    viewport_.ZoomOut();
    TellZoom();
}

void SheetView::Fit() {
    viewport_.Fit();
    TellZoom();
}

void SheetView::ZoomToNatural() {
    viewport_.ZoomToNatural();
    TellZoom();
}

void SheetView::SetScaling(Scaling scaling) {
    viewport_.SetDpi(scaling.Dpi());
    TellZoom();
}

void SheetView::TellZoom() {
    if (events_.zoomed) {
        events_.zoomed();
    }
    Repaint();
}

void SheetView::TellName() {
    // Readers ask for it again and again.
    const auto found = std::find_if(drawing_.spots.begin(), drawing_.spots.end(),
                                    [this](const drawing::Spot& spot) { return spot.pin == picked_; });
    pickedSpot_.reset();
    if (picked_ && found != drawing_.spots.end()) {
        pickedSpot_ = static_cast<std::size_t>(found - drawing_.spots.begin());
    }
    std::wstring name = picked_ ? WordsOf(*picked_) : std::wstring();
    if (name.empty()) {
        name = isShown_ ? Text(IDS_SHEET_OF, bench::Wide(sheet_.module.name)) : Text(IDS_NO_SHEET);
    }
    SetWindowTextW(Handle(), name.c_str());
    NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, Handle(), OBJID_CLIENT, CHILDID_SELF);
    if (pickedSpot_ && GetFocus() == Handle()) {
        NotifyWinEvent(EVENT_OBJECT_FOCUS, Handle(), OBJID_CLIENT, static_cast<LONG>(*pickedSpot_) + 1);
    }
}

std::wstring SheetView::WordsOf(const PinId& id) const {
    const drawing::Pin* const pin = drawing::Find(sheet_, id);
    if (pin == nullptr) {
        return {};
    }
    const std::wstring words = bench::Wide(drawing::InWords(*pin, id.side));
    return id.block > 0 ? bench::Wide(sheet_.channels.at(id.block - 1).name) + L": " + words : words;
}

std::wstring SheetView::WordsOf(std::size_t spot) const {
    return WordsOf(drawing_.spots.at(spot).pin);
}

std::optional<std::size_t> SheetView::SpotAt(POINT onScreen) const {
    ScreenToClient(Handle(), &onScreen);
    const drawing::Point place =
        viewport_.ToSheet(drawing::Point{static_cast<double>(onScreen.x), static_cast<double>(onScreen.y)});
    const auto found = std::find_if(drawing_.spots.rbegin(), drawing_.spots.rend(),
                                    [&](const drawing::Spot& spot) { return spot.area.Holds(place); });
    return found != drawing_.spots.rend()
               ? std::optional(static_cast<std::size_t>(drawing_.spots.rend() - found) - 1)
               : std::nullopt;
}

RECT SheetView::AreaOfSpot(std::size_t spot) const {
    const drawing::Rectangle area = viewport_.ToScreen(drawing_.spots.at(spot).area);
    POINT corner{std::lround(area.x), std::lround(area.y)};
    ClientToScreen(Handle(), &corner);
    return {corner.x, corner.y, corner.x + std::lround(area.width), corner.y + std::lround(area.height)};
}

void SheetView::OnProblem(const std::wstring& words) {
    if (events_.failed) {
        events_.failed(words);
    }
}

void SheetView::Repaint() {
    InvalidateRect(Handle(), nullptr, FALSE);
}

void SheetView::Paint() {
    const Painted painted(Handle());
    RECT area{};
    GetClientRect(Handle(), &area);
    if (area.right > 0 && area.bottom > 0) {
        if (!bitmap_) {
            bitmap_ = std::make_unique<Bitmap>(area.right, area.bottom);
        }
        View view;
        view.scale = viewport_.Scale();
        view.at = viewport_.ToScreen(drawing::Point{0, 0});
        view.picked = picked_;
        view.hasFocus = GetFocus() == Handle();
        view.icon = icon_.get();
        if (IsHighContrast()) {
            view.system = SystemColours::Now();
        }
        PaintDrawing(*bitmap_, drawing_, view);
        BitBlt(painted.target, 0, 0, area.right, area.bottom, bitmap_->Context(), 0, 0, SRCCOPY);
    }
}

} // namespace view
