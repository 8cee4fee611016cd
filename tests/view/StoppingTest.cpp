// Loading that is ended by the keyboard.

#include "tests/view/Fixture.h"

#include <string>

namespace viewtest {

namespace {

class StoppingTest : public ViewTest {};

TEST_F(StoppingTest, AKeyEndsIt) {
    Viewer viewer;
    viewer.ToFront();
    EXPECT_TRUE(StopsBy(viewer, [&] { viewer.Press(VK_CANCEL, {VK_CONTROL}); }));
    EXPECT_EQ(0, viewer.Count(IDC_ATTRIBUTES));
    EXPECT_NE(std::wstring::npos, viewer.Status(VIEW_STATUS_MESSAGE).find(L"stopped"))
        << Narrow(viewer.Status(VIEW_STATUS_MESSAGE));
    viewer.Close();
}

TEST_F(StoppingTest, AMenuThatIsOpenHasItsKeys) {
    Viewer viewer;
    viewer.ToFront();
    int before = 0;
    int after = 0;
    EXPECT_TRUE(StopsBy(viewer, [&] {
        viewer.Press(VK_SPACE, {VK_MENU}); // the load waits for the menu's end
        Await("the menu", [&] { return viewer.ShownMenu() != nullptr; });
        before = viewer.Focus();
        viewer.Press(VK_TAB);
        viewer.Press(VK_ESCAPE);
        Await("the end of the menu", [&] { return viewer.ShownMenu() == nullptr; });
        viewer.Press(VK_ESCAPE); // from the bar too
        Await("the end of the menu's keys", [&] { return !viewer.IsInMenu(); });
        after = viewer.Focus();
        viewer.Press(VK_CANCEL, {VK_CONTROL});
    }));
    EXPECT_EQ(before, after) << "the Tab key was the menu's";
    viewer.Close();
}

TEST_F(StoppingTest, AFileThatFallsOnTheWindowMeanwhileIsOpenedAfterIt) {
    constexpr int kPoints = 20000;
    Viewer viewer;
    viewer.Drop({FileWith(L"large.xml", LargeStream(kPoints))});
    Await("the button",
          [&] { return viewer.IsVisible(IDC_STOP) || viewer.Count(IDC_ATTRIBUTES) == (kPoints + 2) / 3; });
    viewer.Drop({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    EXPECT_TRUE(viewer.Title().starts_with(L"channels.xml")) << Narrow(viewer.Title());
    viewer.Do(IDM_FILE_RECENT + 1);
    AwaitAttributes(viewer, (kPoints + 2) / 3);
    viewer.Close();
}

// A system menu that was looked at while nothing could be done must not stay grey.
TEST_F(StoppingTest, TheSystemMenuClosesTheWindowWhileItLoads) {
    Viewer viewer;
    viewer.ToFront();
    viewer.Drop({FileWith(L"large.xml", LargeStream(20000))});
    Await("the button", [&] { return viewer.IsVisible(IDC_STOP) || viewer.Count(IDC_ATTRIBUTES) > 0; });
    viewer.Press(VK_SPACE, {VK_MENU});
    Await("the menu", [&] { return viewer.ShownMenu() != nullptr; });
    viewer.Press('C');
    EXPECT_EQ(0U, viewer.WaitForEnd());
}

} // namespace

} // namespace viewtest
