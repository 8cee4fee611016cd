// A DLL beside the same DLL for the other kind of process, which shares names and
// type libraries with it: what one registers and removes is no harm to the other.

#include "com/RegistryView.h"
#include "tests/package/Dll.h"

#include <ostream>
#include <string>

namespace package {

namespace {

constexpr const wchar_t* kFaces = L"{23539202-4C9D-4BB1-86C0-E65E8B10D209}";

struct Case {
    const char* name;
    const DllFacts& (*facts)();
    Scope scope;
};

void PrintTo(const Case& entry, std::ostream* out) {
    *out << entry.name;
}

/// A file that exists and is none of the DLLs.
std::wstring OtherFile() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return path;
}

/// A type library as the DLL of the other kind has registered it alone.
void PlantLibrary(Scope scope, const std::wstring& id, const std::wstring& help, const std::wstring& file,
                  const std::wstring& place) {
    const std::wstring key = L"TypeLib\\" + id + L"\\1.0";
    Plant(scope, key, nullptr, help);
    Plant(scope, key + L"\\0\\" + com::kOtherKind, nullptr, place);
    Plant(scope, key + L"\\FLAGS", nullptr, L"0");
    Plant(scope, key + L"\\HELPDIR", nullptr, file.substr(0, file.find_last_of(L'\\') + 1));
}

class TwoKindsLibraryTest : public RegistryTest, public ::testing::WithParamInterface<Case> {
  protected:
    Scope InScope() const { return GetParam().scope; }
    const Dll& Subject() const {
        return GetParam().facts == &Component ? this->component : this->hostServices;
    }
    const Library& OwnLibrary() const { return Subject().Facts().library; }
    void PlantLibraries(const std::wstring& file) const {
        PlantLibrary(InScope(), Wide(OwnLibrary().id), Wide(OwnLibrary().help), file, file);
        PlantLibrary(InScope(), kFaces, L"OrvDBFaces 1.0: host interfaces of application objects", file,
                     file + L"\\2");
    }
    void ClearLibraries() const {
        for (const std::wstring& id : {Wide(OwnLibrary().id), std::wstring(kFaces)}) {
            Clear(InScope(), L"TypeLib\\" + id);
        }
        RegDeleteKeyW(Root(InScope()), L"Software\\Classes\\TypeLib"); // fails while others are in it
    }
    /// Where the other kind finds a library.
    std::string OtherPlace(const std::string& id) const {
        return Prefix(InScope()) + "TypeLib\\" + id + "\\1.0\\0\\" +
               (sizeof(void*) == 8 ? "win32" : "win64") + " : ";
    }
};

TEST_P(TwoKindsLibraryTest, StaysBesideOurs) {
    // Of the other kind or not, it is a DLL of this family.
    const Copy file(Subject());
    PlantLibraries(file.Path());
    const Lines planted = Snapshot();
    ASSERT_EQ(S_OK, Subject().Register(InScope()));
    const Lines after = Snapshot();
    const Lines complete = Registration(Subject().Facts(), InScope(), Subject().Path(), true);
    EXPECT_EQ("", Difference(Added(planted, complete), Added(planted, after)));
    EXPECT_EQ(planted.at(OtherPlace(OwnLibrary().id)), after.at(OtherPlace(OwnLibrary().id)));
    const std::string faces = OtherPlace("{23539202-4C9D-4BB1-86C0-E65E8B10D209}");
    EXPECT_EQ(planted.at(faces), after.at(faces));
    // Twice registered is once removed.
    ASSERT_EQ(S_OK, Subject().Register(InScope()));
    EXPECT_EQ(S_OK, Subject().Unregister(InScope()));
    EXPECT_EQ("", Difference(planted, Snapshot()));
    EXPECT_EQ(S_OK, Subject().Unregister(InScope()));
    EXPECT_EQ("", Difference(planted, Snapshot()));
    ClearLibraries();
}

TEST_P(TwoKindsLibraryTest, GoesWithOursWhenItsFileIsGone) {
    PlantLibraries(L"C:\\Gone\\Other.dll");
    ASSERT_EQ(S_OK, Subject().Register(InScope()));
    const Lines complete = Registration(Subject().Facts(), InScope(), Subject().Path(), true);
    EXPECT_EQ("", Difference(Added(before, complete), Added(before, Snapshot())));
    EXPECT_EQ(S_OK, Subject().Unregister(InScope()));
}

INSTANTIATE_TEST_SUITE_P(Dlls, TwoKindsLibraryTest,
                         ::testing::Values(Case{"ComponentForTheMachine", &Component, Scope::Machine},
                                           Case{"ComponentForTheUser", &Component, Scope::User},
                                           Case{"HostServicesForTheMachine", &HostServices, Scope::Machine}),
                         [](const auto& entry) { return std::string(entry.param.name); });

/// A class in the other kind's part of the machine's own registry, with a file.
class OtherClass {
  public:
    OtherClass(const std::wstring& id, const std::wstring& file, const wchar_t* server = L"InprocServer32")
        : key_(L"Software\\Classes\\CLSID\\" + id), server_(std::wstring(L"\\") + server) {
        HKEY key = nullptr;
        EXPECT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_LOCAL_MACHINE, (key_ + server_).c_str(), 0, nullptr, 0,
                                                 KEY_ALL_ACCESS | com::OtherView(), nullptr, &key, nullptr));
        EXPECT_EQ(ERROR_SUCCESS,
                  RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(file.c_str()),
                                 static_cast<DWORD>((file.size() + 1) * sizeof(wchar_t))));
        RegCloseKey(key);
    }
    ~OtherClass() {
        for (const std::wstring& key : {key_ + server_, key_}) {
            EXPECT_EQ(ERROR_SUCCESS, RegDeleteKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), com::OtherView(), 0));
        }
    }
    OtherClass(const OtherClass&) = delete;
    OtherClass& operator=(const OtherClass&) = delete;

    bool IsThere() const {
        HKEY key = nullptr;
        const bool isThere = RegOpenKeyExW(HKEY_LOCAL_MACHINE, key_.c_str(), 0, KEY_READ | com::OtherView(),
                                           &key) == ERROR_SUCCESS;
        RegCloseKey(key);
        return isThere;
    }

  private:
    std::wstring key_;
    std::wstring server_;
};

/// The class that a name stands for; empty without one.
std::string ClassOf(const std::wstring& name) {
    wchar_t id[64] = {};
    DWORD size = sizeof id;
    RegGetValueW(HKEY_LOCAL_MACHINE, (L"Software\\Classes\\" + name + L"\\CLSID").c_str(), nullptr,
                 RRF_RT_REG_SZ, nullptr, id, &size);
    const std::wstring text = id;
    return std::string(text.begin(), text.end());
}

class TwoKindsClassTest : public WholeRegistryTest {};

TEST_F(TwoKindsClassTest, KeepsTheNameThatItShares) {
    ASSERT_NE(0U, com::OtherView()) << "this system has one view only";
    const Class& module = Component().classes.front();
    const std::wstring name = Wide(module.progId);
    {
        const OtherClass other(Wide(module.id), OtherFile());
        ASSERT_EQ(S_OK, component.Register(Scope::Machine));
        EXPECT_EQ(module.id, ClassOf(name));
        EXPECT_EQ(S_OK, component.Unregister(Scope::Machine));
        EXPECT_EQ(module.id, ClassOf(name)) << "the other kind's clients have lost it";
        EXPECT_TRUE(other.IsThere());
        EXPECT_EQ("", ClassOf(L"O_Tam_id.TamObjectManager")) << "nobody has it any more";
    }
    EXPECT_EQ(S_OK, component.Unregister(Scope::Machine));
    EXPECT_EQ("", ClassOf(name));
}

TEST_F(TwoKindsClassTest, LosesTheNameWhenItsFileIsGone) {
    const Class& module = Component().classes.front();
    const OtherClass other(Wide(module.id), L"C:\\Gone\\O_Tam_id.dll");
    ASSERT_EQ(S_OK, component.Register(Scope::Machine));
    EXPECT_EQ(S_OK, component.Unregister(Scope::Machine));
    EXPECT_EQ("", ClassOf(Wide(module.progId)));
}

TEST_F(TwoKindsClassTest, OfAnotherMakerKeepsTheNameOfAService) {
    const std::wstring theirs = L"{22222222-0000-0000-0000-000000000000}";
    for (const wchar_t* const server : {L"InprocServer32", L"LocalServer32"}) {
        const std::wstring program = L"\"" + OtherFile() + L"\" /Automation";
        const OtherClass other(theirs, *server == L'I' ? OtherFile() : program, server);
        Plant(Scope::Machine, L"UnitManager.Converter\\CLSID", nullptr, theirs);
        ASSERT_EQ(S_OK, hostServices.Register(Scope::Machine));
        EXPECT_EQ("{22222222-0000-0000-0000-000000000000}", ClassOf(L"UnitManager.Converter"));
        EXPECT_EQ(S_OK, hostServices.Unregister(Scope::Machine));
        EXPECT_EQ("{22222222-0000-0000-0000-000000000000}", ClassOf(L"UnitManager.Converter"));
        Clear(Scope::Machine, L"UnitManager.Converter");
    }
}

} // namespace

} // namespace package
