#include "tests/Places.h"
#include "tests/Program.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

// A gated call before Init ends the process, so it is made in one of its own.

namespace internal_tests {

namespace {

struct Ended {
    std::vector<std::string> lines;
    DWORD status = STILL_ACTIVE;
};

std::string ReadAll(HANDLE pipe) {
    std::string text;
    char buffer[512];
    DWORD count = 0;
    while (ReadFile(pipe, buffer, sizeof(buffer), &count, nullptr) != FALSE && count > 0) {
        text.append(buffer, count);
    }
    return text;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines(1);
    for (const char letter : text) {
        if (letter == '\n') {
            lines.emplace_back();
        } else if (letter != '\r') {
            lines.back() += letter;
        }
    }
    lines.pop_back();
    return lines;
}

/// Runs the small program beside this one until it has ended.
Ended RunChild(const std::wstring& member) {
    SECURITY_ATTRIBUTES inherited{sizeof(inherited), nullptr, TRUE};
    HANDLE read = nullptr;
    HANDLE write = nullptr;
    EXPECT_TRUE(CreatePipe(&read, &write, &inherited, 0));
    SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
    tests::Program::Start start;
    start.info.dwFlags = STARTF_USESTDHANDLES;
    start.info.hStdOutput = write;
    start.info.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    start.inherits = true;
    const tests::Program program(
        L"\"" + (tests::ProgramFolder() / L"end_before_init.exe").native() + L"\" " + member, start);
    CloseHandle(write);
    Ended ended;
    ended.lines = Lines(ReadAll(read));
    CloseHandle(read);
    constexpr DWORD kMinute = 60'000;
    ended.status = program.Wait(kMinute);
    return ended;
}

/// These lines and then all that the process says of the message.
std::vector<std::string> MessageAfter(std::vector<std::string> lines) {
    lines.insert(lines.end(), {"box: TamObjectManager not Inizialized", "caption: Gateway Object", "icon: 0",
                               "button: OK"});
    return lines;
}

class TamObjectManagerEndTest : public testing::TestWithParam<const wchar_t*> {};

TEST_P(TamObjectManagerEndTest, ShowsItsMessageAndEndsTheProcess) {
    const Ended ended = RunChild(GetParam());
    EXPECT_EQ(ended.lines, MessageAfter({"calling"}));
    EXPECT_EQ(ended.status, 1u);
}

INSTANTIATE_TEST_SUITE_P(BeforeInit, TamObjectManagerEndTest,
                         testing::Values(L"IsTamInternalObject", L"CreateTamInternalAppObject",
                                         L"CreateTemplateTamInternalObject"));

TEST(TamObjectManagerEndTest, TakesAnInitWithNoneForNoInit) {
    const Ended ended = RunChild(L"IsTamInternalObject InitWithNone");
    EXPECT_EQ(ended.lines, MessageAfter({"calling"}));
    EXPECT_EQ(ended.status, 1u);
}

TEST(TamObjectManagerEndTest, NeedsItsDeviceContextEvenWhenItHasFoundTheModuleObject) {
    const Ended ended = RunChild(L"CreateTemplateTamInternalObject FoundThenInitWithNone");
    EXPECT_EQ(ended.lines, MessageAfter({"found", "calling"}));
    EXPECT_EQ(ended.status, 1u);
}

TEST(TamObjectManagerEndTest, GoesOnAfterTheMemberThatIsNotGated) {
    const Ended ended = RunChild(L"IsTamObject");
    EXPECT_EQ(ended.lines, (std::vector<std::string>{"calling", "went on", "unwound"}));
    EXPECT_EQ(ended.status, 3u);
}

} // namespace

} // namespace internal_tests
