#include "tests/internal/Channel.h"

#include <string>
#include <vector>

// Which of the libraries in a device's document counts, and what becomes of a
// search that fails.

namespace internal_tests {

namespace {

using Texts = std::vector<std::wstring>;

class TamObjectManagerLibraryTest : public InternalTest {
  protected:
    static HRESULT Ask(const com::Ref<ITamObjectManager>& manager, bool* isFound) {
        VARIANT_BOOL answer = VARIANT_TRUE;
        const HRESULT result = manager->IsTamInternalObject(com::Bstr(L"o_tam_ai_id").Get(), &answer);
        *isFound = answer != VARIANT_FALSE;
        return result;
    }
    static bool IsFound(const com::Ref<ITamObjectManager>& manager) {
        bool isFound = false;
        EXPECT_EQ(Ask(manager, &isFound), S_OK);
        return isFound;
    }
    bool IsFoundIn(const std::wstring& xml) {
        context->Set(L"Document", support::Parse(xml).Get());
        return IsFound(NewManager());
    }
    /// The result of the search; whatever it is, it is not made again.
    HRESULT FailingSearch() {
        const auto manager = NewManager();
        bool isFound = true;
        const HRESULT result = Ask(manager, &isFound);
        EXPECT_FALSE(isFound);
        const support::ErrorTexts texts = support::LastError();
        EXPECT_FALSE(IsFound(manager));
        description = texts.description;
        return result;
    }
    void ExpectFails(HRESULT code) {
        EXPECT_EQ(FailingSearch(), code);
        EXPECT_EQ(description, StandardText(code));
    }

    std::wstring description;
};

TEST_F(TamObjectManagerLibraryTest, CountsInTheFirstOfSeveralLibraries) {
    EXPECT_FALSE(IsFoundIn(L"<Device><FWVersion><V12><Objects><Library><other/></Library><Library><o_tam_id/>"
                           L"</Library></Objects></V12></FWVersion></Device>"));
    EXPECT_TRUE(IsFoundIn(L"<Device><FWVersion><V12><Objects><Library><o_tam_id/></Library><Library/>"
                          L"</Objects></V12></FWVersion></Device>"));
}

TEST_F(TamObjectManagerLibraryTest, CountsAtItsPlaceFromTheRootAlone) {
    const std::wstring whole = L"<Device><FWVersion><V12><Objects><Library><o_tam_id/></Library></Objects></"
                               L"V12></FWVersion></Device>";
    EXPECT_TRUE(IsFoundIn(whole));
    for (const wchar_t* other :
         {L"<Other><FWVersion><V12><Objects><Library><o_tam_id/></Library></Objects></V12></FWVersion></"
          L"Other>",
          L"<Device><FWVersion><V12><Objects><More><Library><o_tam_id/></Library></More></Objects></V12>"
          L"</FWVersion></Device>",
          L"<Device><V12><Objects><Library><o_tam_id/></Library></Objects></V12></Device>",
          L"<device><FWVersion><V12><Objects><Library><o_tam_id/></Library></Objects></V12></FWVersion></"
          L"device>",
          L"<Device xmlns='urn:x'><FWVersion><V12><Objects><Library><o_tam_id/></Library></Objects></V12>"
          L"</FWVersion></Device>"}) {
        context->Set(L"Document", support::Parse(other).Get());
        ExpectFails(kObjectNotSet);
    }
    context->Set(L"Document", support::Parse(L"<Root>" + whole + L"</Root>").Get());
    ExpectFails(kObjectNotSet);
}

TEST_F(TamObjectManagerLibraryTest, ListsObjectsByTheWholeNameOfTheElement) {
    const auto with = [](const wchar_t* content) {
        return L"<Device><FWVersion><V12><Objects><Library xmlns:x='urn:x'>" + std::wstring(content) +
               L"</Library></Objects></V12></FWVersion></Device>";
    };
    EXPECT_FALSE(IsFoundIn(with(L"<x:o_tam_id/>")));
    EXPECT_FALSE(IsFoundIn(with(L"<o_tam_id1/><o_tam_id.x/><o_tam_/>")));
    EXPECT_FALSE(IsFoundIn(with(L"<![CDATA[<o_tam_id/>]]>")));
    EXPECT_TRUE(IsFoundIn(with(L"<x:o_tam_id/><o_tam_id xmlns='urn:y' a='b'>text</o_tam_id>")));
}

TEST_F(TamObjectManagerLibraryTest, NeedsADocument) {
    context->On(L"get Document", [](const Invocation& call) { return call.Answer(nullptr); });
    ExpectFails(kObjectNotSet);
    context->On(L"get Document", [held = channel.Get()](const Invocation& call) {
        return call.Answer(held->As<IUnknown>().Get());
    });
    ExpectFails(kTypeMismatch);
    const support::Document empty = support::NewDocument();
    context->On(L"get Document", [empty](const Invocation& call) { return call.Answer(empty.Get()); });
    ExpectFails(kObjectNotSet);
}

TEST_F(TamObjectManagerLibraryTest, NeedsADeviceContextOfItsInterface) {
    context->HideFace(__uuidof(IDeviceContext));
    ExpectFails(kTypeMismatch);
    EXPECT_EQ(Said(L"context"), Texts());
}

TEST_F(TamObjectManagerLibraryTest, RaisesTheDomsOwnErrorForAVersionThatIsNoName) {
    const support::Document document = support::Parse(L"<Device/>");
    com::Ref<IXMLDOMNode> none;
    const HRESULT expected =
        document->selectSingleNode(com::Bstr(L"Device/FWVersion/1 2[/Objects/Library").Get(), none.Put());
    ASSERT_TRUE(FAILED(expected));
    context->Set(L"FirmwareVersion", L"1 2[");
    EXPECT_EQ(FailingSearch(), expected);
}

TEST_F(TamObjectManagerLibraryTest, StaysFoundForALaterDevice) {
    const auto manager = NewManager();
    EXPECT_TRUE(IsFound(manager));
    const auto other = Recorder::Make(L"other context", {&__uuidof(IDeviceContext)});
    EXPECT_EQ(manager->Init(other->As<IDispatch>().Get()), S_OK);
    EXPECT_TRUE(IsFound(manager));
    EXPECT_EQ(Said(L"other context"), Texts());
}

TEST_F(TamObjectManagerLibraryTest, KeepsNoneOfTheObjectsThatItMade) {
    const auto manager = NewManager();
    EXPECT_TRUE(IsFound(manager));
    const auto references = [this] {
        generic.object->AddRef();
        return generic.object->Release();
    };
    const ULONG before = references();
    com::Bstr key(L"AI3");
    com::Ref<IAppObject> made;
    com::Ref<IAppObject> plain;
    EXPECT_EQ(manager->CreateTamInternalAppObject(key.Address(), Device().Get(), made.Put()), S_OK);
    EXPECT_EQ(manager->CreateTemplateTamInternalObject(plain.Put()), S_OK);
    EXPECT_EQ(references(), before + 2);
    made.Reset();
    plain.Reset();
    EXPECT_EQ(references(), before);
}

TEST_F(TamObjectManagerLibraryTest, LetsGoOfTheEarlierDeviceContext) {
    const auto references = [this] {
        context->AddRef();
        return context->Release();
    };
    const ULONG before = references();
    const auto manager = NewManager();
    EXPECT_EQ(references(), before + 1);
    const auto other = Recorder::Make(L"other context", {&__uuidof(IDeviceContext)});
    EXPECT_EQ(manager->Init(other->As<IDispatch>().Get()), S_OK);
    EXPECT_EQ(references(), before);
    EXPECT_EQ(manager->Init(nullptr), S_OK);
}

} // namespace

} // namespace internal_tests
