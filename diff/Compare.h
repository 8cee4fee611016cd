#pragma once

#include "diff/Model.h"

#include <cstddef>
#include <string>
#include <vector>

namespace diff {

enum class What { Added, Removed, Renamed, Moved, Changed };

/// One thing that is not as it was.
struct Change {
    What what;
    /// "input"; empty for what the document says of itself.
    std::string noun;
    /// The item, by its new name; by its old one when it is gone.
    std::string name;
    /// The field that changed; else empty.
    std::string field;
    /// What it was and is: of a field its texts, of a renamed item its names, of a moved
    /// one its positions among the items of both documents. Of an added or removed item
    /// one of them says what it is.
    std::string before;
    std::string after;
    /// From 1; 0 where a document does not have it.
    std::size_t lineBefore = 0;
    std::size_t lineAfter = 0;
};

/// What changed, in the order of the documents: the head, then group by group. The
/// models are of one kind.
std::vector<Change> Compare(const Model& before, const Model& after);

} // namespace diff
