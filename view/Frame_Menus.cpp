#include "view/Frame.h"

#include "view/resource.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace view {

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
    return GetFocus() == findingPane_->Handle() ? *findingPane_
           : page_ < kPointPages                ? *pages_.at(page_).pane
                                                : *typePane_;
}

void Frame::ShowListMenu(ListPane& pane, POINT place) {
    HMENU const menus = LoadMenuW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDR_LIST_MENU));
    HMENU const menu = GetSubMenu(menus, 0);
    const bool hasValues = std::any_of(pages_.begin(), pages_.end(),
                                       [&](const PointPage& page) { return page.pane.get() == &pane; });
    if (!hasValues) {
        for (const UINT entry : {UINT{IDM_EDIT_VALUE}, UINT{IDM_EDIT_CELL}}) {
            DeleteMenu(menu, entry, MF_BYCOMMAND);
        }
        DeleteMenu(menu, 0, MF_BYPOSITION); // the line behind them
    }
    SetFocus(pane.Handle());              // what its entries are about
    if (place.x == -1 && place.y == -1) { // by the keyboard
        place = pane.PlaceOfMenu();
    }
    UpdateMenu(menu);
    TrackPopupMenu(menu, TPM_RIGHTBUTTON, place.x, place.y, 0, Handle(), nullptr);
    DestroyMenu(menus);
}

void Frame::FillSortMenu(HMENU menu) {
    while (DeleteMenu(menu, 0, MF_BYPOSITION) != FALSE) {
    }
    const ListPane& pane = PaneInFocus();
    for (std::size_t i = 0; i < pane.Columns(); ++i) {
        const std::wstring number = std::to_wstring(i + 1);
        const bool isSorted = pane.Order() && pane.Order()->column == i;
        AppendMenuW(menu, isSorted ? MF_STRING | MF_CHECKED : MF_STRING, IDM_VIEW_SORT + i,
                    (L"&" + number + L"  " + pane.Title(i) + L"\tCtrl+Shift+" + number).c_str());
    }
}

void Frame::FillModuleMenu(HMENU menu) {
    while (DeleteMenu(menu, 0, MF_BYPOSITION) != FALSE) {
    }
    constexpr std::size_t kMost = IDM_FILE_MODULE_LAST - IDM_FILE_MODULE + 1;
    constexpr std::size_t kKeys = 10;
    const std::size_t all = session_ ? session_->Modules().size() : 0;
    const std::size_t count = std::min(all, kMost);
    for (std::size_t i = 0; i < count; ++i) {
        const ProjectModule& module = session_->Modules()[i];
        std::wstring words =
            Text(IDS_MODULE, module.key.device + L"/" + std::to_wstring(module.key.number), module.name);
        for (std::size_t at = 0; (at = words.find(L'&', at)) != std::wstring::npos; at += 2) {
            words.insert(at, 1, L'&');
        }
        const std::wstring number = std::to_wstring(i + 1);
        // A key that two entries have would open neither.
        const std::wstring key = i >= kKeys ? number : L"&" + std::to_wstring((i + 1) % kKeys);
        AppendMenuW(menu, i == session_->OpenModule() ? MF_STRING | MF_CHECKED : MF_STRING,
                    IDM_FILE_MODULE + i, (key + L"  " + words).c_str());
    }
    if (all > count) {
        AppendMenuW(menu, MF_STRING | MF_GRAYED, 0,
                    Text(IDS_MORE_MODULES, std::to_wstring(all - count)).c_str());
    }
    if (count == 0) {
        AppendMenuW(menu, MF_STRING | MF_GRAYED, IDM_FILE_MODULE, Text(IDS_NO_MODULES).c_str());
    }
}

bool Frame::IsModule(std::size_t number) const {
    if (!session_ || number >= session_->Modules().size()) {
        return false;
    }
    const auto begin = session_->Modules().begin();
    const auto here = begin + static_cast<std::ptrdiff_t>(number);
    // Of two with one number the first is opened.
    return std::none_of(begin, here, [&](const ProjectModule& former) { return former.key == here->key; });
}

void Frame::OpenModule(std::size_t number) {
    if (number != session_->OpenModule() && AskToSave()) {
        module_ = session_->Modules().at(number).key;
        Load(file_);
    }
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
