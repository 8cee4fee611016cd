#include "core/EditText.h"

#include <gtest/gtest.h>

namespace tam {
namespace {

TEST(EditTextTest, KnowsWhereCaretAndSelectionStand) {
    EXPECT_TRUE((EditText{L"abc", 3, 3}.IsCaretAtEnd()));
    EXPECT_FALSE((EditText{L"abc", 2, 2}.IsCaretAtEnd()));
    EXPECT_FALSE((EditText{L"abc", 0, 3}.IsCaretAtEnd()));
    EXPECT_TRUE((EditText{L"abc", 0, 3}.IsAllSelected()));
    EXPECT_FALSE((EditText{L"abc", 1, 3}.IsAllSelected()));
    EXPECT_TRUE((EditText{L"", 0, 0}.IsCaretAtEnd()));
}

TEST(EditTextTest, PutsATextInPlaceOfTheSelection) {
    EXPECT_EQ(WithInsertion({L"abcd", 1, 3}, L"XYZ"), (EditText{L"aXYZd", 4, 4}));
    EXPECT_EQ(WithInsertion({L"abcd", 4, 4}, L"e"), (EditText{L"abcde", 5, 5}));
    EXPECT_EQ(WithInsertion({L"abcd", 0, 4}, L""), (EditText{L"", 0, 0}));
}

TEST(EditTextTest, BackspaceShortensAndPutsTheCaretAtTheEnd) {
    EXPECT_EQ(AfterBackspace({L"123", 3, 3}), (EditText{L"12", 2, 2}));
    EXPECT_EQ(AfterBackspace({L"123", 1, 1}), (EditText{L"23", 2, 2}));
    EXPECT_EQ(AfterBackspace({L"1234", 1, 3}), (EditText{L"14", 2, 2}));
    EXPECT_EQ(AfterBackspace({L"123", 0, 3}), (EditText{L"", 0, 0}));
}

TEST(EditTextTest, BackspaceChangesNothingWhenNothingStandsBeforeTheCaret) {
    EXPECT_EQ(AfterBackspace({L"", 0, 0}), (EditText{L"", 0, 0}));
    EXPECT_EQ(AfterBackspace({L"123", 0, 0}), (EditText{L"123", 0, 0}));
}

} // namespace
} // namespace tam
