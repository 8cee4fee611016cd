// How a file comes into the window.

#include "tests/view/Fixture.h"

#include <commctrl.h>

#include <string>

namespace viewtest {

namespace {

class OpeningTest : public ViewTest {};

TEST_F(OpeningTest, TheWindowOpensWithoutAFile) {
    Viewer viewer;
    EXPECT_EQ(0, viewer.Count(IDC_ATTRIBUTES));
    EXPECT_EQ(0, viewer.Count(IDC_FINDINGS));
    EXPECT_TRUE(viewer.IsEnabled(IDM_FILE_OPEN));
    EXPECT_FALSE(viewer.IsEnabled(IDM_FILE_SAVE));
    EXPECT_FALSE(viewer.IsEnabled(IDM_EDIT_VALUE));
    EXPECT_FALSE(viewer.IsEnabled(IDM_EDIT_UNDO));
    EXPECT_FALSE(viewer.IsEnabled(IDM_VIEW_ZOOM_IN));
    EXPECT_EQ(L"Open a stream, a device or a project: Ctrl+O, or drop a file on this window.",
              viewer.Status(VIEW_STATUS_MESSAGE));
    viewer.Close();
}

TEST_F(OpeningTest, TheCommandLineNamesAFile) {
    Viewer viewer({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    EXPECT_EQ(kInputs, viewer.Count(IDC_INPUTS));
    EXPECT_EQ(kOutputs, viewer.Count(IDC_OUTPUTS));
    EXPECT_TRUE(viewer.Title().starts_with(L"channels.xml")) << Narrow(viewer.Title());
    EXPECT_NE(std::wstring::npos, viewer.PartText(IDC_SHEET).find(L"Reading room"))
        << Narrow(viewer.PartText(IDC_SHEET));
    EXPECT_TRUE(viewer.IsEnabled(IDM_FILE_SAVE));
    EXPECT_TRUE(viewer.IsEnabled(IDM_VIEW_ZOOM_IN));
    viewer.Close();
}

TEST_F(OpeningTest, TheMenuAsksForAFile) {
    Viewer viewer;
    viewer.Begin(IDM_FILE_OPEN);
    viewer.NextBox().ChooseFile(Sample(L"channels.xml"));
    AwaitAttributes(viewer, kAttributes);
    viewer.Begin(IDM_FILE_OPEN);
    viewer.NextBox().Press(IDCANCEL);
    EXPECT_EQ(kAttributes, viewer.Count(IDC_ATTRIBUTES)) << "a person who thinks better of it keeps the file";
    viewer.Close();
}

TEST_F(OpeningTest, AFileFallsOnTheWindow) {
    Viewer viewer;
    viewer.Drop({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    viewer.Close();
}

TEST_F(OpeningTest, OfSeveralFilesThatFallOnTheWindowTheFirstIsOpened) {
    Viewer viewer({Sample(L"oddities.xml")});
    AwaitAttributes(viewer, 8);
    const auto message = [&] { return viewer.Status(VIEW_STATUS_MESSAGE); };
    viewer.Drop({Sample(L"full.xml"), Sample(L"channels.xml")});
    AwaitAttributes(viewer, 65);
    EXPECT_TRUE(viewer.Title().starts_with(L"full.xml")) << Narrow(viewer.Title());
    Await("words of the other one", [&] {
        return message() == L"1 more file was not opened: the window shows one file at a time. "
                            L"full.xml is open. Points: 103";
    });
    viewer.Drop({Sample(L"channels.xml"), Sample(L"full.xml"), Sample(L"oddities.xml")});
    AwaitAttributes(viewer, kAttributes);
    Await("words of the others", [&] {
        return message() == L"2 more files were not opened: the window shows one file at a time. "
                            L"channels.xml is open. Points: 19";
    });
    viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
    viewer.Drop({Sample(L"full.xml"), Sample(L"oddities.xml")});
    viewer.NextBox().Press(IDCANCEL);
    viewer.Settle();
    EXPECT_EQ(L"", message()) << "who keeps the file has opened none of them";
    viewer.Do(IDM_EDIT_UNDO);
    viewer.Drop({Sample(L"full.xml")});
    AwaitAttributes(viewer, 65);
    Await("words of one file", [&] { return message() == L"full.xml is open. Points: 103"; });
    viewer.Close();
}

TEST_F(OpeningTest, OfSeveralFilesOfTheCommandLineTheFirstIsOpened) {
    Viewer viewer({Sample(L"channels.xml"), Sample(L"full.xml"), Sample(L"oddities.xml")});
    AwaitAttributes(viewer, kAttributes);
    EXPECT_TRUE(viewer.Title().starts_with(L"channels.xml")) << Narrow(viewer.Title());
    Await("words of the others", [&] {
        return viewer.Status(VIEW_STATUS_MESSAGE) ==
               L"2 more files were not opened: the window shows one file at a time. "
               L"channels.xml is open. Points: 19";
    });
    viewer.Close();
}

TEST_F(OpeningTest, AnotherFileTakesThePlaceOfTheFirst) {
    Viewer viewer({Sample(L"full.xml")});
    AwaitAttributes(viewer, 65);
    EXPECT_EQ(13, viewer.Count(IDC_INPUTS));
    EXPECT_EQ(25, viewer.Count(IDC_OUTPUTS));
    viewer.Drop({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    EXPECT_EQ(kInputs, viewer.Count(IDC_INPUTS));
    EXPECT_EQ(kOutputs, viewer.Count(IDC_OUTPUTS));
    viewer.Close();
}

TEST_F(OpeningTest, AFileThatIsNotThereIsSaid) {
    Viewer viewer({FileNamed(L"none.xml")});
    const Box box = viewer.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(L"none.xml")) << Narrow(box.Text());
    box.Press(IDOK);
    EXPECT_EQ(0, viewer.Count(IDC_ATTRIBUTES));
    viewer.Drop({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    viewer.Close();
}

TEST_F(OpeningTest, RecentFilesComeBack) {
    {
        Viewer viewer({Sample(L"full.xml")});
        AwaitAttributes(viewer, 65);
        viewer.Drop({Sample(L"channels.xml")});
        AwaitAttributes(viewer, kAttributes);
        viewer.Do(IDM_FILE_RECENT + 1);
        AwaitAttributes(viewer, 65);
        viewer.Close();
    }
    Viewer viewer;
    viewer.Do(IDM_FILE_RECENT + 1);
    AwaitAttributes(viewer, kAttributes);
    EXPECT_TRUE(viewer.Title().starts_with(L"channels.xml"));
    viewer.Close();
}

TEST_F(OpeningTest, RecentFilesOfTwoWindowsAreOneList) {
    {
        Viewer first({Sample(L"full.xml")});
        AwaitAttributes(first, 65);
        Viewer second({Sample(L"channels.xml")});
        AwaitAttributes(second, kAttributes);
        first.Close();
        second.Kill(); // what it opened is remembered at once
    }
    Viewer viewer;
    viewer.Do(IDM_FILE_RECENT + 1);
    AwaitAttributes(viewer, 65);
    viewer.Do(IDM_FILE_RECENT + 1);
    AwaitAttributes(viewer, kAttributes);
    viewer.Close();
}

TEST_F(OpeningTest, ARecentFileThatIsGoneIsSaidAndForgotten) {
    const std::wstring file = OwnSample(L"channels.xml");
    Viewer viewer({file});
    AwaitAttributes(viewer, kAttributes);
    viewer.Drop({Sample(L"full.xml")});
    AwaitAttributes(viewer, 65);
    DeleteFileW(file.c_str());
    viewer.Begin(IDM_FILE_RECENT + 1);
    const Box box = viewer.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(file)) << Narrow(box.Text());
    box.Press(IDOK);
    viewer.Do(IDM_FILE_RECENT + 1);
    EXPECT_FALSE(viewer.ShownBox()) << "there is no second recent file any more";
    EXPECT_EQ(65, viewer.Count(IDC_ATTRIBUTES));
    viewer.Close();
}

TEST_F(OpeningTest, ReadsTheFileAgain) {
    const std::wstring file = OwnSample(L"channels.xml");
    Viewer viewer({file});
    AwaitAttributes(viewer, kAttributes);
    viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"5");
    viewer.Begin(IDM_FILE_RELOAD);
    viewer.NextBox().Press(IDNO);
    Await("the file's value", [&] { return viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel") == L"1"; });
    EXPECT_EQ(kAttributes, viewer.Count(IDC_ATTRIBUTES));
    viewer.Close();
}

} // namespace

} // namespace viewtest
