#include "core/PointKeys.h"

#include "Thrown.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>

namespace tam {
namespace {

TEST(PointKeysReferenceKeyTest, IsTheTextBeforeTheLastUnderscore) {
    EXPECT_EQ(ReferenceKey(L"dev7_ch2_Out"), L"dev7_ch2");
    EXPECT_EQ(ReferenceKey(L"Obj_"), L"Obj");
    EXPECT_EQ(ReferenceKey(L"_x"), L"");
}

TEST(PointKeysReferenceKeyTest, IsTheWholeTextWithoutUnderscore) {
    EXPECT_EQ(ReferenceKey(L"4203a"), L"4203a");
    EXPECT_EQ(ReferenceKey(L""), L"");
}

TEST(PointKeysPointKeyTest, JoinsByABackslash) {
    const auto under = [](const wchar_t* owner) { return std::make_shared<const std::wstring>(owner); };
    EXPECT_EQ(PointKey(under(L"K\\ATT"), L"Mode"), L"K\\ATT\\Mode");
    EXPECT_EQ(PointKey(under(L""), L"Mode"), L"\\Mode");
    EXPECT_EQ(PointKey(under(L""), L""), L"\\");
}

TEST(PointKeysPointKeyTest, IsEmptyWithoutAKeyOfTheOwner) {
    EXPECT_EQ(PointKey(SharedCollectionKey(), L"Mode"), L"");
}

TEST(PointKeysPointKeyTest, HasThePartsThatItIsJoinedOf) {
    EXPECT_EQ(PointKeyParts(std::make_shared<const std::wstring>(L"K"), L"Mode"),
              (KeyParts{L"K", L"\\", L"Mode"}));
    EXPECT_EQ(PointKeyParts(SharedCollectionKey(), L"Mode"), KeyParts{});
}

TEST(PointKeysIdentityTest, HasNoKeysBeforeItsCollectionHas) {
    PointIdentity point;
    point.name = L"Mode";
    EXPECT_EQ(point.GlobalKey(), KeyParts{});
    EXPECT_EQ(point.ExtendedKey(), KeyParts{});
    EXPECT_EQ(point.index, 0);
}

TEST(PointKeysIdentityTest, HasAKeyUnderEachOfItsCollections) {
    PointIdentity point;
    point.name = L"Mode";
    point.globalKey = std::make_shared<const std::wstring>(L"G");
    point.extendedKey = std::make_shared<const std::wstring>(L"E");
    EXPECT_EQ(point.GlobalKey(), (KeyParts{L"G", L"\\", L"Mode"}));
    EXPECT_EQ(point.ExtendedKey(), (KeyParts{L"E", L"\\", L"Mode"}));
}

TEST(PointKeysPointReferenceTest, CountsFromTheExportIndex) {
    EXPECT_EQ(PointReference(0, 0), 0x4000);
    EXPECT_EQ(PointReference(2, 3), 16899);
    EXPECT_EQ(PointReference(-1, 0), 16128);
    EXPECT_EQ(PointReference(-32768, 0), -8372224);
}

TEST(PointKeysPointReferenceTest, ThrowsPastThirtyTwoBits) {
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(PointReference(0, kMost - 16384), kMost);
    EXPECT_EQ(ErrorOf([] { PointReference(0, kMost - 16383); }), kOverflow);
    EXPECT_EQ(PointReference(-64, kLeast), kLeast);
    EXPECT_EQ(ErrorOf([] { PointReference(-65, kLeast); }), kOverflow);
}

} // namespace
} // namespace tam
