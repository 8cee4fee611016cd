// The panes of findings and of the source.

#include "tests/view/Fixture.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace viewtest {

namespace {

// Columns of the findings.
constexpr int kWeight = 0;
constexpr int kPlace = 1;
constexpr int kMessage = 2;
constexpr int kRule = 3;

class FindingsTest : public ViewTest {
  protected:
    /// What is selected in the source.
    static std::wstring Selected(const Viewer& viewer) {
        DWORD begin = 0;
        DWORD end = 0;
        // The system brings these two over itself.
        SendMessageW(viewer.Part(IDC_SOURCE), EM_GETSEL, reinterpret_cast<WPARAM>(&begin),
                     reinterpret_cast<LPARAM>(&end));
        return viewer.PartText(IDC_SOURCE).substr(begin, end - begin);
    }
    /// The place of the first finding of a rule.
    static int OfRule(const Viewer& viewer, const std::wstring& rule) {
        return viewer.PlaceOf(IDC_FINDINGS, rule, kRule);
    }
    static void AwaitFindings(const Viewer& viewer) {
        Await("findings", [&] { return viewer.Count(IDC_FINDINGS) > 0 && viewer.IsEnabled(IDM_FILE_OPEN); });
    }
    static void ExpectNoErrors(const Viewer& viewer) {
        for (const std::wstring& weight : viewer.Cells(IDC_FINDINGS, kWeight)) {
            EXPECT_TRUE(weight == L"Warning" || weight == L"Note") << Narrow(weight);
        }
    }
    static void Show(const Viewer& viewer, int command) {
        if (!viewer.IsTicked(command)) {
            viewer.Do(command);
        }
    }
};

TEST_F(FindingsTest, AGoodFileHasNoErrors) {
    Viewer viewer({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    ExpectNoErrors(viewer);
}

TEST_F(FindingsTest, ShowsWhatIsWrongAndWhatTheComponentSaid) {
    Viewer viewer({Sample(L"oddities.xml")});
    AwaitAttributes(viewer, 8);
    EXPECT_EQ(7, viewer.Count(IDC_INPUTS));
    EXPECT_EQ(7, viewer.Count(IDC_OUTPUTS));
    const Texts weights = viewer.Cells(IDC_FINDINGS, kWeight);
    EXPECT_EQ(8, std::count(weights.begin(), weights.end(), L"Box"))
        << "the boxes that the component shows at load";
    EXPECT_GT(std::count(weights.begin(), weights.end(), L"Error"), 0);
    const Texts messages = viewer.Cells(IDC_FINDINGS, kMessage);
    EXPECT_TRUE(std::any_of(messages.begin(), messages.end(), [](const std::wstring& message) {
        return message.find(L"AO1_In1: SNVT Compatibility list not defined") != std::wstring::npos;
    }));
    EXPECT_FALSE(viewer.ShownBox()) << "no box waits for an answer";
}

TEST_F(FindingsTest, ADoubleClickGoesToThePointAndToTheSource) {
    Viewer viewer({Sample(L"oddities.xml")});
    AwaitAttributes(viewer, 8);
    Show(viewer, IDM_VIEW_FINDINGS);
    Show(viewer, IDM_VIEW_SOURCE);
    const Texts messages = viewer.Cells(IDC_FINDINGS, kMessage);
    const auto found = std::find_if(messages.begin(), messages.end(), [](const std::wstring& text) {
        return text.starts_with(L"99.5 is outside the limits");
    });
    ASSERT_NE(messages.end(), found);
    viewer.DoubleClickRow(IDC_FINDINGS, static_cast<int>(found - messages.begin()));
    Await("the selection", [&] { return Selected(viewer) == L"99.5"; });
    Await("the point", [&] { return viewer.PickedName(IDC_ATTRIBUTES) == L"AO2_Gain"; });
    EXPECT_TRUE(viewer.IsVisible(IDC_ATTRIBUTES));
}

TEST_F(FindingsTest, ADoubleClickOnABoxGoesToItsPoint) {
    Viewer viewer({Sample(L"oddities.xml")});
    AwaitAttributes(viewer, 8);
    const Texts messages = viewer.Cells(IDC_FINDINGS, kMessage);
    const auto found = std::find_if(messages.begin(), messages.end(), [](const std::wstring& text) {
        return text.find(L"AO2_In1: SNVT Compatibility") != std::wstring::npos;
    });
    ASSERT_NE(messages.end(), found);
    viewer.DoubleClickRow(IDC_FINDINGS, static_cast<int>(found - messages.begin()));
    Await("the point", [&] { return viewer.PickedName(IDC_INPUTS) == L"AO2_In1"; });
    EXPECT_TRUE(viewer.IsVisible(IDC_INPUTS));
}

TEST_F(FindingsTest, ABoxAboutAnUnknownTypeGoesToThePointWithIt) {
    Viewer viewer({Sample(L"oddities.xml")});
    AwaitAttributes(viewer, 8);
    const Texts messages = viewer.Cells(IDC_FINDINGS, kMessage);
    const Texts places = viewer.Cells(IDC_FINDINGS, kPlace);
    std::map<std::wstring, Texts> found;
    for (std::size_t i = 0; i < messages.size(); ++i) {
        constexpr std::wstring_view kWords = L"Can't find the node related to SNVT ID ";
        if (messages[i].starts_with(kWords)) {
            found[messages[i].substr(kWords.size())].push_back(places[i]);
        }
    }
    // An output loads its type once and an attribute twice.
    const std::map<std::wstring, Texts> expected = {
        {L"9999", {L"52:5", L"85:5", L"85:5"}}, {L"140", {L"70:5"}}, {L"0105", {L"74:5"}}};
    EXPECT_EQ(expected, found);
    const auto box = std::find_if(messages.begin(), messages.end(),
                                  [](const std::wstring& text) { return text.ends_with(L"SNVT ID 140"); });
    ASSERT_NE(messages.end(), box);
    viewer.DoubleClickRow(IDC_FINDINGS, static_cast<int>(box - messages.begin()));
    Await("the point", [&] { return viewer.PickedName(IDC_OUTPUTS) == L"AI5_Out"; });
}

TEST_F(FindingsTest, OfManyBoxesTheLatestAreListed) {
    constexpr int kOutputs = 1100;
    constexpr int kListed = 1000;
    std::string outputs;
    for (int i = 0; i < kOutputs; ++i) {
        const std::string name = "O" + std::to_string(i);
        outputs.append("<").append(name).append("><SNVTTYPE>9999</SNVTTYPE></").append(name).append(">\n");
    }
    Viewer viewer(
        {FileWith(L"many.xml", "<Tam><Name>Many</Name><DevKey>K7</DevKey><IsLastOnDev>0</IsLastOnDev>"
                               "<TamObjID>1</TamObjID>\n<OutReferences>\n" +
                                   outputs + "</OutReferences>\n</Tam>\n")});
    Await("the outputs",
          [&] { return viewer.Count(IDC_OUTPUTS) == kOutputs && viewer.IsEnabled(IDM_FILE_OPEN); });
    const Texts weights = viewer.Cells(IDC_FINDINGS, kWeight);
    EXPECT_EQ(1 + kListed, std::count(weights.begin(), weights.end(), L"Box"));
    EXPECT_EQ(L"100 older boxes are left out", viewer.Cell(IDC_FINDINGS, 0, kMessage));
    // The first two lines are none of an output's, and each output has one box.
    EXPECT_EQ(L"103:1", viewer.Cell(IDC_FINDINGS, 1, kPlace)) << "the box of O100";
    EXPECT_EQ(L"1102:1", viewer.Cell(IDC_FINDINGS, kListed, kPlace)) << "the box of O1099";
    const auto errors = std::count(weights.begin(), weights.end(), L"Error");
    EXPECT_EQ(L"Findings: " + std::to_wstring(weights.size() - 1 + 100) + L", of them errors and boxes: " +
                  std::to_wstring(kOutputs + errors),
              viewer.PartText(IDC_FINDINGS_TITLE));
    // The line about the others leads nowhere.
    viewer.DoubleClickRow(IDC_FINDINGS, 0);
    viewer.Settle();
    EXPECT_FALSE(viewer.ShownBox());
    viewer.Close();
}

TEST_F(FindingsTest, AFindingWithoutAPointShowsTheHiddenSource) {
    Viewer viewer({Sample(L"damaged.xml")});
    AwaitFindings(viewer);
    if (viewer.IsTicked(IDM_VIEW_SOURCE)) {
        viewer.Do(IDM_VIEW_SOURCE);
    }
    ASSERT_FALSE(viewer.IsVisible(IDC_SOURCE));
    const Texts places = viewer.Cells(IDC_FINDINGS, kPlace);
    const auto found =
        std::find_if(places.begin(), places.end(), [](const std::wstring& place) { return !place.empty(); });
    ASSERT_NE(places.end(), found);
    viewer.DoubleClickRow(IDC_FINDINGS, static_cast<int>(found - places.begin()));
    Await("the source", [&] { return viewer.IsVisible(IDC_SOURCE) && viewer.Focus() == IDC_SOURCE; });
    EXPECT_NE(std::wstring::npos, viewer.PartText(IDC_SOURCE_TITLE).find(*found))
        << Narrow(viewer.PartText(IDC_SOURCE_TITLE));
}

TEST_F(FindingsTest, EachFindingLeadsToItsPlace) {
    Viewer viewer({Sample(L"oddities.xml")});
    AwaitAttributes(viewer, 8);
    Show(viewer, IDM_VIEW_SOURCE);
    Await("the source", [&] { return !viewer.PartText(IDC_SOURCE).empty(); });
    const std::wstring source = viewer.PartText(IDC_SOURCE);
    const int count = viewer.Count(IDC_FINDINGS);
    for (int place = 0; place < count; ++place) {
        const std::wstring at = viewer.Cell(IDC_FINDINGS, place, kPlace);
        if (at.empty()) {
            continue;
        }
        viewer.Pick(IDC_FINDINGS, place);
        viewer.Settle();
        const auto line = std::stoul(at);
        const auto column = std::stoul(at.substr(at.find(L':') + 1));
        std::size_t offset = 0;
        for (unsigned long i = 1; i < line; ++i) {
            offset = source.find(L"\r\n", offset) + 2;
        }
        DWORD begin = 0;
        SendMessageW(viewer.Part(IDC_SOURCE), EM_GETSEL, reinterpret_cast<WPARAM>(&begin), 0);
        EXPECT_EQ(offset + column - 1, begin)
            << Narrow(at) << " " << Narrow(viewer.Cell(IDC_FINDINGS, place, kMessage));
    }
}

TEST_F(FindingsTest, AKeyGoesFromFindingToFinding) {
    Viewer viewer({Sample(L"oddities.xml")});
    AwaitAttributes(viewer, 8);
    const int count = viewer.Count(IDC_FINDINGS);
    viewer.Do(IDM_VIEW_NEXT_FINDING);
    EXPECT_EQ(0, viewer.Picked(IDC_FINDINGS));
    viewer.Do(IDM_VIEW_NEXT_FINDING);
    EXPECT_EQ(1, viewer.Picked(IDC_FINDINGS));
    viewer.Do(IDM_VIEW_PREVIOUS_FINDING);
    viewer.Do(IDM_VIEW_PREVIOUS_FINDING);
    EXPECT_EQ(count - 1, viewer.Picked(IDC_FINDINGS)) << "around the end";
}

TEST_F(FindingsTest, AFileThatDoesNotLoadShowsWhyAndWhere) {
    Viewer viewer({Sample(L"damaged.xml")});
    AwaitFindings(viewer);
    EXPECT_EQ(0, viewer.Count(IDC_ATTRIBUTES));
    EXPECT_FALSE(viewer.IsEnabled(IDM_FILE_SAVE));
    Show(viewer, IDM_VIEW_SOURCE);
    // The window shows it after its first picture.
    Await("the source", [&] { return viewer.PartText(IDC_SOURCE).find(L"<Tam>") != std::wstring::npos; });
    const Texts rules = viewer.Cells(IDC_FINDINGS, kRule);
    EXPECT_TRUE(std::any_of(rules.begin(), rules.end(),
                            [](const std::wstring& rule) { return rule.starts_with(L"xml"); }));
    viewer.Drop({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    ExpectNoErrors(viewer);
}

TEST_F(FindingsTest, EachStreamWithFaultsOpens) {
    for (const wchar_t* name : {L"missing_name.xml", L"duplicate_attribute.xml"}) {
        Viewer viewer({Sample(name)});
        AwaitFindings(viewer);
        EXPECT_FALSE(viewer.ShownBox());
        viewer.Close();
    }
}

TEST_F(FindingsTest, ThePanesAreShownAndHidden) {
    Viewer viewer({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    for (const auto& [command, part] :
         {std::pair(IDM_VIEW_FINDINGS, IDC_FINDINGS), {IDM_VIEW_SOURCE, IDC_SOURCE}}) {
        const bool wasShown = viewer.IsVisible(part);
        EXPECT_EQ(wasShown, viewer.IsTicked(command));
        viewer.Do(command);
        EXPECT_EQ(!wasShown, viewer.IsVisible(part)) << command;
        EXPECT_EQ(!wasShown, viewer.IsTicked(command));
        viewer.Do(command);
        EXPECT_EQ(wasShown, viewer.IsVisible(part));
    }
}

TEST_F(FindingsTest, TheSourceCannotBeTypedInto) {
    Viewer viewer({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    Show(viewer, IDM_VIEW_SOURCE);
    Await("the source", [&] { return !viewer.PartText(IDC_SOURCE).empty(); });
    const std::wstring before = viewer.PartText(IDC_SOURCE);
    SendMessageW(viewer.Part(IDC_SOURCE), WM_CHAR, L'x', 1);
    EXPECT_EQ(before, viewer.PartText(IDC_SOURCE));
}

} // namespace

} // namespace viewtest
