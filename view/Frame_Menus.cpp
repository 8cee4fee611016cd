#include "view/Frame.h"

#include "view/resource.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace view {

namespace {

constexpr int kPageCommands[] = {IDM_VIEW_ATTRIBUTES, IDM_VIEW_INPUTS, IDM_VIEW_OUTPUTS, IDM_VIEW_CATALOGUE};

/// A text of which no letter is an access key.
std::wstring AsItStands(std::wstring text) {
    for (std::size_t at = 0; (at = text.find(L'&', at)) != std::wstring::npos; at += 2) {
        text.insert(at, 1, L'&');
    }
    return text;
}

void Empty(HMENU menu) noexcept {
    while (DeleteMenu(menu, 0, MF_BYPOSITION) != FALSE) {
    }
}

} // namespace

void Frame::UpdateMenu(HMENU menu) {
    const int count = GetMenuItemCount(menu);
    bool hasRecent = false;
    for (int i = 0; i < count; ++i) {
        const int id = static_cast<int>(GetMenuItemID(menu, i));
        hasRecent = hasRecent || (id >= IDM_FILE_RECENT && id <= IDM_FILE_RECENT_LAST);
    }
    if (hasRecent) {
        FillRecentMenu(menu);
    } else if (GetMenuItemID(menu, 0) == UINT{IDM_VIEW_SORT}) {
        FillSortMenu(menu);
    } else if (GetMenuItemID(menu, 0) == UINT{IDM_FILE_MODULE}) {
        FillModuleMenu(menu);
    }
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        const UINT id = GetMenuItemID(menu, i);
        if (id >= UINT{IDM_FILE_OPEN} && id != static_cast<UINT>(-1)) {
            EnableMenuItem(menu, id,
                           static_cast<UINT>(IsEnabled(static_cast<int>(id)) ? MF_ENABLED : MF_GRAYED));
        }
    }
    const auto check = [&](int id, bool isChecked) {
        CheckMenuItem(menu, static_cast<UINT>(id), static_cast<UINT>(isChecked ? MF_CHECKED : MF_UNCHECKED));
    };
    check(IDM_VIEW_FINDINGS, settings_.showsFindings);
    check(IDM_VIEW_SOURCE, settings_.showsSource);
    CheckMenuRadioItem(menu, IDM_VIEW_SI, IDM_VIEW_US, isUs_ ? IDM_VIEW_US : IDM_VIEW_SI, MF_BYCOMMAND);
    CheckMenuRadioItem(menu, IDM_VIEW_ATTRIBUTES, IDM_VIEW_CATALOGUE, static_cast<UINT>(kPageCommands[page_]),
                       MF_BYCOMMAND);
}

void Frame::FillRecentMenu(HMENU menu) const {
    Empty(menu); // of the entries of last time
    int number = 0;
    for (const std::wstring& file : settings_.Recent().Files()) {
        const std::wstring text = Text(IDS_ENTRY, std::to_wstring((number + 1) % 10), AsItStands(file));
        AppendMenuW(menu, MF_STRING, static_cast<UINT_PTR>(IDM_FILE_RECENT + number++), text.c_str());
    }
    if (number == 0) {
        AppendMenuW(menu, MF_STRING | MF_GRAYED, IDM_FILE_RECENT, Text(IDS_NO_RECENT).c_str());
    }
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
        DeleteMenu(menu, 0, MF_BYPOSITION); // the line after them
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
    Empty(menu);
    const ListPane& pane = PaneInFocus();
    for (std::size_t i = 0; i < pane.Columns(); ++i) {
        const std::wstring number = std::to_wstring(i + 1);
        const bool isSorted = pane.Order() && pane.Order()->column == i;
        AppendMenuW(menu, isSorted ? MF_STRING | MF_CHECKED : MF_STRING, IDM_VIEW_SORT + i,
                    Text(IDS_SORT_ENTRY, number, pane.Title(i)).c_str());
    }
}

void Frame::FillModuleMenu(HMENU menu) {
    Empty(menu);
    constexpr std::size_t kMost = IDM_FILE_MODULE_LAST - IDM_FILE_MODULE + 1;
    constexpr std::size_t kKeys = 10;
    const std::size_t all = session_ ? session_->Modules().size() : 0;
    const std::size_t count = std::min(all, kMost);
    for (std::size_t i = 0; i < count; ++i) {
        const ProjectModule& module = session_->Modules()[i];
        const std::wstring words = AsItStands(
            Text(IDS_MODULE, module.key.device + L"/" + std::to_wstring(module.key.number), module.name));
        // A key that two entries have would open neither.
        const std::wstring text = i >= kKeys ? Text(IDS_ENTRY_WITHOUT_KEY, std::to_wstring(i + 1), words)
                                             : Text(IDS_ENTRY, std::to_wstring((i + 1) % kKeys), words);
        AppendMenuW(menu, i == session_->OpenModule() ? MF_STRING | MF_CHECKED : MF_STRING,
                    IDM_FILE_MODULE + i, text.c_str());
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

} // namespace view
