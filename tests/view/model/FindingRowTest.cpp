#include "view/model/FindingRow.h"

#include "check/Check.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using namespace view;

namespace {

FindingRow RowAt(Weight weight, std::size_t line, std::size_t column, std::string message) {
    FindingRow row;
    row.weight = weight;
    row.line = line;
    row.column = column;
    row.message = std::move(message);
    return row;
}

std::vector<std::string> Messages(const std::vector<FindingRow>& rows) {
    std::vector<std::string> messages;
    for (const FindingRow& row : rows) {
        messages.push_back(row.message);
    }
    return messages;
}

std::vector<FindingRow> Sample() {
    return {RowAt(Weight::Note, 1, 1, "note"),       RowAt(Weight::Error, 9, 5, "late"),
            RowAt(Weight::Error, 9, 2, "early"),     RowAt(Weight::Box, 0, 0, "box"),
            RowAt(Weight::Warning, 2, 1, "warning"), RowAt(Weight::Box, 0, 0, "box after")};
}

TEST(FindingRowTest, TheWorstIsFirst) {
    std::vector<FindingRow> rows = Sample();
    SortByWeight(rows);
    EXPECT_EQ((std::vector<std::string>{"box", "box after", "early", "late", "warning", "note"}),
              Messages(rows));
}

TEST(FindingRowTest, CanStandInTheOrderOfTheSource) {
    std::vector<FindingRow> rows = Sample();
    SortByPlace(rows);
    EXPECT_EQ((std::vector<std::string>{"box", "box after", "note", "warning", "early", "late"}),
              Messages(rows));
}

TEST(FindingRowTest, TellsRulePlaceAndPoint) {
    const std::string text = "<Tam><Name>x</Name><DevKey>K7</DevKey><IsLastOnDev>0</IsLastOnDev><TamObjID>1"
                             "</TamObjID>\n<Attributes>\n<Gain/>\n<GAIN/>\n</Attributes></Tam>";
    const check::Result result = check::CheckText(text, check::Surroundings(nullptr));
    const std::vector<FindingRow> rows = RowsOf(result.findings, text);
    ASSERT_EQ(result.findings.size(), rows.size());
    bool isFound = false;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(result.findings[i].line, rows[i].line);
        EXPECT_EQ(result.findings[i].column, rows[i].column);
        EXPECT_EQ(result.findings[i].endLine, rows[i].endLine);
        EXPECT_EQ(result.findings[i].endColumn, rows[i].endColumn);
        EXPECT_TRUE(rows[i].message.starts_with(result.findings[i].message));
        EXPECT_EQ(check::RuleOf(result.findings[i].rule).name, rows[i].rule);
        if (rows[i].line == 4) {
            EXPECT_EQ((PointId{Kind::Attribute, L"GAIN"}), rows[i].point);
            isFound |= rows[i].weight == Weight::Error;
        }
    }
    EXPECT_TRUE(isFound) << "a name that is there twice is an error";
}

TEST(FindingRowTest, SaysWhatIsExpectedAndMeant) {
    check::Finding finding{};
    finding.message = "the value is 7";
    EXPECT_EQ("the value is 7", RowsOf({finding}, "").at(0).message);
    finding.expected = "at most 5";
    EXPECT_EQ("the value is 7; expected: at most 5", RowsOf({finding}, "").at(0).message);
    finding.suggestion = "5";
    EXPECT_EQ("the value is 7; expected: at most 5. Did you mean 5?", RowsOf({finding}, "").at(0).message);
    EXPECT_EQ(std::nullopt, RowsOf({finding}, "").at(0).point);
}

} // namespace
