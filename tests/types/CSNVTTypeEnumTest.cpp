#include "tests/types/Types.h"

#include <string>

using namespace support;
using namespace types;

namespace {

class CSNVTTypeEnumTest : public TypesTest {
  protected:
    static HRESULT Describe(const Type& type, const std::wstring& description) {
        return Put(type.As<IEnumType>(), &IEnumType::put_EnumDesc, description);
    }
    static bool IsEnum(const Type& type) { return Flag(type.As<IEnumType>(), &IEnumType::get_IsEnumType); }
};

TEST_F(CSNVTTypeEnumTest, KeepsAWrittenDescriptionOnBothInterfaces) {
    const Type type = FromEntry(L"<Type>Enum</Type>");
    for (const std::wstring description : {L"0,Off;1,On;", L"no entries", L" ", L"", L"1,\x00e4\x4e2d;"}) {
        EXPECT_EQ(Describe(type, description), S_OK);
        EXPECT_EQ(Text(type, &ISNVType::get_EnumDesc), description);
        EXPECT_EQ(Text(type.As<IEnumType>(), &IEnumType::get_EnumDesc), description);
    }
}

TEST_F(CSNVTTypeEnumTest, DescribesAnyType) {
    const Type type = FromEntry(L"<Type>Struct</Type>");
    EXPECT_EQ(Describe(type, L"1,On;"), S_OK);
    EXPECT_EQ(Text(type, &ISNVType::get_EnumDesc), L"1,On;");
    EXPECT_FALSE(IsEnum(type));
}

TEST_F(CSNVTTypeEnumTest, IsAnEnumerationInAnyLetterCase) {
    EXPECT_TRUE(IsEnum(FromEntry(L"<Type>Enum</Type>")));
    for (const wchar_t* genType : {L"ENUM", L"enum", L"eNuM"}) {
        EXPECT_TRUE(IsEnum(FromEntry(std::wstring(L"<Type>") + genType + L"</Type>"))) << genType;
        // Only the exact text is classified.
        ExpectMessage(L"Error: SNVT_1 has a bad type", L"O_Tam_ID.CSNVTType::ID", MB_ICONSTOP);
    }
}

TEST_F(CSNVTTypeEnumTest, IsNoEnumerationOtherwise) {
    for (const wchar_t* genType : {L"Struct", L"Textual"}) {
        EXPECT_FALSE(IsEnum(FromEntry(std::wstring(L"<Type>") + genType + L"</Type>"))) << genType;
    }
    EXPECT_FALSE(IsEnum(FromEntry(L"<Type>Enumeration</Type>")));
    EXPECT_EQ(Boxes().size(), 1u);
    EXPECT_FALSE(IsEnum(FromEntry(L"")));
}

TEST_F(CSNVTTypeEnumTest, BecomesAnEnumerationOfBlanksAlone) {
    SetCatalogue(L"");
    for (const wchar_t* blanks : {L" ", L"     "}) {
        Answers expected;
        expected.genType = L"Enum";
        expected.isEnumType = true;
        EXPECT_EQ(AnswersOf(Assign(Untyped(), blanks)), expected);
        ExpectNoBox();
    }
}

TEST_F(CSNVTTypeEnumTest, ChangesNothingElseForBlanks) {
    SetCatalogue(Entry(L"1",
                       L"<Type>Float</Type><Name>Level</Name><Unit>x</Unit><Min>1.5</Min><Length>4</Length>",
                       L"Factor='3' Z3Region='4'"));
    const auto gain = Untyped();
    Answers expected = AnswersOf(Assign(gain, L"1"));
    EXPECT_EQ(expected.luiType, L"Float");
    expected.genType = L"Enum";
    expected.isEnumType = true;
    EXPECT_EQ(AnswersOf(Assign(gain, L"  ")), expected); // the identifier stays too
}

TEST_F(CSNVTTypeEnumTest, BecomesAnEnumerationWithoutACatalogue) {
    const auto gain = Untyped();
    EXPECT_TRUE(IsEnum(Assign(gain, L" ")));
    ExpectNoBox();
}

TEST_F(CSNVTTypeEnumTest, TrimsBlanksAloneAndNoOtherWhiteSpace) {
    SetCatalogue(L"");
    const Type type = Assign(Untyped(), L"\t");
    EXPECT_FALSE(IsEnum(type));
    EXPECT_EQ(Boxes().size(), 1u); // looked up in vain, as a message or as a report of the path
}

} // namespace
