#include "view/ListPane.h"

#include "view/resource.h"

#include <algorithm>
#include <utility>

namespace view {

namespace {

constexpr UINT_PTR kCellSubclass = 2;

} // namespace

RECT ListPane::CellAreaOf(std::size_t row, std::size_t column) const {
    RECT area{};
    area.top = static_cast<LONG>(column);
    area.left = LVIR_BOUNDS;
    Send(list_, LVM_GETSUBITEMRECT, *listing_.PlaceOf(row), &area);
    area.right = std::max(area.right, area.left + scaling_(120));
    return area;
}

void ListPane::EditCell(std::size_t column, const std::wstring& text) {
    const auto row = Picked();
    if (!row || !listing_.PlaceOf(*row)) {
        return;
    }
    EndCell(false);
    SetWindowTextW(cellLabel_, Text(IDS_CELL_OF, source_.cell(*row, 0), Title(column)).c_str());
    Send(list_, LVM_ENSUREVISIBLE, *listing_.PlaceOf(*row), FALSE);
    RECT area = CellAreaOf(*row, column);
    RECT whole{};
    GetClientRect(list_, &whole);
    const LONG hidden =
        area.left < 0 ? area.left : std::min(area.left, std::max(0L, area.right - whole.right));
    if (hidden != 0) { // the list is scrolled sideways
        Send(list_, LVM_SCROLL, hidden, 0);
        area = CellAreaOf(*row, column);
    }
    cellRow_ = *row;
    cell_ = CreateWindowExW(0, WC_EDITW, text.c_str(), WS_CHILD | WS_VISIBLE | WS_BORDER | ES_AUTOHSCROLL,
                            area.left, area.top, area.right - area.left, area.bottom - area.top, list_,
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDC_CELL)),
                            GetModuleHandleW(nullptr), nullptr);
    Send(cell_, WM_SETFONT, Send(list_, WM_GETFONT), TRUE);
    SetWindowSubclass(cell_, &ListPane::OnCellMessage, kCellSubclass, reinterpret_cast<DWORD_PTR>(this));
    Send(cell_, EM_SETSEL, 0, -1);
    SetFocus(cell_);
}

void ListPane::EndCell(bool isTaken) {
    if (cell_ == nullptr) {
        return;
    }
    const HWND cell = std::exchange(cell_, nullptr); // its end takes the focus, which ends it
    const std::wstring text = TextOf(cell);
    RemoveWindowSubclass(cell, &ListPane::OnCellMessage, kCellSubclass);
    const bool hadFocus = GetFocus() == cell;
    DestroyWindow(cell);
    if (hadFocus) {
        SetFocus(list_);
    }
    if (isTaken && events_.entered) {
        events_.entered(cellRow_, text);
    }
}

LRESULT CALLBACK ListPane::OnCellMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                         DWORD_PTR data) noexcept {
    auto& pane = *reinterpret_cast<ListPane*>(data);
    const bool isEnd = message == WM_KEYDOWN && (wParam == VK_RETURN || wParam == VK_ESCAPE);
    const bool isDone = isEnd || message == WM_KILLFOCUS;
    if (isDone) { // whatever comes of it: the field is gone then
        pane.Do([&] { pane.EndCell(!isEnd || wParam == VK_RETURN); });
    }
    if (isDone || (message == WM_CHAR && (wParam == L'\r' || wParam == L'\x1B'))) {
        return 0;
    }
    return message == WM_GETDLGCODE ? DLGC_WANTALLKEYS : DefSubclassProc(window, message, wParam, lParam);
}

} // namespace view
