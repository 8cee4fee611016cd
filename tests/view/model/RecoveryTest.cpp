#include "view/model/Recovery.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

using namespace view;

namespace {

Recovery Sample() {
    return {{{L"C:\\files\\hall.xml", {1234, 133000000000000000ULL}}, {L"C:\\files\\stream.xml", {0, 1}}},
            L"C:\\hall.project.xml",
            {{{Kind::Input, L"AO1_In1"}, L"DI1_Out"}, {{Kind::Attribute, L"Gain"}, L"12.5"}}};
}

TEST(RecoveryTest, IsWrittenInLines) {
    EXPECT_EQ(L"tamview unsaved 2\n"
              L"file\tC:\\\\files\\\\hall.xml\t1234\t133000000000000000\n"
              L"file\tC:\\\\files\\\\stream.xml\t0\t1\n"
              L"project\tC:\\\\hall.project.xml\n"
              L"input\tAO1_In1\tDI1_Out\n"
              L"attribute\tGain\t12.5\n"
              L"end\n",
              TextOf(Sample()));
}

TEST(RecoveryTest, ReadsWhatItWrote) {
    EXPECT_EQ(Sample(), ReadRecovery(TextOf(Sample())));
    Recovery odd;
    odd.files = {{L"C:\\new\\tab\\\u00E4\\end", {0, std::numeric_limits<std::uint64_t>::max()}}};
    odd.values[{Kind::Output, L"a"}] = L"";
    odd.values[{Kind::Attribute, L"a\tb"}] = L"line\r\nline\\n\tend\n";
    odd.values[{Kind::Attribute, L"zero"}] = std::wstring(L"a\0b", 3);
    EXPECT_EQ(odd, ReadRecovery(TextOf(odd)));
    odd.values.clear();
    EXPECT_EQ(odd, ReadRecovery(TextOf(odd)));
    odd.module = ModuleKey{L"K7\t", -2};
    EXPECT_EQ(odd, ReadRecovery(TextOf(odd)));
}

TEST(RecoveryTest, RefusesEveryTextThatWasCutOff) {
    const std::wstring text = TextOf(Sample());
    for (std::size_t size = 0; size < text.size(); ++size) {
        EXPECT_EQ(std::nullopt, ReadRecovery(std::wstring_view(text).substr(0, size))) << size;
    }
}

TEST(RecoveryTest, KnowsItsOwnVersionEvenWhenItIsCutOff) {
    const std::wstring text = TextOf(Sample());
    for (std::size_t size = 0; size <= text.size(); ++size) {
        EXPECT_TRUE(IsOfThisVersion(text.substr(0, size))) << size;
    }
    for (const wchar_t* other : {L"tamview unsaved 1\nend\n", L"tamview unsaved 3\nend\n",
                                 L"tamview unsaved 20\nend\n", L"tamview\nend\n", L"\n", L"other"}) {
        EXPECT_FALSE(IsOfThisVersion(other)) << other;
    }
}

TEST(RecoveryTest, RefusesWhatIsDamaged) {
    const std::wstring head = L"tamview unsaved 2\nfile\tC:\\\\a.xml\t1\t2\n";
    ASSERT_TRUE(ReadRecovery(head + L"end\n"));
    for (const wchar_t* rest : {
             L"attribute\tGain\nend\n",                        // no value
             L"attribute\tGain\t1\t2\nend\n",                  // too much
             L"attribute\t\t1\nend\n",                         // no name
             L"module\tK7\nend\n",                             // no number
             L"module\tK7\t1\nmodule\tK7\t1\nend\n",           // two of them
             L"module\tK7\t99999\nend\n",                      // none that a module can have
             L"colour\tGain\t1\nend\n",                        // no kind of point
             L"attribute\tGain\t\\x\nend\n",                   // an escape that is none
             L"attribute\tGain\t1\\\nend\n",                   // one that is cut off
             L"attribute\tGain\t1\nattribute\tGain\t2\nend\n", // twice
             L"attribute\tGain\t1\n\nend\n",                   // an empty line
             L"attribute\tGain\t1\nend\nmore\n",               // something after the end
             L"attribute\tGain\t1\nEND\n",                     // another end
             L"project\t\nend\n",                              // no project
             L"project\ta\nproject\tb\nend\n",                 // two of them
         }) {
        EXPECT_EQ(std::nullopt, ReadRecovery(head + rest)) << rest;
    }
    for (const wchar_t* text : {
             L"tamview unsaved 1\nfile\tC:\\\\a.xml\t1\t2\nend\n", // another version
             L"tamview unsaved 2\nfile\t\t1\t2\nend\n",            // no file
             L"tamview unsaved 2\nfile\tC:\\a.xml\t1\t2\nend\n",   // an escape that is none
             L"tamview unsaved 2\nfile\tC:\\\\a.xml\t1\nend\n",    // half a stamp
             L"tamview unsaved 2\nfile\tC:\\\\a.xml\t1\t\nend\n",
             L"tamview unsaved 2\nfile\tC:\\\\a.xml\t1\t2\t3\nend\n",
             L"tamview unsaved 2\nfile\tC:\\\\a.xml\t-1\t2\nend\n",
             L"tamview unsaved 2\nfile\tC:\\\\a.xml\t1\t18446744073709551616\nend\n", // past 64 bits
             L"tamview unsaved 2\nattribute\tGain\t1\nend\n",
             L"tamview unsaved 2\nend\n",
             L"",
         }) {
        EXPECT_EQ(std::nullopt, ReadRecovery(text)) << text;
    }
}

} // namespace
