#include "com/Counted.h"
#include "tests/internal/Channel.h"
#include "tests/support/Values.h"

#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// Host objects that lack what a channel object needs of them: an interface,
// a collection, a type. Each is a run-time error of the component's own.

namespace internal_tests {

namespace {

using Texts = std::vector<std::wstring>;

class HostFaultsTest : public InternalTest {
  protected:
    com::Ref<IAppObject> Fresh() { return NewChannel(L"AI3", Device().Get()); }
    /// What the creation of a channel comes to.
    HRESULT Creation() { return Fresh()->Create(); }
    /// Lets a collection's enumerator give these.
    static void Enumerates(const Double& collection, VARTYPE type, IUnknown* item, HRESULT end = S_FALSE) {
        const com::Ref<IUnknown> held(item);
        collection->On(L"get NewEnum", [held, type, end](const Invocation& call) {
            std::vector<com::Variant> values;
            values.push_back(type == VT_I4 ? com::Variant(5L) : support::ObjectValue(held.Get(), type));
            return call.Answer(support::Values::Make(std::move(values), end).Get());
        });
    }
    static void AnswersNone(const Double& object, const wchar_t* member) {
        object->On(member, [](const Invocation& call) { return call.Answer(nullptr); });
    }
    HRESULT Template() {
        com::Ref<IAppObject> object;
        const HRESULT result = NewManager()->CreateTemplateTamInternalObject(object.Put());
        EXPECT_EQ(object, nullptr);
        return result;
    }
    std::array<Double*, 3> GenericCollections() {
        return {&generic.inputs, &generic.outputs, &generic.attributes};
    }
};

TEST_F(HostFaultsTest, NeedsAGenericObjectThatIsAnApplicationObject) {
    generic.object->HideFace(__uuidof(IAppObject));
    ExpectRaised(Template(), kTypeMismatch);
}

TEST_F(HostFaultsTest, NeedsALibraryServiceOfItsInterface) {
    libraryService->HideFace(__uuidof(ILibraryService));
    ExpectRaised(Template(), kTypeMismatch);
}

TEST_F(HostFaultsTest, MakesTheGenericObjectBeforeTheLibraryService) {
    generic.object->HideFace(__uuidof(IAppObject));
    Unregister(kLibraryProgId);
    ExpectRaised(Template(), kTypeMismatch);
}

TEST_F(HostFaultsTest, NeedsAGenericObjectThatCanBeIntercepted) {
    generic.object->HideFace(__uuidof(IAttributeInterception));
    ExpectRaised(Creation(), kTypeMismatch);
    EXPECT_EQ(Said(L"generic"), Texts()) << "it is not created before it is intercepted";
}

TEST_F(HostFaultsTest, NeedsEachCollectionOfTheGenericObject) {
    for (const wchar_t* member : {L"get Inputs", L"get Outputs", L"get Attributes"}) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(member)));
        generic.Fill(L"generic", {in1}, {out}, {gain});
        AnswersNone(generic.object, member);
        ExpectRaised(Creation(), kObjectNotSet);
        const Double kept = generic.object;
        kept->On(member, [kept = kept.Get(), member](const Invocation& call) {
            return call.Answer(kept->Kept<IUnknown>(member + 4).Get());
        });
    }
    EXPECT_EQ(Creation(), S_OK);
}

TEST_F(HostFaultsTest, NeedsTheCollectionAgainForAConfiguredPoint) {
    const auto answerOnce = [this] {
        const auto asked = std::make_shared<int>(0);
        generic.object->On(L"get Outputs", [self = generic.object.Get(), asked](const Invocation& call) {
            return call.Answer(++*asked == 1 ? self->Kept<IUnknown>(L"Outputs").Get() : nullptr);
        });
    };
    answerOnce();
    EXPECT_EQ(Creation(), S_OK) << "no point is configured";
    SetDefinition(
        L"<AppObject><TAMConfig><OutReferences><OutReference Name='Out' Visible='1'/></OutReferences>"
        L"</TAMConfig></AppObject>");
    answerOnce();
    ExpectRaised(Creation(), kObjectNotSet);
}

TEST_F(HostFaultsTest, NeedsAnEnumeratorOfEachCollection) {
    for (Double* collection : GenericCollections()) {
        SCOPED_TRACE(testing::PrintToString((*collection)->Label()));
        AnswersNone(*collection, L"get NewEnum");
        ExpectRaised(Creation(), kObjectNotSet);
        const com::Ref<IUnknown> other = channel->As<IUnknown>();
        (*collection)->On(L"get NewEnum", [other](const Invocation& call) {
            return call.Answer(other.Get());
        });
        ExpectRaised(Creation(), kTypeMismatch);
        (*collection)->On(L"get NewEnum", [](const Invocation& call) {
            return call.Answer(support::Values::Make({}).Get());
        });
        EXPECT_EQ(Creation(), S_OK);
    }
}

TEST_F(HostFaultsTest, NeedsPointsInEachCollection) {
    for (Double* collection : GenericCollections()) {
        SCOPED_TRACE(testing::PrintToString((*collection)->Label()));
        Enumerates(*collection, VT_I4, nullptr);
        ExpectRaised(Creation(), kObjectNotSet);
        Enumerates(*collection, VT_DISPATCH, nullptr);
        ExpectRaised(Creation(), kObjectNotSet);
        Enumerates(*collection, VT_DISPATCH, channel->As<IUnknown>().Get());
        ExpectRaised(Creation(), kTypeMismatch);
        (*collection)->On(L"get NewEnum", [](const Invocation& call) {
            return call.Answer(support::Values::Make({}).Get());
        });
    }
}

TEST_F(HostFaultsTest, TakesPointsThatAreGivenAsPlainObjects) {
    Enumerates(generic.inputs, VT_UNKNOWN, in2->As<IUnknown>().Get());
    const auto object = Created();
    EXPECT_TRUE(InputOf(object, L"In2"));
    EXPECT_FALSE(InputOf(object, L"In1"));
}

TEST_F(HostFaultsTest, PassesAnEnumeratorsErrorBack) {
    constexpr auto kCode = static_cast<HRESULT>(0x8004EEEEu);
    for (Double* collection : GenericCollections()) {
        SCOPED_TRACE(testing::PrintToString((*collection)->Label()));
        const Double point = collection == &generic.inputs    ? in1
                             : collection == &generic.outputs ? out
                                                              : gain;
        Enumerates(*collection, VT_DISPATCH, point->As<IDispatch>().Get(), kCode);
        EXPECT_EQ(Creation(), kCode);
        (*collection)->On(L"get NewEnum", [](const Invocation& call) {
            return call.Answer(support::Values::Make({}).Get());
        });
    }
}

TEST_F(HostFaultsTest, NeedsALibraryAndADefinitionThatIsADocument) {
    AnswersNone(libraryService, L"get Library");
    ExpectRaised(Creation(), kObjectNotSet);
    libraryService->On(L"get Library", [held = library.Get()](const Invocation& call) {
        return call.Answer(held->As<IUnknown>().Get());
    });
    library->On(L"DefinitionDocument", [held = channel.Get()](const Invocation& call) {
        return call.Answer(held->As<IUnknown>().Get());
    });
    ExpectRaised(Creation(), kTypeMismatch);
}

TEST_F(HostFaultsTest, NeedsEachCollectionOfTheContainerForWhatItMirrors) {
    const auto object = Created();
    const auto input = InputOf(object, L"In1");
    const auto output = OutputOf(object, L"Out");
    const auto attribute = AttributeOf(object, L"Gain");
    for (const wchar_t* member : {L"get Inputs", L"get Outputs", L"get Attributes"}) {
        AnswersNone(container.object, member);
    }
    ExpectRaised(support::Put(input, &IInput::put_Value, L"1"), kObjectNotSet);
    ExpectRaised(output->put_IsDisplayable(VARIANT_TRUE), kObjectNotSet);
    long index = 5;
    ExpectRaised(output->get_Index(&index), kObjectNotSet);
    com::Bstr reference;
    ExpectRaised(output.As<IDisplayItem>()->get_Reference(reference.Put()), kObjectNotSet);
    ExpectRaised(support::Put(attribute, &IAttribute::put_Value, L"1"), kObjectNotSet);
    VARIANT_BOOL handled = VARIANT_TRUE;
    const auto intercepted = gain->As<IAttribute>();
    ExpectRaised(Interceptor()->InterceptAttributeValueChanged(intercepted.Get(), &handled), kObjectNotSet);
    ExpectRaised(Interceptor()->InterceptTypeChanged(intercepted.Get(), &handled), kObjectNotSet);
}

TEST_F(HostFaultsTest, NeedsAContainerThatIsAnApplicationObject) {
    container.object->HideFace(__uuidof(IAppObject));
    const auto object = Created();
    short index = 3;
    ExpectRaised(object->get_ExportIndex(&index), kTypeMismatch);
    ExpectRaised(support::Put(InputOf(object, L"In1"), &IInput::put_Value, L"1"), kTypeMismatch);
}

TEST_F(HostFaultsTest, NeedsADeviceOfItsInterface) {
    const auto object = NewChannel(L"AI3", channel->As<IDispatch>().Get());
    com::Bstr key;
    ExpectRaised(InternalOf(object)->get_TamDeviceKey(key.Put()), kTypeMismatch);
    com::Ref<IDispatch> found;
    ExpectRaised(InternalOf(object)->get_TamObjectContainer(found.Put()), kTypeMismatch);
}

TEST_F(HostFaultsTest, NeedsATypeWithAnEnumerationToFillTwoAttributes) {
    const auto object = Created();
    channel->Set(L"ChannelValue", L"8");
    channel->Set(L"SetupText", L"9,nine");
    VARIANT_BOOL handled = VARIANT_TRUE;
    for (const Double& attribute : {channelAttribute, setup}) {
        SCOPED_TRACE(testing::PrintToString(attribute->Label()));
        const std::wstring value = attribute.Get() == setup.Get() ? L"\"9\"" : L"\"8\"";
        const auto given = attribute->As<IAttribute>();
        AnswersNone(attribute, L"get SNVTType");
        ExpectRaised(Interceptor()->InterceptGetDataFromDevice(given.Get(), &handled), kObjectNotSet);
        EXPECT_EQ(attribute->Value(L"Value"), value) << "it was written before";
        EXPECT_EQ(handled, VARIANT_FALSE);
        attribute->On(L"get SNVTType", [](const Invocation& call) {
            return call.Answer(Recorder::Make(L"plain type", {&__uuidof(ISNVType)})->As<IUnknown>().Get());
        });
        ExpectRaised(Interceptor()->InterceptGetDataFromDevice(given.Get(), &handled), kTypeMismatch);
    }
}

TEST_F(HostFaultsTest, NeedsAnAttributeToBeToldOf) {
    const auto object = Created();
    const auto interceptor = Interceptor();
    VARIANT_BOOL answer = VARIANT_TRUE;
    VARIANT_BOOL handled = VARIANT_TRUE;
    ExpectRaised(interceptor->InterceptGetDataFromDevice(nullptr, &handled), kObjectNotSet);
    ExpectRaised(interceptor->InterceptAttributeValueChanged(nullptr, &handled), kObjectNotSet);
    ExpectRaised(interceptor->InterceptTypeChanged(nullptr, &handled), kObjectNotSet);
    ExpectRaised(interceptor->InterceptIsUnitsDependent(nullptr, &answer, &handled), kObjectNotSet);
    ExpectRaised(interceptor->InterceptIsDifferential(nullptr, &answer, &handled), kObjectNotSet);
    EXPECT_EQ(answer, VARIANT_TRUE);
    EXPECT_EQ(handled, VARIANT_FALSE);
    EXPECT_EQ(Said(), Texts());
}

TEST_F(HostFaultsTest, NeedsANodeAndADocumentToSaveInto) {
    const auto object = Created();
    const support::Document document = support::Parse(L"<Project><AI/></Project>");
    const auto root = support::Root(document);
    ExpectRaised(object->XMLSave(nullptr, document.Get()), kObjectNotSet);
    ExpectRaised(object->XMLSave(root.Get(), nullptr), kObjectNotSet);
    ExpectRaised(object->XMLSave(Device().Get(), document.Get()), kTypeMismatch);
    ExpectRaised(object->XMLSave(root.Get(), Device().Get()), kTypeMismatch);
    EXPECT_EQ(Said(L"generic"), Texts()) << "it would have saved an element that gets no keys";
}

} // namespace

} // namespace internal_tests
