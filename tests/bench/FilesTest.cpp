// The files that commands write: whole, or as they were.

#include "tests/bench/DeviceRun.h"
#include "tests/Wine.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace benchtest {

namespace {

struct Close {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};

/// A folder of its own, and empty.
std::wstring EmptyFolder(const wchar_t* name) {
    const std::wstring folder = ScratchFolder() + name + L"\\";
    CreateDirectoryW(folder.c_str(), nullptr);
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW((folder + L"*").c_str(), &found);
    do {
        DeleteFileW((folder + found.cFileName).c_str());
    } while (FindNextFileW(search, &found) != FALSE);
    FindClose(search);
    return folder;
}

std::vector<std::string> NamesIn(const std::wstring& folder) {
    std::vector<std::string> names;
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW((folder + L"*").c_str(), &found);
    do {
        const std::string name = Narrow(found.cFileName);
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    } while (FindNextFileW(search, &found) != FALSE);
    FindClose(search);
    return names;
}

std::wstring OldFile(const std::wstring& folder) {
    return WrittenFile((folder.substr(ScratchFolder().size()) + L"file").c_str(), "old");
}

/// The commands that write a file, but for the file.
const std::vector<std::vector<std::wstring>>& WritingCommands() {
    static const std::vector<std::vector<std::wstring>> commands{{L"save", L"channels"},
                                                                 {L"interop", L"channels"},
                                                                 {L"export", L"channels"},
                                                                 {L"sheet", L"channels"},
                                                                 {L"icon"},
                                                                 {L"device", L"save"},
                                                                 {L"device", L"export"}};
    return commands;
}

std::vector<std::wstring> Into(std::vector<std::wstring> command, const std::wstring& file) {
    command.insert(command.end(), {L"-o", file});
    return command;
}

// A second name of the old file still has what stood there: the new file was
// written beside it and took its name, instead of being written over it.
TEST(FilesTest, EveryCommandPutsItsFileInPlaceWhenItIsWhole) {
    for (const auto& command : WritingCommands()) {
        const std::wstring folder = EmptyFolder(L"whole");
        const std::wstring file = OldFile(folder);
        const std::wstring second = folder + L"second";
        ASSERT_TRUE(CreateHardLinkW(second.c_str(), file.c_str(), nullptr)) << GetLastError();
        EXPECT_EQ(0U, RunBench(Into(command, file)).status) << Narrow(command.back());
        EXPECT_EQ("old", ReadFileBytes(second)) << Narrow(command.back());
        EXPECT_LT(100U, ReadFileBytes(file).size()) << Narrow(command.back());
        EXPECT_EQ(2U, NamesIn(folder).size()) << "something was left beside the file";
    }
}

TEST(FilesTest, AFileInUseStaysAsItWas) {
    for (const auto& command : WritingCommands()) {
        const std::wstring folder = EmptyFolder(L"used");
        const std::wstring file = OldFile(folder);
        Outcome run;
        {
            const std::unique_ptr<HANDLE, Close> user(
                CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
            run = RunBench(Into(command, file));
        }
        EXPECT_EQ(1U, run.status) << Narrow(command.back());
        EXPECT_NE(std::string::npos, run.err.find("0x80070020 " + Narrow(file) + " cannot be written"))
            << run.err;
        EXPECT_EQ(std::string::npos, run.out.find("Written to"));
        EXPECT_EQ("old", ReadFileBytes(file));
        EXPECT_EQ(std::vector<std::string>{"file"}, NamesIn(folder));
    }
}

TEST(FilesTest, AReadOnlyFileStaysAsItWas) {
    const std::wstring folder = EmptyFolder(L"protected");
    const std::wstring file = OldFile(folder);
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY);
    const Json failed = Bench({L"save", L"channels", L"-o", file}, 1);
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ("0x80070005", failed["error"]["hresult"]);
    EXPECT_EQ("old", ReadFileBytes(file));
    EXPECT_EQ(std::vector<std::string>{"file"}, NamesIn(folder));
}

TEST(FilesTest, AFolderIsNoFile) {
    const Json failed = Bench({L"save", L"channels", L"-o", EmptyFolder(L"folder")}, 1);
    EXPECT_FALSE(failed.contains("file"));
    const std::wstring folder = EmptyFolder(L"folder");
    EXPECT_EQ(1U, RunBench({L"icon", L"-o", folder.substr(0, folder.size() - 1)}).status);
    EXPECT_EQ(std::vector<std::string>{}, NamesIn(folder));
}

TEST(FilesTest, ANameWithoutAFolderIsOfTheCurrentOne) {
    const std::wstring folder = EmptyFolder(L"current");
    wchar_t before[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, before);
    SetCurrentDirectoryW(folder.c_str());
    EXPECT_EQ(0U, RunBench({L"save", L"channels", L"-o", L"file"}).status);
    SetCurrentDirectoryW(before);
    EXPECT_EQ(std::vector<std::string>{"file"}, NamesIn(folder));
}

// What is no file on a disk takes the bytes as they come.
TEST(FilesTest, ADeviceIsWrittenTo) {
    EXPECT_EQ(0U, RunBench({L"save", L"channels", L"-o", L"NUL"}).status);
}

TEST(FilesTest, AFullDeviceIsAFailure) {
    if (!tests::IsWine()) {
        return; // Windows has no such device
    }
    const std::wstring full = FullDevice();
    const Json failed = Bench({L"save", L"channels", L"-o", full}, 1);
    EXPECT_EQ("0x80070070", failed["error"]["hresult"]);
    EXPECT_EQ(0U,
              failed["error"]["description"].get<std::string>().find(Narrow(full) + " cannot be written"));
}

TEST(FilesTest, AReportThatCannotBePrintedIsAFailure) {
    std::vector<std::wstring> outputs = {kNobodyReads};
    if (tests::IsWine()) {
        outputs.push_back(FullDevice());
    }
    for (const std::wstring& output : outputs) {
        for (const std::vector<std::wstring>& arguments :
             {std::vector<std::wstring>{L"inspect", L"channels"}, {L"types", L"--json"}, {L"--help"}}) {
            const Outcome run = RunProgram(ProgramFolder() + L"tambench.exe", arguments, output);
            EXPECT_EQ(1U, run.status) << Narrow(arguments.front() + L" to " + output);
            EXPECT_EQ("tambench: the output cannot be written\n", run.err);
        }
    }
}

} // namespace

} // namespace benchtest
