#include "page/Base64.h"

#include <gtest/gtest.h>

#include <string>

namespace pagetest {

namespace {

TEST(Base64Test, MatchesTheExamplesOfTheStandard) {
    EXPECT_EQ("", page::Base64(""));
    EXPECT_EQ("Zg==", page::Base64("f"));
    EXPECT_EQ("Zm8=", page::Base64("fo"));
    EXPECT_EQ("Zm9v", page::Base64("foo"));
    EXPECT_EQ("Zm9vYmFy", page::Base64("foobar"));
    EXPECT_EQ("/+8A", page::Base64(std::string("\xFF\xEF\0", 3)));
}

} // namespace

} // namespace pagetest
