// What others have registered under identifiers that the DLLs register too: a real
// host, another copy of the same DLL. It stays theirs while their files exist.

#include "com/RegistryView.h"
#include "tests/package/Dll.h"
#include "tests/support/ImportPatch.h"

#include <filesystem>
#include <fstream>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace package {

namespace {

constexpr const wchar_t* kDatabaseClass = L"CLSID\\{1D816F43-BC81-46F7-B17D-EE81B559E78F}";
constexpr const wchar_t* kDocumentFace = L"Interface\\{2690F178-80A7-47BE-ADCE-5BB1062776FF}";
constexpr const wchar_t* kViewFace = L"Interface\\{999A42D2-A854-4E5A-B5E6-95BFB89CC88E}";
constexpr const wchar_t* kTheirs = L"{22222222-0000-0000-0000-000000000000}";
constexpr const wchar_t* kHostLibrary = L"{23539202-4C9D-4BB1-86C0-E65E8B10D209}";
constexpr const wchar_t* kAutomationProxy = L"{00020424-0000-0000-C000-000000000046}";
constexpr const wchar_t* kGone = L"C:\\Gone\\Host.dll";

std::wstring FileThatExists() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return path;
}

std::string Narrow(const std::wstring& ascii) {
    return std::string(ascii.begin(), ascii.end());
}

/// Keys of another maker below a scope's classes; they go at the end.
class Others {
  public:
    explicit Others(Scope scope) : scope_(scope) {}
    ~Others() {
        for (const std::wstring& key : keys_) {
            Clear(scope_, key);
        }
        for (const wchar_t* const parent : {L"CLSID", L"Interface", L"TypeLib"}) {
            // Fails while others are in it.
            RegDeleteKeyW(Root(scope_), (L"Software\\Classes\\" + std::wstring(parent)).c_str());
        }
    }
    Others(const Others&) = delete;
    Others& operator=(const Others&) = delete;

    void Class(const std::wstring& key, const wchar_t* kind, const std::wstring& server) {
        Plant(scope_, key + L"\\" + kind, nullptr, server);
        keys_.insert(key);
    }
    void Name(const std::wstring& progId) {
        Plant(scope_, progId + L"\\CLSID", nullptr, kTheirs);
        keys_.insert(progId);
    }
    void Face(const wchar_t* key, const wchar_t* proxy, const wchar_t* library) {
        Plant(scope_, key, nullptr, L"ITheirs");
        Plant(scope_, std::wstring(key) + L"\\ProxyStubClsid32", nullptr, proxy);
        if (library != nullptr) {
            Plant(scope_, std::wstring(key) + L"\\TypeLib", nullptr, library);
            Plant(scope_, std::wstring(key) + L"\\TypeLib", L"Version", L"2.5");
        }
        keys_.emplace(key);
    }
    void TypeLibrary(const std::wstring& file, const wchar_t* id = kTheirs) {
        const std::wstring key = L"TypeLib\\" + std::wstring(id);
        Plant(scope_, key + L"\\2.5\\9\\win32", nullptr, file);
        keys_.insert(key);
    }

  private:
    Scope scope_;
    std::set<std::wstring> keys_;
};

/// Where the others are, and where the DLL is registered.
struct Case {
    const char* name;
    Scope theirs;
    Scope ours;
};

void PrintTo(const Case& entry, std::ostream* out) {
    *out << entry.name;
}

class RegistrationOthersTest : public RegistryTest, public ::testing::WithParamInterface<Case> {
  protected:
    void TearDown() override {
        others_.reset(); // before what is left is looked at
        RegistryTest::TearDown();
    }
    Others& Theirs() { return *others_; }

    /// Registered and unregistered, nothing at a key and below it differs from what was
    /// planted, and the registration's own scope has none.
    void ExpectLeft(const Dll& dll, const std::vector<std::wstring>& keys) const {
        const Lines planted = Snapshot();
        ASSERT_EQ(S_OK, dll.Register(GetParam().ours));
        const Lines after = Snapshot();
        for (const std::wstring& key : keys) {
            const Lines added = Added(planted, after);
            for (const auto& [line, text] : added) {
                EXPECT_EQ(std::string::npos, line.find(Narrow(key))) << line << " " << text;
            }
            for (const auto& [line, text] : Added(after, planted)) {
                EXPECT_EQ(std::string::npos, line.find(Narrow(key))) << "gone: " << line << " " << text;
            }
        }
        EXPECT_EQ(S_OK, dll.Unregister(GetParam().ours));
        EXPECT_EQ("", Difference(planted, Snapshot()));
    }
    /// Registered, the DLL has this text at a key.
    void ExpectTaken(const Dll& dll, const std::wstring& key, const std::string& text) const {
        ASSERT_EQ(S_OK, dll.Register(GetParam().ours));
        EXPECT_EQ("1 " + text, Snapshot().at(Prefix(GetParam().ours) + Narrow(key) + " : "));
        EXPECT_EQ(S_OK, dll.Unregister(GetParam().ours));
    }

  private:
    std::optional<Others> others_{GetParam().theirs};
};

TEST_P(RegistrationOthersTest, KeepTheClassOfAServiceThatADllHas) {
    Theirs().Class(kDatabaseClass, L"InprocServer32", FileThatExists());
    ExpectLeft(hostServices, {kDatabaseClass, L"OrvHost.DatabaseLocation"});
}

TEST_P(RegistrationOthersTest, KeepTheClassOfAServiceWhereOursHasLeftATrace) {
    Theirs().Class(kDatabaseClass, L"InprocServer32", FileThatExists());
    Plant(GetParam().theirs, kDatabaseClass + std::wstring(L"\\TypeLib"), nullptr,
          L"{03814B01-E40D-4C62-B843-0733B9AFEBC8}"); // this project's library
    ExpectLeft(hostServices, {kDatabaseClass});
}

TEST_P(RegistrationOthersTest, KeepTheClassOfAServiceInQuotes) {
    Theirs().Class(kDatabaseClass, L"InprocServer32", L"\"" + FileThatExists() + L"\"");
    ExpectLeft(hostServices, {kDatabaseClass});
}

TEST_P(RegistrationOthersTest, KeepTheClassOfAServiceThatAProgramHasBesideAGoneDll) {
    Theirs().Class(kDatabaseClass, L"InprocServer32", kGone);
    Theirs().Class(kDatabaseClass, L"LocalServer32", FileThatExists());
    ExpectLeft(hostServices, {kDatabaseClass});
}

const support::ImportPatch* attributesPatch; // NOLINT: an import has no place for more
DWORD WINAPI AttributesWithoutNetwork(LPCWSTR path) {
    if (std::wstring_view(path).starts_with(L"\\\\server\\")) {
        SetLastError(ERROR_BAD_NETPATH);
        return INVALID_FILE_ATTRIBUTES;
    }
    return attributesPatch->Original<decltype(&GetFileAttributesW)>()(path);
}

TEST_P(RegistrationOthersTest, KeepTheClassOfAServiceOnAShareThatDoesNotAnswer) {
    const support::ImportPatch patch(hostServices.Module(), "GetFileAttributesW",
                                     reinterpret_cast<const void*>(&AttributesWithoutNetwork));
    ASSERT_TRUE(patch.IsImported());
    attributesPatch = &patch;
    Theirs().Class(kDatabaseClass, L"InprocServer32", L"\\\\server\\share\\Host.dll");
    ExpectLeft(hostServices, {kDatabaseClass});
    attributesPatch = nullptr;
}

TEST_P(RegistrationOthersTest, KeepANameThatWasNeverOurs) {
    Theirs().Class(std::wstring(L"CLSID\\") + kTheirs, L"InprocServer32", kGone);
    Theirs().Name(L"UnitManager.Converter");
    const Lines planted = Snapshot();
    EXPECT_EQ(S_OK, hostServices.Unregister(GetParam().ours));
    EXPECT_EQ("", Difference(planted, Snapshot()));
}

TEST_P(RegistrationOthersTest, KeepTheClassOfAServiceThatASystemDllHas) {
    Theirs().Class(kDatabaseClass, L"InprocServer32", L"ole32.dll");
    ExpectLeft(hostServices, {kDatabaseClass});
}

TEST_P(RegistrationOthersTest, KeepTheClassOfAServiceThatAProgramHas) {
    for (const std::wstring& command : {FileThatExists(), FileThatExists() + L" /Automation",
                                        L"\"" + FileThatExists() + L"\" /Automation"}) {
        Theirs().Class(kDatabaseClass, L"LocalServer32", command);
        ExpectLeft(hostServices, {kDatabaseClass});
        Clear(GetParam().theirs, kDatabaseClass);
    }
    Plant(GetParam().theirs, kDatabaseClass, nullptr, L"");
}

TEST_P(RegistrationOthersTest, KeepTheNameOfAServiceThatASystemDllHas) {
    Theirs().Class(std::wstring(L"CLSID\\") + kTheirs, L"InprocServer32", L"ole32.dll");
    Theirs().Name(L"ORV.QB.Interop.Compilers.CompilersInterop");
    ExpectLeft(hostServices, {L"ORV.QB.Interop.Compilers.CompilersInterop"});
}

TEST_P(RegistrationOthersTest, KeepTheInterfacesOfTheirLibrary) {
    Theirs().TypeLibrary(FileThatExists() + L"\\3");
    Theirs().Face(kDocumentFace, kAutomationProxy, kTheirs);
    Theirs().Face(kViewFace, kAutomationProxy, kTheirs);
    ExpectLeft(component, {kDocumentFace, kViewFace});
    ExpectLeft(hostServices, {kDocumentFace, kViewFace});
}

TEST_P(RegistrationOthersTest, KeepTheInterfacesOfTheirVersionOfTheLibrary) {
    const std::wstring library = FileThatExists() + L"\\3";
    Theirs().TypeLibrary(library, kHostLibrary);
    Theirs().Face(kDocumentFace, kAutomationProxy, kHostLibrary);
    Theirs().Face(kViewFace, kAutomationProxy, kHostLibrary);
    ExpectLeft(component, {kDocumentFace, kViewFace});
    ExpectLeft(hostServices, {kDocumentFace, kViewFace});
}

TEST_P(RegistrationOthersTest, KeepTheInterfacesOfTheirProxy) {
    Theirs().Class(std::wstring(L"CLSID\\") + kTheirs, L"InprocServer32", FileThatExists());
    Theirs().Face(kViewFace, kTheirs, nullptr);
    ExpectLeft(component, {kViewFace});
    ExpectLeft(hostServices, {kViewFace});
}

TEST_P(RegistrationOthersTest, LoseWhatAGoneFileHad) {
    {
        Others gone(GetParam().theirs);
        gone.Class(kDatabaseClass, L"InprocServer32", kGone);
        ExpectTaken(hostServices, kDatabaseClass, "Database location");
        Plant(GetParam().theirs, kDatabaseClass, nullptr, L""); // registering for the same scope took it
    }
    Others gone(GetParam().theirs);
    gone.TypeLibrary(kGone);
    gone.Face(kViewFace, kTheirs, kTheirs);
    ExpectTaken(component, kViewFace, "IHostView");
    gone.TypeLibrary(kGone, kHostLibrary);
    gone.Face(kViewFace, kAutomationProxy, kHostLibrary);
    ExpectTaken(component, kViewFace, "IHostView");
    Plant(GetParam().theirs, kViewFace, nullptr, L"");
}

INSTANTIATE_TEST_SUITE_P(Scopes, RegistrationOthersTest,
                         ::testing::Values(Case{"ForTheMachine", Scope::Machine, Scope::Machine},
                                           Case{"ForTheUser", Scope::User, Scope::User},
                                           Case{"ForTheUserBesideTheMachine", Scope::Machine, Scope::User}),
                         [](const auto& entry) { return std::string(entry.param.name); });

using RegistrationOthersMachineTest = RegistryTest;

TEST_F(RegistrationOthersMachineTest, LeavesANameToTheMachinesOtherMaker) {
    Others theirs(Scope::Machine);
    theirs.Class(std::wstring(L"CLSID\\") + kTheirs, L"InprocServer32", FileThatExists());
    theirs.Name(L"UnitManager.Converter");
    ASSERT_EQ(S_OK, hostServices.Register(Scope::User));
    const Lines after = Snapshot(Scope::User);
    EXPECT_FALSE(after.contains("HKCU UnitManager.Converter"));
    EXPECT_TRUE(after.contains("HKCU OrvHost.Project"));
    EXPECT_EQ(S_OK, hostServices.Unregister(Scope::User));
}

class RegistrationOthersCopyTest : public RegistryTest, public ::testing::WithParamInterface<Scope> {};

TEST_P(RegistrationOthersCopyTest, StaysRegisteredWhenTheOlderIsRemoved) {
    for (const Dll* const older : {&component, &hostServices}) {
        const Copy file(*older);
        const Dll newer(older->Facts(), file.Folder());
        ASSERT_EQ(S_OK, older->Register(GetParam()));
        ASSERT_EQ(S_OK, newer.Register(GetParam()));
        EXPECT_EQ(S_OK, older->Unregister(GetParam()));
        const Lines complete = Registration(newer.Facts(), GetParam(), newer.Path(), true);
        EXPECT_EQ("", Difference(Added(before, complete), Added(before, Snapshot())));
        EXPECT_EQ(S_OK, newer.Unregister(GetParam()));
        EXPECT_EQ("", Difference(before, Snapshot()));
        EXPECT_EQ(S_OK, newer.CanUnloadNow());
    }
}

TEST_P(RegistrationOthersCopyTest, HasNothingWhenItsFileWasCutOff) {
    for (const Dll* const older : {&component, &hostServices}) {
        for (const char* const content : {"", "M", "no program"}) {
            const Copy file(*older);
            {
                const Dll newer(older->Facts(), file.Folder());
                ASSERT_EQ(S_OK, newer.Register(GetParam()));
            }
            std::ofstream(std::filesystem::path(file.Path())) << content;
            EXPECT_EQ(S_OK, older->Unregister(GetParam()));
            EXPECT_EQ("", Difference(before, Snapshot())) << content;
        }
    }
}

TEST_P(RegistrationOthersCopyTest, IsNoOtherUnderAnotherSpellingOfItsPath) {
    for (const Dll* const dll : {&component, &hostServices}) {
        ASSERT_EQ(S_OK, dll->Register(GetParam()));
        // An installer may have registered it by a short path, or through a share.
        const std::wstring spelling = DllFolder() + L"..\\bin\\" + dll->Facts().file;
        for (const Class& entry : dll->Facts().classes) {
            Plant(GetParam(), L"CLSID\\" + Wide(entry.id) + L"\\InprocServer32", nullptr, spelling);
        }
        Plant(GetParam(), L"TypeLib\\" + Wide(dll->Facts().library.id) + L"\\1.0\\0\\" + com::kThisKind,
              nullptr, spelling);
        EXPECT_EQ(S_OK, dll->Unregister(GetParam()));
        EXPECT_EQ("", Difference(before, Snapshot()));
    }
}

INSTANTIATE_TEST_SUITE_P(Scopes, RegistrationOthersCopyTest, ::testing::Values(Scope::Machine, Scope::User),
                         [](const auto& scope) { return scope.param == Scope::User ? "User" : "Machine"; });

} // namespace

} // namespace package
