#include "tests/points/Points.h"
#include "tests/support/HostWindows.h"

#include <cstddef>
#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

using Node = com::Ref<IXMLDOMNode>;
using Texts = std::vector<std::wstring>;

/// Saved collections that a host hands over as any node, and changes while they
/// are read.
class UnusualSavedTest : public PointsTest {
  protected:
    Document document;

    void SetUp() override {
        PointsTest::SetUp();
        const std::wstring type = L"<SNVTTYPE>36</SNVTTYPE>";
        const auto names = {L"A", L"B", L"C"};
        module = Loaded(Stream(Named(names), Named(names), Named(names, type)));
    }
    void TearDown() override {
        document.Reset();
        PointsTest::TearDown();
    }
    Node At(const wchar_t* path) const { return tam::dom::Select(Node(document.Get()), path); }
    static void Remove(const Node& node) {
        Node removed;
        com::Check(tam::dom::ParentOf(node)->removeChild(node.Get(), removed.Put()));
    }
    /// Each collection reads the node.
    void Read(const Node& node) const {
        EXPECT_EQ(Inputs(module).As<_CDBInputs>()->XmlLoad(node.Get()), S_OK);
        EXPECT_EQ(Outputs(module).As<_CDBOutputs>()->XmlLoad(node.Get()), S_OK);
        EXPECT_EQ(Attributes(module).As<_CDBAttributes>()->XmlLoad(node.Get()), S_OK);
    }
    void ExpectUnknownIn(const std::initializer_list<const wchar_t*> classes) {
        const auto boxes = Boxes();
        ASSERT_EQ(boxes.size(), classes.size());
        std::size_t i = 0;
        for (const wchar_t* name : classes) {
            ExpectReport(boxes[i++], kInvalidCallText, std::wstring(L"O_Tam_id Class Module ") + name,
                         L"Sub XmlLoad");
        }
    }
    bool IsShown(const wchar_t* name) { return Flag(Output(module, name), &IOutput::get_IsDisplayable); }
};

TEST_F(UnusualSavedTest, HaveNoPointsInNodesWithoutElements) {
    document = Parse(L"<?A b?><!--A--><Saved a='A'/>");
    Node attribute;
    com::Ref<IXMLDOMNamedNodeMap> attributes;
    com::Check(Root(document)->get_attributes(attributes.Put()));
    com::Check(attributes->getNamedItem(com::Bstr(L"a").Get(), attribute.Put()));
    for (const Node& node : {At(L"Saved"), At(L"comment()"), tam::dom::FirstChild(Node(document.Get()))}) {
        Read(node);
    }
    EXPECT_EQ(Inputs(module).As<_CDBInputs>()->XmlLoad(attribute.Get()), S_OK);
    EXPECT_EQ(Outputs(module).As<_CDBOutputs>()->XmlLoad(attribute.Get()), S_OK);
    EXPECT_EQ(Names(Inputs(module)), (Texts{L"A", L"B", L"C"}));
}

TEST_F(UnusualSavedTest, TakeADocumentsElementForAPoint) {
    document = Parse(L"<Saved><A/></Saved>");
    Read(Node(document.Get()));
    ExpectUnknownIn({L"CDBInputs", L"CDBOutputs", L"CDBAttributes"});
    document = Parse(L"<C><IsDisplayable>True</IsDisplayable></C>");
    Read(Node(document.Get()));
    EXPECT_EQ(Names(Inputs(module)), (Texts{L"C", L"A", L"B"}));
    EXPECT_TRUE(IsShown(L"C"));
}

TEST_F(UnusualSavedTest, MoveARepeatedNameEachTime) {
    EXPECT_EQ(Inputs(module).As<_CDBInputs>()->XmlLoad(
                  Saved(L"<Inputs><C/><c/><x:C xmlns:x='urn:x'/></Inputs>").Get()),
              S_OK);
    EXPECT_EQ(Names(Inputs(module)), (Texts{L"A", L"B", L"C"}));
    EXPECT_EQ(Inputs(module).As<_CDBInputs>()->XmlLoad(Saved(L"<Inputs><A/><B/><C/><A/><B/></Inputs>").Get()),
              S_OK);
    EXPECT_EQ(Names(Inputs(module)), (Texts{L"A", L"B", L"C"})) << "there are no positions after the last";
}

TEST_F(UnusualSavedTest, EndAtAnElementThatTheHostTakesAway) {
    document = Parse(L"<Saved><C/><B/><A/></Saved>");
    const Listener taking([&] { Remove(At(L"Saved/C")); });
    taking.Post();
    EXPECT_EQ(Inputs(module).As<_CDBInputs>()->XmlLoad(Root(document).Get()), S_OK);
    EXPECT_EQ(Names(Inputs(module)), (Texts{L"C", L"A", L"B"}));
}

TEST_F(UnusualSavedTest, PassOverWhatTheHostTakesAwayAheadAndReadWhatItAdds) {
    document = Parse(L"<Saved><C/><Unknown/></Saved>");
    const Listener changing([&] {
        Remove(At(L"Saved/Unknown"));
        tam::dom::Append(document, At(L"Saved"), L"B");
    });
    changing.Post();
    EXPECT_EQ(Inputs(module).As<_CDBInputs>()->XmlLoad(Root(document).Get()), S_OK);
    EXPECT_EQ(Names(Inputs(module)), (Texts{L"C", L"B", L"A"}));
}

TEST_F(UnusualSavedTest, AreReadOnWhenTheHostTakesThemAway) {
    document =
        Parse(L"<Host><Saved><C><IsDisplayable>1</IsDisplayable></C><B><IsDisplayable>1</IsDisplayable></B>"
              L"</Saved></Host>");
    const Listener taking([&] { Remove(At(L"Host/Saved")); });
    taking.Post();
    EXPECT_EQ(Outputs(module).As<_CDBOutputs>()->XmlLoad(At(L"Host/Saved").Get()), S_OK);
    EXPECT_TRUE(IsShown(L"B"));
    EXPECT_TRUE(IsShown(L"C"));
    EXPECT_FALSE(IsShown(L"A"));
}

TEST_F(UnusualSavedTest, MayBeEmptiedMeanwhile) {
    document = Parse(L"<Saved><C/><B/></Saved>");
    const Listener emptying([&] {
        VARIANT_BOOL done = VARIANT_FALSE;
        com::Check(document->loadXML(com::Bstr(L"<Other/>").Get(), &done));
    });
    emptying.Post();
    EXPECT_EQ(Attributes(module).As<_CDBAttributes>()->XmlLoad(Root(document).Get()), S_OK);
    Read(Node(Saved(L"<Saved><B/></Saved>").Get()));
    EXPECT_EQ(Names(Inputs(module)), (Texts{L"B", L"A", L"C"}));
}

TEST_F(UnusualSavedTest, HaveFlagsAsThePlatformReadsThemWhoeverTheUser) {
    const auto flag = [&](const std::wstring& text) {
        EXPECT_EQ(Outputs(module).As<_CDBOutputs>()->XmlLoad(
                      Saved(L"<Outputs><A><IsDisplayable>False</IsDisplayable><IsDisplayable>" + text +
                            L"</IsDisplayable></A></Outputs>")
                          .Get()),
                  S_OK);
        return IsShown(L"A");
    };
    for (const wchar_t* text : {L"True", L"TRUE", L"#TRUE#", L"1", L"-1", L"7", L"1e308", L"&amp;H1"}) {
        EXPECT_TRUE(flag(text)) << com::Bstr(text).Get();
    }
    for (const wchar_t* text : {L"False", L"#FALSE#", L"0", L"-0"}) {
        EXPECT_FALSE(flag(text)) << com::Bstr(text).Get();
    }
    for (const wchar_t* text : {L"", L"yes", L"NaN", L"Wahr", L"1e309", L"True False"}) {
        EXPECT_FALSE(flag(text)) << com::Bstr(text).Get();
        EXPECT_EQ(Boxes().size(), 1u) << com::Bstr(text).Get();
    }
}

} // namespace
