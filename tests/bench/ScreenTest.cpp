// What a terminal gets: lines that fit it, and colours.

#include "tests/bench/DeviceRun.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace benchtest {

namespace {

constexpr SHORT kColumns = 60;
constexpr SHORT kRows = 400;

/// A console of this test's own, 60 columns wide.
class ScreenTest : public testing::Test {
  protected:
    ScreenTest() {
        FreeConsole();
        EXPECT_TRUE(AllocConsole()) << GetLastError();
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        screen_ = CreateConsoleScreenBuffer(GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                            &inherited, CONSOLE_TEXTMODE_BUFFER, nullptr);
        const SMALL_RECT window{0, 0, kColumns - 1, 19};
        SetConsoleWindowInfo(screen_, TRUE, &window);
        EXPECT_TRUE(SetConsoleScreenBufferSize(screen_, {kColumns, kRows})) << GetLastError();
        EXPECT_TRUE(SetConsoleActiveScreenBuffer(screen_)) << GetLastError();
        SetEnvironmentVariableW(L"NO_COLOR", nullptr);
    }
    ~ScreenTest() override {
        SetEnvironmentVariableW(L"NO_COLOR", nullptr);
        CloseHandle(screen_);
        FreeConsole();
    }

    DWORD Run(const std::vector<std::wstring>& arguments) const {
        return RunProgram(ProgramFolder() + L"tambench.exe", arguments, L"CONOUT$").status;
    }

    std::wstring Row(SHORT row) const {
        std::wstring text(kColumns, L' ');
        DWORD read = 0;
        ReadConsoleOutputCharacterW(screen_, text.data(), kColumns, {0, row}, &read);
        text.resize(read);
        return text.substr(0, text.find_last_not_of(L' ') + 1);
    }

    /// The row that begins so; -1 when there is none.
    SHORT Find(const std::wstring& begin) const {
        for (SHORT row = 0; row < kRows; ++row) {
            if (Row(row).starts_with(begin)) {
                return row;
            }
        }
        return -1;
    }

    /// All rows as they stand, blanks too: what goes on in the next row is whole here,
    /// however long the path before it is.
    std::wstring Text() const {
        std::wstring text(static_cast<std::size_t>(kColumns) * kRows, L' ');
        DWORD read = 0;
        ReadConsoleOutputCharacterW(screen_, text.data(), static_cast<DWORD>(text.size()), {0, 0}, &read);
        text.resize(read);
        return text.substr(0, text.find_last_not_of(L' ') + 1);
    }

    WORD ColourOf(SHORT row, SHORT column) const {
        WORD attribute = 0;
        DWORD read = 0;
        ReadConsoleOutputAttribute(screen_, &attribute, 1, {column, row}, &read);
        return attribute;
    }

    /// Of the cells that something stands in.
    std::set<WORD> Colours() const {
        std::set<WORD> colours;
        for (SHORT row = 0; row < kRows; ++row) {
            const std::wstring text = Row(row);
            std::vector<WORD> attributes(kColumns);
            DWORD read = 0;
            ReadConsoleOutputAttribute(screen_, attributes.data(), kColumns, {0, row}, &read);
            for (std::size_t column = 0; column < text.size(); ++column) {
                if (text[column] != L' ') {
                    colours.insert(attributes[column]);
                }
            }
        }
        return colours;
    }

  private:
    HANDLE screen_ = nullptr;
};

TEST_F(ScreenTest, LinesFitATerminal) {
    EXPECT_EQ(0U, Run({L"inspect", L"channels"}));
    const SHORT heading = Find(L"Inputs (3)");
    ASSERT_LE(0, heading);
    // A line that did not fit would go on in a row that is not indented.
    SHORT row = static_cast<SHORT>(heading + 1);
    for (; !Row(row).empty(); ++row) {
        EXPECT_TRUE(Row(row).starts_with(L"  ") || row == heading + 1) << Narrow(Row(row));
        EXPECT_GT(static_cast<std::size_t>(kColumns), Row(row).size()) << Narrow(Row(row));
    }
    EXPECT_LE(heading + 6, row) << "a heading, its rule and three inputs";
}

TEST_F(ScreenTest, HeadingsAndFaultsHaveColours) {
    EXPECT_EQ(0U, Run({L"inspect", L"oddities", L"--tolerate-boxes"}));
    const SHORT heading = Find(L"Inputs (7)");
    const SHORT box = Find(L"  1. message box");
    ASSERT_LE(0, heading);
    ASSERT_LE(0, box);
    const WORD plain = ColourOf(static_cast<SHORT>(heading + 1), 2);
    EXPECT_NE(plain, ColourOf(heading, 0));
    EXPECT_NE(plain, ColourOf(box, 5));
    EXPECT_NE(ColourOf(heading, 0), ColourOf(box, 5));
    EXPECT_EQ(plain, ColourOf(box, 2)) << "its number";
}

TEST_F(ScreenTest, FindingsHaveColoursAndNoSequences) {
    EXPECT_EQ(1U, Run({L"check", SamplesFolder() + L"streams\\damaged.xml"}));
    const std::wstring text = Text();
    EXPECT_NE(std::wstring::npos, text.find(L"error: ")) << Narrow(text);
    EXPECT_EQ(std::wstring::npos, text.find(L"[1;31m")) << Narrow(text);
    EXPECT_EQ(std::wstring::npos, text.find(L"[0m")) << Narrow(text);
    EXPECT_LE(3U, Colours().size()) << "the place, the severities, the text";
}

TEST_F(ScreenTest, ChangesHaveColoursAndNoSequences) {
    EXPECT_EQ(1U, Run({L"diff", L"channels", L"full"}));
    const std::wstring text = Text();
    EXPECT_LE(0, Find(L"Inputs")) << Narrow(text);
    EXPECT_EQ(std::wstring::npos, text.find(L"[32m")) << Narrow(text);
    EXPECT_EQ(std::wstring::npos, text.find(L"[0m")) << Narrow(text);
    EXPECT_LE(3U, Colours().size()) << "headings, what is new, the rest";
}

TEST_F(ScreenTest, LettersBeyondAsciiArrive) {
    EXPECT_EQ(0U, Run({L"set", L"channels", L"AI1_Offset=1.5"}));
    EXPECT_TRUE(Row(Find(L"  AI1_Offset")).ends_with(L" \u00B0C")) << Narrow(Row(Find(L"  AI1_Offset")));
}

TEST_F(ScreenTest, NoColorIsRespected) {
    SetEnvironmentVariableW(L"NO_COLOR", L"1");
    EXPECT_EQ(0U, Run({L"inspect", L"oddities", L"--tolerate-boxes"}));
    EXPECT_EQ(1U, Colours().size());
}

TEST_F(ScreenTest, JsonHasNoColours) {
    EXPECT_EQ(0U, Run({L"inspect", L"oddities", L"--tolerate-boxes", L"--json"}));
    EXPECT_EQ(1U, Colours().size());
}

// Each run's other output is a file.
TEST_F(ScreenTest, AFileHasNoColours) {
    const std::string text = RunBench({L"inspect", L"oddities"}).out;
    EXPECT_EQ(std::string::npos, text.find('\x1b'));
}

} // namespace

} // namespace benchtest
