// The sheet: picking, zoom, drag.

#include "tests/view/Fixture.h"

#include <string>

namespace viewtest {

namespace {

class SheetTest : public OpenedTest {
  protected:
    HWND Sheet() const { return viewer_.Part(IDC_SHEET); }
    SIZE SizeOfSheet() const {
        RECT area{};
        GetClientRect(Sheet(), &area);
        return {area.right, area.bottom};
    }
    /// The number before the per cent sign.
    int Zoom() const { return std::stoi(viewer_.Status(VIEW_STATUS_ZOOM)); }
    void Click(int x, int y) const {
        SendMessageW(Sheet(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
        SendMessageW(Sheet(), WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    }
    void Wheel(int notches, WPARAM keys) const {
        RECT place{};
        GetWindowRect(Sheet(), &place);
        SendMessageW(Sheet(), WM_MOUSEWHEEL, MAKEWPARAM(keys, notches * WHEEL_DELTA),
                     MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2));
    }
    std::wstring Words() const { return viewer_.PartText(IDC_SHEET); }
    /// Down the left edge of the block a pin comes sooner or later.
    void ClickUntilAnInputIsPicked() const {
        const SIZE size = SizeOfSheet();
        for (int y = 0; y < size.cy && viewer_.PickedName(IDC_INPUTS).empty(); y += 4) {
            for (int x = 0; x < size.cx / 2 && viewer_.PickedName(IDC_INPUTS).empty(); x += 6) {
                Click(x, y);
            }
        }
    }
};

TEST_F(SheetTest, APinPickedOnTheSheetIsPickedInTheList) {
    ClickUntilAnInputIsPicked();
    EXPECT_EQ(L"AO1_In1", viewer_.PickedName(IDC_INPUTS)) << "the topmost input";
    EXPECT_TRUE(viewer_.IsVisible(IDC_INPUTS));
    EXPECT_TRUE(Words().starts_with(L"input AO1_In1")) << Narrow(Words());
}

TEST_F(SheetTest, ARowPickedInTheListIsPickedOnTheSheet) {
    viewer_.Do(IDM_VIEW_OUTPUTS);
    viewer_.Pick(IDC_OUTPUTS, L"DI1_Out");
    Await("the words of the pin", [&] { return Words().starts_with(L"output DI1_Out"); });
    viewer_.Do(IDM_VIEW_INPUTS);
    viewer_.Pick(IDC_INPUTS, L"DO1_In1");
    Await("the words of the other pin", [&] { return Words().starts_with(L"input DO1_In1"); });
    EXPECT_NE(std::wstring::npos, Words().find(L"wired to DI1_Out")) << Narrow(Words());
}

TEST_F(SheetTest, ArrowsPickPins) {
    viewer_.Do(IDM_VIEW_SHEET);
    EXPECT_EQ(IDC_SHEET, viewer_.Focus());
    const auto press = [&](WORD key) { SendMessageW(Sheet(), WM_KEYDOWN, key, 1); };
    press(VK_DOWN);
    EXPECT_TRUE(Words().starts_with(L"input AO1_In1")) << Narrow(Words());
    press(VK_DOWN);
    EXPECT_TRUE(Words().starts_with(L"input DO1_In1")) << Narrow(Words());
    press(VK_RIGHT);
    EXPECT_TRUE(Words().starts_with(L"output AO1_Out")) << Narrow(Words());
    press(VK_UP);
    EXPECT_TRUE(Words().starts_with(L"output AI1_Out")) << Narrow(Words());
    EXPECT_EQ(L"AI1_Out", viewer_.PickedName(IDC_OUTPUTS));
    EXPECT_EQ(IDC_SHEET, viewer_.Focus()) << "the focus stays on the sheet";
}

TEST_F(SheetTest, CtrlAndTheWheelZoom) {
    const int before = Zoom();
    Wheel(1, MK_CONTROL);
    const int larger = Zoom();
    EXPECT_GT(larger, before);
    Wheel(1, 0);
    EXPECT_EQ(larger, Zoom()) << "the wheel alone moves the sheet";
    Wheel(-1, MK_CONTROL);
    EXPECT_LT(Zoom(), larger);
}

TEST_F(SheetTest, TheMenuZooms) {
    viewer_.Do(IDM_VIEW_ZOOM_ACTUAL);
    EXPECT_EQ(100, Zoom());
    viewer_.Do(IDM_VIEW_ZOOM_IN);
    EXPECT_EQ(110, Zoom());
    viewer_.Do(IDM_VIEW_ZOOM_OUT);
    viewer_.Do(IDM_VIEW_ZOOM_OUT);
    EXPECT_EQ(90, Zoom());
    for (int i = 0; i < 40; ++i) {
        viewer_.Do(IDM_VIEW_ZOOM_IN);
    }
    EXPECT_EQ(800, Zoom());
    viewer_.Do(IDM_VIEW_ZOOM_FIT);
    EXPECT_LE(Zoom(), 100);
}

TEST_F(SheetTest, IsDraggedByTheMouse) {
    viewer_.Do(IDM_VIEW_ZOOM_ACTUAL);
    const SIZE size = SizeOfSheet();
    Click(2, 2);
    const std::wstring nothing = Words();
    SendMessageW(Sheet(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 2));
    SendMessageW(Sheet(), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(2, size.cy + 2000));
    SendMessageW(Sheet(), WM_LBUTTONUP, 0, MAKELPARAM(2, size.cy + 2000));
    // All of it is below now, but for a rest.
    for (int y = 0; y < size.cy - 60; y += 20) {
        for (int x = 0; x < size.cx; x += 20) {
            Click(x, y);
        }
    }
    EXPECT_EQ(nothing, Words());
    viewer_.Do(IDM_VIEW_ZOOM_FIT);
    EXPECT_EQ(L"", viewer_.PickedName(IDC_INPUTS));
}

TEST_F(SheetTest, AMoveWithoutTheButtonEndsTheDrag) {
    const SIZE size = SizeOfSheet();
    SendMessageW(Sheet(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 2));
    // The system tells of the pointer as it is, and the button may have come up outside.
    SendMessageW(Sheet(), WM_MOUSEMOVE, 0, MAKELPARAM(2, size.cy + 2000));
    SendMessageW(Sheet(), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(2, size.cy + 2000));
    ClickUntilAnInputIsPicked();
    EXPECT_EQ(L"AO1_In1", viewer_.PickedName(IDC_INPUTS)) << "the sheet is where it was";
}

} // namespace

} // namespace viewtest
