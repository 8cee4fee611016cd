#include "tests/internal/Channel.h"

// Host objects that have an interface and cannot give it now: a server that is
// gone, say. Their own error goes back; "type mismatch" would say that the
// object is of the wrong kind.

namespace internal_tests {

namespace {

constexpr HRESULT kGone = CO_E_OBJNOTCONNECTED;

class RequiredTest : public InternalTest {
  protected:
    static void ExpectGone(HRESULT result) {
        EXPECT_EQ(result, kGone);
        EXPECT_NE(support::LastError().description, kTypeMismatchText);
        EXPECT_NE(support::LastError().description, kObjectNotSetText);
    }
    HRESULT Template() {
        com::Ref<IAppObject> object;
        const HRESULT result = NewManager()->CreateTemplateTamInternalObject(object.Put());
        EXPECT_EQ(object, nullptr);
        return result;
    }
};

TEST_F(RequiredTest, PassesTheRefusalOfAGenericObjectBack) {
    generic.object->HideFace(__uuidof(IAppObject), kGone);
    ExpectGone(Template());
}

TEST_F(RequiredTest, PassesTheRefusalOfALibraryServiceBack) {
    libraryService->HideFace(__uuidof(ILibraryService), kGone);
    ExpectGone(Template());
}

TEST_F(RequiredTest, PassesTheRefusalOfAnInterceptionBack) {
    generic.object->HideFace(__uuidof(IAttributeInterception), kGone);
    ExpectGone(NewChannel(L"AI3", Device().Get())->Create());
}

TEST_F(RequiredTest, PassesTheRefusalOfADeviceBack) {
    const auto object = Created();
    device->HideFace(__uuidof(IDevice), kGone);
    com::Bstr key;
    ExpectGone(InternalOf(object)->get_TamDeviceKey(key.Put()));
    ExpectGone(support::Put(InputOf(object, L"In1"), &IInput::put_Value, L"1"));
}

TEST_F(RequiredTest, PassesTheRefusalOfAnInnerPointBack) {
    const auto object = Created();
    in1->HideFace(__uuidof(ISubItemConnable), kGone);
    out->HideFace(__uuidof(IDisplayItem), kGone);
    ExpectGone(InputOf(object, L"In1").As<ISubItemConnable>()->put_IsConnected(VARIANT_TRUE));
    com::Bstr text;
    ExpectGone(OutputOf(object, L"Out").As<IDisplayItem>()->get_DisplayText(text.Put()));
    EXPECT_EQ(text.Get(), nullptr);
}

TEST_F(RequiredTest, PassesTheRefusalOfAContainersPointBack) {
    const Double output = NewOutput(L"AI3_Out", L"AI3_Out");
    const Double attribute = NewAttribute(L"AI3_Gain", L"AI3_Gain");
    container.Fill(L"container", {}, {output}, {attribute});
    output->HideFace(__uuidof(IDisplayItem), kGone);
    attribute->HideFace(__uuidof(IMutableTypeAttribute), kGone);
    const auto object = Created();
    com::Bstr reference;
    ExpectGone(OutputOf(object, L"Out").As<IDisplayItem>()->get_Reference(reference.Put()));
    VARIANT_BOOL handled = VARIANT_TRUE;
    ExpectGone(Interceptor()->InterceptTypeChanged(gain->As<IAttribute>().Get(), &handled));
    EXPECT_EQ(handled, VARIANT_FALSE);
}

TEST_F(RequiredTest, PassesTheRefusalOfANodeOrADocumentBack) {
    const auto object = Created();
    const support::Document document = support::Parse(L"<Project><AI/></Project>");
    const auto root = support::Root(document);
    const Double other = Recorder::Make(L"other", {});
    other->HideFace(__uuidof(IXMLDOMNode), kGone);
    other->HideFace(__uuidof(IXMLDOMDocument2), kGone);
    const auto given = other->As<IDispatch>();
    ExpectGone(object->XMLSave(given.Get(), document.Get()));
    ExpectGone(object->XMLSave(root.Get(), given.Get()));
}

TEST_F(RequiredTest, KeepsTypeMismatchForAnInterfaceThatIsNotThere) {
    const auto object = Created();
    device->HideFace(__uuidof(IDevice));
    com::Bstr key;
    ExpectRaised(InternalOf(object)->get_TamDeviceKey(key.Put()), kTypeMismatch);
}

} // namespace

} // namespace internal_tests
