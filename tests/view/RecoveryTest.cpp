// What was unsaved when the program was ended.

#include "tests/view/Fixture.h"

#include <string>

namespace viewtest {

namespace {

class RecoveryTest : public ViewTest {
  protected:
    /// Two values that were not saved when the program was ended.
    void EndUnsaved() {
        file_ = OwnSample(L"channels.xml");
        Viewer viewer({file_});
        AwaitAttributes(viewer, kAttributes);
        viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
        viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Setup", L"9");
        viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Offset", L"4");
        viewer.Do(IDM_EDIT_UNDO);
        viewer.Kill();
    }
    std::wstring file_;
};

TEST_F(RecoveryTest, IsOffered) {
    EndUnsaved();
    Viewer viewer;
    const Box box = viewer.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(L"channels.xml")) << Narrow(box.Text());
    box.Press(IDYES);
    AwaitAttributes(viewer, kAttributes);
    Await("the values", [&] { return viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel") == L"6"; });
    EXPECT_EQ(L"9", viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Setup"));
    EXPECT_EQ(L"-0.50", viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Offset"));
    EXPECT_NE(std::wstring::npos, viewer.Title().find(L'*')) << "it is still unsaved";
    viewer.Do(IDM_EDIT_UNDO);
    EXPECT_EQ(L"1", viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel")) << "and can be undone";
    viewer.Close();
}

TEST_F(RecoveryTest, IsForgottenWhenItIsNotWanted) {
    EndUnsaved();
    {
        Viewer viewer;
        viewer.NextBox().Press(IDNO);
        viewer.Close();
    }
    EXPECT_EQ(Texts(), UnsavedFiles());
    Viewer viewer({file_});
    AwaitAttributes(viewer, kAttributes);
    EXPECT_FALSE(viewer.ShownBox());
    EXPECT_EQ(L"1", viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"));
}

TEST_F(RecoveryTest, SaysWhenTheFileHasChangedSince) {
    EndUnsaved();
    FileWith(L"channels.xml", BytesOf(file_) + "\n");
    Viewer viewer;
    const Box box = viewer.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(L"changed")) << Narrow(box.Text());
    box.Press(IDYES);
    AwaitAttributes(viewer, kAttributes);
    Await("the values", [&] { return viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel") == L"6"; });
}

TEST_F(RecoveryTest, NothingIsLeftOfWhatWasUndoneOrSaved) {
    file_ = OwnSample(L"channels.xml");
    Viewer viewer({file_});
    AwaitAttributes(viewer, kAttributes);
    viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
    EXPECT_EQ(1U, UnsavedFiles().size());
    viewer.Do(IDM_EDIT_UNDO);
    EXPECT_EQ(Texts(), UnsavedFiles());
    viewer.Do(IDM_EDIT_REDO);
    EXPECT_EQ(1U, UnsavedFiles().size());
    viewer.Begin(IDM_FILE_SAVE_STREAM);
    viewer.NextBox().ChooseFile(FileNamed(L"saved.xml"));
    Await("the file", [&] { return viewer.Title().find(L'*') == std::wstring::npos; });
    EXPECT_EQ(Texts(), UnsavedFiles());
}

TEST_F(RecoveryTest, AWindowThatIsOpenKeepsItsOwn) {
    file_ = OwnSample(L"channels.xml");
    Viewer first({file_});
    AwaitAttributes(first, kAttributes);
    first.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
    Viewer second({Sample(L"full.xml")});
    AwaitAttributes(second, 65);
    EXPECT_FALSE(second.ShownBox());
    EXPECT_EQ(1U, UnsavedFiles().size());
    second.Close();
    EXPECT_EQ(1U, UnsavedFiles().size());
}

TEST_F(RecoveryTest, ADamagedFileIsNoState) {
    EndUnsaved();
    const Texts files = UnsavedFiles();
    ASSERT_EQ(1U, files.size());
    const HANDLE file = CreateFileW(files[0].c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    SetFilePointer(file, -3, nullptr, FILE_END);
    SetEndOfFile(file);
    CloseHandle(file);
    Viewer viewer({file_});
    AwaitAttributes(viewer, kAttributes);
    EXPECT_FALSE(viewer.ShownBox());
    EXPECT_EQ(Texts(), UnsavedFiles());
}

} // namespace

} // namespace viewtest
