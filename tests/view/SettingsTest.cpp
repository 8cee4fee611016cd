// What the window remembers of its user.

#include "tests/view/Fixture.h"
#include "tests/view/Patches.h"

#include <commctrl.h>

#include <algorithm>
#include <string>

namespace viewtest {

namespace {

class SettingsTest : public ViewTest {
  protected:
    static RECT PlaceOf(const Viewer& viewer) {
        RECT place{};
        GetWindowRect(viewer.Frame(), &place);
        return place;
    }
    /// A place that the screen has room for, whatever its size.
    static RECT AnyPlace() {
        const RECT room = WorkArea();
        return {room.left + 40, room.top + 50, std::min(room.left + 940, room.right),
                std::min(room.top + 690, room.bottom)};
    }
    static int WidthOf(const Viewer& viewer, int column) {
        return static_cast<int>(
            SendMessageW(viewer.Part(IDC_ATTRIBUTES), LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
    }
    /// The keys below a key of the user's registry.
    static Texts KeysBelow(const wchar_t* path) {
        Texts keys;
        HKEY key = nullptr;
        if (RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_READ, &key) == ERROR_SUCCESS) {
            wchar_t name[256] = {};
            DWORD size = 256;
            for (DWORD i = 0;
                 RegEnumKeyExW(key, i, name, &size, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
                 ++i, size = 256) {
                keys.emplace_back(name);
            }
            RegCloseKey(key);
        }
        return keys;
    }
};

TEST_F(SettingsTest, TheWindowComesBackWhereItWas) {
    const RECT former = AnyPlace();
    {
        Viewer viewer;
        SetWindowPos(viewer.Frame(), nullptr, former.left, former.top, former.right - former.left,
                     former.bottom - former.top, SWP_NOZORDER | SWP_NOACTIVATE);
        viewer.Close();
    }
    Viewer viewer;
    const RECT place = PlaceOf(viewer);
    EXPECT_TRUE(EqualRect(&former, &place)) << place.left << " " << place.top;
    viewer.Close();
}

TEST_F(SettingsTest, ColumnsKeepTheirWidths) {
    {
        Viewer viewer;
        SendMessageW(viewer.Part(IDC_ATTRIBUTES), LVM_SETCOLUMNWIDTH, VIEW_COLUMN_NAME, 222);
        SendMessageW(viewer.Part(IDC_ATTRIBUTES), LVM_SETCOLUMNWIDTH, VIEW_COLUMN_UNIT, 33);
        viewer.Close();
    }
    Viewer viewer;
    EXPECT_EQ(222, WidthOf(viewer, VIEW_COLUMN_NAME));
    EXPECT_EQ(33, WidthOf(viewer, VIEW_COLUMN_UNIT));
    viewer.Close();
}

TEST_F(SettingsTest, ColumnsKeepTheirWidthsWhenSettingsOfTheSystemChange) {
    Viewer viewer;
    SendMessageW(viewer.Part(IDC_ATTRIBUTES), LVM_SETCOLUMNWIDTH, VIEW_COLUMN_NAME, 222);
    SendMessageW(viewer.Frame(), WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS, 0);
    EXPECT_EQ(222, WidthOf(viewer, VIEW_COLUMN_NAME));
    viewer.Close();
}

// Programs that are installed, and the system itself, tell all windows of much.
TEST_F(SettingsTest, OnlyASettingOfTheLookEndsTyping) {
    const Viewer viewer({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    const HWND cell = viewer.BeginCell(IDC_ATTRIBUTES, L"AI1_Setup", L"8");
    SendMessageW(viewer.Frame(), WM_SETTINGCHANGE, 0, reinterpret_cast<LPARAM>(L"Environment"));
    SendMessageW(viewer.Frame(), WM_SETTINGCHANGE, SPI_SETDESKWALLPAPER, 0);
    EXPECT_TRUE(IsWindow(cell));
    SendMessageW(viewer.Frame(), WM_SETTINGCHANGE, 0, reinterpret_cast<LPARAM>(L"ImmersiveColorSet"));
    EXPECT_FALSE(IsWindow(cell)) << "it had the former font";
    EXPECT_EQ(L"8", viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Setup"));
}

TEST_F(SettingsTest, NoWindowIsLargerThanTheScreenHasRoom) {
    // One way at a time: Wine 10 never ends telling a window that fills the screen of its state.
    for (const RECT& saved : {RECT{-200, -300, 5000, 300}, RECT{-300, -200, 500, 4000}}) {
        WINDOWPLACEMENT place{};
        place.length = sizeof place;
        place.showCmd = SW_SHOWNORMAL;
        place.rcNormalPosition = saved;
        HKEY key = nullptr;
        RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\O_Tam_id\\View", 0, nullptr, 0, KEY_WRITE, nullptr,
                        &key, nullptr);
        RegSetValueExW(key, L"Placement", 0, REG_BINARY, reinterpret_cast<const BYTE*>(&place), sizeof place);
        RegCloseKey(key);
        Viewer viewer;
        const RECT room = WorkArea();
        const RECT area = PlaceOf(viewer);
        EXPECT_GE(area.left, room.left);
        EXPECT_GE(area.top, room.top);
        EXPECT_LE(area.right, room.right);
        EXPECT_LE(area.bottom, room.bottom);
        viewer.Close();
    }
}

TEST_F(SettingsTest, AnotherScaleGivesTheWindowTheSystemsPlace) {
    Viewer viewer({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    SendMessageW(viewer.Part(IDC_ATTRIBUTES), LVM_SETCOLUMNWIDTH, VIEW_COLUMN_NAME, 222);
    viewer.Pick(IDC_ATTRIBUTES, 0);
    ASSERT_NE(nullptr, viewer.OpenCell(IDC_ATTRIBUTES));
    const RemoteMemory memory(viewer.Process(), sizeof(RECT));
    const RECT place = AnyPlace();
    memory.Write(&place, sizeof place);
    SendMessageW(viewer.Frame(), WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(memory.At()));
    const RECT area = PlaceOf(viewer);
    EXPECT_TRUE(EqualRect(&place, &area)) << area.left << " " << area.top;
    EXPECT_EQ(222, WidthOf(viewer, VIEW_COLUMN_NAME)) << "the monitor still has its 96 dots";
    EXPECT_EQ(nullptr, GetDlgItem(viewer.Part(IDC_ATTRIBUTES), IDC_CELL)) << "it had the former font";
    EXPECT_EQ(kAttributes, viewer.Count(IDC_ATTRIBUTES));
    viewer.Close();
}

TEST_F(SettingsTest, OnAMonitorOfAnotherScaleAllHasItsSize) {
    Viewer viewer({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    SendMessageW(viewer.Part(IDC_ATTRIBUTES), LVM_SETCOLUMNWIDTH, VIEW_COLUMN_NAME, 222);
    const auto heightOf = [&](int part) {
        RECT place{};
        GetWindowRect(viewer.Part(part), &place);
        return place.bottom - place.top;
    };
    const auto heightOfRow = [&] { // of a list, in each of which it goes by the letters
        return HIWORD(SendMessageW(viewer.Part(IDC_ATTRIBUTES), LVM_APPROXIMATEVIEWRECT, 2, -1)) -
               HIWORD(SendMessageW(viewer.Part(IDC_ATTRIBUTES), LVM_APPROXIMATEVIEWRECT, 1, -1));
    };
    const auto heightOfTool = [&] {
        return HIWORD(SendMessageW(viewer.Part(IDC_TOOLBAR), TB_GETBUTTONSIZE, 0, 0));
    };
    const long line = heightOf(IDC_FILTER_LABEL);
    const int row = heightOfRow();
    const int tool = heightOfTool();
    ChooseScale(viewer, 144);
    EXPECT_EQ(333, WidthOf(viewer, VIEW_COLUMN_NAME));
    EXPECT_GE(heightOf(IDC_FILTER_LABEL), line * 3 / 2);
    EXPECT_GE(heightOfRow(), row * 5 / 4);
    EXPECT_GE(heightOfTool(), tool * 5 / 4);
    ChooseScale(viewer, 192);
    EXPECT_EQ(444, WidthOf(viewer, VIEW_COLUMN_NAME));
    EXPECT_GE(heightOf(IDC_FILTER_LABEL), line * 2);
    ChooseScale(viewer, 96);
    EXPECT_EQ(222, WidthOf(viewer, VIEW_COLUMN_NAME));
    EXPECT_EQ(line, heightOf(IDC_FILTER_LABEL));
    EXPECT_EQ(row, heightOfRow());
    EXPECT_EQ(tool, heightOfTool());
    viewer.Close();
}

TEST_F(SettingsTest, AWindowThatWasAsLargeAsTheScreenIsSoAgain) {
    {
        Viewer viewer;
        ShowWindow(viewer.Frame(), SW_SHOWMAXIMIZED);
        Await("the larger window", [&] { return IsZoomed(viewer.Frame()) != FALSE; });
        ShowWindow(viewer.Frame(), SW_SHOWMINIMIZED);
        Await("the small window", [&] { return IsIconic(viewer.Frame()) != FALSE; });
        viewer.Close();
    }
    Viewer viewer;
    EXPECT_TRUE(IsZoomed(viewer.Frame()));
    viewer.Close();
}

TEST_F(SettingsTest, UnitsAndPanesAreRemembered) {
    bool hadFindings = false;
    {
        Viewer viewer({Sample(L"channels.xml")});
        AwaitAttributes(viewer, kAttributes);
        viewer.Do(IDM_VIEW_US);
        hadFindings = viewer.IsVisible(IDC_FINDINGS);
        viewer.Do(IDM_VIEW_FINDINGS);
        viewer.Close();
    }
    Viewer viewer({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    EXPECT_TRUE(viewer.IsTicked(IDM_VIEW_US));
    EXPECT_NE(std::wstring::npos, viewer.Cell(IDC_ATTRIBUTES, 2, VIEW_COLUMN_DISPLAYED).find(L"\u00B0F"));
    EXPECT_EQ(!hadFindings, viewer.IsVisible(IDC_FINDINGS));
    viewer.Close();
}

TEST_F(SettingsTest, NothingElseStandsInTheRegistry) {
    const Texts software = KeysBelow(L"Software");
    const Texts classes = KeysBelow(L"Software\\Classes");
    const Texts own = KeysBelow(L"Software\\O_Tam_id");
    {
        Viewer viewer({Sample(L"channels.xml")});
        AwaitAttributes(viewer, kAttributes);
        viewer.Close();
    }
    EXPECT_EQ(Texts{L"View"}, KeysBelow(L"Software\\O_Tam_id"));
    EXPECT_EQ(Texts(), KeysBelow(L"Software\\O_Tam_id\\View"));
    EXPECT_EQ(classes, KeysBelow(L"Software\\Classes"));
    EXPECT_LE(KeysBelow(L"Software").size(), software.size() + (own.empty() ? 1U : 0U));
}

TEST_F(SettingsTest, WhatIsDamagedIsPassedOver) {
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\O_Tam_id\\View", 0, nullptr, 0, KEY_WRITE, nullptr, &key,
                    nullptr);
    const BYTE bytes[44] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F, 0xFF, 0xFF, 0xFF};
    for (const wchar_t* name : {L"Placement", L"Splits", L"Columns.Attributes", L"RecentFiles"}) {
        RegSetValueExW(key, name, 0, REG_BINARY, bytes, sizeof bytes);
    }
    RegSetValueExW(key, L"RecentFiles", 0, REG_MULTI_SZ, bytes, 7);
    RegCloseKey(key);
    Viewer viewer({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    const RECT place = PlaceOf(viewer);
    EXPECT_GT(place.right, 100);
    EXPECT_LT(place.left, GetSystemMetrics(SM_CXSCREEN));
    EXPECT_GT(place.right - place.left, 300);
    viewer.Close();
}

} // namespace

} // namespace viewtest
