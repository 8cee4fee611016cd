#include "view/Frame_Busy.h"

#include "view/resource.h"

#include <cmath>
#include <cstddef>
#include <string>

namespace view {

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
    const Listing& list = FilteredList();
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
        file_.empty() ? title
                      : Text(history_.IsDirty() ? IDS_TITLE_UNSAVED : IDS_TITLE_OF, NameOf(file_), title);
    SetWindowTextW(Handle(), text.c_str());
}

void Frame::Say(const std::wstring& words) {
    said_ = words;
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

} // namespace view
