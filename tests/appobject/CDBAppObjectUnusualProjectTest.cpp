#include "tests/appobject/Module.h"

#include <functional>
#include <limits>
#include <string>
#include <vector>

using namespace support;
using namespace modules;

namespace {

constexpr CLSID kOlderDocument = {
    0xF5078F32, 0xC551, 0x11D3, {0x89, 0xB9, 0x00, 0x00, 0xF8, 0x1F, 0xE2, 0x21}};
constexpr CLSID kFreeThreadedDocument = {
    0x88D96A06, 0xF192, 0x11D4, {0xA6, 0x5F, 0x00, 0x40, 0x96, 0x32, 0x51, 0xE5}};

using Node = com::Ref<IXMLDOMNode>;

Document ParsedBy(REFCLSID parser, const std::wstring& xml) {
    Document document;
    com::Check(CoCreateInstance(parser, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IXMLDOMDocument2),
                                document.PutVoid()));
    VARIANT_BOOL done = VARIANT_FALSE;
    com::Check(document->loadXML(com::Bstr(xml).Get(), &done));
    EXPECT_EQ(done, VARIANT_TRUE);
    return document;
}

Node At(const Document& document, const wchar_t* path) {
    return tam::dom::Select(Node(document.Get()), path);
}

void Remove(const Node& node) {
    Node removed;
    com::Check(tam::dom::ParentOf(node)->removeChild(node.Get(), removed.Put()));
}

/// Projects of a host, which are documents of its own: it may hand over any
/// node of any parser, and change the document while it is read.
class CDBAppObjectUnusualProjectTest : public ModuleTest {
  protected:
    static std::wstring UserName(const com::Ref<IAppObject>& module) {
        return Text(module, &IAppObject::get_UserName);
    }
    static std::vector<bool> Shown(const com::Ref<IAppObject>& module) {
        std::vector<bool> flags;
        for (const wchar_t* name : {L"Out1", L"Out2", L"Out3"}) {
            flags.push_back(Flag(Output(module, name), &IOutput::get_IsDisplayable));
        }
        return flags;
    }
    com::Ref<IAppObject> WithOutputs() { return Loaded(Stream({}, L"<Out1/><Out2/><Out3/>")); }
    void ExpectLoadReport(const std::wstring& description) {
        ExpectOneReport(description, kLocation, L"Sub IAppObject_XmlLoad");
    }
    /// Loads a project that the host changes when it is given its turn at the first flag.
    com::Ref<IAppObject> LoadedWhile(const std::function<void(const Document&)>& change) {
        const Document document = Parse(L"<Valve><UserName>First</UserName><OutReferences><Out1>1</Out1>"
                                        L"<Out2>1</Out2><Out3>1</Out3></OutReferences>"
                                        L"<UserName>Last</UserName></Valve>");
        auto module = WithOutputs();
        const OnYield changing([&] { change(document); });
        EXPECT_EQ(module->XmlLoad(Root(document).Get()), S_OK);
        EXPECT_TRUE(changing.Ran());
        return module;
    }
};

TEST_F(CDBAppObjectUnusualProjectTest, IsReadFromTheChildrenOfAnyNode) {
    const Document document = Parse(L"<?UserName no?><!--UserName--><Valve UserName='no'>UserName"
                                    L"<![CDATA[UserName]]><UserName>no</UserName></Valve>");
    const Node root(Root(document).Get());
    Node attribute;
    com::Ref<IXMLDOMNamedNodeMap> attributes;
    com::Check(root->get_attributes(attributes.Put()));
    com::Check(attributes->getNamedItem(com::Bstr(L"UserName").Get(), attribute.Put()));
    const Node text = tam::dom::FirstChild(root);
    for (const Node& node : {Node(document.Get()), tam::dom::FirstChild(Node(document.Get())), attribute,
                             text, tam::dom::NextSibling(text), At(document, L"comment()")}) {
        const auto module = NewModule();
        Put(module, &IAppObject::put_UserName, L"Before");
        EXPECT_EQ(module->XmlLoad(node.Get()), S_OK);
        EXPECT_EQ(UserName(module), L"Before");
    }
    com::Ref<IXMLDOMDocumentFragment> fragment;
    com::Check(document->createDocumentFragment(fragment.Put()));
    Node moved;
    com::Check(fragment->appendChild(At(document, L"Valve/UserName").Get(), moved.Put()));
    const auto module = NewModule();
    EXPECT_EQ(module->XmlLoad(fragment.Get()), S_OK);
    EXPECT_EQ(UserName(module), L"no");
}

TEST_F(CDBAppObjectUnusualProjectTest, MayBeOfAnyParser) {
    for (const CLSID& parser : {kOlderDocument, kFreeThreadedDocument}) {
        const Document document =
            ParsedBy(parser, L"<Valve><!--a--><UserName>Mine</UserName><TamObjID>9</TamObjID>"
                             L"<OutReferences><Out2>1</Out2></OutReferences></Valve>");
        const auto module = WithOutputs();
        EXPECT_EQ(module->XmlLoad(Root(document).Get()), S_OK);
        EXPECT_EQ(UserName(module), L"Mine");
        EXPECT_EQ(Short(module.As<ITamObject>(), &ITamObject::get_TamObjectID), 9);
        EXPECT_EQ(Shown(module), (std::vector<bool>{false, true, false}));
        EXPECT_EQ(module->XMLSave(Root(document).Get(), document.Get()), S_OK);
        EXPECT_EQ(tam::dom::TextOf(At(document, L"Valve/O_Tam_id/UserName")), L"Mine");
        EXPECT_EQ(module->XMLSaveForInteroperability(Root(document).Get(), document.Get()), S_OK);
        EXPECT_TRUE(At(document, L"Valve/O_Tam_id[Key]/Outputs/Out2/@IsDisplayable"));
    }
}

TEST_F(CDBAppObjectUnusualProjectTest, IsReadOnInASectionThatTheHostTakesAway) {
    const auto module =
        LoadedWhile([](const Document& document) { Remove(At(document, L"Valve/OutReferences")); });
    EXPECT_EQ(Shown(module), (std::vector<bool>{true, true, true}));
    EXPECT_EQ(UserName(module), L"First") << "nothing stands after the section any more";
}

TEST_F(CDBAppObjectUnusualProjectTest, EndsASectionAtAnElementThatTheHostTakesAway) {
    const auto module =
        LoadedWhile([](const Document& document) { Remove(At(document, L"Valve/OutReferences/Out1")); });
    EXPECT_EQ(Shown(module), (std::vector<bool>{true, false, false}));
    EXPECT_EQ(UserName(module), L"Last");
}

TEST_F(CDBAppObjectUnusualProjectTest, PassesOverWhatTheHostTakesAwayAheadAndReadsWhatItAdds) {
    const auto module = LoadedWhile([](const Document& document) {
        Remove(At(document, L"Valve/OutReferences/Out2"));
        tam::dom::AppendText(document, At(document, L"Valve/OutReferences"), L"Other", L"0");
        tam::dom::AppendText(document, At(document, L"Valve"), L"USERNAME", L"Added");
    });
    EXPECT_EQ(Shown(module), (std::vector<bool>{true, false, true}));
    EXPECT_EQ(UserName(module), L"Added");
}

TEST_F(CDBAppObjectUnusualProjectTest, BearsADocumentThatTheHostEmptiesMeanwhile) {
    const auto module = LoadedWhile([](const Document& document) {
        VARIANT_BOOL done = VARIANT_FALSE;
        com::Check(document->loadXML(com::Bstr(L"<Other/>").Get(), &done));
    });
    LoadProject(module, L"<Valve><UserName>Mine</UserName></Valve>");
    EXPECT_EQ(UserName(module), L"Mine");
}

// Decided: what two projects say is not mixed. The one that is read last counts.
TEST_F(CDBAppObjectUnusualProjectTest, EndsWhenAnotherIsReadMeanwhile) {
    const auto module = WithOutputs();
    const OnYield loading([&] {
        LoadProject(module, L"<Valve><OutReferences><Out3>1</Out3></OutReferences><UserName>Inner</UserName>"
                            L"<TamObjID>9</TamObjID></Valve>");
        EXPECT_EQ(UserName(module), L"Inner");
    });
    LoadProject(module,
                L"<Valve><OutReferences><Out1>1</Out1></OutReferences><UserName>Outer</UserName></Valve>");
    EXPECT_TRUE(loading.Ran());
    EXPECT_EQ(UserName(module), L"Inner");
    EXPECT_EQ(Short(module.As<ITamObject>(), &ITamObject::get_TamObjectID), 9);
    EXPECT_EQ(Shown(module), (std::vector<bool>{false, false, true}));
    ExpectLoadReport(L"The load was ended, because the object was loaded again or destroyed meanwhile");
}

TEST_F(CDBAppObjectUnusualProjectTest, EndsWithDestroy) {
    const auto module = WithOutputs();
    const OnYield loading([&] { EXPECT_EQ(module->Destroy(), S_OK); });
    LoadProject(module,
                L"<Valve><OutReferences><Out1>0</Out1></OutReferences><UserName>Late</UserName></Valve>");
    EXPECT_TRUE(loading.Ran());
    EXPECT_NE(UserName(module), L"Late");
    ExpectLoadReport(L"The load was ended, because the object was loaded again or destroyed meanwhile");
}

TEST_F(CDBAppObjectUnusualProjectTest, MayBeDeep) {
    const Document document = Parse(L"<Valve><UserName/><OutReferences><Out1/></OutReferences></Valve>");
    for (const wchar_t* path : {L"Valve/UserName", L"Valve/OutReferences/Out1"}) {
        Node node = At(document, path);
        for (int i = 0; i < 10000; ++i) {
            node = Node(tam::dom::Append(document, node, L"a"));
        }
        tam::dom::AppendText(document, node, L"a", L"1");
    }
    const auto module = WithOutputs();
    EXPECT_EQ(module->XmlLoad(Root(document).Get()), S_OK);
    ExpectLoadReport(kObjectNotSetText); // an element is no value
    Remove(At(document, L"Valve/UserName"));
    EXPECT_EQ(module->XmlLoad(Root(document).Get()), S_OK);
    EXPECT_EQ(Shown(module), (std::vector<bool>{false, false, false}))
        << "a 1 far below is not the flag's text";
}

// A host's own document may have a document type. A reference to an entity is
// a node, and no text.
TEST_F(CDBAppObjectUnusualProjectTest, ReadsNoEntities) {
    const std::wstring type = L"<!DOCTYPE Valve [<!ENTITY e \"1\">]>";
    const auto module = WithOutputs();
    EXPECT_EQ(module->XmlLoad(
                  Root(Parse(type + L"<Valve><UserName>&e;</UserName><TamObjID>9</TamObjID></Valve>")).Get()),
              S_OK);
    ExpectLoadReport(kObjectNotSetText);
    EXPECT_EQ(UserName(module), L"Module");
    EXPECT_EQ(
        module->XmlLoad(
            Root(Parse(type + L"<Valve><OutReferences><Out1>&e;</Out1></OutReferences></Valve>")).Get()),
        S_OK);
    EXPECT_EQ(Shown(module), (std::vector<bool>{false, false, false}));
}

TEST_F(CDBAppObjectUnusualProjectTest, HasPositionsOfTheWholeRange) {
    const auto position = [&](const std::wstring& text) {
        const auto module = NewModule();
        LoadProject(module, L"<Valve><X_Position>" + text + L"</X_Position><Y_Position>" + text +
                                L"</Y_Position></Valve>");
        const double x = Double(module, &IAppObject::get_XPosition);
        EXPECT_EQ(Double(module, &IAppObject::get_YPosition), x);
        return x;
    };
    EXPECT_EQ(position(L"1.7976931348623157E308"), std::numeric_limits<double>::max());
    EXPECT_EQ(position(L"-1.7976931348623157D+308"), std::numeric_limits<double>::lowest());
    EXPECT_EQ(position(L"4.9E-324"), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(position(L"1E-400"), 0.0);
    EXPECT_EQ(position(L"0.1"), 0.1);
    EXPECT_EQ(position(L"1,234.5"), 1.0);
    EXPECT_EQ(position(L"1.234,5"), 1.234);
    EXPECT_EQ(position(L"1 2 . 5"), 12.5);
    EXPECT_EQ(position(L"NaN"), 0.0);
    EXPECT_EQ(position(L"INF"), 0.0);
    EXPECT_EQ(position(L"1.#INF"), 1.0);
    EXPECT_EQ(position(L"&amp;HFFFF"), -1.0);
    EXPECT_EQ(position(L"&amp;H80000000"), -2147483648.0);
    for (const wchar_t* text :
         {L"1.8E308", L"-1.8E308", L"1E309", L"1E999999999999999999999", L"&amp;H100000000"}) {
        const auto module = NewModule();
        EXPECT_EQ(module->put_XPosition(7), S_OK);
        LoadProject(module, std::wstring(L"<Valve><X_Position>") + text + L"</X_Position></Valve>");
        ExpectLoadReport(kOverflowText);
        EXPECT_EQ(Double(module, &IAppObject::get_XPosition), 7.0);
    }
}

TEST_F(CDBAppObjectUnusualProjectTest, HasObjectIdsUpToTheirLimits) {
    const auto objectId = [&](const std::wstring& text) {
        const auto module = NewModule();
        LoadProject(module, L"<Valve><TamObjID>" + text + L"</TamObjID></Valve>");
        return Short(module.As<ITamObject>(), &ITamObject::get_TamObjectID);
    };
    EXPECT_EQ(objectId(L"32767"), 32767);
    EXPECT_EQ(objectId(L"32766.5"), 32766) << "the even one of two neighbours";
    EXPECT_EQ(objectId(L"-32768.5"), -32768);
    EXPECT_EQ(objectId(L" \t\n7"), 7);
    EXPECT_EQ(objectId(L"&amp;H8000"), -32768);
    EXPECT_EQ(objectId(L"1 000"), 1000);
    for (const wchar_t* text : {L"32767.5", L"-32768.51", L"1E309", L"&amp;H8000&amp;"}) {
        EXPECT_EQ(objectId(text), 0);
        ExpectLoadReport(kOverflowText);
    }
}

} // namespace
