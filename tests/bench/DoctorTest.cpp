// What doctor tells of the registry, and what it advises.

#include "tests/bench/BenchRun.h"
#include "tests/bench/Registered.h"
#include "tests/bench/Schema.h"
#include "tests/Places.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <ios>
#include <sstream>
#include <string>
#include <vector>

namespace benchtest {

namespace {

constexpr int kBits = sizeof(void*) * 8;
constexpr int kOtherBits = 96 - kBits;
constexpr const wchar_t* kModuleServer =
    L"Software\\Classes\\CLSID\\{17C37AEC-B03B-4DB2-9F7D-EC0E31E7B3DD}\\InprocServer32";
const std::string kModule = "O_Tam_id.CDBAppObject";

std::string Kind(int bits) {
    return std::to_string(bits) + "-bit";
}

std::string Join(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text;
}

const std::string kComponentClasses = Join({kModule, "O_Tam_id.TamObjectManager"});
const std::string kNamedServices = Join({"UnitManager.Converter", "ORV.QB.Interop.Compilers.CompilersInterop",
                                         "O_Generic.CDBAppObject", "OrvHost.LibraryService"});

/// The module's class with another file for the user.
class UsersModule {
  public:
    explicit UsersModule(const std::wstring& file) {
        EXPECT_EQ(ERROR_SUCCESS,
                  RegSetKeyValueW(HKEY_CURRENT_USER, kModuleServer, nullptr, REG_SZ, file.c_str(),
                                  static_cast<DWORD>((file.size() + 1) * sizeof(wchar_t))));
    }
    ~UsersModule() {
        // Advice that is followed takes it away.
        const std::wstring key = kModuleServer;
        const LSTATUS result =
            RegDeleteTreeW(HKEY_CURRENT_USER, key.substr(0, key.find_last_of(L'\\')).c_str());
        EXPECT_TRUE(result == ERROR_SUCCESS || result == ERROR_FILE_NOT_FOUND) << result;
        RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\Classes\\CLSID"); // fails while others are in it
    }
    UsersModule(const UsersModule&) = delete;
    UsersModule& operator=(const UsersModule&) = delete;
};

/// A text of the user's below the classes. At the end the key `owner` goes with all in it.
class UsersText {
  public:
    UsersText(const std::wstring& owner, const std::wstring& below, const std::wstring& text)
        : key_(L"Software\\Classes\\" + owner) {
        EXPECT_EQ(ERROR_SUCCESS,
                  RegSetKeyValueW(HKEY_CURRENT_USER, (key_ + L"\\" + below).c_str(), nullptr, REG_SZ,
                                  text.c_str(), static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))));
    }
    ~UsersText() {
        RegDeleteTreeW(HKEY_CURRENT_USER, key_.c_str()); // advice that is followed takes it away
        RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\Classes\\CLSID"); // fails while others are in it
    }
    UsersText(const UsersText&) = delete;
    UsersText& operator=(const UsersText&) = delete;

  private:
    std::wstring key_;
};

Json Doctor(DWORD expectedStatus) {
    const Outcome run = RunBench({L"doctor", L"--json"});
    EXPECT_EQ(expectedStatus, run.status) << run.err << run.out;
    Json document = Json::parse(run.out, nullptr, false);
    EXPECT_EQ(std::vector<std::string>(), SchemaFaults(document));
    return document;
}

std::vector<std::string> Told(const Json& document, int bits, const char* member) {
    std::vector<std::string> texts;
    for (const Json& finding : document["findings"]) {
        if (finding["bits"] == bits) {
            texts.push_back(finding[member].get<std::string>());
        }
    }
    return texts;
}

/// With a blank where a table breaks a long path, or anything else.
std::string InOneLine(const std::string& text) {
    std::istringstream stream(text);
    std::string line;
    for (std::string word; stream >> word;) {
        line += word + " ";
    }
    return line;
}

TEST(DoctorTest, SaysThatNothingIsRegistered) {
    const Json document = Doctor(1);
    EXPECT_EQ(kBits, document["bits"]);
    EXPECT_EQ(64, document["systemBits"]);
    for (const int bits : {32, 64}) {
        const std::string client = "A " + Kind(bits) + " client ";
        const std::vector<std::string> expected{
            client + "does not find the name of " + kComponentClasses +
                " (0x800401F3): nothing is registered.",
            client + "does not find the name of " + kNamedServices + " (0x800401F3): nothing is registered.",
            client + "cannot make {1D816F43-BC81-46F7-B17D-EE81B559E78F} (0x80040154): not registered."};
        EXPECT_EQ(expected, Told(document, bits, "what"));
    }
    const std::vector<std::string> advice = Told(document, kBits, "advice");
    ASSERT_FALSE(advice.empty());
    const std::string folder = kBits == 32 ? "SysWOW64" : "System32";
    EXPECT_EQ("Run %SystemRoot%\\" + folder + "\\regsvr32 \"" + Narrow(ProgramFolder()) + "O_Tam_id.dll\".",
              advice.front());
}

TEST(DoctorTest, TellsTheClassThatIsRegisteredForTheOtherKindOnly) {
    const Registered dlls;
    const Json document = Doctor(0);
    EXPECT_EQ(std::vector<std::string>(), Told(document, kBits, "what"));
    const std::string client = "A " + Kind(kOtherBits) + " client cannot make ";
    const std::string only = " (0x80040154): registered for " + Kind(kBits) + " clients only.";
    const std::vector<std::string> expected{client + kComponentClasses + only,
                                            client + kNamedServices +
                                                ", {1D816F43-BC81-46F7-B17D-EE81B559E78F}" + only};
    EXPECT_EQ(expected, Told(document, kOtherBits, "what"));
    const std::string folder = kOtherBits == 32 ? "SysWOW64" : "System32";
    const std::vector<std::string> advice = Told(document, kOtherBits, "advice");
    ASSERT_FALSE(advice.empty());
    EXPECT_EQ("Run %SystemRoot%\\" + folder + "\\regsvr32 \"O_Tam_id.dll\" in the folder of the " +
                  Kind(kOtherBits) + " build.",
              advice.front());
}

TEST(DoctorTest, NamesTheFileBehindEachClassAndLibrary) {
    const Registered dlls;
    const Json document = Doctor(0);
    const std::string component = Narrow(ProgramFolder()) + "O_Tam_id.dll";
    const std::string services = Narrow(ProgramFolder()) + "OrvHost.dll";
    ASSERT_EQ(7U, document["classes"].size());
    const Json module = document["classes"][0];
    EXPECT_EQ(kModule, module["progId"].get<std::string>());
    EXPECT_EQ("{17C37AEC-B03B-4DB2-9F7D-EC0E31E7B3DD}", module["clsid"].get<std::string>());
    EXPECT_EQ(Json::array({{{"bits", kBits},
                            {"for", "machine"},
                            {"file", component},
                            {"fileExists", true},
                            {"fileBits", kBits}}}),
              module["servers"]);
    ASSERT_EQ(3U, document["typeLibraries"].size());
    EXPECT_EQ(Json::array({{{"bits", kBits},
                            {"for", "machine"},
                            {"file", services + "\\2"},
                            {"fileExists", true},
                            {"fileBits", kBits}}}),
              document["typeLibraries"][1]["files"]);
}

TEST(DoctorTest, FindsAUsersRegistrationThatHidesTheMachines) {
    const Registered dlls;
    const UsersModule user(L"C:\\Gone\\O_Tam_id.dll");
    const std::vector<std::string> told = Told(Doctor(1), kBits, "what");
    ASSERT_EQ(2U, told.size());
    EXPECT_EQ("A " + Kind(kBits) + " client cannot make " + kModule + ": the registered file is not there.",
              told[0]);
    EXPECT_EQ("For this user C:\\Gone\\O_Tam_id.dll hides " + Narrow(ProgramFolder()) +
                  "O_Tam_id.dll, which the machine has for " + kModule + ".",
              told[1]);
}

TEST(DoctorTest, FindsAFileOfTheOtherKind) {
    const Registered dlls;
    const UsersModule user(kBits == 64 ? L"C:\\windows\\syswow64\\ole32.dll"
                                       : L"C:\\windows\\sysnative\\ole32.dll");
    const std::vector<std::string> told = Told(Doctor(1), kBits, "what");
    ASSERT_FALSE(told.empty());
    EXPECT_EQ("A " + Kind(kBits) + " client cannot make " + kModule + ": the registered file is a " +
                  Kind(kOtherBits) + " DLL.",
              told[0]);
}

TEST(DoctorTest, TellsAFileThatIsNoDllFromOneThatIsGone) {
    const Registered dlls;
    const struct {
        std::wstring file;
        Json bits;
    } files[] = {{ProgramFolder() + L"O_Tam_id.Classes.manifest", Json()},
                 {ProgramFolder() + L"tambench.exe", kBits}};
    for (const auto& [file, bits] : files) {
        const UsersModule user(file);
        const Json document = Doctor(1);
        const std::vector<std::string> told = Told(document, kBits, "what");
        ASSERT_FALSE(told.empty());
        EXPECT_EQ("A " + Kind(kBits) + " client cannot make " + kModule +
                      ": the registered file is no DLL of 32 or 64 bits.",
                  told[0]);
        // A user's class is there for clients of both kinds where the system keeps one part for them.
        const Json server = document["classes"][0]["servers"][0];
        EXPECT_EQ("user", server["for"]);
        EXPECT_EQ(Narrow(file), server["file"].get<std::string>());
        EXPECT_EQ(true, server["fileExists"]);
        EXPECT_EQ(bits, server["fileBits"]);
        const std::string said = InOneLine(RunBench({L"doctor"}).out);
        EXPECT_NE(std::string::npos, said.find("; the file is no DLL of 32 or 64 bits")) << said;
    }
    const UsersModule user(L"C:\\Gone\\O_Tam_id.dll");
    const Json server = Doctor(1)["classes"][0]["servers"][0];
    EXPECT_EQ(false, server["fileExists"]);
    EXPECT_EQ(Json(), server["fileBits"]);
    const std::string said = InOneLine(RunBench({L"doctor"}).out);
    EXPECT_NE(std::string::npos, said.find("; the file is not there")) << said;
}

constexpr const wchar_t* kFaces = L"{23539202-4C9D-4BB1-86C0-E65E8B10D209}";
constexpr const wchar_t* kServices = L"{03814B01-E40D-4C62-B843-0733B9AFEBC8}";

/// A type library with another file for the user.
class UsersLibrary {
  public:
    UsersLibrary(int bits, const std::wstring& file, const std::wstring& id = kFaces)
        : key_(L"Software\\Classes\\TypeLib\\" + id) {
        const std::wstring key = key_ + L"\\1.0\\0\\win" + std::to_wstring(bits);
        EXPECT_EQ(ERROR_SUCCESS,
                  RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), nullptr, REG_SZ, file.c_str(),
                                  static_cast<DWORD>((file.size() + 1) * sizeof(wchar_t))));
    }
    ~UsersLibrary() {
        EXPECT_EQ(ERROR_SUCCESS, RegDeleteTreeW(HKEY_CURRENT_USER, key_.c_str()));
        RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\Classes\\TypeLib"); // fails while others are in it
    }
    UsersLibrary(const UsersLibrary&) = delete;
    UsersLibrary& operator=(const UsersLibrary&) = delete;

  private:
    std::wstring key_;
};

TEST(DoctorTest, FindsATypeLibrarysFileGoneOrWithoutOne) {
    const Registered dlls;
    {
        const UsersLibrary user(kBits, L"C:\\Gone\\OrvHost.dll\\2");
        EXPECT_EQ(std::vector<std::string>{"The registered file of the type library OrvDBFaces is not there: "
                                           "calls from another apartment fail."},
                  Told(Doctor(1), kBits, "what"));
    }
    for (const wchar_t* const place : {L"O_Tam_id.dll", L"O_Tam_id.dll\\3", L"O_Tam_id.Classes.manifest"}) {
        const UsersLibrary user(kBits, ProgramFolder() + place);
        EXPECT_EQ(std::vector<std::string>{"The registered file of the type library OrvDBFaces holds none: "
                                           "calls from another apartment fail."},
                  Told(Doctor(1), kBits, "what"));
        const std::string said = InOneLine(RunBench({L"doctor"}).out);
        EXPECT_NE(std::string::npos, said.find("; the file holds no such type library")) << said;
    }
    const UsersLibrary user(kBits, ProgramFolder() + L"..\\idl\\OrvDBFaces.tlb");
    EXPECT_EQ(std::vector<std::string>(), Told(Doctor(0), kBits, "what"));
}

/// The system's program of this kind, as advice has it.
std::string Regsvr32() {
    return kBits == 32 ? "%SystemRoot%\\SysWOW64\\regsvr32" : "%SystemRoot%\\System32\\regsvr32";
}

void RunRegsvr32(const std::vector<std::wstring>& options, const wchar_t* dll) {
    std::vector<std::wstring> arguments{L"/s"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.push_back(ProgramFolder() + dll);
    EXPECT_EQ(0U, RunProgram(L"regsvr32.exe", arguments).status);
}

TEST(DoctorTest, AdvisesWhatHelpsWhereTheUsersEntryIsWrong) {
    const Registered dlls;
    const std::string dll = "\"" + Narrow(ProgramFolder()) + "O_Tam_id.dll\".";
    {
        const UsersModule user(L"C:\\Gone\\O_Tam_id.dll");
        const std::vector<std::string> expected{"Run " + Regsvr32() + " /n /i:user " + dll,
                                                "If that is not wanted, run " + Regsvr32() +
                                                    " /u /n /i:user " + dll};
        EXPECT_EQ(expected, Told(Doctor(1), kBits, "advice"));
        RunRegsvr32({L"/n", L"/i:user"}, L"O_Tam_id.dll");
        EXPECT_EQ(std::vector<std::string>(), Told(Doctor(0), kBits, "advice"));
        RunRegsvr32({L"/u", L"/n", L"/i:user"}, L"O_Tam_id.dll");
        const UsersModule again(L"C:\\Gone\\O_Tam_id.dll"); // what the first one takes away at its end
        RunRegsvr32({L"/u", L"/n", L"/i:user"}, L"O_Tam_id.dll");
        EXPECT_EQ(std::vector<std::string>(), Told(Doctor(0), kBits, "advice"));
    }
}

TEST(DoctorTest, FindsAnotherDllAndADamagedOne) {
    const Registered dlls;
    const tests::OwnFolder own;
    const std::wstring damaged = (own.Path() / L"O_Tam_id.dll").native();
    std::ofstream(std::filesystem::path(damaged), std::ios::binary)
        << ReadFileBytes(ProgramFolder() + L"O_Tam_id.dll").substr(0, 200'000);
    for (const std::wstring& file : {std::wstring(L"C:\\windows\\system32\\ole32.dll"), damaged}) {
        const UsersModule user(file);
        const std::vector<std::string> told = Told(Doctor(1), kBits, "what");
        ASSERT_FALSE(told.empty());
        EXPECT_EQ("A " + Kind(kBits) + " client cannot make " + kModule +
                      ": the registered file is another DLL, or a damaged one.",
                  told[0]);
        const std::string said = InOneLine(RunBench({L"doctor"}).out);
        EXPECT_NE(std::string::npos, said.find("; another DLL, or a damaged one")) << said;
    }
}

constexpr const wchar_t* kTheirs = L"{22222222-0000-0000-0000-000000000000}";
constexpr const wchar_t* kSystemsDll = L"C:\\windows\\system32\\ole32.dll";

TEST(DoctorTest, AdvisesWhatHelpsWhereTheUsersFileIsAnotherDll) {
    const Registered dlls;
    const std::string dll = "\"" + Narrow(ProgramFolder()) + "O_Tam_id.dll\"";
    const UsersModule user(kSystemsDll);
    const std::vector<std::string> expected{"Run " + Regsvr32() + " /n /i:user " + dll + ".",
                                            "If that is not wanted, run " + Regsvr32() + " /n /i:user " +
                                                dll + ", then " + Regsvr32() + " /u /n /i:user " + dll + "."};
    EXPECT_EQ(expected, Told(Doctor(1), kBits, "advice"));
    RunRegsvr32({L"/n", L"/i:user"}, L"O_Tam_id.dll");
    RunRegsvr32({L"/u", L"/n", L"/i:user"}, L"O_Tam_id.dll");
    EXPECT_EQ(std::vector<std::string>(), Told(Doctor(0), kBits, "advice"));
}

TEST(DoctorTest, AdvisesWhatHelpsWhereTheUsersNameIsWrong) {
    const Registered dlls;
    const UsersText name(L"O_Tam_id.CDBAppObject", L"CLSID", kTheirs);
    const Json document = Doctor(1);
    EXPECT_EQ(std::vector<std::string>{"A " + Kind(kBits) + " client gets a class of another maker for " +
                                       kModule + "."},
              Told(document, kBits, "what"));
    EXPECT_EQ(std::vector<std::string>{"Run " + Regsvr32() + " /n /i:user \"" + Narrow(ProgramFolder()) +
                                       "O_Tam_id.dll\"."},
              Told(document, kBits, "advice"));
    RunRegsvr32({L"/n", L"/i:user"}, L"O_Tam_id.dll");
    EXPECT_EQ(std::vector<std::string>(), Told(Doctor(0), kBits, "advice"));
    RunRegsvr32({L"/u", L"/n", L"/i:user"}, L"O_Tam_id.dll");
    EXPECT_EQ(std::vector<std::string>(), Told(Doctor(0), kBits, "advice"));
}

TEST(DoctorTest, TakesAProgramForAServicesServer) {
    const Registered dlls;
    const UsersText name(L"UnitManager.Converter", L"CLSID", kTheirs);
    const std::wstring program = ProgramFolder() + L"tambench.exe";
    const UsersText server(L"CLSID\\" + std::wstring(kTheirs), L"LocalServer32",
                           L"\"" + program + L"\" /Automation");
    EXPECT_EQ(std::vector<std::string>(), Told(Doctor(0), kBits, "what"));
    const std::string said = InOneLine(RunBench({L"doctor"}).out);
    const auto place = said.find("user: " + Narrow(program) + "; a program of its own");
    ASSERT_NE(std::string::npos, place) << said;
    EXPECT_NE(std::string::npos, said.find("a program of its own", place + Narrow(program).size() + 40))
        << "clients of both kinds can use it: " << said;
}

TEST(DoctorTest, FindsEachFileThatHidesTheMachines) {
    const Registered dlls;
    const UsersModule module(L"C:\\Gone\\O_Tam_id.dll");
    const std::wstring manager = L"CLSID\\{46A878FC-BDB5-4C88-99CB-C68525CD151B}";
    const UsersText sameFile(manager, L"InprocServer32", L"C:\\Gone\\O_Tam_id.dll");
    const auto id = Doctor(1)["classes"][2]["clsid"].get<std::string>();
    const UsersText service(L"CLSID\\" + std::wstring(id.begin(), id.end()), L"InprocServer32", kSystemsDll);
    const Json document = Doctor(1);
    const std::vector<std::string> told = Told(document, kBits, "what");
    const std::vector<std::string> advice = Told(document, kBits, "advice");
    ASSERT_EQ(3U, told.size()) << document.dump();
    EXPECT_EQ("For this user C:\\Gone\\O_Tam_id.dll hides " + Narrow(ProgramFolder()) +
                  "O_Tam_id.dll, which the machine has for " + kComponentClasses + ".",
              told[1]);
    EXPECT_EQ("For this user C:\\windows\\system32\\ole32.dll hides " + Narrow(ProgramFolder()) +
                  "OrvHost.dll, which the machine has for UnitManager.Converter.",
              told[2]);
    EXPECT_EQ("If that is not wanted, uninstall the program that the file belongs to, or delete "
              "HKEY_CURRENT_USER\\Software\\Classes\\" +
                  std::string(kBits == 32 ? "Wow6432Node\\" : "") + "CLSID\\" + id + ".",
              advice[2]);
}

TEST(DoctorTest, NamesTheCopyThatHidesTheMachines) {
    const Registered dlls;
    const tests::OwnFolder own;
    const std::wstring copy = (own.Path() / L"O_Tam_id.dll").native();
    ASSERT_NE(FALSE, CopyFileW((ProgramFolder() + L"O_Tam_id.dll").c_str(), copy.c_str(), TRUE));
    {
        const UsersModule user(copy);
        EXPECT_EQ(std::vector<std::string>{"If that is not wanted, run " + Regsvr32() + " /u /n /i:user \"" +
                                           Narrow(copy) + "\"."},
                  Told(Doctor(0), kBits, "advice"));
    }
    const UsersModule sameFile(ProgramFolder() + L"..\\bin\\O_Tam_id.dll");
    EXPECT_EQ(std::vector<std::string>(), Told(Doctor(0), kBits, "advice"));
}

TEST(DoctorTest, FindsTheLibraryOfTheHostServicesGone) {
    const Registered dlls;
    const UsersLibrary user(kBits, L"C:\\Gone\\OrvHost.dll", kServices);
    const Json document = Doctor(1);
    EXPECT_EQ(std::vector<std::string>{"The registered file of the type library OrvHost is not there: "
                                       "calls from another apartment fail."},
              Told(document, kBits, "what"));
    EXPECT_EQ(std::vector<std::string>{"Run " + Regsvr32() + " /n /i:user \"" + Narrow(ProgramFolder()) +
                                       "OrvHost.dll\"."},
              Told(document, kBits, "advice"));
}

TEST(DoctorTest, TheHostServicesAloneNeedTheHostInterfacesToo) {
    RunRegsvr32({}, L"OrvHost.dll");
    {
        const UsersLibrary user(kBits, L"C:\\Gone\\OrvHost.dll\\2");
        const Json document = Doctor(1);
        const std::vector<std::string> told = Told(document, kBits, "what");
        ASSERT_EQ(2U, told.size()) << document.dump();
        EXPECT_EQ("The registered file of the type library OrvDBFaces is not there: calls from another "
                  "apartment fail.",
                  told[1]);
        EXPECT_EQ("Run " + Regsvr32() + " /n /i:user \"" + Narrow(ProgramFolder()) + "OrvHost.dll\".",
                  Told(document, kBits, "advice")[1]);
    }
    RunRegsvr32({L"/u"}, L"OrvHost.dll");
}

TEST(DoctorTest, A64BitClientTakesATypeLibraryFor32BitClients) {
    const Registered dlls;
    const std::string said = InOneLine(RunBench({L"doctor"}).out);
    const std::string place = "machine: " + Narrow(ProgramFolder()) + "OrvHost.dll\\2";
    const auto middle = said.find("What a 64-bit client finds");
    const std::string library32 = said.substr(0, middle);
    const std::string library64 = said.substr(middle, said.find("Findings (") - middle);
    if (kBits == 32) {
        EXPECT_NE(std::string::npos, library32.find("OrvDBFaces " + place + " "));
        EXPECT_NE(std::string::npos,
                  library64.find("OrvDBFaces " + place + "; registered for 32-bit clients"));
    } else {
        EXPECT_NE(std::string::npos, library32.find("OrvDBFaces not registered"));
        EXPECT_NE(std::string::npos, library64.find("OrvDBFaces " + place + " "));
    }
}

TEST(DoctorTest, TellsPeopleTheSame) {
    const Registered dlls;
    const Outcome run = RunBench({L"doctor"});
    EXPECT_EQ(0U, run.status) << run.err;
    const std::string said = InOneLine(run.out);
    for (const std::string& part :
         {"This is the " + Kind(kBits) + " bench on 64-bit Windows.",
          std::string("What a 32-bit client finds"), std::string("What a 64-bit client finds"),
          Narrow(ProgramFolder()) + "O_Tam_id.dll", std::string("not registered"),
          std::string("Findings (2)")}) {
        EXPECT_NE(std::string::npos, said.find(part)) << part << " is not in\n" << run.out;
    }
}

} // namespace

} // namespace benchtest
