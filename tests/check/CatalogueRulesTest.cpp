#include "tests/check/Documents.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

using namespace check;
using namespace checking;

namespace {

std::string Entry(std::string_view fields) {
    return "<SNVTCatalogue><SNVT_1>" + std::string(fields) + "</SNVT_1></SNVTCatalogue>";
}

std::string Numeric(std::string_view fields) {
    return Entry("<Name>SNVT_amp</Name><Type>SignedNumeric</Type>" + std::string(fields));
}

} // namespace

TEST(CatalogueRulesTest, AGoodCatalogueHasNoFindings) {
    ExpectClean(
        "<Types><SNVT_1 factor=\"1\" Z3REGION=\"0\"><name>a</name><TYPE>Float</TYPE><Min>-3.4e38</Min>"
        "<Max>3.4e38</Max><LENGTH>4</LENGTH></SNVT_1><SNVT_x><Type>Struct</Type><Length>2</Length></SNVT_x></"
        "Types>");
}

TEST(CatalogueRulesTest, FindsElementsThatAreNoEntries) {
    const std::string good = "<SNVT_2><Type>Struct</Type><Length>2</Length></SNVT_2>";
    ExpectOne(RuleId::EntryName, "<SNVTCatalogue>" + good + "<^snvt_105/></SNVTCatalogue>", "SNVT_105");
    ExpectOne(RuleId::EntryName, "<SNVTCatalogue>" + good + "<^Remark/></SNVTCatalogue>");
    ExpectOne(RuleId::EntryTwice,
              "<SNVTCatalogue>" + good +
                  "<^SNVT_2><Type>Enum</Type><Length>1</Length></SNVT_2></SNVTCatalogue>");
    ExpectOne(RuleId::EntryTwice,
              "<SNVTCatalogue><SNVT_1><Name>SNVT_a</Name><Type>Struct</Type><Length>1</Length></SNVT_1>"
              "<^SNVT_2><Name>SNVT_a</Name><Type>Struct</Type><Length>1</Length></SNVT_2></SNVTCatalogue>");
}

TEST(CatalogueRulesTest, FindsGeneralTypesThatAreNone) {
    ExpectOne(RuleId::EntryType, Entry("<Type>^Signed</Type><Length>2</Length>"));
    ExpectOne(RuleId::EntryType, Entry("<Type>^ENUM</Type><Length>1</Length>"), "Enum");
    ExpectOne(RuleId::EntryUntyped, "<SNVTCatalogue><^SNVT_1><Name>SNVT_a</Name></SNVT_1></SNVTCatalogue>");
}

TEST(CatalogueRulesTest, AGeneralTypeThatIsNoneHidesNoLimit) {
    const auto findings = Find(Entry("<Type>Signed</Type><Min>-1,5</Min><Max>warm</Max><Length>2</Length>"));
    const std::vector<Place> expected = {
        {RuleId::EntryType, 1, 30}, {RuleId::EntryLimitForm, 1, 48}, {RuleId::EntryLimitForm, 1, 63}};
    EXPECT_EQ(Places(findings), expected);
    const auto order = Find(Entry("<Type>Signed</Type><Min>2</Min><Max>1</Max><Length>2</Length>"));
    const std::vector<Place> both = {{RuleId::EntryType, 1, 30}, {RuleId::EntryLimitOrder, 1, 48}};
    EXPECT_EQ(Places(order), both);
}

TEST(CatalogueRulesTest, FindsLengthsThatAreNone) {
    ExpectOne(RuleId::EntryLength, "<SNVTCatalogue><^SNVT_1><Type>SignedNumeric</Type><Min>0</Min><Max>1</"
                                   "Max></SNVT_1></SNVTCatalogue>");
    ExpectOne(RuleId::EntryLength, Numeric("<Min>0</Min><Max>1</Max><Length>^0</Length>"));
    ExpectOne(RuleId::EntryLength, Numeric("<Min>0</Min><Max>1</Max><Length>^two</Length>"));
}

TEST(CatalogueRulesTest, FindsCoefficientsThatAreNoWholeNumbers) {
    ExpectOne(RuleId::EntryCoefficient,
              Numeric("<Min>0</Min><Max>1</Max><Length>2</Length><A_Coef>^0.5</A_Coef>"));
    ExpectOne(RuleId::EntryCoefficient,
              Numeric("<Min>0</Min><Max>1</Max><Length>2</Length><A_Coef>^0</A_Coef>"));
    ExpectOne(RuleId::EntryCoefficient,
              Numeric("<Min>0</Min><Max>1</Max><Length>2</Length><C_Coef>^9999999999</C_Coef>"));
    ExpectOne(RuleId::NumberForm,
              "<SNVTCatalogue><SNVT_1 "
              "Factor=\"^one\"><Type>Struct</Type><Length>1</Length></SNVT_1></SNVTCatalogue>");
}

TEST(CatalogueRulesTest, FindsLimits) {
    ExpectOne(RuleId::EntryLimitForm, Numeric("<Min>0</Min><Max>^327,66</Max><Length>2</Length>"), "327.66");
    ExpectOne(RuleId::EntryLimitForm,
              Numeric("<Min>0</Min><Max>1</Max><InvalidValue>^none</InvalidValue><Length>2</Length>"));
    ExpectOne(
        RuleId::EntryLimitMissing,
        "<SNVTCatalogue><^SNVT_1><Type>Float</Type><Min>0</Min><Length>4</Length></SNVT_1></SNVTCatalogue>");
    ExpectOne(RuleId::EntryLimitOrder, Numeric("<Min>^100</Min><Max>0</Max><Length>2</Length>"), "0");
}

TEST(CatalogueRulesTest, FindsDescriptionsOfEnumerations) {
    const auto with = [](std::string_view text) {
        return Entry("<Type>Enum</Type><Length>1</Length><EnumDesc>" + std::string(text) + "</EnumDesc>");
    };
    ExpectClean(with("0,Off;1,On;-1,None;"));
    ExpectOne(RuleId::EnumDescription, with("^0,Off;1,On"), "0,Off;1,On;");
    ExpectOne(RuleId::EnumDescription, with("^0,Off;1;"));
    ExpectOne(RuleId::EnumDescription, with("^0,Off;one,On;"));
    ExpectOne(RuleId::EnumDescription, with("^0,Off;40000,On;"));
    ExpectOne(RuleId::EnumDescription, with("^0,Off;0,On;"));
    ExpectOne(RuleId::EnumDescription, with("^0,Off;1,;"));
}

TEST(CatalogueRulesTest, FindsWhatMeansNothingInAnEntry) {
    ExpectOne(RuleId::ElementMisspelt,
              Numeric("<Min>0</Min><Max>1</Max><Length>2</Length><^A_Koef>1</A_Koef>"), "A_COEF");
    ExpectOne(RuleId::ElementRepeated,
              Numeric("<Min>0</Min><Max>1</Max><Length>2</Length><^LENGTH>2</LENGTH>"));
    ExpectOne(
        RuleId::AttributeMisspelt,
        "<SNVTCatalogue><SNVT_1 ^Faktor=\"1\"><Type>Struct</Type><Length>1</Length></SNVT_1></SNVTCatalogue>",
        "Factor");
}
