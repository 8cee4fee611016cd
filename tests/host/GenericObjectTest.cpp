#include "com/Dom.h"
#include "tests/host/GenericObjects.h"
#include "tests/support/Errors.h"

#include "com/LateBound.h"

namespace hosttest {

namespace {

/// Generic objects of the sample definitions.
class GenericObjectTest : public testing::Test {
  protected:
    template <class Collection>
    static long Count(const com::Ref<IAppObject>& object,
                      HRESULT (STDMETHODCALLTYPE IAppObject::*member)(Collection**)) {
        com::Ref<Collection> items;
        EXPECT_EQ(S_OK, (object.Get()->*member)(items.Put()));
        return items ? LongOf(*items.Get(), &Collection::get_Count) : -1;
    }
};

TEST_F(GenericObjectTest, ReadsItsDefinition) {
    const auto object = NewObject(L"O_Tam_AO_id");
    EXPECT_EQ(L"O_Tam_AO_id", TextOf(*object.Get(), &IAppObject::get_UniqueIDString));
    EXPECT_EQ(L"Analogue output", TextOf(*object.Get(), &IAppObject::get_Name));
    EXPECT_EQ(L"o_tam_ao_id", TextOf(*object.Get(), &IAppObject::get_ID));
    EXPECT_EQ(L"One analogue output of a remote I/O module",
              TextOf(*object.Get(), &IAppObject::get_Description));
    EXPECT_EQ(L"Remote I/O", TextOf(*object.Get(), &IAppObject::get_Category));
    EXPECT_EQ(L"O_Generic.CDBAppObject", TextOf(*object.Get(), &IAppObject::get_ProgrammaticID));
    EXPECT_EQ(6, LongOf(*object.Get(), &IAppObject::get_NodeType));
    EXPECT_EQ(2, Count(object, &IAppObject::get_Inputs));
    EXPECT_EQ(1, Count(object, &IAppObject::get_Outputs));
    EXPECT_EQ(5, Count(object, &IAppObject::get_Attributes));
}

TEST_F(GenericObjectTest, HasTheSizesThatItsDefinitionStates) {
    TemporaryLibrary library;
    library.Write(L"Sized.xml", "<AppObject><ExecTime>7</ExecTime><MaxInstances>8</MaxInstances>"
                                "<CdbDimension>18</CdbDimension><DdbDimension>4</DdbDimension>"
                                "<SdbDimension>2</SdbDimension><Width>100</Width><InputWidth>30</InputWidth>"
                                "<Color>255</Color><UsesDeviceClock>1</UsesDeviceClock></AppObject>");
    const auto object = NewObject(L"Sized");
    EXPECT_EQ(7, LongOf(*object.Get(), &IAppObject::get_ExecTime));
    EXPECT_EQ(8, LongOf(*object.Get(), &IAppObject::get_MaxInstances));
    EXPECT_EQ(18, LongOf(*object.Get(), &IAppObject::get_CDBDimension));
    EXPECT_EQ(4, LongOf(*object.Get(), &IAppObject::get_DDBDimension));
    EXPECT_EQ(2, LongOf(*object.Get(), &IAppObject::get_SDBDimension));
    EXPECT_EQ(100, LongOf(*object.Get(), &IAppObject::get_Width));
    EXPECT_EQ(30, LongOf(*object.Get(), &IAppObject::get_InputWidth));
    EXPECT_EQ(255, LongOf(*object.Get(), &IAppObject::get_Color));
    EXPECT_TRUE(Flag(*object.Get(), &IAppObject::get_UsesDeviceClock));
    EXPECT_FALSE(Flag(*object.Get(), &IAppObject::get_IsDeviceDependent));
}

TEST_F(GenericObjectTest, IsEmptyBeforeInit) {
    const auto object = Create<IAppObject>(__uuidof(GenericObject));
    EXPECT_EQ(L"", TextOf(*object.Get(), &IAppObject::get_UniqueIDString));
    EXPECT_EQ(L"", TextOf(*object.Get(), &IAppObject::get_Name));
    EXPECT_EQ(0, Count(object, &IAppObject::get_Inputs));
    EXPECT_EQ(kNotInitialised, object->Create());
    EXPECT_EQ(L"The block has no definition to make its points from; call Init first", LastError());
}

TEST_F(GenericObjectTest, KeepsItsDefinitionWhenAnotherIsMissing) {
    const auto object = NewObject(L"O_Tam_DI_id");
    VARIANT_BOOL done = VARIANT_TRUE;
    EXPECT_EQ(kNoDefinition, object->Init(com::Bstr(L"O_Nothing_id").Get(), &done));
    EXPECT_EQ(VARIANT_FALSE, done);
    EXPECT_EQ(L"The library has no definition of \"O_Nothing_id\" (" + SampleFolder() + L"O_Nothing_id.xml)",
              LastError());
    EXPECT_EQ(L"O_Tam_DI_id", TextOf(*object.Get(), &IAppObject::get_UniqueIDString));
    EXPECT_EQ(L"Digital input", TextOf(*object.Get(), &IAppObject::get_Name));
}

TEST_F(GenericObjectTest, RefusesADefinitionWithANameTwice) {
    TemporaryLibrary library;
    library.Write(L"Twice.xml", "<AppObject><Attributes><Gain/><GAIN/></Attributes></AppObject>");
    const auto object = Create<IAppObject>(__uuidof(GenericObject));
    VARIANT_BOOL done = VARIANT_FALSE;
    ASSERT_EQ(S_OK, object->Init(com::Bstr(L"Twice").Get(), &done));
    EXPECT_EQ(support::kDuplicateKey, object->Create());
    EXPECT_EQ(0, Count(object, &IAppObject::get_Attributes));
}

TEST_F(GenericObjectTest, StoresWhatIsStored) {
    const auto object = Create<IAppObject>(__uuidof(GenericObject));
    const com::Bstr text(L"a text");
    const struct {
        HRESULT (STDMETHODCALLTYPE IAppObject::*put)(BSTR);
        HRESULT (STDMETHODCALLTYPE IAppObject::*get)(BSTR*);
    } texts[] = {
        {&IAppObject::put_Path, &IAppObject::get_Path},
        {&IAppObject::put_UserName, &IAppObject::get_UserName},
        {&IAppObject::put_Tag, &IAppObject::get_Tag},
        {&IAppObject::put_GlobalKey, &IAppObject::get_GlobalKey},
        {&IAppObject::put_ExtendedKey, &IAppObject::get_ExtendedKey},
        {&IAppObject::put_key, &IAppObject::get_key},
        {&IAppObject::put_UniqueID, &IAppObject::get_UniqueID},
        {&IAppObject::put_Stream, &IAppObject::get_Stream},
    };
    for (const auto& member : texts) {
        EXPECT_EQ(L"", TextOf(*object.Get(), member.get));
        EXPECT_EQ(S_OK, (object.Get()->*member.put)(text.Get()));
        EXPECT_EQ(L"a text", TextOf(*object.Get(), member.get));
    }
    double position = 0;
    EXPECT_EQ(S_OK, object->put_XPosition(12.5));
    EXPECT_EQ(S_OK, object->put_YPosition(-3));
    EXPECT_EQ(S_OK, object->get_XPosition(&position));
    EXPECT_EQ(12.5, position);
    EXPECT_EQ(S_OK, object->get_YPosition(&position));
    EXPECT_EQ(-3, position);
    short index = 0;
    EXPECT_EQ(S_OK, object->put_ExportIndex(9));
    EXPECT_EQ(S_OK, object->get_ExportIndex(&index));
    EXPECT_EQ(9, index);
    EXPECT_EQ(S_OK, object->put_Language(2));
    EXPECT_EQ(2, LongOf(*object.Get(), &IAppObject::get_Language));
    EXPECT_EQ(S_OK, object->put_Color(5));
    EXPECT_EQ(5, LongOf(*object.Get(), &IAppObject::get_Color));
    EXPECT_EQ(S_OK, object->SetColor(6));
    EXPECT_EQ(6, LongOf(*object.Get(), &IAppObject::get_Color));
}

TEST_F(GenericObjectTest, StoresItsParentAndItsDevice) {
    const auto object = Create<IAppObject>(__uuidof(GenericObject));
    const auto project = Create<IDispatch>(__uuidof(Project));
    com::Ref<IDispatch> stored;
    ASSERT_EQ(S_OK, object->putref_Parent(project.Get()));
    ASSERT_EQ(S_OK, object->get_Parent(stored.Put()));
    EXPECT_TRUE(com::SameObject(project.Get(), stored.Get()));
    ASSERT_EQ(S_OK, object->putref_OwnerDeviceXML(project.Get()));
    ASSERT_EQ(S_OK, object->get_OwnerDeviceXML(stored.Put()));
    EXPECT_TRUE(com::SameObject(project.Get(), stored.Get()));
}

TEST_F(GenericObjectTest, AnswersForAnObjectThatLiesOnItsOwn) {
    const auto object = NewObject(L"O_Tam_AI_id");
    short objects = 0;
    EXPECT_EQ(S_OK, object->get_NumObjects(&objects));
    EXPECT_EQ(1, objects);
    EXPECT_FALSE(Flag(*object.Get(), &IAppObject::get_IsHidden));
    EXPECT_FALSE(Flag(*object.Get(), &IAppObject::get_IsVirtual));
    EXPECT_FALSE(Flag(*object.Get(), &IAppObject::get_PlugInAvailable));
    EXPECT_FALSE(Flag(*object.Get(), &IAppObject::get_IsPlugInActive));
    EXPECT_FALSE(Flag(*object.Get(), &IAppObject::get_DatasheetAvailable));
    VARIANT window{};
    EXPECT_EQ(kNoDefinition, object->ViewDatasheet(window));
    EXPECT_EQ(L"The library has no data sheet of \"O_Tam_AI_id\"", LastError());
}

TEST_F(GenericObjectTest, FormsTheKeysOfItsPoints) {
    const auto object = NewObject(L"O_Tam_AO_id");
    EXPECT_EQ(L"\\ATT\\Gain", TextOf(*AttributeOf(object, L"Gain").Get(), &IAttribute::get_GlobalKey));
    ASSERT_EQ(S_OK, object->put_GlobalKey(com::Bstr(L"K").Get()));
    ASSERT_EQ(S_OK, object->put_ExtendedKey(com::Bstr(L"E").Get()));
    EXPECT_EQ(L"K\\RIN\\In1", TextOf(*InputOf(object, L"In1").Get(), &IInput::get_GlobalKey));
    EXPECT_EQ(L"E\\RIN\\In2", TextOf(*InputOf(object, L"In2").Get(), &IInput::get_ExtendedKey));
    EXPECT_EQ(L"K\\ROU\\Out", TextOf(*OutputOf(object, L"Out").Get(), &IOutput::get_GlobalKey));
    EXPECT_EQ(L"E\\ROU\\Out", TextOf(*OutputOf(object, L"Out").Get(), &IOutput::get_ExtendedKey));
    EXPECT_EQ(L"K\\ATT\\Gain", TextOf(*AttributeOf(object, L"Gain").Get(), &IAttribute::get_GlobalKey));
    EXPECT_EQ(L"E\\ATT\\Gain", TextOf(*AttributeOf(object, L"Gain").Get(), &IAttribute::get_ExtendedKey));
    com::Ref<IOutputs> outputs;
    ASSERT_EQ(S_OK, object->get_Outputs(outputs.Put()));
    EXPECT_EQ(L"K\\ROU", TextOf(*outputs.Get(), &IOutputs::get_GlobalKey));
    EXPECT_EQ(L"E\\ROU", TextOf(*outputs.Get(), &IOutputs::get_ExtendedKey));

    // Points that are made again have the keys again.
    ASSERT_EQ(S_OK, object->Create());
    EXPECT_EQ(L"K\\ATT\\Max", TextOf(*AttributeOf(object, L"Max").Get(), &IAttribute::get_GlobalKey));
}

TEST_F(GenericObjectTest, ForgetsTheReferencesOfItsInputs) {
    const auto object = NewObject(L"O_Tam_AO_id");
    ASSERT_EQ(S_OK, InputOf(object, L"In1")->put_Value(com::Bstr(L"4203").Get()));
    ASSERT_EQ(S_OK, object->ClearReferences());
    EXPECT_EQ(L"", TextOf(*InputOf(object, L"In1").Get(), &IInput::get_Value));
}

TEST_F(GenericObjectTest, ShowsItselfInTheViewOfItsParent) {
    const auto object = NewObject(L"O_Tam_AI_id");
    EXPECT_EQ(S_OK, object->Show());
    const auto project = Create<IDispatch>(__uuidof(Project));
    com::Ref<IDispatch> view;
    ASSERT_EQ(S_OK, project.As<IHostDocument>()->get_View(view.Put()));
    ASSERT_EQ(S_OK, object->putref_Parent(project.Get()));
    EXPECT_EQ(S_OK, object->Show());
    EXPECT_EQ(1, LongOf(*view.As<IShowCounter>().Get(), &IShowCounter::get_ShowCount));
    EXPECT_FALSE(Flag(*object.Get(), &IAppObject::get_IsPlugInActive));
}

TEST_F(GenericObjectTest, TakesItsTypesFromTheCatalogue) {
    auto catalogue = tam::dom::NewDocument(tam::dom::kDocumentClass);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    ASSERT_EQ(S_OK,
              catalogue->loadXML(com::Bstr(L"<SNVTCatalogue><SNVT_147 Factor=\"3\" Z3Region=\"4\">"
                                           L"<Name>difference</Name><Type>SignedNumeric</Type><Unit>K</Unit>"
                                           L"<BACnetUnit>delta</BACnetUnit><Min>-5.5</Min><Max>6</Max>"
                                           L"<Length>2</Length><A_Coef>1</A_Coef><B_Coef>-2</B_Coef>"
                                           L"<C_Coef>7</C_Coef><InvalidValue>327.67</InvalidValue></SNVT_147>"
                                           L"</SNVTCatalogue>")
                                     .Get(),
                                 &loaded));
    const auto object = Create<IAppObject>(__uuidof(GenericObject));
    VARIANT_BOOL done = VARIANT_FALSE;
    ASSERT_EQ(S_OK, object->putref_XmlSNVTDoc(catalogue.Get()));
    ASSERT_EQ(S_OK, object->Init(com::Bstr(L"O_Tam_AI_id").Get(), &done));
    ASSERT_EQ(S_OK, object->Create());
    com::Ref<ISNVType> type;
    ASSERT_EQ(S_OK, AttributeOf(object, L"Offset")->get_SNVTType(type.Put()));
    EXPECT_EQ(L"147", TextOf(*type.Get(), &ISNVType::get_ID));
    EXPECT_EQ(L"difference", TextOf(*type.Get(), &ISNVType::get_Name));
    EXPECT_EQ(L"SignedNumeric", TextOf(*type.Get(), &ISNVType::get_GenType));
    EXPECT_EQ(L"Numeric", TextOf(*type.Get(), &ISNVType::get_LUIType));
    EXPECT_EQ(L"K", TextOf(*type.Get(), &ISNVType::get_Units));
    EXPECT_EQ(L"delta", TextOf(*type.Get(), &ISNVType::get_BACnetUnits));
    EXPECT_EQ(Local(L"-5.5"), TextOf(*type.Get(), &ISNVType::get_Min));
    EXPECT_EQ(L"6", TextOf(*type.Get(), &ISNVType::get_Max));
    EXPECT_EQ(L"327.67", TextOf(*type.Get(), &ISNVType::get_InvalidValue));
    EXPECT_EQ(2, LongOf(*type.Get(), &ISNVType::get_Length));
    EXPECT_EQ(3, LongOf(*type.Get(), &ISNVType::get_Factor));
    EXPECT_EQ(4, LongOf(*type.Get(), &ISNVType::get_Z3Region));
    EXPECT_EQ(1, LongOf(*type.Get(), &ISNVType::get_ACoef));
    EXPECT_EQ(-2, LongOf(*type.Get(), &ISNVType::get_BCoef));
    EXPECT_EQ(7, LongOf(*type.Get(), &ISNVType::get_CCoef));

    // An attribute without limits of its own has its type's, in the form of its value.
    const auto offset = AttributeOf(object, L"Offset");
    EXPECT_EQ(L"-5.5", TextOf(*offset.Get(), &IAttribute::get_Min));
    EXPECT_EQ(L"6", TextOf(*offset.Get(), &IAttribute::get_Max));
    EXPECT_TRUE(TextOf(*offset.Get(), &IAttribute::get_DispMin).starts_with(Local(L"-5.5")));

    // What the catalogue lacks comes from the host's own table.
    ASSERT_EQ(S_OK, AttributeOf(object, L"Channel")->get_SNVTType(type.Put()));
    EXPECT_EQ(L"SNVT_count", TextOf(*type.Get(), &ISNVType::get_Name));
    EXPECT_EQ(L"", TextOf(*type.Get(), &ISNVType::get_GenType));
    EXPECT_EQ(support::kTypeMismatch, object->putref_XmlSNVTDoc(object.Get()));
}

TEST_F(GenericObjectTest, LosesItsPointsWhenItIsDestroyed) {
    const auto object = NewObject(L"O_Tam_AO_id");
    const auto attribute = AttributeOf(object, L"Gain");
    const auto interceptor = Interceptor::Make();
    ASSERT_EQ(S_OK, object.As<IAttributeInterception>()->RegisterInterceptor(interceptor.Get()));
    EXPECT_TRUE(Flag(*object.As<IGenericObject>().Get(), &IGenericObject::get_IsIntercepted));
    ASSERT_EQ(S_OK, object->Destroy());
    EXPECT_FALSE(Flag(*object.As<IGenericObject>().Get(), &IGenericObject::get_IsIntercepted));
    com::Ref<IAttributes> attributes;
    EXPECT_EQ(S_OK, object->get_Attributes(attributes.Put()));
    EXPECT_FALSE(attributes);
    com::Ref<IAppObject> parent;
    EXPECT_EQ(S_OK, attribute->get_Parent(parent.Put()));
    EXPECT_FALSE(parent);
    EXPECT_EQ(S_OK, SetValueOf(attribute, L"2"));
    EXPECT_EQ(L"2", ValueOf(attribute));
    EXPECT_TRUE(interceptor->calls.empty());
    EXPECT_EQ(S_OK, object->put_GlobalKey(com::Bstr(L"K").Get()));
    EXPECT_EQ(support::kObjectNotSet, object.As<IGenericObject>()->GetDataFromDevice());
    EXPECT_EQ(S_OK, object->Destroy());
}

TEST_F(GenericObjectTest, LeavesNothingBehindInWhicheverOrderItIsReleased) {
    ASSERT_EQ(S_OK, HostDll::Get().CanUnloadNow());
    for (int order = 0; order < 4; ++order) {
        SCOPED_TRACE(order);
        auto object = NewObject(L"O_Tam_AO_id");
        auto interceptor = Interceptor::Make();
        ASSERT_EQ(S_OK, object.As<IAttributeInterception>()->RegisterInterceptor(interceptor.Get()));
        auto attribute = AttributeOf(object, L"Gain");
        auto input = InputOf(object, L"In1");
        com::Ref<ISNVType> type;
        ASSERT_EQ(S_OK, attribute->get_SNVTType(type.Put()));
        if (order % 2 == 0) {
            object.Reset();
            EXPECT_EQ(S_OK, SetValueOf(attribute, L"1"));
        }
        if (order == 3) {
            ASSERT_EQ(S_OK, object->Destroy());
        }
        EXPECT_EQ(S_FALSE, HostDll::Get().CanUnloadNow());
        attribute.Reset();
        input.Reset();
        type.Reset();
        object.Reset();
        interceptor.Reset();
        EXPECT_EQ(S_OK, HostDll::Get().CanUnloadNow());
    }
}

TEST_F(GenericObjectTest, IsDrivenByName) {
    const auto object = NewObject(L"O_Tam_AO_id");
    const com::Variant inputs = com::GetMember(*object.Get(), L"Inputs");
    ASSERT_EQ(VT_DISPATCH, inputs.Get().vt);
    VARIANT index[] = {com::Variant(L"2").Detach()};
    const com::Variant input = com::CallMember(*inputs.Get().pdispVal, L"Item", index);
    VariantClear(&index[0]);
    ASSERT_EQ(VT_DISPATCH, input.Get().vt);
    // Read in one interface, written in another.
    VARIANT no{};
    no.vt = VT_BOOL;
    com::PutMember(*input.Get().pdispVal, L"Visible", no);
    EXPECT_EQ(VARIANT_FALSE, com::GetMember(*input.Get().pdispVal, L"Visible").Get().boolVal);
    com::CallMember(*object.Get(), L"GetDataFromDevice", {});
    EXPECT_EQ(VARIANT_FALSE, com::GetMember(*object.Get(), L"IsIntercepted").Get().boolVal);
}

} // namespace

} // namespace hosttest
