// What is seen: bold rows, the colours and the title that the user has chosen.

#include "tests/view/Fixture.h"
#include "tests/view/Patches.h"

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

namespace viewtest {

namespace {

using Pixels = std::vector<COLORREF>;

/// A part of the screen, row by row.
Pixels PixelsOf(const RECT& area) {
    const int width = area.right - area.left;
    const int height = area.bottom - area.top;
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    Pixels pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, screen, area.left, area.top, SRCCOPY);
    SelectObject(memory, before);
    GetDIBits(memory, bitmap, 0, static_cast<UINT>(height), pixels.data(), &info, DIB_RGB_COLORS);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    for (COLORREF& pixel : pixels) { // blue comes first there
        pixel = RGB(pixel >> 16U & 0xFFU, pixel >> 8U & 0xFFU, pixel & 0xFFU);
    }
    return pixels;
}

RECT PlaceOf(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    return place;
}

class LookTest : public ViewTest {
  protected:
    /// The viewer in front of all others, with the whole of its window on the screen.
    static void Show(const Viewer& viewer) {
        viewer.ToFront();
        const RECT room = WorkArea();
        SetWindowPos(viewer.Frame(), HWND_TOP, room.left, room.top, std::min(1000L, room.right - room.left),
                     std::min(700L, room.bottom - room.top), SWP_NOACTIVATE);
    }
    /// On the screen.
    static RECT CellOf(const Viewer& viewer, int list, int place, int column) {
        const RemoteMemory memory(viewer.Process(), sizeof(RECT));
        RECT area{LVIR_LABEL, column, 0, 0};
        memory.Write(&area, sizeof area);
        SendMessageW(viewer.Part(list), LVM_GETSUBITEMRECT, static_cast<WPARAM>(place),
                     reinterpret_cast<LPARAM>(memory.At()));
        memory.Read(&area, sizeof area);
        MapWindowPoints(viewer.Part(list), nullptr, reinterpret_cast<POINT*>(&area), 2);
        return area;
    }
    /// What is seen of the head of the module's block, which has no pins.
    struct Head {
        long top = 0;
        long bottom = 0;
        std::set<COLORREF> acrossLeftEdge;
        std::set<COLORREF> acrossUpperEdge;
    };
    static Head HeadOf(const Viewer& viewer) {
        const RECT place = PlaceOf(viewer.Part(IDC_SHEET));
        const Pixels pixels = PixelsOf(place);
        const long width = place.right - place.left;
        const long height = place.bottom - place.top;
        const auto at = [&](long x, long y) { return pixels[static_cast<std::size_t>(y * width + x)]; };
        constexpr long kWithin = 12; // below the rounding of the corner
        Head head;
        const COLORREF window = at(2, 2);
        while (head.top < height && at(width / 2, head.top) == window) {
            ++head.top;
        }
        const long row = head.top + kWithin;
        long left = 2;
        while (row < height && left < width && at(left, row) == window) {
            ++left;
        }
        if (head.top < 3 || left < 3 || row >= height || left + kWithin >= width) {
            return {};
        }
        head.bottom = row;
        while (head.bottom < height && at(left + 4, head.bottom) == at(left + 4, row)) {
            ++head.bottom;
        }
        for (long x = 2; x < left + 4; ++x) {
            head.acrossLeftEdge.insert(at(x, row));
        }
        for (long y = 2; y < head.top + 4; ++y) {
            head.acrossUpperEdge.insert(at(width / 2, y));
        }
        return head;
    }
    static int Brightness(COLORREF pixel) { return GetRValue(pixel) + GetGValue(pixel) + GetBValue(pixel); }
    static std::ptrdiff_t Dark(const Pixels& pixels, int limit = 384) {
        return std::count_if(pixels.begin(), pixels.end(),
                             [limit](COLORREF pixel) { return Brightness(pixel) < limit; });
    }
};

TEST_F(LookTest, AnUnsavedRowIsBoldUntilItIsSaved) {
    Viewer viewer({OwnSample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    Show(viewer);
    const auto name = [&] { return PixelsOf(CellOf(viewer, IDC_ATTRIBUTES, 0, VIEW_COLUMN_NAME)); };
    const auto other = [&] { return PixelsOf(CellOf(viewer, IDC_ATTRIBUTES, 1, VIEW_COLUMN_NAME)); };
    // The picked row has colours of its own.
    const auto leave = [&] { viewer.Pick(IDC_ATTRIBUTES, L"CTX1_Mask"); };
    leave();
    Await("plain rows", [&] {
        const Pixels pixels = name();
        return pixels.front() == GetSysColor(COLOR_WINDOW) && Dark(pixels) > 0 && Dark(other()) > 0;
    });
    viewer.Settle();
    const Pixels plain = name();
    const Pixels plainOther = other();
    viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"7");
    leave();
    Await("a bold row", [&] {
        const Pixels pixels = name();
        return pixels.front() == GetSysColor(COLOR_WINDOW) && Dark(pixels) > Dark(plain) * 5 / 4;
    });
    EXPECT_EQ(plainOther, other()) << "the others stay";
    viewer.Begin(IDM_FILE_SAVE_STREAM);
    viewer.NextBox().ChooseFile(FileNamed(L"saved.xml"));
    Await("a plain row", [&] { return name() == plain; });
    viewer.Do(IDM_EDIT_UNDO);
    leave();
    Await("a bold row again", [&] { return Dark(name()) > Dark(plain) * 5 / 4; });
    viewer.Do(IDM_EDIT_REDO);
    leave();
    Await("a plain row again", [&] { return name() == plain; });
}

TEST_F(LookTest, InHighContrastTheSheetHasTheSystemsColours) {
    constexpr COLORREF kWindow = RGB(0, 0, 64);
    constexpr COLORREF kText = RGB(255, 255, 0);
    const UserColours colours({{COLOR_WINDOW, kWindow}, {COLOR_WINDOWTEXT, kText}});
    Viewer viewer({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    Show(viewer);
    /// Mixtures of the two colours have as much red as green; what has not is within this.
    const auto strange = [&] {
        const RECT place = PlaceOf(viewer.Part(IDC_SHEET));
        const Pixels pixels = PixelsOf(place);
        const long width = place.right - place.left;
        RECT box{width, place.bottom - place.top, 0, 0};
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            if (std::abs(GetRValue(pixels[i]) - GetGValue(pixels[i])) > 2) {
                const long x = static_cast<long>(i) % width;
                const long y = static_cast<long>(i) / width;
                box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
                       std::max(box.bottom, y + 1)};
            }
        }
        return box;
    };
    const auto has = [&](COLORREF colour) {
        const Pixels pixels = PixelsOf(PlaceOf(viewer.Part(IDC_SHEET)));
        return std::find(pixels.begin(), pixels.end(), colour) != pixels.end();
    };
    Await("the usual colours", [&] { return strange().right - strange().left > 100; });
    ChooseHighContrast(viewer);
    SendMessageW(viewer.Frame(), WM_SETTINGCHANGE, SPI_SETHIGHCONTRAST, 0);
    constexpr long kIcon = 64;
    Await("the system's colours, but for the icon", [&] {
        const RECT box = strange();
        return box.right - box.left > 8 && box.right - box.left <= kIcon && box.bottom - box.top <= kIcon &&
               has(kWindow) && has(kText);
    });
    // A pin that is picked has the system's colour for it.
    EXPECT_FALSE(has(GetSysColor(COLOR_HIGHLIGHT)));
    viewer.Do(IDM_VIEW_OUTPUTS);
    viewer.Pick(IDC_OUTPUTS, 1);
    Await("the picked pin", [&] { return has(GetSysColor(COLOR_HIGHLIGHT)); });
}

TEST_F(LookTest, EdgesOfTheBlockAreSharpAtEveryScale) {
    Viewer viewer({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    Show(viewer);
    const struct {
        DWORD dpi;
        int zoom;
    } scales[] = {{96, 100}, {96, 110}, {144, 100}, {144, 110}};
    for (const auto& scale : scales) {
        ChooseScale(viewer, scale.dpi);
        viewer.Do(IDM_VIEW_ZOOM_ACTUAL);
        if (scale.zoom != 100) {
            viewer.Do(IDM_VIEW_ZOOM_IN);
        }
        constexpr int kHead = 52;
        const int height = MulDiv(kHead * scale.zoom, static_cast<int>(scale.dpi), 100 * 96);
        Head head;
        Await("a head of " + std::to_string(height) + " pixels", [&] {
            head = HeadOf(viewer);
            return std::abs(head.bottom - head.top - height) <= 1;
        });
        // The window and the block, whose line has the colour of its head: no mixture of the two.
        EXPECT_EQ(2U, head.acrossLeftEdge.size()) << scale.dpi << " " << scale.zoom;
        EXPECT_EQ(2U, head.acrossUpperEdge.size()) << scale.dpi << " " << scale.zoom;
    }
}

// A colour that the system does not have stands for the one that it had before.
TEST_F(LookTest, OtherColoursOfTheSystemAreTakenOver) {
    Viewer viewer({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    constexpr int kLists[] = {IDC_ATTRIBUTES, IDC_INPUTS, IDC_OUTPUTS, IDC_CATALOGUE, IDC_FINDINGS};
    constexpr COLORREF kFormer = RGB(1, 2, 3);
    for (const int list : kLists) {
        for (const int set : {LVM_SETBKCOLOR, LVM_SETTEXTBKCOLOR, LVM_SETTEXTCOLOR}) {
            SendMessageW(viewer.Part(list), static_cast<UINT>(set), 0, kFormer);
        }
    }
    const auto pictures = [&] { return SendMessageW(viewer.Part(IDC_TOOLBAR), TB_GETIMAGELIST, 0, 0); };
    const LRESULT before = pictures();
    SendMessageW(viewer.Frame(), WM_SYSCOLORCHANGE, 0, 0);
    for (const int list : kLists) {
        const auto colour = [&](UINT get) {
            return static_cast<COLORREF>(SendMessageW(viewer.Part(list), get, 0, 0));
        };
        EXPECT_EQ(GetSysColor(COLOR_WINDOW), colour(LVM_GETBKCOLOR)) << list;
        EXPECT_EQ(GetSysColor(COLOR_WINDOW), colour(LVM_GETTEXTBKCOLOR)) << list;
        EXPECT_EQ(GetSysColor(COLOR_WINDOWTEXT), colour(LVM_GETTEXTCOLOR)) << list;
    }
    EXPECT_NE(before, pictures()) << "the tools have the new colour of letters";
    viewer.Close();
}

TEST_F(LookTest, AToolThatCannotBeUsedIsGrey) {
    Viewer viewer({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    Show(viewer);
    const auto tool = [&](int command) {
        const HWND bar = viewer.Part(IDC_TOOLBAR);
        const RemoteMemory memory(viewer.Process(), sizeof(RECT));
        SendMessageW(bar, TB_GETRECT, static_cast<WPARAM>(command), reinterpret_cast<LPARAM>(memory.At()));
        RECT area{};
        memory.Read(&area, sizeof area);
        MapWindowPoints(bar, nullptr, reinterpret_cast<POINT*>(&area), 2);
        return PixelsOf(area);
    };
    // Darker than halfway from a tool that can be used to the system's grey, which each version
    // of Windows has another of.
    const auto dark = [&](int command) {
        int darkest = Brightness(RGB(255, 255, 255));
        for (const COLORREF pixel : tool(IDM_VIEW_ZOOM_IN)) {
            darkest = std::min(darkest, Brightness(pixel));
        }
        return Dark(tool(command), (darkest + Brightness(GetSysColor(COLOR_GRAYTEXT))) / 2);
    };
    ASSERT_FALSE(viewer.IsEnabled(IDM_EDIT_UNDO));
    Await("no dark line", [&] { return dark(IDM_EDIT_UNDO) == 0 && dark(IDM_VIEW_ZOOM_IN) > 0; });
    viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
    Await("dark lines", [&] { return dark(IDM_EDIT_UNDO) > 0; });
    EXPECT_EQ(0, dark(IDM_EDIT_REDO));
}

TEST_F(LookTest, TheTitleIsDarkWhereProgramsAre) {
    constexpr DWORD kDarkTitle = 20; // DWMWA_USE_IMMERSIVE_DARK_MODE
    using Asked = std::array<DWORD, 2>;
    const UserNumber isLight(L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize",
                             L"AppsUseLightTheme");
    Viewer viewer;
    const TitleRecord record(viewer);
    const auto change = [&viewer] { SendMessageW(viewer.Frame(), WM_SETTINGCHANGE, 0, 0); };
    isLight.Set(0);
    change();
    EXPECT_EQ((Asked{kDarkTitle, TRUE}), record.Last());
    isLight.Set(1);
    change();
    EXPECT_EQ((Asked{kDarkTitle, FALSE}), record.Last());
    isLight.Set(0);
    ChooseHighContrast(viewer);
    change();
    EXPECT_EQ((Asked{kDarkTitle, FALSE}), record.Last()) << "high contrast has its own";
    viewer.Close();
}

} // namespace

} // namespace viewtest
