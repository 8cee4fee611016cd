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
