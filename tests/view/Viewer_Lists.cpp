#include "tests/view/Viewer.h"

#include "tests/bench/BenchRun.h"
#include "view/resource.h"

#include <commctrl.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>

namespace viewtest {

using benchtest::Narrow;

namespace {

/// Reads the texts of a list of another process, all of them through the same memory there.
class ListReader {
  public:
    ListReader(HANDLE process, HWND list)
        : list_(list), memory_(process, sizeof(LVITEMW) + kRoom * sizeof(wchar_t)) {}

    std::wstring Text(int place, int column) const {
        LVITEMW item{};
        item.iSubItem = column;
        item.pszText = reinterpret_cast<wchar_t*>(memory_.At(sizeof item));
        item.cchTextMax = kRoom;
        memory_.Write(&item, sizeof item);
        const LRESULT length = SendMessageW(list_, LVM_GETITEMTEXTW, static_cast<WPARAM>(place),
                                            reinterpret_cast<LPARAM>(memory_.At()));
        std::wstring text(static_cast<std::size_t>(std::clamp<LRESULT>(length, 0, kRoom - 1)), L'\0');
        memory_.Read(text.data(), text.size() * sizeof(wchar_t), sizeof item);
        return text;
    }

  private:
    static constexpr int kRoom = 512;

    HWND list_;
    RemoteMemory memory_;
};

} // namespace

int Viewer::Count(int list) const noexcept {
    return static_cast<int>(SendMessageW(Part(list), LVM_GETITEMCOUNT, 0, 0));
}

std::wstring Viewer::Cell(int list, int place, int column) const {
    return ListReader(Process(), Part(list)).Text(place, column);
}

Texts Viewer::Cells(int list, int column) const {
    const ListReader reader(Process(), Part(list));
    Texts cells;
    const int count = Count(list);
    for (int place = 0; place < count; ++place) {
        cells.push_back(reader.Text(place, column));
    }
    return cells;
}

int Viewer::PlaceOf(int list, const std::wstring& text, int column) const {
    const ListReader reader(Process(), Part(list));
    const int count = Count(list);
    for (int place = 0; place < count; ++place) {
        if (reader.Text(place, column) == text) {
            return place;
        }
    }
    ADD_FAILURE() << "no row " << Narrow(text) << " in list " << list;
    return -1;
}

int Viewer::Picked(int list) const noexcept {
    return static_cast<int>(SendMessageW(Part(list), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED));
}

std::wstring Viewer::PickedName(int list) const {
    const int place = Picked(list);
    return place < 0 ? std::wstring() : Cell(list, place, 0);
}

void Viewer::Pick(int list, int place) const {
    const RemoteMemory memory(Process(), sizeof(LVITEMW));
    LVITEMW item{};
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    memory.Write(&item, sizeof item);
    SendMessageW(Part(list), LVM_SETITEMSTATE, static_cast<WPARAM>(-1),
                 reinterpret_cast<LPARAM>(memory.At()));
    item.state = LVIS_SELECTED | LVIS_FOCUSED;
    memory.Write(&item, sizeof item);
    SendMessageW(Part(list), LVM_SETITEMSTATE, static_cast<WPARAM>(place),
                 reinterpret_cast<LPARAM>(memory.At()));
    SendMessageW(Part(list), LVM_ENSUREVISIBLE, static_cast<WPARAM>(place), FALSE);
}

void Viewer::ClickHeading(int list, int column) const {
    const auto heading = reinterpret_cast<HWND>(SendMessageW(Part(list), LVM_GETHEADER, 0, 0));
    int x = 0;
    for (int i = 0; i < column; ++i) {
        x += static_cast<int>(SendMessageW(Part(list), LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(i), 0));
    }
    constexpr int kInside = 20;
    const LPARAM at = MAKELPARAM(x + kInside, 5);
    PostMessageW(heading, WM_LBUTTONDOWN, MK_LBUTTON, at);
    PostMessageW(heading, WM_LBUTTONUP, 0, at);
}

void Viewer::DoubleClickRow(int list, int place) const {
    SendMessageW(Part(list), LVM_ENSUREVISIBLE, static_cast<WPARAM>(place), FALSE);
    const RemoteMemory memory(Process(), sizeof(RECT));
    RECT area{};
    area.left = LVIR_LABEL;
    memory.Write(&area, sizeof area);
    SendMessageW(Part(list), LVM_GETITEMRECT, static_cast<WPARAM>(place),
                 reinterpret_cast<LPARAM>(memory.At()));
    memory.Read(&area, sizeof area);
    const LPARAM at = MAKELPARAM(area.left + 5, (area.top + area.bottom) / 2);
    for (const int message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP}) {
        PostMessageW(Part(list), static_cast<UINT>(message),
                     message == WM_LBUTTONUP ? WPARAM{0} : WPARAM{MK_LBUTTON}, at);
    }
}

void Viewer::Filter(const std::wstring& words) const {
    SendMessageW(Part(IDC_FILTER), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(words.c_str()));
}

// On a busy machine the system may activate the window late, which takes the focus from
// the cell and ends it: it is opened again then.
constexpr int kTries = 3;

HWND Viewer::OpenCell(int list) const {
    ToFront();
    Settle();
    HWND cell = nullptr;
    for (int tries = 0; tries < kTries && cell == nullptr; ++tries) {
        Do(IDM_EDIT_CELL);
        cell = GetDlgItem(Part(list), IDC_CELL);
    }
    EXPECT_NE(nullptr, cell) << "the picked row cannot be typed into";
    return cell;
}

HWND Viewer::BeginCell(int list, const std::wstring& name, const std::wstring& value) const {
    Pick(list, name);
    HWND cell = nullptr;
    for (int tries = 0; tries < kTries && IsWindow(cell) == FALSE; ++tries) {
        cell = OpenCell(list);
        SendMessageW(cell, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(value.c_str()));
    }
    return cell;
}

void Viewer::SetCell(int list, const std::wstring& name, const std::wstring& value) const {
    const HWND cell = BeginCell(list, name, value);
    ASSERT_NE(nullptr, cell);
    PostMessageW(cell, WM_KEYDOWN, VK_RETURN, 1);
    Await("the end of the cell", [&] { return IsWindow(cell) == FALSE; });
    Settle();
}

std::wstring Viewer::ValueOf(int list, const std::wstring& name) const {
    return Cell(list, PlaceOf(list, name), VIEW_COLUMN_VALUE);
}

} // namespace viewtest
