#include "view/model/Listing.h"

#include "core/Case.h"
#include "view/model/CellOrder.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace view {

namespace {

constexpr std::size_t kHidden = std::numeric_limits<std::size_t>::max();
/// Between cells, so that no word is found across two of them.
constexpr wchar_t kBetweenCells = L'\x1F';

std::vector<std::wstring> WordsIn(std::wstring_view text) {
    std::vector<std::wstring> words;
    for (std::size_t at = text.find_first_not_of(L" \t"); at != std::wstring_view::npos;) {
        const std::size_t end = std::min(text.find_first_of(L" \t", at), text.size());
        words.push_back(tam::UpperCase(text.substr(at, end - at)));
        at = text.find_first_not_of(L" \t", end);
    }
    return words;
}

} // namespace

void Listing::Reset(std::size_t rows, std::size_t columns) {
    columns_ = columns;
    texts_.clear();
    texts_.reserve(rows);
    for (std::size_t row = 0; row < rows; ++row) {
        texts_.push_back(TextOf(row));
    }
    if (order_ && order_->column >= columns_) {
        order_.reset();
    }
    Arrange();
}

void Listing::Changed(std::size_t row) {
    texts_.at(row) = TextOf(row);
}

void Listing::Sort(std::optional<SortOrder> order) {
    order_ = order && order->column < columns_ ? order : std::nullopt;
    Arrange();
}

void Listing::ToggleSort(std::size_t column) {
    if (!order_ || order_->column != column) {
        Sort(SortOrder{column, false});
    } else if (!order_->isDownward) {
        Sort(SortOrder{column, true});
    } else {
        Sort(std::nullopt);
    }
}

void Listing::Filter(std::wstring_view words) {
    words_ = words;
    Select();
}

std::optional<std::size_t> Listing::PlaceOf(std::size_t row) const {
    return row < places_.size() && places_[row] != kHidden ? std::optional(places_[row]) : std::nullopt;
}

std::optional<std::size_t> Listing::FindBeginning(std::wstring_view text, std::size_t column,
                                                  std::size_t from) const {
    for (std::size_t step = 0; step < shown_.size() && column < columns_; ++step) {
        const std::size_t place = (from + step) % shown_.size();
        if (tam::EqualIgnoringCase(cell_(shown_[place], column).substr(0, text.size()), text)) {
            return place;
        }
    }
    return std::nullopt;
}

std::wstring Listing::TextOf(std::size_t row) const {
    std::wstring text;
    for (std::size_t column = 0; column < columns_; ++column) {
        text.append(cell_(row, column)) += kBetweenCells;
    }
    return tam::UpperCase(text);
}

void Listing::Arrange() {
    sorted_.resize(texts_.size());
    std::iota(sorted_.begin(), sorted_.end(), std::size_t{0});
    if (order_) {
        std::vector<CellKey> keys;
        keys.reserve(sorted_.size());
        for (const std::size_t row : sorted_) {
            keys.emplace_back(cell_(row, order_->column));
        }
        std::stable_sort(sorted_.begin(), sorted_.end(), [&](std::size_t left, std::size_t right) {
            if (keys[left].IsEmpty() || keys[right].IsEmpty()) {
                return !keys[left].IsEmpty();
            }
            const int order = keys[left].Compare(keys[right]);
            return order_->isDownward ? order > 0 : order < 0;
        });
    }
    Select();
}

void Listing::Select() {
    const std::vector<std::wstring> words = WordsIn(words_);
    shown_.clear();
    places_.assign(texts_.size(), kHidden);
    for (const std::size_t row : sorted_) {
        const bool isShown = std::all_of(words.begin(), words.end(), [&](const std::wstring& word) {
            return texts_[row].find(word) != std::wstring::npos;
        });
        if (isShown) {
            places_[row] = shown_.size();
            shown_.push_back(row);
        }
    }
}

} // namespace view
