#include "view/ListPane.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace view {

namespace {

// Pixels at 96 dots to the inch.
constexpr int kWidest = 2000;
/// By keys no column gets narrower: it could not be found again.
constexpr int kNarrowest = 24;
constexpr int kStep = 16;
/// Beside the text of a cell, and of a heading with the sign of its order.
constexpr int kBesideText = 16;
/// Letters of a cell that the system's lists draw.
constexpr std::size_t kMostDrawn = 259;
constexpr int kBesideTitle = 32;

/// What texts take, with one context for all of them.
class Ruler {
  public:
    Ruler() noexcept : context_(CreateCompatibleDC(nullptr)), former_(GetCurrentObject(context_, OBJ_FONT)) {}
    ~Ruler() {
        SelectObject(context_, former_);
        DeleteDC(context_);
    }
    Ruler(const Ruler&) = delete;
    Ruler& operator=(const Ruler&) = delete;

    int WidthOf(HFONT font, const std::wstring& text) const noexcept {
        SelectObject(context_, font);
        SIZE size{};
        GetTextExtentPoint32W(context_, text.c_str(), static_cast<int>(text.size()), &size);
        return static_cast<int>(size.cx);
    }

  private:
    HDC context_;
    HGDIOBJ former_;
};

} // namespace

void ListPane::Read(const Settings& settings) {
    const std::vector<int> widths = settings.WidthsOf(key_.c_str());
    for (std::size_t i = 0; i < columns_.size() && widths.size() == columns_.size(); ++i) {
        columns_[i].width = std::clamp(widths[i], 0, kWidest);
    }
}

void ListPane::Write(const Settings& settings) const {
    std::vector<int> widths;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        widths.push_back(scaling_.Back(static_cast<int>(Send(list_, LVM_GETCOLUMNWIDTH, i))));
    }
    settings.SetWidths(key_.c_str(), widths);
}

int ListPane::WidthOf(std::size_t column) const noexcept {
    return static_cast<int>(Send(list_, LVM_GETCOLUMNWIDTH, column));
}

void ListPane::FitColumns() {
    EndCell(true);
    auto* const normal = reinterpret_cast<HFONT>(Send(list_, WM_GETFONT));
    const Ruler ruler;
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        int width = ruler.WidthOf(normal, Title(column)) + scaling_(kBesideTitle);
        for (std::size_t place = 0; place < listing_.Shown(); ++place) {
            const std::size_t row = listing_.RowAt(place);
            const HFONT font = source_.isBold && source_.isBold(row) ? bold_ : normal;
            const std::wstring text = Shortened(source_.cell(row, column), kMostDrawn);
            width = std::max(width, ruler.WidthOf(font, text) + scaling_(kBesideText));
        }
        Send(list_, LVM_SETCOLUMNWIDTH, column, std::min(width, scaling_(kWidest)));
    }
}

std::size_t ListPane::StepColumn(bool isForward) {
    if (isForward) {
        column_ = std::min(column_ + 1, columns_.size() - 1);
    } else if (column_ > 0) {
        --column_;
    }
    ShowColumn();
    return column_;
}

std::size_t ListPane::Widen(bool isWider) {
    EndCell(true);
    const int width = WidthOf(column_) + (isWider ? scaling_(kStep) : -scaling_(kStep));
    Send(list_, LVM_SETCOLUMNWIDTH, column_, std::clamp(width, scaling_(kNarrowest), scaling_(kWidest)));
    ShowColumn();
    return column_;
}

void ListPane::ShowColumn() {
    const auto header = reinterpret_cast<HWND>(Send(list_, LVM_GETHEADER));
    RECT area{};
    Send(header, HDM_GETITEMRECT, column_, &area);
    MapWindowPoints(header, list_, reinterpret_cast<POINT*>(&area), 2);
    RECT seen{};
    GetClientRect(list_, &seen);
    // Of a column that is wider than the list its begin.
    const LONG hidden = std::min(area.left, std::max(0L, area.right - seen.right));
    if (hidden != 0) {
        Send(list_, LVM_SCROLL, hidden, 0);
    }
}

void ListPane::Sort(std::size_t column) {
    EndCell(true);
    listing_.ToggleSort(column);
    Update();
}

void ListPane::ShowOrder() {
    const auto header = reinterpret_cast<HWND>(Send(list_, LVM_GETHEADER));
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        Send(header, HDM_GETITEMW, i, &item);
        item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
        if (const auto& order = listing_.Order(); order && order->column == i) {
            item.fmt |= order->isDownward ? HDF_SORTDOWN : HDF_SORTUP;
        }
        Send(header, HDM_SETITEMW, i, &item);
    }
}

} // namespace view
