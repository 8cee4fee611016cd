#include "tests/fuzz/Watchdog.h"
#include "tests/fuzz/DocumentRounds.h"
#include "tests/support/ImportPatch.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace component_fuzz {

namespace {

/// As a disk that fills up: the call succeeds, with less than it was given.
BOOL WINAPI WriteLess(HANDLE, LPCVOID, DWORD size, LPDWORD written, LPOVERLAPPED) {
    *written = size - 1;
    return TRUE;
}
BOOL WINAPI FailToWrite(HANDLE, LPCVOID, DWORD, LPDWORD, LPOVERLAPPED) {
    return FALSE;
}

bool IsThere(const std::wstring& file) {
    return GetFileAttributesW(file.c_str()) != INVALID_FILE_ATTRIBUTES;
}

TEST(WatchdogTest, HoldsTheInputOfTheRound) {
    const std::wstring file = KeepFile(L"watchdog-holds.txt");
    {
        Watchdog dog(file);
        dog.Begin("first", "round 1");
        EXPECT_EQ(ReadFile(file), "first");
        dog.Begin("2", "round 2");
        EXPECT_EQ(ReadFile(file), "2");
        const std::wstring kept = dog.Keep(2);
        EXPECT_EQ(ReadFile(kept), "2");
        DeleteFileW(kept.c_str());
    }
    EXPECT_FALSE(IsThere(file));
}

TEST(WatchdogTest, HoldsTheOldInputWhereTheNewOneCannotBeWritten) {
    const std::wstring file = KeepFile(L"watchdog-fails.txt");
    Watchdog dog(file);
    dog.Begin("old", "round 1");
    for (const auto function : {&WriteLess, &FailToWrite}) {
        const support::ImportPatch patch(GetModuleHandleW(nullptr), "WriteFile",
                                         reinterpret_cast<const void*>(function));
        ASSERT_TRUE(patch.IsImported());
        EXPECT_THROW(dog.Begin("new text", "round 2"), std::runtime_error);
        EXPECT_EQ(ReadFile(file), "old");
        EXPECT_FALSE(IsThere(file + L".part"));
    }
}

} // namespace

} // namespace component_fuzz
