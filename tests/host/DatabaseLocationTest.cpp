#include "tests/host/HostDll.h"

#include <string>

namespace hosttest {

namespace {

constexpr const wchar_t* kVariable = L"ORV_DBPATH";

std::wstring TempFolder() {
    wchar_t path[MAX_PATH + 1] = {};
    return std::wstring(path, GetTempPathW(MAX_PATH + 1, path));
}

bool IsFolder(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

class DatabaseLocationTest : public testing::Test {
  protected:
    void SetUp() override { SetEnvironmentVariableW(kVariable, nullptr); }
    void TearDown() override { SetEnvironmentVariableW(kVariable, nullptr); }

    std::wstring Path() { return TextOf(*location_.Get(), &IDatabaseLocation::get_Path); }

    com::Ref<IDatabaseLocation> location_ = Create<IDatabaseLocation>(__uuidof(DatabaseLocation));
};

TEST_F(DatabaseLocationTest, HasTheIdentifiersThatObjectsAskFor) {
    CLSID clsid{};
    IID iid{};
    ASSERT_EQ(S_OK, CLSIDFromString(L"{1D816F43-BC81-46F7-B17D-EE81B559E78F}", &clsid));
    ASSERT_EQ(S_OK, IIDFromString(L"{5285ED50-D970-43CC-B0EC-E57FCF3447C2}", &iid));
    const auto object = Create<IUnknown>(clsid);
    com::Ref<IUnknown> location;
    ASSERT_EQ(S_OK, object->QueryInterface(iid, location.PutVoid()));
}

TEST_F(DatabaseLocationTest, AnswersThePathInTheThirdSlot) {
    using Get = HRESULT(STDMETHODCALLTYPE*)(IDatabaseLocation*, BSTR*);
    // Three slots of IUnknown, four of IDispatch, then the interface's own.
    const auto* slots = *reinterpret_cast<const Get* const*>(location_.Get());
    com::Bstr path;
    EXPECT_EQ(S_OK, slots[3 + 4 + 2](location_.Get(), path.Put()));
    EXPECT_EQ(Path(), path.View());
}

TEST_F(DatabaseLocationTest, MakesAFolderBelowTheTemporaryOne) {
    const std::wstring expected = TempFolder() + L"OrvHost\\Database";
    RemoveDirectoryW(expected.c_str());
    EXPECT_EQ(expected, Path());
    EXPECT_TRUE(IsFolder(expected));
    EXPECT_EQ(expected, Path()) << "a folder that is there already";
}

TEST_F(DatabaseLocationTest, FollowsTheEnvironmentAndMakesTheFolderItNames) {
    const std::wstring top = TempFolder() + L"OrvHostTest";
    const std::wstring folder = top + L"\\a b\\c";
    SetEnvironmentVariableW(kVariable, (folder + L"\\").c_str());
    EXPECT_EQ(folder, Path()) << "without the closing backslash";
    EXPECT_TRUE(IsFolder(folder));
    EXPECT_TRUE(RemoveDirectoryW(folder.c_str()));
    EXPECT_TRUE(RemoveDirectoryW((top + L"\\a b").c_str()));
    EXPECT_TRUE(RemoveDirectoryW(top.c_str()));
}

TEST_F(DatabaseLocationTest, KeepsTheBackslashOfADrive) {
    SetEnvironmentVariableW(kVariable, L"C:\\");
    EXPECT_EQ(L"C:\\", Path());
}

TEST_F(DatabaseLocationTest, TellsWhichFolderCannotBeMade) {
    const std::wstring file = TempFolder() + L"OrvHostTest.txt";
    const HANDLE handle = CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, handle);
    CloseHandle(handle);
    SetEnvironmentVariableW(kVariable, file.c_str());
    com::Bstr path;
    EXPECT_EQ(kDatabaseFolder, location_->get_Path(path.Put()));
    EXPECT_EQ(nullptr, path.Get());
    EXPECT_TRUE(LastError().starts_with(L"The database folder \"" + file + L"\" cannot be made: "));
    EXPECT_TRUE(DeleteFileW(file.c_str()));
}

TEST_F(DatabaseLocationTest, RefusesAMissingResult) {
    EXPECT_EQ(E_POINTER, location_->get_Path(nullptr));
}

TEST_F(DatabaseLocationTest, HasNothingAfterTheSlotsBeforeThePath) {
    EXPECT_EQ(E_NOTIMPL, location_->Reserved01());
    EXPECT_EQ(E_NOTIMPL, location_->Reserved02());
}

} // namespace

} // namespace hosttest
