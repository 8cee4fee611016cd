// The findings filtered by what is typed, as the lists of points are.

#include "tests/view/Fixture.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace viewtest {

namespace {

// Columns of the findings.
constexpr int kWeightColumn = 0;
constexpr int kWordsColumn = 2;

/// The window with the sample "oddities", the keyboard in its findings.
class FindingsFilterTest : public ViewTest {
  protected:
    FindingsFilterTest() : viewer_({Sample(L"oddities.xml")}) {
        AwaitAttributes(viewer_, kOddAttributes);
        if (!viewer_.IsTicked(IDM_VIEW_FINDINGS)) {
            viewer_.Do(IDM_VIEW_FINDINGS);
        }
        viewer_.Do(IDM_VIEW_ATTRIBUTES);
        viewer_.ToFront();
        AwaitFocus(IDC_ATTRIBUTES);
        GoToFindings();
        all_ = viewer_.Cells(IDC_FINDINGS, kWordsColumn);
    }
    void AwaitFocus(int control) const {
        Await("the focus on " + std::to_string(control), [&] { return viewer_.Focus() == control; });
    }
    void GoToFindings() const {
        viewer_.Do(IDM_VIEW_ATTRIBUTES);
        viewer_.Do(IDM_VIEW_NEXT_PART);
        AwaitFocus(IDC_FINDINGS);
    }
    Texts Messages() const { return viewer_.Cells(IDC_FINDINGS, kWordsColumn); }
    /// Those of all findings in which a text occurs.
    Texts With(const std::wstring& text) const {
        Texts found;
        std::copy_if(all_.begin(), all_.end(), std::back_inserter(found),
                     [&](const std::wstring& message) { return message.find(text) != std::wstring::npos; });
        return found;
    }

    static constexpr int kOddAttributes = 8;
    Viewer viewer_;
    Texts all_;
};

TEST_F(FindingsFilterTest, LettersInTheFindingsFilterThem) {
    viewer_.Type(L"node 9999");
    AwaitFocus(IDC_FILTER);
    const Texts expected = With(L"SNVT ID 9999");
    ASSERT_EQ(3U, expected.size());
    Await("the boxes about the type", [&] { return Messages() == expected; });
    EXPECT_EQ(kOddAttributes, viewer_.Count(IDC_ATTRIBUTES)) << "the points are all shown";
    EXPECT_EQ(L"Filter findings", viewer_.PartText(IDC_FILTER_LABEL));
    EXPECT_EQ(L"3 of " + std::to_wstring(all_.size()) + L" rows", viewer_.Status(VIEW_STATUS_SHOWN));
    EXPECT_TRUE(viewer_.PartText(IDC_FINDINGS_TITLE).ends_with(L", shown: 3"))
        << Narrow(viewer_.PartText(IDC_FINDINGS_TITLE));
    viewer_.Press(VK_DOWN);
    AwaitFocus(IDC_FINDINGS);
    viewer_.Press(VK_ESCAPE);
    Await("all findings", [&] { return Messages() == all_; });
    AwaitFocus(IDC_FINDINGS);
    EXPECT_EQ(std::wstring::npos, viewer_.PartText(IDC_FINDINGS_TITLE).find(L"shown"));
}

TEST_F(FindingsFilterTest, TheKeyOfTheFilterIsAboutTheListInFocus) {
    viewer_.Press('F', {VK_CONTROL});
    AwaitFocus(IDC_FILTER);
    viewer_.Type(L"node 9999");
    Await("three findings", [&] { return viewer_.Count(IDC_FINDINGS) == 3; });
    viewer_.Press(VK_ESCAPE);
    AwaitFocus(IDC_FINDINGS);
    Await("all findings", [&] { return Messages() == all_; });
    viewer_.Press('1', {VK_CONTROL});
    AwaitFocus(IDC_ATTRIBUTES);
    EXPECT_EQ(L"Filter", viewer_.PartText(IDC_FILTER_LABEL));
    viewer_.Press('F', {VK_CONTROL});
    AwaitFocus(IDC_FILTER);
    viewer_.Type(L"gain");
    Await("fewer attributes", [&] { return viewer_.Count(IDC_ATTRIBUTES) < kOddAttributes; });
    EXPECT_EQ(all_, Messages());
}

TEST_F(FindingsFilterTest, EachListKeepsItsWords) {
    viewer_.Filter(L"node 9999");
    viewer_.Do(IDM_VIEW_ATTRIBUTES);
    EXPECT_EQ(L"", viewer_.PartText(IDC_FILTER));
    viewer_.Filter(L"gain");
    GoToFindings();
    EXPECT_EQ(L"node 9999", viewer_.PartText(IDC_FILTER));
    EXPECT_EQ(3, viewer_.Count(IDC_FINDINGS));
    viewer_.Do(IDM_VIEW_OUTPUTS);
    EXPECT_EQ(L"", viewer_.PartText(IDC_FILTER));
    viewer_.Do(IDM_VIEW_ATTRIBUTES);
    EXPECT_EQ(L"gain", viewer_.PartText(IDC_FILTER));
    EXPECT_EQ(3, viewer_.Count(IDC_FINDINGS));
}

TEST_F(FindingsFilterTest, AJumpGoesToTheFindingThatIsSeen) {
    viewer_.Filter(L"can't node 140");
    ASSERT_EQ((Texts{L"Can't find the node related to SNVT ID 140"}), Messages());
    viewer_.DoubleClickRow(IDC_FINDINGS, 0);
    Await("its output", [&] { return viewer_.PickedName(IDC_OUTPUTS) == L"AI5_Out"; });
    AwaitFocus(IDC_OUTPUTS);
    EXPECT_EQ(1, viewer_.Count(IDC_FINDINGS)) << "it stays filtered";
}

// The point may be hidden by the words of its own list.
TEST_F(FindingsFilterTest, AJumpShowsAPointThatItsListHides) {
    viewer_.Do(IDM_VIEW_ATTRIBUTES);
    viewer_.Filter(L"nothing has this");
    ASSERT_EQ(0, viewer_.Count(IDC_ATTRIBUTES));
    GoToFindings();
    viewer_.Filter(L"99.5 outside");
    ASSERT_EQ(1, viewer_.Count(IDC_FINDINGS));
    viewer_.DoubleClickRow(IDC_FINDINGS, 0);
    Await("its attribute", [&] { return viewer_.PickedName(IDC_ATTRIBUTES) == L"AO2_Gain"; });
    AwaitFocus(IDC_ATTRIBUTES);
    EXPECT_EQ(L"", viewer_.PartText(IDC_FILTER));
    EXPECT_EQ(1, viewer_.Count(IDC_FINDINGS));
}

TEST_F(FindingsFilterTest, TheKeyOfTheNextFindingPassesOverHiddenOnes) {
    viewer_.Filter(L"9999 box");
    ASSERT_EQ(3, viewer_.Count(IDC_FINDINGS));
    for (const int place : {0, 1, 2, 0}) {
        viewer_.Do(IDM_VIEW_NEXT_FINDING);
        EXPECT_EQ(place, viewer_.Picked(IDC_FINDINGS));
    }
    GoToFindings();
    viewer_.Filter(L"nothing has this");
    viewer_.Do(IDM_VIEW_NEXT_FINDING);
    EXPECT_EQ(-1, viewer_.Picked(IDC_FINDINGS));
    AwaitFocus(IDC_FINDINGS);
}

TEST_F(FindingsFilterTest, AnotherFileIsFilteredByTheSameWords) {
    viewer_.Filter(L"box");
    const int count = viewer_.Count(IDC_FINDINGS);
    viewer_.Drop({Sample(L"channels.xml")});
    AwaitAttributes(viewer_, kAttributes);
    EXPECT_EQ(0, viewer_.Count(IDC_FINDINGS)) << "a good file has no boxes";
    viewer_.Drop({Sample(L"oddities.xml")});
    AwaitAttributes(viewer_, kOddAttributes);
    EXPECT_EQ(count, viewer_.Count(IDC_FINDINGS));
    for (const std::wstring& weight : viewer_.Cells(IDC_FINDINGS, kWeightColumn)) {
        EXPECT_EQ(L"Box", weight);
    }
}

// An undo brings up the page of its value and leaves the keyboard where it is.
TEST_F(FindingsFilterTest, AnotherPageBesideTheFindingsInFocusLeavesThemTheFilter) {
    const std::wstring name = viewer_.Cell(IDC_ATTRIBUTES, 0, VIEW_COLUMN_NAME);
    viewer_.SetCell(IDC_ATTRIBUTES, name, L"2");
    ASSERT_TRUE(viewer_.IsEnabled(IDM_EDIT_UNDO));
    viewer_.Do(IDM_VIEW_INPUTS);
    viewer_.Do(IDM_VIEW_NEXT_PART);
    AwaitFocus(IDC_FINDINGS);
    viewer_.Filter(L"node 9999");
    viewer_.Press('Z', {VK_CONTROL});
    Await("the attributes", [&] { return viewer_.IsVisible(IDC_ATTRIBUTES); });
    viewer_.Settle();
    EXPECT_EQ(IDC_FINDINGS, viewer_.Focus());
    EXPECT_EQ(L"Filter findings", viewer_.PartText(IDC_FILTER_LABEL));
    EXPECT_EQ(L"node 9999", viewer_.PartText(IDC_FILTER));
    viewer_.Press(VK_ESCAPE);
    Await("all findings", [&] { return Messages() == all_; });
    viewer_.Do(IDM_VIEW_OUTPUTS);
    AwaitFocus(IDC_OUTPUTS);
    EXPECT_EQ(L"Filter", viewer_.PartText(IDC_FILTER_LABEL));
}

TEST_F(FindingsFilterTest, HiddenFindingsLeaveTheFilterToThePage) {
    viewer_.Filter(L"node 9999");
    viewer_.Do(IDM_VIEW_FINDINGS);
    EXPECT_EQ(L"", viewer_.PartText(IDC_FILTER));
    EXPECT_EQ(L"Filter", viewer_.PartText(IDC_FILTER_LABEL));
    viewer_.Filter(L"gain");
    EXPECT_LT(viewer_.Count(IDC_ATTRIBUTES), kOddAttributes);
}

} // namespace

} // namespace viewtest
