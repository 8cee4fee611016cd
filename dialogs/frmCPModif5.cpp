#include "dialogs/frmCPModif5.h"

#include "component/resource.h"
#include "dialogs/BitAccessible.h"

namespace tam {

namespace {

int BitControl(std::size_t bit) {
    return IDC_BIT + static_cast<int>(bit);
}
int NumberControl(std::size_t bit) {
    return IDC_BIT_NUMBER + static_cast<int>(bit);
}

} // namespace

frmCPModif5::frmCPModif5() noexcept : ValueForm(IDD_BITS) {}

void frmCPModif5::ReadDataPoint() {
    state_.emplace(Point().Value(), Point().Type().Length());
}

void frmCPModif5::OnInit() {
    SetText(IDC_NAME, Point().Name());
    SetText(IDC_TYPE, Label(&DataPointType::Name));
    for (std::size_t bit = 0; bit < state_->Count(); ++bit) {
        ShowBit(bit);
        const HWND label = Control(BitControl(bit));
        SetWindowLongPtrW(label, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        plainLabel_ = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrW(label, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&frmCPModif5::BitProcedure)));
    }
    SetText(IDC_BIT_SUM, state_->Summary());
    if (state_->Count() < BitEditorState::kMostBits) {
        HideUpperByte();
    }
    StartAt(BitControl(state_->Count() - 1));
}

void frmCPModif5::HideUpperByte() const {
    const std::size_t half = BitEditorState::kMostBits / 2;
    for (std::size_t bit = half; bit < BitEditorState::kMostBits; ++bit) {
        ShowWindow(Control(BitControl(bit)), SW_HIDE);
        ShowWindow(Control(NumberControl(bit)), SW_HIDE);
    }
    RECT upper{};
    RECT lower{};
    GetWindowRect(Control(NumberControl(half)), &upper);
    GetWindowRect(Control(NumberControl(0)), &lower);
    POINT top{0, lower.top};
    ScreenToClient(Window(), &top);
    Shorten(top.y, lower.top - upper.top);
    Centre();
}

void frmCPModif5::ShowBit(std::size_t bit) const {
    SetText(BitControl(bit), state_->Label(bit));
}

bool frmCPModif5::OnCommand(int control, int notification) {
    const int bit = control - IDC_BIT;
    if (bit >= 0 && bit < static_cast<int>(state_->Count())) {
        if (notification == STN_DBLCLK) {
            Flip(static_cast<std::size_t>(bit));
        } else if (notification == STN_CLICKED) {
            Focus(control);
        }
        return true;
    }
    if (control == IDOK) {
        OkStep();
        return true;
    }
    return false;
}

bool frmCPModif5::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    if (message != WM_CTLCOLORSTATIC || reinterpret_cast<HWND>(lParam) != GetFocus()) {
        return false;
    }
    // Of the static controls only a bit takes the focus.
    auto* const context = reinterpret_cast<HDC>(wParam);
    SetTextColor(context, GetSysColor(COLOR_HIGHLIGHTTEXT));
    SetBkColor(context, GetSysColor(COLOR_HIGHLIGHT));
    result = reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_HIGHLIGHT));
    return true;
}

void frmCPModif5::Flip(std::size_t bit) {
    state_->Flip(bit);
    ShowBit(bit);
    SetText(IDC_BIT_SUM, state_->Summary());
    NotifyWinEvent(EVENT_OBJECT_STATECHANGE, Control(BitControl(bit)), OBJID_CLIENT, CHILDID_SELF);
}

LRESULT CALLBACK frmCPModif5::BitProcedure(HWND label, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    auto* form = reinterpret_cast<frmCPModif5*>(GetWindowLongPtrW(label, GWLP_USERDATA));
    LRESULT result = 0;
    bool handled = false;
    com::Attempt([&] { handled = form->HandleBit(label, message, wParam, lParam, result); });
    return handled ? result : CallWindowProcW(form->plainLabel_, label, message, wParam, lParam);
}

bool frmCPModif5::HandleBit(HWND label, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    const auto bit = static_cast<std::size_t>(GetDlgCtrlID(label) - IDC_BIT);
    switch (message) {
    case WM_GETDLGCODE:
        result = DLGC_WANTARROWS | DLGC_WANTCHARS;
        return true;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        InvalidateRect(label, nullptr, TRUE);
        return false;
    case WM_KEYDOWN:
        return HandleKey(bit, wParam);
    case WM_GETOBJECT:
        result = AnswerGetObject(label, bit, wParam, lParam);
        return result != 0;
    default:
        return false;
    }
}

bool frmCPModif5::HandleKey(std::size_t bit, WPARAM key) {
    const std::size_t count = state_->Count();
    // The highest bit stands on the left, eight to a row.
    std::size_t next = bit;
    switch (key) {
    case VK_SPACE:
        Flip(bit);
        return true;
    case VK_LEFT:
        next = bit + 1;
        break;
    case VK_RIGHT:
        next = bit - 1;
        break;
    case VK_UP:
        next = bit + 8;
        break;
    case VK_DOWN:
        next = bit - 8;
        break;
    default:
        return false;
    }
    if (next < count) {
        Focus(BitControl(next));
    }
    return true;
}

void frmCPModif5::OkStep() {
    RunOkStep(L"error in calculating the value", [&] {
        Point().SetValue(state_->Value());
        Close();
    });
}

} // namespace tam
