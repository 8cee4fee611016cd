// File, Close: the window without a file again.

#include "tests/view/Fixture.h"

#include <algorithm>
#include <string>

namespace viewtest {

namespace {

class FileCloseTest : public OpenedTest {
  protected:
    /// What a person sees and can do, as one text for each part.
    static Texts StateOf(const Viewer& viewer) {
        Texts state = {viewer.Title()};
        for (const int part : {IDC_SHEET, IDC_FILTER_LABEL, IDC_FILTER, IDC_FINDINGS_TITLE, IDC_SEARCH,
                               IDC_SOURCE_TITLE, IDC_SOURCE}) {
            state.push_back(std::to_wstring(part) + L" " + viewer.PartText(part));
        }
        for (const int list : {IDC_ATTRIBUTES, IDC_INPUTS, IDC_OUTPUTS, IDC_CATALOGUE, IDC_FINDINGS}) {
            state.push_back(std::to_wstring(list) + L" rows " + std::to_wstring(viewer.Count(list)) +
                            (viewer.IsVisible(list) ? L" shown" : L" hidden"));
        }
        for (int part = VIEW_STATUS_MESSAGE; part <= VIEW_STATUS_ZOOM; ++part) {
            state.push_back(L"status " + viewer.Status(part));
        }
        for (const int command : {IDM_FILE_OPEN, IDM_FILE_SAVE, IDM_EDIT_UNDO, IDM_EDIT_REDO, IDM_EDIT_VALUE,
                                  IDM_VIEW_ZOOM_IN, IDM_VIEW_ZOOM_OUT, IDM_VIEW_ZOOM_FIT}) {
            state.push_back(std::to_wstring(command) + (viewer.IsEnabled(command) ? L" yes" : L" no"));
        }
        state.push_back(viewer.IsVisible(IDC_SEARCH) ? L"searching" : L"");
        return state;
    }
    static Texts StateAtStart() {
        Viewer fresh;
        fresh.Settle();
        Texts state = StateOf(fresh);
        fresh.Close();
        return state;
    }
    std::wstring Value() const { return viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"); }
};

TEST_F(FileCloseTest, TheWindowIsAsItWasWithoutAFile) {
    const Texts atStart = StateAtStart();
    viewer_.Do(IDM_VIEW_CATALOGUE);
    viewer_.Filter(L"temp");
    viewer_.Do(IDM_VIEW_OUTPUTS);
    viewer_.Pick(IDC_OUTPUTS, 1);
    viewer_.ClickHeading(IDC_OUTPUTS, VIEW_COLUMN_NAME);
    viewer_.Do(IDM_EDIT_FIND);
    EXPECT_NE(atStart, StateOf(viewer_));
    viewer_.Do(IDM_FILE_CLOSE);
    viewer_.Settle();
    EXPECT_EQ(atStart, StateOf(viewer_));
    EXPECT_EQ(L"", viewer_.PartText(IDC_FILTER));
    viewer_.Do(IDM_FILE_CLOSE);
    EXPECT_EQ(atStart, StateOf(viewer_)) << "nothing is open any more";
    viewer_.Do(IDM_FILE_RELOAD);
    EXPECT_EQ(atStart, StateOf(viewer_)) << "nor is there anything to load again";
    viewer_.Close();
}

TEST_F(FileCloseTest, AnotherFileOpensAsTheFirstOne) {
    const Texts names = viewer_.Cells(IDC_ATTRIBUTES, VIEW_COLUMN_NAME);
    viewer_.ClickHeading(IDC_ATTRIBUTES, VIEW_COLUMN_NAME);
    Texts sorted = names;
    std::sort(sorted.begin(), sorted.end());
    Await("the order", [&] { return viewer_.Cells(IDC_ATTRIBUTES, VIEW_COLUMN_NAME) == sorted; });
    viewer_.Do(IDM_VIEW_CATALOGUE);
    const int types = viewer_.Count(IDC_CATALOGUE);
    EXPECT_GT(types, 0);
    viewer_.Do(IDM_FILE_CLOSE);
    viewer_.Drop({file_});
    AwaitAttributes(viewer_, kAttributes);
    EXPECT_EQ(names, viewer_.Cells(IDC_ATTRIBUTES, VIEW_COLUMN_NAME)) << "in the order of the file";
    EXPECT_EQ(types, viewer_.Count(IDC_CATALOGUE));
    EXPECT_TRUE(viewer_.Title().starts_with(L"channels.xml")) << Narrow(viewer_.Title());
    EXPECT_TRUE(viewer_.PartText(IDC_SHEET).starts_with(L"Sheet: Reading room"))
        << Narrow(viewer_.PartText(IDC_SHEET));
    viewer_.Close();
}

TEST_F(FileCloseTest, KeysCloseIt) {
    viewer_.ToFront();
    for (const WORD key : {WORD{'W'}, WORD{VK_F4}}) {
        viewer_.Press(key, {VK_CONTROL});
        Await("an empty window", [&] { return viewer_.Count(IDC_ATTRIBUTES) == 0; });
        Await("the focus", [&] { return viewer_.Focus() == IDC_ATTRIBUTES; });
        viewer_.Drop({file_});
        AwaitAttributes(viewer_, kAttributes);
    }
}

TEST_F(FileCloseTest, AFileThatDoesNotLoadIsClosedToo) {
    const Texts atStart = StateAtStart();
    viewer_.Drop({Sample(L"damaged.xml")});
    Await("its findings", [&] {
        return viewer_.Count(IDC_ATTRIBUTES) == 0 && viewer_.Count(IDC_FINDINGS) > 0 &&
               viewer_.IsEnabled(IDM_FILE_OPEN);
    });
    viewer_.Do(IDM_FILE_CLOSE);
    viewer_.Settle();
    EXPECT_EQ(atStart, StateOf(viewer_));
}

TEST_F(FileCloseTest, WhoThinksBetterOfItKeepsTheFile) {
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
    const Texts before = StateOf(viewer_);
    viewer_.Begin(IDM_FILE_CLOSE);
    const Box box = viewer_.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(L"channels.xml")) << Narrow(box.Text());
    box.Press(IDCANCEL);
    EXPECT_EQ(before, StateOf(viewer_));
    EXPECT_EQ(L"6", Value());
    EXPECT_EQ(1U, UnsavedFiles().size());
}

TEST_F(FileCloseTest, WhoForgetsTheChangesLosesThem) {
    const Texts atStart = StateAtStart();
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
    ASSERT_EQ(1U, UnsavedFiles().size());
    viewer_.Begin(IDM_FILE_CLOSE);
    viewer_.NextBox().Press(IDNO);
    Await("an empty window", [&] { return viewer_.Count(IDC_ATTRIBUTES) == 0; });
    viewer_.Settle();
    EXPECT_EQ(atStart, StateOf(viewer_));
    EXPECT_EQ(Texts(), UnsavedFiles());
    viewer_.Drop({file_});
    AwaitAttributes(viewer_, kAttributes);
    EXPECT_EQ(L"1", Value());
    EXPECT_FALSE(viewer_.IsEnabled(IDM_EDIT_UNDO));
    viewer_.Close();
}

TEST_F(FileCloseTest, WhoSavesTheChangesHasThemInTheProject) {
    const Texts atStart = StateAtStart();
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
    viewer_.Begin(IDM_FILE_CLOSE);
    const Box question = viewer_.NextBox();
    question.Click(IDYES);
    viewer_.NextBox(question).ChooseFile(FileNamed(L"saved.xml"));
    Await("an empty window", [&] { return viewer_.Count(IDC_ATTRIBUTES) == 0; });
    viewer_.Settle();
    EXPECT_EQ(atStart, StateOf(viewer_));
    EXPECT_EQ(Texts(), UnsavedFiles());
    viewer_.Drop({FileNamed(L"saved.xml")});
    AwaitAttributes(viewer_, kAttributes);
    EXPECT_EQ(L"6", Value());
    viewer_.Close();
}

// A file that is open in no window is nobody's to load again.
TEST_F(FileCloseTest, ItIsWatchedNoLonger) {
    viewer_.Do(IDM_FILE_CLOSE);
    FileWith(L"channels.xml", BytesOf(Sample(L"full.xml")));
    constexpr WPARAM kDiskTimer = 1;
    for (int i = 0; i < 3; ++i) { // an open file is asked about at the second look
        PostMessageW(viewer_.Frame(), WM_TIMER, kDiskTimer, 0);
    }
    viewer_.Settle();
    EXPECT_FALSE(viewer_.ShownBox());
    viewer_.Close();
}

} // namespace

} // namespace viewtest
