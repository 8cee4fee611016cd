#include "tests/points/Points.h"

#include <string>
#include <utility>
#include <vector>

using namespace support;
using namespace points;

namespace {

using Asked = std::vector<std::pair<std::wstring, std::wstring>>;

class CDBAttributeDisplayTest : public PointsTest {
  protected:
    com::Ref<IAttribute> One(const std::wstring& type, const std::wstring& value, const CalledFrom& = {}) {
        module = WithAttributes(L"<Gain><SNVTTYPE>" + type + L"</SNVTTYPE></Gain>");
        auto gain = Attribute(module, L"Gain");
        EXPECT_EQ(Put(gain, &IAttribute::put_Value, value), S_OK);
        return gain;
    }
    std::wstring Shown(const std::wstring& type, const std::wstring& value, const CalledFrom& = {}) {
        return Text(One(type, value), &IAttribute::get_DispValue);
    }
    com::Ref<IAttribute> Enumerated(const std::wstring& value, const std::wstring& description,
                                    const CalledFrom& = {}) {
        auto gain = One(kEnum, value);
        const auto type = Object(gain, &IAttribute::get_SNVTType).As<IEnumType>();
        EXPECT_EQ(Put(type, &IEnumType::put_EnumDesc, description), S_OK);
        return gain;
    }
    /// The label by pConvertEnum; its error number in words when it fails.
    std::wstring Label(const std::wstring& value, const std::wstring& description, const CalledFrom& = {}) {
        const auto gain = One(kEnum, L"").As<_CDBAttribute>();
        const com::Bstr valueText(value);
        const com::Bstr descriptionText(description);
        com::Bstr label;
        const HRESULT result = gain->pConvertEnum(valueText.Get(), descriptionText.Get(), label.Put());
        if (result == kInvalidCall) {
            EXPECT_EQ(label.Get(), nullptr);
            EXPECT_EQ(LastError().description, kInvalidCallText);
            return L"(error 5)";
        }
        EXPECT_EQ(result, S_OK);
        return std::wstring(label.View());
    }
};

TEST_F(CDBAttributeDisplayTest, JoinsConvertedValueAndUnitLabelByOneBlank) {
    Units().converted = L"70.7";
    Units().label = L"degF";
    EXPECT_EQ(Shown(kSigned, L"21.5"), L"70.7 degF");
    EXPECT_EQ(Units().asked, (Asked{{Local(L"21.5"), L"105"}}));
    EXPECT_EQ(Units().labelAsked, std::vector<std::wstring>{L"105"});
}

TEST_F(CDBAttributeDisplayTest, AsksTheConverterForEachNumericType) {
    for (const wchar_t* type : {kSigned, kUnsigned, kFloat}) {
        Units().asked.clear();
        Units().labelAsked.clear();
        EXPECT_EQ(Shown(type, L"3"), L"converted label");
        EXPECT_EQ(Units().asked, (Asked{{L"3", type}}));
        EXPECT_EQ(Units().labelAsked, std::vector<std::wstring>{type});
    }
}

TEST_F(CDBAttributeDisplayTest, GivesTheConverterTheUsersDecimalMark) {
    const std::pair<const wchar_t*, std::wstring> values[] = {
        {L"1.5", Local(L"1.5")},
        {L"1,5", Local(L"1.5")},
        {L"-273.17", Local(L"-273.17")},
        {L",5", Local(L".5")},
        {L"5.", Local(L"5.")},
        {L"1.234,5", Local(L"1.") + L"234,5"},
        {L"1,000.5", L"1,000" + Local(L".5")},
        {L"12", L"12"},
        {L"", L""},
        {L"abc", L"abc"},
        {L" 7 ", L" 7 "},
    };
    for (const auto& [value, given] : values) {
        Units().asked.clear();
        Shown(kSigned, value);
        EXPECT_EQ(Units().asked, (Asked{{given, L"105"}}));
    }
}

TEST_F(CDBAttributeDisplayTest, KeepsTheBlankBeforeAnEmptyLabel) {
    Units().converted = L"12";
    Units().label = L"";
    EXPECT_EQ(Shown(kSigned, L"12"), L"12 ");
}

TEST_F(CDBAttributeDisplayTest, IsABlankWhenTheConverterGivesNothing) {
    Units().converted = L"";
    Units().label = L"";
    EXPECT_EQ(Shown(kFloat, L"12"), L" ");
}

TEST_F(CDBAttributeDisplayTest, KeepsTheConvertersOwnText) {
    Units().converted = L" 1.5,x ";
    Units().label = L" \x00b0"
                    L"C ";
    EXPECT_EQ(Shown(kSigned, L"0"), L" 1.5,x   \x00b0"
                                    L"C ");
}

TEST_F(CDBAttributeDisplayTest, AsksTheConverterAgainAtEachRead) {
    const auto gain = One(kSigned, L"1");
    Text(gain, &IAttribute::get_DispValue);
    Put(gain, &IAttribute::put_Value, L"2");
    Text(gain, &IAttribute::get_DispValue);
    EXPECT_EQ(Units().asked, (Asked{{L"1", L"105"}, {L"2", L"105"}}));
}

TEST_F(CDBAttributeDisplayTest, HandsAFailedConversionToTheCaller) {
    Units().convertResult = E_ACCESSDENIED;
    const auto gain = One(kSigned, L"1");
    com::Bstr shown;
    EXPECT_EQ(gain->get_DispValue(shown.Put()), E_ACCESSDENIED);
    EXPECT_EQ(shown.Get(), nullptr);
}

TEST_F(CDBAttributeDisplayTest, HandsAFailedLabelToTheCaller) {
    Units().labelResult = E_ACCESSDENIED;
    const auto gain = One(kSigned, L"1");
    com::Bstr shown;
    EXPECT_EQ(gain->get_DispValue(shown.Put()), E_ACCESSDENIED);
    EXPECT_EQ(shown.Get(), nullptr);
}

TEST_F(CDBAttributeDisplayTest, ShowsABitfieldWithoutBlanksAround) {
    EXPECT_EQ(Shown(kBitfield, L" 0101 "), L"0101");
    EXPECT_EQ(Shown(kBitfield, L"   01 01   "), L"01 01");
    EXPECT_EQ(Shown(kBitfield, L"   "), L"");
    EXPECT_EQ(Shown(kBitfield, L""), L"");
    EXPECT_TRUE(Units().asked.empty());
}

TEST_F(CDBAttributeDisplayTest, TrimsBlanksOnlyFromABitfield) {
    EXPECT_EQ(Shown(kBitfield, L"\t01\n"), L"\t01\n");
}

TEST_F(CDBAttributeDisplayTest, NeverLocalizesABitfield) {
    EXPECT_EQ(Shown(kBitfield, L"1.5"), L"1.5");
    EXPECT_EQ(Shown(kBitfield, L"1,5"), L"1,5");
}

TEST_F(CDBAttributeDisplayTest, LocalizesEveryOtherType) {
    for (const wchar_t* type : {kTextual, kStruct}) {
        EXPECT_EQ(Shown(type, L"1.5"), Local(L"1.5"));
        EXPECT_EQ(Shown(type, L"1,5"), Local(L"1.5"));
        EXPECT_EQ(Shown(type, L"plain"), L"plain");
        EXPECT_EQ(Shown(type, L" kept "), L" kept ");
        EXPECT_EQ(Shown(type, L"1.2.3"), Local(L"1.2") + L".3");
        EXPECT_EQ(Shown(type, L""), L"");
    }
    EXPECT_TRUE(Units().asked.empty());
}

TEST_F(CDBAttributeDisplayTest, ShowsAnUnknownGeneralTypeAsText) {
    EXPECT_EQ(Shown(kBadType, L"1.5"), Local(L"1.5"));
    EXPECT_EQ(Boxes().size(), 2u);
}

TEST_F(CDBAttributeDisplayTest, ShowsAnUnknownTypeAsText) {
    EXPECT_EQ(Shown(kUnknown, L"1.5"), Local(L"1.5"));
    EXPECT_EQ(Boxes().size(), 2u);
}

TEST_F(CDBAttributeDisplayTest, ShowsTheLabelOfAnEnumeration) {
    EXPECT_EQ(Text(Enumerated(L"1", L"0,Off;1,On;"), &IAttribute::get_DispValue), L"On");
    EXPECT_EQ(Text(Enumerated(L"0", L"0,Off;1,On;"), &IAttribute::get_DispValue), L"Off");
    EXPECT_TRUE(Units().asked.empty());
}

TEST_F(CDBAttributeDisplayTest, LocalizesAnEnumerationValueBeforeTheLookUp) {
    // "1,5" can be no key, a comma ends it: with a decimal comma nothing fits.
    const std::wstring label = DecimalMark() == L"." ? L"Half" : L"";
    EXPECT_EQ(Text(Enumerated(L"1.5", L"1.5,Half;"), &IAttribute::get_DispValue), label);
    EXPECT_EQ(Text(Enumerated(L"1,5", L"1.5,Half;"), &IAttribute::get_DispValue), label);
}

TEST_F(CDBAttributeDisplayTest, HandsAnUnclosedEntryToTheCaller) {
    com::Bstr shown;
    EXPECT_EQ(Enumerated(L"1", L"0,Off;1,On")->get_DispValue(shown.Put()), kInvalidCall);
    EXPECT_EQ(shown.Get(), nullptr);
}

// pConvertEnum; the rules of descriptions have their own tests (EnumDescriptionLabelTest).
TEST_F(CDBAttributeDisplayTest, ConvertsAnEnumerationValueToItsLabel) {
    EXPECT_EQ(Label(L"1", L"0,Off;1,On;"), L"On");
    EXPECT_EQ(Label(L"1", L"0,Off;1,On"), L"(error 5)");
}

} // namespace
