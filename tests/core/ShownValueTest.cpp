#include "core/ShownValue.h"

#include "Thrown.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace tam {
namespace {

TEST(ShownValueTest, ANumberHasItsUnitAfterIt) {
    EXPECT_EQ(WithUnit(L"21", L"\u00B0C"), L"21 \u00B0C");
    EXPECT_EQ(WithUnit(L"21", L""), L"21");
    EXPECT_EQ(WithUnit(L"", L"\u00B0C"), L"");
}

TEST(ShownValueTest, ShowsANumberWithTheUsersDecimalMark) {
    for (const wchar_t* type : {L"SignedNumeric", L"UnsignedNumeric", L"Float"}) {
        EXPECT_EQ(ShownValue({L"21.5", GeneralTypeOf(type), L"K", L"", L","}), L"21,5 K");
        EXPECT_EQ(ShownValue({L"21.5", GeneralTypeOf(type), L"", L"", L"."}), L"21.5");
    }
}

TEST(ShownValueTest, ShowsTheTextOfAnEntry) {
    EXPECT_EQ(ShownValue({L"1", GeneralTypeOf(L"Enum"), L"K", L"0,Off;1,On;", L"."}), L"On");
    EXPECT_EQ(ShownValue({L"2", GeneralTypeOf(L"Enum"), L"", L"0,Off;1,On;", L"."}), L"2");
    EXPECT_EQ(ErrorOf([] {
                  ShownValue({L"1", GeneralTypeOf(L"Enum"), L"", L"70000,Far;", L"."});
              }),
              kOverflow);
}

TEST(ShownValueTest, ShowsAnyOtherValueAsItStands) {
    for (const wchar_t* type : {L"Textual", L"Bitfield", L"Struct", L"", L"Invalid"}) {
        EXPECT_EQ(ShownValue({L"1.5", GeneralTypeOf(type), L"K", L"1.5,One;", L","}), L"1.5");
    }
}

} // namespace
} // namespace tam
