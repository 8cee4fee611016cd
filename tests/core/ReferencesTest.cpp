#include "core/References.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>

namespace tam {
namespace {

TEST(ReferencesTest, ZerosLeadToNoOutput) {
    for (const std::wstring_view reference : {L"", L"0", L"0000", L"000000"}) {
        EXPECT_FALSE(LeadsToAnOutput(reference)) << std::wstring(reference);
    }
}

TEST(ReferencesTest, AnythingElseLeadsToOne) {
    for (const std::wstring_view reference : {L"0000000", L"4203", L"00001", L"K_1", L" ", L"00000O"}) {
        EXPECT_TRUE(LeadsToAnOutput(reference)) << std::wstring(reference);
    }
}

TEST(ReferencesTest, ANarrowTextIsReadAlike) {
    for (const std::string_view reference : {"", "0", "000000"}) {
        EXPECT_FALSE(LeadsToAnOutput(reference)) << reference;
    }
    for (const std::string_view reference : {"0000000", "4203", "00001", " ", "00000O"}) {
        EXPECT_TRUE(LeadsToAnOutput(reference)) << reference;
    }
}

} // namespace
} // namespace tam
