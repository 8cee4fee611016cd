// The 32-bit and the 64-bit DLLs, both registered by the system's own programs
// and used by the system's own scripting clients of both kinds.

#include "tests/package/Dll.h"
#include "tests/Places.h"
#include "tests/Program.h"

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>

namespace package {

namespace {

constexpr int kKinds[] = {32, 64};

/// The same file of the 32-bit build, which lies beside this program's.
std::wstring Other(std::wstring path) {
    const std::wstring own = L"\\win64\\";
    const std::size_t place = path.rfind(own);
    if (place == std::wstring::npos) {
        ADD_FAILURE() << "this build does not lie in a folder win64, beside which win32 is the other";
        return path;
    }
    return path.replace(place, own.size(), L"\\win32\\");
}

/// A folder of the system's programs of so many bits. This program has 64.
std::wstring System(int bits) {
    wchar_t windows[MAX_PATH] = {};
    GetSystemWindowsDirectoryW(windows, MAX_PATH);
    return windows + std::wstring(bits == 32 ? L"\\SysWOW64\\" : L"\\System32\\");
}

/// The exit status of a program.
DWORD RunProgram(const std::wstring& program, const std::wstring& arguments) {
    constexpr DWORD kMinute = 60'000;
    return tests::Program(L"\"" + program + L"\" " + arguments).Wait(kMinute);
}

class SideBySideTest : public WholeRegistryTest {
  protected:
    static constexpr DWORD kDone = 42;
    static constexpr DWORD kNoClass = 43;

    void SetUp() override {
        WholeRegistryTest::SetUp();
        std::ofstream script{std::filesystem::path(script_)};
        script << "On Error Resume Next\n"
                  "Set made = CreateObject(WScript.Arguments(0))\n"
                  "If Err.Number <> 0 Then WScript.Quit 43\n"
                  "If made.ProgrammaticID <> WScript.Arguments(0) Then WScript.Quit 44\n"
                  "made.LoadFromXmlStream \"<Tam><Name>Both</Name><DevKey>K7</DevKey>\" & _\n"
                  "    \"<IsLastOnDev>1</IsLastOnDev><TamObjID>3</TamObjID>\" & _\n"
                  "    \"<InReferences><Low/><High/></InReferences></Tam>\"\n"
                  "For Each point In made.Inputs\n"
                  "    walked = walked & point.Name & \" \"\n"
                  "Next\n"
                  "If Err.Number <> 0 Then WScript.Quit 45\n"
                  "If walked <> \"Low High \" Then WScript.Quit 46\n"
                  "If made.Outputs.Count <> 0 Then WScript.Quit 47\n"
                  "WScript.Quit 42\n";
        // The first script of each kind in a prefix registers what its own host needs.
        for (const int bits : kKinds) {
            Client(bits);
        }
        start_ = WholeRegistry().AsLines();
    }
    void TearDown() override {
        for (const int bits : kKinds) {
            Regsvr(bits, component, L"/u");
            Regsvr(bits, hostServices, L"/u");
        }
        EXPECT_EQ("", Difference(start_, WholeRegistry().AsLines()));
    }

    static DWORD Regsvr(int bits, const Dll& dll, const std::wstring& option) {
        const std::wstring path = bits == 32 ? Other(dll.Path()) : dll.Path();
        return RunProgram(System(bits) + L"regsvr32.exe", L"/s " + option + L" \"" + path + L"\"");
    }
    void RegisterBoth(int bits) const {
        EXPECT_EQ(0U, Regsvr(bits, hostServices, L""));
        EXPECT_EQ(0U, Regsvr(bits, component, L""));
    }
    void UnregisterBoth(int bits) const {
        EXPECT_EQ(0U, Regsvr(bits, component, L"/u"));
        EXPECT_EQ(0U, Regsvr(bits, hostServices, L"/u"));
    }
    /// What a script of so many bits comes to: kDone when it made the module.
    DWORD Client(int bits) const {
        return RunProgram(System(bits) + L"cscript.exe",
                          L"//nologo \"" + script_ + L"\" O_Tam_id.CDBAppObject");
    }

  private:
    tests::OwnFolder own_;
    const std::wstring script_ = (own_.Path() / L"side_by_side.vbs").native();
    Lines start_;
};

TEST_F(SideBySideTest, EachKindOfClientGetsItsOwn) {
    for (const int first : kKinds) {
        const int second = 96 - first;
        RegisterBoth(first);
        EXPECT_EQ(kDone, Client(first)) << first;
        EXPECT_EQ(kNoClass, Client(second)) << second;
        RegisterBoth(second);
        EXPECT_EQ(kDone, Client(first)) << first;
        EXPECT_EQ(kDone, Client(second)) << second;
        UnregisterBoth(first);
        UnregisterBoth(second);
    }
}

TEST_F(SideBySideTest, EitherGoesWithoutHarmToTheOther) {
    for (const int gone : kKinds) {
        const int left = 96 - gone;
        RegisterBoth(left);
        const Lines alone = WholeRegistry().AsLines();
        RegisterBoth(gone);
        UnregisterBoth(gone);
        EXPECT_EQ("", Difference(alone, WholeRegistry().AsLines())) << gone << " was removed";
        EXPECT_EQ(kDone, Client(left));
        EXPECT_EQ(kNoClass, Client(gone));
        UnregisterBoth(left);
    }
}

TEST_F(SideBySideTest, OneDllGoesAndLeavesTheHostInterfacesToTheOtherOfItsKind) {
    for (const int bits : kKinds) {
        RegisterBoth(32);
        RegisterBoth(64);
        const Lines all = WholeRegistry().AsLines();
        EXPECT_EQ(0U, Regsvr(bits, component, L"/u"));
        const std::string key = "HKLM TypeLib\\{23539202-4C9D-4BB1-86C0-E65E8B10D209}\\1.0\\0\\win";
        const Lines after = WholeRegistry().AsLines();
        const std::wstring path = bits == 32 ? Other(hostServices.Path()) : hostServices.Path();
        EXPECT_EQ("1 " + std::string(path.begin(), path.end()) + "\\2",
                  after.at(key + std::to_string(bits) + " : "));
        const std::string other = key + std::to_string(96 - bits) + " : ";
        EXPECT_EQ(all.at(other), after.at(other));
        UnregisterBoth(32);
        UnregisterBoth(64);
    }
}

} // namespace

} // namespace package
