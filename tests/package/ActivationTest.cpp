// Registered classes by their names, and the entry points that serve them.

#include "com/Conversion.h"
#include "com/Ref.h"
#include "tests/package/Apartment.h"
#include "tests/package/Dll.h"

#include <olectl.h>

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <string>

namespace package {

namespace {

CLSID IdOf(const std::string& text) {
    CLSID id{};
    EXPECT_EQ(S_OK, CLSIDFromString(Wide(text).c_str(), &id));
    return id;
}

class ActivationTest : public WholeRegistryTest {
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

/// What needs no registration.
class ActivationClassObjectTest : public RegistryTest {};

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

TEST_F(ActivationTest, ServesAnotherApartmentBySlot) {
    // The keys of the interfaces and their library are what a proxy is made from.
    for (const Dll* dll : {&hostServices, &component}) {
        ASSERT_EQ(S_OK, dll->Register(Scope::Machine));
    }
    com::Ref<IAppObject> module;
    ASSERT_EQ(S_OK, CoCreateInstance(__uuidof(::CDBAppObject), nullptr, CLSCTX_INPROC_SERVER,
                                     __uuidof(IAppObject), module.PutVoid()));
    InAnotherApartment(module.Get(), __uuidof(IAppObject), [&](const com::Ref<IUnknown>& there) {
        const auto proxy = there.As<IAppObject>();
        ASSERT_TRUE(proxy);
        EXPECT_NE(proxy, module) << "a pointer of another apartment must not be used";
        EXPECT_EQ(S_OK, proxy->put_Tag(com::Bstr(L"from elsewhere").Get()));
    });
    com::Bstr tag;
    EXPECT_EQ(S_OK, module->get_Tag(tag.Put()));
    EXPECT_EQ(L"from elsewhere", tag.View());
    module.Reset();
    for (const Dll* dll : {&component, &hostServices}) {
        EXPECT_EQ(S_OK, dll->Unregister(Scope::Machine));
    }
    CoFreeUnusedLibraries();
}

TEST_F(ActivationClassObjectTest, RefusesUnknownClassesAndInterfaces) {
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
