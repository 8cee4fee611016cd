// The widths of the lists' columns, by keys and by the menu.

#include "tests/view/Fixture.h"

#include <commctrl.h>

#include <algorithm>
#include <cstddef>
#include <string>

namespace viewtest {

namespace {

class ColumnsTest : public OpenedTest {
  protected:
    int WidthOf(int list, int column) const {
        return static_cast<int>(
            SendMessageW(viewer_.Part(list), LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
    }
    void SetWidth(int list, int column, int width) const {
        SendMessageW(viewer_.Part(list), LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column), width);
    }
    /// What a text takes in the letters of a list.
    int WidthOf(int list, const std::wstring& text) const {
        const std::size_t size = (text.size() + 1) * sizeof(wchar_t);
        const RemoteMemory memory(viewer_.Process(), size);
        memory.Write(text.c_str(), size);
        return static_cast<int>(
            SendMessageW(viewer_.Part(list), LVM_GETSTRINGWIDTHW, 0, reinterpret_cast<LPARAM>(memory.At())));
    }
    /// Where a heading of the attributes is in the list.
    RECT HeadingOf(int column) const {
        const HWND list = viewer_.Part(IDC_ATTRIBUTES);
        const auto header = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
        const RemoteMemory memory(viewer_.Process(), sizeof(RECT));
        SendMessageW(header, HDM_GETITEMRECT, static_cast<WPARAM>(column),
                     reinterpret_cast<LPARAM>(memory.At()));
        RECT area{};
        memory.Read(&area, sizeof area);
        MapWindowPoints(header, list, reinterpret_cast<POINT*>(&area), 2);
        return area;
    }
    int WidestOf(int list, int column) const {
        int widest = 0;
        for (const std::wstring& text : viewer_.Cells(list, column)) {
            widest = std::max(widest, WidthOf(list, text));
        }
        return widest;
    }
    void AwaitFocus(int control) const {
        Await("the focus on " + std::to_string(control), [&] { return viewer_.Focus() == control; });
    }
    void AwaitWidth(int column, int width) const {
        Await("the width " + std::to_string(width), [&] { return WidthOf(IDC_ATTRIBUTES, column) == width; });
    }
    void AwaitMessage(const std::wstring& words) const {
        Await(Narrow(words), [&] { return viewer_.Status(VIEW_STATUS_MESSAGE) == words; });
    }
};

TEST_F(ColumnsTest, AKeyFitsTheColumnsToTheirTexts) {
    viewer_.ToFront();
    AwaitFocus(IDC_ATTRIBUTES);
    SetWidth(IDC_ATTRIBUTES, VIEW_COLUMN_NAME, 10);
    SetWidth(IDC_ATTRIBUTES, VIEW_COLUMN_UNIT, 500);
    viewer_.Press('9', {VK_CONTROL, VK_SHIFT});
    AwaitMessage(L"All columns fit their texts.");
    const Texts titles = {L"Name", L"Type",    L"Value",   L"Displayed as",
                          L"Unit", L"Default", L"Address", L"Visible"};
    for (int column = 0; column < 8; ++column) {
        const int title = WidthOf(IDC_ATTRIBUTES, titles[static_cast<std::size_t>(column)]);
        const int texts = WidestOf(IDC_ATTRIBUTES, column);
        EXPECT_GE(WidthOf(IDC_ATTRIBUTES, column), std::max(title, texts) + 12) << column;
        EXPECT_LE(WidthOf(IDC_ATTRIBUTES, column), std::max(title, texts) + 40) << column;
    }
}

TEST_F(ColumnsTest, RowsThatTheFilterHidesDoNotCount) {
    viewer_.Do(IDM_VIEW_FIT_COLUMNS);
    const int all = WidthOf(IDC_ATTRIBUTES, VIEW_COLUMN_TYPE);
    viewer_.Filter(L"AI1_Channel");
    ASSERT_EQ(1, viewer_.Count(IDC_ATTRIBUTES));
    viewer_.Do(IDM_VIEW_FIT_COLUMNS);
    EXPECT_LT(WidthOf(IDC_ATTRIBUTES, VIEW_COLUMN_TYPE), all);
}

TEST_F(ColumnsTest, KeysMakeAColumnWiderAndNarrower) {
    viewer_.ToFront();
    AwaitFocus(IDC_ATTRIBUTES);
    SetWidth(IDC_ATTRIBUTES, VIEW_COLUMN_NAME, 100);
    SetWidth(IDC_ATTRIBUTES, VIEW_COLUMN_TYPE, 60);
    viewer_.Press(VK_RIGHT, {VK_CONTROL, VK_SHIFT});
    AwaitWidth(VIEW_COLUMN_NAME, 116);
    AwaitMessage(L"Column Name, width 116");
    viewer_.Press(VK_RIGHT, {VK_CONTROL});
    AwaitMessage(L"Column Type, width 60");
    viewer_.Press(VK_LEFT, {VK_CONTROL, VK_SHIFT});
    AwaitWidth(VIEW_COLUMN_TYPE, 44);
    viewer_.Press(VK_LEFT, {VK_CONTROL, VK_SHIFT});
    AwaitWidth(VIEW_COLUMN_TYPE, 28);
    viewer_.Press(VK_LEFT, {VK_CONTROL, VK_SHIFT});
    AwaitMessage(L"Column Type, width 24");
    viewer_.Press(VK_LEFT, {VK_CONTROL});
    AwaitMessage(L"Column Name, width 116");
    viewer_.Press(VK_LEFT, {VK_CONTROL});
    viewer_.Press(VK_LEFT, {VK_CONTROL, VK_SHIFT});
    AwaitWidth(VIEW_COLUMN_NAME, 100);
    EXPECT_EQ(24, WidthOf(IDC_ATTRIBUTES, VIEW_COLUMN_TYPE));
}

TEST_F(ColumnsTest, TheColumnComesIntoSight) {
    for (int column = 0; column < 8; ++column) {
        SetWidth(IDC_ATTRIBUTES, column, 300);
    }
    for (int i = 0; i < 10; ++i) { // past the end it stays with the last one
        viewer_.Do(IDM_VIEW_NEXT_COLUMN);
    }
    EXPECT_EQ(L"Column Visible, width 300", viewer_.Status(VIEW_STATUS_MESSAGE));
    RECT seen{};
    GetClientRect(viewer_.Part(IDC_ATTRIBUTES), &seen);
    EXPECT_EQ(seen.right, HeadingOf(VIEW_COLUMN_VISIBLE).right);
    for (int i = 0; i < 10; ++i) {
        viewer_.Do(IDM_VIEW_PREVIOUS_COLUMN);
    }
    EXPECT_EQ(0, HeadingOf(VIEW_COLUMN_NAME).left);
}

TEST_F(ColumnsTest, EachListHasAColumnOfItsOwn) {
    viewer_.Do(IDM_VIEW_NEXT_COLUMN);
    viewer_.Do(IDM_VIEW_CATALOGUE);
    SetWidth(IDC_CATALOGUE, 0, 50);
    viewer_.Do(IDM_VIEW_WIDER);
    EXPECT_EQ(L"Column Number, width 66", viewer_.Status(VIEW_STATUS_MESSAGE));
    viewer_.Do(IDM_VIEW_ATTRIBUTES);
    SetWidth(IDC_ATTRIBUTES, VIEW_COLUMN_TYPE, 50);
    viewer_.Do(IDM_VIEW_NARROWER);
    EXPECT_EQ(L"Column Type, width 34", viewer_.Status(VIEW_STATUS_MESSAGE));
}

TEST_F(ColumnsTest, OnTheSheetTheArrowsMoveIt) {
    const int before = WidthOf(IDC_ATTRIBUTES, VIEW_COLUMN_NAME);
    viewer_.Do(IDM_VIEW_SHEET);
    viewer_.ToFront();
    AwaitFocus(IDC_SHEET);
    const std::wstring words = viewer_.Status(VIEW_STATUS_MESSAGE);
    viewer_.Press(VK_RIGHT, {VK_CONTROL, VK_SHIFT});
    viewer_.Press(VK_RIGHT, {VK_CONTROL});
    viewer_.Press('1', {VK_CONTROL});
    AwaitFocus(IDC_ATTRIBUTES);
    EXPECT_EQ(before, WidthOf(IDC_ATTRIBUTES, VIEW_COLUMN_NAME));
    EXPECT_EQ(words, viewer_.Status(VIEW_STATUS_MESSAGE));
}

} // namespace

} // namespace viewtest
