#include "tests/points/Points.h"

#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

/// Saving into and loading from documents as hosts really keep them.
class UnusualSavingTest : public PointsTest {
  protected:
    com::Ref<_CDBInput> input;
    com::Ref<_CDBOutput> output;
    com::Ref<_CDBAttribute> gain;

    void SetUp() override {
        PointsTest::SetUp();
        module =
            Loaded(Stream(L"<In1><SNVTCOMPATIBILITYLIST>105,8</SNVTCOMPATIBILITYLIST></In1>",
                          L"<Out1><SNVTTYPE>105</SNVTTYPE></Out1>", L"<Gain><SNVTTYPE>36</SNVTTYPE></Gain>"));
        input = Input(module, L"1").As<_CDBInput>();
        output = Output(module, L"1").As<_CDBOutput>();
        gain = Attribute(module, L"1").As<_CDBAttribute>();
    }
    void TearDown() override {
        input.Reset();
        output.Reset();
        gain.Reset();
        PointsTest::TearDown();
    }
    bool IsConnected() const { return Flag(output.As<IOutput>(), &IOutput::get_IsConnected); }
    bool IsDisplayable() const { return Flag(output.As<IOutput>(), &IOutput::get_IsDisplayable); }
};

TEST_F(UnusualSavingTest, AppendsANewElementEachTime) {
    const Document document = Parse(L"<Host/>");
    const auto root = Root(document);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(input->XMLSave(document.Get(), root.Get()), S_OK);
        EXPECT_EQ(output->XMLSave(document.Get(), root.Get()), S_OK);
        EXPECT_EQ(gain->XMLSave(root.Get(), document.Get()), S_OK);
    }
    EXPECT_EQ(ChildNames(document, L"Host"),
              (std::vector<std::wstring>{L"In1", L"Out1", L"Gain", L"In1", L"Out1", L"Gain"}));
    EXPECT_EQ(ChildNames(document, L"Host/In1[2]"), std::vector<std::wstring>{L"SNVT_List"});
}

TEST_F(UnusualSavingTest, SavesIntoAnEmptyDocument) {
    const Document saved = NewDocument();
    EXPECT_EQ(input->XMLSave(saved.Get(), saved.Get()), S_OK);
    EXPECT_EQ(TextAt(saved, L"/In1/SNVT_List"), L"105,8");
    const Document empty = NewDocument();
    EXPECT_EQ(gain->XMLSave(empty.Get(), empty.Get()), S_OK);
    EXPECT_EQ(ChildNames(empty, L"/Gain"), std::vector<std::wstring>{});
}

TEST_F(UnusualSavingTest, SavesWithTheOwnerDocumentOfTheNode) {
    const Document document = Parse(L"<Host/>");
    com::Ref<IXMLDOMDocument> owner;
    ASSERT_EQ(Root(document)->get_ownerDocument(owner.Put()), S_OK);
    EXPECT_EQ(output->XMLSave(owner.Get(), Root(document).Get()), S_OK);
    EXPECT_EQ(TextAt(document, L"Host/Out1/SNVT_Type"), L"105");
}

TEST_F(UnusualSavingTest, RefusesToExchangeDocumentAndNode) {
    // An input takes the document first, an attribute the node.
    const Document document = Parse(L"<Host/>");
    const auto root = Root(document);
    EXPECT_EQ(input->XMLSave(root.Get(), document.Get()), S_OK);
    EXPECT_EQ(gain->XMLSave(document.Get(), root.Get()), S_OK);
    const auto boxes = Boxes();
    ASSERT_EQ(boxes.size(), 2u);
    ExpectReport(boxes[0], kTypeMismatchText, L"O_Tam_id Class Module CDBInput", L"Sub XMLSave");
    ExpectReport(boxes[1], kTypeMismatchText, L"O_Tam_id Class Module CDBAttribute", L"Sub XMLSave");
}

TEST_F(UnusualSavingTest, LoadsFlagsFromSectionsAndBetweenLineBreaksAndComments) {
    EXPECT_EQ(output->XmlLoad(Saved(L"<Out1>text<x:IsConnected xmlns:x='urn:x'>\n  <!--c-->True\n"
                                    L"</x:IsConnected><?IsDisplayed 1?>"
                                    L"<IsDisplayable a='0'><![CDATA[1]]></IsDisplayable></Out1>")
                                  .Get()),
              S_OK);
    EXPECT_TRUE(IsConnected());
    EXPECT_TRUE(IsDisplayable());
}

TEST_F(UnusualSavingTest, TakesTheLastOfRepeatedFlags) {
    EXPECT_EQ(output->XmlLoad(Saved(L"<Out1><IsConnected>1</IsConnected><IsDisplayable>0</IsDisplayable>"
                                    L"<ISCONNECTED>0</ISCONNECTED><isdisplayable>1</isdisplayable></Out1>")
                                  .Get()),
              S_OK);
    EXPECT_FALSE(IsConnected());
    EXPECT_TRUE(IsDisplayable());
}

TEST_F(UnusualSavingTest, LoadsFromAnElementOfAnyName) {
    EXPECT_EQ(output->XmlLoad(Saved(L"<Other><IsConnected>1</IsConnected></Other>").Get()), S_OK);
    EXPECT_TRUE(IsConnected());
    EXPECT_EQ(gain->XmlLoad(Saved(L"<Other><SNVT_TYPE>8</SNVT_TYPE></Other>").Get()), S_OK);
    EXPECT_EQ(Text(Object(gain.As<IAttribute>(), &IAttribute::get_SNVTType), &ISNVType::get_ID), L"8");
}

TEST_F(UnusualSavingTest, LoadsStillWhenTheModuleIsGone) {
    const Document document = Parse(L"<Host/>");
    module.Reset();
    EXPECT_EQ(output->XmlLoad(Saved(L"<Out1><IsConnected>1</IsConnected></Out1>").Get()), S_OK);
    EXPECT_TRUE(IsConnected());
    EXPECT_EQ(output->XMLSave(document.Get(), Root(document).Get()), S_OK);
    EXPECT_EQ(input->XMLSave(document.Get(), Root(document).Get()), S_OK);
    EXPECT_EQ(gain->XMLSave(Root(document).Get(), document.Get()), S_OK);
    EXPECT_EQ(ChildNames(document, L"Host"), (std::vector<std::wstring>{L"Out1", L"In1", L"Gain"}));
    EXPECT_EQ(TextAt(document, L"Host/Out1/IsConnected"), L"True");
}

} // namespace
