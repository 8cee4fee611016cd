#include "core/TypeData.h"

#include "tests/core/FieldRules.h"
#include "tests/core/Thrown.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

namespace tam {
namespace {

using Names = std::multiset<std::wstring>;
using Held = std::shared_ptr<TypeData>;

TEST(TypeDataTest, ReadsTheEntrysAttributesAsRoundedNumbers) {
    EXPECT_EQ(Keywords(kTypeAttributes), (Names{L"FACTOR", L"Z3REGION"}));
    TypeData type;
    Take(kTypeAttributes, L"FACTOR", type, L"2.5");
    EXPECT_EQ(type.factor, 2);
    Take(kTypeAttributes, L"FACTOR", type, L"3.5");
    EXPECT_EQ(type.factor, 4);
    Take(kTypeAttributes, L"FACTOR", type, L"12abc");
    EXPECT_EQ(type.factor, 12);
    Take(kTypeAttributes, L"Z3REGION", type, L"4");
    EXPECT_EQ(type.z3Region, 4);
}

TEST(TypeDataTest, ReadsWhatEveryTypeHas) {
    EXPECT_EQ(Keywords(kEveryType), (Names{L"NAME"}));
    TypeData type;
    Take(kEveryType, L"NAME", type, L"temp");
    EXPECT_EQ(type.name, L"temp");
}

TEST(TypeDataTest, ReadsWhatANumericTypeHas) {
    EXPECT_EQ(Keywords(kNumericType),
              (Names{L"UNIT", L"BACNETUNIT", L"LENGTH", L"A_COEF", L"B_COEF", L"C_COEF", L"INVALIDVALUE"}));
    TypeData type;
    Take(kNumericType, L"UNIT", type, L"u");
    Take(kNumericType, L"BACNETUNIT", type, L"b");
    Take(kNumericType, L"LENGTH", type, L"2");
    Take(kNumericType, L"A_COEF", type, L"1");
    Take(kNumericType, L"B_COEF", type, L"20");
    Take(kNumericType, L"C_COEF", type, L"300");
    Take(kNumericType, L"INVALIDVALUE", type, L"327.67");
    TypeData expected;
    expected.units = L"u";
    expected.bacnetUnits = L"b";
    expected.length = 2;
    expected.aCoef = 1;
    expected.bCoef = 20;
    expected.cCoef = 300;
    expected.invalidValue = L"327.67";
    EXPECT_EQ(type, expected);
}

TEST(TypeDataTest, ALengthThatIsNoNumberChangesNothing) {
    TypeData type;
    type.length = 2;
    EXPECT_EQ(ErrorOf([&] { Take(kNumericType, L"LENGTH", type, L"x"); }), kTypeMismatch);
    EXPECT_EQ(ErrorOf([&] { Take(kTextualType, L"LENGTH", type, L""); }), kTypeMismatch);
    EXPECT_EQ(type.length, 2);
}

TEST(TypeDataTest, ReadsTheLengthAloneOfAText) {
    EXPECT_EQ(Keywords(kTextualType), (Names{L"LENGTH"}));
    TypeData type;
    Take(kTextualType, L"LENGTH", type, L"31");
    EXPECT_EQ(type.length, 31);
}

Held Type(const std::wstring& id, const std::wstring& name) {
    auto type = std::make_shared<TypeData>();
    type->id = id;
    type->name = name;
    return type;
}

TEST(TypeDataPoolTest, GivesTheCopyThatIsHeldAlready) {
    TypePool pool;
    const Held first = pool.Shared(Type(L"8", L"count"));
    EXPECT_EQ(pool.Shared(Type(L"8", L"count")), first);
    EXPECT_EQ(pool.Shared(first), first);
    EXPECT_NE(pool.Shared(Type(L"9", L"count")), first);
}

TEST(TypeDataPoolTest, TypesThatDifferAreNotShared) {
    TypePool pool;
    const Held first = pool.Shared(Type(L"8", L"count"));
    const Held other = pool.Shared(Type(L"8", L"other"));
    EXPECT_NE(other, first);
    EXPECT_EQ(first->name, L"count");
    EXPECT_EQ(other->name, L"other");
    // The last one is what is found.
    EXPECT_EQ(pool.Shared(Type(L"8", L"other")), other);
}

TEST(TypeDataPoolTest, HoldsNothingItself) {
    TypePool pool;
    const Held first = Type(L"8", L"count");
    EXPECT_EQ(pool.Shared(first), first);
    EXPECT_EQ(first.use_count(), 1);
}

TEST(TypeDataPoolTest, WhatWasChangedByItsOnlyHolderIsFoundAsItIsNow) {
    TypePool pool;
    const Held first = pool.Shared(Type(L"8", L"count"));
    first->name = L"changed";
    EXPECT_NE(pool.Shared(Type(L"8", L"count")), first);
}

} // namespace
} // namespace tam
