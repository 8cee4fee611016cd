// What is asked before something unsaved is lost.

#include "tests/view/Fixture.h"

#include <string>

namespace viewtest {

namespace {

class ClosingTest : public OpenedTest {
  protected:
    void SetUp() override { viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6"); }
};

TEST_F(ClosingTest, AsksAndStays) {
    viewer_.BeginClose();
    const Box box = viewer_.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(L"channels.xml")) << Narrow(box.Text());
    box.Press(IDCANCEL);
    EXPECT_TRUE(viewer_.IsRunning());
    EXPECT_EQ(L"6", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"));
}

TEST_F(ClosingTest, AsksAndForgets) {
    viewer_.Begin(IDM_FILE_EXIT);
    viewer_.NextBox().Press(IDNO);
    EXPECT_EQ(0U, viewer_.WaitForEnd());
    EXPECT_EQ(Texts(), UnsavedFiles());
}

TEST_F(ClosingTest, AsksAndSaves) {
    viewer_.Begin(IDM_FILE_EXIT);
    const Box question = viewer_.NextBox();
    question.Click(IDYES);
    const Box chooser = viewer_.NextBox(question);
    chooser.ChooseFile(FileNamed(L"saved.xml"));
    EXPECT_EQ(0U, viewer_.WaitForEnd());
    EXPECT_TRUE(IsFile(FileNamed(L"saved.xml")));
}

TEST_F(ClosingTest, WhoNamesNoFileStays) {
    viewer_.Begin(IDM_FILE_EXIT);
    const Box question = viewer_.NextBox();
    question.Click(IDYES);
    const Box chooser = viewer_.NextBox(question);
    chooser.Press(IDCANCEL);
    viewer_.Settle();
    EXPECT_TRUE(viewer_.IsRunning());
    EXPECT_EQ(L"6", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"));
}

TEST_F(ClosingTest, AnotherFileAsksToo) {
    viewer_.Drop({Sample(L"full.xml")});
    viewer_.NextBox().Press(IDCANCEL);
    EXPECT_EQ(kAttributes, viewer_.Count(IDC_ATTRIBUTES));
    viewer_.Drop({Sample(L"full.xml")});
    viewer_.NextBox().Press(IDNO);
    AwaitAttributes(viewer_, 65);
    viewer_.Close();
}

TEST_F(ClosingTest, WhatIsBeingTypedIsAskedForToo) {
    viewer_.Do(IDM_EDIT_UNDO);
    viewer_.BeginCell(IDC_ATTRIBUTES, L"AI1_Channel", L"8");
    viewer_.BeginClose();
    viewer_.NextBox().Press(IDCANCEL);
    EXPECT_EQ(L"8", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"));
}

TEST_F(ClosingTest, TheEndOfTheSessionAsksAndForgets) {
    PostMessageW(viewer_.Frame(), WM_QUERYENDSESSION, 0, 0);
    viewer_.NextBox().Press(IDNO);
    viewer_.Settle();
    EXPECT_EQ(1U, UnsavedFiles().size()) << "another program may still keep the session";
    SendMessageW(viewer_.Frame(), WM_ENDSESSION, TRUE, 0);
    EXPECT_EQ(Texts(), UnsavedFiles());
    viewer_.Kill(); // as the system does
    Viewer next({file_});
    AwaitAttributes(next, kAttributes);
    EXPECT_FALSE(next.ShownBox());
}

TEST_F(ClosingTest, AnEndOfTheSessionThatNobodyAgreedToKeepsWhatIsUnsaved) {
    SendMessageW(viewer_.Frame(), WM_ENDSESSION, TRUE, static_cast<LPARAM>(ENDSESSION_CRITICAL));
    viewer_.Kill();
    Viewer next;
    next.NextBox().Press(IDYES);
    AwaitAttributes(next, kAttributes);
    Await("the value", [&] { return next.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel") == L"6"; });
}

TEST_F(ClosingTest, WhoAgreedToAnEndThatWasCalledOffIsAskedAboutTheNextOne) {
    PostMessageW(viewer_.Frame(), WM_QUERYENDSESSION, 0, 0);
    viewer_.NextBox().Press(IDNO);
    viewer_.Settle();
    SendMessageW(viewer_.Frame(), WM_ENDSESSION, FALSE, 0);
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"7");
    SendMessageW(viewer_.Frame(), WM_ENDSESSION, TRUE, static_cast<LPARAM>(ENDSESSION_CRITICAL));
    EXPECT_EQ(1U, UnsavedFiles().size());
}

TEST_F(ClosingTest, NothingUnsavedAsksNothing) {
    viewer_.Do(IDM_EDIT_UNDO);
    viewer_.Close();
}

} // namespace

} // namespace viewtest
