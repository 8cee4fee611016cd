#include "view/Frame.h"

#include "view/resource.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace view {

namespace {

// Pixels at 96 dots to the inch.
constexpr int kFilterWidth = 190;
constexpr int kGap = 4;
constexpr int kProgressWidth = 220;
constexpr int kThousand = 1000;
constexpr int kLeastPart = 100;

RECT ClientOf(HWND window) noexcept {
    RECT area{};
    GetClientRect(window, &area);
    return area;
}

int HeightOf(HWND window) noexcept {
    RECT area{};
    GetWindowRect(window, &area);
    return area.bottom - area.top;
}

void Place(HWND window, const RECT& area) noexcept {
    SetWindowPos(window, nullptr, area.left, area.top, std::max(0L, area.right - area.left),
                 std::max(0L, area.bottom - area.top), SWP_NOZORDER | SWP_NOACTIVATE);
}

void SetShown(HWND window, bool isShown) noexcept {
    ShowWindow(window, isShown ? SW_SHOWNA : SW_HIDE);
}

} // namespace

void Frame::Layout() {
    const RECT whole = ClientOf(Handle());
    Send(status_, WM_SIZE);
    const int toolHeight = scaling_(6) + HIWORD(static_cast<DWORD>(Send(toolbar_, TB_GETBUTTONSIZE)));
    const int statusHeight = HeightOf(status_);
    const int bar = scaling_(Splitter::kWidth);
    Place(toolbar_, {whole.left, whole.top, whole.right, whole.top + toolHeight});

    RECT body{whole.left, whole.top + toolHeight, whole.right, whole.bottom - statusHeight};
    const bool hasPanes = settings_.showsFindings || settings_.showsSource;
    const int paneHeight = MulDiv(body.bottom - body.top, settings_.splits[1], kThousand);
    RECT panes{body.left, body.bottom - (hasPanes ? paneHeight : 0), body.right, body.bottom};
    if (hasPanes) {
        Place(splitters_[1]->Handle(), {body.left, panes.top - bar, body.right, panes.top});
        body.bottom = panes.top - bar;
    }
    SetShown(splitters_[1]->Handle(), hasPanes);

    const long sheetEnd = body.left + MulDiv(body.right - body.left, settings_.splits[0], kThousand);
    Place(sheet_->Handle(), {body.left, body.top, sheetEnd, body.bottom});
    Place(splitters_[0]->Handle(), {sheetEnd, body.top, sheetEnd + bar, body.bottom});
    LayoutLists({sheetEnd + bar, body.top, body.right, body.bottom});
    LayoutPanes(panes);
    LayoutStatus(whole.right, whole.bottom, statusHeight);
    InvalidateRect(Handle(), nullptr, TRUE);
}

void Frame::LayoutLists(const RECT& lists) {
    const int line = room_.line;
    RECT one{0, 0, 0, 0};
    Send(tabs_, TCM_GETITEMRECT, 0, &one);
    RECT lastTab{0, 0, 0, 0};
    Send(tabs_, TCM_GETITEMRECT, 3, &lastTab);
    const long tabHeight = std::max<long>(one.bottom + scaling_(2), line);
    const long tabEnd = lists.left + lastTab.right + scaling_(6);
    const bool isOneLine = tabEnd + room_.label + scaling_(kFilterWidth / 2) < lists.right;
    const long filterTop = lists.top + (isOneLine ? 0 : tabHeight);
    const long filterLeft =
        isOneLine ? std::max<long>(tabEnd + room_.label, lists.right - scaling_(kFilterWidth + kGap))
                  : lists.left + room_.label;
    Place(tabs_, {lists.left, lists.top, isOneLine ? tabEnd : lists.right, lists.top + tabHeight});
    Place(filterLabel_, {filterLeft - room_.label, filterTop, filterLeft - scaling_(kGap), filterTop + line});
    Place(filter_, {filterLeft, filterTop + scaling_(1), lists.right - scaling_(kGap),
                    filterTop + line - scaling_(1)});
    const RECT list{lists.left, lists.top + tabHeight + (isOneLine ? 0 : line), lists.right, lists.bottom};
    for (const PointPage& page : pages_) {
        Place(page.pane->Handle(), list);
    }
    Place(typePane_->Handle(), list);
}

void Frame::LayoutPanes(const RECT& panes) {
    const int bar = scaling_(Splitter::kWidth);
    const int line = room_.line;
    const bool hasBoth = settings_.showsFindings && settings_.showsSource;
    const long findingsEnd =
        hasBoth ? panes.left + MulDiv(panes.right - panes.left, settings_.splits[2], kThousand)
        : settings_.showsFindings ? panes.right
                                  : panes.left;
    const long sourceStart = hasBoth ? findingsEnd + bar : findingsEnd;
    Place(findingsTitle_, {panes.left + scaling_(kGap), panes.top, findingsEnd, panes.top + line});
    Place(findingPane_->Handle(), {panes.left, panes.top + line, findingsEnd, panes.bottom});
    Place(splitters_[2]->Handle(), {findingsEnd, panes.top, sourceStart, panes.bottom});
    const bool isSearchShown = settings_.showsSource && isSearchShown_;
    const long searchLeft =
        std::max<long>(sourceStart + room_.search, panes.right - scaling_(kFilterWidth + kGap));
    Place(sourceTitle_, {sourceStart + scaling_(kGap), panes.top,
                         isSearchShown ? searchLeft - room_.search : panes.right, panes.top + line});
    Place(searchLabel_,
          {searchLeft - room_.search, panes.top, searchLeft - scaling_(kGap), panes.top + line});
    Place(search_, {searchLeft, panes.top + scaling_(1), panes.right - scaling_(kGap),
                    panes.top + line - scaling_(1)});
    Place(sourceBox_, {sourceStart, panes.top + line, panes.right, panes.bottom});
    for (const HWND part : {findingsTitle_, findingPane_->Handle()}) {
        SetShown(part, settings_.showsFindings);
    }
    for (const HWND part : {sourceTitle_, sourceBox_}) {
        SetShown(part, settings_.showsSource);
    }
    for (const HWND part : {searchLabel_, search_}) {
        SetShown(part, isSearchShown);
    }
    SetShown(splitters_[2]->Handle(), hasBoth);
}

void Frame::LayoutStatus(long width, long bottomOfLine, int height) {
    int end = static_cast<int>(width);
    std::array<int, 5> parts{};
    parts.back() = -1;
    for (std::size_t i = parts.size() - 1; i > 0; --i) {
        end -= room_.parts.at(i - 1);
        parts.at(i - 1) = end;
    }
    parts.front() = std::max(parts.front(), scaling_(120));
    Send(status_, SB_SETPARTS, parts.size(), parts.data());
    const long right = parts[0];
    const long top = bottomOfLine - height + scaling_(3);
    const long bottom = bottomOfLine - scaling_(2);
    Place(stop_, {right - room_.stop, top, right, bottom});
    Place(progress_, {right - room_.stop - scaling_(kGap + kProgressWidth), top,
                      right - room_.stop - scaling_(kGap), bottom});
    for (const HWND above : {progress_, progressLabel_, stop_}) { // each comes before the former one
        SetWindowPos(above, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
}

void Frame::MoveSplit(std::size_t split, int distance) {
    const RECT whole = ClientOf(Handle());
    const bool isLevel = split == 1;
    const int room = isLevel ? whole.bottom - HeightOf(toolbar_) - HeightOf(status_) : whole.right;
    const int part = MulDiv(isLevel ? -distance : distance, kThousand, std::max(1, room));
    int& share = settings_.splits.at(split);
    share = std::clamp(share + part, kLeastPart, kThousand - kLeastPart);
    Layout();
    UpdateWindow(Handle());
}

void Frame::OnDpiChanged(const RECT& place) {
    if (!isPlacing_) { // what the window had when it ended is in the pixels of that monitor already
        SetWindowPos(Handle(), nullptr, place.left, place.top, place.right - place.left,
                     place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
    }
    SetFonts();
}

void Frame::SavePlaces() {
    settings_.placement.length = sizeof settings_.placement;
    GetWindowPlacement(Handle(), &settings_.placement);
    settings_.usUnits = isUs_;
    for (const PointPage& page : pages_) {
        page.pane->Write(settings_);
    }
    typePane_->Write(settings_);
    findingPane_->Write(settings_);
    settings_.Save();
}

} // namespace view
