#include "tests/internal/Channel.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

// Loops over the elements of a document give the host's message loop a turn at
// each, so that its windows stay alive.

namespace internal_tests {

namespace {

using Texts = std::vector<std::wstring>;

/// Runs an action at each turn that was asked for, when the thread's message
/// loop gets to it.
class Turns {
  public:
    explicit Turns(std::function<void()> action) : action_(std::move(action)) {
        window_ = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Turns::Procedure));
        Ask();
    }
    ~Turns() { DestroyWindow(window_); }
    Turns(const Turns&) = delete;
    Turns& operator=(const Turns&) = delete;

    void Ask() const { PostMessageW(window_, kTurn, 0, 0); }

  private:
    static constexpr UINT kTurn = WM_APP + 1;
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        const auto* self = reinterpret_cast<const Turns*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (message == kTurn && self != nullptr) {
            self->action_();
            return 0;
        }
        return DefWindowProcW(window, message, wParam, lParam);
    }

    std::function<void()> action_;
    HWND window_ = nullptr;
};

class YieldTest : public InternalTest {};

TEST_F(YieldTest, GivesTheHostATurnBeforeEachElementOfAConfiguration) {
    SetDefinition(L"<AppObject><TAMConfig>"
                  L"<InReferences><InReference Name='In1' Visible='1'/><InReference Name='In2' "
                  L"Visible='1'/></InReferences>"
                  L"<OutReferences><OutReference Name='Out' Visible='0'/></OutReferences>"
                  L"<Attributes><Attrib Name='Gain' Visible='0'/></Attributes></TAMConfig></AppObject>");
    const auto object = NewChannel(L"AI3", Device().Get());
    Texts events;
    const Turns turns([&] { events.push_back(L"turn"); });
    for (const Double& point : {in1, in2, out, gain}) {
        point->On(L"put Visible", [&events, &turns, label = point->Label()](const Invocation&) {
            events.push_back(label);
            turns.Ask();
            return S_OK;
        });
    }
    EXPECT_EQ(object->Create(), S_OK);
    EXPECT_EQ(events, (Texts{L"turn", L"In1", L"turn", L"In2", L"turn", L"Out", L"turn", L"Gain"}));
    for (const Double& point : {in1, in2, out, gain}) {
        point->On(L"put Visible", [](const Invocation&) { return S_OK; });
    }
}

TEST_F(YieldTest, GivesTheHostATurnAtEachChildOfTheLibraryUpToTheOneItSearches) {
    context->Set(L"Document",
                 support::Parse(L"<Device><FWVersion><V12><Objects><Library><a/><!-- c --><b/><o_tam_id/>"
                                L"<c/></Library></Objects></V12></FWVersion></Device>")
                     .Get());
    const auto manager = NewManager();
    int count = 0;
    const Turns* asking = nullptr;
    const Turns turns([&] {
        ++count;
        asking->Ask(); // for the next turn
    });
    asking = &turns;
    VARIANT_BOOL answer = VARIANT_FALSE;
    EXPECT_EQ(manager->IsTamObject(com::Bstr(L"o_tam_id").Get(), &answer), S_OK);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(manager->IsTamInternalObject(com::Bstr(L"o_tam_ai_id").Get(), &answer), S_OK);
    EXPECT_EQ(answer, VARIANT_TRUE);
    EXPECT_EQ(count, 4);
}

// The search goes from an element to its next sibling: one that is taken away has none.
TEST_F(YieldTest, EndsTheSearchAtAnElementThatTheHostTakesAway) {
    const auto isFound = [this](const std::wstring& takenAway) {
        const support::Document document = support::Parse(
            L"<Device><FWVersion><V12><Objects><Library><a/><o_tam_id/></Library></Objects></V12>"
            L"</FWVersion></Device>");
        context->Set(L"Document", document.Get());
        const Turns turns([&] {
            const auto node = tam::dom::Select(tam::dom::Node(document), L"//" + takenAway);
            com::Ref<IXMLDOMNode> removed;
            com::Check(tam::dom::ParentOf(node)->removeChild(node.Get(), removed.Put()));
        });
        VARIANT_BOOL answer = VARIANT_FALSE;
        EXPECT_EQ(NewManager()->IsTamInternalObject(com::Bstr(L"o_tam_ai_id").Get(), &answer), S_OK);
        return answer != VARIANT_FALSE;
    };
    EXPECT_FALSE(isFound(L"a"));
    EXPECT_FALSE(isFound(L"o_tam_id"));
    EXPECT_TRUE(isFound(L"Library"));
}

TEST_F(YieldTest, AnswersAGatedCallDuringTheSearchAsNotFound) {
    const auto manager = NewManager();
    VARIANT_BOOL during = VARIANT_TRUE;
    const Turns turns([&] { manager->IsTamInternalObject(com::Bstr(L"o_tam_ai_id").Get(), &during); });
    VARIANT_BOOL answer = VARIANT_FALSE;
    EXPECT_EQ(manager->IsTamInternalObject(com::Bstr(L"o_tam_ai_id").Get(), &answer), S_OK);
    EXPECT_EQ(during, VARIANT_FALSE);
    EXPECT_EQ(answer, VARIANT_TRUE);
}

TEST_F(YieldTest, BearsAHostThatDropsTheChannelWhileItIsCreated) {
    SetDefinition(L"<AppObject><TAMConfig><InReferences><InReference Name='In1' Visible='1'/>"
                  L"</InReferences></TAMConfig></AppObject>");
    auto object = NewChannel(L"AI3", Device().Get());
    IAppObject* const asked = object.Get();
    const Turns turns([&] { object.Reset(); });
    EXPECT_EQ(asked->Create(), S_OK);
    EXPECT_FALSE(object);
}

TEST_F(YieldTest, BearsAHostThatDropsTheManagerWhileItSearches) {
    auto manager = NewManager();
    ITamObjectManager* const asked = manager.Get();
    const Turns turns([&] { manager.Reset(); });
    VARIANT_BOOL answer = VARIANT_FALSE;
    EXPECT_EQ(asked->IsTamInternalObject(com::Bstr(L"o_tam_ai_id").Get(), &answer), S_OK);
    EXPECT_FALSE(manager);
    EXPECT_EQ(answer, VARIANT_TRUE);
}

TEST_F(YieldTest, BearsAScriptThatChangesTheIdentifierItGaveWhileItSearches) {
    BSTR identifier = SysAllocString(L"o_tam_ai_id");
    const Turns turns([&] {
        wmemset(identifier, L'9', 11);
        SysFreeString(std::exchange(identifier, nullptr));
    });
    VARIANT_BOOL answer = VARIANT_FALSE;
    EXPECT_EQ(NewManager()->IsTamInternalObject(identifier, &answer), S_OK);
    EXPECT_EQ(identifier, nullptr);
    EXPECT_EQ(answer, VARIANT_TRUE);
}

TEST_F(YieldTest, BearsAScriptThatChangesTheKeyAndTheDeviceItGaveWhileItSearches) {
    com::Bstr key(L"AI3");
    Double given = Recorder::Make(L"given", {&__uuidof(IDevice)});
    given->Set(L"DeviceKey", L"K7");
    auto heldDevice = given->As<IDispatch>();
    IDispatch* const handed = heldDevice.Get();
    const Turns turns([&] {
        wmemset(key.Get(), L'9', 3);
        key = com::Bstr(L"DO11");
        heldDevice.Reset();
        given.Reset();
    });
    com::Ref<IAppObject> object;
    EXPECT_EQ(NewManager()->CreateTamInternalAppObject(key.Address(), handed, object.Put()), S_OK);
    EXPECT_FALSE(given);
    ASSERT_TRUE(object);
    const auto internal = InternalOf(object);
    EXPECT_EQ(support::Text(internal, &ITamInternalAppObject::get_TamInternalObjectKey), L"AI3");
    EXPECT_EQ(support::Text(internal, &ITamInternalAppObject::get_TamDeviceKey), L"K7");
}

} // namespace

} // namespace internal_tests
