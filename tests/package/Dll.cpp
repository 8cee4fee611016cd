#include "tests/package/Dll.h"

#include "tests/Places.h"
#include "tests/Program.h"

#include <utility>

namespace package {

namespace {

constexpr const wchar_t* kClasses = L"Software\\Classes\\";
/// Below the user's registry.
constexpr const wchar_t* kSmallMachine = L"Software\\O_Tam_id package tests";
constexpr DWORD kMinute = 60'000;

template <class F>
F Export(HMODULE module, const char* name) {
    return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

} // namespace

std::wstring Wide(const std::string& ascii) {
    return std::wstring(ascii.begin(), ascii.end());
}

std::wstring DllFolder() {
    return (tests::BinFolder() / L"").native();
}

Dll::Dll(const DllFacts& facts, const std::wstring& folder)
    : facts_(facts), path_(folder + facts.file), module_(LoadLibraryW(path_.c_str())) {
    EXPECT_NE(nullptr, module_) << "the DLL does not load, error " << GetLastError();
}

HRESULT Dll::Register(Scope scope) const {
    using Function = HRESULT(STDAPICALLTYPE*)();
    return scope == Scope::Machine ? Export<Function>(module_, "DllRegisterServer")()
                                   : Install(TRUE, L"user");
}

HRESULT Dll::Unregister(Scope scope) const {
    using Function = HRESULT(STDAPICALLTYPE*)();
    return scope == Scope::Machine ? Export<Function>(module_, "DllUnregisterServer")()
                                   : Install(FALSE, L"user");
}

HRESULT Dll::Install(BOOL install, const wchar_t* commandLine) const {
    using Function = HRESULT(STDAPICALLTYPE*)(BOOL, PCWSTR);
    return Export<Function>(module_, "DllInstall")(install, commandLine);
}

HRESULT Dll::ClassObject(REFCLSID clsid, REFIID iid, void** out) const {
    using Function = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    return Export<Function>(module_, "DllGetClassObject")(clsid, iid, out);
}

HRESULT Dll::CanUnloadNow() const {
    using Function = HRESULT(STDAPICALLTYPE*)();
    return Export<Function>(module_, "DllCanUnloadNow")();
}

DWORD Regsvr32(const std::wstring& options, const std::wstring& path) {
    std::wstring commandLine = L"regsvr32.exe /s " + options + L" \"" + path + L"\"";
    return tests::Program(std::move(commandLine)).Wait(kMinute);
}

Copy::Copy(const Dll& original) : file_(original.Facts().file) {
    EXPECT_NE(FALSE, CopyFileW(original.Path().c_str(), Path().c_str(), TRUE));
}

SmallMachine::SmallMachine() {
    EXPECT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_CURRENT_USER, kSmallMachine, 0, nullptr, 0, KEY_ALL_ACCESS,
                                             nullptr, &key_, nullptr));
    EXPECT_EQ(ERROR_SUCCESS, RegOverridePredefKey(HKEY_LOCAL_MACHINE, key_));
    Plant(Scope::Machine, L"CLSID\\{11111111-0000-0000-0000-000000000000}", nullptr, L"Other");
}

SmallMachine::~SmallMachine() {
    EXPECT_EQ(ERROR_SUCCESS, RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr));
    RegCloseKey(key_);
    EXPECT_EQ(ERROR_SUCCESS, RegDeleteTreeW(HKEY_CURRENT_USER, kSmallMachine));
}

void RegistryTest::SetUp() {
    machine_.emplace();
    before = Snapshot();
}

void RegistryTest::TearDown() {
    EXPECT_EQ("", Difference(before, Snapshot()));
    EXPECT_EQ(S_OK, component.CanUnloadNow());
    EXPECT_EQ(S_OK, hostServices.CanUnloadNow());
    machine_.reset();
}

Lines WholeRegistry::AsLines() const {
    Lines lines = LinesOf(Scope::Machine, machine);
    lines.merge(LinesOf(Scope::User, user));
    return lines;
}

const WholeRegistry& WholeRegistry::Before() {
    static const WholeRegistry before = [] {
        // A run that was cut off may have left a registration.
        const Dll component(Component());
        const Dll hostServices(HostServices());
        for (const Scope scope : {Scope::Machine, Scope::User}) {
            EXPECT_EQ(S_OK, component.Unregister(scope));
            EXPECT_EQ(S_OK, hostServices.Unregister(scope));
        }
        RegDeleteTreeW(HKEY_CURRENT_USER, kSmallMachine);
        return WholeRegistry();
    }();
    return before;
}

void ExpectUnchanged() {
    const WholeRegistry now;
    EXPECT_TRUE(now == WholeRegistry::Before())
        << Difference(WholeRegistry::Before().AsLines(), now.AsLines());
}

void WholeRegistryTest::TearDown() {
    ExpectUnchanged();
    EXPECT_EQ(S_OK, component.CanUnloadNow());
    EXPECT_EQ(S_OK, hostServices.CanUnloadNow());
}

namespace {

/// Around all tests: those that work on a part of the registry have not changed
/// the rest either.
class Around : public ::testing::Environment {
  public:
    void SetUp() override { WholeRegistry::Before(); }
    void TearDown() override { ExpectUnchanged(); }
};

const auto* const kAround = ::testing::AddGlobalTestEnvironment(new Around);

} // namespace

void Plant(Scope scope, const std::wstring& key, const wchar_t* value, const std::wstring& text) {
    EXPECT_EQ(ERROR_SUCCESS,
              RegSetKeyValueW(Root(scope), (kClasses + key).c_str(), value, REG_SZ, text.c_str(),
                              static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))));
}

void Clear(Scope scope, const std::wstring& key) {
    EXPECT_EQ(ERROR_SUCCESS, RegDeleteTreeW(Root(scope), (kClasses + key).c_str()));
}

void PlantOlderInstall(const DllFacts& dll, Scope scope) {
    for (const Class& entry : dll.classes) {
        const std::wstring key = L"CLSID\\" + Wide(entry.id);
        Plant(scope, key, nullptr, L"A class of long ago");
        Plant(scope, key, L"AppID", L"{00000000-1111-2222-3333-444444444444}");
        Plant(scope, key + L"\\InprocServer32", nullptr, L"C:\\Old\\" + std::wstring(dll.file));
        Plant(scope, key + L"\\InprocServer32", L"ThreadingModel", L"Both");
        Plant(scope, key + L"\\LocalServer32", nullptr, L"C:\\Old\\Server.exe");
        Plant(scope, key + L"\\VersionIndependentProgID", nullptr, Wide(entry.progId));
        Plant(scope, Wide(entry.progId), L"EditFlags", L"1");
        Plant(scope, Wide(entry.progId) + L"\\CurVer", nullptr, Wide(entry.progId) + L".1");
    }
    const std::wstring library = L"TypeLib\\" + Wide(dll.library.id);
    Plant(scope, library + L"\\1.0\\0\\win32", nullptr, L"C:\\Old\\" + std::wstring(dll.file));
    Plant(scope, library + L"\\0.9\\9\\win32", nullptr, L"C:\\Older\\" + std::wstring(dll.file));
    const DWORD number = 4711;
    EXPECT_EQ(ERROR_SUCCESS, RegSetKeyValueW(Root(scope), (kClasses + library + L"\\1.0\\FLAGS").c_str(),
                                             L"Number", REG_DWORD, &number, sizeof number));
    const std::wstring face = L"Interface\\" + Wide(dll.library.interfaces.front().id);
    Plant(scope, face, nullptr, L"IOfLongAgo");
    Plant(scope, face + L"\\NumMethods", nullptr, L"12");
}

} // namespace package
