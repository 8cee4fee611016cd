#include "core/KeyedCollection.h"

#include "Thrown.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// A long random run against a list that is searched from its start each time.

namespace tam {
namespace {

constexpr int kNone = -1;

int ItemOf(const int* found) {
    return found != nullptr ? *found : kNone;
}

class Model {
  public:
    std::vector<std::pair<std::wstring, int>> rows;

    std::size_t Find(std::wstring_view key) const {
        const auto found = std::find_if(rows.begin(), rows.end(),
                                        [&](const auto& row) { return EqualIgnoringCase(row.first, key); });
        return static_cast<std::size_t>(found - rows.begin());
    }
    bool Has(std::wstring_view key) const { return Find(key) < rows.size(); }
    void Remove(std::size_t index) { rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(index)); }
    void Move(std::size_t from, std::size_t to) {
        const auto row = rows[from];
        Remove(from);
        rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(to), row);
    }
};

class RandomRun {
  public:
    explicit RandomRun(unsigned seed) : random_(seed) {}

    void Step() {
        switch (Below(10)) {
        case 0:
        case 1:
        case 2:
        case 3:
            return Add();
        case 4:
            return RemoveKey();
        case 5:
            return RemovePosition();
        case 6:
        case 7:
            return Move();
        case 8:
            return Lookup();
        default:
            if (Below(20) == 0) {
                return Arrange();
            }
            if (Below(100) == 0) {
                collection_.Clear();
                model_.rows.clear();
            }
        }
    }

    void Compare() const {
        ASSERT_EQ(collection_.Count(), model_.rows.size());
        std::size_t index = 0;
        for (const int item : collection_) {
            ASSERT_EQ(item, model_.rows[index].second);
            ASSERT_EQ(collection_.KeyAt(index), model_.rows[index].first);
            ASSERT_EQ(ItemOf(collection_.FindKey(model_.rows[index].first)), item);
            ++index;
            ASSERT_EQ(ItemOf(collection_.FindPosition(static_cast<double>(index))), item);
            ASSERT_EQ(collection_.PositionOf(item), index);
        }
        ASSERT_EQ(index, model_.rows.size());
    }

  private:
    std::size_t Below(std::size_t limit) { return random_() % limit; }

    /// One of few keys in any letter case, some of them numbers.
    std::wstring Key() {
        std::wstring key =
            Below(4) == 0 ? std::to_wstring(Below(30)) : L"k\u00E9y" + std::to_wstring(Below(60));
        return Below(2) == 0 ? UpperCase(key) : key;
    }

    void Add() {
        const std::wstring key = Key();
        const std::int32_t expected = model_.Has(key) ? kDuplicateKey : 0;
        EXPECT_EQ(ErrorOf([&] { collection_.Add(key, nextItem_); }), expected);
        if (expected == 0) {
            model_.rows.emplace_back(key, nextItem_);
        }
        ++nextItem_;
    }
    void RemoveKey() {
        const std::wstring key = Key();
        EXPECT_EQ(collection_.RemoveKey(key), model_.Has(key));
        if (model_.Has(key)) {
            model_.Remove(model_.Find(key));
        }
    }
    void RemovePosition() {
        const std::size_t position = Below(model_.rows.size() + 2);
        const bool isThere = position >= 1 && position <= model_.rows.size();
        EXPECT_EQ(collection_.RemovePosition(position), isThere);
        if (isThere) {
            model_.Remove(position - 1);
        }
    }
    void Move() {
        const std::size_t count = model_.rows.size();
        const std::size_t from = Below(count + 2);
        const std::size_t to = Below(count + 2);
        const bool isThere = from >= 1 && from <= count && to >= 1 && to <= count;
        const std::wstring key = from >= 1 && from <= count ? model_.rows[from - 1].first : L"absent";
        EXPECT_EQ(ErrorOf([&] { collection_.Bring(key, to); }), isThere ? 0 : kSubscript);
        if (isThere) {
            model_.Move(from - 1, to - 1);
        }
    }
    /// Positions one after another, some of them for a key that was brought before, and
    /// now and then something else between.
    void Arrange() {
        const KeyedCollection<int>::Arranging arranging(collection_);
        for (std::size_t to = 1; to <= model_.rows.size(); ++to) {
            const std::size_t from = Below(8) == 0 ? Below(to) : to - 1 + Below(model_.rows.size() + 1 - to);
            collection_.Bring(model_.rows[from].first, to);
            model_.Move(from, to - 1);
            switch (Below(20)) {
            case 0:
                Compare();
                break;
            case 1:
                Add();
                break;
            case 2:
                RemoveKey();
                break;
            case 3:
                collection_.Clear();
                model_.rows.clear();
                break;
            default:
                break;
            }
        }
    }
    void Lookup() {
        const std::wstring index = Key();
        std::size_t row = model_.Find(index);
        if (row == model_.rows.size()) {
            const double position = Val(index);
            row = position >= 1 ? static_cast<std::size_t>(position) - 1 : row;
        }
        EXPECT_EQ(ItemOf(collection_.Lookup(index)),
                  row < model_.rows.size() ? model_.rows[row].second : kNone);
    }

    std::mt19937 random_;
    KeyedCollection<int> collection_;
    Model model_;
    int nextItem_ = 0;
};

class KeyedCollectionModelTest : public testing::TestWithParam<unsigned> {};

TEST_P(KeyedCollectionModelTest, AgreesWithAPlainList) {
    RandomRun run(GetParam());
    for (int step = 0; step < 3000; ++step) {
        SCOPED_TRACE("step " + std::to_string(step));
        run.Step();
        if (step % 10 == 0) {
            run.Compare();
        }
        if (testing::Test::HasFailure()) {
            return;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, KeyedCollectionModelTest, testing::Values(1u, 2u, 3u, 4u));

} // namespace
} // namespace tam
