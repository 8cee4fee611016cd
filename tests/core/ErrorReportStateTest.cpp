#include "dialogs/ErrorReportState.h"

#include <gtest/gtest.h>

#include <string>

namespace tam {
namespace {

const ErrorReportState kReport(L"Gateway Object", L"what happened", L"CDBInput", L"Sub XmlLoad", L"O_Tam_id");

TEST(ErrorReportStateTest, ShowsItsTexts) {
    EXPECT_EQ(kReport.Caption(), L"Gateway Object - Error report");
    EXPECT_EQ(kReport.Description(), L"what happened");
    EXPECT_EQ(kReport.AdvancedInfo(), L"* Source application (Err.Source): \r\n  O_Tam_id\r\n"
                                      L"* Calling object (Me.Name or module name): \r\n  CDBInput\r\n"
                                      L"* Calling function: \r\n  Sub XmlLoad");
}

TEST(ErrorReportStateTest, ShowsAThousandCharactersOfEachText) {
    const std::wstring most(1000, L'x');
    const std::wstring cut = most + L"\x2026";
    const ErrorReportState whole(L"Gateway Object", most, most, most, most);
    EXPECT_EQ(whole.Description(), most);
    EXPECT_EQ(whole.AdvancedInfo(), L"* Source application (Err.Source): \r\n  " + most +
                                        L"\r\n* Calling object (Me.Name or module name): \r\n  " + most +
                                        L"\r\n* Calling function: \r\n  " + most);
    const ErrorReportState longer(L"Gateway Object", most + L"y", most + L"y", most + L"y",
                                  std::wstring(1 << 20, L'x'));
    EXPECT_EQ(longer.Description(), cut);
    EXPECT_EQ(longer.AdvancedInfo(), L"* Source application (Err.Source): \r\n  " + cut +
                                         L"\r\n* Calling object (Me.Name or module name): \r\n  " + cut +
                                         L"\r\n* Calling function: \r\n  " + cut);
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
