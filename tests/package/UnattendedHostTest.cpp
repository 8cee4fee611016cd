// A process that nobody attends: nothing opens, and what would have is written down.

#include "tests/appobject/ShellPatch.h"
#include "tests/dialogs/HostPoint.h"
#include "tests/package/Dll.h"
#include "tests/support/Fixture.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/Recorder.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <ios>
#include <sstream>
#include <string>
#include <vector>

namespace package {
namespace {

using nlohmann::json;
using support::Component;
using support::Recorder;
using support::TextFile;

constexpr const wchar_t* kVariable = L"O_TAM_ID_UNATTENDED";

class UnattendedHostTest : public support::ComponentTest {
  protected:
    void SetUp() override {
        ComponentTest::SetUp();
        DeleteFileW(File().c_str());
    }
    void TearDown() override {
        SetEnvironmentVariableW(kVariable, nullptr);
        DeleteFileW(File().c_str());
        EXPECT_TRUE(Boxes().empty()) << "a window opened";
        ComponentTest::TearDown();
    }

    static std::wstring File() { return Component::Folder() + L"night \x00e4.jsonl"; }
    static void LeaveAlone() { SetEnvironmentVariableW(kVariable, File().c_str()); }

    /// The lines of the file so far, as text.
    static std::vector<std::string> Lines() {
        std::vector<std::string> lines;
        const HANDLE file = CreateFileW(File().c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                        nullptr, OPEN_EXISTING, 0, nullptr);
        if (file == INVALID_HANDLE_VALUE) {
            return lines;
        }
        std::string bytes(GetFileSize(file, nullptr), '\0');
        DWORD read = 0;
        ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
        CloseHandle(file);
        std::istringstream stream(bytes);
        for (std::string line; std::getline(stream, line);) {
            lines.push_back(line);
        }
        EXPECT_TRUE(bytes.empty() || bytes.back() == '\n');
        return lines;
    }
    /// The one line of the file; its time is checked and taken off.
    static json Line() {
        const auto lines = Lines();
        EXPECT_EQ(1U, lines.size());
        return lines.size() == 1 ? Timeless(lines[0]) : json();
    }
    static json Timeless(const std::string& line) {
        json object = json::parse(line);
        const std::string time = object["time"];
        EXPECT_EQ(24U, time.size()) << time;
        EXPECT_EQ("20", time.substr(0, 2));
        EXPECT_EQ('Z', time.back());
        object.erase("time");
        return object;
    }
    static json Told(const std::string& kind, const std::string& title, const std::string& text,
                     const std::string& label = {}, const std::string& place = {},
                     const std::string& source = {}) {
        return {{"kind", kind},   {"title", title}, {"text", text},
                {"label", label}, {"place", place}, {"source", source}};
    }
    /// Loads a project element that names an output which the module has not.
    void LoadFaultyProject() {
        const auto document = support::Parse(L"<M><OutReferences><Nope>1</Nope></OutReferences></M>");
        EXPECT_EQ(S_OK, NewModule()->XmlLoad(support::Root(document).Get()));
    }
    static json FaultyProjectsReport() {
        return Told("report", "Gateway Object - Error report",
                    "Object variable or With block variable not set", "Sub IAppObject_XmlLoad",
                    "O_Tam_id Class Module CDBAppObject", "O_Tam_id");
    }
};

TEST_F(UnattendedHostTest, ShowsBoxesAsEverWithoutTheVariable) {
    for (const wchar_t* value : {static_cast<const wchar_t*>(nullptr), L"0"}) {
        SetEnvironmentVariableW(kVariable, value);
        LoadFaultyProject();
        const auto boxes = Boxes();
        ASSERT_EQ(1U, boxes.size());
        support::ExpectReport(boxes[0], support::kObjectNotSetText, L"O_Tam_id Class Module CDBAppObject",
                              L"Sub IAppObject_XmlLoad");
    }
}

TEST_F(UnattendedHostTest, WritesAReportDown) {
    LeaveAlone();
    LoadFaultyProject();
    EXPECT_EQ(FaultyProjectsReport(), Line());
}

TEST_F(UnattendedHostTest, AppendsEachToTheFile) {
    LeaveAlone();
    LoadFaultyProject();
    const auto first = Lines();
    LoadFaultyProject();
    const auto both = Lines();
    ASSERT_EQ(1U, first.size());
    ASSERT_EQ(2U, both.size());
    EXPECT_EQ(first[0], both[0]);
    EXPECT_EQ(FaultyProjectsReport(), Timeless(both[1]));
}

TEST_F(UnattendedHostTest, BeginsALineOfItsOwnAfterOneThatWasCutOff) {
    LeaveAlone();
    std::ofstream(std::filesystem::path(File()), std::ios::binary) << R"({"time":"2)";
    LoadFaultyProject();
    const auto lines = Lines();
    ASSERT_EQ(2U, lines.size());
    EXPECT_EQ(R"({"time":"2)", lines[0]);
    EXPECT_EQ(FaultyProjectsReport(), Timeless(lines[1]));
}

/// The file of a test, opened as somebody else would.
class SharedFile {
  public:
    explicit SharedFile(const std::wstring& path)
        : file_(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                            nullptr, OPEN_ALWAYS, 0, nullptr)) {
        EXPECT_NE(INVALID_HANDLE_VALUE, file_);
    }
    ~SharedFile() { CloseHandle(file_); }
    SharedFile(const SharedFile&) = delete;
    SharedFile& operator=(const SharedFile&) = delete;

    /// False when somebody has locked a part of it.
    bool LockWhole() const {
        OVERLAPPED start{};
        return LockFileEx(file_, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, MAXDWORD, MAXDWORD,
                          &start) != FALSE;
    }
    void Unlock() const {
        OVERLAPPED start{};
        EXPECT_NE(FALSE, UnlockFileEx(file_, 0, MAXDWORD, MAXDWORD, &start));
    }

  private:
    HANDLE file_;
};

const SharedFile* shared;        // NOLINT: an import has no place for more
std::vector<bool> couldBeLocked; // NOLINT
BOOL WINAPI WriteBesideAnother(HANDLE file, const void* bytes, DWORD size, DWORD* written,
                               OVERLAPPED* place) {
    couldBeLocked.push_back(shared->LockWhole());
    return WriteFile(file, bytes, size, written, place);
}

TEST_F(UnattendedHostTest, LocksTheFileWhileItWritesALine) {
    LeaveAlone();
    const SharedFile other(File());
    shared = &other;
    couldBeLocked.clear();
    {
        const support::ImportPatch patch(Dll().Module(), "WriteFile",
                                         reinterpret_cast<const void*>(&WriteBesideAnother));
        LoadFaultyProject();
        LoadFaultyProject();
    }
    shared = nullptr;
    EXPECT_EQ((std::vector<bool>{false, false}), couldBeLocked);
    EXPECT_EQ(2U, Lines().size());
    EXPECT_TRUE(other.LockWhole()) << "the lock is still there";
    other.Unlock();
}

TEST_F(UnattendedHostTest, GoesOnWhereSomebodyHasLockedTheFileForEver) {
    LeaveAlone();
    const SharedFile other(File());
    EXPECT_TRUE(other.LockWhole());
    LoadFaultyProject(); // that line may be lost
    other.Unlock();
    const auto before = Lines().size();
    LoadFaultyProject();
    EXPECT_EQ(before + 1, Lines().size());
}

int refusedLocks = 0; // NOLINT: an import has no place for more
BOOL WINAPI RefuseLock(HANDLE, DWORD, DWORD, DWORD, DWORD, OVERLAPPED*) {
    ++refusedLocks;
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

TEST_F(UnattendedHostTest, WaitsForNoLockWhereNoneCanBeHad) {
    LeaveAlone();
    const support::ImportPatch patch(Dll().Module(), "LockFileEx",
                                     reinterpret_cast<const void*>(&RefuseLock));
    ASSERT_TRUE(patch.IsImported());
    refusedLocks = 0;
    LoadFaultyProject();
    EXPECT_EQ(FaultyProjectsReport(), Line());
    EXPECT_EQ(1, refusedLocks);
}

std::wstring debuggerOutput; // NOLINT: an import has no place for more
void WINAPI KeepOutput(const wchar_t* text) {
    debuggerOutput += text;
}

TEST_F(UnattendedHostTest, TellsTheDebuggerTooAndWithoutAFileItAlone) {
    const support::ImportPatch patch(Dll().Module(), "OutputDebugStringW",
                                     reinterpret_cast<const void*>(&KeepOutput));
    ASSERT_TRUE(patch.IsImported());
    SetEnvironmentVariableW(kVariable, L"1");
    debuggerOutput.clear();
    LoadFaultyProject();
    EXPECT_TRUE(Lines().empty());
    ASSERT_FALSE(debuggerOutput.empty());
    EXPECT_EQ(L'\n', debuggerOutput.back());
    EXPECT_EQ(FaultyProjectsReport(), Timeless(std::string(debuggerOutput.begin(), debuggerOutput.end())));
    EXPECT_NE(GetFileAttributesW(Component::DllPath().c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetFileAttributesW(L"1"), INVALID_FILE_ATTRIBUTES) << "1 names no file";
}

TEST_F(UnattendedHostTest, PassesOverAFileThatCannotBeWritten) {
    SetEnvironmentVariableW(kVariable, (Component::Folder() + L"no such folder\\night.jsonl").c_str());
    LoadFaultyProject();
    EXPECT_TRUE(Lines().empty());
}

TEST_F(UnattendedHostTest, AnswersABoxWithOk) {
    LeaveAlone();
    UseDatabaseLocation();
    const auto module = Loaded(support::Stream(L"<In1/>"));
    // The answer that goes with the box: the document itself.
    EXPECT_EQ(L"<O_Tam_id", support::Text(module, &IAppObject::get_Stream).substr(0, 9));
    EXPECT_EQ(
        Told("box", "Gateway Object", "Compiler.dll, necessary to exported Tam object hasn't been found"),
        Line());
}

TEST_F(UnattendedHostTest, ReportsAMissingDefinition) {
    LeaveAlone();
    VARIANT_BOOL done = VARIANT_TRUE;
    EXPECT_EQ(S_OK, NewModule()->Init(com::Bstr(L"NoSuchDefinition").Get(), &done));
    EXPECT_EQ(VARIANT_FALSE, done);
    const json line = Line();
    EXPECT_EQ("report", line["kind"]);
    EXPECT_EQ("Function IAppObject_Init", line["label"]);
    EXPECT_EQ("IAppObject_Init Class Module CDBAppObject", line["place"]);
}

TEST_F(UnattendedHostTest, AnswersEachEditorAsCancelled) {
    for (const wchar_t* genType : {L"Float", L"Textual", L"Enum", L"Struct", L"Bitfield"}) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(genType)));
        DeleteFileW(File().c_str());
        LeaveAlone();
        dialogs::HostPoint point(L"Speed \x00fc", L"40", genType);
        EXPECT_EQ(S_OK, NewModule().As<ITamDialogs>()->EditValue(point.object.Get()));
        EXPECT_TRUE(point.writes.empty());
        EXPECT_EQ(L"40", point.value);
        EXPECT_EQ(Told("dialog", "Edit Value", "Speed \xc3\xbc"), Line());
    }
}

TEST_F(UnattendedHostTest, AnswersRenameAsCancelled) {
    LeaveAlone();
    com::Variant name(L"Dev1");
    short choice = 0;
    EXPECT_EQ(S_OK,
              NewModule().As<ITamDialogs>()->ShowRename(name.Address(), com::Bstr(L"K7").Get(), &choice));
    EXPECT_EQ(2, choice);
    EXPECT_EQ(L"Dev1", com::View(name.Get().bstrVal));
    EXPECT_EQ(Told("dialog", "Add Gateway Device", "Dev1"), Line());
}

TEST_F(UnattendedHostTest, ShowsNoAboutBox) {
    LeaveAlone();
    EXPECT_EQ(S_OK, NewModule().As<ITamDialogs>()->ShowAbout());
    EXPECT_EQ(Told("dialog", "About", ""), Line());
}

TEST_F(UnattendedHostTest, AsksNoViewToShowTheModule) {
    LeaveAlone();
    const auto sheet = Recorder::Make(L"sheet", {&__uuidof(IHostDocument)});
    const auto module = NewModule();
    EXPECT_EQ(S_OK, module->putref_Parent(sheet->As<IDispatch>().Get()));
    EXPECT_EQ(S_OK, support::Put(module, &IAppObject::put_UserName, L"Boiler"));
    EXPECT_EQ(S_OK, module->Show());
    EXPECT_TRUE(support::Said(L"sheet").empty());
    EXPECT_FALSE(support::Flag(module, &IAppObject::get_IsPlugInActive));
    EXPECT_EQ(Told("view", "Gateway Object", "Boiler"), Line());
}

TEST_F(UnattendedHostTest, OpensNoDataSheet) {
    LeaveAlone();
    const TextFile definition(Component::Folder() + L"Valve.xml",
                              L"<Definition><AppObject><NAME>Valve</NAME></AppObject></Definition>");
    const TextFile sheet(Component::Folder() + L"Sheet.pdf", L"sheet");
    const auto module = NewModule();
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(S_OK, module->Init(com::Bstr(L"Valve").Get(), &done));
    const modules::ShellPatch shell(Dll().Module());
    EXPECT_EQ(S_OK, module->ViewDatasheet(com::Variant(0L).Get()));
    EXPECT_TRUE(shell.calls.empty());
    const json line = Line();
    EXPECT_EQ("data sheet", line["kind"]);
    const std::string path = line["text"];
    EXPECT_EQ("Sheet.pdf", path.substr(path.rfind('\\') + 1));
}

} // namespace
} // namespace package
