// The bars between the parts of the window, by keys and for a screen reader.

#include "tests/view/Fixture.h"

#include "com/Conversion.h"
#include "com/Ref.h"

#include <oleacc.h>

#include <cstdlib>
#include <string>

namespace viewtest {

namespace {

class SplitterTest : public OpenedTest {
  protected:
    SplitterTest() {
        EXPECT_EQ(S_OK, CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
        for (const int part : {IDM_VIEW_FINDINGS, IDM_VIEW_SOURCE}) {
            if (!viewer_.IsTicked(part)) {
                viewer_.Do(part);
            }
        }
        viewer_.Do(IDM_VIEW_ATTRIBUTES);
        viewer_.ToFront();
        AwaitFocus(IDC_ATTRIBUTES);
    }
    ~SplitterTest() override { CoUninitialize(); }

    void AwaitFocus(int control) const {
        Await("the focus on " + std::to_string(control), [&] { return viewer_.Focus() == control; });
    }
    /// Where a bar begins in the window.
    long PlaceOf(int splitter) const {
        RECT place{};
        GetWindowRect(viewer_.Part(splitter), &place);
        POINT corner{place.left, place.top};
        ScreenToClient(viewer_.Frame(), &corner);
        return splitter == IDC_SPLIT_PANES ? corner.y : corner.x;
    }
    com::Ref<IAccessible> AccessibleOf(int splitter) const {
        com::Ref<IAccessible> accessible;
        EXPECT_EQ(S_OK, AccessibleObjectFromWindow(viewer_.Part(splitter), static_cast<DWORD>(OBJID_CLIENT),
                                                   __uuidof(IAccessible), accessible.PutVoid()));
        return accessible;
    }
    static VARIANT Self() {
        VARIANT self{};
        self.vt = VT_I4;
        return self;
    }
};

TEST_F(SplitterTest, AKeyGoesAroundThemAndEscGoesBack) {
    for (const int splitter : {IDC_SPLIT_SHEET, IDC_SPLIT_PANES, IDC_SPLIT_SOURCE, IDC_SPLIT_SHEET}) {
        viewer_.Press(VK_F6, {VK_CONTROL});
        AwaitFocus(splitter);
    }
    viewer_.Press(VK_F6, {VK_CONTROL, VK_SHIFT});
    AwaitFocus(IDC_SPLIT_SOURCE);
    viewer_.Press(VK_ESCAPE);
    AwaitFocus(IDC_ATTRIBUTES);
}

TEST_F(SplitterTest, EscOnABarLeavesTheFilter) {
    viewer_.Filter(L"gain");
    viewer_.Press(VK_F6, {VK_CONTROL});
    AwaitFocus(IDC_SPLIT_SHEET);
    viewer_.Press(VK_ESCAPE);
    AwaitFocus(IDC_ATTRIBUTES);
    EXPECT_EQ(L"gain", viewer_.PartText(IDC_FILTER));
}

TEST_F(SplitterTest, AHiddenOneIsPassedOver) {
    viewer_.Do(IDM_VIEW_SOURCE);
    for (const int splitter : {IDC_SPLIT_SHEET, IDC_SPLIT_PANES, IDC_SPLIT_SHEET}) {
        viewer_.Press(VK_F6, {VK_CONTROL});
        AwaitFocus(splitter);
    }
}

TEST_F(SplitterTest, ArrowsMoveItAndEndsAreKept) {
    const struct {
        int splitter;
        WORD back;
        WORD forth;
    } bars[] = {{IDC_SPLIT_SHEET, VK_LEFT, VK_RIGHT},
                {IDC_SPLIT_PANES, VK_UP, VK_DOWN},
                {IDC_SPLIT_SOURCE, VK_LEFT, VK_RIGHT}};
    for (const auto& bar : bars) {
        viewer_.Press(VK_F6, {VK_CONTROL});
        AwaitFocus(bar.splitter);
        const long before = PlaceOf(bar.splitter);
        // A step is 16 pixels, but for the rounding of a share.
        const auto isAt = [&](long place) { return std::abs(PlaceOf(bar.splitter) - place) <= 4; };
        viewer_.Press(bar.forth);
        Await("a step forth", [&] { return isAt(before + 16); });
        viewer_.Press(bar.back);
        Await("a step back", [&] { return PlaceOf(bar.splitter) == before; });
        viewer_.Press(bar.back);
        Await("one more", [&] { return isAt(before - 16); });
        viewer_.Press(VK_END);
        Await("the far end", [&] { return PlaceOf(bar.splitter) > before + 16; });
        const long end = PlaceOf(bar.splitter);
        viewer_.Press(bar.forth);
        viewer_.Press(VK_HOME);
        Await("the near end", [&] { return PlaceOf(bar.splitter) < before - 16; });
        EXPECT_GT(PlaceOf(bar.splitter), 0);
        viewer_.Press(VK_END);
        Await("the far end again", [&] { return PlaceOf(bar.splitter) == end; });
        EXPECT_EQ(bar.splitter, viewer_.Focus());
        viewer_.Press(VK_HOME); // room for the others
    }
}

TEST_F(SplitterTest, AMoveWithoutTheButtonEndsTheDrag) {
    constexpr int kStart = 2;
    const HWND bar = viewer_.Part(IDC_SPLIT_SHEET);
    const auto move = [&](WPARAM keys, int distance) {
        SendMessageW(bar, WM_MOUSEMOVE, keys, MAKELPARAM(kStart + distance, kStart));
    };
    const long before = PlaceOf(IDC_SPLIT_SHEET);
    SendMessageW(bar, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(kStart, kStart));
    move(MK_LBUTTON, 60);
    const long dragged = PlaceOf(IDC_SPLIT_SHEET);
    EXPECT_NEAR(before + 60, dragged, 4) << "but for the rounding of a share";
    // The system tells of the pointer as it is, and the button may have come up outside.
    move(0, 40);
    EXPECT_EQ(dragged, PlaceOf(IDC_SPLIT_SHEET));
    move(MK_LBUTTON, 40);
    EXPECT_EQ(dragged, PlaceOf(IDC_SPLIT_SHEET)) << "a button that went down elsewhere drags nothing";
    SendMessageW(bar, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(kStart, kStart));
    move(MK_LBUTTON, -60);
    EXPECT_NEAR(before, PlaceOf(IDC_SPLIT_SHEET), 4);
    SendMessageW(bar, WM_LBUTTONUP, 0, MAKELPARAM(kStart, kStart));
}

TEST_F(SplitterTest, AScreenReaderIsToldWhatItIs) {
    const struct {
        int splitter;
        const wchar_t* name;
        const wchar_t* value;
    } bars[] = {{IDC_SPLIT_SHEET, L"Divider between the sheet and the lists", L"42 %"},
                {IDC_SPLIT_PANES, L"Divider above the findings and the source", L"26 %"},
                {IDC_SPLIT_SOURCE, L"Divider between the findings and the source", L"48 %"}};
    for (const auto& bar : bars) {
        viewer_.Press(VK_F6, {VK_CONTROL});
        AwaitFocus(bar.splitter);
        const auto accessible = AccessibleOf(bar.splitter);
        ASSERT_TRUE(accessible);
        com::Bstr name;
        EXPECT_EQ(S_OK, accessible->get_accName(Self(), name.Put()));
        EXPECT_EQ(bar.name, std::wstring(name.View()));
        com::Bstr value;
        EXPECT_EQ(S_OK, accessible->get_accValue(Self(), value.Put()));
        EXPECT_EQ(bar.value, std::wstring(value.View()));
        VARIANT role{};
        EXPECT_EQ(S_OK, accessible->get_accRole(Self(), &role));
        EXPECT_EQ(ROLE_SYSTEM_SEPARATOR, role.lVal);
        VARIANT state{};
        EXPECT_EQ(S_OK, accessible->get_accState(Self(), &state));
        EXPECT_EQ(STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_FOCUSED, state.lVal);
    }
    viewer_.Press(VK_ESCAPE);
    AwaitFocus(IDC_ATTRIBUTES);
    VARIANT state{};
    EXPECT_EQ(S_OK, AccessibleOf(IDC_SPLIT_SHEET)->get_accState(Self(), &state));
    EXPECT_EQ(STATE_SYSTEM_FOCUSABLE, state.lVal);
}

} // namespace

} // namespace viewtest
