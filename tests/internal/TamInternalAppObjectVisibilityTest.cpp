#include "tests/internal/Channel.h"

#include <string>
#include <vector>

// What the "TAMConfig" section of a channel's definition does to the generic
// object's points while the channel object is created.

namespace internal_tests {

namespace {

using Texts = std::vector<std::wstring>;

class TamInternalAppObjectVisibilityTest : public InternalTest {
  protected:
    /// Creates a channel with this content of "TAMConfig"; answers what was
    /// done to the visibility of points, in order.
    Texts Configure(const std::wstring& content) {
        SetDefinition(L"<AppObject><TAMConfig>" + content + L"</TAMConfig></AppObject>");
        const auto object = NewChannel(L"AI3", Device().Get());
        Calls().clear();
        EXPECT_EQ(object->Create(), S_OK);
        Texts writes;
        for (const std::wstring& text : Said()) {
            if (text.find(L".put Visible(") != std::wstring::npos) {
                writes.push_back(text);
            }
        }
        return writes;
    }
    Texts ConfigureInput(const std::wstring& attributes) {
        return Configure(L"<InReferences><InReference " + attributes + L"/></InReferences>");
    }
};

TEST_F(TamInternalAppObjectVisibilityTest, SetsInputsThenOutputsThenAttributesEachInDocumentOrder) {
    EXPECT_EQ(
        Configure(
            L"<Attributes><Attrib Name='Setup' Visible='1'/><Attrib Name='Gain' Visible='0'/></Attributes>"
            L"<OutReferences><OutReference Name='Alarm' Visible='0'/></OutReferences>"
            L"<InReferences><InReference Name='In2' Visible='1'/><InReference Name='In1' Visible='0'/>"
            L"</InReferences>"),
        (Texts{L"In2.put Visible(True)", L"In1.put Visible(False)", L"Alarm.put Visible(False)",
               L"Setup.put Visible(True)", L"Gain.put Visible(False)"}));
}

TEST_F(TamInternalAppObjectVisibilityTest, ShowsForTheTextOneAlone) {
    EXPECT_EQ(ConfigureInput(L"Name='In1' Visible='1'"), Texts{L"In1.put Visible(True)"});
    for (const wchar_t* text : {L"0", L"true", L"True", L"", L"2", L"01", L"-1", L"yes"}) {
        EXPECT_EQ(ConfigureInput(std::wstring(L"Name='In1' Visible='") + text + L"'"),
                  Texts{L"In1.put Visible(False)"})
            << com::Bstr(text).Get();
    }
}

TEST_F(TamInternalAppObjectVisibilityTest, LeavesAPointWithoutTheFlag) {
    EXPECT_EQ(ConfigureInput(L"Name='In1'"), Texts());
    EXPECT_EQ(ConfigureInput(L"Name='In1' visible='1'"), Texts()) << "names of attributes have a letter case";
}

TEST_F(TamInternalAppObjectVisibilityTest, PassesOverANameThatIsNotFound) {
    EXPECT_EQ(Configure(L"<InReferences><InReference Name='Nowhere' Visible='1'/>"
                        L"<InReference Name='In2' Visible='1'/></InReferences>"),
              Texts{L"In2.put Visible(True)"});
}

TEST_F(TamInternalAppObjectVisibilityTest, TakesAnElementWithoutANameForOneThatIsNotFound) {
    EXPECT_EQ(ConfigureInput(L"Visible='1'"), Texts());
}

TEST_F(TamInternalAppObjectVisibilityTest, LooksInTheCollectionOfItsListAlone) {
    EXPECT_EQ(Configure(L"<InReferences><InReference Name='Out' Visible='1'/></InReferences>"
                        L"<OutReferences><OutReference Name='Gain' Visible='1'/></OutReferences>"
                        L"<Attributes><Attrib Name='In1' Visible='1'/></Attributes>"),
              Texts());
}

TEST_F(TamInternalAppObjectVisibilityTest, PassesOverOtherElements) {
    EXPECT_EQ(
        Configure(L"<InReferences><Input Name='In1' Visible='1'/><!--<InReference Name='In1' Visible='1'/>-->"
                  L"</InReferences><Outputs><OutReference Name='Out' Visible='1'/></Outputs>"
                  L"<Attrib Name='Gain' Visible='1'/>"),
        Texts());
}

TEST_F(TamInternalAppObjectVisibilityTest, SetsNothingWithoutItsSection) {
    SetDefinition(
        L"<AppObject><InReferences><InReference Name='In1' Visible='1'/></InReferences></AppObject>");
    const auto object = NewChannel(L"AI3", Device().Get());
    EXPECT_EQ(object->Create(), S_OK);
    EXPECT_EQ(in1->Value(L"Visible"), L"none");
    EXPECT_TRUE(InputOf(object, L"In1"));
}

TEST_F(TamInternalAppObjectVisibilityTest, TakesItsSectionFromTheObjectsRootAlone) {
    SetDefinition(
        L"<Other><AppObject><TAMConfig><InReferences><InReference Name='In1' Visible='1'/></InReferences>"
        L"</TAMConfig></AppObject></Other>");
    EXPECT_EQ(NewChannel(L"AI3", Device().Get())->Create(), S_OK);
    EXPECT_EQ(in1->Value(L"Visible"), L"none");
}

TEST_F(TamInternalAppObjectVisibilityTest, TakesTheLastOfSeveralElementsOfOneName) {
    EXPECT_EQ(
        Configure(L"<InReferences><InReference Name='In1' Visible='1'/><InReference Name='In1' Visible='0'/>"
                  L"</InReferences>"),
        (Texts{L"In1.put Visible(True)", L"In1.put Visible(False)"}));
}

TEST_F(TamInternalAppObjectVisibilityTest, AsksTheGenericObjectsCollectionsByName) {
    SetDefinition(
        L"<AppObject><TAMConfig><OutReferences><OutReference Name='Out' Visible='1'/></OutReferences>"
        L"</TAMConfig></AppObject>");
    const auto object = NewChannel(L"AI3", Device().Get());
    Calls().clear();
    EXPECT_EQ(object->Create(), S_OK);
    const Texts said = Said(L"generic.Outputs");
    EXPECT_EQ(said, (Texts{L"generic.Outputs.get NewEnum()", L"generic.Outputs.get Item(\"Out\")"}));
}

TEST_F(TamInternalAppObjectVisibilityTest, SetsVisibleByNameWherePointsOfferItThere) {
    EXPECT_EQ(ConfigureInput(L"Name='In1' Visible='1'"), Texts{L"In1.put Visible(True)"});
    EXPECT_FALSE(Calls().back().isByName) << "the interface comes first";
    in1->HideFace(__uuidof(IVisibleItem));
    EXPECT_EQ(ConfigureInput(L"Name='In1' Visible='1'"), Texts{L"In1.put Visible(True)"});
    EXPECT_TRUE(Calls().back().isByName);
    EXPECT_EQ(in1->Value(L"Visible"), L"True");
    EXPECT_EQ(ConfigureInput(L"Name='In1' Visible='0'"), Texts{L"In1.put Visible(False)"});
}

TEST_F(TamInternalAppObjectVisibilityTest, PassesErrorsOfThePointsBackUnchanged) {
    constexpr auto kCode = static_cast<HRESULT>(0x80043333u);
    for (const bool isHidden : {false, true}) {
        if (isHidden) {
            in1->HideFace(__uuidof(IVisibleItem));
        }
        SetDefinition(
            L"<AppObject><TAMConfig><InReferences><InReference Name='In1' Visible='1'/></InReferences>"
            L"</TAMConfig></AppObject>");
        in1->Fail(L"put Visible", kCode, L"it stays as it is");
        EXPECT_EQ(NewChannel(L"AI3", Device().Get())->Create(), kCode);
        const support::ErrorTexts texts = support::LastError();
        EXPECT_EQ(texts.description, L"it stays as it is");
        EXPECT_EQ(texts.source, L"Double");
    }
}

TEST_F(TamInternalAppObjectVisibilityTest, PassesErrorsOfTheCollectionsBackUnchanged) {
    SetDefinition(L"<AppObject><TAMConfig><Attributes><Attrib Name='Gain' Visible='1'/></Attributes>"
                  L"</TAMConfig></AppObject>");
    generic.attributes->Fail(L"get Item", kInvalidCall, L"no such attribute");
    ExpectRaised(NewChannel(L"AI3", Device().Get())->Create(), kInvalidCall, L"no such attribute", L"Double");
}

} // namespace

} // namespace internal_tests
