#include "com/Dom.h"
#include "tests/internal/Channel.h"

#include <initializer_list>
#include <string>

// A member asks an object of the host, and the host lets go of the last reference
// from outside meanwhile. The member goes on to its end all the same.

namespace internal_tests {

namespace {

using LastReferenceTest = InternalTest;

TEST_F(LastReferenceTest, BearsAnInnerOutputThatDropsTheLastReference) {
    const Double mirror = NewOutput(L"AI3_Out", L"AI3_Out");
    container.Fill(L"container", {}, {mirror}, {});
    auto output = OutputOf(Created(), L"Out");
    out->On(L"put IsDisplayable", [&](const Invocation&) {
        output.Reset();
        return S_OK;
    });
    IOutput* const asked = output.Get();
    EXPECT_EQ(asked->put_IsDisplayable(VARIANT_TRUE), S_OK);
    EXPECT_FALSE(output);
    EXPECT_EQ(mirror->Value(L"IsDisplayable"), L"True");
}

TEST_F(LastReferenceTest, BearsAnInnerOutputThatDropsTheLastReferenceForACallBack) {
    auto output = OutputOf(Created(), L"Out");
    out->On(L"set CallBack", [&](const Invocation&) {
        output.Reset();
        ForgetDoubles(); // the inner output ends with the channel object
        return S_OK;
    });
    IOutput* const asked = output.Get();
    EXPECT_EQ(asked->putref_CallBack(nullptr), S_OK);
    EXPECT_FALSE(output);
}

TEST_F(LastReferenceTest, BearsAGenericObjectThatDropsTheLastReferenceWhileItSaves) {
    auto object = Created();
    const support::Document document = support::Parse(L"<Project/>");
    const auto root = support::Root(document);
    generic.object->On(L"XMLSave", [&](const Invocation&) {
        object.Reset();
        com::Ref<IXMLDOMElement> saved;
        com::Check(document->createElement(com::Bstr(L"Level").Get(), saved.Put()));
        return root->appendChild(saved.Get(), nullptr);
    });
    IAppObject* const asked = object.Get();
    EXPECT_EQ(asked->XMLSave(root.Get(), document.Get()), S_OK);
    EXPECT_FALSE(object);
    EXPECT_EQ(tam::dom::TextOf(tam::dom::Select(tam::dom::Node(root), L"Level/TamObjectKey")), L"AI3");
    EXPECT_EQ(tam::dom::TextOf(tam::dom::Select(tam::dom::Node(root), L"Level/DevKey")), L"DEV7");
}

TEST_F(LastReferenceTest, BearsAGenericObjectThatDropsTheLastReferenceWhileItIsAskedForAFlag) {
    SetDefinition(
        L"<AppObject><TAMConfig><Attributes><Attrib Name='Gain' UnitDependent='1' Differential='1'/>"
        L"</Attributes></TAMConfig></AppObject>");
    for (const auto question : {&IAttributeInterceptor::InterceptIsUnitsDependent,
                                &IAttributeInterceptor::InterceptIsDifferential}) {
        auto own = Created().As<IAttributeInterceptor>();
        generic.object->On(L"get UniqueIDString", [&](const Invocation& call) {
            own.Reset();
            return call.Answer(std::wstring(L"O_TAM_AI_ID"));
        });
        IAttributeInterceptor* const asked = own.Get();
        VARIANT_BOOL answer = VARIANT_FALSE;
        VARIANT_BOOL handled = VARIANT_FALSE;
        EXPECT_EQ((asked->*question)(gain->As<IAttribute>().Get(), &answer, &handled), S_OK);
        EXPECT_FALSE(own);
        EXPECT_EQ(answer, VARIANT_TRUE);
        EXPECT_EQ(handled, VARIANT_TRUE);
    }
}

} // namespace

} // namespace internal_tests
