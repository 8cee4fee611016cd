#include "tests/internal/Channel.h"

#include <string>
#include <vector>

// What a channel object does when the generic object tells it of its
// attributes.

namespace internal_tests {

namespace {

using Texts = std::vector<std::wstring>;
using Member = HRESULT (STDMETHODCALLTYPE IAttributeInterceptor::*)(IAttribute*, VARIANT_BOOL*);
using Question = HRESULT (STDMETHODCALLTYPE IAttributeInterceptor::*)(IAttribute*, VARIANT_BOOL*,
                                                                      VARIANT_BOOL*);

class TamInternalAppObjectInterceptorTest : public InternalTest {
  protected:
    void SetUp() override {
        InternalTest::SetUp();
        object = Created();
        interceptor = Interceptor();
        ASSERT_TRUE(interceptor);
    }
    void TearDown() override {
        interceptor.Reset();
        object.Reset();
        for (Double* held : {&type, &mirror, &item}) {
            held->Reset();
        }
        InternalTest::TearDown();
    }
    HRESULT Tell(const Member& member, const Double& attribute) {
        handled = -2;
        return (interceptor.Get()->*member)(attribute->As<IAttribute>().Get(), &handled);
    }
    HRESULT Fill(const Double& attribute) {
        return Tell(&IAttributeInterceptor::InterceptGetDataFromDevice, attribute);
    }
    HRESULT ValueChanged(const Double& attribute) {
        return Tell(&IAttributeInterceptor::InterceptAttributeValueChanged, attribute);
    }
    HRESULT TypeChanged(const Double& attribute) {
        return Tell(&IAttributeInterceptor::InterceptTypeChanged, attribute);
    }
    /// Gives an attribute a type that takes an enumeration description.
    void GiveType(const Double& attribute) {
        type = Recorder::Make(L"type", {&__uuidof(ISNVType), &__uuidof(IEnumType)});
        type->Set(L"EnumDesc", L"before");
        attribute->Set(L"SNVTType", type);
    }
    /// Gives the container an attribute.
    void Contain(const std::wstring& name) {
        mirror = NewAttribute(name, L"mirror");
        mirror->Set(L"Value", L"before");
        item = NewAttribute(L"AI3_Other", L"other");
        container.Fill(L"container", {}, {}, {item, mirror});
    }

    com::Ref<IAppObject> object;
    com::Ref<IAttributeInterceptor> interceptor;
    VARIANT_BOOL handled = VARIANT_FALSE;
    Double type, mirror, item;
};

TEST_F(TamInternalAppObjectInterceptorTest, FillsChannelWithTheChannelValueAndEmptiesItsEnumeration) {
    GiveType(channelAttribute);
    channelAttribute->Set(L"Value", L"old");
    channel->Set(L"ChannelValue", L"17");
    EXPECT_EQ(Fill(channelAttribute), S_OK);
    EXPECT_EQ(handled, VARIANT_TRUE);
    EXPECT_EQ(channelAttribute->Value(L"Value"), L"\"17\"");
    EXPECT_EQ(type->Value(L"EnumDesc"), L"\"\"");
    EXPECT_EQ(Said(),
              (Texts{L"device.Channel(\"AI3\")", L"Channel.get Name()", L"channel.get ChannelValue()",
                     L"Channel.put Value(\"17\")", L"Channel.get SNVTType()", L"type.put EnumDesc(\"\")"}));
}

TEST_F(TamInternalAppObjectInterceptorTest, FillsSetupWithItsFirstValueAndOffersTheWholeText) {
    GiveType(setup);
    channel->Set(L"SetupText", L"3,Auto;0,Off");
    EXPECT_EQ(Fill(setup), S_OK);
    EXPECT_EQ(handled, VARIANT_TRUE);
    EXPECT_EQ(setup->Value(L"Value"), L"\"3\"");
    EXPECT_EQ(type->Value(L"EnumDesc"), L"\"3,Auto;0,Off\"");
    EXPECT_EQ(Said(), (Texts{L"device.Channel(\"AI3\")", L"Setup.get Name()", L"channel.get SetupText()",
                             L"Setup.put Value(\"3\")", L"Setup.get SNVTType()",
                             L"type.put EnumDesc(\"3,Auto;0,Off\")"}));
}

TEST_F(TamInternalAppObjectInterceptorTest, CutsTheSetupTextAtTheFirstMarks) {
    const struct {
        const wchar_t* text;
        const wchar_t* value;
    } cases[] = {{L"5", L"5"},          {L"5,On", L"5"},    {L"5;6", L"5"},  {L"5,On,x;6", L"5"},
                 {L"On;5,Off", L"On"},  {L" 7 ,a", L" 7 "}, {L",Auto", L""}, {L",;1", L""},
                 {L"1.5,half", L"1.5"}, {L"a;", L"a"},      {L"a,", L"a"},   {L"a;;b", L"a"}};
    for (const auto& one : cases) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(one.text)));
        GiveType(setup);
        channel->Set(L"SetupText", one.text);
        EXPECT_EQ(Fill(setup), S_OK);
        EXPECT_EQ(setup->Value(L"Value"), L"\"" + std::wstring(one.value) + L"\"");
        EXPECT_EQ(type->Value(L"EnumDesc"), L"\"" + std::wstring(one.text) + L"\"");
    }
}

TEST_F(TamInternalAppObjectInterceptorTest, RaisesForASetupTextWithoutAFirstPiece) {
    for (const wchar_t* text : {L"", L";", L";1,On"}) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(text)));
        GiveType(setup);
        setup->Set(L"Value", L"old");
        channel->Set(L"SetupText", text);
        ExpectRaised(Fill(setup), kSubscript);
        EXPECT_EQ(handled, VARIANT_FALSE);
        EXPECT_EQ(setup->Value(L"Value"), L"\"old\"");
        EXPECT_EQ(type->Value(L"EnumDesc"), L"\"before\"");
    }
}

TEST_F(TamInternalAppObjectInterceptorTest, KnowsChannelAndSetupInAnyLetterCase) {
    channel->Set(L"ChannelValue", L"8");
    channel->Set(L"SetupText", L"9,nine");
    for (const wchar_t* name : {L"CHANNEL", L"channel", L"ChAnNeL"}) {
        GiveType(gain);
        gain->Set(L"Name", name);
        EXPECT_EQ(Fill(gain), S_OK);
        EXPECT_EQ(gain->Value(L"Value"), L"\"8\"");
    }
    for (const wchar_t* name : {L"SETUP", L"setup", L"sEtUp"}) {
        GiveType(gain);
        gain->Set(L"Name", name);
        EXPECT_EQ(Fill(gain), S_OK);
        EXPECT_EQ(gain->Value(L"Value"), L"\"9\"");
    }
}

TEST_F(TamInternalAppObjectInterceptorTest, LeavesAttributesOfOtherNamesButReportsThemHandled) {
    for (const wchar_t* name : {L"Gain", L"", L"CHANNEL1", L"SETUP "}) {
        Calls().clear();
        gain->Set(L"Name", name);
        EXPECT_EQ(Fill(gain), S_OK);
        EXPECT_EQ(handled, VARIANT_TRUE);
        EXPECT_EQ(Said(), (Texts{L"device.Channel(\"AI3\")", L"Gain.get Name()"}));
    }
}

TEST_F(TamInternalAppObjectInterceptorTest, PassesErrorsOfTheFillingBackUnchanged) {
    constexpr auto kCode = static_cast<HRESULT>(0x80046666u);
    GiveType(setup);
    channel->Set(L"SetupText", L"1,On");
    const struct {
        Double at;
        const wchar_t* member;
    } steps[] = {{device, L"Channel"},  {setup, L"get Name"},     {channel, L"get SetupText"},
                 {setup, L"put Value"}, {setup, L"get SNVTType"}, {type, L"put EnumDesc"}};
    for (const auto& step : steps) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(step.member)));
        step.at->Fail(step.member, kCode, L"the callee's words");
        ExpectPassedBack(Fill(setup), kCode, L"the callee's words");
        EXPECT_EQ(handled, VARIANT_FALSE);
        step.at->FailNoMore();
    }
    GiveType(channelAttribute);
    channel->Fail(L"get ChannelValue", kCode, L"no value");
    ExpectPassedBack(Fill(channelAttribute), kCode, L"no value");
}

TEST_F(TamInternalAppObjectInterceptorTest, NeedsAChannelForItsTwoAttributesAlone) {
    device->On(L"Channel", [](const Invocation& call) { return call.Answer(nullptr); });
    ExpectRaised(Fill(channelAttribute), kObjectNotSet);
    ExpectRaised(Fill(setup), kObjectNotSet);
    EXPECT_EQ(Fill(gain), S_OK);
}

TEST_F(TamInternalAppObjectInterceptorTest, NeedsADeviceToFillFromAndToMirrorThrough) {
    const auto alone = CreatedWithoutDevice();
    interceptor = Interceptor();
    ExpectRaised(Fill(gain), kObjectNotSet);
    ExpectRaised(ValueChanged(gain), kObjectNotSet);
    ExpectRaised(TypeChanged(gain), kObjectNotSet);
}

TEST_F(TamInternalAppObjectInterceptorTest, GivesAChangedValueToTheContainersAttribute) {
    Contain(L"AI3_Gain");
    gain->Set(L"Value", L"2.5");
    EXPECT_EQ(ValueChanged(gain), S_OK);
    EXPECT_EQ(handled, VARIANT_TRUE);
    EXPECT_EQ(mirror->Value(L"Value"), L"\"2.5\"");
    EXPECT_EQ(Said(L"container.Attributes"), Texts{L"container.Attributes.get Item(\"AI3_Gain\")"});
    EXPECT_EQ(Said(L"mirror"), Texts{L"mirror.put Value(\"2.5\")"});
    EXPECT_EQ(Said(L"other"), Texts());
    EXPECT_EQ(gain->Value(L"Value"), L"\"2.5\"");
}

TEST_F(TamInternalAppObjectInterceptorTest, TakesAMissingContainerAttributeForNothingToDo) {
    Contain(L"AI4_Gain");
    EXPECT_EQ(ValueChanged(gain), S_OK);
    EXPECT_EQ(handled, VARIANT_TRUE);
    EXPECT_EQ(TypeChanged(gain), S_OK);
    EXPECT_EQ(handled, VARIANT_FALSE);
    EXPECT_EQ(Said(L"mirror"), Texts());
    EXPECT_EQ(Said(L"Gain"), (Texts{L"Gain.get Name()", L"Gain.get Name()"}));
}

TEST_F(TamInternalAppObjectInterceptorTest, GivesAChangedTypeToTheContainersAttributeAndReportsItUnhandled) {
    Contain(L"AI3_Gain");
    GiveType(gain);
    EXPECT_EQ(TypeChanged(gain), S_OK);
    EXPECT_EQ(handled, VARIANT_FALSE);
    EXPECT_EQ(Said(L"mirror"), Texts{L"mirror.SetType(type)"});
    EXPECT_EQ(Said(L"container.Attributes"), Texts{L"container.Attributes.get Item(\"AI3_Gain\")"});
}

TEST_F(TamInternalAppObjectInterceptorTest, FormsTheKeyThenAsksTheContainerThenReadsTheAttribute) {
    Contain(L"AI3_Gain");
    GiveType(gain);
    gain->Set(L"Value", L"2.5");
    const Texts lookup{L"Gain.get Name()", L"device.Container(object)", L"container.get Attributes()",
                       L"container.Attributes.get Item(\"AI3_Gain\")"};
    Texts expected = lookup;
    expected.insert(expected.end(), {L"Gain.get Value()", L"mirror.put Value(\"2.5\")"});
    EXPECT_EQ(ValueChanged(gain), S_OK);
    EXPECT_EQ(Said(), expected);

    Calls().clear();
    expected = lookup;
    expected.insert(expected.end(), {L"Gain.get SNVTType()", L"mirror.SetType(type)"});
    EXPECT_EQ(TypeChanged(gain), S_OK);
    EXPECT_EQ(Said(), expected);
}

TEST_F(TamInternalAppObjectInterceptorTest, NeedsAContainerToMirrorTo) {
    device->On(L"Container", [](const Invocation& call) { return call.Answer(nullptr); });
    ExpectRaised(ValueChanged(gain), kObjectNotSet);
    EXPECT_EQ(handled, VARIANT_FALSE);
    ExpectRaised(TypeChanged(gain), kObjectNotSet);
}

TEST_F(TamInternalAppObjectInterceptorTest, NeedsAContainerAttributeWhoseTypeCanChange) {
    mirror = Recorder::Make(L"mirror", {&__uuidof(IAttribute)});
    mirror->Set(L"Name", L"AI3_Gain");
    container.Fill(L"container", {}, {}, {mirror});
    GiveType(gain);
    ExpectRaised(TypeChanged(gain), kTypeMismatch);
}

TEST_F(TamInternalAppObjectInterceptorTest, PassesErrorsOfTheMirroringBackUnchanged) {
    constexpr auto kCode = static_cast<HRESULT>(0x80047777u);
    Contain(L"AI3_Gain");
    GiveType(gain);
    const struct {
        Double at;
        const wchar_t* member;
        bool ofValue;
        bool ofType;
    } steps[] = {{gain, L"get Name", true, true},
                 {device, L"Container", true, true},
                 {container.object, L"get Attributes", true, true},
                 {container.attributes, L"get Item", true, true},
                 {gain, L"get Value", true, false},
                 {mirror, L"put Value", true, false},
                 {gain, L"get SNVTType", false, true},
                 {mirror, L"SetType", false, true}};
    for (const auto& step : steps) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(step.member)));
        step.at->Fail(step.member, kCode, L"the callee's words");
        const auto expect = [](HRESULT result, bool fails) {
            ExpectPassedBackIf(fails, result, kCode, L"the callee's words");
        };
        expect(ValueChanged(gain), step.ofValue);
        expect(TypeChanged(gain), step.ofType);
        step.at->FailNoMore();
    }
}

// The two questions differ in the attribute of the definition that they read.

struct Flag {
    const char* title;
    Question question;
    const wchar_t* attribute;
    const wchar_t* sibling;
};

class TamInternalAppObjectInterceptorFlagTest : public InternalTest,
                                                public testing::WithParamInterface<Flag> {
  protected:
    /// What the question makes of an answer that stands as `before`, for the
    /// attribute Gain and this content of the definition's attributes.
    VARIANT_BOOL Ask(const std::wstring& attributes, VARIANT_BOOL before) {
        SetDefinition(L"<AppObject><TAMConfig><Attributes>" + attributes +
                      L"</Attributes></TAMConfig></AppObject>");
        VARIANT_BOOL answer = before;
        VARIANT_BOOL handled = VARIANT_FALSE;
        EXPECT_EQ(
            (Interceptor().Get()->*GetParam().question)(gain->As<IAttribute>().Get(), &answer, &handled),
            S_OK);
        EXPECT_EQ(handled, VARIANT_TRUE);
        return answer;
    }
    std::wstring Element(const std::wstring& text) {
        return std::wstring(L"<Attrib Name='Other' ") + GetParam().attribute + L"='0'/><Attrib Name='Gain' " +
               GetParam().attribute + L"='" + text + L"' " + GetParam().sibling + L"='x'/>";
    }
};

TEST_P(TamInternalAppObjectInterceptorFlagTest, IsTrueForTheTextOneAlone) {
    const auto object = Created();
    EXPECT_EQ(Ask(Element(L"1"), VARIANT_FALSE), VARIANT_TRUE);
    for (const wchar_t* text : {L"0", L"", L"true", L"True", L"2", L"01", L" 1"}) {
        EXPECT_EQ(Ask(Element(text), VARIANT_TRUE), VARIANT_FALSE) << com::Bstr(text).Get();
    }
}

TEST_P(TamInternalAppObjectInterceptorFlagTest, IsFalseWhereTheDefinitionLacksTheFlag) {
    const auto object = Created();
    EXPECT_EQ(Ask(L"<Attrib Name='Gain'/>", VARIANT_TRUE), VARIANT_FALSE);
    EXPECT_EQ(Ask(std::wstring(L"<Attrib Name='Gain' ") + GetParam().sibling + L"='1'/>", VARIANT_TRUE),
              VARIANT_FALSE);
}

TEST_P(TamInternalAppObjectInterceptorFlagTest, StaysAsItWasGivenWithoutADefinition) {
    const auto object = Created();
    for (const wchar_t* attributes : {L"", L"<Attrib Name='gain'/>", L"<Other Name='Gain'/>"}) {
        EXPECT_EQ(Ask(attributes, VARIANT_TRUE), VARIANT_TRUE);
        EXPECT_EQ(Ask(attributes, VARIANT_FALSE), VARIANT_FALSE);
    }
}

TEST_P(TamInternalAppObjectInterceptorFlagTest, FetchesTheDefinitionByTheUniqueIdString) {
    const auto object = Created();
    EXPECT_EQ(Ask(L"", VARIANT_FALSE), VARIANT_FALSE);
    EXPECT_EQ(Said(L"generic"), Texts{L"generic.get UniqueIDString()"});
    EXPECT_EQ(Said(L"library"), Texts{L"library.DefinitionDocument(\"O_TAM_AI_ID\")"});
    EXPECT_EQ(Said(L"device"), Texts());
}

TEST_P(TamInternalAppObjectInterceptorFlagTest, WantsAPlaceForBothAnswers) {
    const auto object = Created();
    VARIANT_BOOL place = VARIANT_TRUE;
    const auto attribute = gain->As<IAttribute>();
    EXPECT_EQ((Interceptor().Get()->*GetParam().question)(attribute.Get(), nullptr, &place), E_POINTER);
    EXPECT_EQ((Interceptor().Get()->*GetParam().question)(attribute.Get(), &place, nullptr), E_POINTER);
    EXPECT_EQ(place, VARIANT_TRUE);
}

TEST_P(TamInternalAppObjectInterceptorFlagTest, PassesErrorsBackUnchanged) {
    constexpr auto kCode = static_cast<HRESULT>(0x80048888u);
    const auto object = Created();
    const struct {
        Double at;
        const wchar_t* member;
    } steps[] = {{generic.object, L"get UniqueIDString"},
                 {libraryService, L"get Library"},
                 {library, L"DefinitionDocument"},
                 {gain, L"get Name"}};
    for (const auto& step : steps) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(step.member)));
        step.at->Fail(step.member, kCode, L"the callee's words");
        VARIANT_BOOL answer = VARIANT_TRUE;
        VARIANT_BOOL handled = VARIANT_TRUE;
        ExpectPassedBack(
            (Interceptor().Get()->*GetParam().question)(gain->As<IAttribute>().Get(), &answer, &handled),
            kCode, L"the callee's words");
        EXPECT_EQ(answer, VARIANT_TRUE);
        EXPECT_EQ(handled, VARIANT_FALSE);
        step.at->FailNoMore();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Of, TamInternalAppObjectInterceptorFlagTest,
    testing::Values(Flag{"IsUnitsDependent", &IAttributeInterceptor::InterceptIsUnitsDependent,
                         L"UnitDependent", L"Differential"},
                    Flag{"IsDifferential", &IAttributeInterceptor::InterceptIsDifferential, L"Differential",
                         L"UnitDependent"}),
    [](const auto& one) { return std::string(one.param.title); });

} // namespace

} // namespace internal_tests
