#include "com/LateBound.h"
#include "tests/internal/Channel.h"

#include <string>
#include <vector>

namespace internal_tests {

namespace {

using support::Document;
using Texts = std::vector<std::wstring>;

/// The text form of a node without the line ends and indents that the DOM adds.
std::wstring Flat(IUnknown* node) {
    std::wstring flat;
    for (const wchar_t letter : support::Xml(node)) {
        if (letter != L'\r' && letter != L'\n' && letter != L'\t') {
            flat += letter;
        }
    }
    return flat;
}

/// Lets the generic object append this element, as it would save itself.
void SavesAs(const Double& object, const std::wstring& xml) {
    object->On(L"XMLSave", [xml](const Invocation& call) {
        const auto parent = com::Query<IXMLDOMNode>(call.Input(0).pdispVal);
        com::Ref<IXMLDOMNode> imported;
        const auto root = support::Root(support::Parse(xml));
        root->cloneNode(VARIANT_TRUE, imported.Put());
        return parent->appendChild(imported.Get(), nullptr);
    });
}

class TamInternalAppObjectXmlTest : public InternalTest {
  protected:
    /// The saved project after one object was saved into it.
    static std::wstring Save(const com::Ref<IAppObject>& object,
                             const std::wstring& project = L"<Project/>") {
        const Document document = support::Parse(project);
        const auto root = support::Root(document);
        EXPECT_EQ(object->XMLSave(root.Get(), document.Get()), S_OK);
        return Flat(root.Get());
    }
};

TEST_F(TamInternalAppObjectXmlTest, PutsItsTwoKeysBeforeWhatTheGenericObjectWrote) {
    const auto object = Created();
    SavesAs(generic.object, L"<AI><Name>Level</Name><Tag/></AI>");
    EXPECT_EQ(Save(object), L"<Project><AI><DevKey>DEV7</DevKey><TamObjectKey>AI3</TamObjectKey>"
                            L"<Name>Level</Name><Tag/></AI></Project>");
}

TEST_F(TamInternalAppObjectXmlTest, HandsTheHostsNodeAndDocumentOn) {
    const auto object = Created();
    const Document document = support::Parse(L"<Project/>");
    const auto root = support::Root(document);
    bool same = false;
    generic.object->On(L"XMLSave", [&](const Invocation& call) {
        same = com::SameObject(call.Input(0).pdispVal, root.Get()) &&
               com::SameObject(call.Input(1).pdispVal, document.Get());
        com::Ref<IXMLDOMElement> element;
        document->createElement(com::Bstr(L"AI").Get(), element.Put());
        return root->appendChild(element.Get(), nullptr);
    });
    EXPECT_EQ(object->XMLSave(root.Get(), document.Get()), S_OK);
    EXPECT_TRUE(same);
    EXPECT_EQ(Said(L"generic").size(), 1u);
}

TEST_F(TamInternalAppObjectXmlTest, TakesTheLastElementOfTheParent) {
    const auto object = Created();
    SavesAs(generic.object, L"<AI><Name/></AI>");
    EXPECT_EQ(
        Save(object, L"<Project><Other/></Project>"),
        L"<Project><Other/><AI><DevKey>DEV7</DevKey><TamObjectKey>AI3</TamObjectKey><Name/></AI></Project>");
}

TEST_F(TamInternalAppObjectXmlTest, AddsItsKeysToAnElementWithoutChildren) {
    const auto object = Created();
    SavesAs(generic.object, L"<AI/>");
    EXPECT_EQ(Save(object),
              L"<Project><AI><DevKey>DEV7</DevKey><TamObjectKey>AI3</TamObjectKey></AI></Project>");
}

TEST_F(TamInternalAppObjectXmlTest, PutsItsKeysBeforeATextOrAComment) {
    const auto object = Created();
    SavesAs(generic.object, L"<AI><!--first-->text</AI>");
    EXPECT_EQ(
        Save(object),
        L"<Project><AI><DevKey>DEV7</DevKey><TamObjectKey>AI3</TamObjectKey><!--first-->text</AI></Project>");
}

TEST_F(TamInternalAppObjectXmlTest, GivesEachKeyATextNodeEvenWhenItIsEmpty) {
    const auto object = NewChannel(L"", Device().Get());
    EXPECT_EQ(object->Create(), S_OK);
    device->Set(L"DeviceKey", L"");
    const Document document = support::Parse(L"<Project/>");
    const auto root = support::Root(document);
    SavesAs(generic.object, L"<AI/>");
    EXPECT_EQ(object->XMLSave(root.Get(), document.Get()), S_OK);
    for (const wchar_t* path : {L"AI/DevKey", L"AI/TamObjectKey"}) {
        com::Ref<IXMLDOMNode> node;
        com::Check(root->selectSingleNode(com::Bstr(path).Get(), node.Put()));
        ASSERT_TRUE(node);
        com::Ref<IXMLDOMNode> child;
        com::Check(node->get_firstChild(child.Put()));
        ASSERT_TRUE(child) << "no text node";
        DOMNodeType type = NODE_INVALID;
        com::Check(child->get_nodeType(&type));
        EXPECT_EQ(type, NODE_TEXT);
    }
}

TEST_F(TamInternalAppObjectXmlTest, WritesKeysWithMarkupCharacters) {
    const auto object = NewChannel(L"A<&>I", Device().Get());
    EXPECT_EQ(object->Create(), S_OK);
    SavesAs(generic.object, L"<AI/>");
    EXPECT_EQ(
        Save(object),
        L"<Project><AI><DevKey>DEV7</DevKey><TamObjectKey>A&lt;&amp;&gt;I</TamObjectKey></AI></Project>");
}

TEST_F(TamInternalAppObjectXmlTest, DoesNotNeedCreate) {
    const auto object = NewChannel(L"AI3", Device().Get());
    SavesAs(generic.object, L"<AI/>");
    EXPECT_EQ(Save(object),
              L"<Project><AI><DevKey>DEV7</DevKey><TamObjectKey>AI3</TamObjectKey></AI></Project>");
}

TEST_F(TamInternalAppObjectXmlTest, AddsNothingWhenTheGenericObjectFails) {
    const auto object = Created();
    const Document document = support::Parse(L"<Project><Other/></Project>");
    const auto root = support::Root(document);
    generic.object->Fail(L"XMLSave", static_cast<HRESULT>(0x80044444u), L"cannot be saved");
    ExpectPassedBack(object->XMLSave(root.Get(), document.Get()), static_cast<HRESULT>(0x80044444u),
                     L"cannot be saved");
    EXPECT_EQ(Flat(root.Get()), L"<Project><Other/></Project>");
}

TEST_F(TamInternalAppObjectXmlTest, PassesTheErrorOfTheDeviceBackUnchanged) {
    const auto object = Created();
    SavesAs(generic.object, L"<AI/>");
    device->Fail(L"get DeviceKey", static_cast<HRESULT>(0x80045555u), L"no key");
    const Document document = support::Parse(L"<Project/>");
    ExpectPassedBack(object->XMLSave(support::Root(document).Get(), document.Get()),
                     static_cast<HRESULT>(0x80045555u), L"no key");
    EXPECT_EQ(Flat(support::Root(document).Get()), L"<Project/>") << "the device is asked first";
}

TEST_F(TamInternalAppObjectXmlTest, NeedsADevice) {
    const auto object = CreatedWithoutDevice();
    SavesAs(generic.object, L"<AI/>");
    const Document document = support::Parse(L"<Project/>");
    ExpectRaised(object->XMLSave(support::Root(document).Get(), document.Get()), kObjectNotSet);
    EXPECT_EQ(Flat(support::Root(document).Get()), L"<Project/>") << "nothing is written by half";
}

TEST_F(TamInternalAppObjectXmlTest, NeedsAnElementFromTheGenericObject) {
    const auto object = Created();
    const Document document = support::Parse(L"<Project/>");
    ExpectRaised(object->XMLSave(support::Root(document).Get(), document.Get()), kObjectNotSet);
}

TEST_F(TamInternalAppObjectXmlTest, TakesTheLastChildWhoeverAppendedIt) {
    const auto object = NewChannel(L"AI3", Device().Get());
    const Document document = support::Parse(L"<Project><First/><Last><Old/></Last></Project>");
    const auto root = support::Root(document);
    EXPECT_EQ(object->XMLSave(root.Get(), document.Get()), S_OK);
    EXPECT_EQ(Flat(root.Get()),
              L"<Project><First/><Last><DevKey>DEV7</DevKey><TamObjectKey>AI3</TamObjectKey>"
              L"<Old/></Last></Project>");
}

TEST_F(TamInternalAppObjectXmlTest, LeavesNoElementWithoutItsKeys) {
    const auto object = Created();
    SavesAs(generic.object, L"<AI/>");
    const Document document = support::Parse(L"<Project/>");
    const auto root = support::Root(document);
    ExpectRaised(object->XMLSave(root.Get(), nullptr), kObjectNotSet);
    ExpectRaised(object->XMLSave(root.Get(), Device().Get()), kTypeMismatch);
    ExpectRaised(object->XMLSave(root.Get(), root.Get()), kTypeMismatch);
    EXPECT_EQ(Flat(root.Get()), L"<Project/>");
}

TEST_F(TamInternalAppObjectXmlTest, TakesOutAgainWhatTheGenericObjectWroteBeforeItFailed) {
    const auto object = Created();
    generic.object->On(L"XMLSave", [](const Invocation& call) {
        const auto document = com::Query<IXMLDOMDocument2>(call.Input(1).pdispVal);
        tam::dom::Append(document, com::Query<IXMLDOMNode>(call.Input(0).pdispVal), L"AI");
        return static_cast<HRESULT>(0x80044444u);
    });
    for (const wchar_t* project : {L"<Project/>", L"<Project><Other/>text</Project>"}) {
        const Document document = support::Parse(project);
        const auto root = support::Root(document);
        EXPECT_EQ(object->XMLSave(root.Get(), document.Get()), static_cast<HRESULT>(0x80044444u));
        EXPECT_EQ(Flat(root.Get()), project);
    }
}

TEST_F(TamInternalAppObjectXmlTest, DoesNotReadItsKeysBack) {
    const auto object = Created();
    const Document saved =
        support::Parse(L"<AI><DevKey>OTHER</DevKey><TamObjectKey>AO9</TamObjectKey><Name/></AI>");
    Calls().clear();
    EXPECT_EQ(object->XmlLoad(support::Root(saved).Get()), S_OK);
    EXPECT_EQ(Said(), Texts{L"generic.XmlLoad(object)"});
    const auto internal = InternalOf(object);
    EXPECT_EQ(support::Text(internal, &ITamInternalAppObject::get_TamInternalObjectKey), L"AI3");
    EXPECT_EQ(support::Text(internal, &ITamInternalAppObject::get_TamDeviceKey), L"DEV7");
    EXPECT_EQ(support::Text(internal, &ITamInternalAppObject::get_TempTamDeviceKey), L"");
}

TEST_F(TamInternalAppObjectXmlTest, AddsNoKeysToTheOtherForms) {
    const auto object = Created();
    const Document document = support::Parse(L"<Project><AI/></Project>");
    const auto root = support::Root(document);
    EXPECT_EQ(object->XMLSaveSim(root.Get(), document.Get()), S_OK);
    EXPECT_EQ(object->XMLSaveForInteroperability(root.Get(), document.Get()), S_OK);
    EXPECT_EQ(Flat(root.Get()), L"<Project><AI/></Project>");
}

TEST_F(TamInternalAppObjectXmlTest, SavesByName) {
    const auto object = Created();
    SavesAs(generic.object, L"<AI/>");
    const Document document = support::Parse(L"<Project/>");
    const auto root = support::Root(document);
    const com::Variant node(static_cast<IDispatch*>(root.Get()));
    const com::Variant owner(static_cast<IDispatch*>(document.Get()));
    VARIANT arguments[] = {node.Get(), owner.Get()};
    com::CallMember(*object.Get(), L"XMLSave", arguments);
    EXPECT_EQ(Flat(root.Get()),
              L"<Project><AI><DevKey>DEV7</DevKey><TamObjectKey>AI3</TamObjectKey></AI></Project>");
}

} // namespace

} // namespace internal_tests
