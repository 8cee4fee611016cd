// The classes as the manifests name them and as the DLLs register them, and a
// script that uses registered DLLs.

#include "tests/bench/DeviceRun.h"

#include "com/Registry.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <ostream>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace benchtest {

namespace {

constexpr const wchar_t* kClasses = L"Software\\Classes";
constexpr const wchar_t* kDlls[] = {L"O_Tam_id.dll", L"OrvHost.dll"};

enum class Scope { User, Machine };

DWORD Regsvr32(const std::wstring& dll, Scope scope, bool unregister) {
    std::vector<std::wstring> arguments{L"/s"};
    if (unregister) {
        arguments.emplace_back(L"/u");
    }
    if (scope == Scope::User) {
        arguments.insert(arguments.end(), {L"/n", L"/i:user"});
    }
    arguments.push_back(ProgramFolder() + dll);
    return RunProgram(L"regsvr32.exe", arguments).status;
}

/// Both DLLs registered for as long as this lives.
class Registered {
  public:
    explicit Registered(Scope scope) : scope_(scope) {
        for (const wchar_t* const dll : kDlls) {
            EXPECT_EQ(0U, Regsvr32(dll, scope_, false)) << Narrow(dll);
        }
    }
    ~Registered() {
        for (const wchar_t* const dll : kDlls) {
            EXPECT_EQ(0U, Regsvr32(dll, scope_, true)) << Narrow(dll);
        }
    }
    Registered(const Registered&) = delete;
    Registered& operator=(const Registered&) = delete;

  private:
    Scope scope_;
};

/// Everything below a key as lines of text: paths, and values with their types.
void Describe(const com::RegistryTree& tree, const std::wstring& path, std::set<std::string>& lines) {
    lines.insert(Narrow(path));
    for (const auto& value : tree.values) {
        std::string data(value.data.begin(), value.data.end());
        lines.insert(Narrow(path + L" : " + value.name) + " = " + std::to_string(value.type) + " " + data);
    }
    for (const auto& key : tree.keys) {
        Describe(key, path + L"\\" + key.name, lines);
    }
}

std::set<std::string> UserClasses() {
    std::set<std::string> lines;
    if (com::OpenKey(HKEY_CURRENT_USER, kClasses)) {
        Describe(com::ReadTree(HKEY_CURRENT_USER, kClasses), kClasses, lines);
    }
    return lines;
}

/// Names of the keys directly below the places where a registration writes.
std::set<std::wstring> MachineKeys() {
    std::set<std::wstring> names;
    for (const std::wstring place : {L"", L"\\CLSID", L"\\Interface", L"\\TypeLib"}) {
        const com::RegistryKey key = com::OpenKey(HKEY_LOCAL_MACHINE, (kClasses + place).c_str());
        wchar_t name[256] = {};
        for (DWORD i = 0; key && RegEnumKeyW(key.Get(), i, name, 256) == ERROR_SUCCESS; ++i) {
            names.insert(place + L"\\" + name);
        }
    }
    return names;
}

struct Class {
    std::wstring file;
    std::wstring progId;
    std::wstring threading;
    std::wstring description;
    bool operator==(const Class&) const = default;
};
using Classes = std::map<std::wstring, Class>;

std::ostream& operator<<(std::ostream& out, const Class& entry) {
    return out << Narrow(entry.file + L", " + entry.progId + L", " + entry.threading + L", " +
                         entry.description);
}

std::wstring UserText(const std::wstring& path, const wchar_t* value) {
    wchar_t text[MAX_PATH] = {};
    DWORD size = sizeof text;
    RegGetValueW(HKEY_CURRENT_USER, (std::wstring(kClasses) + L"\\" + path).c_str(), value, RRF_RT_REG_SZ,
                 nullptr, text, &size);
    return text;
}

/// What the user's registry has below CLSID for DLLs of the build's folder.
Classes RegisteredClasses() {
    Classes classes;
    const std::wstring folder = ProgramFolder();
    const com::RegistryTree tree = com::ReadTree(HKEY_CURRENT_USER, std::wstring(kClasses) + L"\\CLSID");
    for (const auto& key : tree.keys) {
        const std::wstring path = L"CLSID\\" + key.name;
        const std::wstring server = UserText(path + L"\\InprocServer32", nullptr);
        if (lstrcmpiW(server.substr(0, folder.size()).c_str(), folder.c_str()) == 0) {
            const std::wstring progId = UserText(path + L"\\ProgID", nullptr);
            EXPECT_EQ(Narrow(key.name), Narrow(UserText(progId + L"\\CLSID", nullptr)));
            classes[key.name] = {server.substr(folder.size()), progId,
                                 UserText(path + L"\\InprocServer32", L"ThreadingModel"),
                                 UserText(path, nullptr)};
        }
    }
    return classes;
}

std::wstring Manifest(int resource) {
    const std::wstring program = ProgramFolder() + L"tambench.exe";
    const HMODULE module = LoadLibraryExW(program.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    EXPECT_NE(nullptr, module);
    const HRSRC found =
        FindResourceW(module, MAKEINTRESOURCEW(resource), MAKEINTRESOURCEW(24)); // RT_MANIFEST
    EXPECT_NE(nullptr, found);
    const auto* const bytes = static_cast<const char*>(LockResource(LoadResource(module, found)));
    const std::string text(bytes, SizeofResource(module, found));
    FreeLibrary(module);
    return std::wstring(text.begin(), text.end());
}

void AddManifestClasses(const std::wstring& manifest, Classes& classes) {
    const std::wregex file(LR"re(<file name="([^"]*)">([^]*?)</file>)re");
    const std::wregex entry(
        LR"re(<comClass\s+clsid="([^"]*)"\s+progid="([^"]*)"\s+threadingModel="([^"]*)"\s+description="([^"]*)"/>)re");
    for (std::wsregex_iterator f(manifest.begin(), manifest.end(), file), end; f != end; ++f) {
        const std::wstring body = (*f)[2];
        for (std::wsregex_iterator c(body.begin(), body.end(), entry); c != end; ++c) {
            classes[(*c)[1]] = {(*f)[1], (*c)[2], (*c)[3], (*c)[4]};
        }
    }
}

TEST(RegistrationManifestTest, NamesTheClassesThatTheDllsRegister) {
    constexpr int kProgram = 1;
    constexpr int kCompiler = 10;
    Classes named;
    AddManifestClasses(Manifest(kProgram), named);
    AddManifestClasses(Manifest(kCompiler), named);
    EXPECT_FALSE(named.empty());

    Classes registered;
    {
        const Registered dlls(Scope::User);
        registered = RegisteredClasses();
    }
    for (const auto& [clsid, entry] : named) {
        EXPECT_EQ(1U, registered.count(clsid)) << Narrow(clsid) << " is not registered";
        EXPECT_EQ(registered[clsid], entry) << Narrow(clsid);
    }
    // Those for other programs, beside the DLLs, have every one.
    Classes beside;
    for (const wchar_t* const assembly : {L"O_Tam_id.Classes", L"OrvHost.Classes"}) {
        const std::string text = ReadFileBytes(ProgramFolder() + assembly + L".manifest");
        AddManifestClasses(std::wstring(text.begin(), text.end()), beside);
    }
    EXPECT_EQ(registered, beside);
}

TEST(RegistrationTest, ForTheUserLeavesNothingBehind) {
    const std::set<std::string> before = UserClasses();
    {
        const Registered dlls(Scope::User);
        EXPECT_NE(before, UserClasses());
    }
    EXPECT_EQ(before, UserClasses());
}

/// The lines of the script's UTF-16 result.
std::vector<std::string> ResultLines(const std::wstring& path) {
    const std::string bytes = ReadFileBytes(path);
    std::vector<std::string> lines(1);
    for (std::size_t at = 2; at + 1 < bytes.size(); at += 2) {
        const auto c = static_cast<wchar_t>(static_cast<unsigned char>(bytes[at]) |
                                            static_cast<unsigned char>(bytes[at + 1]) << 8);
        if (c == L'\n') {
            lines.emplace_back();
        } else if (c != L'\r') {
            lines.back() += Narrow(std::wstring(1, c));
        }
    }
    lines.pop_back();
    return lines;
}

// For the machine: Wine's class look-up does not see what is registered for
// the user. The prefix is the tests' own.
TEST(RegistrationScriptTest, AScriptUsesTheRegisteredComponent) {
    const std::wstring project = ScratchFolder() + L"script.xml";
    const std::wstring result = ScratchFolder() + L"script.txt";
    DeleteFileW(result.c_str());
    const auto runScript = [&] {
        RunProgram(L"cscript.exe",
                   {L"//nologo", SamplesFolder() + L"clients\\client.vbs", SamplesFolder() + L"catalogue.xml",
                    SamplesFolder() + L"streams\\channels.xml", project, result});
    };
    // The first script of a prefix registers interfaces of the script host's own.
    runScript();
    DeleteFileW(result.c_str());
    const std::set<std::wstring> before = MachineKeys();
    {
        const Registered dlls(Scope::Machine);
        EXPECT_NE(before, MachineKeys());
        runScript();
    }
    EXPECT_EQ(before, MachineKeys());

    const std::vector<std::string> lines = ResultLines(result);
    ASSERT_EQ(24U, lines.size());
    EXPECT_EQ("Module: Reading room, O_Tam_id.CDBAppObject", lines.front());
    EXPECT_EQ("Input 1: AO1_In1", lines[1]);
    EXPECT_EQ("Output 5: CTX1_Out", lines[8]);
    EXPECT_EQ("Attribute 11: CTX1_Mask", lines[19]);
    EXPECT_EQ("AI1_Offset was -0.50, shown as " + Local("-0.50 \u00B0C"), lines[20]);
    EXPECT_EQ("AI1_Offset is 1.5, shown as " + Local("1.5 \u00B0C"), lines[21]);
    EXPECT_EQ("Image: 1566 characters, sizes 176 and 24", lines[22]);
    EXPECT_EQ("All right.", lines.back());
}

// A compiler in the registry is no hindrance: the bench's own is taken, or none.
TEST(RegistrationCompilerTest, IsLeftOutWhereThereIsToBeNone) {
    const std::wstring refused = WrittenFile(
        L"refused_registered.xml",
        "<Tam><Name>Small</Name><DevKey>K9</DevKey><IsLastOnDev>0</IsLastOnDev><TamObjID>7</TamObjID>"
        "<Attributes><A><SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>-1</LOGICALADDRESS></A></Attributes></Tam>");
    const Registered dlls(Scope::Machine);
    EXPECT_EQ("export document", Bench({L"export", L"full", L"--wire", L"--no-compiler"})["kind"]);
    const std::string description = Bench({L"export", refused}, 1)["error"]["description"];
    EXPECT_TRUE(description.ends_with("attribute \"LogicalAddress\" of \"A\" in \"Attributes\" is \"-1\"; it "
                                      "must be a number from 0 to 65535 or nothing"))
        << description;
}

} // namespace

} // namespace benchtest
