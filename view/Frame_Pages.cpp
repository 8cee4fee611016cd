#include "view/Frame.h"

#include "view/resource.h"

#include <cstddef>
#include <optional>
#include <string>

namespace view {

ListPane& Frame::PaneOf(std::size_t page) const {
    return page < kPointPages ? *pages_.at(page).pane : *typePane_;
}

Listing& Frame::ListingOf(std::size_t page) {
    return page < kPointPages ? pages_.at(page).table.List() : typeList_;
}

ListPane* Frame::PaneOf(HWND list) const {
    for (const PointPage& page : pages_) {
        if (page.pane && page.pane->Handle() == list) {
            return page.pane.get();
        }
    }
    for (ListPane* const pane : {typePane_.get(), findingPane_.get()}) {
        if (pane != nullptr && pane->Handle() == list) {
            return pane;
        }
    }
    return nullptr;
}

ListPane& Frame::PaneInFocus() const {
    const HWND focus = GetFocus();
    const bool isInFindings = focus == findingPane_->Handle() || (focus == filter_ && isFindingsFiltered_);
    return isInFindings ? *findingPane_ : PaneOf(page_);
}

LRESULT Frame::OnNotify(NMHDR& head) {
    if (head.hwndFrom == tabs_ && head.code == TCN_SELCHANGE) {
        ShowPage(static_cast<std::size_t>(Send(tabs_, TCM_GETCURSEL)));
        return 0;
    }
    if (ListPane* const pane = PaneOf(head.hwndFrom)) {
        if (head.code == static_cast<UINT>(NM_SETFOCUS)) {
            AimFilter(pane == findingPane_.get());
        }
        return pane->OnNotify(head);
    }
    return Window::OnMessage(WM_NOTIFY, head.idFrom, reinterpret_cast<LPARAM>(&head));
}

void Frame::ShowPage(std::size_t page) {
    page_ = page;
    Send(tabs_, TCM_SETCURSEL, page);
    for (std::size_t i = 0; i <= kCatalogue; ++i) {
        if (i != page) {
            ShowWindow(PaneOf(i).Handle(), SW_HIDE);
        }
    }
    ShowWindow(PaneOf(page).Handle(), SW_SHOWNA);
    AimFilter(GetFocus() == findingPane_->Handle()); // which an undo or a click on a tab leaves there
}

void Frame::GoToPage(std::size_t page) {
    ShowPage(page);
    SetFocus(PaneOf(page_).Handle());
}

void Frame::GoToList() {
    ListPane& pane = FilteredPane();
    if (!pane.Picked() && FilteredList().Shown() > 0) {
        pane.Pick(FilteredList().RowAt(0)); // the words hide the one that was picked
        if (const auto id = isFindingsFiltered_ ? std::nullopt : PickedPoint()) {
            OnRowPicked(*id);
        }
        UpdateTools();
    }
    SetFocus(pane.Handle());
}

void Frame::Sort(std::size_t column) {
    ListPane& pane = PaneInFocus();
    pane.Sort(column);
    const auto& order = pane.Order();
    Say(Text(!order              ? IDS_SORTED_AS_FILE
             : order->isDownward ? IDS_SORTED_DOWN
                                 : IDS_SORTED_UP,
             pane.Title(column)));
}

void Frame::FitColumns() {
    PaneInFocus().FitColumns();
    Say(Text(IDS_COLUMNS_FIT));
}

void Frame::StepColumn(bool isForward) {
    ListPane& pane = PaneInFocus();
    SayWidth(pane, pane.StepColumn(isForward));
}

void Frame::WidenColumn(bool isWider) {
    ListPane& pane = PaneInFocus();
    SayWidth(pane, pane.Widen(isWider));
}

void Frame::SayWidth(const ListPane& pane, std::size_t column) {
    Say(Text(IDS_COLUMN_WIDTH, pane.Title(column), std::to_wstring(pane.WidthOf(column))));
}

} // namespace view
