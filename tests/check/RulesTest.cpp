#include "check/Rules.h"

#include "check/Output.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <string_view>

using namespace check;

TEST(RulesTest, EveryRuleHasANameATitleAndAnExplanation) {
    std::set<std::string_view> names;
    for (const Rule& rule : AllRules()) {
        EXPECT_TRUE(names.insert(rule.name).second) << rule.name;
        EXPECT_EQ(rule.name.find_first_not_of("abcdefghijklmnopqrstuvwxyz-"), std::string_view::npos)
            << rule.name;
        EXPECT_FALSE(rule.title.empty()) << rule.name;
        EXPECT_TRUE(rule.explanation.ends_with('.')) << rule.name;
    }
    EXPECT_GE(names.size(), 40u);
}

// A site that renders Markdown would show "<" where "&lt;" is meant.
TEST(RulesTest, TheListOfRulesShowsReferencesAsTheyAre) {
    const std::string list = RulesMarkdown();
    EXPECT_NE(list.find("begins a reference: &amp;lt; &amp;gt; &amp;amp;"), std::string::npos);
    EXPECT_NE(list.find("`<Name>Heating & cooling</Name>`"), std::string::npos);
}
