#include "dialogs/frmCPModif4.h"

#include "common/ComponentState.h"
#include "common/ErrorReport.h"
#include "common/resource.h"
#include "core/StructureEditorState.h"

#include <commctrl.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>

namespace tam {

namespace {

// The first column is the row's own text, the field's name.
constexpr int kValueColumn = 1;
constexpr int kShownColumn = 2;
constexpr int kTypeColumn = 3;

constexpr const wchar_t* kHeadings[] = {L"Field", L"Value", L"Displayed", L"Type"};

void AddColumn(HWND list, int index, const wchar_t* heading) {
    std::wstring text = heading;
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_SUBITEM;
    column.pszText = text.data();
    column.iSubItem = index;
    SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&column));
}

void SetCell(HWND list, int row, int column, std::wstring text) {
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text.data();
    SendMessageW(list, LVM_SETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

} // namespace

frmCPModif4::frmCPModif4() noexcept : ValueForm(IDD_STRUCTURE) {}

void frmCPModif4::ReadDataPoint() {
    InitDecimalSeparator();
    rows_ = ReadFields(Point());
    opening_.emplace(Point(), rows_);
    confirmed_ = false;
}

void frmCPModif4::OnInit() {
    SetText(IDC_NAME, Point().Name());
    const HWND list = Control(IDC_FIELDS);
    SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
    for (int column = 0; column < static_cast<int>(std::size(kHeadings)); ++column) {
        AddColumn(list, column, kHeadings[column]);
    }
    FillList();
    FitRows();
    FitColumns();
    Enable(IDC_EDIT_FIELD, SelectedRow() >= 0);
}

void frmCPModif4::FillList() const {
    const HWND list = Control(IDC_FIELDS);
    SendMessageW(list, LVM_DELETEALLITEMS, 0, 0);
    int index = 0;
    for (const FieldRow& row : rows_) {
        std::wstring name = row.name;
        LVITEMW item{};
        item.mask = LVIF_TEXT | LVIF_STATE;
        item.iItem = index;
        item.pszText = name.data();
        item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
        item.state = index == 0 ? item.stateMask : 0;
        SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
        ShowRow(index, row);
        ++index;
    }
}

void frmCPModif4::ShowRow(int index, const FieldRow& row) const {
    const HWND list = Control(IDC_FIELDS);
    SetCell(list, index, kValueColumn, row.value);
    SetCell(list, index, kShownColumn, row.shown);
    SetCell(list, index, kTypeColumn, row.type);
}

void frmCPModif4::FitRows() const {
    const HWND list = Control(IDC_FIELDS);
    const auto heightOf = [list](WPARAM rows) {
        return static_cast<int>(HIWORD(SendMessageW(list, LVM_APPROXIMATEVIEWRECT, rows, -1)));
    };
    RECT client{};
    RECT heading{};
    GetClientRect(list, &client);
    GetWindowRect(ListView_GetHeader(list), &heading);
    const int cut = CutRowHeight(client.bottom - (heading.bottom - heading.top), heightOf(2) - heightOf(1));
    RECT place{};
    GetWindowRect(list, &place);
    SetWindowPos(list, nullptr, 0, 0, place.right - place.left, place.bottom - place.top - cut,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    MapWindowPoints(nullptr, Window(), reinterpret_cast<POINT*>(&place), 2);
    Shorten(place.bottom - cut, cut);
    Centre();
}

void frmCPModif4::FitColumns() const {
    const HWND list = Control(IDC_FIELDS);
    std::vector<int> wanted;
    for (int column = 0; column < static_cast<int>(std::size(kHeadings)); ++column) {
        // Beside the heading's text stands as much as two letters are wide.
        const std::wstring heading = kHeadings[column] + std::wstring(L"nn");
        SendMessageW(list, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column), MAKELPARAM(LVSCW_AUTOSIZE, 0));
        wanted.push_back(std::max(ListView_GetColumnWidth(list, column),
                                  static_cast<int>(SendMessageW(list, LVM_GETSTRINGWIDTHW, 0,
                                                                reinterpret_cast<LPARAM>(heading.c_str())))));
    }
    RECT client{};
    GetClientRect(list, &client);
    // A scroll bar that is still to come takes its room from the columns.
    const bool scrolls = SendMessageW(list, LVM_GETCOUNTPERPAGE, 0, 0) < static_cast<LRESULT>(rows_.size());
    const bool isThere = (GetWindowLongW(list, GWL_STYLE) & WS_VSCROLL) != 0;
    const int room = client.right - (scrolls && !isThere ? GetSystemMetrics(SM_CXVSCROLL) : 0);
    int column = 0;
    for (const int width : ColumnWidths(wanted, room)) {
        SendMessageW(list, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column), width);
        ++column;
    }
}

bool frmCPModif4::OnCommand(int control, int) {
    if (control == IDC_EDIT_FIELD) {
        EditRow(SelectedRow());
        return true;
    }
    if (control == IDOK) {
        OkStep();
        return true;
    }
    return false;
}

bool frmCPModif4::OnMessage(UINT message, WPARAM, LPARAM lParam, LRESULT&) {
    if (message != WM_NOTIFY) {
        return false;
    }
    const NMHDR& header = *reinterpret_cast<const NMHDR*>(lParam);
    return header.idFrom == IDC_FIELDS && OnListNotification(header);
}

bool frmCPModif4::OnListNotification(const NMHDR& header) {
    switch (header.code) {
    case NM_DBLCLK:
        EditRow(reinterpret_cast<const NMITEMACTIVATE&>(header).iItem);
        return true;
    case LVN_KEYDOWN: {
        const WORD key = reinterpret_cast<const NMLVKEYDOWN&>(header).wVKey;
        if (key == VK_SPACE || key == VK_F2) {
            EditRow(SelectedRow());
        }
        return true;
    }
    case LVN_ITEMCHANGED:
        Enable(IDC_EDIT_FIELD, SelectedRow() >= 0);
        return true;
    default:
        return false;
    }
}

int frmCPModif4::SelectedRow() const noexcept {
    return static_cast<int>(SendMessageW(Control(IDC_FIELDS), LVM_GETNEXTITEM, static_cast<WPARAM>(-1),
                                         MAKELPARAM(LVNI_SELECTED, 0)));
}

void frmCPModif4::EditRow(int row) {
    if (row < 0 || row >= static_cast<int>(rows_.size())) {
        return;
    }
    Trap(L"lvwMain_DblClick Form frmCPModif4", L"Sub lvwMain_DblClick", [&] {
        OpenEditor(rows_[static_cast<std::size_t>(row)]);
        RefreshValues();
    });
}

void frmCPModif4::OpenEditor(const FieldRow& row) {
    const DataPoint field = FieldSource(Point()).Fetch(*row.place);
    const auto editor = MakeValueEditor(GeneralTypeOf(row.genType));
    if (!editor) {
        ShowBox(kNoEditorText, kNoEditorCaption, MB_ICONEXCLAMATION);
        return;
    }
    editor->SetCalledFramModif4(true);
    editor->SetDataPoint(field.Object());
    editor->ShowModal();
}

void frmCPModif4::RefreshValues() {
    // All of them: a field may follow another one.
    int index = 0;
    FieldSource fields(Point());
    for (FieldRow& row : rows_) {
        row.ReadValue(fields.Fetch(*row.place));
        ShowRow(index, row);
        ++index;
    }
    FitColumns(); // a value may have grown
}

void frmCPModif4::OkStep() {
    RunOkStep(L"error calculating CP value", [&] {
        FieldSource fields(Point());
        for (const FieldRow& row : rows_) {
            // A structure's own editor has written it, or has told that it cannot be.
            if (row.value != row.openingValue && GeneralTypeOf(row.genType) != GeneralType::Struct) {
                fields.Fetch(*row.place).SetValue(row.value);
                fields.Forget();
            }
        }
        WriteStructure();
        confirmed_ = true;
        Close();
    });
}

void frmCPModif4::WriteStructure() {
    struct KeepFieldsUnlessWritten {
        frmCPModif4& form;
        bool written = false;
        ~KeepFieldsUnlessWritten() {
            // The fields are as the user confirmed them. A host whose structure
            // cannot be written as a whole could keep no edit at all otherwise.
            if (!written) {
                com::Attempt([&] { form.opening_ = ValueSnapshot(form.Point()); });
            }
        }
    } guard{*this};
    // Written as it reads by now, so that a host that watches the data point
    // alone learns of the change.
    Point().SetValue(Point().Value());
    guard.written = true;
}

void frmCPModif4::OnFinished() {
    if (confirmed_) {
        return;
    }
    if (const auto failure = opening_->Restore(Point())) {
        ShowErrorReport(*failure, L"Form_Unload Form frmCPModif4", L"Sub Form_Unload");
    }
}

void frmCPModif4::OnReleased() noexcept {
    rows_.clear();
    opening_.reset();
}

} // namespace tam
