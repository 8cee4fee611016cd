#include "dialogs/BitAccessible.h"

#include "com/Boundary.h"
#include "com/Ref.h"
#include "com/StandardAccessible.h"

#include <oleacc.h>

#include <string>

namespace tam {

namespace {

/// The label as the system describes it, but for its name, role, state and
/// value. It may outlive the window; the system's object fails then.
class BitAccessible final : public com::StandardAccessible {
  public:
    BitAccessible(HWND label, std::size_t bit) : StandardAccessible(label), label_(label), bit_(bit) {}

    STDMETHODIMP get_accName(VARIANT, BSTR* name) override {
        return com::Return(__uuidof(IAccessible), name, [&] { return L"Bit " + std::to_wstring(bit_); });
    }
    STDMETHODIMP get_accValue(VARIANT, BSTR* value) override {
        return com::Return(__uuidof(IAccessible), value, [&] { return std::wstring(IsSet() ? L"1" : L"0"); });
    }
    STDMETHODIMP get_accRole(VARIANT self, VARIANT* role) override {
        if (role == nullptr) {
            return E_POINTER;
        }
        return Replace(StandardAccessible::get_accRole(self, role), role,
                       [](long) { return ROLE_SYSTEM_CHECKBUTTON; });
    }
    STDMETHODIMP get_accState(VARIANT self, VARIANT* state) override {
        if (state == nullptr) {
            return E_POINTER;
        }
        return Replace(StandardAccessible::get_accState(self, state), state, [&](long plain) {
            const long focusable = (plain & ~STATE_SYSTEM_READONLY) | STATE_SYSTEM_FOCUSABLE;
            return focusable | (GetFocus() == label_ ? STATE_SYSTEM_FOCUSED : 0) |
                   (IsSet() ? STATE_SYSTEM_CHECKED : 0);
        });
    }
    STDMETHODIMP get_accDefaultAction(VARIANT, BSTR* action) override {
        return com::Return(__uuidof(IAccessible), action, [] { return std::wstring(L"Flip"); });
    }
    STDMETHODIMP accDoDefaultAction(VARIANT) override {
        return PostMessageW(label_, WM_KEYDOWN, VK_SPACE, 1) != FALSE ? S_OK : E_FAIL;
    }

  private:
    bool IsSet() const noexcept {
        wchar_t text[2] = {};
        GetWindowTextW(label_, text, 2);
        return text[0] == L'1';
    }
    /// Puts a number of our own in place of the one that the system answered.
    template <class F>
    static HRESULT Replace(HRESULT result, VARIANT* answer, F&& number) {
        if (SUCCEEDED(result) && answer->vt == VT_I4) {
            answer->lVal = number(answer->lVal);
        }
        return result;
    }

    HWND label_;
    std::size_t bit_;
};

} // namespace

LRESULT AnswerGetObject(HWND label, std::size_t bit, WPARAM wParam, LPARAM lParam) {
    if (static_cast<LONG>(lParam) != OBJID_CLIENT) {
        return 0;
    }
    const auto accessible = com::Ref<IAccessible>::Own(new BitAccessible(label, bit));
    return com::AnswerWith(*accessible.Get(), wParam);
}

} // namespace tam
