// Input: operations on a keyed collection, each checked against a plain list.
#include "core/KeyedCollection.h"
#include "Subjects.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tam::fuzz {

namespace {

struct Row {
    std::wstring key;
    int item;
};

template <class F>
bool Throws(RunTime expected, F&& call) {
    try {
        call();
        return false;
    } catch (const RunTimeError& error) {
        Require(error.Number() == static_cast<std::int32_t>(expected));
        return true;
    }
}

/// Whether a look-up found this item.
bool Is(const int* found, int item) {
    return found != nullptr && *found == item;
}

class Run {
  public:
    void Step(Input& input) {
        const std::size_t choice = input.Below(16);
        if (choice < 6) {
            Add(input.Word(3));
        } else if (choice < 8) {
            RemoveKey(input.Word(3));
        } else if (choice < 10) {
            RemovePosition(input.Below(rows_.size() + 2));
        } else if (choice < 13) {
            const std::size_t from = input.Below(rows_.size() + 2);
            Move(from, input.Below(rows_.size() + 2));
        } else if (choice < 15) {
            Lookup(input.Word(6));
        } else if (input.Byte() == 0) {
            collection_.Clear();
            rows_.clear();
        }
    }

    void Compare() const {
        Require(collection_.Count() == rows_.size());
        std::size_t index = 0;
        for (const int item : collection_) {
            Require(item == rows_[index].item && collection_.KeyAt(index) == rows_[index].key);
            Require(Is(collection_.FindKey(UpperCase(rows_[index].key)), item));
            ++index;
            Require(Is(collection_.FindPosition(static_cast<double>(index)), item));
            Require(collection_.PositionOf(item) == index);
        }
        Require(index == rows_.size());
        Require(collection_.FindPosition(0) == nullptr);
        Require(collection_.FindPosition(static_cast<double>(index) + 1) == nullptr);
    }

  private:
    std::optional<std::size_t> Find(const std::wstring& key) const {
        for (std::size_t i = 0; i < rows_.size(); ++i) {
            if (EqualIgnoringCase(rows_[i].key, key)) {
                return i;
            }
        }
        return std::nullopt;
    }
    bool IsPosition(std::size_t oneBased) const { return oneBased >= 1 && oneBased <= rows_.size(); }
    void Drop(std::size_t index) { rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(index)); }

    void Add(const std::wstring& key) {
        const bool isThere = Find(key).has_value();
        Require(Throws(RunTime::DuplicateKey, [&] { collection_.Add(key, next_); }) == isThere);
        if (!isThere) {
            rows_.push_back({key, next_});
        }
        ++next_;
    }
    void RemoveKey(const std::wstring& key) {
        const auto index = Find(key);
        Require(collection_.RemoveKey(key) == index.has_value());
        if (index) {
            Drop(*index);
        }
    }
    void RemovePosition(std::size_t oneBased) {
        Require(collection_.RemovePosition(oneBased) == IsPosition(oneBased));
        if (IsPosition(oneBased)) {
            Drop(oneBased - 1);
        }
    }
    void Move(std::size_t from, std::size_t to) {
        const bool moves = IsPosition(from) && IsPosition(to);
        const std::wstring key = IsPosition(from) ? rows_[from - 1].key : L"absent";
        Require(Throws(RunTime::Subscript, [&] { collection_.Bring(key, to); }) == !moves);
        if (moves) {
            const Row row = rows_[from - 1];
            Drop(from - 1);
            rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(to) - 1, row);
        }
    }
    void Lookup(const std::wstring& text) const {
        const int* expected = nullptr;
        if (const auto index = Find(text)) {
            expected = &rows_[*index].item;
        } else {
            double position = 0;
            const bool isTooBig = Throws(RunTime::Overflow, [&] { position = RoundToEven(Val(text)); });
            if (!isTooBig && position >= 1 && position <= static_cast<double>(rows_.size())) {
                expected = &rows_[static_cast<std::size_t>(position) - 1].item;
            }
        }
        const int* found = collection_.Lookup(text);
        Require(expected == nullptr ? found == nullptr : Is(found, *expected));
    }

    KeyedCollection<int> collection_;
    std::vector<Row> rows_;
    int next_ = 0;
};

} // namespace

void FuzzCollection(Input& input) {
    Run run;
    for (int steps = 0; !input.IsAtEnd() && steps < 500; ++steps) {
        run.Step(input);
        run.Compare();
    }
}

} // namespace tam::fuzz
