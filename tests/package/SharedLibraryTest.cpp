// The library of the host interfaces, which both DLLs carry and each copy of them. The
// registry has it with one file; whoever is removed, it must stay with one that is left.

#include "com/Conversion.h"
#include "com/Ref.h"
#include "com/RegistryView.h"
#include "tests/package/Apartment.h"
#include "tests/package/Dll.h"

#include <windows.h>

#include <sddl.h>

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <string>
#include <thread>
#include <utility>

namespace package {

namespace {

constexpr const wchar_t* kFaces = L"TypeLib\\{23539202-4C9D-4BB1-86C0-E65E8B10D209}";

std::wstring FacesFile() {
    return std::wstring(kFaces) + L"\\1.0\\0\\" + com::kThisKind;
}

/// A file that exists and carries no type library.
std::wstring FileWithoutLibrary() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return path;
}

/// The library by itself, as another maker may have it.
std::wstring LibraryFile() {
    return DllFolder() + L"..\\idl\\OrvDBFaces.tlb";
}

class SharedLibraryTest : public RegistryTest, public ::testing::WithParamInterface<Scope> {
  protected:
    void Register(const Dll& dll) const { ASSERT_EQ(S_OK, dll.Register(GetParam())); }
    void Unregister(const Dll& dll) const { EXPECT_EQ(S_OK, dll.Unregister(GetParam())); }
    Lines Of(const Dll& dll, bool withFaces) const {
        return Registration(dll.Facts(), GetParam(), dll.Path(), withFaces);
    }
    /// The registry has these registrations more than before and no other.
    void ExpectAdded(std::initializer_list<Lines> registrations) const {
        Lines all;
        for (Lines lines : registrations) {
            all.merge(lines);
        }
        EXPECT_EQ("", Difference(Added(before, all), Added(before, Snapshot())));
    }
    void ClearFaces() const {
        Clear(GetParam(), kFaces);
        RegDeleteKeyW(Root(GetParam()), L"Software\\Classes\\TypeLib"); // fails while others are in it
    }
    static HKEY Open(const std::wstring& key) {
        HKEY opened = nullptr;
        EXPECT_EQ(ERROR_SUCCESS, RegCreateKeyExW(Root(GetParam()), (L"Software\\Classes\\" + key).c_str(), 0,
                                                 nullptr, 0, KEY_ALL_ACCESS, nullptr, &opened, nullptr));
        return opened;
    }
    /// A key without a value.
    static void PlantKey(const std::wstring& key) { RegCloseKey(Open(key)); }
    /// A text with the names of variables in it.
    static void PlantExpanding(const std::wstring& key, const std::wstring& text) {
        const HKEY opened = Open(key);
        EXPECT_EQ(ERROR_SUCCESS, RegSetValueExW(opened, nullptr, 0, REG_EXPAND_SZ,
                                                reinterpret_cast<const BYTE*>(text.c_str()),
                                                static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))));
        RegCloseKey(opened);
    }
    /// When a key was last written.
    static ULONGLONG TimeOf(const std::wstring& key) {
        const HKEY opened = Open(key);
        FILETIME time{};
        EXPECT_EQ(ERROR_SUCCESS, RegQueryInfoKeyW(opened, nullptr, nullptr, nullptr, nullptr, nullptr,
                                                  nullptr, nullptr, nullptr, nullptr, nullptr, &time));
        RegCloseKey(opened);
        return ULARGE_INTEGER{{time.dwLowDateTime, time.dwHighDateTime}}.QuadPart;
    }
    /// In either order.
    void ForBothOrders(const std::function<void(const Dll&, const Dll&)>& check) const {
        check(component, hostServices);
        check(hostServices, component);
    }
};

TEST_P(SharedLibraryTest, IsTheLastDlls) {
    ForBothOrders([this](const Dll& first, const Dll& second) {
        Register(first);
        ExpectAdded({Of(first, true)});
        Register(second);
        ExpectAdded({Of(first, false), Of(second, true)});
        Register(first);
        ExpectAdded({Of(first, true), Of(second, false)});
        Unregister(second);
        Unregister(first);
        ExpectAdded({});
    });
}

TEST_P(SharedLibraryTest, GoesToTheDllThatIsLeft) {
    ForBothOrders([this](const Dll& first, const Dll& second) {
        Register(first);
        Register(second);
        Unregister(second);
        ExpectAdded({Of(first, true)});
        Unregister(second);
        ExpectAdded({Of(first, true)});
        Unregister(first);
        ExpectAdded({});
    });
}

TEST_P(SharedLibraryTest, StaysWithItsDllWhenTheOtherGoes) {
    ForBothOrders([this](const Dll& first, const Dll& second) {
        Register(first);
        Register(second);
        Unregister(first);
        ExpectAdded({Of(second, true)});
        Unregister(second);
        ExpectAdded({});
    });
}

TEST_P(SharedLibraryTest, IsANewerCopysOfEitherDll) {
    ForBothOrders([this](const Dll& first, const Dll& second) {
        const Copy firstFile(first);
        const Copy secondFile(second);
        const Dll newFirst(first.Facts(), firstFile.Folder());
        const Dll newSecond(second.Facts(), secondFile.Folder());
        Register(first);
        Register(second);
        Register(newFirst);
        ExpectAdded({Of(newFirst, true), Of(second, false)});
        Register(newSecond);
        ExpectAdded({Of(newFirst, false), Of(newSecond, true)});
        Unregister(first);
        Unregister(second);
        ExpectAdded({Of(newFirst, false), Of(newSecond, true)});
        Unregister(newSecond);
        ExpectAdded({Of(newFirst, true)});
        Unregister(newFirst);
        ExpectAdded({});
    });
}

// As versions left it that let the first DLL keep the library.
TEST_P(SharedLibraryTest, GoesToTheCopyThatTookAllElse) {
    ForBothOrders([this](const Dll& older, const Dll&) {
        const Copy file(older);
        const Dll newer(older.Facts(), file.Folder());
        Register(newer);
        Plant(GetParam(), FacesFile(), nullptr, older.Path() + L"\\2");
        Plant(GetParam(), std::wstring(kFaces) + L"\\1.0\\HELPDIR", nullptr, DllFolder());
        Unregister(older);
        ExpectAdded({Of(newer, true)});
        Unregister(newer);
        ExpectAdded({});
    });
}

TEST_P(SharedLibraryTest, OfAGoneFileGoesToTheDllThatIsLeft) {
    ForBothOrders([this](const Dll& first, const Dll& second) {
        Register(first);
        Register(second);
        Plant(GetParam(), FacesFile(), nullptr, L"C:\\Gone\\OrvHost.dll\\2");
        Unregister(second);
        ExpectAdded({Of(first, true)});
        Unregister(first);
        ExpectAdded({});
    });
}

TEST_P(SharedLibraryTest, GoesToNoDllWhoseFileIsGone) {
    ForBothOrders([this](const Dll& first, const Dll& second) {
        {
            const Copy file(first);
            const Dll gone(first.Facts(), file.Folder());
            Register(gone);
        }
        Register(second);
        Unregister(second);
        const Lines after = Added(before, Snapshot());
        const std::string prefix = Prefix(GetParam());
        EXPECT_FALSE(after.contains(prefix + "TypeLib\\{23539202-4C9D-4BB1-86C0-E65E8B10D209}"));
        EXPECT_FALSE(after.contains(prefix + "Interface\\{2690F178-80A7-47BE-ADCE-5BB1062776FF}"));
        Unregister(first);
        ExpectAdded({});
    });
}

TEST_P(SharedLibraryTest, GoesToNoFileThatHasNone) {
    ForBothOrders([this](const Dll& first, const Dll& second) {
        Register(first);
        Register(second);
        Plant(GetParam(), L"TypeLib\\" + Wide(first.Facts().library.id) + L"\\1.0\\0\\" + com::kThisKind,
              nullptr, FileWithoutLibrary());
        Unregister(second);
        EXPECT_FALSE(Added(before, Snapshot())
                         .contains(Prefix(GetParam()) + "TypeLib\\{23539202-4C9D-4BB1-86C0-E65E8B10D209}"));
        Register(first);
        Unregister(first);
        ExpectAdded({});
    });
}

TEST_P(SharedLibraryTest, StaysAnotherMakers) {
    for (const Dll* const dll : {&component, &hostServices}) {
        Plant(GetParam(), FacesFile(), nullptr, LibraryFile());
        const Lines planted = Snapshot();
        Register(*dll);
        EXPECT_EQ("", Difference(Added(planted, Of(*dll, false)), Added(planted, Snapshot())));
        Unregister(*dll);
        EXPECT_EQ("", Difference(planted, Snapshot()));
        ClearFaces();
    }
}

TEST_P(SharedLibraryTest, IsNobodysWhereTheFileDoesNotHoldIt) {
    const Copy damaged(hostServices);
    { const std::ofstream empty{std::filesystem::path(damaged.Path())}; }
    const std::wstring places[] = {DllFolder() + L"O_Tam_id.Classes.manifest", // no library at all
                                   DllFolder(),                                // a folder
                                   DllFolder() + L"..\\idl\\OrvHost.tlb",      // another library
                                   DllFolder() + L"O_Tam_id.dll",
                                   DllFolder() + L"OrvHost.dll\\3", // no such resource
                                   damaged.Path() + L"\\2"};
    for (const Dll* const dll : {&component, &hostServices}) {
        for (const std::wstring& place : places) {
            Plant(GetParam(), FacesFile(), nullptr, place);
            Register(*dll);
            ExpectAdded({Of(*dll, true)});
            Plant(GetParam(), FacesFile(), nullptr, place);
            Unregister(*dll);
            ExpectAdded({});
        }
    }
}

TEST_P(SharedLibraryTest, LeavesOtherVersionsAndLanguagesToTheirMakers) {
    for (const wchar_t* const other : {L"\\1.1\\0\\win32", L"\\1.0\\9\\win32", L"\\2.0\\0\\win64"}) {
        Plant(GetParam(), kFaces + std::wstring(other), nullptr, LibraryFile());
        const std::wstring bare = kFaces + std::wstring(L"\\3.0\\HELPDIR");
        PlantKey(bare);
        const Lines planted = Snapshot();
        const ULONGLONG time = TimeOf(bare);
        for (const Dll* const dll : {&component, &hostServices}) {
            Register(*dll);
            EXPECT_EQ(Lines(), Added(Snapshot(), planted)) << "something of theirs is gone";
        }
        EXPECT_EQ(time, TimeOf(bare)) << "it was deleted and written again";
        const std::string place = Prefix(GetParam()) +
                                  "TypeLib\\{23539202-4C9D-4BB1-86C0-E65E8B10D209}\\1.0\\0\\" +
                                  (sizeof(void*) == 8 ? "win64" : "win32") + " : ";
        const std::wstring own = hostServices.Path() + L"\\2";
        EXPECT_EQ("1 " + std::string(own.begin(), own.end()), Snapshot().at(place));
        Unregister(component);
        Unregister(hostServices);
        EXPECT_EQ("", Difference(planted, Snapshot()));
        ClearFaces();
    }
}

TEST_P(SharedLibraryTest, ChangesNothingOfAVersionThatAnotherMakerHas) {
    const std::wstring version = std::wstring(kFaces) + L"\\1.0";
    for (const bool saysMore : {true, false}) {
        Plant(GetParam(), version + L"\\0\\" + com::kOtherKind, nullptr, LibraryFile());
        if (saysMore) {
            SetEnvironmentVariableW(L"TamTheirs", (DllFolder() + L"..").c_str());
            PlantExpanding(version + L"\\0\\" + com::kOtherKind, L"%TamTheirs%\\idl\\OrvDBFaces.tlb");
            Plant(GetParam(), version, nullptr, L"Another maker's library");
            Plant(GetParam(), version, L"PrimaryInteropAssemblyName", L"Another maker's");
            Plant(GetParam(), version + L"\\0\\win16", nullptr, L"C:\\Other\\faces.olb");
            Plant(GetParam(), version + L"\\FLAGS", nullptr, L"4");
            Plant(GetParam(), version + L"\\HELPDIR", nullptr, L"C:\\Other\\help");
        }
        const Lines planted = Snapshot();
        for (const Dll* const dll : {&component, &hostServices}) {
            Register(*dll);
            EXPECT_EQ(Lines(), Added(Snapshot(), planted)) << "something of theirs is gone";
            Unregister(*dll);
            EXPECT_EQ("", Difference(planted, Snapshot()));
        }
        ClearFaces();
    }
    SetEnvironmentVariableW(L"TamTheirs", nullptr);
}

TEST_P(SharedLibraryTest, IsNotOfAMakerWhoseFileIsGone) {
    for (const Dll* const dll : {&component, &hostServices}) {
        Plant(GetParam(), std::wstring(kFaces) + L"\\1.0\\9\\win32", nullptr, L"C:\\Gone\\faces.tlb");
        const Lines planted = Snapshot();
        Register(*dll);
        EXPECT_EQ("", Difference(Added(planted, Of(*dll, true)), Added(planted, Snapshot())));
        Unregister(*dll);
        ExpectAdded({});
    }
}

INSTANTIATE_TEST_SUITE_P(Scopes, SharedLibraryTest, ::testing::Values(Scope::Machine, Scope::User),
                         [](const auto& scope) { return scope.param == Scope::User ? "User" : "Machine"; });

/// Keeps others from changing the registry until it is told to end.
class Changer {
  public:
    /// Others have the rights to the mutex that `rights` says, in the system's words.
    explicit Changer(const wchar_t* rights) : worker_([=, this] { Hold(rights); }) {
        WaitForSingleObject(holds_, INFINITE);
    }
    ~Changer() {
        worker_.join();
        CloseHandle(holds_);
    }
    Changer(const Changer&) = delete;
    Changer& operator=(const Changer&) = delete;

    bool HasEnded() const noexcept { return hasEnded_; }

  private:
    void Hold(const wchar_t* rights) {
        SECURITY_ATTRIBUTES security{sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
        EXPECT_NE(FALSE, ConvertStringSecurityDescriptorToSecurityDescriptorW(
                             rights, SDDL_REVISION_1, &security.lpSecurityDescriptor, nullptr));
        HANDLE mutex = CreateMutexW(&security, TRUE, L"Global\\O_Tam_id.Registration");
        LocalFree(security.lpSecurityDescriptor);
        SetEvent(holds_);
        constexpr DWORD kLongEnoughToOvertake = 300;
        Sleep(kLongEnoughToOvertake);
        hasEnded_ = true;
        ReleaseMutex(mutex);
        CloseHandle(mutex);
    }

    HANDLE holds_ = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::atomic<bool> hasEnded_ = false;
    std::thread worker_;
};

using SharedLibraryTurnTest = RegistryTest;

TEST_F(SharedLibraryTurnTest, IsWaitedFor) {
    constexpr const wchar_t* kAll = L"D:(A;;GA;;;WD)";
    constexpr const wchar_t* kToWait = L"D:(A;;0x100000;;;WD)"; // as another user's may be
    for (const wchar_t* const rights : {kAll, kToWait}) {
        for (const bool registers : {true, false}) {
            for (const Dll* const dll : {&component, &hostServices}) {
                const Changer changer(rights);
                EXPECT_EQ(S_OK, registers ? dll->Register(Scope::User) : dll->Unregister(Scope::User));
                EXPECT_TRUE(changer.HasEnded()) << testing::PrintToString(rights);
            }
        }
    }
}

/// What clients find of it.
class SharedLibraryClientTest : public WholeRegistryTest {
  protected:
    /// The library loads by its identifier, and an object of a class answers another
    /// apartment for one of the library's interfaces.
    static void ExpectServed(REFCLSID clsid, REFIID iid) {
        constexpr GUID kLibrary{0x23539202, 0x4C9D, 0x4BB1, {0x86, 0xC0, 0xE6, 0x5E, 0x8B, 0x10, 0xD2, 0x09}};
        com::Ref<IUnknown> object;
        ASSERT_EQ(S_OK,
                  CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.PutVoid()));
        InAnotherApartment(object.Get(), IID_IUnknown, [&](const com::Ref<IUnknown>& there) {
            com::Ref<ITypeLib> library;
            EXPECT_EQ(S_OK, LoadRegTypeLib(kLibrary, 1, 0, LOCALE_NEUTRAL, library.Put()));
            com::Ref<IUnknown> face;
            EXPECT_EQ(S_OK, there->QueryInterface(iid, face.PutVoid()));
        });
        object.Reset();
        CoFreeUnusedLibraries();
    }
    static void Register(const Dll& dll) { ASSERT_EQ(0U, Regsvr32(L"", dll.Path())); }
    static void Unregister(const Dll& dll) { EXPECT_EQ(0U, Regsvr32(L"/u", dll.Path())); }
};

TEST_F(SharedLibraryClientTest, AreServedWhicheverDllIsLeft) {
    for (const bool componentIsFirst : {true, false}) {
        const Dll& first = componentIsFirst ? component : hostServices;
        const Dll& second = componentIsFirst ? hostServices : component;
        for (const bool firstIsLeft : {true, false}) {
            const Dll& left = firstIsLeft ? first : second;
            const Dll& gone = firstIsLeft ? second : first;
            Register(first);
            Register(second);
            Unregister(gone);
            if (&left == &component) {
                ExpectServed(__uuidof(::TamObjectManager), __uuidof(ITamObjectManager));
            } else {
                CLSID context{};
                EXPECT_EQ(S_OK, CLSIDFromProgID(L"OrvHost.DeviceContext", &context));
                ExpectServed(context, __uuidof(IDeviceContext));
            }
            Unregister(left);
        }
    }
}

TEST_F(SharedLibraryClientTest, AreServedWhenAnOlderCopyIsRemoved) {
    const Copy componentFile(component);
    const Copy hostFile(hostServices);
    Register(Dll(component.Facts(), componentFile.Folder()));
    Register(Dll(hostServices.Facts(), hostFile.Folder()));
    Register(component);
    Register(hostServices);
    Unregister(Dll(component.Facts(), componentFile.Folder()));
    Unregister(Dll(hostServices.Facts(), hostFile.Folder()));
    ExpectServed(__uuidof(::TamObjectManager), __uuidof(ITamObjectManager));
    Unregister(hostServices);
    ExpectServed(__uuidof(::TamObjectManager), __uuidof(ITamObjectManager));
    Unregister(component);
}

} // namespace

} // namespace package
