#include "view/Frame.h"

#include "view/FileDialogs.h"
#include "view/resource.h"

#include "bench/Text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <memory>

namespace view {

namespace {

constexpr int kPageCommands[] = {IDM_VIEW_ATTRIBUTES, IDM_VIEW_INPUTS, IDM_VIEW_OUTPUTS, IDM_VIEW_CATALOGUE};

/// Another program may have it for a moment.
bool OpenTheClipboard(HWND owner) noexcept {
    constexpr int kTries = 20;
    constexpr DWORD kPause = 10;
    for (int i = 0; i < kTries; ++i) {
        if (OpenClipboard(owner) != FALSE) {
            return true;
        }
        Sleep(kPause);
    }
    return false;
}

bool PutOnClipboard(HWND owner, const std::wstring& text) {
    const std::size_t size = (text.size() + 1) * sizeof(wchar_t);
    HGLOBAL const memory = GlobalAlloc(GMEM_MOVEABLE, size);
    if (memory == nullptr || !OpenTheClipboard(owner)) {
        GlobalFree(memory);
        return false;
    }
    std::memcpy(GlobalLock(memory), text.c_str(), size);
    GlobalUnlock(memory);
    EmptyClipboard();
    const bool isThere = SetClipboardData(CF_UNICODETEXT, memory) != nullptr;
    if (!isThere) {
        // cppcheck-suppress doubleFree ; it is the clipboard's only when that took it
        GlobalFree(memory);
    }
    CloseClipboard();
    return isThere;
}

} // namespace

ListPane& Frame::PaneOf(std::size_t page) {
    return page < kPointPages ? *pages_.at(page).pane : *typePane_;
}

Listing& Frame::ListingOf(std::size_t page) {
    return page < kPointPages ? pages_.at(page).table.List() : typeList_;
}

bool Frame::OnCommand(int id, int code, HWND control) {
    if (control == filter_) {
        if (code == EN_CHANGE) {
            OnFilter();
        }
        return true;
    }
    if (id == IDC_STOP) {
        id = IDM_VIEW_STOP;
    }
    if (id < IDM_FILE_OPEN || !IsEnabled(id)) {
        return id >= IDM_FILE_OPEN;
    }
    EnterCells();
    if (id >= IDM_FILE_RECENT && id <= IDM_FILE_RECENT_LAST) {
        const std::wstring file = settings_.recent.Files().at(static_cast<std::size_t>(id - IDM_FILE_RECENT));
        if (!bench::IsFile(file)) {
            Ask(Text(IDS_RECENT_GONE, file), MB_OK | MB_ICONINFORMATION);
            settings_.recent.Remove(file);
            return true;
        }
        Open(file);
        return true;
    }
    if (id >= IDM_FILE_MODULE && id <= IDM_FILE_MODULE_LAST) {
        OpenModule(static_cast<std::size_t>(id - IDM_FILE_MODULE));
        return true;
    }
    if (id >= IDM_VIEW_SORT && id <= IDM_VIEW_SORT_LAST) {
        Sort(static_cast<std::size_t>(id - IDM_VIEW_SORT));
        return true;
    }
    switch (id) {
    case IDM_FILE_OPEN: {
        const std::wstring file = Chosen([this] { return ChooseFile(Handle(), IDS_OPEN, IDS_FILTER_OPEN); });
        if (!file.empty()) {
            Open(file);
        }
        break;
    }
    case IDM_FILE_RELOAD:
        if (AskToSave()) {
            Load(file_);
        }
        break;
    case IDM_FILE_SAVE:
        Save();
        break;
    case IDM_FILE_SAVE_AS:
        SaveAs();
        break;
    case IDM_FILE_SAVE_STREAM:
        SaveStream();
        break;
    case IDM_FILE_EXPORT_IMAGE:
    case IDM_FILE_EXPORT_INTEROP:
    case IDM_FILE_EXPORT_SHEET:
    case IDM_FILE_EXPORT_PNG:
    case IDM_FILE_EXPORT_SVG:
        Export(id);
        break;
    case IDM_FILE_EXIT:
        Close();
        break;
    case IDM_EDIT_UNDO:
        Undo();
        break;
    case IDM_EDIT_REDO:
        Redo();
        break;
    case IDM_EDIT_VALUE:
        if (const auto point = PickedPoint()) {
            OpenEditor(*point);
        }
        break;
    case IDM_EDIT_CELL:
        StartCell();
        break;
    case IDM_EDIT_COPY:
        Copy();
        break;
    case IDM_EDIT_SELECT_ALL:
        PaneInFocus().SelectAll();
        break;
    case IDM_EDIT_FILTER:
        SetFocus(filter_);
        Send(filter_, EM_SETSEL, 0, -1);
        break;
    case IDM_EDIT_CLEAR_FILTER:
        SetWindowTextW(filter_, L"");
        SetFocus(PaneOf(page_).Handle());
        break;
    case IDM_VIEW_ATTRIBUTES:
    case IDM_VIEW_INPUTS:
    case IDM_VIEW_OUTPUTS:
    case IDM_VIEW_CATALOGUE:
        ShowPage(static_cast<std::size_t>(id - IDM_VIEW_ATTRIBUTES));
        SetFocus(PaneOf(page_).Handle());
        break;
    case IDM_VIEW_LIST:
        SetFocus(PaneOf(page_).Handle());
        break;
    case IDM_VIEW_SHEET:
        SetFocus(sheet_->Handle());
        break;
    case IDM_VIEW_SHOW_SOURCE:
        ShowSource();
        break;
    case IDM_VIEW_FINDINGS:
        ShowParts(!settings_.showsFindings, settings_.showsSource);
        break;
    case IDM_VIEW_SOURCE:
        ShowParts(settings_.showsFindings, !settings_.showsSource);
        break;
    case IDM_VIEW_ZOOM_IN:
        sheet_->ZoomIn();
        break;
    case IDM_VIEW_ZOOM_OUT:
        sheet_->ZoomOut();
        break;
    case IDM_VIEW_ZOOM_FIT:
        sheet_->Fit();
        break;
    case IDM_VIEW_ZOOM_ACTUAL:
        sheet_->ZoomToNatural();
        break;
    case IDM_VIEW_SI:
    case IDM_VIEW_US:
        SetUnits(id == IDM_VIEW_US);
        break;
    case IDM_VIEW_NEXT_PART:
    case IDM_VIEW_PREVIOUS_PART:
        MoveFocus(id == IDM_VIEW_NEXT_PART);
        break;
    case IDM_VIEW_NEXT_SPLITTER:
    case IDM_VIEW_PREVIOUS_SPLITTER:
        FocusSplitter(id == IDM_VIEW_NEXT_SPLITTER);
        break;
    case IDM_VIEW_NEXT_FINDING:
    case IDM_VIEW_PREVIOUS_FINDING:
        StepFinding(id == IDM_VIEW_NEXT_FINDING);
        break;
    case IDM_VIEW_FIT_COLUMNS:
        FitColumns();
        break;
    case IDM_VIEW_NEXT_COLUMN:
    case IDM_VIEW_PREVIOUS_COLUMN:
        StepColumn(id == IDM_VIEW_NEXT_COLUMN);
        break;
    case IDM_VIEW_WIDER:
    case IDM_VIEW_NARROWER:
        WidenColumn(id == IDM_VIEW_WIDER);
        break;
    case IDM_VIEW_STOP:
        session_->Stop();
        break;
    case IDM_HELP_KEYS:
        Ask(Text(IDS_KEYS_1) + Text(IDS_KEYS_2) + Text(IDS_KEYS_3) + Text(IDS_KEYS_4),
            MB_OK | MB_ICONINFORMATION);
        break;
    case IDM_HELP_ABOUT:
        if (isLoaded_) {
            const Busy busy(*this);
            session_->ShowAbout();
        } else {
            Ask(Text(IDS_ABOUT), MB_OK | MB_ICONINFORMATION);
        }
        break;
    default:
        return false;
    }
    return true;
}

LRESULT Frame::OnNotify(NMHDR& head) {
    if (head.hwndFrom == tabs_ && head.code == TCN_SELCHANGE) {
        ShowPage(static_cast<std::size_t>(Send(tabs_, TCM_GETCURSEL)));
        return 0;
    }
    for (std::size_t i = 0; sheet_ && i <= kCatalogue; ++i) {
        const std::unique_ptr<ListPane>& pane = i < kPointPages ? pages_.at(i).pane : typePane_;
        if (pane && head.hwndFrom == pane->Handle()) {
            return pane->OnNotify(head);
        }
    }
    if (findingPane_ && head.hwndFrom == findingPane_->Handle()) {
        return findingPane_->OnNotify(head);
    }
    return Window::OnMessage(WM_NOTIFY, head.idFrom, reinterpret_cast<LPARAM>(&head));
}

bool Frame::IsEnabled(int command) const {
    if (command == IDM_VIEW_STOP) {
        return isLoading_;
    }
    if (busy_ > 0) {
        return false;
    }
    if (command >= IDM_FILE_RECENT && command <= IDM_FILE_RECENT_LAST) {
        return static_cast<std::size_t>(command - IDM_FILE_RECENT) < settings_.recent.Files().size();
    }
    if (command >= IDM_FILE_MODULE && command <= IDM_FILE_MODULE_LAST) {
        return IsModule(static_cast<std::size_t>(command - IDM_FILE_MODULE));
    }
    if (command >= IDM_VIEW_SORT && command <= IDM_VIEW_SORT_LAST) {
        return static_cast<std::size_t>(command - IDM_VIEW_SORT) < PaneInFocus().Columns();
    }
    switch (command) {
    case IDM_FILE_RELOAD:
        return !file_.empty();
    case IDM_FILE_SAVE:
    case IDM_FILE_SAVE_AS:
    case IDM_FILE_SAVE_STREAM:
    case IDM_FILE_EXPORT_IMAGE:
    case IDM_FILE_EXPORT_INTEROP:
    case IDM_FILE_EXPORT_SHEET:
    case IDM_FILE_EXPORT_PNG:
    case IDM_FILE_EXPORT_SVG:
    case IDM_VIEW_ZOOM_IN:
    case IDM_VIEW_ZOOM_OUT:
    case IDM_VIEW_ZOOM_FIT:
    case IDM_VIEW_ZOOM_ACTUAL:
        return isLoaded_;
    case IDM_EDIT_UNDO:
        return isLoaded_ && history_.CanUndo();
    case IDM_EDIT_REDO:
        return isLoaded_ && history_.CanRedo();
    case IDM_EDIT_VALUE:
        return isLoaded_ && (page_ == 0 || page_ == 1) && pages_.at(page_).pane->Picked();
    case IDM_EDIT_CELL:
        return isLoaded_ && (page_ == 0 || page_ == 1) && pages_.at(page_).pane->Picked();
    case IDM_EDIT_CLEAR_FILTER:
        return GetWindowTextLengthW(filter_) > 0 || GetFocus() == filter_;
    case IDM_EDIT_COPY:
        return PaneInFocus().Picked().has_value();
    case IDM_VIEW_NEXT_FINDING:
    case IDM_VIEW_PREVIOUS_FINDING:
        return !findings_.empty();
    default:
        return true;
    }
}

void Frame::UpdateMenu(HMENU menu) {
    const int count = GetMenuItemCount(menu);
    // The recent files stand in place of the entries of last time.
    bool hasRecent = false;
    for (int i = 0; i < count; ++i) {
        const int id = static_cast<int>(GetMenuItemID(menu, i));
        hasRecent = hasRecent || (id >= IDM_FILE_RECENT && id <= IDM_FILE_RECENT_LAST);
    }
    if (hasRecent) {
        while (DeleteMenu(menu, 0, MF_BYPOSITION) != FALSE) {
        }
        int number = 0;
        for (const std::wstring& file : settings_.recent.Files()) {
            std::wstring shown = file;
            for (std::size_t at = 0; (at = shown.find(L'&', at)) != std::wstring::npos; at += 2) {
                shown.insert(at, 1, L'&');
            }
            const std::wstring text = L"&" + std::to_wstring((number + 1) % 10) + L"  " + shown;
            AppendMenuW(menu, MF_STRING, static_cast<UINT_PTR>(IDM_FILE_RECENT + number++), text.c_str());
        }
        if (number == 0) {
            AppendMenuW(menu, MF_STRING | MF_GRAYED, IDM_FILE_RECENT, Text(IDS_NO_RECENT).c_str());
        }
    }
    if (GetMenuItemID(menu, 0) == UINT{IDM_VIEW_SORT}) {
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

void Frame::UpdateTools() {
    for (const int id : {IDM_FILE_OPEN, IDM_FILE_SAVE, IDM_EDIT_UNDO, IDM_EDIT_REDO, IDM_EDIT_VALUE,
                         IDM_VIEW_ZOOM_IN, IDM_VIEW_ZOOM_OUT, IDM_VIEW_ZOOM_FIT, IDM_VIEW_SI, IDM_VIEW_US}) {
        Send(toolbar_, TB_ENABLEBUTTON, id, IsEnabled(id) ? TRUE : FALSE);
    }
    Send(toolbar_, TB_CHECKBUTTON, IDM_VIEW_SI, isUs_ ? FALSE : TRUE);
    Send(toolbar_, TB_CHECKBUTTON, IDM_VIEW_US, isUs_ ? TRUE : FALSE);
    Send(toolbar_, TB_CHECKBUTTON, IDM_VIEW_FINDINGS, settings_.showsFindings ? TRUE : FALSE);
    Send(toolbar_, TB_CHECKBUTTON, IDM_VIEW_SOURCE, settings_.showsSource ? TRUE : FALSE);
}

void Frame::UpdateStatus() {
    if (status_ == nullptr) {
        return;
    }
    const auto set = [this](int part, const std::wstring& text) {
        Send(status_, SB_SETTEXTW, part, text.c_str());
    };
    const Listing& list = ListingOf(page_);
    const std::wstring shown = std::to_wstring(list.Shown());
    const bool isFiltered = list.Shown() != list.Rows();
    set(VIEW_STATUS_SHOWN,
        isFiltered ? Text(IDS_SHOWN_OF, shown, std::to_wstring(list.Rows())) : Text(IDS_SHOWN, shown));
    const std::size_t unsaved = history_.Unsaved().size();
    set(VIEW_STATUS_UNSAVED, unsaved == 0 ? std::wstring() : Text(IDS_UNSAVED, std::to_wstring(unsaved)));
    set(VIEW_STATUS_UNITS, Text(isUs_ ? IDS_UNITS_US : IDS_UNITS_SI));
    set(VIEW_STATUS_ZOOM,
        isLoaded_ ? Text(IDS_ZOOM, std::to_wstring(std::lround(sheet_->Zoom() * 100))) : std::wstring());
}

void Frame::UpdateTitle() {
    const std::wstring title = Text(IDS_TITLE);
    const std::wstring text =
        file_.empty() ? title : NameOf(file_) + (history_.IsDirty() ? L" *" : L"") + L" - " + title;
    SetWindowTextW(Handle(), text.c_str());
}

void Frame::Say(const std::wstring& words) {
    Send(status_, SB_SETTEXTW, VIEW_STATUS_MESSAGE, words.c_str());
}

void Frame::SayAtOnce(const std::wstring& words) {
    Say(words);
    UpdateWindow(status_);
}

int Frame::Ask(const std::wstring& words, UINT kind) {
    if (busy_ == 0) {
        EnterCells(); // the box takes the focus, and nothing is entered while it is shown
    }
    const OwnBox own(*this);
    return MessageBoxW(Handle(), words.c_str(), Text(IDS_TITLE).c_str(), kind);
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
    const std::wstring words = page < kPointPages ? pages_.at(page).filter : typeFilter_;
    if (TextOf(filter_) != words) {
        SetWindowTextW(filter_, words.c_str());
    }
    UpdateTools();
    UpdateStatus();
}

void Frame::OnFilter() {
    std::wstring& known = page_ < kPointPages ? pages_.at(page_).filter : typeFilter_;
    const std::wstring words = TextOf(filter_);
    if (words == known) {
        return;
    }
    known = words;
    ListingOf(page_).Filter(words);
    PaneOf(page_).Update();
    UpdateTools();
    UpdateStatus();
}

void Frame::Filter(const std::wstring& words) {
    SetFocus(filter_);
    SetWindowTextW(filter_, words.c_str());
    Send(filter_, EM_SETSEL, words.size(), words.size());
}

void Frame::ShowParts(bool findings, bool source) {
    settings_.showsFindings = findings;
    settings_.showsSource = source;
    Layout();
    if (source) {
        ShowSource();
    }
    UpdateTools();
}

void Frame::MoveFocus(bool isForward) {
    std::vector<HWND> parts = {sheet_->Handle(), PaneOf(page_).Handle()};
    if (settings_.showsFindings) {
        parts.push_back(findingPane_->Handle());
    }
    if (settings_.showsSource) {
        parts.push_back(sourceBox_);
    }
    const auto found = std::find(parts.begin(), parts.end(), GetFocus());
    const std::size_t at = found == parts.end() ? 1 : static_cast<std::size_t>(found - parts.begin());
    SetFocus(parts[(at + (isForward ? 1 : parts.size() - 1)) % parts.size()]);
}

void Frame::FocusSplitter(bool isForward) {
    std::vector<HWND> shown;
    for (const std::unique_ptr<Splitter>& splitter : splitters_) {
        if (IsWindowVisible(splitter->Handle()) != FALSE) {
            shown.push_back(splitter->Handle());
        }
    }
    const HWND focus = GetFocus();
    const auto found = std::find(shown.begin(), shown.end(), focus);
    if (found == shown.end()) {
        beforeSplitter_ = focus;
        SetFocus(isForward ? shown.front() : shown.back());
        return;
    }
    const auto at = static_cast<std::size_t>(found - shown.begin());
    SetFocus(shown[(at + (isForward ? 1 : shown.size() - 1)) % shown.size()]);
}

void Frame::LeaveSplitter() {
    const bool isThere = beforeSplitter_ != nullptr && IsWindowVisible(beforeSplitter_) != FALSE &&
                         IsChild(Handle(), beforeSplitter_) != FALSE;
    SetFocus(isThere ? beforeSplitter_ : PaneOf(page_).Handle());
}

void Frame::MoveTab(bool isForward) {
    const HWND next = GetNextDlgTabItem(Handle(), GetFocus(), isForward ? FALSE : TRUE);
    if (next != nullptr) {
        SetFocus(next);
    }
}

void Frame::Copy() {
    if (!PutOnClipboard(Handle(), PaneInFocus().SelectedText())) {
        Say(Text(IDS_NOT_COPIED));
    }
}

} // namespace view
