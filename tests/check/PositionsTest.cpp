#include "tests/check/Documents.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

using namespace check;
using namespace checking;

namespace {

// On the fourth line a tab, two umlauts and a character of two code units
// before the misspelt name.
constexpr const char* kLines[] = {"<?xml version=\"1.0\"?>", "<Tam>",
                                  "<Name>Hall</Name><DevKey>K7</DevKey><IsLastOnDev>0</IsLastOnDev>",
                                  "\t<!-- \xC3\xBC\xC3\xB6 \xF0\x9F\x94\xA5 --><TamObjId>3</TamObjId></Tam>"};

std::string Joined(const std::string& lineEnd) {
    std::string text;
    for (const char* line : kLines) {
        text += line + lineEnd;
    }
    return text;
}

std::string Utf16(const std::string& text, bool isBigEndian) {
    std::string bytes;
    const auto put = [&](char32_t unit) {
        const char low = static_cast<char>(unit & 0xFFU);
        const char high = static_cast<char>(unit >> 8U);
        bytes += isBigEndian ? high : low;
        bytes += isBigEndian ? low : high;
    };
    for (std::size_t at = 0; at < text.size();) {
        const auto first = static_cast<unsigned char>(text[at]);
        const std::size_t size = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
        char32_t c = size == 1 ? first : first & (0x7FU >> size);
        for (std::size_t i = 1; i < size; ++i) {
            c = c << 6U | (static_cast<unsigned char>(text[at + i]) & 0x3FU);
        }
        at += size;
        if (c >= 0x10000) {
            put(0xD800 + ((c - 0x10000) >> 10U));
            put(0xDC00 + ((c - 0x10000) & 0x3FFU));
        } else {
            put(c);
        }
    }
    return bytes;
}

// The name stands after a tab, "<!-- ", two letters, a blank, one character and " --><".
const std::vector<Place> kExpected = {{RuleId::ElementMissing, 2, 2}, {RuleId::ElementMisspelt, 4, 16}};

} // namespace

TEST(PositionsTest, CountsCharactersAfterTabsAndLettersBeyondAscii) {
    EXPECT_EQ(Places(Find(Joined("\n"))), kExpected);
}

TEST(PositionsTest, CountsEachKindOfLineEndOnce) {
    EXPECT_EQ(Places(Find(Joined("\r\n"))), kExpected);
    EXPECT_EQ(Places(Find(Joined("\r"))), kExpected);
}

TEST(PositionsTest, DoesNotCountTheByteOrderMark) {
    EXPECT_EQ(Places(Find("\xEF\xBB\xBF" + Joined("\n"))), kExpected);
    EXPECT_EQ(Places(Find("\xEF\xBB\xBF<tam/>")).front(), (Place{RuleId::RootName, 1, 2}));
}

TEST(PositionsTest, CountsCharactersInUtf16) {
    EXPECT_EQ(Places(Find("\xFF\xFE" + Utf16(Joined("\r\n"), false))), kExpected);
    EXPECT_EQ(Places(Find("\xFE\xFF" + Utf16(Joined("\n"), true))), kExpected);
    EXPECT_EQ(Places(Find(Utf16(Joined("\n"), false))), kExpected);
    EXPECT_EQ(Places(Find(Utf16(Joined("\n"), true))), kExpected);
}

TEST(PositionsTest, ReadsTheEncodingThatIsDeclared) {
    const auto document = [](const std::string& encoding, const std::string& name) {
        return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?><Tam><Name>" + name +
               "</Name><DevKey>K7</DevKey><IsLastOnDev>0</IsLastOnDev><TamObjId>3</TamObjId></Tam>";
    };
    const std::pair<std::string, std::string> kSamples[] = {
        {"ISO-8859-1", "B\xFCro"},    {"iso-8859-15", "\xA4 5"},  {"windows-1252", "\x80 5"},
        {"windows-1251", "\xC0\xC1"}, {"koi8-r", "\xFA\xC1\xCC"}, {"KOI8-U", "\xA4"},
        {"ISO-8859-11", "\xA1"},      {"TIS-620", "\xA1"},        {"windows-874", "\x80 5"},
        {"IBM437", "B\x81ro"},        {"IBM866", "\x87"},         {"macintosh", "B\x9Fro"}};
    for (const auto& [encoding, name] : kSamples) {
        const auto findings = Find(document(encoding, name));
        ASSERT_EQ(findings.size(), 2u) << encoding;
        EXPECT_EQ(findings[1].suggestion, "TamObjID");
        EXPECT_EQ(findings[1].column, document(encoding, name).find("TamObjId") + 1) << encoding;
    }
}

TEST(PositionsTest, SaysWhereANameAndAValueEnd) {
    const auto findings = Find(
        "<Tam><Name>H</Name><DevKey>K</DevKey><IsLastOnDev>yes</IsLastOnDev><TamObjID>3</TamObjID></Tam>");
    ASSERT_EQ(findings.size(), 1u);
    EXPECT_EQ(findings[0].column, 51u);
    EXPECT_EQ(findings[0].endColumn, 54u);
    EXPECT_EQ(findings[0].endLine, 1u);
}

TEST(PositionsTest, NoFindingHidesAnother) {
    const std::string document = WithAttribute(
        "<AI1_A><SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>3</LOGICALADDRESS><VALEU>1</VALEU></AI1_A>\n"
        "<AI1_B><SNVTTYPE>999</SNVTTYPE><LOGICALADDRESS>3</LOGICALADDRESS><VALUE>&</VALUE></AI1_B>\n"
        "<AI1_C><SNVTTYPE>105<LOGICALADDRESS>5</LOGICALADDRESS><VALUE>9999</VALUE></AI1_C>\n"
        "<AI1_D><SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>6</LOGICALADDRESS><VALUE>1,5</VALUE></AI1_D>");
    std::vector<RuleId> rules;
    for (const Finding& finding : Find(document)) {
        rules.push_back(finding.rule);
    }
    for (const RuleId rule :
         {RuleId::ElementMisspelt, RuleId::TypeUnknown, RuleId::AddressTwice, RuleId::XmlReference,
          RuleId::XmlUnclosed, RuleId::ValueLimit, RuleId::ValueDecimalMark}) {
        EXPECT_EQ(std::count(rules.begin(), rules.end(), rule), 1) << RuleOf(rule).name;
    }
}

TEST(PositionsTest, ListsTenThousandFindingsErrorsFirstAndCountsAll) {
    const auto check = [](std::size_t warnings, std::size_t errors) {
        Findings findings;
        for (std::size_t i = 0; i < warnings; ++i) {
            findings.Add(RuleId::TypeRetired, {i, 1}, "a note");
        }
        for (std::size_t i = 0; i < errors; ++i) {
            findings.Add(RuleId::FlagValue, {warnings, 1}, "an error");
        }
        return std::move(findings).Place(std::string(warnings + 1, 'x'));
    };
    const auto errorsIn = [](const std::vector<Finding>& findings) {
        return std::count_if(findings.begin(), findings.end(),
                             [](const Finding& finding) { return finding.Level() == Severity::Error; });
    };
    EXPECT_EQ(check(9999, 1).size(), 10000u);
    auto found = check(10000, 1);
    ASSERT_EQ(found.size(), 10001u);
    EXPECT_EQ(errorsIn(found), 1);
    EXPECT_EQ(found.back().rule, RuleId::TooManyFindings);
    EXPECT_EQ(found.back().message, "1 more finding is not listed");
    EXPECT_EQ(found[9998].column, 9999u) << "the first notes are kept";
    found = check(3, 10002);
    ASSERT_EQ(found.size(), 10001u);
    EXPECT_EQ(errorsIn(found), 10000);
    EXPECT_EQ(found.back().message, "5 more findings are not listed; errors among them: 2");
}

TEST(PositionsTest, TheSummaryCountsWhatIsNotListed) {
    std::string elements;
    for (int i = 0; i < 10001; ++i) {
        elements += "<X/>";
    }
    const Result result = CheckText("<Tam><Name>H</Name><DevKey>K</DevKey><IsLastOnDev>0</IsLastOnDev>"
                                    "<TamObjID>3</TamObjID>" +
                                        elements + "</Tam>",
                                    Types());
    EXPECT_EQ(result.findings.size(), 10001u);
    EXPECT_EQ(result.Count(Severity::Error) + result.Count(Severity::Warning) + result.Count(Severity::Note),
              10001u);
    EXPECT_EQ(result.findings.back().message.substr(0, 28), "1 more finding is not listed");
}
