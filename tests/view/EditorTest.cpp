// Values changed by the component's editors and in the grid.

#include "tests/view/Fixture.h"

#include <string>

namespace viewtest {

namespace {

class EditorTest : public OpenedTest {
  protected:
    static constexpr const wchar_t* kOffset = L"AI1_Offset";

    /// Types a text into the first field of the numeric editor.
    static void Fill(const Box& editor, const std::wstring& text) {
        const HWND edit = FindWindowExW(editor.Window(), nullptr, L"Edit", nullptr);
        ASSERT_NE(nullptr, edit);
        SendMessageW(edit, EM_SETSEL, 0, -1);
        for (const wchar_t c : text) {
            SendMessageW(edit, WM_CHAR, c, 1);
        }
    }
    bool IsShownAsUnsaved() const { return viewer_.Title().find(L'*') != std::wstring::npos; }
};

TEST_F(EditorTest, ADoubleClickOpensTheComponentsEditor) {
    viewer_.DoubleClickRow(IDC_ATTRIBUTES, viewer_.PlaceOf(IDC_ATTRIBUTES, kOffset));
    const Box editor = viewer_.NextBox();
    EXPECT_EQ(L"Edit Value", editor.Caption());
    Fill(editor, Local("1.5"));
    editor.Press(IDOK);
    Await("the new value", [&] { return viewer_.ValueOf(IDC_ATTRIBUTES, kOffset) == Local("1.5"); });
    EXPECT_EQ(Local("1.5 \xC2\xB0\x43"), viewer_.Cell(IDC_ATTRIBUTES, 2, VIEW_COLUMN_DISPLAYED));
    EXPECT_TRUE(IsShownAsUnsaved());
    EXPECT_NE(L"", viewer_.Status(VIEW_STATUS_UNSAVED));
    EXPECT_TRUE(viewer_.IsEnabled(IDM_EDIT_UNDO));
}

TEST_F(EditorTest, TheMenuOpensTheEditorOfThePickedAttribute) {
    viewer_.Pick(IDC_ATTRIBUTES, L"AO1_Setup");
    Await("the entry", [&] { return viewer_.IsEnabled(IDM_EDIT_VALUE); });
    viewer_.Begin(IDM_EDIT_VALUE);
    const Box editor = viewer_.NextBox();
    ASSERT_TRUE(editor.Has(IDCANCEL));
    editor.Press(IDCANCEL);
    EXPECT_EQ(L"21", viewer_.ValueOf(IDC_ATTRIBUTES, L"AO1_Setup"));
    EXPECT_FALSE(IsShownAsUnsaved()) << "Cancel changes nothing";
    EXPECT_FALSE(viewer_.IsEnabled(IDM_EDIT_UNDO));
}

TEST_F(EditorTest, TheGridTakesAValue) {
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"7");
    EXPECT_EQ(L"7", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"));
    EXPECT_TRUE(IsShownAsUnsaved());
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"1");
    EXPECT_FALSE(IsShownAsUnsaved()) << "it is the file's value again";
    EXPECT_EQ(L"", viewer_.Status(VIEW_STATUS_UNSAVED));
}

TEST_F(EditorTest, EscLeavesACellAsItWas) {
    viewer_.Pick(IDC_ATTRIBUTES, L"AI1_Channel");
    const HWND cell = viewer_.OpenCell(IDC_ATTRIBUTES);
    ASSERT_NE(nullptr, cell);
    EXPECT_EQ(L"1", TextOf(cell));
    SendMessageW(cell, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"9"));
    PostMessageW(cell, WM_KEYDOWN, VK_ESCAPE, 1);
    Await("the end of the cell", [&] { return IsWindow(cell) == FALSE; });
    EXPECT_EQ(L"1", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"));
    EXPECT_FALSE(IsShownAsUnsaved());
}

TEST_F(EditorTest, TheGridRefusesAValueThatTheTypeDoesNotTake) {
    viewer_.SetCell(IDC_ATTRIBUTES, kOffset, L"99999");
    if (const Box box = viewer_.ShownBox()) {
        box.Press(IDOK);
    }
    EXPECT_EQ(L"-0.50", viewer_.ValueOf(IDC_ATTRIBUTES, kOffset));
    Await("words of it",
          [&] { return viewer_.Status(VIEW_STATUS_MESSAGE).starts_with(L"AI1_Offset keeps its value: "); });
    EXPECT_FALSE(IsShownAsUnsaved());
}

TEST_F(EditorTest, AnInputIsWiredInTheGrid) {
    viewer_.Do(IDM_VIEW_INPUTS);
    viewer_.SetCell(IDC_INPUTS, L"CTX1_In1", L"DI1_Out");
    EXPECT_EQ(L"DI1_Out", viewer_.ValueOf(IDC_INPUTS, L"CTX1_In1"));
    viewer_.Do(IDM_EDIT_UNDO);
    EXPECT_EQ(L"", viewer_.ValueOf(IDC_INPUTS, L"CTX1_In1"));
}

// The findings have the component's boxes, and not those of the window.
TEST_F(EditorTest, BoxesOfTheWindowAreNoFindings) {
    const int before = viewer_.Count(IDC_FINDINGS);
    viewer_.Begin(IDM_HELP_KEYS);
    viewer_.NextBox().Press(IDOK);
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"7");
    viewer_.BeginClose();
    viewer_.NextBox().Press(IDCANCEL);
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"8");
    EXPECT_EQ(before, viewer_.Count(IDC_FINDINGS)) << Narrow(viewer_.Cell(IDC_FINDINGS, 0, 2));
}

TEST_F(EditorTest, AnInputRefusesATypeThatItDoesNotTake) {
    viewer_.Do(IDM_VIEW_INPUTS);
    viewer_.SetCell(IDC_INPUTS, L"AO1_In1", L"DI1_Out");
    EXPECT_EQ(L"", viewer_.ValueOf(IDC_INPUTS, L"AO1_In1"));
    EXPECT_EQ(L"AO1_In1 keeps its value: DI1_Out has the type 95, which the input does not take",
              viewer_.Status(VIEW_STATUS_MESSAGE));
    EXPECT_FALSE(viewer_.IsEnabled(IDM_EDIT_UNDO));
    viewer_.SetCell(IDC_INPUTS, L"AO1_In1", L"AO1_Out");
    EXPECT_EQ(L"AO1_Out", viewer_.ValueOf(IDC_INPUTS, L"AO1_In1"));
}

TEST_F(EditorTest, AnInputMayBeWiredToAnotherObject) {
    viewer_.Do(IDM_VIEW_INPUTS);
    viewer_.SetCell(IDC_INPUTS, L"CTX1_In1", L"Elsewhere");
    EXPECT_EQ(L"Elsewhere", viewer_.ValueOf(IDC_INPUTS, L"CTX1_In1"));
    EXPECT_EQ(L"Elsewhere is no output of this module. The input is wired all the same.",
              viewer_.Status(VIEW_STATUS_MESSAGE));
}

TEST_F(EditorTest, TheFilteredOutputsFollowTheWiring) {
    viewer_.Do(IDM_VIEW_OUTPUTS);
    viewer_.Filter(L"ctx1_in1");
    ASSERT_EQ(0, viewer_.Count(IDC_OUTPUTS));
    viewer_.Do(IDM_VIEW_INPUTS);
    viewer_.SetCell(IDC_INPUTS, L"CTX1_In1", L"DI1_Out");
    EXPECT_EQ((Texts{L"DI1_Out"}), viewer_.Cells(IDC_OUTPUTS, VIEW_COLUMN_NAME));
    viewer_.Do(IDM_EDIT_UNDO);
    EXPECT_EQ(0, viewer_.Count(IDC_OUTPUTS));
}

TEST_F(EditorTest, AnOutputHasNoValue) {
    viewer_.Do(IDM_VIEW_OUTPUTS);
    viewer_.Pick(IDC_OUTPUTS, 0);
    viewer_.Do(IDM_EDIT_CELL);
    EXPECT_EQ(nullptr, GetDlgItem(viewer_.Part(IDC_OUTPUTS), IDC_CELL));
    viewer_.DoubleClickRow(IDC_OUTPUTS, 0);
    viewer_.Settle();
    EXPECT_FALSE(viewer_.ShownBox());
}

} // namespace

} // namespace viewtest
