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

class ActivationTest : public RegistryTest {};

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
