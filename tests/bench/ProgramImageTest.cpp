// What the system reads of the programs before it runs them: version and manifest.

#include "tests/bench/BenchRun.h"
#include "tests/FileVersion.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace benchtest {

namespace {

struct Program {
    const wchar_t* name;
    const wchar_t* description;
};

class ProgramImageTest : public ::testing::TestWithParam<Program> {
  protected:
    static std::wstring Name() { return GetParam().name; }
    static std::wstring Path() { return ProgramFolder() + Name() + L".exe"; }
};

TEST_P(ProgramImageTest, TellsItsVersionAndWhoseItIs) {
    const tests::FileVersion version(Path());
    ASSERT_TRUE(version.IsThere());
    EXPECT_EQ(GetParam().description, version.Text(L"FileDescription"));
    EXPECT_EQ(L"1.0.0.0", version.Text(L"FileVersion"));
    EXPECT_EQ(Name(), version.Text(L"InternalName"));
    EXPECT_EQ(Name() + L".exe", version.Text(L"OriginalFilename"));
    EXPECT_EQ(L"O_Tam_id", version.Text(L"ProductName"));
    EXPECT_EQ(L"1.0.0.0", version.Text(L"ProductVersion"));
    EXPECT_EQ(L"The developers of O_Tam_id", version.Text(L"CompanyName"));
    EXPECT_EQ(L"Copyright 2026 the developers of O_Tam_id", version.Text(L"LegalCopyright"));
}

// Without the first, 32-bit Windows programs get a private copy of the folders and keys that they
// may not write; without the others they are told of an older system than they run on.
TEST_P(ProgramImageTest, AsksForNoRightsAndKnowsTheSystems) {
    const HMODULE module = LoadLibraryExW(Path().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_NE(nullptr, module);
    const HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(24)); // RT_MANIFEST
    ASSERT_NE(nullptr, found);
    const auto* const bytes = static_cast<const char*>(LockResource(LoadResource(module, found)));
    const std::string manifest(bytes, SizeofResource(module, found));
    FreeLibrary(module);
    for (const char* const part :
         {"<requestedExecutionLevel level=\"asInvoker\" uiAccess=\"false\"/>",
          "<supportedOS Id=\"{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}\"/>",    // Windows 10 and 11
          "<supportedOS Id=\"{1f676c76-80e1-4239-95bb-83d0f6d0da78}\"/>",    // Windows 8.1
          "<supportedOS Id=\"{35138b9a-5d96-4fbd-8e2d-a2440225f93a}\"/>"}) { // Windows 7
        EXPECT_NE(std::string::npos, manifest.find(part)) << part;
    }
}

INSTANTIATE_TEST_SUITE_P(Programs, ProgramImageTest,
                         ::testing::Values(Program{L"tambench", L"Bench for application objects"},
                                           Program{L"tamview", L"Window on a module"}),
                         [](const auto& entry) { return Narrow(entry.param.name); });

} // namespace

} // namespace benchtest
