// Words are searched for in the pane of the source.

#include "tests/view/Fixture.h"

#include "com/Conversion.h"
#include "com/Ref.h"

#include <oleacc.h>

#include <cstddef>
#include <string>
#include <utility>

namespace viewtest {

namespace {

/// The sample "channels" with the keyboard in its source.
class SearchingTest : public OpenedTest {
  protected:
    SearchingTest() {
        if (!viewer_.IsTicked(IDM_VIEW_SOURCE)) {
            viewer_.Do(IDM_VIEW_SOURCE);
        }
        Await("the source", [&] { return !viewer_.PartText(IDC_SOURCE).empty(); });
        source_ = viewer_.PartText(IDC_SOURCE);
        viewer_.Do(IDM_VIEW_ATTRIBUTES);
        viewer_.ToFront();
        AwaitFocus(IDC_ATTRIBUTES);
        GoToSource();
    }
    void AwaitFocus(int control) const {
        Await("the focus on " + std::to_string(control), [&] { return viewer_.Focus() == control; });
    }
    void GoToSource() const {
        for (int i = 0; i < 4 && viewer_.Focus() != IDC_SOURCE; ++i) {
            viewer_.Do(IDM_VIEW_NEXT_PART);
        }
        AwaitFocus(IDC_SOURCE);
    }
    std::pair<std::size_t, std::size_t> Selection() const {
        DWORD begin = 0;
        DWORD end = 0;
        // The system brings these two over itself.
        SendMessageW(viewer_.Part(IDC_SOURCE), EM_GETSEL, reinterpret_cast<WPARAM>(&begin),
                     reinterpret_cast<LPARAM>(&end));
        return {begin, end};
    }
    void AwaitSelection(std::size_t begin, std::size_t size) const {
        Await("the selection at " + std::to_string(begin),
              [&] { return Selection() == std::pair(begin, begin + size); });
    }
    void AwaitMessage(const std::wstring& words) const {
        Await(Narrow(words), [&] { return viewer_.Status(VIEW_STATUS_MESSAGE) == words; });
    }
    void Begin(const std::wstring& words) const {
        viewer_.Press('F', {VK_CONTROL});
        AwaitFocus(IDC_SEARCH);
        viewer_.Type(words);
        Await("the words", [&] { return viewer_.PartText(IDC_SEARCH) == words; });
    }
    /// Line and column of a place in the source, in the words of the window.
    std::wstring PlaceOf(std::size_t offset) const {
        std::size_t line = 1;
        std::size_t begin = 0;
        for (std::size_t at = 0; (at = source_.find(L"\r\n", at)) < offset; at += 2) {
            ++line;
            begin = at + 2;
        }
        return std::to_wstring(line) + L":" + std::to_wstring(offset - begin + 1);
    }

    std::wstring source_;
};

TEST_F(SearchingTest, FindsWordsInAnyLetterCaseAndGoesAround) {
    const std::wstring words = L"AO1_Gain";
    const std::size_t first = source_.find(words);
    ASSERT_NE(std::wstring::npos, first);
    const std::size_t second = source_.find(words, first + 1);
    ASSERT_NE(std::wstring::npos, second) << "its element begins and ends";
    ASSERT_EQ(std::wstring::npos, source_.find(words, second + 1));
    Begin(L"ao1_gAIN");
    viewer_.Press(VK_RETURN);
    AwaitSelection(first, words.size());
    AwaitMessage(L"Found at line and column " + PlaceOf(first) + L".");
    EXPECT_EQ(L"Source: channels.xml, line and column " + PlaceOf(first), viewer_.PartText(IDC_SOURCE_TITLE));
    AwaitFocus(IDC_SEARCH);
    viewer_.Press(VK_F3);
    AwaitSelection(second, words.size());
    viewer_.Press(VK_F3);
    AwaitSelection(first, words.size());
    AwaitMessage(L"Found at line and column " + PlaceOf(first) + L", from the beginning again.");
    viewer_.Press(VK_F3, {VK_SHIFT});
    AwaitSelection(second, words.size());
    AwaitMessage(L"Found at line and column " + PlaceOf(second) + L", from the end again.");
    viewer_.Press(VK_RETURN, {VK_SHIFT});
    AwaitSelection(first, words.size());
    viewer_.Do(IDM_EDIT_FIND_PREVIOUS);
    AwaitSelection(second, words.size());
}

TEST_F(SearchingTest, SaysThatNothingIsFound) {
    Begin(L"gain");
    viewer_.Press(VK_RETURN);
    Await("a selection", [&] { return Selection().second > 0; });
    const auto before = Selection();
    Begin(L"no such words");
    viewer_.Press(VK_RETURN);
    AwaitMessage(L"The source does not have \"no such words\".");
    EXPECT_EQ(before, Selection());
    AwaitFocus(IDC_SEARCH);
}

TEST_F(SearchingTest, EscGoesBackToTheSourceAndTheKeysGoOn) {
    EXPECT_FALSE(viewer_.IsVisible(IDC_SEARCH));
    Begin(L"<value>");
    EXPECT_TRUE(viewer_.IsVisible(IDC_SEARCH));
    viewer_.Press(VK_ESCAPE);
    AwaitFocus(IDC_SOURCE);
    viewer_.Settle();
    EXPECT_FALSE(viewer_.IsVisible(IDC_SEARCH));
    const std::size_t first = source_.find(L"<VALUE>");
    ASSERT_NE(std::wstring::npos, first);
    viewer_.Press(VK_F3);
    AwaitSelection(first, 7);
    AwaitFocus(IDC_SOURCE);
    viewer_.Do(IDM_VIEW_ATTRIBUTES);
    viewer_.Press(VK_F3);
    AwaitSelection(source_.find(L"<VALUE>", first + 7), 7);
    AwaitFocus(IDC_ATTRIBUTES);
}

TEST_F(SearchingTest, AKeyWithoutWordsAsksForThem) {
    viewer_.Press(VK_F3);
    AwaitFocus(IDC_SEARCH);
}

TEST_F(SearchingTest, ElsewhereTheKeyIsTheFilters) {
    viewer_.Do(IDM_VIEW_ATTRIBUTES);
    viewer_.Press('F', {VK_CONTROL});
    AwaitFocus(IDC_FILTER);
    EXPECT_FALSE(viewer_.IsVisible(IDC_SEARCH));
}

TEST_F(SearchingTest, TheMenuFindsInAHiddenSource) {
    viewer_.Do(IDM_VIEW_SOURCE);
    ASSERT_FALSE(viewer_.IsVisible(IDC_SOURCE));
    viewer_.Do(IDM_EDIT_FIND);
    EXPECT_TRUE(viewer_.IsVisible(IDC_SOURCE));
    AwaitFocus(IDC_SEARCH);
    viewer_.Type(L"tam");
    Await("the words", [&] { return viewer_.PartText(IDC_SEARCH) == L"tam"; });
    viewer_.Do(IDM_VIEW_SOURCE);
    EXPECT_FALSE(viewer_.IsVisible(IDC_SEARCH)) << "it goes with the source";
    viewer_.Do(IDM_EDIT_FIND_NEXT);
    EXPECT_TRUE(viewer_.IsVisible(IDC_SOURCE));
    AwaitMessage(L"Found at line and column " + PlaceOf(source_.find(L"Tam")) + L".");
}

TEST_F(SearchingTest, F6LeavesTheFieldAsItLeavesTheSource) {
    Begin(L"x");
    viewer_.Press(VK_F6);
    AwaitFocus(IDC_SHEET);
    viewer_.Press(VK_F6, {VK_SHIFT});
    AwaitFocus(IDC_SOURCE);
}

TEST_F(SearchingTest, TheFieldHasAPlaceAndAName) {
    Begin(L"x");
    const auto placeOf = [&](int part) {
        RECT place{};
        GetWindowRect(viewer_.Part(part), &place);
        return place;
    };
    const RECT field = placeOf(IDC_SEARCH);
    EXPECT_LE(placeOf(IDC_SOURCE_TITLE).right, placeOf(IDC_SEARCH_LABEL).left);
    EXPECT_LE(placeOf(IDC_SEARCH_LABEL).right, field.left);
    EXPECT_LT(field.left, field.right);
    EXPECT_LE(field.right, placeOf(IDC_SOURCE).right);
    EXPECT_LE(field.bottom, placeOf(IDC_SOURCE).top);
    EXPECT_EQ(S_OK, CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    {
        com::Ref<IAccessible> accessible;
        EXPECT_EQ(S_OK, AccessibleObjectFromWindow(viewer_.Part(IDC_SEARCH), static_cast<DWORD>(OBJID_CLIENT),
                                                   __uuidof(IAccessible), accessible.PutVoid()));
        EXPECT_EQ(viewer_.Part(IDC_SEARCH), GetWindow(viewer_.Part(IDC_SEARCH_LABEL), GW_HWNDNEXT))
            << "a field is named by the label before it";
        EXPECT_EQ(L"Find in source", viewer_.PartText(IDC_SEARCH_LABEL));
        VARIANT self{};
        self.vt = VT_I4;
        VARIANT role{};
        EXPECT_EQ(S_OK, accessible->get_accRole(self, &role));
        EXPECT_EQ(ROLE_SYSTEM_TEXT, role.lVal);
    }
    CoUninitialize();
}

// A suite of its own: there is no source yet.
class SearchingNothingTest : public ViewTest {};

TEST_F(SearchingNothingTest, WithoutAFileThereIsNothingToSearch) {
    Viewer viewer;
    viewer.Do(IDM_EDIT_FIND);
    viewer.Do(IDM_EDIT_FIND_NEXT);
    EXPECT_FALSE(viewer.IsVisible(IDC_SEARCH));
    viewer.Close();
}

} // namespace

} // namespace viewtest
