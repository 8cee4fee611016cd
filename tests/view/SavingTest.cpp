// Changed values saved into a project and into a stream.

#include "tests/view/Fixture.h"

#include <cstddef>
#include <string>

namespace viewtest {

namespace {

class SavingTest : public OpenedTest {
  protected:
    void Change(const std::wstring& value) { viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", value); }
    bool IsUnsaved() const { return viewer_.Title().find(L'*') != std::wstring::npos; }
    /// The value of the attribute in a file that is opened on its own.
    static std::wstring ValueIn(const std::wstring& file) {
        Viewer other({file});
        AwaitAttributes(other, kAttributes);
        return other.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel");
    }
    /// Saves what was not saved yet: the name of the project is asked for.
    void SaveFirst(const Viewer& viewer) const {
        viewer.Begin(IDM_FILE_SAVE);
        viewer.NextBox().ChooseFile(project_);
        Await("the project", [&] { return viewer.Title().find(L'*') == std::wstring::npos; });
    }
    const std::wstring project_ = FileNamed(L"hall.project.xml");
};

TEST_F(SavingTest, SavesIntoAProjectThatOpensAgain) {
    Change(L"6");
    SaveFirst(viewer_);
    EXPECT_TRUE(IsFile(project_));
    EXPECT_EQ(L"", viewer_.Status(VIEW_STATUS_UNSAVED));
    EXPECT_TRUE(viewer_.IsEnabled(IDM_EDIT_UNDO)) << "a save ends no history";
    const std::string text = BytesOf(project_);
    EXPECT_NE(std::string::npos, text.find("<Project")) << text;
    EXPECT_NE(std::string::npos, text.find("K7")) << text;
    EXPECT_EQ(L"6", ValueIn(project_));
    EXPECT_EQ(L"1", ValueIn(file_)) << "the stream is as it was";
}

TEST_F(SavingTest, ASecondSaveAsksForNoName) {
    Change(L"6");
    SaveFirst(viewer_);
    Change(L"4");
    viewer_.Do(IDM_FILE_SAVE);
    EXPECT_FALSE(IsUnsaved());
    EXPECT_EQ(L"4", ValueIn(project_));
}

TEST_F(SavingTest, UndoAfterASaveIsUnsaved) {
    Change(L"6");
    SaveFirst(viewer_);
    viewer_.Do(IDM_EDIT_UNDO);
    EXPECT_TRUE(IsUnsaved());
    viewer_.Do(IDM_FILE_SAVE);
    EXPECT_EQ(L"1", ValueIn(project_));
}

TEST_F(SavingTest, AnotherNameLeavesTheFirstProject) {
    Change(L"6");
    SaveFirst(viewer_);
    Change(L"4");
    viewer_.Begin(IDM_FILE_SAVE_AS);
    viewer_.NextBox().ChooseFile(FileNamed(L"other.xml"));
    Await("the other project", [&] { return !IsUnsaved(); });
    EXPECT_EQ(L"6", ValueIn(project_));
    EXPECT_EQ(L"4", ValueIn(FileNamed(L"other.xml")));
}

TEST_F(SavingTest, AProjectKeepsWhatElseItHolds) {
    FileWith(L"hall.project.xml",
             "<?xml version=\"1.0\"?>\n<Project><Other><Name>x</Name></Other></Project>");
    Change(L"6");
    SaveFirst(viewer_);
    const std::string text = BytesOf(project_);
    const std::size_t other = text.find("<Other>");
    ASSERT_NE(std::string::npos, other) << text;
    EXPECT_NE(std::string::npos, text.find("<Name>x</Name>", other)) << text;
    EXPECT_EQ(L"6", ValueIn(project_));
}

TEST_F(SavingTest, WhatElseAProjectHoldsStaysByteForByte) {
    const std::string before = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<!-- ours -->\n<Project>\r\n"
                               "\t<Other><!-- why --><?do it?><![CDATA[<a>]]> mixed <b/> text&#10;</Other>\n";
    const std::string after = "<!-- last --></Project>\n<!-- after -->\n";
    FileWith(L"hall.project.xml", before + after);
    Change(L"6");
    SaveFirst(viewer_);
    const std::string once = BytesOf(project_);
    EXPECT_TRUE(once.starts_with(before)) << once;
    EXPECT_TRUE(once.ends_with("</Project>\n<!-- after -->\n")) << once;
    EXPECT_NE(std::string::npos, once.find("<!-- last -->")) << once;
    Change(L"4");
    viewer_.Do(IDM_FILE_SAVE);
    std::string twice = BytesOf(project_);
    const std::size_t value = twice.find("<VALUE>4</VALUE>");
    ASSERT_NE(std::string::npos, value) << twice;
    twice.replace(value, 16, "<VALUE>6</VALUE>");
    EXPECT_EQ(once, twice) << "in the same place, and there once";
}

TEST_F(SavingTest, AProjectOfADeviceKeepsWhatElseItHolds) {
    FileWith(L"hall.project.xml",
             "<?xml version=\"1.0\"?>\n<Project><Other><Name>x</Name></Other></Project>");
    Viewer viewer({benchtest::SamplesFolder() + L"device.xml"});
    AwaitAttributes(viewer, kAttributes);
    viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
    SaveFirst(viewer);
    viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"4");
    viewer.Do(IDM_FILE_SAVE);
    const std::string text = BytesOf(project_);
    const auto times = [&text](const std::string& word) {
        std::size_t count = 0;
        for (std::size_t at = 0; (at = text.find(word, at)) != std::string::npos; at += word.size()) {
            ++count;
        }
        return count;
    };
    EXPECT_EQ(1U, times("<Other>")) << text;
    EXPECT_EQ(1U, times("<Tam>")) << text;
    EXPECT_EQ(1U, times("<O_Tam_id>")) << text;
    for (const char* key : {"AI1", "AO1", "DI1", "DO1", "CTX1"}) {
        EXPECT_EQ(1U, times("<TamObjectKey>" + std::string(key) + "</TamObjectKey>"))
            << key << " in " << text;
    }
    EXPECT_EQ(L"4", ValueIn(project_));
}

// Another window, or a hand, has changed the module there since.
TEST_F(SavingTest, AModuleThatIsAnotherOneInTheProjectIsAskedFor) {
    Change(L"6");
    SaveFirst(viewer_);
    std::string text = BytesOf(project_);
    const std::size_t at = text.find("<VALUE>6</VALUE>");
    ASSERT_NE(std::string::npos, at) << text;
    text.replace(at, 16, "<VALUE>5</VALUE>\n");
    FileWith(L"hall.project.xml", text);
    Change(L"4");
    viewer_.Begin(IDM_FILE_SAVE);
    const Box box = viewer_.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(L"hall.project.xml")) << Narrow(box.Text());
    box.Press(IDCANCEL);
    EXPECT_EQ(text, BytesOf(project_));
    EXPECT_TRUE(IsUnsaved());
    viewer_.Begin(IDM_FILE_SAVE);
    viewer_.NextBox().Press(IDOK);
    EXPECT_FALSE(IsUnsaved());
    EXPECT_EQ(L"4", ValueIn(project_));
    Change(L"7");
    viewer_.Do(IDM_FILE_SAVE);
    EXPECT_FALSE(IsUnsaved()) << "it is this window's own again";
}

TEST_F(SavingTest, AnOpenProjectIsSavedIntoItselfByItsName) {
    Change(L"6");
    SaveFirst(viewer_);
    Viewer other({project_});
    AwaitAttributes(other, kAttributes);
    other.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"9");
    other.Begin(IDM_FILE_SAVE_AS);
    other.NextBox().ChooseFile(project_);
    Await("the project", [&] { return other.Title().find(L'*') == std::wstring::npos; });
    EXPECT_EQ(L"9", ValueIn(project_));
}

TEST_F(SavingTest, AModuleThatTheProjectHasAlreadyIsAskedFor) {
    Change(L"6");
    SaveFirst(viewer_);
    const std::string text = BytesOf(project_);
    Viewer other({file_});
    AwaitAttributes(other, kAttributes);
    other.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"9");
    other.Begin(IDM_FILE_SAVE);
    const Box chooser = other.NextBox();
    chooser.ChooseFile(project_);
    const Box box = other.NextBox(chooser);
    EXPECT_NE(std::wstring::npos, box.Text().find(L"hall.project.xml")) << Narrow(box.Text());
    box.Press(IDCANCEL);
    EXPECT_EQ(text, BytesOf(project_));
    EXPECT_NE(std::wstring::npos, other.Title().find(L'*'));
}

// As every other program saves it: without the stream.
TEST_F(SavingTest, AModuleThatTheProjectHasWithoutAStreamIsAskedFor) {
    ASSERT_EQ(0U, benchtest::RunBench({L"save", file_, L"-o", project_}).status);
    std::string text = BytesOf(project_);
    ASSERT_EQ(std::string::npos, text.find("<Tam>")) << text;
    text.replace(text.find("</Project>"), 10, "<!-- ours --></Project>");
    FileWith(L"hall.project.xml", text);
    Change(L"6");
    viewer_.Begin(IDM_FILE_SAVE);
    const Box chooser = viewer_.NextBox();
    chooser.ChooseFile(project_);
    const Box box = viewer_.NextBox(chooser);
    EXPECT_NE(std::wstring::npos, box.Text().find(L"hall.project.xml")) << Narrow(box.Text());
    box.Press(IDCANCEL);
    EXPECT_EQ(text, BytesOf(project_));
    EXPECT_TRUE(IsUnsaved());
}

TEST_F(SavingTest, AnOpenProjectThatChangedMeanwhileIsAskedFor) {
    Change(L"6");
    SaveFirst(viewer_);
    Viewer other({project_});
    AwaitAttributes(other, kAttributes);
    other.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"9");
    ShowWindow(other.Frame(), SW_SHOWMINNOACTIVE); // so it does not look at the disk
    Await("the symbol", [&] { return IsIconic(other.Frame()) != FALSE; });
    Change(L"4");
    viewer_.Do(IDM_FILE_SAVE);
    other.Begin(IDM_FILE_SAVE);
    const Box box = other.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(L"hall.project.xml")) << Narrow(box.Text());
    box.Press(IDCANCEL);
    EXPECT_EQ(L"4", ValueIn(project_));
}

TEST_F(SavingTest, AFileThatIsNoProjectIsLeftAsItIs) {
    const std::string text = "<?xml version=\"1.0\"?>\n<Device><Stream>a.xml</Stream></Device>";
    FileWith(L"hall.project.xml", text);
    for (const std::wstring& file : {file_, benchtest::SamplesFolder() + L"device.xml"}) {
        Viewer viewer({file});
        AwaitAttributes(viewer, kAttributes);
        viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
        viewer.Begin(IDM_FILE_SAVE);
        const Box chooser = viewer.NextBox();
        chooser.ChooseFile(project_);
        const Box box = viewer.NextBox(chooser);
        EXPECT_NE(std::wstring::npos, box.Text().find(L"no project")) << Narrow(box.Text());
        box.Press(IDOK);
        EXPECT_EQ(text, BytesOf(project_));
        viewer.Kill();
        ForgetUnsaved();
    }
}

// In its place stood what cannot be read, saved as such.
TEST_F(SavingTest, AProjectInAnEncodingThatIsNotReadIsLeftAsItIs) {
    const std::string text =
        "<?xml version=\"1.0\" encoding=\"shift_jis\"?>\n<Project><Other>\xC1</Other></Project>";
    FileWith(L"hall.project.xml", text);
    Change(L"6");
    viewer_.Begin(IDM_FILE_SAVE);
    const Box chooser = viewer_.NextBox();
    chooser.ChooseFile(project_);
    const Box box = viewer_.NextBox(chooser);
    EXPECT_NE(std::wstring::npos, box.Text().find(L"hall.project.xml")) << Narrow(box.Text());
    box.Press(IDOK);
    EXPECT_EQ(text, BytesOf(project_));
    EXPECT_TRUE(IsUnsaved());
}

TEST_F(SavingTest, WhatIsBeingTypedIsSavedToo) {
    viewer_.BeginCell(IDC_ATTRIBUTES, L"AI1_Channel", L"8");
    viewer_.Begin(IDM_FILE_SAVE_STREAM);
    viewer_.NextBox().ChooseFile(FileNamed(L"changed.xml"));
    Await("the stream", [&] { return IsFile(FileNamed(L"changed.xml")) && !IsUnsaved(); });
    EXPECT_EQ(L"8", ValueIn(FileNamed(L"changed.xml")));
}

TEST_F(SavingTest, WhoCancelsSavesNothing) {
    Change(L"6");
    viewer_.Begin(IDM_FILE_SAVE);
    viewer_.NextBox().Press(IDCANCEL);
    EXPECT_TRUE(IsUnsaved());
    EXPECT_FALSE(IsFile(FileNamed(L"channels.project.xml"))) << "the name that the box suggests";
}

TEST_F(SavingTest, AFileThatCannotBeWrittenIsSaid) {
    const HANDLE held = CreateFileW(project_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    Change(L"6");
    viewer_.Begin(IDM_FILE_SAVE_STREAM);
    const Box chooser = viewer_.NextBox();
    chooser.EnterFile(project_);
    const Box question = viewer_.NextBox(chooser); // whether the file is to be replaced
    question.Press(IDYES);
    chooser.AwaitEnd();
    const Box box = viewer_.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(L"hall.project.xml")) << Narrow(box.Text());
    box.Press(IDOK);
    EXPECT_TRUE(IsUnsaved());
    CloseHandle(held);
}

TEST_F(SavingTest, SavesTheStreamWithItsValues) {
    const std::string before = BytesOf(file_);
    Change(L"6");
    viewer_.Begin(IDM_FILE_SAVE_STREAM);
    viewer_.NextBox().ChooseFile(FileNamed(L"changed.xml"));
    Await("the stream", [&] { return !IsUnsaved(); });
    std::string after = BytesOf(FileNamed(L"changed.xml"));
    EXPECT_EQ(L"6", ValueIn(FileNamed(L"changed.xml")));
    const std::size_t value = after.find("<VALUE>6</VALUE>");
    ASSERT_NE(std::string::npos, value);
    after.replace(value, 16, "<VALUE>1</VALUE>");
    // The declaration names the encoding now.
    EXPECT_EQ(before.substr(before.find("?>")), after.substr(after.find("?>")))
        << "comments and blanks are as they were";
}

} // namespace

} // namespace viewtest
