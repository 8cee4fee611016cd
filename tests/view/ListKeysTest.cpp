// What keys and the context menu do in the lists: order, undo, copies.

#include "tests/view/Fixture.h"

#include <commctrl.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>

namespace viewtest {

namespace {

constexpr wchar_t kBefore[] = L"what was there before";

/// Empty when it holds no text, or another program has it now.
std::wstring ClipboardText() {
    std::wstring text;
    if (OpenClipboard(nullptr) != FALSE) {
        if (const HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
            text = static_cast<const wchar_t*>(GlobalLock(data));
            GlobalUnlock(data);
        }
        CloseClipboard();
    }
    return text;
}

void PutOnClipboard(const std::wstring& text) {
    Await("the clipboard", [] { return OpenClipboard(nullptr) != FALSE; });
    const std::size_t size = (text.size() + 1) * sizeof(wchar_t);
    HGLOBAL const memory = GlobalAlloc(GMEM_MOVEABLE, size);
    std::copy_n(text.c_str(), text.size() + 1, static_cast<wchar_t*>(GlobalLock(memory)));
    GlobalUnlock(memory);
    EmptyClipboard();
    SetClipboardData(CF_UNICODETEXT, memory);
    CloseClipboard();
}

class ListKeysTest : public OpenedTest {
  protected:
    ListKeysTest() {
        viewer_.ToFront();
        AwaitFocus(IDC_ATTRIBUTES);
    }
    void AwaitFocus(int control) const {
        Await("the focus on " + std::to_string(control), [&] { return viewer_.Focus() == control; });
    }
    /// Waits for a copy after the one that was there: nobody opens the clipboard before it.
    void AwaitClipboard(const std::function<bool(const std::wstring&)>& holds) const {
        Await("a copy", [&] { return GetClipboardSequenceNumber() != sequence_; });
        Await("what was to be copied", [&] { return holds(ClipboardText()); });
    }
    void SetClipboard() {
        PutOnClipboard(kBefore);
        sequence_ = GetClipboardSequenceNumber();
    }
    void AwaitNames(const Texts& names) const {
        Await("another order", [&] { return viewer_.Cells(IDC_ATTRIBUTES, VIEW_COLUMN_NAME) == names; });
    }
    std::wstring Message() const { return viewer_.Status(VIEW_STATUS_MESSAGE); }
    /// A stream that the component does not load: there are findings and no points.
    void OpenADamagedFile() {
        viewer_.Drop({Sample(L"damaged.xml")});
        Await("the findings of the damaged file", [&] {
            return viewer_.Count(IDC_ATTRIBUTES) == 0 && viewer_.Count(IDC_FINDINGS) > 0 &&
                   viewer_.IsEnabled(IDM_FILE_OPEN);
        });
    }
    void FocusFindings() const {
        if (!viewer_.IsTicked(IDM_VIEW_FINDINGS)) {
            viewer_.Do(IDM_VIEW_FINDINGS);
        }
        for (int i = 0; i < 4 && viewer_.Focus() != IDC_FINDINGS; ++i) {
            viewer_.Do(IDM_VIEW_NEXT_PART);
        }
        AwaitFocus(IDC_FINDINGS);
    }
    /// Asks for a context menu with the key, and waits until it is open.
    HWND OpenMenuByKey() const {
        viewer_.Press(VK_F10, {VK_SHIFT});
        Await("the menu", [&] { return viewer_.ShownMenu() != nullptr; });
        return viewer_.ShownMenu();
    }
    void AwaitNoMenu() const {
        Await("the end of the menu", [&] { return viewer_.ShownMenu() == nullptr; });
    }

  private:
    DWORD sequence_ = 0;
};

TEST_F(ListKeysTest, AKeySortsTheListByAColumn) {
    const Texts inOrder = viewer_.Cells(IDC_ATTRIBUTES, VIEW_COLUMN_NAME);
    Texts sorted = inOrder;
    std::sort(sorted.begin(), sorted.end());
    viewer_.Press('1', {VK_CONTROL, VK_SHIFT});
    AwaitNames(sorted);
    Await("words of it", [&] { return Message() == L"Sorted by Name, upward."; });
    std::reverse(sorted.begin(), sorted.end());
    viewer_.Press('1', {VK_CONTROL, VK_SHIFT});
    AwaitNames(sorted);
    Await("words of it", [&] { return Message() == L"Sorted by Name, downward."; });
    viewer_.Press('1', {VK_CONTROL, VK_SHIFT});
    AwaitNames(inOrder);
    Await("words of it", [&] { return Message() == L"In the order of the file."; });
}

TEST_F(ListKeysTest, TheMenuSortsTheListInFocus) {
    viewer_.Do(IDM_VIEW_CATALOGUE);
    viewer_.Do(IDM_VIEW_SORT + 1);
    Await("words of it", [&] { return Message() == L"Sorted by Name, upward."; });
    Texts names = viewer_.Cells(IDC_CATALOGUE, 1);
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end(),
                               [](const std::wstring& left, const std::wstring& right) {
                                   return CompareStringW(LOCALE_INVARIANT, NORM_IGNORECASE, left.c_str(), 8,
                                                         right.c_str(), 8) == CSTR_LESS_THAN;
                               }))
        << Narrow(names.front()) << " " << Narrow(names.back());
    FocusFindings();
    viewer_.Do(IDM_VIEW_SORT + 3);
    Await("words of it", [&] { return Message() == L"Sorted by Rule, upward."; });
    viewer_.Do(IDM_VIEW_SORT + 7);
    EXPECT_EQ(L"Sorted by Rule, upward.", Message()) << "the findings have four columns";
}

TEST_F(ListKeysTest, TheMenuSortsByEachColumn) {
    viewer_.Do(IDM_VIEW_ATTRIBUTES);
    int column = 0;
    for (const wchar_t* name :
         {L"Name", L"Type", L"Value", L"Displayed as", L"Unit", L"Default", L"Address", L"Visible"}) {
        viewer_.Do(IDM_VIEW_SORT + column++);
        EXPECT_EQ(std::wstring(L"Sorted by ") + name + L", upward.", Message());
    }
}

TEST_F(ListKeysTest, WhoTypesIntoTheFilterUndoesLetters) {
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
    viewer_.Press('F', {VK_CONTROL});
    AwaitFocus(IDC_FILTER);
    viewer_.Type(L"channel");
    Await("the filter", [&] { return viewer_.PartText(IDC_FILTER) == L"channel"; });
    viewer_.Press('Z', {VK_CONTROL});
    Await("the letters' end", [&] { return viewer_.PartText(IDC_FILTER) != L"channel"; });
    viewer_.Settle();
    EXPECT_EQ(L"6", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"));
    EXPECT_TRUE(viewer_.IsEnabled(IDM_EDIT_UNDO));
    viewer_.Do(IDM_VIEW_ATTRIBUTES);
    viewer_.Press('Z', {VK_CONTROL});
    Await("the value before", [&] { return viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel") == L"1"; });
}

TEST_F(ListKeysTest, TheSourceUndoesChangesOfValues) {
    if (!viewer_.IsTicked(IDM_VIEW_SOURCE)) {
        viewer_.Do(IDM_VIEW_SOURCE);
    }
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
    for (int i = 0; i < 4 && viewer_.Focus() != IDC_SOURCE; ++i) {
        viewer_.Do(IDM_VIEW_NEXT_PART);
    }
    AwaitFocus(IDC_SOURCE);
    viewer_.Press('Z', {VK_CONTROL});
    Await("the value before", [&] { return viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel") == L"1"; });
}

TEST_F(ListKeysTest, CopiesTheFindingsOfAFileThatDoesNotLoad) {
    OpenADamagedFile();
    SetClipboard();
    FocusFindings();
    const int count = viewer_.Count(IDC_FINDINGS);
    viewer_.Press(VK_HOME);
    viewer_.Press('A', {VK_CONTROL});
    viewer_.Press('C', {VK_CONTROL});
    AwaitClipboard([&](const std::wstring& text) {
        return std::count(text.begin(), text.end(), L'\n') == count &&
               text.starts_with(viewer_.Cell(IDC_FINDINGS, 0, 0) + L"\t");
    });
}

TEST_F(ListKeysTest, TheContextMenuComesUpAtTheRow) {
    viewer_.Pick(IDC_ATTRIBUTES, L"AO1_Gain");
    const int place = viewer_.Picked(IDC_ATTRIBUTES);
    const RemoteMemory memory(viewer_.Process(), sizeof(RECT));
    RECT row{};
    row.left = LVIR_BOUNDS;
    memory.Write(&row, sizeof row);
    SendMessageW(viewer_.Part(IDC_ATTRIBUTES), LVM_GETITEMRECT, static_cast<WPARAM>(place),
                 reinterpret_cast<LPARAM>(memory.At()));
    memory.Read(&row, sizeof row);
    POINT below{row.left, row.bottom};
    ClientToScreen(viewer_.Part(IDC_ATTRIBUTES), &below);
    SetClipboard();
    const HWND menu = OpenMenuByKey();
    RECT area{};
    GetWindowRect(menu, &area);
    EXPECT_NEAR(below.y, area.top, 4);
    EXPECT_GE(area.left, below.x - 4);
    viewer_.Press('C');
    AwaitNoMenu();
    AwaitClipboard([](const std::wstring& text) { return text.starts_with(L"AO1_Gain\t"); });
}

TEST_F(ListKeysTest, TheContextMenuTypesAValue) {
    viewer_.Pick(IDC_ATTRIBUTES, L"AI1_Channel");
    OpenMenuByKey();
    viewer_.Press('T');
    AwaitNoMenu();
    AwaitFocus(IDC_CELL);
    viewer_.Press(VK_ESCAPE);
    AwaitFocus(IDC_ATTRIBUTES);
}

TEST_F(ListKeysTest, TheContextMenuOfTheFindingsIsAboutFindings) {
    viewer_.Drop({Sample(L"oddities.xml")});
    AwaitAttributes(viewer_, 8);
    SetClipboard();
    FocusFindings();
    viewer_.Press(VK_HOME);
    Await("the first finding", [&] { return viewer_.Picked(IDC_FINDINGS) == 0; });
    OpenMenuByKey();
    viewer_.Press('T'); // "Type value" is no entry here
    viewer_.Press('C');
    AwaitNoMenu();
    AwaitClipboard(
        [&](const std::wstring& text) { return text.starts_with(viewer_.Cell(IDC_FINDINGS, 0, 0) + L"\t"); });
    AwaitFocus(IDC_FINDINGS);
}

TEST_F(ListKeysTest, OnlyListsHaveTheContextMenu) {
    for (const int part : {IDC_TOOLBAR, IDC_STATUS, IDC_SHEET}) {
        RECT area{};
        GetWindowRect(viewer_.Part(part), &area);
        SendMessageW(viewer_.Frame(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(viewer_.Part(part)),
                     MAKELPARAM(area.left + 9, area.top + 9));
        EXPECT_EQ(nullptr, viewer_.ShownMenu()) << part;
    }
}

} // namespace

} // namespace viewtest
