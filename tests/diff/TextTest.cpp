#include "tests/diff/Changes.h"

#include <gtest/gtest.h>

#include <string>

namespace difftest {

namespace {

std::string TextOf(const std::string& before, const std::string& after, bool isColoured) {
    const diff::Model model = ModelOf(after);
    return diff::Text(diff::Compare(ModelOf(before), model), model, isColoured);
}

const std::string kBefore = Attributes(Attribute("A", "147", "1", "-0.50") + Attribute("B", "81", "2", "0"));
const std::string kAfter = Attributes(Attribute("A", "147", "1", "1.5") + Attribute("C", "95", "3", ""));

TEST(TextTest, TellsEachChangeInALine) {
    EXPECT_EQ("Attributes\n"
              "  - B  (type 81 lev_percent, address 2)  [line 1]\n"
              "  ~ A, value: \"-0.50 degrees C\" -> \"1.5 degrees C\"  [line 1, now 1]\n"
              "  + C  (type 95 switch, address 3)  [line 1]\n"
              "\n3 changes: 1 added, 1 removed, 1 changed.\n",
              TextOf(kBefore, kAfter, false));
}

TEST(TextTest, SaysWhenThereIsNone) {
    EXPECT_EQ("No change in meaning.\n", TextOf(kBefore, kBefore, true));
}

TEST(TextTest, PaintsOnlyWhatIsAskedFor) {
    const std::string coloured = TextOf(kBefore, kAfter, true);
    EXPECT_NE(std::string::npos, coloured.find("\x1B[31m  - B"));
    EXPECT_NE(std::string::npos, coloured.find("\x1B[32m  + C"));
    EXPECT_EQ(std::string::npos, TextOf(kBefore, kAfter, false).find('\x1B'));
}

TEST(TextTest, TellsATerminalNothingOfADocumentsOwn) {
    EXPECT_EQ(std::string::npos, TextOf(Attributes(Attribute("A", "36", "1", "a")),
                                        Attributes(Attribute("A", "36", "1", "b&#x9B;31m\xC2\x9B\n")), false)
                                     .find("\xC2\x9B"));
}

} // namespace

} // namespace difftest
