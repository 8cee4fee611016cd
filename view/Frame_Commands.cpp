#include "view/Frame_Busy.h"

#include "view/Clipboard.h"
#include "view/FileDialogs.h"
#include "view/resource.h"

#include "bench/Text.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>

namespace view {

namespace {

/// The act of a command that calls a member with these arguments.
template <auto Member, auto... Arguments>
void Act(Frame& frame, int) {
    (frame.*Member)(Arguments...);
}

/// Of one that gets the place of its identifier after another one.
template <auto Member, int First>
void ActOn(Frame& frame, int id) {
    (frame.*Member)(static_cast<std::size_t>(id - First));
}

} // namespace

/// A command, or several whose identifiers follow each other.
struct Frame::Command {
    int first = 0;
    int last = 0;
    void (*act)(Frame& frame, int id) = nullptr;
    /// Null: always, but while the window is busy.
    bool (*isEnabled)(const Frame& frame, int id) = nullptr;
    bool isForBusyTimes = false;
};

const Frame::Command* Frame::CommandOf(int wanted) {
    constexpr auto kLoaded = [](const Frame& frame, int) { return frame.isLoaded_; };
    constexpr auto kHasFindings = [](const Frame& frame, int) { return frame.findingList_.Shown() > 0; };
    constexpr auto kHasSource = [](const Frame& frame, int) { return frame.HasSource(); };
    constexpr auto kHasValue = [](const Frame& frame, int) { return frame.HasPickedValue(); };
    static constexpr Command kCommands[] = {
        {IDM_FILE_OPEN, IDM_FILE_OPEN, Act<&Frame::OpenChosen>},
        {IDM_FILE_RELOAD, IDM_FILE_RELOAD, Act<&Frame::Reload>,
         [](const Frame& frame, int) { return !frame.file_.empty(); }},
        {IDM_FILE_SAVE, IDM_FILE_SAVE, Act<&Frame::Save>, kLoaded},
        {IDM_FILE_SAVE_AS, IDM_FILE_SAVE_AS, Act<&Frame::SaveAs>, kLoaded},
        {IDM_FILE_SAVE_STREAM, IDM_FILE_SAVE_STREAM, Act<&Frame::SaveStream>, kLoaded},
        {IDM_FILE_EXPORT_IMAGE, IDM_FILE_EXPORT_SVG, [](Frame& frame, int id) { frame.Export(id); }, kLoaded},
        {IDM_FILE_CLOSE, IDM_FILE_CLOSE, Act<&Frame::CloseFile>,
         [](const Frame& frame, int) { return !frame.file_.empty(); }},
        {IDM_FILE_EXIT, IDM_FILE_EXIT, Act<&Frame::Close>},
        {IDM_FILE_OPEN_WAITING, IDM_FILE_OPEN_WAITING, Act<&Frame::OpenWaiting>},
        {IDM_FILE_RECENT, IDM_FILE_RECENT_LAST, ActOn<&Frame::OpenRecent, IDM_FILE_RECENT>,
         [](const Frame& frame, int id) {
             return static_cast<std::size_t>(id - IDM_FILE_RECENT) < frame.settings_.Recent().Files().size();
         }},
        {IDM_FILE_MODULE, IDM_FILE_MODULE_LAST, ActOn<&Frame::OpenModule, IDM_FILE_MODULE>,
         [](const Frame& frame, int id) {
             return frame.IsModule(static_cast<std::size_t>(id - IDM_FILE_MODULE));
         }},

        {IDM_EDIT_UNDO, IDM_EDIT_UNDO, Act<&Frame::Undo>,
         [](const Frame& frame, int) { return frame.isLoaded_ && frame.history_.CanUndo(); }},
        {IDM_EDIT_REDO, IDM_EDIT_REDO, Act<&Frame::Redo>,
         [](const Frame& frame, int) { return frame.isLoaded_ && frame.history_.CanRedo(); }},
        {IDM_EDIT_VALUE, IDM_EDIT_VALUE, Act<&Frame::EditPicked>, kHasValue},
        {IDM_EDIT_CELL, IDM_EDIT_CELL, Act<&Frame::StartCell>, kHasValue},
        {IDM_EDIT_COPY, IDM_EDIT_COPY, Act<&Frame::Copy>,
         [](const Frame& frame, int) { return frame.PaneInFocus().Picked().has_value(); }},
        {IDM_EDIT_SELECT_ALL, IDM_EDIT_SELECT_ALL,
         [](Frame& frame, int) { frame.PaneInFocus().SelectAll(); }},
        {IDM_EDIT_FILTER, IDM_EDIT_FILTER, Act<&Frame::GoToFilter>},
        {IDM_EDIT_CLEAR_FILTER, IDM_EDIT_CLEAR_FILTER, Act<&Frame::ClearFilter>,
         [](const Frame& frame, int) {
             return GetWindowTextLengthW(frame.filter_) > 0 || GetFocus() == frame.filter_;
         }},
        {IDM_EDIT_FIND, IDM_EDIT_FIND, Act<&Frame::BeginSearch>, kHasSource},
        {IDM_EDIT_FIND_NEXT, IDM_EDIT_FIND_NEXT, Act<&Frame::Search, true>, kHasSource},
        {IDM_EDIT_FIND_PREVIOUS, IDM_EDIT_FIND_PREVIOUS, Act<&Frame::Search, false>, kHasSource},
        {IDM_EDIT_FIND_END, IDM_EDIT_FIND_END, Act<&Frame::EndSearch>,
         [](const Frame& frame, int) { return frame.isSearchShown_; }},

        {IDM_VIEW_ATTRIBUTES, IDM_VIEW_CATALOGUE, ActOn<&Frame::GoToPage, IDM_VIEW_ATTRIBUTES>},
        {IDM_VIEW_LIST, IDM_VIEW_LIST, Act<&Frame::GoToList>},
        {IDM_VIEW_SORT, IDM_VIEW_SORT_LAST, ActOn<&Frame::Sort, IDM_VIEW_SORT>,
         [](const Frame& frame, int id) {
             return static_cast<std::size_t>(id - IDM_VIEW_SORT) < frame.PaneInFocus().Columns();
         }},
        {IDM_VIEW_FIT_COLUMNS, IDM_VIEW_FIT_COLUMNS, Act<&Frame::FitColumns>},
        {IDM_VIEW_NEXT_COLUMN, IDM_VIEW_NEXT_COLUMN, Act<&Frame::StepColumn, true>},
        {IDM_VIEW_PREVIOUS_COLUMN, IDM_VIEW_PREVIOUS_COLUMN, Act<&Frame::StepColumn, false>},
        {IDM_VIEW_WIDER, IDM_VIEW_WIDER, Act<&Frame::WidenColumn, true>},
        {IDM_VIEW_NARROWER, IDM_VIEW_NARROWER, Act<&Frame::WidenColumn, false>},
        {IDM_VIEW_SHEET, IDM_VIEW_SHEET, [](Frame& frame, int) { SetFocus(frame.sheet_->Handle()); }},
        {IDM_VIEW_FINDINGS, IDM_VIEW_FINDINGS,
         [](Frame& frame, int) {
             frame.ShowParts(!frame.settings_.showsFindings, frame.settings_.showsSource);
         }},
        {IDM_VIEW_SOURCE, IDM_VIEW_SOURCE,
         [](Frame& frame, int) {
             frame.ShowParts(frame.settings_.showsFindings, !frame.settings_.showsSource);
         }},
        {IDM_VIEW_SHOW_SOURCE, IDM_VIEW_SHOW_SOURCE, Act<&Frame::ShowSource>},
        {IDM_VIEW_NEXT_FINDING, IDM_VIEW_NEXT_FINDING, Act<&Frame::StepFinding, true>, kHasFindings},
        {IDM_VIEW_PREVIOUS_FINDING, IDM_VIEW_PREVIOUS_FINDING, Act<&Frame::StepFinding, false>, kHasFindings},
        {IDM_VIEW_ZOOM_IN, IDM_VIEW_ZOOM_IN, [](Frame& frame, int) { frame.sheet_->ZoomIn(); }, kLoaded},
        {IDM_VIEW_ZOOM_OUT, IDM_VIEW_ZOOM_OUT, [](Frame& frame, int) { frame.sheet_->ZoomOut(); }, kLoaded},
        {IDM_VIEW_ZOOM_FIT, IDM_VIEW_ZOOM_FIT, [](Frame& frame, int) { frame.sheet_->Fit(); }, kLoaded},
        {IDM_VIEW_ZOOM_ACTUAL, IDM_VIEW_ZOOM_ACTUAL, [](Frame& frame, int) { frame.sheet_->ZoomToNatural(); },
         kLoaded},
        {IDM_VIEW_SI, IDM_VIEW_SI, Act<&Frame::SetUnits, false>},
        {IDM_VIEW_US, IDM_VIEW_US, Act<&Frame::SetUnits, true>},
        {IDM_VIEW_NEXT_PART, IDM_VIEW_NEXT_PART, Act<&Frame::MoveFocus, true>},
        {IDM_VIEW_PREVIOUS_PART, IDM_VIEW_PREVIOUS_PART, Act<&Frame::MoveFocus, false>},
        {IDM_VIEW_NEXT_SPLITTER, IDM_VIEW_NEXT_SPLITTER, Act<&Frame::FocusSplitter, true>},
        {IDM_VIEW_PREVIOUS_SPLITTER, IDM_VIEW_PREVIOUS_SPLITTER, Act<&Frame::FocusSplitter, false>},
        {IDM_VIEW_STOP, IDM_VIEW_STOP, [](Frame& frame, int) { frame.session_->Stop(); },
         [](const Frame& frame, int) { return frame.isLoading_; }, true},

        {IDM_HELP_KEYS, IDM_HELP_KEYS, Act<&Frame::ShowKeys>},
        {IDM_HELP_ABOUT, IDM_HELP_ABOUT, Act<&Frame::ShowAbout>},
    };
    const auto* const found =
        std::find_if(std::begin(kCommands), std::end(kCommands), [wanted](const Command& command) {
            return wanted >= command.first && wanted <= command.last;
        });
    return found != std::end(kCommands) ? found : nullptr;
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
    const Command* const command = CommandOf(id);
    if (command == nullptr) {
        return false;
    }
    if (IsEnabled(id)) {
        EnterCells();
        command->act(*this, id);
    }
    return true;
}

bool Frame::IsEnabled(int id) const {
    const Command* const command = CommandOf(id);
    return command != nullptr && (busy_ == 0 || command->isForBusyTimes) &&
           (command->isEnabled == nullptr || command->isEnabled(*this, id));
}

bool Frame::HasPickedValue() const {
    const bool hasValues = page_ == 0 || page_ == 1; // outputs have none
    return isLoaded_ && hasValues && pages_.at(page_).pane->Picked();
}

void Frame::OpenChosen() {
    const std::wstring file = Chosen([this] { return ChooseFile(Handle(), IDS_OPEN, IDS_FILTER_OPEN); });
    if (!file.empty()) {
        Open(file);
    }
}

void Frame::OpenRecent(std::size_t number) {
    const std::wstring file = settings_.Recent().Files().at(number);
    if (!bench::IsFile(file)) {
        Ask(Text(IDS_RECENT_GONE, file), MB_OK | MB_ICONINFORMATION);
        settings_.RemoveRecent(file);
        return;
    }
    Open(file);
}

void Frame::Reload() {
    if (AskToSave()) {
        Load(file_);
    }
}

void Frame::EditPicked() {
    if (const auto point = PickedPoint()) {
        OpenEditor(*point);
    }
}

void Frame::Copy() {
    if (!PutOnClipboard(Handle(), PaneInFocus().SelectedText())) {
        Say(Text(IDS_NOT_COPIED));
    }
}

void Frame::ShowKeys() {
    Ask(Text(IDS_KEYS_1) + Text(IDS_KEYS_2) + Text(IDS_KEYS_3) + Text(IDS_KEYS_5) + Text(IDS_KEYS_4),
        MB_OK | MB_ICONINFORMATION);
}

void Frame::ShowAbout() {
    if (isLoaded_) {
        const Busy busy(*this);
        session_->ShowAbout();
    } else {
        Ask(Text(IDS_ABOUT), MB_OK | MB_ICONINFORMATION);
    }
}

} // namespace view
