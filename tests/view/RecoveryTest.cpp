// What was unsaved when the program was ended.

#include "tests/view/Fixture.h"

#include <cstddef>
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
    /// Says yes to the box that offers them.
    static void BringBack(const Viewer& viewer, const Box& box) {
        box.Press(IDYES);
        AwaitAttributes(viewer, kAttributes);
        Await("the values", [&] { return viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel") == L"6"; });
    }
    std::wstring file_;
};

TEST_F(RecoveryTest, IsOffered) {
    EndUnsaved();
    Viewer viewer;
    const Box box = viewer.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(L"channels.xml")) << Narrow(box.Text());
    BringBack(viewer, box);
    EXPECT_EQ(L"9", viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Setup"));
    EXPECT_EQ(L"-0.50", viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Offset"));
    EXPECT_NE(std::wstring::npos, viewer.Title().find(L'*')) << "it is still unsaved";
    viewer.Do(IDM_EDIT_UNDO);
    EXPECT_EQ(L"1", viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel")) << "and can be undone";
    viewer.Close();
}

TEST_F(RecoveryTest, WhatWasSavedIntoAProjectComesBackToo) {
    const std::wstring project = FileNamed(L"hall.project.xml");
    file_ = OwnSample(L"channels.xml");
    {
        Viewer viewer({file_});
        AwaitAttributes(viewer, kAttributes);
        viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
        viewer.SetCell(IDC_ATTRIBUTES, L"DI1_Channel", L"7");
        viewer.Begin(IDM_FILE_SAVE);
        viewer.NextBox().ChooseFile(project);
        Await("the project", [&] { return viewer.Title().find(L'*') == std::wstring::npos; });
        viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Setup", L"9");
        viewer.Kill();
    }
    Viewer viewer;
    viewer.NextBox().Press(IDYES);
    AwaitAttributes(viewer, kAttributes);
    Await("the values", [&] { return viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Setup") == L"9"; });
    EXPECT_EQ(L"6", viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"))
        << "saved, but not in the file that is open";
    EXPECT_EQ(L"7", viewer.ValueOf(IDC_ATTRIBUTES, L"DI1_Channel"));
    // "Save" goes on into the project, and asks for no name.
    viewer.Do(IDM_FILE_SAVE);
    EXPECT_FALSE(viewer.ShownBox());
    EXPECT_EQ(std::wstring::npos, viewer.Title().find(L'*'));
    EXPECT_EQ(Texts(), UnsavedFiles());
    Viewer other({project});
    AwaitAttributes(other, kAttributes);
    EXPECT_EQ(L"6", other.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"));
    EXPECT_EQ(L"9", other.ValueOf(IDC_ATTRIBUTES, L"AI1_Setup"));
}

// The system soon gives the number of a program that ended to another one.
TEST_F(RecoveryTest, IsOfferedToAProgramOfTheSameNumber) {
    EndUnsaved();
    const Texts files = UnsavedFiles();
    ASSERT_EQ(1U, files.size());
    const Viewer viewer({}, [&](DWORD number) {
        const std::wstring folder = files[0].substr(0, files[0].find_last_of(L'\\') + 1);
        EXPECT_TRUE(
            MoveFileW(files[0].c_str(), (folder + L"unsaved-" + std::to_wstring(number) + L".txt").c_str()));
    });
    EXPECT_NE(std::wstring::npos, viewer.NextBox().Text().find(L"channels.xml"));
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

// A letter that is meant for another window says "no" too.
TEST_F(RecoveryTest, WhatIsNotWantedIsForgottenWhenTheWindowCloses) {
    EndUnsaved();
    {
        Viewer viewer;
        viewer.NextBox().Press(IDNO);
        EXPECT_EQ(1U, UnsavedFiles().size());
        viewer.Kill();
    }
    Viewer viewer;
    viewer.NextBox().Press(IDNO);
    viewer.Close();
    EXPECT_EQ(Texts(), UnsavedFiles());
}

TEST_F(RecoveryTest, OfTwoTheOtherIsOfferedToTheNextWindow) {
    const Texts files = {FileWith(L"one.xml", BytesOf(Sample(L"channels.xml"))),
                         FileWith(L"two.xml", BytesOf(Sample(L"channels.xml")))};
    {
        Viewer one({files[0]});
        AwaitAttributes(one, kAttributes);
        Viewer two({files[1]});
        AwaitAttributes(two, kAttributes);
        one.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
        two.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
        one.Kill();
        two.Kill();
    }
    const Viewer first;
    const Box question = first.NextBox();
    const bool isOne = question.Text().find(L"one.xml") != std::wstring::npos;
    question.Click(IDYES);
    const Box more = first.NextBox(question);
    EXPECT_NE(std::wstring::npos, more.Text().find(L"next window")) << Narrow(more.Text());
    more.Press(IDOK);
    EXPECT_EQ(L"6", first.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"));
    EXPECT_EQ(2U, UnsavedFiles().size());
    const Viewer second;
    const Box other = second.NextBox();
    EXPECT_NE(std::wstring::npos, other.Text().find(isOne ? L"two.xml" : L"one.xml")) << Narrow(other.Text());
    BringBack(second, other);
    EXPECT_FALSE(second.ShownBox()) << "there is no third";
}

// The box that follows the load takes the window's commands away: the drop is not lost, and asks
// before it takes the place of what came back.
TEST_F(RecoveryTest, WhatFallsOnTheWindowMeanwhileIsOpenedAfterTheBox) {
    constexpr int kPoints = 20000;
    constexpr int kLarge = (kPoints + 2) / 3;
    {
        Viewer one({FileWith(L"one.xml", LargeStream(kPoints))});
        AwaitAttributes(one, kLarge);
        Viewer two({FileWith(L"two.xml", LargeStream(kPoints))});
        AwaitAttributes(two, kLarge);
        one.SetCell(IDC_ATTRIBUTES, L"A0", L"6");
        two.SetCell(IDC_ATTRIBUTES, L"A0", L"6");
        one.Kill();
        two.Kill();
    }
    Viewer viewer;
    const Box question = viewer.NextBox();
    question.Click(IDYES);
    Await("the button", [&] { return viewer.IsVisible(IDC_STOP); });
    viewer.Drop({Sample(L"channels.xml")});
    const Box more = viewer.NextBox(question);
    EXPECT_NE(std::wstring::npos, more.Text().find(L"next window")) << Narrow(more.Text());
    more.Click(IDOK);
    const Box save = viewer.NextBox(more);
    save.Press(IDNO);
    AwaitAttributes(viewer, kAttributes);
    EXPECT_TRUE(viewer.Title().starts_with(L"channels.xml")) << Narrow(viewer.Title());
    viewer.Close();
}

TEST_F(RecoveryTest, TheEndOfTheLoopOfMessagesKeepsWhatIsUnsaved) {
    file_ = OwnSample(L"channels.xml");
    Viewer viewer({file_});
    AwaitAttributes(viewer, kAttributes);
    viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
    PostThreadMessageW(GetWindowThreadProcessId(viewer.Frame(), nullptr), WM_QUIT, 0, 0);
    viewer.WaitForEnd();
    EXPECT_EQ(1U, UnsavedFiles().size());
}

TEST_F(RecoveryTest, WhatCannotBeKeptIsSaid) {
    // UserState gives the folder back.
    SetEnvironmentVariableW(L"LOCALAPPDATA", FileNamed(L"none\\none").c_str());
    Viewer viewer({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
    EXPECT_NE(std::wstring::npos, viewer.Status(VIEW_STATUS_MESSAGE).find(L"crash"))
        << Narrow(viewer.Status(VIEW_STATUS_MESSAGE));
    viewer.Do(IDM_EDIT_UNDO);
    EXPECT_EQ(std::wstring::npos, viewer.Status(VIEW_STATUS_MESSAGE).find(L"crash")) << "nothing is unsaved";
}

TEST_F(RecoveryTest, SaysWhenTheFileHasChangedSince) {
    EndUnsaved();
    FileWith(L"channels.xml", BytesOf(file_) + "\n");
    Viewer viewer;
    const Box box = viewer.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(L"changed")) << Narrow(box.Text());
    BringBack(viewer, box);
}

TEST_F(RecoveryTest, SaysWhatCannotBeBroughtBack) {
    EndUnsaved();
    std::string text = BytesOf(file_);
    for (std::size_t at = 0; (at = text.find("AI1_Setup", at)) != std::string::npos;) {
        text.replace(at, 9, "AI1_Other");
    }
    FileWith(L"channels.xml", text);
    Viewer viewer;
    const Box question = viewer.NextBox();
    question.Click(IDYES);
    const Box box = viewer.NextBox(question);
    EXPECT_NE(std::wstring::npos, box.Text().find(L"AI1_Setup = 9")) << Narrow(box.Text());
    EXPECT_EQ(std::wstring::npos, box.Text().find(L"AI1_Channel")) << Narrow(box.Text());
    box.Press(IDOK);
    Await("the value", [&] { return viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel") == L"6"; });
}

TEST_F(RecoveryTest, TheFileThatWasNamedOpensAfterIt) {
    EndUnsaved();
    Viewer viewer({Sample(L"full.xml")});
    const Box question = viewer.NextBox();
    question.Click(IDYES);
    const Box box = viewer.NextBox(question);
    EXPECT_NE(std::wstring::npos, box.Text().find(L"Save the changes to channels.xml")) << Narrow(box.Text());
    EXPECT_EQ(L"6", viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"));
    box.Press(IDNO);
    AwaitAttributes(viewer, 65);
    viewer.Close();
}

TEST_F(RecoveryTest, TheSameFileIsNotOpenedAgainAfterIt) {
    EndUnsaved();
    Viewer viewer({file_});
    BringBack(viewer, viewer.NextBox());
    viewer.Settle();
    EXPECT_FALSE(viewer.ShownBox());
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

TEST_F(RecoveryTest, AFileThatCannotBeReadNowStays) {
    EndUnsaved();
    const Texts files = UnsavedFiles();
    ASSERT_EQ(1U, files.size());
    const HANDLE held = CreateFileW(files[0].c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, held);
    {
        Viewer viewer({file_});
        AwaitAttributes(viewer, kAttributes);
        EXPECT_FALSE(viewer.ShownBox());
        CloseHandle(held);
        viewer.Close();
    }
    EXPECT_EQ(files, UnsavedFiles());
    const Viewer viewer;
    EXPECT_NE(std::wstring::npos, viewer.NextBox().Text().find(L"channels.xml"));
}

TEST_F(RecoveryTest, AFileOfAnotherVersionStays) {
    EndUnsaved();
    const Texts files = UnsavedFiles();
    ASSERT_EQ(1U, files.size());
    const HANDLE file = CreateFileW(files[0].c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, file);
    const std::string head = "tamview unsaved 3\n";
    DWORD written = 0;
    EXPECT_TRUE(WriteFile(file, head.data(), static_cast<DWORD>(head.size()), &written, nullptr));
    CloseHandle(file);
    Viewer viewer({file_});
    AwaitAttributes(viewer, kAttributes);
    EXPECT_FALSE(viewer.ShownBox());
    EXPECT_EQ(files, UnsavedFiles());
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
