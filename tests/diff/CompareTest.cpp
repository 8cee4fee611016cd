// Comparing models, whatever they came from.

#include "diff/Compare.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace difftest {

using namespace diff;

namespace {

Model ModelWith(const std::vector<std::string>& names) {
    Group group{"input", "Inputs", {}, true, false};
    for (const std::string& name : names) {
        group.items.push_back({name, {}, 1, "", ""});
    }
    Model model;
    model.groups = {group};
    return model;
}

std::vector<std::string> Names(std::size_t count) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < count; ++i) {
        names.push_back("P" + std::to_string(i));
    }
    return names;
}

std::size_t CountOf(const std::vector<Change>& changes, What what) {
    return static_cast<std::size_t>(std::count_if(
        changes.begin(), changes.end(), [what](const Change& change) { return change.what == what; }));
}

// A naive count: the longest increasing sequence, in quadratic time.
std::size_t LeastMoves(const std::vector<std::size_t>& order) {
    std::vector<std::size_t> longest(order.size(), 1);
    for (std::size_t i = 0; i < order.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (order[j] < order[i]) {
                longest[i] = std::max(longest[i], longest[j] + 1);
            }
        }
    }
    return order.empty() ? 0 : order.size() - *std::max_element(longest.begin(), longest.end());
}

TEST(CompareTest, FindsTheFewestMovesOfAnyOrder) {
    std::mt19937 random(20261122);
    for (int round = 0; round < 200; ++round) {
        std::vector<std::size_t> order(static_cast<std::size_t>(round % 12));
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::shuffle(order.begin(), order.end(), random);
        std::vector<std::string> shuffled;
        for (const std::size_t place : order) {
            shuffled.push_back("P" + std::to_string(place));
        }
        const auto changes = Compare(ModelWith(Names(order.size())), ModelWith(shuffled));
        EXPECT_EQ(LeastMoves(order), changes.size());
        EXPECT_EQ(changes.size(), CountOf(changes, What::Moved));
    }
}

TEST(CompareTest, PairsItemsOfOneNameInTheirOrder) {
    EXPECT_TRUE(Compare(ModelWith({"A", "A", "a"}), ModelWith({"A", "a", "A"})).empty());
    const auto changes = Compare(ModelWith({"A", "A"}), ModelWith({"A"}));
    ASSERT_EQ(1U, changes.size());
    EXPECT_EQ(What::Removed, changes[0].what);
}

TEST(CompareTest, TellsLetterCaseOnlyWhereItMeansSomething) {
    Model before = ModelWith({"A"});
    Model after = ModelWith({"a"});
    EXPECT_TRUE(Compare(before, after).empty());
    before.groups[0].isExact = after.groups[0].isExact = true;
    EXPECT_EQ(2U, Compare(before, after).size());
}

TEST(CompareTest, ComparesAHundredThousandItems) {
    std::vector<std::string> names = Names(100000);
    const Model before = ModelWith(names);
    std::reverse(names.begin(), names.end());
    names.back() = "new";
    const auto changes = Compare(before, ModelWith(names));
    EXPECT_EQ(1U, CountOf(changes, What::Removed));
    EXPECT_EQ(1U, CountOf(changes, What::Added));
    EXPECT_EQ(99998U, CountOf(changes, What::Moved));
}

/// An item with fields of these names.
Model ModelOfFields(const std::vector<std::string>& names) {
    Model model = ModelWith({"P"});
    for (const std::string& name : names) {
        model.groups[0].items[0].fields.push_back({name, "yes", "yes", 1});
    }
    return model;
}

std::vector<std::string> FieldsOf(const std::vector<Change>& changes) {
    std::vector<std::string> fields;
    for (const Change& change : changes) {
        fields.push_back(change.field);
    }
    return fields;
}

TEST(CompareTest, FindsFieldsByNameWhetherFewOrMany) {
    for (const std::size_t count : {3U, 40U}) {
        std::vector<std::string> before = Names(count);
        std::vector<std::string> after(before.rbegin(), before.rend());
        EXPECT_EQ(0U, Compare(ModelOfFields(before), ModelOfFields(after)).size());
        before[1] = "p1"; // letter case is none
        after.emplace_back("New");
        EXPECT_EQ(std::vector<std::string>{"New"},
                  FieldsOf(Compare(ModelOfFields(before), ModelOfFields(after))));
        before.emplace_back("Old");
        EXPECT_EQ((std::vector<std::string>{"Old", "New"}),
                  FieldsOf(Compare(ModelOfFields(before), ModelOfFields(after))));
    }
}

TEST(CompareTest, AnItemOfManyFieldsTakesNoSquareOfTime) {
    const Model model = ModelOfFields(Names(100000));
    const auto started = std::chrono::steady_clock::now();
    EXPECT_EQ(0U, Compare(model, model).size());
    EXPECT_GT(std::chrono::seconds(200), std::chrono::steady_clock::now() - started); // else an hour
}

} // namespace

} // namespace difftest
