// The component's own side of the parser: what it builds in a document.

#include "com/Dom.h"
#include "tests/support/Read.h"

#include <gtest/gtest.h>

#include <string>

using namespace support;

namespace {

namespace dom = tam::dom;

/// The only child of an element that was appended with this text; the type of a
/// node that there is none when it has no child.
struct Appended {
    explicit Appended(const std::wstring& text) {
        const Document document = Parse(L"<Root><Before/></Root>");
        const dom::Node root(Root(document));
        const dom::Element element = dom::AppendField(document, root, L"Field", text);
        EXPECT_EQ(dom::BaseName(dom::Node(element)), L"Field");
        com::Ref<IXMLDOMNode> last;
        EXPECT_EQ(root->get_lastChild(last.Put()), S_OK);
        EXPECT_EQ(dom::BaseName(last), L"Field") << "it is the last child";
        child = dom::FirstChild(dom::Node(element));
        EXPECT_FALSE(child && dom::NextSibling(child));
    }
    dom::Node child;
};

TEST(DomTest, AppendsAFieldWithATextNode) {
    for (const wchar_t* const text : {L"a text", L" 1 ", L"NoTextFields", L"notextfield", L""}) {
        const Appended field(text);
        ASSERT_TRUE(field.child) << com::Bstr(text).Get();
        EXPECT_EQ(dom::TypeOf(field.child), NODE_TEXT);
        EXPECT_EQ(dom::ValueOf(field.child), text);
    }
}

TEST(DomTest, AppendsAFieldOfTheMarkerWithoutAChild) {
    EXPECT_FALSE(Appended(L"NoTextField").child);
}

} // namespace
