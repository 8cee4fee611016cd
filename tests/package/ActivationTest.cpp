// Registered classes by their names, and the entry points that serve them.

#include "com/Ref.h"
#include "tests/package/Dll.h"

#include <olectl.h>

namespace package {

namespace {

std::wstring Wide(const std::string& ascii) {
    return std::wstring(ascii.begin(), ascii.end());
}

CLSID IdOf(const std::string& text) {
    CLSID id{};
    EXPECT_EQ(S_OK, CLSIDFromString(Wide(text).c_str(), &id));
    return id;
}

class ActivationTest : public RegistryTest {
  protected:
    /// Makes each class of a registered DLL by its name.
    void ExpectCreated(const Dll& dll) const {
        for (const Class& entry : dll.Facts().classes) {
            SCOPED_TRACE(entry.progId);
            CLSID id{};
            ASSERT_EQ(S_OK, CLSIDFromProgID(Wide(entry.progId).c_str(), &id));
            EXPECT_TRUE(IdOf(entry.id) == id);
            com::Ref<IDispatch> object;
            ASSERT_EQ(S_OK,
                      CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.PutVoid()));
            EXPECT_EQ(S_FALSE, dll.CanUnloadNow()) << "another file made it";
            com::Ref<IUnknown> aggregate;
            EXPECT_EQ(CLASS_E_NOAGGREGATION, CoCreateInstance(id, object.Get(), CLSCTX_INPROC_SERVER,
                                                              IID_IUnknown, aggregate.PutVoid()));
            object.Reset();
            EXPECT_EQ(S_OK, dll.CanUnloadNow());
        }
    }
};

TEST_F(ActivationTest, MakesEachRegisteredClassByItsName) {
    // The module object asks for the host's unit converter, so both are needed.
    for (const Dll* dll : {&hostServices, &component}) {
        ASSERT_EQ(S_OK, dll->Register(Scope::Machine));
        ExpectCreated(*dll);
    }
    for (const Dll* dll : {&component, &hostServices}) {
        EXPECT_EQ(S_OK, dll->Unregister(Scope::Machine));
        for (const Class& entry : dll->Facts().classes) {
            CLSID id{};
            EXPECT_EQ(CO_E_CLASSSTRING, CLSIDFromProgID(Wide(entry.progId).c_str(), &id)) << entry.progId;
        }
    }
    CoFreeUnusedLibraries();
}

TEST_F(ActivationTest, RegistersLibrariesThatLoadById) {
    const Dll* const dlls[] = {&component, &hostServices};
    for (const Dll* dll : dlls) {
        ASSERT_EQ(S_OK, dll->Register(Scope::Machine));
        for (const std::string& id :
             {dll->Facts().library.id, std::string("{23539202-4C9D-4BB1-86C0-E65E8B10D209}")}) {
            com::Ref<ITypeLib> library;
            EXPECT_EQ(S_OK, LoadRegTypeLib(IdOf(id), 1, 0, LOCALE_NEUTRAL, library.Put())) << id;
        }
        EXPECT_EQ(S_OK, dll->Unregister(Scope::Machine));
        com::Ref<ITypeLib> library;
        EXPECT_EQ(TYPE_E_LIBNOTREGISTERED,
                  LoadRegTypeLib(IdOf(dll->Facts().library.id), 1, 0, LOCALE_NEUTRAL, library.Put()));
    }
}

TEST_F(ActivationTest, RefusesUnknownClassesAndInterfaces) {
    for (const Dll* dll : {&component, &hostServices}) {
        void* out = &out;
        EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, dll->ClassObject(CLSID_NULL, IID_IClassFactory, &out));
        EXPECT_EQ(nullptr, out);
        const DllFacts& other = dll == &component ? HostServices() : Component();
        for (const Class& entry : other.classes) {
            out = &out;
            EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, dll->ClassObject(IdOf(entry.id), IID_IClassFactory, &out));
            EXPECT_EQ(nullptr, out);
        }
        for (const Class& entry : dll->Facts().classes) {
            SCOPED_TRACE(entry.progId);
            out = &out;
            EXPECT_EQ(E_NOINTERFACE, dll->ClassObject(IdOf(entry.id), IID_IDispatch, &out));
            EXPECT_EQ(nullptr, out);
            EXPECT_EQ(E_POINTER, dll->ClassObject(IdOf(entry.id), IID_IClassFactory, nullptr));
            com::Ref<IClassFactory> factory;
            ASSERT_EQ(S_OK, dll->ClassObject(IdOf(entry.id), IID_IClassFactory, factory.PutVoid()));
            EXPECT_EQ(S_OK, factory->LockServer(TRUE));
            EXPECT_EQ(S_FALSE, dll->CanUnloadNow());
            EXPECT_EQ(S_OK, factory->LockServer(FALSE));
        }
    }
}

} // namespace

} // namespace package
