// The library of the host interfaces, which both DLLs carry and each copy of them. The
// registry has it with one file; whoever is removed, it must stay with one that is left.

#include "com/Conversion.h"
#include "com/Ref.h"
#include "com/RegistryView.h"
#include "tests/package/Apartment.h"
#include "tests/package/Dll.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <functional>
#include <initializer_list>
#include <string>
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
        Plant(GetParam(), FacesFile(), nullptr, FileWithoutLibrary());
        const Lines planted = Snapshot();
        Register(*dll);
        EXPECT_EQ("", Difference(Added(planted, Of(*dll, false)), Added(planted, Snapshot())));
        Unregister(*dll);
        EXPECT_EQ("", Difference(planted, Snapshot()));
        Clear(GetParam(), kFaces);
        RegDeleteKeyW(Root(GetParam()), L"Software\\Classes\\TypeLib"); // fails while others are in it
    }
}

INSTANTIATE_TEST_SUITE_P(Scopes, SharedLibraryTest, ::testing::Values(Scope::Machine, Scope::User),
                         [](const auto& scope) { return scope.param == Scope::User ? "User" : "Machine"; });

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
