#include "core/ErrorReportState.h"

#include <gtest/gtest.h>

#include <string>

namespace tam {
namespace {

const ErrorReportState kReport(L"Gateway Object", L"what happened", L"CDBInput", L"Sub XmlLoad", L"O_Tam_id");

TEST(ErrorReportStateTest, ShowsItsTexts) {
    EXPECT_EQ(kReport.Application(), L"Gateway Object");
    EXPECT_EQ(kReport.Caption(), L"Gateway Object - Error report");
    EXPECT_EQ(kReport.Description(), L"what happened");
    EXPECT_EQ(kReport.AdvancedInfo(), L"* Source application (Err.Source): \r\n  O_Tam_id\r\n"
                                      L"* Calling object (Me.Name or module name): \r\n  CDBInput\r\n"
                                      L"* Calling function: \r\n  Sub XmlLoad");
}

TEST(ErrorReportStateTest, KeepsItsTextsWhole) {
    const std::wstring most(1 << 20, L'x');
    const ErrorReportState report(L"Gateway Object", most, most + L"a", most + L"b", most + L"c");
    EXPECT_TRUE(report.Description() == most);
    EXPECT_TRUE(report.AdvancedInfo() == L"* Source application (Err.Source): \r\n  " + most +
                                             L"c\r\n* Calling object (Me.Name or module name): \r\n  " +
                                             most + L"a\r\n* Calling function: \r\n  " + most + L"b");
}

TEST(ErrorReportStateTest, KeepsLineBreaksAsTheyWereGiven) {
    const ErrorReportState report(L"Gateway Object", L"a\nb\rc\r\nd", L"o\n", L"\rf", L"s");
    EXPECT_EQ(report.Description(), L"a\nb\rc\r\nd");
    EXPECT_EQ(report.AdvancedInfo(), L"* Source application (Err.Source): \r\n  s\r\n"
                                     L"* Calling object (Me.Name or module name): \r\n  o\n\r\n"
                                     L"* Calling function: \r\n  \rf");
}

TEST(ErrorReportStateTest, OpensFoldedAndTurnsItsArrows) {
    ErrorReportState report = kReport;
    EXPECT_FALSE(report.IsAdvancedShown());
    EXPECT_STREQ(report.AdvancedCaption(), L"Advanced Information  > >");
    report.ToggleAdvanced();
    EXPECT_TRUE(report.IsAdvancedShown());
    EXPECT_STREQ(report.AdvancedCaption(), L"Advanced Information  < <");
    report.ToggleAdvanced();
    EXPECT_FALSE(report.IsAdvancedShown());
}

} // namespace
} // namespace tam
