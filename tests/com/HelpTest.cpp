// What object browsers show of the libraries: a sentence for each interface,
// class, member and value.

#include "tests/com/HostServices.h"
#include "tests/support/TypeLibrary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <string>

using namespace contract;
using namespace support;

namespace {

struct Place {
    const char* name;
    std::wstring (*dll)();
    int resource;
};

void PrintTo(const Place& place, std::ostream* out) {
    *out << place.name;
}

class HelpTest : public ::testing::TestWithParam<Place> {
  protected:
    const TypeLibrary library{GetParam().dll(), GetParam().resource};
};

/// Object browsers show one line.
constexpr std::size_t kLongest = 140;

void ExpectSentence(const std::wstring& help, const std::string& where) {
    ASSERT_FALSE(help.empty()) << where << " has no help";
    EXPECT_EQ(L'.', help.back()) << where;
    EXPECT_EQ(std::wstring::npos, help.find(L". ")) << where << " says more than one sentence";
    EXPECT_LE(help.size(), kLongest) << where;
    const auto isPlain = [](wchar_t c) { return c >= L' ' && c < 127 && c != L'|'; };
    EXPECT_TRUE(std::all_of(help.begin(), help.end(), isPlain)) << where;
}

TEST_P(HelpTest, SaysASentenceOfEachInterfaceAndMember) {
    ASSERT_FALSE(library.Interfaces().empty());
    for (const Interface& face : library.Interfaces()) {
        ExpectSentence(face.help, Narrow(face.name));
        for (const Member& member : face.members) {
            if (!member.isHidden) {
                ExpectSentence(member.help, Title(face, member));
            }
        }
    }
}

TEST_P(HelpTest, SaysASentenceOfEachClass) {
    for (const Class& entry : library.Classes()) {
        ExpectSentence(entry.help, Narrow(entry.name));
        if (entry.byName) {
            ExpectSentence(entry.byName->help, Narrow(entry.byName->name));
            for (const Member& member : entry.byName->members) {
                ExpectSentence(member.help, Title(*entry.byName, member));
            }
        }
    }
}

// The IDL compiler of this tool chain takes no help for the values themselves.
TEST_P(HelpTest, SaysASentenceOfEachEnumeration) {
    for (const Enumeration& entry : library.Enumerations()) {
        ExpectSentence(entry.help, Narrow(entry.name));
    }
}

INSTANTIATE_TEST_SUITE_P(Libraries, HelpTest,
                         ::testing::Values(Place{"Component", &support::Component::DllPath, 1},
                                           Place{"HostInterfaces", &support::Component::DllPath, 2},
                                           Place{"HostServices", &HostServices::DllPath, 1}),
                         [](const auto& place) { return std::string(place.param.name); });

} // namespace
