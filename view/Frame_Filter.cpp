// The field that filters: it is about the list that had the focus last, of the findings and
// the list of the page. Its label names the findings.

#include "view/Frame.h"

#include "view/resource.h"

#include <cstddef>
#include <string>

namespace view {

ListPane& Frame::FilteredPane() const {
    return isFindingsFiltered_ ? *findingPane_ : PaneOf(page_);
}

Listing& Frame::FilteredList() {
    return isFindingsFiltered_ ? findingList_ : ListingOf(page_);
}

void Frame::AimFilter(bool isAtFindings) {
    isFindingsFiltered_ = isAtFindings;
    ShowFilter();
}

void Frame::ShowFilter() {
    const std::wstring label = Text(isFindingsFiltered_ ? IDS_FILTER_FINDINGS : IDS_FILTER);
    if (TextOf(filterLabel_) != label) {
        SetWindowTextW(filterLabel_, label.c_str());
    }
    const std::wstring& words = FilteredList().Words();
    if (TextOf(filter_) != words) {
        SetWindowTextW(filter_, std::wstring(words).c_str()); // comes back as OnFilter
    }
    UpdateTools();
    UpdateStatus();
}

void Frame::OnFilter() {
    const std::wstring words = TextOf(filter_);
    if (words == FilteredList().Words()) {
        return;
    }
    FilteredList().Filter(words);
    FilteredPane().Update();
    ShowCountOfFindings();
    UpdateTools();
    UpdateStatus();
}

void Frame::Filter(bool isOfFindings, wchar_t letter) {
    AimFilter(isOfFindings);
    SetFocus(filter_);
    SetWindowTextW(filter_, std::wstring(1, letter).c_str());
    Send(filter_, EM_SETSEL, 1, 1);
}

void Frame::GoToFilter() {
    SetFocus(filter_);
    Send(filter_, EM_SETSEL, 0, -1);
}

void Frame::ClearFilter() {
    SetWindowTextW(filter_, L"");
    GoToList();
}

void Frame::ShowAllRows(std::size_t page) {
    ListingOf(page).Filter({});
    PaneOf(page).Update();
    ShowFilter();
}

} // namespace view
