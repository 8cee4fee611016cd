#include "common/ComponentState.h"
#include "tests/members/Members.h"

#include <initializer_list>
#include <string>

using namespace members;
using namespace support;

namespace {

using CSNVTTypeTest = MembersTest;

com::Ref<ISNVType> Seen(const com::Ref<tam::CSNVTType>& type) {
    return com::Ref<ISNVType>(type.Get());
}

TEST_F(CSNVTTypeTest, AGeneralTypeIsStoredWithoutALookUp) {
    // No catalogue is there, so a look-up would be reported.
    const auto type = tam::CSNVTType::Make();
    type->SetGenType(L"Float");
    EXPECT_EQ(L"Float", type->Data().generalType);
    EXPECT_EQ(L"Float", Text(Seen(type), &ISNVType::get_GenType));
    EXPECT_EQ(L"", Text(Seen(type), &ISNVType::get_LUIType));
    EXPECT_EQ(L"", Text(Seen(type), &ISNVType::get_ID));
    EXPECT_EQ(0, Long(Seen(type), &ISNVType::get_Length));
    EXPECT_TRUE(tam::IsNumeric(type->General()));
}

TEST_F(CSNVTTypeTest, AGeneralTypeDecidesWhetherItIsAnEnumeration) {
    const auto type = tam::CSNVTType::Make();
    const auto enumeration = com::Ref<IEnumType>(type.Get());
    EXPECT_FALSE(Flag(enumeration, &IEnumType::get_IsEnumType));
    for (const wchar_t* const genType : {L"Enum", L"ENUM", L"enum"}) {
        type->SetGenType(genType);
        EXPECT_TRUE(Flag(enumeration, &IEnumType::get_IsEnumType));
    }
    type->SetGenType(L"Enumeration");
    EXPECT_FALSE(Flag(enumeration, &IEnumType::get_IsEnumType));
}

TEST_F(CSNVTTypeTest, AGeneralTypeThatWasForcedGivesWayToALoadedOne) {
    UseCatalogue(L"<SNVT_8><NAME>count</NAME><TYPE>Struct</TYPE></SNVT_8>");
    const auto type = tam::CSNVTType::Make();
    type->SetGenType(L"Float");
    type->SetId(L"8");
    EXPECT_EQ(L"Struct", type->Data().generalType);
    type->SetGenType(L"Textual");
    EXPECT_EQ(L"Textual", type->Data().generalType);
    EXPECT_EQ(L"8", type->Id());
}

// Once when they are stored, and again when they are read.
TEST_F(CSNVTTypeTest, LimitsFollowTheDecimalMarkOfTheMomentTheyAreRead) {
    tam::State().DecimalSeparator = L".";
    UseCatalogue(L"<SNVT_8><NAME>temp</NAME><TYPE>Float</TYPE><UNIT>C</UNIT><BACNETUNIT>62</BACNETUNIT>"
                 L"<MIN>-12,5</MIN><MAX>40.25</MAX><LENGTH>4</LENGTH><A_COEF>1</A_COEF><B_COEF>0</B_COEF>"
                 L"<C_COEF>0</C_COEF><INVALIDVALUE>0</INVALIDVALUE></SNVT_8>");
    const auto type = tam::CSNVTType::Make();
    type->SetId(L"8");
    EXPECT_EQ(L"-12.5", type->Data().min);
    EXPECT_EQ(L"40.25", type->Data().max);
    tam::State().DecimalSeparator = L",";
    EXPECT_EQ(L"-12,5", Text(Seen(type), &ISNVType::get_Min));
    EXPECT_EQ(L"40,25", Text(Seen(type), &ISNVType::get_Max));
}

TEST_F(CSNVTTypeTest, AnEnumerationDescriptionIsAnsweredByBothInterfaces) {
    UseCatalogue(L"<SNVT_9><NAME>state</NAME><TYPE>Enum</TYPE></SNVT_9>");
    const auto type = tam::CSNVTType::Make();
    const auto enumeration = com::Ref<IEnumType>(type.Get());
    EXPECT_EQ(L"", Text(Seen(type), &ISNVType::get_EnumDesc));
    type->SetEnumDesc(L"0,Off;1,On;");
    EXPECT_EQ(L"0,Off;1,On;", type->Data().enumDescription);
    EXPECT_EQ(L"0,Off;1,On;", Text(Seen(type), &ISNVType::get_EnumDesc));
    EXPECT_EQ(L"0,Off;1,On;", Text(enumeration, &IEnumType::get_EnumDesc));
    // The catalogue has none to put in its place.
    type->SetId(L"9");
    EXPECT_EQ(L"0,Off;1,On;", type->Data().enumDescription);
}

} // namespace
