// Scripts at night, on a window station that nobody sees: what would wait for somebody is
// written down.

#include "tests/package/Dll.h"
#include "tests/Places.h"
#include "tests/Program.h"
#include "tests/support/Fixture.h"

#include <nlohmann/json.hpp>

#include <cwchar>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace package {
namespace {

using nlohmann::json;
using support::TextFile;

constexpr const wchar_t* kVariable = L"O_TAM_ID_UNATTENDED";

/// The machine has no database compiler as long as this lives: its name leads to no class.
class NoCompiler {
  public:
    NoCompiler() {
        DWORD size = sizeof classId_;
        EXPECT_EQ(ERROR_SUCCESS,
                  RegGetValueW(HKEY_LOCAL_MACHINE, kPath, nullptr, RRF_RT_REG_SZ, nullptr, classId_, &size));
        EXPECT_EQ(ERROR_SUCCESS, RegDeleteKeyW(HKEY_LOCAL_MACHINE, kPath));
    }
    ~NoCompiler() {
        const auto size = static_cast<DWORD>((std::wcslen(classId_) + 1) * sizeof(wchar_t));
        EXPECT_EQ(ERROR_SUCCESS, RegSetKeyValueW(HKEY_LOCAL_MACHINE, kPath, nullptr, REG_SZ, classId_, size));
    }
    NoCompiler(const NoCompiler&) = delete;
    NoCompiler& operator=(const NoCompiler&) = delete;

  private:
    static constexpr const wchar_t* kPath =
        L"Software\\Classes\\ORV.QB.Interop.Compilers.CompilersInterop\\CLSID";
    wchar_t classId_[64] = {};
};

// Names no definition that is there, opens what opens, loads a stream full of faults with
// a catalogue that lacks its type, and exports what was loaded without a compiler.
constexpr const wchar_t* kNight = LR"(
Set module = CreateObject("O_Tam_id.CDBAppObject")
If module.Init("NoSuchDefinition") Then WScript.Quit 1
name = "Dev1"
If module.ShowRename(name, "K7") <> 2 Then WScript.Quit 2
module.ShowAbout
module.ViewDatasheet 0
Set catalogue = WScript.CreateObject("MSXML2.DOMDocument.6.0")
catalogue.loadXML "<Catalogue/>"
Set module.XmlSNVTDoc = catalogue
On Error Resume Next
module.LoadFromXmlStream "<Tam><Name>Night</Name><DevKey>K7</DevKey><IsLastOnDev>1</IsLastOnDev>" & _
    "<TamObjID>3</TamObjID><Attributes><Gain><SNVTTYPE>999</SNVTTYPE></Gain><Bare/>" & _
    "<Never><SNVTTYPE>105</SNVTTYPE></Never></Attributes></Tam>"
If Err.Number <> 91 Then WScript.Quit 3
Err.Clear
image = module.Stream
If Err.Number <> 0 Then WScript.Quit 4
If Left(image, 9) <> "<O_Tam_id" Then WScript.Quit 5
WScript.Quit 7
)";

/// A script as a scheduler starts it: on a window station that nobody sees.
class Script {
  public:
    explicit Script(const std::wstring& commandLine) {
        const HWINSTA before = GetProcessWindowStation();
        station_ = CreateWindowStationW(L"TamNight", 0, WINSTA_ALL_ACCESS, nullptr);
        EXPECT_NE(nullptr, station_);
        SetProcessWindowStation(station_);
        desktop_ = CreateDesktopW(L"Default", nullptr, nullptr, 0, GENERIC_ALL, nullptr);
        SetProcessWindowStation(before);
        EXPECT_NE(nullptr, desktop_);

        std::wstring place = L"TamNight\\Default";
        tests::Program::Start start;
        start.info.lpDesktop = place.data();
        program_.emplace(L"cscript.exe //nologo " + commandLine, start);
    }
    ~Script() {
        CloseDesktop(desktop_);
        CloseWindowStation(station_);
    }
    Script(const Script&) = delete;
    Script& operator=(const Script&) = delete;

    /// The exit status; two minutes are allowed.
    DWORD Wait() const {
        constexpr DWORD kTwoMinutes = 120'000;
        return program_->Wait(kTwoMinutes);
    }

  private:
    HWINSTA station_ = nullptr;
    HDESK desktop_ = nullptr;
    std::optional<tests::Program> program_;
};

/// Scripts of a registered component that write to one file, which is deleted at the end.
class UnattendedStationTest : public WholeRegistryTest {
  protected:
    void SetUp() override {
        WholeRegistryTest::SetUp();
        for (const Dll* dll : {&hostServices, &component}) {
            ASSERT_EQ(S_OK, dll->Register(Scope::Machine));
        }
        SetEnvironmentVariableW(kVariable, file_.c_str());
    }
    void TearDown() override {
        SetEnvironmentVariableW(kVariable, nullptr);
        for (const Dll* dll : {&component, &hostServices}) {
            EXPECT_EQ(S_OK, dll->Unregister(Scope::Machine));
        }
        WholeRegistryTest::TearDown();
    }
    std::wstring Folder() const { return (own_.Path() / L"").native(); }
    std::vector<json> Written() const {
        std::vector<json> lines;
        std::ifstream stream{std::filesystem::path(file_)};
        for (std::string line; std::getline(stream, line);) {
            json object = json::parse(line, nullptr, false);
            if (object.is_discarded()) {
                ADD_FAILURE() << line;
                break;
            }
            lines.push_back(std::move(object));
        }
        return lines;
    }

  private:
    tests::OwnFolder own_;
    const std::wstring file_ = (own_.Path() / L"night.jsonl").native();
};

TEST_F(UnattendedStationTest, AScriptGoesOnWhereADialogWouldWaitForEver) {
    const TextFile script(Folder() + L"night.vbs", kNight);
    {
        const NoCompiler without;
        EXPECT_EQ(7U, Script(L"\"" + script.Path() + L"\"").Wait());
    }
    std::vector<std::string> told;
    for (const json& line : Written()) {
        const std::string kind = line["kind"];
        told.push_back(kind == "box" ? kind + ": " + line["text"].get<std::string>() : kind);
    }
    const std::string unknownType = "box: Can't find the node related to SNVT ID 999";
    EXPECT_EQ((std::vector<std::string>{
                  "report", "dialog", "dialog", "box: DataSheet not available", unknownType, unknownType,
                  "box: Compiler.dll, necessary to exported Tam object hasn't been found"}),
              told);
}

// Tells of dialogs, each with a name of its own.
constexpr const wchar_t* kMany = LR"(
Set module = CreateObject("O_Tam_id.CDBAppObject")
For number = 1 To 300
    name = WScript.Arguments(0) & "." & number
    If module.ShowRename(name, "K7") <> 2 Then WScript.Quit 2
Next
WScript.Quit 7
)";

TEST_F(UnattendedStationTest, ProcessesThatShareAFileDoNotMixTheirLines) {
    constexpr int kScripts = 4;
    constexpr int kLines = 300;
    const TextFile file(Folder() + L"many.vbs", kMany);
    std::vector<std::unique_ptr<const Script>> scripts;
    std::multiset<std::string> expected;
    for (int script = 1; script <= kScripts; ++script) {
        scripts.push_back(std::make_unique<Script>(L"\"" + file.Path() + L"\" " + std::to_wstring(script)));
        for (int line = 1; line <= kLines; ++line) {
            expected.insert(std::to_string(script) + "." + std::to_string(line));
        }
    }
    for (const auto& script : scripts) {
        EXPECT_EQ(7U, script->Wait());
    }
    std::multiset<std::string> told;
    for (const json& line : Written()) {
        told.insert(line["text"].get<std::string>());
    }
    EXPECT_TRUE(expected == told) << told.size() << " lines";
}

} // namespace
} // namespace package
