#include "com/Dom.h"
#include "tests/host/GenericObjects.h"
#include "tests/support/Errors.h"

#include <string>

namespace hosttest {

namespace {

namespace dom = tam::dom;

class GenericXmlTest : public testing::Test {
  protected:
    GenericXmlTest() { dom::Append(document_, dom::Node(document_), L"Project"); }

    dom::Node Root() { return dom::Select(dom::Node(document_), L"Project"); }
    dom::Node Saved(const com::Ref<IAppObject>& object) {
        EXPECT_EQ(S_OK, object->XMLSave(Root().Get(), document_.Get()));
        dom::Node last;
        EXPECT_EQ(S_OK, Root()->get_lastChild(last.Put()));
        return last;
    }
    static std::wstring Xml(const dom::Node& node) {
        com::Bstr text;
        EXPECT_EQ(S_OK, node->get_xml(text.Put()));
        std::wstring flat;
        for (const wchar_t c : text.View()) {
            if (c != L'\r' && c != L'\n' && c != L'\t') {
                flat += c;
            }
        }
        return flat;
    }
    static dom::Node Parsed(const wchar_t* xml) {
        static dom::Document parsed;
        parsed = dom::NewDocument(dom::kDocumentClass);
        VARIANT_BOOL loaded = VARIANT_FALSE;
        EXPECT_EQ(S_OK, parsed->loadXML(com::Bstr(xml).Get(), &loaded));
        dom::Element root;
        EXPECT_EQ(S_OK, parsed->get_documentElement(root.Put()));
        return dom::Node(root);
    }

    dom::Document document_ = dom::NewDocument(dom::kDocumentClass);
};

TEST_F(GenericXmlTest, WritesWhatItHolds) {
    const auto object = NewObject(L"O_Tam_AO_id");
    ASSERT_EQ(S_OK, object->put_UserName(com::Bstr(L"Valve <1>").Get()));
    ASSERT_EQ(S_OK, object->put_XPosition(12.5));
    ASSERT_EQ(S_OK, object->put_YPosition(-40));
    ASSERT_EQ(S_OK, InputOf(object, L"In1")->put_Value(com::Bstr(L"4203").Get()));
    ASSERT_EQ(S_OK, InputOf(object, L"In2").As<IVisibleItem>()->put_Visible(VARIANT_FALSE));
    ASSERT_EQ(S_OK, OutputOf(object, L"Out")->put_IsDisplayable(VARIANT_TRUE));
    ASSERT_EQ(S_OK, SetValueOf(AttributeOf(object, L"Gain"), L"2.5"));
    EXPECT_EQ(
        L"<O_Tam_AO_id><UserName>Valve &lt;1&gt;</UserName><X_Position>12.5</X_Position>"
        L"<Y_Position>-40</Y_Position>"
        L"<Inputs><In1 Visible=\"1\" Value=\"4203\"/><In2 Visible=\"0\" Value=\"\"/></Inputs>"
        L"<Outputs><Out Visible=\"1\" IsDisplayable=\"1\"/></Outputs>"
        L"<Attributes><Channel Visible=\"1\" Value=\"0\" SNVT_Type=\"8\" EnumDesc=\"\"/>"
        L"<Setup Visible=\"1\" Value=\"21\" SNVT_Type=\"162\" EnumDesc=\"\"/>"
        L"<Gain Visible=\"1\" Value=\"2.5\" SNVT_Type=\"82\" EnumDesc=\"\"/>"
        L"<Min Visible=\"1\" Value=\"0.000\" SNVT_Type=\"81\" EnumDesc=\"\"/>"
        L"<Max Visible=\"1\" Value=\"100.000\" SNVT_Type=\"81\" EnumDesc=\"\"/></Attributes></O_Tam_AO_id>",
        Xml(Saved(object)));
}

TEST_F(GenericXmlTest, ReadsBackWhatItWrote) {
    const auto object = NewObject(L"O_Tam_AO_id");
    ASSERT_EQ(S_OK, object->put_UserName(com::Bstr(L"Valve").Get()));
    ASSERT_EQ(S_OK, object->put_XPosition(0.1));
    ASSERT_EQ(S_OK, object->put_YPosition(1e-7));
    ASSERT_EQ(S_OK, InputOf(object, L"In1")->put_Value(com::Bstr(L"4203").Get()));
    ASSERT_EQ(S_OK, OutputOf(object, L"Out")->put_IsDisplayable(VARIANT_TRUE));
    ASSERT_EQ(S_OK, OutputOf(object, L"Out").As<IVisibleItem>()->put_Visible(VARIANT_FALSE));
    ASSERT_EQ(S_OK, SetValueOf(AttributeOf(object, L"Gain"), L"  blanks \"quoted\" "));
    ASSERT_EQ(S_OK, SetValueOf(AttributeOf(object, L"Min"), L" "));
    com::Ref<ISNVType> type;
    ASSERT_EQ(S_OK, AttributeOf(object, L"Setup")->get_SNVTType(type.Put()));
    ASSERT_EQ(S_OK, type.As<IEnumType>()->put_EnumDesc(com::Bstr(L"21,Auto;0,Off").Get()));
    ASSERT_EQ(S_OK, AttributeOf(object, L"Channel").As<IMutableTypeAttribute>()->SetType(type.Get()));
    Saved(object);
    com::Bstr text;
    ASSERT_EQ(S_OK, document_->get_xml(text.Put()));
    dom::Node element;
    ASSERT_EQ(S_OK, Parsed(std::wstring(text.View()).c_str())->get_firstChild(element.Put()));

    const auto loaded = NewObject(L"O_Tam_AO_id");
    ASSERT_EQ(S_OK, loaded->XmlLoad(element.Get()));
    double position = 0;
    EXPECT_EQ(L"Valve", TextOf(*loaded.Get(), &IAppObject::get_UserName));
    EXPECT_EQ(S_OK, loaded->get_XPosition(&position));
    EXPECT_EQ(0.1, position);
    EXPECT_EQ(S_OK, loaded->get_YPosition(&position));
    EXPECT_EQ(1e-7, position);
    EXPECT_EQ(L"4203", TextOf(*InputOf(loaded, L"In1").Get(), &IInput::get_Value));
    EXPECT_TRUE(Flag(*OutputOf(loaded, L"Out").Get(), &IOutput::get_IsDisplayable));
    EXPECT_FALSE(Flag(*OutputOf(loaded, L"Out").Get(), &IOutput::get_Visible));
    EXPECT_EQ(L"  blanks \"quoted\" ", ValueOf(AttributeOf(loaded, L"Gain")));
    EXPECT_EQ(L" ", ValueOf(AttributeOf(loaded, L"Min")));
    EXPECT_EQ(L"Auto", TextOf(*AttributeOf(loaded, L"Setup").Get(), &IAttribute::get_DispValue));
    ASSERT_EQ(S_OK, AttributeOf(loaded, L"Channel")->get_SNVTType(type.Put()));
    EXPECT_EQ(L"162", TextOf(*type.Get(), &ISNVType::get_ID));
    EXPECT_EQ(L"21,Auto;0,Off", TextOf(*type.Get(), &ISNVType::get_EnumDesc));
    EXPECT_EQ(Xml(Saved(object)), Xml(Saved(loaded)));
}

TEST_F(GenericXmlTest, GivesThePointsWhatWasReadBeforeTheyWereMade) {
    const auto object = Create<IAppObject>(__uuidof(GenericObject));
    VARIANT_BOOL done = VARIANT_FALSE;
    ASSERT_EQ(S_OK, object->XmlLoad(Parsed(L"<O_Tam_AI_id><UserName>Room</UserName>"
                                           L"<Attributes><Filter Value=\"7\"/></Attributes></O_Tam_AI_id>")
                                        .Get()));
    EXPECT_EQ(L"Room", TextOf(*object.Get(), &IAppObject::get_UserName));
    ASSERT_EQ(S_OK, object->Init(com::Bstr(L"O_Tam_AI_id").Get(), &done));
    ASSERT_EQ(S_OK, object->Create());
    EXPECT_EQ(L"7", ValueOf(AttributeOf(object, L"Filter")));
    ASSERT_EQ(S_OK, object->Create());
    EXPECT_EQ(L"2.5", ValueOf(AttributeOf(object, L"Filter"))) << "once";
}

TEST_F(GenericXmlTest, PassesOverWhatItDoesNotKnow) {
    const auto object = NewObject(L"O_Tam_AI_id");
    ASSERT_EQ(S_OK, object->put_UserName(com::Bstr(L"kept").Get()));
    ASSERT_EQ(S_OK,
              object->XmlLoad(Parsed(L"<O_Tam_AI_id><DevKey>D1</DevKey><TamObjectKey>AI1</TamObjectKey>"
                                     L"<!-- a comment --><x_position>3,5</x_position>"
                                     L"<attributes><offset Value=\"4\"/><Gain Value=\"1\"/></attributes>"
                                     L"<Inputs><In1 Value=\"2\"/></Inputs></O_Tam_AI_id>")
                                  .Get()));
    EXPECT_EQ(L"kept", TextOf(*object.Get(), &IAppObject::get_UserName));
    double position = 0;
    EXPECT_EQ(S_OK, object->get_XPosition(&position));
    EXPECT_EQ(3, position) << "\".\" whatever the locale";
    EXPECT_EQ(L"4", ValueOf(AttributeOf(object, L"Offset")));
    EXPECT_TRUE(Flag(*AttributeOf(object, L"Offset").Get(), &IAttribute::get_Visible)) << "nothing said";
}

TEST_F(GenericXmlTest, KeepsWhatASavedPointDoesNotTell) {
    const auto object = NewObject(L"O_Tam_AO_id");
    ASSERT_EQ(S_OK, InputOf(object, L"In1")->put_Value(com::Bstr(L"4203").Get()));
    ASSERT_EQ(S_OK, OutputOf(object, L"Out")->put_IsDisplayable(VARIANT_TRUE));
    ASSERT_EQ(S_OK, SetValueOf(AttributeOf(object, L"Gain"), L"2.5"));
    ASSERT_EQ(S_OK, object->XmlLoad(Parsed(L"<A><Inputs><In1/></Inputs><Outputs><Out/></Outputs>"
                                           L"<Attributes><Gain/></Attributes></A>")
                                        .Get()));
    EXPECT_EQ(L"4203", TextOf(*InputOf(object, L"In1").Get(), &IInput::get_Value));
    EXPECT_TRUE(Flag(*OutputOf(object, L"Out").Get(), &IOutput::get_IsDisplayable));
    EXPECT_EQ(L"2.5", ValueOf(AttributeOf(object, L"Gain")));
    EXPECT_TRUE(Flag(*InputOf(object, L"In1").Get(), &IInput::get_Visible));
}

TEST_F(GenericXmlTest, TakesExactlyOneForTrue) {
    const auto object = NewObject(L"O_Tam_AO_id");
    for (const wchar_t* text : {L"2", L"", L"True", L" 1", L"0"}) {
        ASSERT_EQ(S_OK, OutputOf(object, L"Out")->put_IsDisplayable(VARIANT_TRUE));
        const std::wstring xml =
            L"<A><Outputs><Out IsDisplayable=\"" + std::wstring(text) + L"\"/></Outputs></A>";
        ASSERT_EQ(S_OK, object->XmlLoad(Parsed(xml.c_str()).Get()));
        EXPECT_FALSE(Flag(*OutputOf(object, L"Out").Get(), &IOutput::get_IsDisplayable)) << text;
    }
}

TEST_F(GenericXmlTest, TellsNobodyOfWhatItLoads) {
    const auto object = NewObject(L"O_Tam_AI_id");
    const auto interceptor = Interceptor::Make();
    ASSERT_EQ(S_OK, object.As<IAttributeInterception>()->RegisterInterceptor(interceptor.Get()));
    ASSERT_EQ(S_OK,
              object->XmlLoad(
                  Parsed(L"<A><Attributes><Offset Value=\"4\" SNVT_Type=\"105\"/></Attributes></A>").Get()));
    EXPECT_EQ(L"4", ValueOf(AttributeOf(object, L"Offset")));
    EXPECT_TRUE(interceptor->calls.empty());
}

TEST_F(GenericXmlTest, AppendsNothingWhenItFails) {
    const auto object = Create<IAppObject>(__uuidof(GenericObject));
    EXPECT_EQ(kNotInitialised, object->XMLSave(Root().Get(), document_.Get()));
    EXPECT_EQ(L"The block has no definition to name its element after; call Init first", LastError());
    const auto made = NewObject(L"O_Tam_AI_id");
    EXPECT_EQ(support::kObjectNotSet, made->XMLSave(nullptr, document_.Get()));
    EXPECT_EQ(support::kTypeMismatch, made->XMLSave(Root().Get(), Root().Get()));
    EXPECT_EQ(L"<Project/>", Xml(Root()));
    EXPECT_EQ(support::kObjectNotSet, made->XmlLoad(nullptr));
    EXPECT_EQ(support::kTypeMismatch, made->XmlLoad(made.Get()));
}

TEST_F(GenericXmlTest, WritesForSimulationsAndOtherTools) {
    const auto object = NewObject(L"O_InpCntx_id");
    ASSERT_EQ(S_OK, object->put_UserName(com::Bstr(L"Inputs").Get()));
    ASSERT_EQ(S_OK, object->put_ExtendedKey(com::Bstr(L"E1").Get()));
    const std::wstring points =
        L"<Inputs><In1 Visible=\"1\" Value=\"\"/></Inputs>"
        L"<Outputs><Out Visible=\"1\" IsDisplayable=\"0\"/></Outputs>"
        L"<Attributes><Mask Visible=\"1\" Value=\"255\" SNVT_Type=\"83\" EnumDesc=\"\"/>"
        L"</Attributes></O_InpCntx_id>";
    ASSERT_EQ(S_OK, object->XMLSaveSim(Root().Get(), document_.Get()));
    ASSERT_EQ(S_OK, object->XMLSaveForInteroperability(Root().Get(), document_.Get()));
    EXPECT_EQ(L"<Project><O_InpCntx_id><UserName>Inputs</UserName>" + points +
                  L"<O_InpCntx_id><UserName>Inputs</UserName><Key>E1</Key>" + points + L"</Project>",
              Xml(Root()));
}

} // namespace

} // namespace hosttest
