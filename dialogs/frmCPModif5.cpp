#include "dialogs/frmCPModif5.h"

#include "common/resource.h"
#include "dialogs/BitAccessible.h"

#include <algorithm>

namespace tam {

namespace {

int BitControl(std::size_t bit) {
    return IDC_BIT + static_cast<int>(bit);
}
int NumberControl(std::size_t bit) {
    return IDC_BIT_NUMBER + static_cast<int>(bit);
}

void SetTabStop(HWND control, bool stops) noexcept {
    const LONG_PTR style = GetWindowLongPtrW(control, GWL_STYLE);
    SetWindowLongPtrW(control, GWL_STYLE, stops ? style | WS_TABSTOP : style & ~LONG_PTR{WS_TABSTOP});
}

std::optional<BitMove> MoveOf(WPARAM key) noexcept {
    switch (key) {
    case VK_LEFT:
        return BitMove::Left;
    case VK_RIGHT:
        return BitMove::Right;
    case VK_UP:
        return BitMove::Up;
    case VK_DOWN:
        return BitMove::Down;
    case VK_HOME:
        return BitMove::First;
    case VK_END:
        return BitMove::Last;
    default:
        return std::nullopt;
    }
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
    MoveTabStop(state_->First());
    StartAt(BitControl(tabStop_));
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
    // The label draws its new text at once, over the frame of the focus.
    InvalidateRect(Control(BitControl(bit)), nullptr, TRUE);
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
    if (message != WM_CTLCOLORSTATIC) {
        return false;
    }
    const int bit = GetDlgCtrlID(reinterpret_cast<HWND>(lParam)) - IDC_BIT;
    if (bit < 0 || bit >= static_cast<int>(state_->Count())) {
        return false;
    }
    // A bit that is set is filled, whether it has the focus or not.
    const bool isSet = state_->IsSet(static_cast<std::size_t>(bit));
    const int back = isSet ? COLOR_HIGHLIGHT : COLOR_WINDOW;
    auto* const context = reinterpret_cast<HDC>(wParam);
    SetTextColor(context, GetSysColor(isSet ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    SetBkColor(context, GetSysColor(back));
    result = reinterpret_cast<LRESULT>(GetSysColorBrush(back));
    return true;
}

void frmCPModif5::DrawFocus(std::size_t bit) const {
    // A frame inside the label, in the colour of its digit.
    const HWND label = Control(BitControl(bit));
    RECT frame{};
    GetClientRect(label, &frame);
    const HDC context = GetDC(label);
    const HBRUSH brush = GetSysColorBrush(state_->IsSet(bit) ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT);
    const int thickness = std::max(1, GetDeviceCaps(context, LOGPIXELSY) / USER_DEFAULT_SCREEN_DPI);
    InflateRect(&frame, -thickness, -thickness);
    for (int line = 0; line < thickness; ++line) {
        FrameRect(context, &frame, brush);
        InflateRect(&frame, -1, -1);
    }
    ReleaseDC(label, context);
}

void frmCPModif5::MoveTabStop(std::size_t bit) {
    SetTabStop(Control(BitControl(tabStop_)), false);
    tabStop_ = bit;
    SetTabStop(Control(BitControl(tabStop_)), true);
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
        MoveTabStop(bit);
        InvalidateRect(label, nullptr, TRUE);
        return false;
    case WM_KILLFOCUS:
        InvalidateRect(label, nullptr, TRUE);
        return false;
    case WM_PAINT:
        result = CallWindowProcW(plainLabel_, label, message, wParam, lParam);
        if (GetFocus() == label) {
            DrawFocus(bit);
        }
        return true;
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
    if (key == VK_SPACE) {
        Flip(bit);
        return true;
    }
    const auto move = MoveOf(key);
    if (!move) {
        return false;
    }
    const std::size_t next = state_->After(bit, *move);
    if (next != bit) {
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
