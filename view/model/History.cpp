#include "view/model/History.h"

#include <algorithm>
#include <utility>

namespace view {

void History::Clear() {
    *this = History();
}

void History::Add(std::vector<Change> step) {
    std::erase_if(step, [](const Change& change) { return change.before == change.after; });
    if (step.empty()) {
        return;
    }
    steps_.resize(done_);
    for (const Change& change : step) {
        Set(change);
    }
    steps_.push_back(std::move(step));
    ++done_;
}

const std::vector<Change>* History::NextUndo() const noexcept {
    return CanUndo() ? &steps_[done_ - 1] : nullptr;
}

const std::vector<Change>* History::NextRedo() const noexcept {
    return CanRedo() ? &steps_[done_] : nullptr;
}

std::vector<Change> History::Undo() {
    if (!CanUndo()) {
        return {};
    }
    std::vector<Change> step = steps_[--done_];
    std::reverse(step.begin(), step.end());
    for (Change& change : step) {
        std::swap(change.before, change.after);
        Set(change);
    }
    return step;
}

std::vector<Change> History::Redo() {
    if (!CanRedo()) {
        return {};
    }
    std::vector<Change> step = steps_[done_++];
    for (const Change& change : step) {
        Set(change);
    }
    return step;
}

void History::MarkSaved() {
    for (const auto& [point, value] : unsaved_) {
        saved_[point] = value;
    }
    unsaved_.clear();
}

std::map<PointId, std::wstring> History::Changed() const {
    std::map<PointId, std::wstring> values = unsaved_;
    values.insert(saved_.begin(), saved_.end()); // a point that is not unsaved has the saved value
    return values;
}

void History::Set(const Change& change) {
    // Before its first change a point has the file's value.
    const auto saved = saved_.try_emplace(change.point, change.before).first;
    if (change.after == saved->second) {
        unsaved_.erase(change.point);
    } else {
        unsaved_[change.point] = change.after;
    }
}

} // namespace view
