#include "tests/appobject/Module.h"
#include "tests/support/ImportPatch.h"

#include "com/LateBound.h"

#include <initializer_list>
#include <string>

using namespace support;
using namespace modules;

namespace {

class CDBAppObjectLifecycleTest : public ModuleTest {};

/// Without the converter that ModuleTest puts behind its ProgID.
class CDBAppObjectLifecycleConstructionTest : public ::testing::Test {
  protected:
    Component component;
};

TEST_F(CDBAppObjectLifecycleConstructionTest, FailsWithoutAConverter) {
    EXPECT_FALSE(component.NewModule());
    EXPECT_EQ(component.LastCreateResult(), CO_E_CLASSSTRING);
    EXPECT_EQ(LastError().description, L"UnitManager.Converter is not registered: no class has this name");
    EXPECT_EQ(component.CanUnload(), S_OK);
}

TEST_F(CDBAppObjectLifecycleConstructionTest, FailsAsTheConverterFails) {
    const HostClass refused(kConverterClass, kConverterProgId, [](REFIID, void** out) {
        *out = nullptr;
        return E_ACCESSDENIED;
    });
    EXPECT_FALSE(component.NewModule());
    EXPECT_EQ(component.LastCreateResult(), E_ACCESSDENIED);
    EXPECT_TRUE(LastError().description.starts_with(L"UnitManager.Converter cannot be created: "));
    EXPECT_EQ(component.CanUnload(), S_OK);
}

TEST_F(CDBAppObjectLifecycleConstructionTest, SaysWhichClassHasNoServer) {
    const HostClass noFactory(kCompilerClass, kConverterProgId, {});
    EXPECT_FALSE(component.NewModule());
    EXPECT_EQ(component.LastCreateResult(), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(LastError().description, L"UnitManager.Converter is not registered: its class "
                                       L"{7A0E3B52-3A0C-4C3B-9B0E-5D1F528C11A1} has no DLL for " +
                                           std::wstring(sizeof(void*) == 4 ? L"32" : L"64") +
                                           L"-bit programs");
}

// COM passes the code of the loader on where the class has a DLL that does not load.
TEST_F(CDBAppObjectLifecycleConstructionTest, SaysWhichClassHasADllThatDoesNotLoad) {
    static HRESULT answer;
    const HostClass noFactory(kCompilerClass, kConverterProgId, {});
    const ImportPatch loader(
        component.Module(), "CoGetClassObject",
        reinterpret_cast<const void*>(+[](REFCLSID, DWORD, LPVOID, REFIID, LPVOID* out) WINAPI {
            *out = nullptr;
            return answer;
        }));
    ASSERT_TRUE(loader.IsImported());
    for (const HRESULT code :
         {CO_E_DLLNOTFOUND, CO_E_ERRORINDLL, HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND),
          HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), HRESULT_FROM_WIN32(ERROR_BAD_EXE_FORMAT)}) {
        answer = code;
        EXPECT_FALSE(component.NewModule());
        EXPECT_EQ(component.LastCreateResult(), REGDB_E_CLASSNOTREG);
        EXPECT_EQ(LastError().description, L"UnitManager.Converter cannot be loaded: the DLL of its class "
                                           L"{7A0E3B52-3A0C-4C3B-9B0E-5D1F528C11A1} is not there, lacks "
                                           L"another DLL, or is not for " +
                                               std::wstring(sizeof(void*) == 4 ? L"32" : L"64") +
                                               L"-bit programs");
    }
}

TEST_F(CDBAppObjectLifecycleTest, StartsWithEmptyTexts) {
    const auto module = NewModule();
    for (const auto member :
         {&IAppObject::get_Name, &IAppObject::get_ID, &IAppObject::get_Description, &IAppObject::get_Category,
          &IAppObject::get_UserName, &IAppObject::get_Tag, &IAppObject::get_UniqueID, &IAppObject::get_key,
          &IAppObject::get_GlobalKey, &IAppObject::get_ExtendedKey, &IAppObject::get_UniqueIDString,
          &IAppObject::get_Path}) {
        EXPECT_EQ(Text(module, member), L"");
    }
    const auto tam = module.As<ITamObject>();
    EXPECT_EQ(Text(tam, &ITamObject::get_DeviceKey), L"");
    EXPECT_EQ(Text(tam, &ITamObject::get_ApplicationID), L"");
}

TEST_F(CDBAppObjectLifecycleTest, StartsWithZeros) {
    const auto module = NewModule();
    EXPECT_EQ(Long(module, &IAppObject::get_Language), 0);
    EXPECT_EQ(Short(module, &IAppObject::get_ExportIndex), 0);
    EXPECT_EQ(Double(module, &IAppObject::get_XPosition), 0.0);
    EXPECT_EQ(Double(module, &IAppObject::get_YPosition), 0.0);
    EXPECT_EQ(Long(module, &IAppObject::get_CDBDimension), 0);
    EXPECT_EQ(Long(module, &IAppObject::get_DDBDimension), 0);
    EXPECT_EQ(Short(module.As<ITamObject>(), &ITamObject::get_TamObjectID), 0);
    EXPECT_EQ(Short(module.As<ITamObject>(), &ITamObject::get_Address), 0);
}

TEST_F(CDBAppObjectLifecycleTest, StartsInactiveAndWithoutADatasheet) {
    const auto module = NewModule();
    EXPECT_FALSE(Flag(module, &IAppObject::get_IsPlugInActive));
    EXPECT_FALSE(Flag(module, &IAppObject::get_PlugInAvailable));
    EXPECT_FALSE(Flag(module, &IAppObject::get_DatasheetAvailable));
}

TEST_F(CDBAppObjectLifecycleTest, StartsWithThreeEmptyCollections) {
    const auto module = NewModule();
    EXPECT_EQ(InputCount(module), 0);
    EXPECT_EQ(OutputCount(module), 0);
    EXPECT_EQ(AttributeCount(module), 0);
}

TEST_F(CDBAppObjectLifecycleTest, StartsWithoutHostObjects) {
    const auto module = NewModule();
    EXPECT_FALSE(Object(module, &IAppObject::get_Parent));
    EXPECT_FALSE(Object(module, &IAppObject::get_OwnerDeviceXML));
}

TEST_F(CDBAppObjectLifecycleTest, GivesTheSameCollectionsEachTime) {
    const auto module = NewModule();
    EXPECT_TRUE(com::SameObject(Object(module, &IAppObject::get_Inputs).Get(),
                                Object(module, &IAppObject::get_Inputs).Get()));
    EXPECT_TRUE(com::SameObject(Object(module, &IAppObject::get_Outputs).Get(),
                                Object(module, &IAppObject::get_Outputs).Get()));
    EXPECT_TRUE(com::SameObject(Object(module, &IAppObject::get_Attributes).Get(),
                                Object(module, &IAppObject::get_Attributes).Get()));
}

TEST_F(CDBAppObjectLifecycleTest, KeepsItsParentAndGivesItBack) {
    const auto module = NewModule();
    const auto parent = Held::Make();
    EXPECT_EQ(module->putref_Parent(parent.Get()), S_OK);
    EXPECT_TRUE(com::SameObject(Object(module, &IAppObject::get_Parent).Get(),
                                static_cast<IHostDocument*>(parent.Get())));
    EXPECT_EQ(parent->Others(), 1u);
    EXPECT_EQ(module->putref_Parent(nullptr), S_OK);
    EXPECT_FALSE(Object(module, &IAppObject::get_Parent));
    EXPECT_EQ(parent->Others(), 0u);
}

TEST_F(CDBAppObjectLifecycleTest, KeepsTheOwnerDevicesDocument) {
    const auto module = NewModule();
    const Document device = Parse(L"<Device/>");
    EXPECT_EQ(module->putref_OwnerDeviceXML(device.Get()), S_OK);
    EXPECT_TRUE(com::SameObject(Object(module, &IAppObject::get_OwnerDeviceXML).Get(), device.Get()));
}

TEST_F(CDBAppObjectLifecycleTest, DestroyReleasesParentAndCollections) {
    const auto module = Loaded(Stream(L"<In1/>"));
    const auto parent = Held::Make();
    module->putref_Parent(parent.Get());
    EXPECT_EQ(module->Destroy(), S_OK);
    EXPECT_EQ(parent->Others(), 0u);
    EXPECT_FALSE(Object(module, &IAppObject::get_Parent));
    EXPECT_FALSE(Object(module, &IAppObject::get_Inputs));
    EXPECT_FALSE(Object(module, &IAppObject::get_Outputs));
    EXPECT_FALSE(Object(module, &IAppObject::get_Attributes));
}

TEST_F(CDBAppObjectLifecycleTest, DestroyKeepsTheObjectAndTheOwnerDevice) {
    const auto module = Loaded(Stream({}, {}, {}, L"Pump"));
    const auto device = Held::Make();
    module->putref_OwnerDeviceXML(device.Get());
    EXPECT_EQ(module->Destroy(), S_OK);
    EXPECT_EQ(module->Destroy(), S_OK);
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Pump");
    EXPECT_EQ(device->Others(), 1u);
}

TEST_F(CDBAppObjectLifecycleTest, EndsWithEverythingReleased) {
    const auto parent = Held::Make();
    const auto device = Held::Make();
    auto module = Loaded(Stream(L"<In1/>"));
    module->putref_Parent(parent.Get());
    module->putref_OwnerDeviceXML(device.Get());
    EXPECT_EQ(Dll().CanUnload(), S_FALSE);
    module.Reset();
    EXPECT_EQ(parent->Others(), 0u);
    EXPECT_EQ(device->Others(), 0u);
    EXPECT_EQ(Dll().CanUnload(), S_OK);
}

TEST_F(CDBAppObjectLifecycleTest, LeavesACollectionThatTheHostHolds) {
    auto module = Loaded(Stream(L"<In1/><In2/>"));
    const auto inputs = Object(module, &IAppObject::get_Inputs);
    module->Destroy();
    module.Reset();
    EXPECT_EQ(Long(inputs, &IInputs::get_Count), 2);
}

TEST_F(CDBAppObjectLifecycleTest, SharesTheCatalogueAmongInstances) {
    const auto first = NewModule();
    const auto second = NewModule();
    const Document catalogue = Parse(L"<C><SNVT_1><Name>One</Name><Type>Struct</Type></SNVT_1></C>");
    EXPECT_EQ(first->putref_XmlSNVTDoc(catalogue.Get()), S_OK);
    ASSERT_EQ(Load(second, Stream({}, L"<Out1><SNVTTYPE>1</SNVTTYPE></Out1>")), S_OK);
    EXPECT_EQ(Text(Object(Output(second, L"Out1"), &IOutput::get_SNVTType), &ISNVType::get_Name), L"One");
}

TEST_F(CDBAppObjectLifecycleTest, ReadsTheCatalogueThatWasSetLast) {
    const auto first = NewModule();
    const auto second = NewModule();
    const Document older = Parse(L"<C><SNVT_1><Name>Older</Name><Type>Struct</Type></SNVT_1></C>");
    const Document newer = Parse(L"<C><SNVT_1><Name>Newer</Name><Type>Struct</Type></SNVT_1></C>");
    first->putref_XmlSNVTDoc(older.Get());
    second->putref_XmlSNVTDoc(newer.Get());
    ASSERT_EQ(Load(first, Stream({}, L"<Out1><SNVTTYPE>1</SNVTTYPE></Out1>")), S_OK);
    EXPECT_EQ(Text(Object(Output(first, L"Out1"), &IOutput::get_SNVTType), &ISNVType::get_Name), L"Newer");
}

TEST_F(CDBAppObjectLifecycleTest, KeepsTheCatalogueWhenTheModuleThatTookItIsGone) {
    NewModule()->putref_XmlSNVTDoc(
        Parse(L"<C><SNVT_1><Name>One</Name><Type>Struct</Type></SNVT_1></C>").Get());
    const auto module = Loaded(Stream({}, L"<Out1><SNVTTYPE>1</SNVTTYPE></Out1>"));
    EXPECT_EQ(Text(Object(Output(module, L"Out1"), &IOutput::get_SNVTType), &ISNVType::get_Name), L"One");
}

TEST_F(CDBAppObjectLifecycleTest, NamesItselfAfterItsFile) {
    EXPECT_EQ(Text(NewModule(), &IAppObject::get_ProgrammaticID), L"O_Tam_id.CDBAppObject");
}

/// The component under another file name.
class CDBAppObjectLifecycleRenamedTest : public ModuleTest {
  protected:
    void SetUp() override {
        ModuleTest::SetUp();
        ASSERT_NE(CopyFileW(Component::DllPath().c_str(), path.c_str(), FALSE), FALSE);
        library = LoadLibraryW(path.c_str());
        ASSERT_NE(library, nullptr);
    }
    void TearDown() override {
        FreeLibrary(library);
        DeleteFileW(path.c_str());
        ModuleTest::TearDown();
    }
    com::Ref<IAppObject> NewRenamed() {
        using Function = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
        const auto get =
            reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, "DllGetClassObject")));
        com::Ref<IClassFactory> factory;
        com::Check(get(__uuidof(::CDBAppObject), IID_IClassFactory, factory.PutVoid()));
        com::Ref<IAppObject> module;
        com::Check(factory->CreateInstance(nullptr, __uuidof(IAppObject), module.PutVoid()));
        return module;
    }

    std::wstring path = Component::Folder() + L"Other.Name.dll";
    HMODULE library = nullptr;
};

TEST_F(CDBAppObjectLifecycleRenamedTest, NamesItselfAfterTheFileWithoutItsExtension) {
    EXPECT_EQ(Text(NewRenamed(), &IAppObject::get_ProgrammaticID), L"Other.Name.CDBAppObject");
}

TEST_F(CDBAppObjectLifecycleRenamedTest, GivesTheFilesNameAsTheSourceOfAMissingDefinition) {
    EXPECT_FALSE(Init(NewRenamed(), L"Nowhere"));
    ExpectOneReport(L"", L"IAppObject_Init Class Module CDBAppObject", L"Function IAppObject_Init",
                    L"Other.Name");
}

TEST_F(CDBAppObjectLifecycleRenamedTest, GivesTheFilesNameAsTheSourceOfItsOwnErrors) {
    EXPECT_EQ(NewRenamed()->XmlLoad(nullptr), S_OK);
    ExpectOneReport(kObjectNotSetText, kLocation, L"Sub IAppObject_XmlLoad", L"Other.Name");
}

TEST_F(CDBAppObjectLifecycleTest, HasItsTitlesAsResources) {
    wchar_t text[64] = {};
    LoadStringW(Dll().Module(), 101, text, 64);
    EXPECT_STREQ(text, L"Gateway Object");
    LoadStringW(Dll().Module(), 120, text, 64);
    EXPECT_STREQ(text, L"Point Summary");
    EXPECT_NE(FindResourceW(Dll().Module(), L"A_LOGO", reinterpret_cast<LPCWSTR>(RT_GROUP_ICON)), nullptr);
}

} // namespace
