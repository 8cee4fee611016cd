#pragma once

#include "view/model/Row.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace view {

/// Where the points of a device stream stand in its text. A damaged text is read as far
/// as its tags go.
class SourcePoints {
  public:
    struct Place {
        PointId point;
        /// From the "<" of its element to after its end.
        std::size_t begin = 0;
        std::size_t end = 0;
    };

    /// The text is UTF-8.
    explicit SourcePoints(const std::string& text);

    /// The point whose element holds this byte.
    std::optional<PointId> At(std::size_t offset) const;
    /// The place of a point; the first one, when its name is there twice. Null when it is
    /// not there.
    const Place* Find(const PointId& point) const;
    /// In the order of the text.
    const std::vector<Place>& Places() const noexcept { return places_; }

  private:
    std::vector<Place> places_;
};

} // namespace view
