#include "view/ListPane.h"

#include "view/resource.h"

#include "bench/Text.h"
#include "com/Boundary.h"
#include "view/Session.h"

#include <algorithm>
#include <utility>

namespace view {

namespace {

constexpr UINT_PTR kListSubclass = 1;
/// Of a menu from the left edge of its row, in pixels at 96 dots to the inch.
constexpr int kMenuInset = 8;

bool IsColumnChange(UINT message, LPARAM lParam) noexcept {
    if (message != WM_NOTIFY) {
        return false;
    }
    const UINT code = reinterpret_cast<const NMHDR*>(lParam)->code;
    return code == HDN_ITEMCHANGINGW || code == HDN_ITEMCHANGINGA;
}

} // namespace

std::wstring Shortened(std::wstring text, std::size_t room) {
    if (text.size() <= room) {
        return text;
    }
    std::size_t kept = room > 0 ? room - 1 : 0;
    if (kept > 0 && IS_HIGH_SURROGATE(text[kept - 1])) {
        --kept; // half a character is none
    }
    text.resize(kept);
    return room > 0 ? text + L'\x2026' : text;
}

ListPane::ListPane(HWND parent, int id, const wchar_t* key, UINT name, std::vector<Column> columns,
                   Listing& listing, Source source, Events events)
    : list_(CreateWindowExW(
          0, WC_LISTVIEWW, Text(name).c_str(),
          WS_CHILD | WS_TABSTOP | WS_CLIPSIBLINGS | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS, 0, 0, 0,
          0, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr))
    , key_(key)
    , columns_(std::move(columns))
    , listing_(listing)
    , source_(std::move(source))
    , events_(std::move(events)) {
    if (list_ == nullptr) {
        throw com::CallError(bench::CodeOf(GetLastError()));
    }
    const DWORD styles = LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP;
    Send(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, styles, styles);
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        std::wstring title = Text(columns_[i].title);
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT | LVCF_SUBITEM;
        column.fmt = columns_[i].isNumber ? LVCFMT_RIGHT : LVCFMT_LEFT;
        column.cx = columns_[i].width;
        column.pszText = title.data();
        column.iSubItem = static_cast<int>(i);
        Send(list_, LVM_INSERTCOLUMNW, i, &column);
    }
    // A screen reader names a field by the visible label before it.
    cellLabel_ = CreateWindowExW(0, WC_STATICW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, list_,
                                 reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDC_CELL_LABEL)),
                                 GetModuleHandleW(nullptr), nullptr);
    SetWindowSubclass(list_, &ListPane::OnListMessage, kListSubclass, reinterpret_cast<DWORD_PTR>(this));
}

ListPane::~ListPane() {
    if (IsWindow(list_) != FALSE) {
        RemoveWindowSubclass(list_, &ListPane::OnListMessage, kListSubclass);
        DestroyWindow(list_);
    }
}

void ListPane::SetFonts(const Fonts& fonts, Scaling scaling) {
    EndCell(true); // its font and its place are the former ones
    for (std::size_t i = 0; bold_ != nullptr && i < columns_.size(); ++i) {
        // As wide as a person has made it, at the scale so far.
        columns_[i].width = scaling_.Back(static_cast<int>(Send(list_, LVM_GETCOLUMNWIDTH, i)));
    }
    scaling_ = scaling;
    bold_ = fonts.bold.Get();
    Send(list_, WM_SETFONT, fonts.normal.Get(), TRUE);
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        Send(list_, LVM_SETCOLUMNWIDTH, i, scaling(columns_[i].width));
    }
}

void ListPane::SetColours() {
    Send(list_, LVM_SETBKCOLOR, 0, GetSysColor(COLOR_WINDOW));
    Send(list_, LVM_SETTEXTBKCOLOR, 0, GetSysColor(COLOR_WINDOW));
    Send(list_, LVM_SETTEXTCOLOR, 0, GetSysColor(COLOR_WINDOWTEXT));
}

void ListPane::Update() {
    EndCell(false);
    isUpdating_ = true;
    const std::optional<std::size_t> row = picked_;
    LVITEMW none{};
    none.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    Send(list_, LVM_SETITEMSTATE, -1, &none);
    Send(list_, LVM_SETITEMCOUNT, listing_.Shown(), LVSICF_NOSCROLL);
    picked_ = row;
    if (picked_ && *picked_ < listing_.Rows()) {
        if (listing_.PlaceOf(*picked_)) {
            Pick(*picked_);
        }
    } else {
        picked_.reset();
    }
    ShowOrder();
    isUpdating_ = false;
    InvalidateRect(list_, nullptr, FALSE);
}

void ListPane::Forget() {
    picked_.reset();
}

void ListPane::Redraw(std::size_t row) {
    if (const auto place = listing_.PlaceOf(row)) {
        Send(list_, LVM_REDRAWITEMS, *place, *place);
    }
}

void ListPane::RedrawAll() {
    InvalidateRect(list_, nullptr, FALSE);
}

std::optional<std::size_t> ListPane::Picked() const {
    const LRESULT place = Send(list_, LVM_GETNEXTITEM, -1, LVNI_FOCUSED);
    if (place < 0 || static_cast<std::size_t>(place) >= listing_.Shown()) {
        return std::nullopt;
    }
    return listing_.RowAt(static_cast<std::size_t>(place));
}

bool ListPane::Pick(std::size_t row) {
    const auto place = listing_.PlaceOf(row);
    if (!place) {
        return false;
    }
    const bool wasUpdating = std::exchange(isUpdating_, true);
    LVITEMW state{};
    state.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    Send(list_, LVM_SETITEMSTATE, -1, &state);
    state.state = LVIS_SELECTED | LVIS_FOCUSED;
    Send(list_, LVM_SETITEMSTATE, *place, &state);
    Send(list_, LVM_ENSUREVISIBLE, *place, FALSE);
    isUpdating_ = wasUpdating;
    picked_ = row;
    return true;
}

void ListPane::SelectAll() {
    LVITEMW state{};
    state.stateMask = LVIS_SELECTED;
    state.state = LVIS_SELECTED;
    Send(list_, LVM_SETITEMSTATE, -1, &state);
}

std::wstring ListPane::SelectedText() const {
    std::wstring text;
    for (LRESULT place = -1; (place = Send(list_, LVM_GETNEXTITEM, place, LVNI_SELECTED)) >= 0;) {
        const std::size_t row = listing_.RowAt(static_cast<std::size_t>(place));
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            text += (i > 0 ? L"\t" : L"") + source_.cell(row, i);
        }
        text += L"\r\n";
    }
    return text;
}

bool ListPane::Do(const std::function<void()>& act) const noexcept {
    const std::optional<Problem> problem = Try(act);
    if (problem && events_.failed) {
        Try([&] { events_.failed(problem->words); });
    }
    return !problem;
}

LRESULT CALLBACK ListPane::OnListMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                         DWORD_PTR data) noexcept {
    auto& pane = *reinterpret_cast<ListPane*>(data);
    bool isDone = false;
    const bool isWell = pane.Do([&] {
        if (message == WM_KEYDOWN && wParam == VK_RETURN) {
            const auto row = pane.Picked();
            isDone = true;
            if (row && pane.events_.opened) {
                pane.events_.opened(*row);
            }
        } else if (message == WM_CHAR && wParam > L' ' && pane.events_.typed) {
            isDone = true;
            pane.events_.typed(static_cast<wchar_t>(wParam));
        } else if (message == WM_VSCROLL || message == WM_HSCROLL || message == WM_MOUSEWHEEL ||
                   message == WM_SIZE || IsColumnChange(message, lParam)) {
            pane.EndCell(true); // the cell goes from under its field
        }
    });
    return isDone || !isWell ? 0 : DefSubclassProc(window, message, wParam, lParam);
}

LRESULT ListPane::OnNotify(NMHDR& head) {
    switch (head.code) {
    case LVN_GETDISPINFOW: {
        LVITEMW& item = reinterpret_cast<NMLVDISPINFOW&>(head).item;
        if ((item.mask & LVIF_TEXT) != 0 && item.iItem >= 0 &&
            static_cast<std::size_t>(item.iItem) < listing_.Shown() && item.cchTextMax > 0) {
            const std::wstring text =
                Shortened(source_.cell(listing_.RowAt(static_cast<std::size_t>(item.iItem)),
                                       static_cast<std::size_t>(item.iSubItem)),
                          static_cast<std::size_t>(item.cchTextMax) - 1);
            lstrcpynW(item.pszText, text.c_str(), item.cchTextMax);
        }
        return 0;
    }
    case LVN_ITEMCHANGED: {
        const auto& change = reinterpret_cast<const NMLISTVIEW&>(head);
        const bool isPick = (change.uNewState & LVIS_FOCUSED) != 0 && (change.uOldState & LVIS_FOCUSED) == 0;
        if (isPick && !isUpdating_ && change.iItem >= 0 &&
            static_cast<std::size_t>(change.iItem) < listing_.Shown()) {
            picked_ = listing_.RowAt(static_cast<std::size_t>(change.iItem));
            if (events_.picked) {
                events_.picked(*picked_);
            }
        }
        return 0;
    }
    case LVN_COLUMNCLICK:
        Sort(static_cast<std::size_t>(reinterpret_cast<const NMLISTVIEW&>(head).iSubItem));
        return 0;
    case LVN_ODFINDITEMW: {
        const auto& find = reinterpret_cast<const NMLVFINDITEMW&>(head);
        if ((find.lvfi.flags & LVFI_STRING) == 0 || find.lvfi.psz == nullptr) {
            return -1;
        }
        const auto place =
            listing_.FindBeginning(find.lvfi.psz, 0, static_cast<std::size_t>(std::max(0, find.iStart)));
        return place ? static_cast<LRESULT>(*place) : -1;
    }
    case NM_DBLCLK:
        if (const int item = reinterpret_cast<const NMITEMACTIVATE&>(head).iItem;
            item >= 0 && events_.opened) {
            events_.opened(listing_.RowAt(static_cast<std::size_t>(item)));
        }
        return 0;
    case NM_CUSTOMDRAW:
        return OnDraw(reinterpret_cast<NMLVCUSTOMDRAW&>(head));
    default:
        return 0;
    }
}

LRESULT ListPane::OnDraw(NMLVCUSTOMDRAW& draw) const {
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) {
        return CDRF_NOTIFYITEMDRAW;
    }
    const std::size_t place = draw.nmcd.dwItemSpec;
    if (draw.nmcd.dwDrawStage != CDDS_ITEMPREPAINT || place >= listing_.Shown()) {
        return CDRF_DODEFAULT;
    }
    const std::size_t row = listing_.RowAt(place);
    LRESULT answer = CDRF_DODEFAULT;
    if (source_.isBold && bold_ != nullptr && source_.isBold(row)) {
        SelectObject(draw.nmcd.hdc, bold_);
        answer = CDRF_NEWFONT;
    }
    if (source_.colour) {
        if (const auto colour = source_.colour(row)) {
            draw.clrText = *colour;
        }
    }
    return answer;
}

POINT ListPane::PlaceOfMenu() const {
    const LRESULT place = Send(list_, LVM_GETNEXTITEM, -1, LVNI_FOCUSED);
    RECT area{};
    area.left = LVIR_LABEL;
    if (place < 0 || Send(list_, LVM_GETITEMRECT, place, &area) == FALSE) {
        const auto header = reinterpret_cast<HWND>(Send(list_, LVM_GETHEADER));
        GetWindowRect(header, &area); // there are no rows: below the headings
        return {area.left + scaling_(kMenuInset), area.bottom};
    }
    POINT corner{area.left + scaling_(kMenuInset), area.bottom};
    RECT seen{};
    GetClientRect(list_, &seen);
    corner.x = std::clamp(corner.x, seen.left, seen.right);
    corner.y = std::clamp(corner.y, seen.top, seen.bottom);
    ClientToScreen(list_, &corner);
    return corner;
}

} // namespace view
