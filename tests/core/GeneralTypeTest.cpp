#include "core/GeneralType.h"

#include <gtest/gtest.h>

#include <string>

namespace tam {
namespace {

struct Case {
    const wchar_t* text;
    GeneralType type;
    const wchar_t* luiType;
    bool isNumeric;
    bool hasNumericFields;
};

constexpr Case kCases[] = {
    {L"SignedNumeric", GeneralType::SignedNumeric, L"Numeric", true, true},
    {L"UnsignedNumeric", GeneralType::UnsignedNumeric, L"Numeric", true, true},
    {L"Float", GeneralType::Float, L"Float", true, true},
    {L"Enum", GeneralType::Enum, L"Logic", false, false},
    {L"Bitfield", GeneralType::Bitfield, L"Numeric", false, true},
    {L"Textual", GeneralType::Textual, L"Textual", false, false},
    {L"Struct", GeneralType::Struct, L"Invalid", false, false},
};

TEST(GeneralTypeTest, KnowsTheSevenKindsByTheirTexts) {
    for (const Case& known : kCases) {
        SCOPED_TRACE(::testing::PrintToString(std::wstring(known.text)));
        EXPECT_EQ(GeneralTypeOf(known.text), known.type);
        EXPECT_EQ(GeneralTypeText(known.type), known.text);
        EXPECT_EQ(LuiTypeOf(known.type), known.luiType);
        EXPECT_EQ(IsNumeric(known.type), known.isNumeric);
        EXPECT_EQ(HasNumericFields(known.type), known.hasNumericFields);
    }
}

TEST(GeneralTypeTest, AnyOtherTextIsAnother) {
    for (const wchar_t* text : {L"", L"enum", L"ENUM", L" Float", L"Float ", L"Numeric", L"BitField"}) {
        EXPECT_EQ(GeneralTypeOf(text), GeneralType::Other) << std::wstring(text);
    }
    EXPECT_EQ(GeneralTypeText(GeneralType::Other), L"");
    EXPECT_EQ(LuiTypeOf(GeneralType::Other), L"");
    EXPECT_FALSE(IsNumeric(GeneralType::Other));
    EXPECT_FALSE(HasNumericFields(GeneralType::Other));
}

} // namespace
} // namespace tam
