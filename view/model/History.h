#pragma once

#include "view/model/Row.h"

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace view {

/// A point's value before and after.
struct Change {
    PointId point;
    std::wstring before;
    std::wstring after;
    bool operator==(const Change&) const = default;
};

/// What a person changed since the document was opened, to be undone and redone. A step
/// is what one action changed, usually one value.
class History {
  public:
    /// A document was opened: nothing is changed.
    void Clear();

    /// Adds a step that was done. What was undone before can no longer be redone. Changes
    /// that change nothing are left out, and so is a step of nothing else.
    void Add(std::vector<Change> step);
    void Add(Change change) { Add(std::vector<Change>{std::move(change)}); }

    bool CanUndo() const noexcept { return done_ > 0; }
    bool CanRedo() const noexcept { return done_ < steps_.size(); }
    /// The step that Undo or Redo would go; null when there is none.
    const std::vector<Change>* NextUndo() const noexcept;
    const std::vector<Change>* NextRedo() const noexcept;
    /// Takes the next step back, or again, and answers what is to be set: each change
    /// with the value to set as `after`, in the order in which to set them. Empty when
    /// there is no step.
    std::vector<Change> Undo();
    std::vector<Change> Redo();

    /// The document was saved as it is now.
    void MarkSaved();
    /// True when a point has another value than the file.
    bool IsDirty() const noexcept { return !unsaved_.empty(); }
    bool IsUnsaved(const PointId& point) const { return unsaved_.contains(point); }
    /// The points whose values are not in the file, with these values.
    const std::map<PointId, std::wstring>& Unsaved() const noexcept { return unsaved_; }
    /// All points that were changed since the document was opened, saved or not, with their
    /// values as they are now.
    std::map<PointId, std::wstring> Changed() const;

  private:
    void Set(const Change& change);

    std::vector<std::vector<Change>> steps_;
    std::size_t done_ = 0;
    /// What the file has, of the points that were ever changed.
    std::map<PointId, std::wstring> saved_;
    std::map<PointId, std::wstring> unsaved_;
};

} // namespace view
