#include "tests/host/HostDll.h"

#include "com/Boundary.h"

#include <ocidl.h>

#include <string>
#include <vector>

namespace hosttest {

namespace {

struct Class {
    const char* name;
    CLSID id;
    /// The first one is the default interface.
    std::vector<IID> interfaces;
};

const std::vector<Class>& Classes() {
    static const std::vector<Class> classes{
        {"UnitConverter", __uuidof(UnitConverter), {__uuidof(IUnitConverter), __uuidof(IUnitSettings)}},
        {"DatabaseLocation", __uuidof(DatabaseLocation), {__uuidof(IDatabaseLocation)}},
        {"CompilersInterop", __uuidof(CompilersInterop), {__uuidof(ICompilersInterop)}},
        {"Project",
         __uuidof(Project),
         {__uuidof(IProject), __uuidof(IMacroConnections), __uuidof(IHostDocument)}},
    };
    return classes;
}

com::Ref<IUnknown> As(const com::Ref<IUnknown>& object, REFIID iid) {
    com::Ref<IUnknown> result;
    EXPECT_EQ(S_OK, object->QueryInterface(iid, result.PutVoid()));
    return result;
}

TEST(ServerTest, ExportsWhatAServerExports) {
    for (const char* name :
         {"DllGetClassObject", "DllCanUnloadNow", "DllRegisterServer", "DllUnregisterServer", "DllInstall"}) {
        EXPECT_NE(nullptr, HostDll::Get().Export(name)) << name;
    }
}

TEST(ServerTest, KeepsTheRulesOfQueryInterface) {
    for (const Class& entry : Classes()) {
        SCOPED_TRACE(entry.name);
        const auto object = Create<IUnknown>(entry.id);
        ASSERT_TRUE(object);
        for (const IID& from : entry.interfaces) {
            EXPECT_TRUE(com::SameObject(object.Get(), As(object, from).Get()));
            for (const IID& to : entry.interfaces) {
                EXPECT_TRUE(com::SameObject(object.Get(), As(As(object, from), to).Get()));
            }
        }
        const auto dispatch = As(object, IID_IDispatch);
        EXPECT_EQ(dispatch, As(object, entry.interfaces.front())) << "IDispatch is the default interface";
        void* refused = &refused;
        EXPECT_EQ(E_NOINTERFACE, object->QueryInterface(IID_IClassFactory, &refused));
        EXPECT_EQ(nullptr, refused);
        EXPECT_EQ(E_POINTER, object->QueryInterface(IID_IUnknown, nullptr));
    }
}

TEST(ServerTest, TellsTheClassOfEachObject) {
    for (const Class& entry : Classes()) {
        SCOPED_TRACE(entry.name);
        const auto provider = Create<IUnknown>(entry.id).As<IProvideClassInfo>();
        ASSERT_TRUE(provider);
        com::Ref<ITypeInfo> info;
        ASSERT_EQ(S_OK, provider->GetClassInfo(info.Put()));
        TYPEATTR* attributes = nullptr;
        ASSERT_EQ(S_OK, info->GetTypeAttr(&attributes));
        EXPECT_TRUE(attributes->guid == entry.id);
        EXPECT_EQ(TKIND_COCLASS, attributes->typekind);
        EXPECT_EQ(entry.interfaces.size(), attributes->cImplTypes);
        info->ReleaseTypeAttr(attributes);
    }
}

TEST(ServerTest, GivesErrorObjectsOnEveryInterface) {
    for (const Class& entry : Classes()) {
        SCOPED_TRACE(entry.name);
        const auto support = Create<IUnknown>(entry.id).As<ISupportErrorInfo>();
        ASSERT_TRUE(support);
        for (const IID& iid : entry.interfaces) {
            EXPECT_EQ(S_OK, support->InterfaceSupportsErrorInfo(iid));
        }
        EXPECT_EQ(S_FALSE, support->InterfaceSupportsErrorInfo(IID_IClassFactory));
    }
}

TEST(ServerTest, RefusesUnknownClassesAndAggregation) {
    com::Ref<IClassFactory> factory;
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE,
              HostDll::Get().ClassObject(__uuidof(ProjectView), IID_IClassFactory, factory.PutVoid()));
    EXPECT_FALSE(factory);
    ASSERT_EQ(S_OK, HostDll::Get().ClassObject(__uuidof(Project), IID_IClassFactory, factory.PutVoid()));
    com::Ref<IUnknown> inner;
    EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(factory.Get(), IID_IUnknown, inner.PutVoid()));
    EXPECT_EQ(E_NOINTERFACE, factory->CreateInstance(nullptr, IID_IClassFactory, inner.PutVoid()));
    EXPECT_FALSE(inner);
}

TEST(ServerTest, StaysLoadedWhileAnythingOfItLives) {
    ASSERT_EQ(S_OK, HostDll::Get().CanUnloadNow());
    for (const Class& entry : Classes()) {
        SCOPED_TRACE(entry.name);
        auto object = Create<IUnknown>(entry.id);
        EXPECT_EQ(S_FALSE, HostDll::Get().CanUnloadNow());
        object.Reset();
        EXPECT_EQ(S_OK, HostDll::Get().CanUnloadNow());
    }
    // A part of an object counts as much as the object.
    auto project = Create<IHostDocument>(__uuidof(Project));
    com::Ref<IDispatch> view;
    ASSERT_EQ(S_OK, project->get_View(view.Put()));
    project.Reset();
    EXPECT_EQ(S_FALSE, HostDll::Get().CanUnloadNow());
    view.Reset();
    EXPECT_EQ(S_OK, HostDll::Get().CanUnloadNow());
}

TEST(ServerTest, CountsLocksOfItsFactories) {
    com::Ref<IClassFactory> factory;
    ASSERT_EQ(S_OK, HostDll::Get().ClassObject(__uuidof(Project), IID_IClassFactory, factory.PutVoid()));
    EXPECT_EQ(S_OK, factory->LockServer(TRUE));
    com::Ref<IClassFactory> kept = factory;
    factory.Reset();
    EXPECT_EQ(S_OK, kept->LockServer(FALSE));
    kept.Reset();
    EXPECT_EQ(S_OK, HostDll::Get().CanUnloadNow());
}

TEST(ServerTest, CarriesBothTypeLibraries) {
    const struct {
        const wchar_t* resource;
        const wchar_t* name;
    } libraries[] = {{L"", L"OrvHost"}, {L"\\1", L"OrvHost"}, {L"\\2", L"OrvDBFaces"}};
    for (const auto& expected : libraries) {
        com::Ref<ITypeLib> library;
        const std::wstring path = HostDll::Get().Path() + expected.resource;
        ASSERT_EQ(S_OK, LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put()));
        com::Bstr name;
        ASSERT_EQ(S_OK, library->GetDocumentation(-1, name.Put(), nullptr, nullptr, nullptr));
        EXPECT_EQ(expected.name, name.View());
    }
}

} // namespace

} // namespace hosttest
