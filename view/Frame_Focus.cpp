#include "view/Frame.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

namespace view {

void Frame::ShowParts(bool findings, bool source) {
    settings_.showsFindings = findings;
    settings_.showsSource = source;
    Layout();
    if (source) {
        ShowSource();
    }
    if (isFindingsFiltered_ && !findings) {
        AimFilter(false);
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
    const HWND focus = GetFocus();
    const auto found = std::find(parts.begin(), parts.end(), focus == search_ ? sourceBox_ : focus);
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

} // namespace view
