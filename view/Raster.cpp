#include "view/Raster.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace view {

namespace {

/// Rows that a row of pixels is looked at in.
constexpr int kRowsInPixel = 4;

Pixel Mixed(Pixel under, drawing::Colour over, double part) noexcept {
    const auto weight = static_cast<std::uint32_t>(std::lround(std::clamp(part, 0.0, 1.0) * 256));
    const auto channel = [&](unsigned shift) {
        const std::uint32_t below = under >> shift & 0xFFU;
        const std::uint32_t above = over >> shift & 0xFFU;
        return (below * (256 - weight) + above * weight) / 256 << shift;
    };
    return 0xFF000000U | channel(16) | channel(8) | channel(0);
}

} // namespace

// NOLINTNEXTLINE(readability-make-member-function-const): the pixels are the picture
void Raster::Clear(drawing::Colour colour) noexcept {
    const auto count = static_cast<std::size_t>(surface_.width) * static_cast<std::size_t>(surface_.height);
    std::fill_n(surface_.pixels, count, 0xFF000000U | colour);
}

void Raster::Fill(std::span<const drawing::Point> polygon, drawing::Colour colour, double opacity) {
    if (polygon.size() < 3) {
        return;
    }
    std::vector<Edge> edges;
    double top = polygon.front().y;
    double bottom = top;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const drawing::Point& from = polygon[i];
        const drawing::Point& to = polygon[(i + 1) % polygon.size()];
        top = std::min(top, from.y);
        bottom = std::max(bottom, from.y);
        if (from.y < to.y) {
            edges.push_back({from, to, 1});
        } else if (from.y > to.y) {
            edges.push_back({to, from, -1});
        }
    }
    const int first = static_cast<int>(std::clamp(std::floor(top), 0.0, double(surface_.height)));
    const int last = static_cast<int>(std::clamp(std::ceil(bottom), 0.0, double(surface_.height)));
    for (int y = first; y < last; ++y) {
        FillRow(y, edges, colour, opacity);
    }
}

void Raster::FillRow(int y, const std::vector<Edge>& edges, drawing::Colour colour, double opacity) {
    covered_.assign(static_cast<std::size_t>(surface_.width), 0.0F);
    std::vector<std::pair<double, int>> crossings;
    for (int part = 0; part < kRowsInPixel; ++part) {
        const double at = y + (part + 0.5) / kRowsInPixel;
        crossings.clear();
        for (const Edge& edge : edges) {
            if (edge.from.y <= at && at < edge.to.y) {
                const double slope = (edge.to.x - edge.from.x) / (edge.to.y - edge.from.y);
                crossings.emplace_back(edge.from.x + (at - edge.from.y) * slope, edge.winding);
            }
        }
        std::sort(crossings.begin(), crossings.end());
        int winding = 0;
        for (std::size_t i = 0; i + 1 < crossings.size(); ++i) {
            winding += crossings[i].second;
            if (winding != 0) {
                AddSpan(crossings[i].first, crossings[i + 1].first, 1.0 / kRowsInPixel);
            }
        }
    }
    const std::span<Pixel> row = surface_.Row(y);
    for (std::size_t x = 0; x < row.size(); ++x) {
        if (covered_[x] > 0) {
            row[x] = Mixed(row[x], colour, static_cast<double>(covered_[x]) * opacity);
        }
    }
}

void Raster::AddSpan(double from, double to, double part) {
    const double left = std::clamp(from, 0.0, double(surface_.width));
    const double right = std::clamp(to, 0.0, double(surface_.width));
    const auto end = static_cast<std::size_t>(std::ceil(right));
    for (auto x = static_cast<std::size_t>(left); x < end; ++x) {
        const double width = std::min(right, double(x) + 1) - std::max(left, double(x));
        covered_[x] += static_cast<float>(width * part);
    }
}

std::vector<drawing::Point> OutlineOf(const drawing::Rectangle& rectangle) {
    const double right = rectangle.x + rectangle.width;
    const double bottom = rectangle.y + rectangle.height;
    const double radius = std::min({rectangle.radius, rectangle.width / 2, rectangle.height / 2});
    if (radius <= 0) {
        return {{rectangle.x, rectangle.y}, {right, rectangle.y}, {right, bottom}, {rectangle.x, bottom}};
    }
    const std::pair<drawing::Point, double> corners[] = {{{right - radius, rectangle.y + radius}, -0.5},
                                                         {{right - radius, bottom - radius}, 0.0},
                                                         {{rectangle.x + radius, bottom - radius}, 0.5},
                                                         {{rectangle.x + radius, rectangle.y + radius}, 1.0}};
    const int steps = std::clamp(static_cast<int>(radius), 4, 24);
    std::vector<drawing::Point> points;
    for (const auto& [centre, quarter] : corners) {
        for (int step = 0; step <= steps; ++step) {
            const double angle = std::numbers::pi * (quarter + 0.5 * step / steps);
            points.push_back({centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)});
        }
    }
    return points;
}

std::vector<drawing::Point> PieceOf(const drawing::Point& from, const drawing::Point& to, double width) {
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    if (length <= 0) {
        return {};
    }
    const double x = (to.y - from.y) / length * width / 2;
    const double y = (to.x - from.x) / length * width / 2;
    return {{from.x + x, from.y - y}, {to.x + x, to.y - y}, {to.x - x, to.y + y}, {from.x - x, from.y + y}};
}

} // namespace view
