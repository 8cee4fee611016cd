// The window by keys alone.

#include "tests/view/Fixture.h"

#include <set>
#include <string>
#include <vector>

namespace viewtest {

namespace {

class KeyboardTest : public OpenedTest {
  protected:
    void AwaitFocus(int control) const {
        Await("the focus on " + std::to_string(control), [&] { return viewer_.Focus() == control; });
    }
    void AwaitValue(const std::wstring& name, const std::wstring& value) const {
        Await(Narrow(name) + " " + Narrow(value),
              [&] { return viewer_.ValueOf(IDC_ATTRIBUTES, name) == value; });
    }
};

TEST_F(KeyboardTest, BeginsInTheList) {
    viewer_.ToFront();
    AwaitFocus(IDC_ATTRIBUTES);
}

TEST_F(KeyboardTest, FindsChangesUndoesAndRedoesAnAttribute) {
    viewer_.ToFront();
    AwaitFocus(IDC_ATTRIBUTES);
    viewer_.Press('F', {VK_CONTROL});
    AwaitFocus(IDC_FILTER);
    viewer_.Type(L"offset");
    Await("one row", [&] { return viewer_.Count(IDC_ATTRIBUTES) == 1; });
    viewer_.Press(VK_DOWN);
    AwaitFocus(IDC_ATTRIBUTES);
    Await("a picked row", [&] { return viewer_.PickedName(IDC_ATTRIBUTES) == L"AI1_Offset"; });
    viewer_.Press(VK_RETURN);
    EXPECT_EQ(L"Edit Value", viewer_.NextBox().Caption());
    viewer_.Type(Local("1.5") + L"{ENTER}");
    AwaitValue(L"AI1_Offset", Local("1.5"));
    Await("the end of the editor", [&] { return !viewer_.ShownBox(); });
    AwaitFocus(IDC_ATTRIBUTES);
    viewer_.Press('Z', {VK_CONTROL});
    AwaitValue(L"AI1_Offset", L"-0.50");
    viewer_.Press('Y', {VK_CONTROL});
    AwaitValue(L"AI1_Offset", Local("1.5"));
    viewer_.Press('Z', {VK_CONTROL});
    AwaitValue(L"AI1_Offset", L"-0.50");
    viewer_.Press('Z', {VK_CONTROL, VK_SHIFT});
    AwaitValue(L"AI1_Offset", Local("1.5"));
    viewer_.Press(VK_ESCAPE);
    Await("all rows", [&] { return viewer_.Count(IDC_ATTRIBUTES) == kAttributes; });
}

TEST_F(KeyboardTest, TypesAValueIntoTheGrid) {
    viewer_.ToFront();
    AwaitFocus(IDC_ATTRIBUTES);
    viewer_.Press(VK_HOME);
    Await("the first row", [&] { return viewer_.Picked(IDC_ATTRIBUTES) == 0; });
    viewer_.Press(VK_F2);
    AwaitFocus(IDC_CELL);
    viewer_.Type(L"12{ENTER}");
    AwaitValue(L"AI1_Channel", L"12");
    AwaitFocus(IDC_ATTRIBUTES);
    viewer_.Press(VK_DOWN);
    Await("the second row", [&] { return viewer_.Picked(IDC_ATTRIBUTES) == 1; });
    viewer_.Press(VK_F2);
    AwaitFocus(IDC_CELL);
    viewer_.Type(L"7{ESC}");
    AwaitFocus(IDC_ATTRIBUTES);
    EXPECT_EQ(L"3", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Setup"));
}

TEST_F(KeyboardTest, LettersInTheListFilterIt) {
    viewer_.ToFront();
    AwaitFocus(IDC_ATTRIBUTES);
    viewer_.Type(L"gain");
    Await("all letters", [&] { return viewer_.PartText(IDC_FILTER) == L"gain"; });
    EXPECT_EQ((Texts{L"AO1_Gain"}), viewer_.Cells(IDC_ATTRIBUTES, VIEW_COLUMN_NAME));
}

TEST_F(KeyboardTest, KeysShowThePages) {
    const int lists[] = {IDC_ATTRIBUTES, IDC_INPUTS, IDC_OUTPUTS, IDC_CATALOGUE};
    for (const WORD key : {WORD{'2'}, WORD{'3'}, WORD{'4'}, WORD{'1'}}) {
        viewer_.Press(key, {VK_CONTROL});
        AwaitFocus(lists[key - '1']);
    }
    viewer_.Press('5', {VK_CONTROL});
    AwaitFocus(IDC_SHEET);
}

TEST_F(KeyboardTest, F6GoesAroundThePartsAndBack) {
    if (!viewer_.IsTicked(IDM_VIEW_SOURCE)) {
        viewer_.Do(IDM_VIEW_SOURCE);
    }
    if (!viewer_.IsTicked(IDM_VIEW_FINDINGS)) {
        viewer_.Do(IDM_VIEW_FINDINGS);
    }
    viewer_.ToFront();
    AwaitFocus(IDC_ATTRIBUTES);
    for (const int part : {IDC_FINDINGS, IDC_SOURCE, IDC_SHEET, IDC_ATTRIBUTES}) {
        viewer_.Press(VK_F6);
        AwaitFocus(part);
    }
    for (const int part : {IDC_SHEET, IDC_SOURCE, IDC_FINDINGS, IDC_ATTRIBUTES}) {
        viewer_.Press(VK_F6, {VK_SHIFT});
        AwaitFocus(part);
    }
}

TEST_F(KeyboardTest, TheMenusEntriesMoveTheFocusToo) {
    viewer_.ToFront();
    AwaitFocus(IDC_ATTRIBUTES);
    viewer_.Do(IDM_EDIT_FILTER);
    AwaitFocus(IDC_FILTER);
    viewer_.Do(IDM_VIEW_PREVIOUS_PART);
    AwaitFocus(IDC_SHEET);
    viewer_.Do(IDM_VIEW_NEXT_PART);
    AwaitFocus(IDC_ATTRIBUTES);
    viewer_.Do(IDM_VIEW_NEXT_SPLITTER);
    AwaitFocus(IDC_SPLIT_SHEET);
    viewer_.Do(IDM_VIEW_NEXT_SPLITTER);
    viewer_.Do(IDM_VIEW_PREVIOUS_SPLITTER);
    AwaitFocus(IDC_SPLIT_SHEET);
}

TEST_F(KeyboardTest, TabReachesEachPart) {
    viewer_.ToFront();
    AwaitFocus(IDC_ATTRIBUTES);
    std::set<int> reached;
    for (int i = 0; i < 8; ++i) {
        const int before = viewer_.Focus();
        viewer_.Press(VK_TAB);
        Await("another focus", [&] { return viewer_.Focus() != before; });
        reached.insert(viewer_.Focus());
        if (viewer_.Focus() == IDC_ATTRIBUTES) {
            break;
        }
    }
    for (const int part : {IDC_SHEET, IDC_FILTER, IDC_ATTRIBUTES, IDC_FINDINGS}) {
        EXPECT_TRUE(reached.contains(part)) << part;
    }
}

TEST_F(KeyboardTest, TheMenuHasAccessKeys) {
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
    viewer_.Type(L"{ALT+e}u");
    AwaitValue(L"AI1_Channel", L"1");
}

TEST_F(KeyboardTest, F1TellsTheKeys) {
    viewer_.Press(VK_F1);
    const Box box = viewer_.NextBox();
    for (const wchar_t* key :
         {L"F2", L"F3", L"F5", L"F6", L"F8", L"Ctrl+F6", L"Ctrl+S", L"Ctrl+W", L"Ctrl+5", L"Ctrl+9",
          L"Ctrl+Shift+1", L"Ctrl+Shift+9", L"Ctrl+Right", L"Ctrl+Break", L"Shift+F10"}) {
        EXPECT_NE(std::wstring::npos, box.Text().find(key)) << Narrow(key) << " in " << Narrow(box.Text());
    }
    viewer_.Press(VK_RETURN);
    Await("the end of the box", [&] { return !viewer_.ShownBox(); });
}

TEST_F(KeyboardTest, TheHelpTellsTheVersion) {
    viewer_.Begin(IDM_HELP_ABOUT);
    const Box box = viewer_.NextBox();
    EXPECT_EQ(L"About Gateway Object", box.Caption()) << "the component's own";
    box.Press(IDOK);
}

// A screen reader reads the name of a part when the focus comes there.
TEST_F(KeyboardTest, EachPartHasAName) {
    for (const int part : {IDC_SHEET, IDC_ATTRIBUTES, IDC_INPUTS, IDC_OUTPUTS, IDC_CATALOGUE, IDC_FINDINGS,
                           IDC_FINDINGS_TITLE, IDC_SOURCE_TITLE, IDC_FILTER_LABEL, IDC_STOP}) {
        EXPECT_NE(L"", viewer_.PartText(part)) << part;
    }
    // A field is named by the label before it.
    EXPECT_EQ(viewer_.Part(IDC_FILTER), GetWindow(viewer_.Part(IDC_FILTER_LABEL), GW_HWNDNEXT));
    EXPECT_EQ(viewer_.Part(IDC_SOURCE), GetWindow(viewer_.Part(IDC_SOURCE_TITLE), GW_HWNDNEXT));
}

} // namespace

} // namespace viewtest
