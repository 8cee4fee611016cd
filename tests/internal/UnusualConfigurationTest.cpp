#include "tests/internal/Channel.h"

#include <string>
#include <vector>

// Definition documents as a stranger may write them: what of them counts for
// the visibility of points and for the two flags of attributes.

namespace internal_tests {

namespace {

using Texts = std::vector<std::wstring>;

constexpr const wchar_t* kSome = L"<InReferences><InReference Name='In1' Visible='1'/></InReferences>"
                                 L"<OutReferences><OutReference Name='Out' Visible='1'/></OutReferences>"
                                 L"<Attributes><Attrib Name='Gain' Visible='1'/></Attributes>";

class UnusualConfigurationTest : public InternalTest {
  protected:
    /// What the creation with this definition does to the visibility of points.
    Texts Writes(const std::wstring& definition) {
        SetDefinition(definition);
        const auto object = NewChannel(L"AI3", Device().Get());
        Calls().clear();
        EXPECT_EQ(object->Create(), S_OK) << com::Bstr(definition).Get();
        Texts writes;
        for (const std::wstring& text : Said()) {
            if (text.find(L".put Visible(") != std::wstring::npos) {
                writes.push_back(text);
            }
        }
        return writes;
    }
    Texts WritesOf(const std::wstring& section) {
        return Writes(L"<AppObject><TAMConfig>" + section + L"</TAMConfig></AppObject>");
    }
};

TEST_F(UnusualConfigurationTest, CountsInItsPlainShape) {
    EXPECT_EQ(WritesOf(kSome),
              (Texts{L"In1.put Visible(True)", L"Out.put Visible(True)", L"Gain.put Visible(True)"}));
}

TEST_F(UnusualConfigurationTest, IsNotThereUnderOtherNamesOrPlaces) {
    const std::wstring some = kSome;
    for (const std::wstring& definition :
         {L"<Object><TAMConfig>" + some + L"</TAMConfig></Object>",
          L"<appobject><TAMConfig>" + some + L"</TAMConfig></appobject>",
          L"<AppObject><TamConfig>" + some + L"</TamConfig></AppObject>",
          L"<AppObject><Other><TAMConfig>" + some + L"</TAMConfig></Other></AppObject>",
          L"<AppObject><TAMConfig><Group>" + some + L"</Group></TAMConfig></AppObject>",
          L"<AppObject>" + some + L"</AppObject>", L"<TAMConfig>" + some + L"</TAMConfig>",
          L"<AppObject xmlns='urn:x'><TAMConfig>" + some + L"</TAMConfig></AppObject>",
          L"<x:AppObject xmlns:x='urn:x'><TAMConfig>" + some + L"</TAMConfig></x:AppObject>",
          L"<AppObject xmlns:x='urn:x'><x:TAMConfig>" + some + L"</x:TAMConfig></AppObject>",
          L"<AppObject><TAMConfig xmlns='urn:x'>" + some + L"</TAMConfig></AppObject>",
          std::wstring(L"<AppObject><TAMConfig/></AppObject>"),
          std::wstring(L"<AppObject><TAMConfig><InReferences/><OutReferences/><Attributes/></TAMConfig>"
                       L"</AppObject>")}) {
        EXPECT_EQ(Writes(definition), Texts()) << com::Bstr(definition).Get();
    }
}

TEST_F(UnusualConfigurationTest, TakesTheFirstOfSeveralSections) {
    EXPECT_EQ(Writes(L"<AppObject><TAMConfig><InReferences><InReference Name='In2' Visible='0'/>"
                     L"</InReferences></TAMConfig><TAMConfig>" +
                     std::wstring(kSome) + L"</TAMConfig></AppObject>"),
              Texts{L"In2.put Visible(False)"});
    EXPECT_EQ(
        Writes(L"<AppObject><TAMConfig/><TAMConfig>" + std::wstring(kSome) + L"</TAMConfig></AppObject>"),
        Texts());
}

TEST_F(UnusualConfigurationTest, TakesEveryListOfAKind) {
    EXPECT_EQ(WritesOf(L"<InReferences><InReference Name='In1' Visible='1'/></InReferences>"
                       L"<OutReferences><OutReference Name='Out' Visible='0'/></OutReferences>"
                       L"<InReferences/><InReferences><InReference Name='In2' Visible='0'/></InReferences>"
                       L"<OutReferences><OutReference Name='Alarm' Visible='1'/></OutReferences>"
                       L"<Attributes><Attrib Name='Gain' Visible='0'/></Attributes>"
                       L"<Attributes><Attrib Name='Setup' Visible='1'/></Attributes>"),
              (Texts{L"In1.put Visible(True)", L"In2.put Visible(False)", L"Out.put Visible(False)",
                     L"Alarm.put Visible(True)", L"Gain.put Visible(False)", L"Setup.put Visible(True)"}));
}

TEST_F(UnusualConfigurationTest, PassesOverElementsOfAnotherKindInAList) {
    EXPECT_EQ(
        WritesOf(L"<OutReferences><InReference Name='Out' Visible='1'/><Attrib Name='Out' Visible='1'/>"
                 L"<Other Name='Out' Visible='1'/></OutReferences><Attributes><OutReference Name='Gain' "
                 L"Visible='1'/><Attribute Name='Gain' Visible='1'/></Attributes>"),
        Texts());
}

TEST_F(UnusualConfigurationTest, PassesOverElementsInAnotherLetterCaseOrNamespace) {
    EXPECT_EQ(WritesOf(L"<inreferences><InReference Name='In1' Visible='1'/></inreferences>"
                       L"<InReferences><inreference Name='In1' Visible='1'/><INREFERENCE Name='In1' "
                       L"Visible='1'/><InReference name='In1' Visible='1'/><InReference Name='In1' "
                       L"VISIBLE='1'/><OutReference Name='In1' Visible='1'/></InReferences>"),
              Texts());
    EXPECT_EQ(WritesOf(L"<InReferences xmlns:x='urn:x'><x:InReference Name='In1' Visible='1'/>"
                       L"<InReference x:Name='In1' Visible='1'/><InReference Name='In1' x:Visible='1'/>"
                       L"</InReferences><x:Attributes xmlns:x='urn:x'><Attrib Name='Gain' Visible='1'/>"
                       L"</x:Attributes>"),
              Texts());
}

TEST_F(UnusualConfigurationTest, TakesTheFlagFromTheAttributeAlone) {
    EXPECT_EQ(WritesOf(L"<InReferences>text<InReference Other='0' Visible='1' Name='In1'><Visible>0</Visible>"
                       L"<InReference Name='In2' Visible='1'/>text</InReference><InReference Name='In2'>"
                       L"<Visible>1</Visible></InReference></InReferences>"),
              Texts{L"In1.put Visible(True)"});
}

TEST_F(UnusualConfigurationTest, ReadsTheTextThatTheMarkupMeans) {
    EXPECT_EQ(WritesOf(L"<InReferences><InReference Name='In&#49;' Visible='&#49;'/></InReferences>"),
              Texts{L"In1.put Visible(True)"});
    EXPECT_EQ(WritesOf(L"<InReferences><InReference Name='In1' Visible='1 '/></InReferences>"),
              Texts{L"In1.put Visible(False)"});
}

TEST_F(UnusualConfigurationTest, HidesForAnEmptyFlagAndPassesOverAnEmptyName) {
    EXPECT_EQ(WritesOf(L"<OutReferences><OutReference Name='' Visible='0'/><OutReference Name='Out' "
                       L"Visible=''/></OutReferences>"),
              Texts{L"Out.put Visible(False)"});
}

TEST_F(UnusualConfigurationTest, FindsAPointByItsNameInAnyLetterCase) {
    EXPECT_EQ(WritesOf(L"<InReferences><InReference Name='IN1' Visible='0'/></InReferences>"
                       L"<Attributes><Attrib Name='gAIN' Visible='1'/></Attributes>"),
              (Texts{L"In1.put Visible(False)", L"Gain.put Visible(True)"}));
}

TEST_F(UnusualConfigurationTest, TakesANumberForANameAndNotForAPosition) {
    EXPECT_EQ(WritesOf(L"<InReferences><InReference Name='1' Visible='0'/></InReferences>"
                       L"<OutReferences><OutReference Name='2' Visible='0'/></OutReferences>"
                       L"<Attributes><Attrib Name='3rd' Visible='0'/></Attributes>"),
              Texts());
    in2->Set(L"Name", L"1");
    EXPECT_EQ(WritesOf(L"<InReferences><InReference Name='1' Visible='0'/></InReferences>"),
              Texts{L"In2.put Visible(False)"});
}

// The flags of an attribute are found from the document's element, whatever
// its name is.

using Question = HRESULT (STDMETHODCALLTYPE IAttributeInterceptor::*)(IAttribute*, VARIANT_BOOL*,
                                                                      VARIANT_BOOL*);

class UnusualConfigurationFlagTest : public InternalTest {
  protected:
    static constexpr Question kQuestions[] = {&IAttributeInterceptor::InterceptIsUnitsDependent,
                                              &IAttributeInterceptor::InterceptIsDifferential};
    static constexpr const wchar_t* kBoth = L"UnitDependent='1' Differential='1'/>";

    /// The answer to both questions with this definition; another when they differ.
    VARIANT_BOOL Ask(const std::wstring& definition, VARIANT_BOOL before) {
        SetDefinition(definition);
        VARIANT_BOOL answers[] = {before, before};
        for (const int i : {0, 1}) {
            VARIANT_BOOL handled = VARIANT_FALSE;
            EXPECT_EQ(
                (Interceptor().Get()->*kQuestions[i])(gain->As<IAttribute>().Get(), &answers[i], &handled),
                S_OK)
                << com::Bstr(definition).Get();
            EXPECT_EQ(handled, VARIANT_TRUE);
        }
        return answers[0] == answers[1] ? answers[0] : VARIANT_BOOL{7};
    }
    /// Whether the attribute has a definition there.
    bool IsDefined(const std::wstring& definition) { return Ask(definition, VARIANT_FALSE) == VARIANT_TRUE; }
    static std::wstring In(const std::wstring& attributes) {
        return L"<AppObject><TAMConfig><Attributes>" + attributes + L"</Attributes></TAMConfig></AppObject>";
    }
};

TEST_F(UnusualConfigurationFlagTest, AreFoundUnderARootOfAnyName) {
    const auto object = Created();
    const std::wstring section =
        std::wstring(L"<TAMConfig><Attributes><Attrib Name='Gain' ") + kBoth + L"</Attributes></TAMConfig>";
    EXPECT_TRUE(IsDefined(L"<AppObject>" + section + L"</AppObject>"));
    EXPECT_TRUE(IsDefined(L"<Whatever>" + section + L"</Whatever>"));
    EXPECT_TRUE(IsDefined(L"<x:AppObject xmlns:x='urn:x'>" + section + L"</x:AppObject>"));
    EXPECT_FALSE(IsDefined(L"<Root><AppObject>" + section + L"</AppObject></Root>"));
    EXPECT_FALSE(IsDefined(section)) << "the root itself is not the section";
}

TEST_F(UnusualConfigurationFlagTest, AreThoseOfTheFirstElementOfTheName) {
    const auto object = Created();
    EXPECT_TRUE(IsDefined(In(std::wstring(L"<Attrib Name='Other'/><Attrib Name='Gain' ") + kBoth +
                             L"<Attrib Name='Gain' UnitDependent='0' Differential='0'/>")));
    EXPECT_EQ(Ask(In(std::wstring(L"<Attrib Name='Gain'/><Attrib Name='Gain' ") + kBoth), VARIANT_TRUE),
              VARIANT_FALSE);
}

TEST_F(UnusualConfigurationFlagTest, AreFoundInALaterSectionOrList) {
    const auto object = Created();
    const std::wstring list = std::wstring(L"<Attributes><Attrib Name='Gain' ") + kBoth + L"</Attributes>";
    EXPECT_TRUE(IsDefined(L"<AppObject><TAMConfig/><TAMConfig>" + list + L"</TAMConfig></AppObject>"));
    EXPECT_TRUE(IsDefined(L"<AppObject><TAMConfig><Attributes/>" + list + L"</TAMConfig></AppObject>"));
}

TEST_F(UnusualConfigurationFlagTest, AreNotFoundUnderOtherNames) {
    const auto object = Created();
    const std::wstring both = kBoth;
    for (const std::wstring& definition :
         {In(L"<attrib Name='Gain' " + both), In(L"<Attrib name='Gain' " + both),
          In(L"<Attrib Name='GAIN' " + both), In(L"<Attrib Name='' " + both),
          In(L"<Attrib Name='Gain ' " + both), In(L"<Attribute Name='Gain' " + both),
          In(L"<x:Attrib xmlns:x='urn:x' Name='Gain' " + both),
          In(L"<Attrib xmlns:x='urn:x' x:Name='Gain' " + both),
          L"<AppObject xmlns='urn:x'><TAMConfig><Attributes><Attrib Name='Gain' " + both +
              L"</Attributes></TAMConfig></AppObject>",
          L"<AppObject><TAMConfig><Attributes><Group><Attrib Name='Gain' " + both +
              L"</Group></Attributes></TAMConfig></AppObject>"}) {
        EXPECT_EQ(Ask(definition, VARIANT_FALSE), VARIANT_FALSE) << com::Bstr(definition).Get();
        EXPECT_EQ(Ask(definition, VARIANT_TRUE), VARIANT_TRUE) << com::Bstr(definition).Get();
    }
    EXPECT_EQ(Ask(In(L"<Attrib xmlns:x='urn:x' Name='Gain' x:UnitDependent='1' x:Differential='1'/>"),
                  VARIANT_TRUE),
              VARIANT_FALSE)
        << "defined, but without the flag";
}

TEST_F(UnusualConfigurationFlagTest, AreFoundForANameWithAnApostrophe) {
    const auto object = Created();
    gain->Set(L"Name", L"Gain's");
    EXPECT_TRUE(IsDefined(In(std::wstring(L"<Attrib Name=\"Gain's\" ") + kBoth)));
}

TEST_F(UnusualConfigurationFlagTest, RaiseTheDomsOwnErrorForANameWithAQuote) {
    const auto object = Created();
    gain->Set(L"Name", L"Gain\"s");
    const support::Document definition = support::Parse(In(L""));
    com::Ref<IXMLDOMNode> none;
    const HRESULT expected =
        support::Root(definition)
            ->selectSingleNode(com::Bstr(L"TAMConfig/Attributes/Attrib[@Name=\"Gain\"s\"]").Get(),
                               none.Put());
    ASSERT_TRUE(FAILED(expected));
    SetDefinition(In(L""));
    for (const Question question : kQuestions) {
        VARIANT_BOOL answer = VARIANT_TRUE;
        VARIANT_BOOL handled = VARIANT_TRUE;
        EXPECT_EQ((Interceptor().Get()->*question)(gain->As<IAttribute>().Get(), &answer, &handled),
                  expected);
        EXPECT_EQ(answer, VARIANT_TRUE);
        EXPECT_EQ(handled, VARIANT_FALSE);
    }
}

TEST_F(UnusualConfigurationFlagTest, NeedADocumentWithAnElement) {
    const auto object = Created();
    const support::Document empty = support::NewDocument();
    library->On(L"DefinitionDocument", [empty](const Invocation& call) { return call.Answer(empty.Get()); });
    for (const Question question : kQuestions) {
        VARIANT_BOOL answer = VARIANT_TRUE;
        VARIANT_BOOL handled = VARIANT_TRUE;
        ExpectRaised((Interceptor().Get()->*question)(gain->As<IAttribute>().Get(), &answer, &handled),
                     kObjectNotSet);
        EXPECT_EQ(answer, VARIANT_TRUE);
    }
    EXPECT_EQ(object->Create(), S_OK) << "it has no section, and that is all";
}

} // namespace

} // namespace internal_tests
