#include "check/Output.h"
#include "tests/check/Documents.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>

using namespace check;
using namespace checking;

namespace {

constexpr std::size_t kLongest = 2 * kPiece;

std::size_t CountOf(const std::string& text, const std::string& word) {
    std::size_t count = 0;
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
        ++count;
    }
    return count;
}

/// What is handed on, in its order; each piece a short one.
std::string Joined(const std::function<void(const Print&)>& write) {
    std::string text;
    std::size_t longest = 0;
    write([&](const std::string& piece) {
        longest = std::max(longest, piece.size());
        text += piece;
    });
    EXPECT_GT(text.size(), 2 * kLongest);
    EXPECT_LT(longest, kLongest);
    return text;
}

TEST(OutputTest, HandsALongAnswerOnInPieces) {
    constexpr std::size_t kCount = 3000;
    std::string outputs;
    for (std::size_t i = 0; i < kCount; ++i) {
        const std::string name = "A" + std::to_string(i) + "_B";
        outputs += "<" + name + "><VISBLE/><LOGICALADDRESS>" + std::to_string(i) +
                   "</LOGICALADDRESS><SNVTTYPE>105</SNVTTYPE></" + name + ">";
    }
    FileResult file{"hall.xml", CheckBytes(Stream("", outputs, ""), Types()), ""};
    const std::size_t found = file.result.findings.size();
    ASSERT_GE(found, kCount);
    const std::string text = Joined([&](const Print& print) { PrintText({&file, 1}, false, print); });
    EXPECT_EQ(CountOf(text, "\n"), found + 1);
    EXPECT_EQ(CountOf(text, "\nhall.xml:1:"), found - 1);
    const std::string json = Joined([&](const Print& print) { PrintJson({&file, 1}, "tamcheck", 1, print); });
    EXPECT_EQ(CountOf(json, "\"rule\": "), found);
    EXPECT_EQ(CountOf(json, "{"), CountOf(json, "}"));
    EXPECT_TRUE(json.ends_with("\n}\n"));
    const std::string sarif = Joined([&](const Print& print) { PrintSarif({&file, 1}, "tamcheck", print); });
    EXPECT_EQ(CountOf(sarif, "\"ruleId\": "), found);
    EXPECT_TRUE(sarif.ends_with("\n}\n"));
}

} // namespace
