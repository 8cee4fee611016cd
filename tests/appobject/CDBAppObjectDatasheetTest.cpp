#include "tests/appobject/Module.h"
#include "tests/appobject/ShellPatch.h"

#include "com/LateBound.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

using namespace support;
using namespace modules;

namespace {

/// Folders that the tests put data sheets into.
class SharedFolder {
  public:
    SharedFolder() { CreateDirectoryW(Path().c_str(), nullptr); }
    ~SharedFolder() { RemoveDirectoryW(Path().c_str()); }
    SharedFolder(const SharedFolder&) = delete;
    SharedFolder& operator=(const SharedFolder&) = delete;
    static std::wstring Path() { return Component::Folder() + L"..\\DataSheets"; }
    static TextFile File(const std::wstring& name) { return {Path() + L"\\" + name, L"sheet"}; }
};

TextFile Beside(const std::wstring& name) {
    return {Component::Folder() + name, L"sheet"};
}

std::string Ansi(const std::wstring& text) {
    return {text.begin(), text.end()};
}

/// The path of the file that the system lists first. A file system has an order of
/// its own, by name on most of them.
std::string FirstListed(const std::wstring& folder, const std::wstring& pattern) {
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW((folder + pattern).c_str(), &found);
    EXPECT_NE(search, INVALID_HANDLE_VALUE);
    FindClose(search);
    return Ansi(folder + found.cFileName);
}

class CDBAppObjectDatasheetTest : public ModuleTest {
  protected:
    static bool Available(const com::Ref<IAppObject>& module) {
        return Flag(module, &IAppObject::get_DatasheetAvailable);
    }
    /// The file that ViewDatasheet opens.
    std::string Opened(const com::Ref<IAppObject>& module) {
        ShellPatch shell(Dll().Module());
        EXPECT_EQ(module->ViewDatasheet(com::Variant(0L).Get()), S_OK);
        EXPECT_EQ(shell.calls.size(), 1u);
        return shell.calls.empty() ? std::string() : shell.calls[0].file;
    }
    /// A module with a data sheet, shown with this answer of the shell.
    void View(int answer) {
        const TextFile sheet = Beside(L"Sheet.pdf");
        const auto module = Defined(L"<NAME>Valve</NAME>");
        ShellPatch shell(Dll().Module());
        shell.answer = answer;
        EXPECT_EQ(module->ViewDatasheet(com::Variant(0L).Get()), S_OK);
        EXPECT_EQ(shell.calls.size(), 1u);
    }
    void ExpectOneBox(const std::wstring& text) { ExpectOnlyBox(Boxes(), text, L"Gateway Object"); }
};

TEST_F(CDBAppObjectDatasheetTest, FindsNone) {
    EXPECT_FALSE(Available(Defined(L"<NAME>Valve</NAME><ID>77</ID>")));
}

TEST_F(CDBAppObjectDatasheetTest, TakesAnyPdfBesideTheComponent) {
    const TextFile sheet = Beside(L"Anything at all.pdf");
    const auto module = Defined(L"<NAME>Valve</NAME>");
    EXPECT_TRUE(Available(module));
    EXPECT_EQ(Opened(module), Ansi(sheet.Path()));
}

TEST_F(CDBAppObjectDatasheetTest, TakesAnyDocBesideTheComponent) {
    const TextFile sheet = Beside(L"Anything.doc");
    const auto module = Defined(L"<NAME>Valve</NAME>");
    EXPECT_TRUE(Available(module));
    EXPECT_EQ(Opened(module), Ansi(sheet.Path()));
}

TEST_F(CDBAppObjectDatasheetTest, PrefersAPdfToADoc) {
    const TextFile doc = Beside(L"A.doc");
    const TextFile pdf = Beside(L"Z.pdf");
    EXPECT_EQ(Opened(Defined(L"<NAME>Valve</NAME>")), Ansi(pdf.Path()));
}

TEST_F(CDBAppObjectDatasheetTest, TakesTheFirstOfSeveralInTheFoldersOrder) {
    const TextFile second = Beside(L"Middle.pdf");
    const TextFile third = Beside(L"Zebra.pdf");
    const TextFile first = Beside(L"Apple.pdf");
    const std::string listed = FirstListed(Component::Folder(), L"*.pdf");
    EXPECT_EQ(Opened(Defined(L"<NAME>Valve</NAME>")), listed);
}

TEST_F(CDBAppObjectDatasheetTest, TakesTheFirstOfSeveralSharedOnes) {
    const SharedFolder folder;
    const TextFile second = SharedFolder::File(L"pb_77_m.pdf");
    const TextFile third = SharedFolder::File(L"pb_77_z.pdf");
    const TextFile first = SharedFolder::File(L"pb_77_a.pdf");
    const std::string listed = FirstListed(Component::Folder() + L"..\\DataSheets\\", L"pb_77_*.pdf");
    EXPECT_EQ(Opened(Defined(L"<ID>77</ID>")), listed);
}

TEST_F(CDBAppObjectDatasheetTest, TakesThePdfOfItsIdFromTheSharedFolder) {
    const SharedFolder folder;
    const TextFile doc = SharedFolder::File(L"pb_77_a.doc");
    const TextFile pdf = SharedFolder::File(L"pb_77_en.pdf");
    const auto module = Defined(L"<ID>77</ID>");
    EXPECT_TRUE(Available(module));
    EXPECT_EQ(Opened(module), Ansi(Component::Folder() + L"..\\DataSheets\\pb_77_en.pdf"));
}

TEST_F(CDBAppObjectDatasheetTest, TakesTheDocOfItsIdFromTheSharedFolder) {
    const SharedFolder folder;
    const TextFile doc = SharedFolder::File(L"pb_77_.doc");
    EXPECT_EQ(Opened(Defined(L"<ID>77</ID>")), Ansi(Component::Folder() + L"..\\DataSheets\\pb_77_.doc"));
}

TEST_F(CDBAppObjectDatasheetTest, PrefersADocBesideTheComponentToASharedPdf) {
    const SharedFolder folder;
    const TextFile shared = SharedFolder::File(L"pb_77_en.pdf");
    const TextFile beside = Beside(L"Own.doc");
    EXPECT_EQ(Opened(Defined(L"<ID>77</ID>")), Ansi(beside.Path()));
}

TEST_F(CDBAppObjectDatasheetTest, PassesOverSharedSheetsOfOtherObjects) {
    const SharedFolder folder;
    const TextFile longer = SharedFolder::File(L"pb_770_en.pdf");
    const TextFile shorter = SharedFolder::File(L"pb_7_en.pdf");
    const TextFile plain = SharedFolder::File(L"pb_77.pdf");
    EXPECT_FALSE(Available(Defined(L"<ID>77</ID>")));
}

// The identifier is a part of the pattern that the file is looked for with.
TEST_F(CDBAppObjectDatasheetTest, TakesWhateverFitsAnIdThatIsAPattern) {
    const SharedFolder folder;
    const TextFile sheet = SharedFolder::File(L"pb_77_en.pdf");
    const auto module = Defined(L"<ID>*</ID>");
    EXPECT_TRUE(Available(module));
    EXPECT_EQ(Opened(module), Ansi(Component::Folder() + L"..\\DataSheets\\pb_77_en.pdf"));
    EXPECT_TRUE(Available(Defined(L"<ID>7?</ID>")));
}

TEST_F(CDBAppObjectDatasheetTest, FindsNothingForAnIdThatCannotBeInAName) {
    const SharedFolder folder;
    const TextFile sheet = SharedFolder::File(L"pb_77_en.pdf");
    for (const wchar_t* id : {L"..\\x", L"a|b", L"C:\\x", L"%s%n"}) {
        EXPECT_FALSE(Available(Defined(std::wstring(L"<ID>") + id + L"</ID>"))) << com::Bstr(id).Get();
    }
}

TEST_F(CDBAppObjectDatasheetTest, LooksIntoTheSharedFolderOnlyWithAnId) {
    const SharedFolder folder;
    const TextFile shared = SharedFolder::File(L"pb__en.pdf");
    EXPECT_FALSE(Available(Defined(L"<NAME>Valve</NAME>")));
}

TEST_F(CDBAppObjectDatasheetTest, ForgetsAnEarlierFindWithoutAnId) {
    Define(L"Valve", L"<NAME>Valve</NAME>");
    const auto module = NewModule();
    {
        const TextFile sheet = Beside(L"Sheet.pdf");
        EXPECT_TRUE(Init(module, L"Valve"));
        EXPECT_TRUE(Available(module));
    }
    EXPECT_TRUE(Init(module, L"Valve"));
    EXPECT_FALSE(Available(module));
}

TEST_F(CDBAppObjectDatasheetTest, KeepsAnEarlierFindWithAnId) {
    Define(L"Valve", L"<ID>77</ID>");
    const auto module = NewModule();
    {
        const TextFile sheet = Beside(L"Sheet.pdf");
        EXPECT_TRUE(Init(module, L"Valve"));
    }
    EXPECT_TRUE(Init(module, L"Valve"));
    EXPECT_TRUE(Available(module));
    EXPECT_EQ(Opened(module), Ansi(Component::Folder() + L"Sheet.pdf"));
}

TEST_F(CDBAppObjectDatasheetTest, SaysThatThereIsNoneAndLeavesTheShellAlone) {
    ShellPatch shell(Dll().Module());
    EXPECT_EQ(NewModule()->ViewDatasheet(com::Variant(0L).Get()), S_OK);
    ExpectOneBox(L"DataSheet not available");
    EXPECT_TRUE(shell.calls.empty());
}

TEST_F(CDBAppObjectDatasheetTest, AsksTheShellToOpenTheFileMaximised) {
    const TextFile sheet = Beside(L"Sheet.pdf");
    const auto module = Defined(L"<NAME>Valve</NAME>");
    ShellPatch shell(Dll().Module());
    EXPECT_EQ(module->ViewDatasheet(com::Variant(0x12345L).Get()), S_OK);
    ASSERT_EQ(shell.calls.size(), 1u);
    EXPECT_EQ(shell.calls[0].owner, reinterpret_cast<HWND>(0x12345));
    EXPECT_EQ(shell.calls[0].verb, "open");
    EXPECT_EQ(shell.calls[0].file, Ansi(sheet.Path()));
    EXPECT_EQ(shell.calls[0].parameters, "0");
    EXPECT_EQ(shell.calls[0].folder, Ansi(sheet.Path())) << "the file itself, not its folder";
    EXPECT_EQ(shell.calls[0].show, 3);
}

TEST_F(CDBAppObjectDatasheetTest, ConvertsTheOwnerWindowToANumber) {
    const TextFile sheet = Beside(L"Sheet.pdf");
    const auto module = Defined(L"<NAME>Valve</NAME>");
    ShellPatch shell(Dll().Module());
    EXPECT_EQ(module->ViewDatasheet(com::Variant(L"4660").Get()), S_OK);
    VARIANT real{};
    real.vt = VT_R8;
    real.dblVal = 4661.0;
    EXPECT_EQ(module->ViewDatasheet(real), S_OK);
    ASSERT_EQ(shell.calls.size(), 2u);
    EXPECT_EQ(shell.calls[0].owner, reinterpret_cast<HWND>(4660));
    EXPECT_EQ(shell.calls[1].owner, reinterpret_cast<HWND>(4661));
}

TEST_F(CDBAppObjectDatasheetTest, TakesTheWindowOfA64BitHost) {
    const TextFile sheet = Beside(L"Sheet.pdf");
    const auto module = Defined(L"<NAME>Valve</NAME>");
    ShellPatch shell(Dll().Module());
    VARIANT handle{};
    handle.vt = VT_I8;
    std::vector<LONGLONG> handles{0x12345};
    if (sizeof(void*) == 8) {
        handles.push_back(0x80012345); // of which the upper half is zeros, or signs
        handles.push_back(static_cast<LONG>(0x80012345));
    }
    for (const LONGLONG number : handles) {
        handle.llVal = number;
        EXPECT_EQ(module->ViewDatasheet(handle), S_OK);
    }
    ASSERT_EQ(shell.calls.size(), handles.size());
    EXPECT_EQ(shell.calls.front().owner, reinterpret_cast<HWND>(0x12345));
    for (std::size_t i = 1; i < handles.size(); ++i) {
        EXPECT_EQ(shell.calls[i].owner,
                  reinterpret_cast<HWND>(static_cast<LONG_PTR>(static_cast<LONG>(0x80012345))));
    }
}

TEST_F(CDBAppObjectDatasheetTest, OpensByName) {
    const TextFile sheet = Beside(L"Sheet.pdf");
    const auto module = Defined(L"<NAME>Valve</NAME>");
    ShellPatch shell(Dll().Module());
    VARIANT owner{};
    owner.vt = VT_I4;
    com::CallMember(*module.Get(), L"ViewDatasheet", std::span<VARIANT>(&owner, 1));
    EXPECT_EQ(shell.calls.size(), 1u);
}

TEST_F(CDBAppObjectDatasheetTest, SaysThatNoViewerIsThere) {
    View(31);
    ExpectOneBox(L"Viewer not Available. Please install the viewer to see the documentation");
}

TEST_F(CDBAppObjectDatasheetTest, SaysThatTheFileIsGone) {
    View(2);
    ExpectOneBox(L"DataSheet not available");
}

TEST_F(CDBAppObjectDatasheetTest, SaysThatOtherRefusalsForbidIt) {
    for (const int answer : {0, 3, 5, 30}) {
        View(answer);
        ExpectOneBox(L"Visualization not allowed");
    }
}

TEST_F(CDBAppObjectDatasheetTest, ShowsNothingWhenTheViewerStarts) {
    for (const int answer : {32, 33, 42, 1000}) {
        View(answer);
        EXPECT_TRUE(Boxes().empty());
    }
}

} // namespace
