// The window at the scales of screens: nothing is cut, nothing lies on another part.

#include "tests/view/Fixture.h"
#include "tests/Wine.h"

#include <commctrl.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace viewtest {

namespace {

constexpr int kParts[] = {IDC_TOOLBAR,      IDC_SHEET,          IDC_SPLIT_SHEET,  IDC_PAGES,
                          IDC_FILTER_LABEL, IDC_FILTER,         IDC_ATTRIBUTES,   IDC_SPLIT_PANES,
                          IDC_FINDINGS,     IDC_FINDINGS_TITLE, IDC_SPLIT_SOURCE, IDC_SOURCE,
                          IDC_SOURCE_TITLE, IDC_STATUS};

// Newer than the oldest system that the window is for.
using Context = HANDLE;
const auto kEachMonitorsPixels = reinterpret_cast<Context>(INT_PTR{-4});

template <class F>
F SystemFunction(const char* name) {
    return reinterpret_cast<F>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), name)));
}
Context SetThreadContext(Context context) {
    return SystemFunction<Context(WINAPI*)(Context)>("SetThreadDpiAwarenessContext")(context);
}
int ScaleOf(HWND window) {
    return static_cast<int>(SystemFunction<UINT(WINAPI*)(HWND)>("GetDpiForWindow")(window));
}
/// Whether a program has the scale that was set just before its start. Windows gives it
/// at the next sign-in, and Wine 10 when its desktop starts.
bool IsTakenAtOnce() {
    return tests::WineVersion() == 8;
}

/// The letters of the window at a scale, measured by this program.
class Letters {
  public:
    explicit Letters(int dpi) : context_(CreateCompatibleDC(nullptr)) {
        NONCLIENTMETRICSW metrics{};
        metrics.cbSize = sizeof metrics;
        SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
        LOGFONTW shape = metrics.lfMessageFont;
        shape.lfHeight = std::min(MulDiv(shape.lfHeight, dpi, USER_DEFAULT_SCREEN_DPI), -MulDiv(9, dpi, 72));
        font_ = CreateFontIndirectW(&shape);
        former_ = SelectObject(context_, font_);
    }
    ~Letters() {
        SelectObject(context_, former_);
        DeleteObject(font_);
        DeleteDC(context_);
    }
    Letters(const Letters&) = delete;
    Letters& operator=(const Letters&) = delete;
    SIZE Of(const std::wstring& text) const {
        SIZE size{};
        GetTextExtentPoint32W(context_, text.c_str(), static_cast<int>(text.size()), &size);
        return size;
    }

  private:
    HDC context_;
    HFONT font_;
    HGDIOBJ former_;
};

/// The parameter is the scale, in dots to the inch. Where the system does not take it at
/// once, the window is looked at in the scale that it has.
class ScaleTest : public ViewTest, public testing::WithParamInterface<int> {
  protected:
    ScaleTest()
        // Places in pixels, whatever scale this program has.
        : former_(SetThreadContext(kEachMonitorsPixels)), viewer_({Sample(L"channels.xml")}, [this](DWORD) {
            setting_->Set(static_cast<DWORD>(GetParam()));
        }) {
        AwaitAttributes(viewer_, kAttributes);
        setting_.reset(); // a program asks for it at its start
        for (const int part : {IDM_VIEW_FINDINGS, IDM_VIEW_SOURCE}) {
            if (!viewer_.IsTicked(part)) {
                viewer_.Do(part);
            }
        }
        viewer_.Settle();
    }
    ~ScaleTest() override { SetThreadContext(former_); }

    RECT PlaceOf(int part) const {
        RECT place{};
        GetWindowRect(viewer_.Part(part), &place);
        MapWindowPoints(nullptr, viewer_.Frame(), reinterpret_cast<POINT*>(&place), 2);
        return place;
    }
    SIZE SizeOf(int part) const {
        const RECT place = PlaceOf(part);
        return {place.right - place.left, place.bottom - place.top};
    }
    int Scale() const { return IsTakenAtOnce() ? GetParam() : ScaleOf(viewer_.Frame()); }
    int Scaled(int length) const { return MulDiv(length, Scale(), USER_DEFAULT_SCREEN_DPI); }
    /// A rectangle that a control tells of itself.
    RECT Told(int part, UINT message, WPARAM wParam) const {
        const RemoteMemory memory(viewer_.Process(), sizeof(RECT));
        SendMessageW(viewer_.Part(part), message, wParam, reinterpret_cast<LPARAM>(memory.At()));
        RECT area{};
        memory.Read(&area, sizeof area);
        return area;
    }
    void ExpectAllInSight() const {
        RECT whole{};
        GetClientRect(viewer_.Frame(), &whole);
        for (std::size_t i = 0; i < std::size(kParts); ++i) {
            const RECT place = PlaceOf(kParts[i]);
            EXPECT_LT(place.left, place.right) << kParts[i];
            EXPECT_LT(place.top, place.bottom) << kParts[i];
            EXPECT_GE(place.left, whole.left) << kParts[i];
            EXPECT_GE(place.top, whole.top) << kParts[i];
            EXPECT_LE(place.right, whole.right) << kParts[i];
            EXPECT_LE(place.bottom, whole.bottom) << kParts[i];
            for (std::size_t j = 0; j < i; ++j) {
                const RECT other = PlaceOf(kParts[j]);
                RECT both{};
                // The filter stands in the line of the pages.
                const bool isInPages =
                    kParts[j] == IDC_PAGES && (kParts[i] == IDC_FILTER || kParts[i] == IDC_FILTER_LABEL);
                EXPECT_FALSE(!isInPages && IntersectRect(&both, &place, &other))
                    << kParts[i] << " lies on " << kParts[j];
            }
        }
    }

    Context former_;
    std::optional<UserNumber> setting_{std::in_place, L"Control Panel\\Desktop", L"LogPixels"};
    Viewer viewer_;
};

TEST_P(ScaleTest, PartsHaveTheirPlaces) {
    ExpectAllInSight();
    // As small as a person can make it.
    SetWindowPos(viewer_.Frame(), nullptr, 0, 0, 1, 1, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    RECT place{};
    GetWindowRect(viewer_.Frame(), &place);
    EXPECT_EQ(Scaled(560), place.right - place.left);
    EXPECT_EQ(Scaled(400), place.bottom - place.top);
    viewer_.Settle();
    ExpectAllInSight();
}

TEST_P(ScaleTest, TextsFitIntoTheirParts) {
    const Letters letters(Scale());
    for (const int part : {IDC_FILTER_LABEL, IDC_FINDINGS_TITLE, IDC_SOURCE_TITLE, IDC_STOP}) {
        const std::wstring text = viewer_.PartText(part);
        EXPECT_GE(SizeOf(part).cx, letters.Of(text).cx) << Narrow(text);
        EXPECT_GE(SizeOf(part).cy, letters.Of(text).cy) << Narrow(text);
    }
    EXPECT_GE(SizeOf(IDC_FILTER).cy, letters.Of(L"Ag").cy + 2);
    EXPECT_GE(SizeOf(IDC_STATUS).cy, letters.Of(L"Ag").cy);
    for (int part = 1; part < 5; ++part) {
        const RECT area = Told(IDC_STATUS, SB_GETRECT, static_cast<WPARAM>(part));
        EXPECT_GE(area.right - area.left, letters.Of(viewer_.Status(part)).cx)
            << Narrow(viewer_.Status(part));
    }
    constexpr int kPages = 4;
    const RECT last = Told(IDC_PAGES, TCM_GETITEMRECT, kPages - 1);
    EXPECT_LE(last.right, SizeOf(IDC_PAGES).cx) << "the last page's name";
    EXPECT_GE(last.bottom - last.top, letters.Of(L"Ag").cy);
}

TEST_P(ScaleTest, ToolsAndRowsGrowWithIt) {
    const Letters letters(Scale());
    const auto tools = static_cast<int>(SendMessageW(viewer_.Part(IDC_TOOLBAR), TB_BUTTONCOUNT, 0, 0));
    EXPECT_GT(tools, 10);
    for (int tool = 0; tool < tools; ++tool) {
        const RECT area = Told(IDC_TOOLBAR, TB_GETITEMRECT, static_cast<WPARAM>(tool));
        EXPECT_LE(area.right, SizeOf(IDC_TOOLBAR).cx) << tool;
        EXPECT_LE(area.bottom, SizeOf(IDC_TOOLBAR).cy) << tool;
        EXPECT_GE(area.bottom - area.top, std::max<long>(Scaled(16), letters.Of(L"Ag").cy)) << tool;
    }
    const RECT row = Told(IDC_ATTRIBUTES, LVM_GETITEMRECT, 0);
    EXPECT_GE(row.bottom - row.top, letters.Of(L"Ag").cy);
    const std::vector<std::wstring> titles = {L"Name", L"Type",    L"Value",   L"Displayed as",
                                              L"Unit", L"Default", L"Address", L"Visible"};
    WPARAM column = 0;
    for (const std::wstring& title : titles) {
        EXPECT_GE(SendMessageW(viewer_.Part(IDC_ATTRIBUTES), LVM_GETCOLUMNWIDTH, column++, 0),
                  letters.Of(title).cx)
            << Narrow(title);
    }
}

/// Where the system does not take a scale at once, one look at the scale that it has is all.
std::vector<int> Scales() {
    return IsTakenAtOnce() ? std::vector<int>{96, 144, 192} : std::vector<int>{96};
}

INSTANTIATE_TEST_SUITE_P(Scales, ScaleTest, testing::ValuesIn(Scales()),
                         [](const auto& info) { return std::to_string(info.param); });

} // namespace

} // namespace viewtest
