// A document of ten thousand points: how long it takes is printed, and never a reason to fail.

#include "tests/view/Fixture.h"

#include <commctrl.h>

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <string>

namespace viewtest {

namespace {

constexpr int kPoints = 10000;
constexpr int kAttributesOfMany = (kPoints + 2) / 3;

class ManyPointsTest : public ViewTest {
  protected:
    static double Seconds(const LARGE_INTEGER& begin) {
        LARGE_INTEGER now{};
        LARGE_INTEGER second{};
        QueryPerformanceCounter(&now);
        QueryPerformanceFrequency(&second);
        return static_cast<double>(now.QuadPart - begin.QuadPart) / static_cast<double>(second.QuadPart);
    }
    const std::wstring file_ = FileWith(L"large.xml", LargeStream(kPoints));
};

TEST_F(ManyPointsTest, OpensScrollsSortsAndFilters) {
    Viewer viewer;
    LARGE_INTEGER begin{};
    QueryPerformanceCounter(&begin);
    viewer.Drop({file_});
    AwaitAttributes(viewer, kAttributesOfMany);
    std::cout << kPoints << " points are open after " << Seconds(begin) << " s\n";
    EXPECT_EQ(kPoints, viewer.Count(IDC_ATTRIBUTES) + viewer.Count(IDC_INPUTS) + viewer.Count(IDC_OUTPUTS));
    EXPECT_EQ(L"A9999", viewer.Cell(IDC_ATTRIBUTES, kAttributesOfMany - 1, VIEW_COLUMN_NAME));

    QueryPerformanceCounter(&begin);
    constexpr int kPages = 200;
    for (int i = 0; i < kPages; ++i) {
        SendMessageW(viewer.Part(IDC_ATTRIBUTES), WM_VSCROLL, MAKEWPARAM(SB_PAGEDOWN, 0), 0);
        UpdateWindow(viewer.Part(IDC_ATTRIBUTES));
    }
    std::cout << "a page is scrolled in " << Seconds(begin) / kPages * 1000 << " ms\n";

    QueryPerformanceCounter(&begin);
    viewer.ClickHeading(IDC_ATTRIBUTES, VIEW_COLUMN_VALUE);
    Await("the least value first", [&] { return viewer.Cell(IDC_ATTRIBUTES, 1, VIEW_COLUMN_VALUE) == L"0"; });
    std::cout << "sorted after " << Seconds(begin) << " s\n";
    EXPECT_EQ(L"999", viewer.Cell(IDC_ATTRIBUTES, kAttributesOfMany - 1, VIEW_COLUMN_VALUE));

    QueryPerformanceCounter(&begin);
    viewer.Filter(L"a999");
    std::cout << "filtered after " << Seconds(begin) << " s\n";
    EXPECT_EQ(5, viewer.Count(IDC_ATTRIBUTES)) << "A999, A9990, A9993, A9996 and A9999";

    QueryPerformanceCounter(&begin);
    viewer.SetCell(IDC_ATTRIBUTES, L"A9999", L"5");
    std::cout << "a value is changed after " << Seconds(begin) << " s\n";
    EXPECT_EQ(L"5", viewer.ValueOf(IDC_ATTRIBUTES, L"A9999"));
    viewer.Do(IDM_EDIT_UNDO);
    EXPECT_EQ(L"999", viewer.ValueOf(IDC_ATTRIBUTES, L"A9999"));
    viewer.Close();
}

TEST_F(ManyPointsTest, AnswersWhileItLoads) {
    Viewer viewer;
    viewer.Drop({file_});
    double longest = 0;
    int asked = 0;
    bool isAnswered = true;
    Await("the points", [&] {
        LARGE_INTEGER begin{};
        QueryPerformanceCounter(&begin);
        DWORD_PTR answer = 0;
        isAnswered = isAnswered && SendMessageTimeoutW(viewer.Frame(), WM_NULL, 0, 0, SMTO_ABORTIFHUNG,
                                                       kLongest, &answer) != 0;
        longest = std::max(longest, Seconds(begin));
        ++asked;
        return viewer.Count(IDC_ATTRIBUTES) == kAttributesOfMany || !viewer.IsRunning();
    });
    EXPECT_TRUE(isAnswered) << "\"not responding\"";
    std::cout << "asked " << asked << " times, the longest silence was " << longest << " s\n";
}

// Findings of the former file are still in the list, and the list still paints itself.
TEST_F(ManyPointsTest, ListsOfTheFormerFileAreWholeWhileItLoads) {
    Viewer viewer({Sample(L"oddities.xml")});
    AwaitAttributes(viewer, 8);
    if (!viewer.IsVisible(IDC_FINDINGS)) {
        viewer.Do(IDM_VIEW_FINDINGS);
    }
    ASSERT_GT(viewer.Count(IDC_FINDINGS), 0);
    // It has no findings of its own, as far as names go: each could be a channel's.
    const std::string text = LargeStream(kPoints);
    std::string clean;
    for (std::size_t i = 0; i < text.size(); ++i) {
        clean += text[i];
        const bool isBeforeName = (text[i] == '<' || text[i] == '/') && i + 2 < text.size() &&
                                  std::string("AIO").find(text[i + 1]) != std::string::npos &&
                                  text[i + 2] >= '0' && text[i + 2] <= '9';
        clean += isBeforeName ? "C1_" : "";
    }
    viewer.Drop({FileWith(L"clean.xml", clean)});
    int rounds = 0;
    Await("the points", [&] {
        constexpr int kMostRounds = 40; // each takes the load its time
        if (rounds++ < kMostRounds) {
            InvalidateRect(viewer.Part(IDC_FINDINGS), nullptr, FALSE);
            PostMessageW(viewer.Part(IDC_FINDINGS), WM_KEYDOWN, VK_DOWN, 1);
            PostMessageW(viewer.Part(IDC_FINDINGS), WM_KEYDOWN, VK_RETURN, 1);
        }
        return viewer.Count(IDC_ATTRIBUTES) == kAttributesOfMany || !viewer.IsRunning();
    });
    AwaitAttributes(viewer, kAttributesOfMany);
    viewer.Settle();
    EXPECT_EQ(0, viewer.Count(IDC_FINDINGS)) << Narrow(viewer.Cell(IDC_FINDINGS, 0, 2));
    const Texts weights = viewer.Cells(IDC_FINDINGS, 0);
    EXPECT_EQ(0, std::count(weights.begin(), weights.end(), L"Box"))
        << Narrow(viewer.Cell(IDC_FINDINGS, 0, 2));
    viewer.Close();
}

TEST_F(ManyPointsTest, TheEndOfTheSessionDoesNotWaitForALoad) {
    Viewer viewer;
    LRESULT answer = FALSE;
    EXPECT_TRUE(
        LoadsDuring(viewer, [&] { answer = SendMessageW(viewer.Frame(), WM_QUERYENDSESSION, 0, 0); }));
    EXPECT_EQ(TRUE, answer) << "nothing is unsaved";
}

TEST_F(ManyPointsTest, LoadingCanBeStopped) {
    Viewer viewer;
    bool isProgressShown = false;
    EXPECT_TRUE(StopsBy(viewer, [&] {
        isProgressShown = viewer.IsVisible(IDC_PROGRESS);
        viewer.Do(IDM_VIEW_STOP);
    }));
    EXPECT_TRUE(isProgressShown);
    EXPECT_FALSE(viewer.IsVisible(IDC_STOP));
    EXPECT_EQ(0, viewer.Count(IDC_ATTRIBUTES));
    EXPECT_NE(std::wstring::npos, viewer.Status(VIEW_STATUS_MESSAGE).find(L"stopped"))
        << Narrow(viewer.Status(VIEW_STATUS_MESSAGE));
    viewer.Drop({Sample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    viewer.Close();
}

TEST_F(ManyPointsTest, ClosesWhileItLoads) {
    // A file that was loaded whole is a recent one.
    const auto isRecent = [] {
        DWORD size = 0;
        return RegGetValueW(HKEY_CURRENT_USER, L"Software\\O_Tam_id\\View", L"RecentFiles",
                            RRF_RT_REG_MULTI_SZ, nullptr, nullptr, &size) == ERROR_SUCCESS &&
               size > 2 * sizeof(wchar_t);
    };
    constexpr int kMostPoints = 640000;
    bool wasLoading = false;
    for (int points = kPoints; !wasLoading && points <= kMostPoints; points *= 4) {
        Viewer viewer;
        viewer.Drop({FileWith(L"long.xml", LargeStream(points))});
        Await("the button",
              [&] { return viewer.IsVisible(IDC_STOP) || viewer.Count(IDC_ATTRIBUTES) == (points + 2) / 3; });
        viewer.BeginClose();
        EXPECT_EQ(0U, viewer.WaitForEnd());
        wasLoading = !isRecent();
    }
    EXPECT_TRUE(wasLoading) << "each stream was loaded before the window closed";
}

} // namespace

} // namespace viewtest
