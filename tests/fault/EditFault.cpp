#include "tests/fault/EditFault.h"

#include "common/resource.h"
#include "core/StructureEditorState.h"
#include "tests/dialogs/Driver.h"

#include <commctrl.h>

#include <initializer_list>

namespace fault {

namespace {

constexpr UINT kEdit = WM_APP;

bool Has(HWND dialog, int control) {
    return GetDlgItem(dialog, control) != nullptr;
}

bool IsWorked(HWND dialog) {
    return Has(dialog, IDC_NEW_VALUE) || Has(dialog, IDC_ENUM) || Has(dialog, IDC_FIELDS) ||
           Has(dialog, IDC_BIT) || Has(dialog, IDC_DEVICE_NAME);
}

bool IsOpen(HWND dialog) {
    return IsWindow(dialog) != FALSE && IsWindowVisible(dialog) != FALSE;
}

/// Types a character over what is there.
void TypeOver(HWND box, wchar_t letter) {
    SendMessageW(box, EM_SETSEL, 0, -1);
    SendMessageW(box, WM_CHAR, letter, 1);
}

void Change(HWND dialog, int openedField) {
    const dialogs::Shown shown(dialog);
    if (Has(dialog, IDC_NEW_VALUE)) {
        TypeOver(shown.Control(IDC_NEW_VALUE), L'7');
    } else if (Has(dialog, IDC_ENUM)) {
        shown.Choose(IDC_ENUM, 1);
    } else if (Has(dialog, IDC_BIT)) {
        shown.DoubleClick(IDC_BIT + 1);
    } else if (Has(dialog, IDC_DEVICE_NAME)) {
        TypeOver(shown.Control(IDC_DEVICE_NAME), L'x');
    } else {
        shown.DoubleClickRow(IDC_FIELDS, openedField);
    }
}

} // namespace

void EditFaultTest::SetUp() {
    ModuleFaultTest::SetUp();
    runner_ = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    SetWindowLongPtrW(runner_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&EditFaultTest::Procedure));
    Watcher().OnBox([this](HWND window, const bench::Box& box) {
        // Reports and messages are answered plainly.
        const bool isWorked = !box.isMessageBox && IsWorked(window);
        if (isWorked) {
            PostMessageW(runner_, kEdit, 0, reinterpret_cast<LPARAM>(window));
        }
        return isWorked;
    });
}

void EditFaultTest::TearDown() {
    Watcher().OnBox(nullptr);
    DestroyWindow(runner_);
    ModuleFaultTest::TearDown();
}

LRESULT CALLBACK EditFaultTest::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != kEdit) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    const auto dialog = reinterpret_cast<HWND>(lParam);
    if (IsWindow(dialog) == FALSE) {
        return 0;
    }
    ShowWindow(dialog, SW_SHOW);
    Change(dialog, kOpenedField);
    for (const WPARAM button : {WPARAM{IDOK}, WPARAM{IDCANCEL}}) {
        if (IsOpen(dialog)) {
            SendMessageW(dialog, WM_COMMAND, button, 0);
        }
    }
    if (IsOpen(dialog)) {
        ADD_FAILURE() << "the dialog cannot be closed";
        EndDialog(dialog, 0);
    }
    return 0;
}

void ExpectOkTexts(const Case& run) {
    for (const Told& told : run.told) {
        EXPECT_TRUE(told.isReport || told.text == L"error calculating CP value" ||
                    told.text == L"error in calculating the value" || told.text == tam::kNoEditorText)
            << "box of another text";
    }
}

} // namespace fault
