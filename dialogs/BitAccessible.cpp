#include "dialogs/BitAccessible.h"

#include "com/Boundary.h"
#include "com/Counted.h"

#include <oleacc.h>

#include <string>
#include <utility>

namespace tam {

namespace {

/// The system's part in accessibility, loaded when a screen reader first asks:
/// most hosts never need it.
template <class F>
F SystemFunction(const char* name) {
    static const HMODULE library = LoadLibraryExW(L"oleacc.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    com::CheckSet(library);
    const auto function = reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(library, name)));
    com::CheckSet(reinterpret_cast<const void*>(function));
    return function;
}

/// The label as the system describes it, but for its name, role, state and
/// value. It may outlive the window; the system's object fails then.
class BitAccessible final : public com::Counted<IAccessible> {
  public:
    BitAccessible(HWND label, std::size_t bit, com::Ref<IAccessible> plain)
        : label_(label), bit_(bit), plain_(std::move(plain)) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
        return Counted::QueryInterface(iid == IID_IDispatch ? __uuidof(IAccessible) : iid, out);
    }

    // By slot alone, as screen readers call.
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        return count == nullptr ? E_POINTER : (*count = 0, S_OK);
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
        return info == nullptr ? E_POINTER : (*info = nullptr, E_NOTIMPL);
    }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return E_NOTIMPL;
    }

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
        return Replace(plain_->get_accRole(self, role), role, [](long) { return ROLE_SYSTEM_CHECKBUTTON; });
    }
    STDMETHODIMP get_accState(VARIANT self, VARIANT* state) override {
        if (state == nullptr) {
            return E_POINTER;
        }
        return Replace(plain_->get_accState(self, state), state, [&](long plain) {
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

    STDMETHODIMP get_accParent(IDispatch** parent) override { return plain_->get_accParent(parent); }
    STDMETHODIMP get_accChildCount(LONG* count) override { return plain_->get_accChildCount(count); }
    STDMETHODIMP get_accChild(VARIANT child, IDispatch** out) override {
        return plain_->get_accChild(child, out);
    }
    STDMETHODIMP get_accDescription(VARIANT self, BSTR* text) override {
        return plain_->get_accDescription(self, text);
    }
    STDMETHODIMP get_accHelp(VARIANT self, BSTR* text) override { return plain_->get_accHelp(self, text); }
    STDMETHODIMP get_accHelpTopic(BSTR* file, VARIANT self, LONG* topic) override {
        return plain_->get_accHelpTopic(file, self, topic);
    }
    STDMETHODIMP get_accKeyboardShortcut(VARIANT self, BSTR* text) override {
        return plain_->get_accKeyboardShortcut(self, text);
    }
    STDMETHODIMP get_accFocus(VARIANT* child) override { return plain_->get_accFocus(child); }
    STDMETHODIMP get_accSelection(VARIANT* children) override { return plain_->get_accSelection(children); }
    STDMETHODIMP accSelect(LONG flags, VARIANT self) override { return plain_->accSelect(flags, self); }
    STDMETHODIMP accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT self) override {
        return plain_->accLocation(left, top, width, height, self);
    }
    STDMETHODIMP accNavigate(LONG direction, VARIANT start, VARIANT* end) override {
        return plain_->accNavigate(direction, start, end);
    }
    STDMETHODIMP accHitTest(LONG left, LONG top, VARIANT* child) override {
        return plain_->accHitTest(left, top, child);
    }
    STDMETHODIMP put_accName(VARIANT, BSTR) override { return DISP_E_MEMBERNOTFOUND; }
    STDMETHODIMP put_accValue(VARIANT, BSTR) override { return DISP_E_MEMBERNOTFOUND; }

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
    com::Ref<IAccessible> plain_;
};

} // namespace

LRESULT AnswerGetObject(HWND label, std::size_t bit, WPARAM wParam, LPARAM lParam) {
    if (static_cast<LONG>(lParam) != OBJID_CLIENT) {
        return 0;
    }
    com::Ref<IAccessible> plain;
    com::Check(SystemFunction<decltype(&CreateStdAccessibleObject)>("CreateStdAccessibleObject")(
        label, OBJID_CLIENT, __uuidof(IAccessible), plain.PutVoid()));
    const auto accessible = com::Ref<IAccessible>::Own(new BitAccessible(label, bit, std::move(plain)));
    return SystemFunction<decltype(&LresultFromObject)>("LresultFromObject")(__uuidof(IAccessible), wParam,
                                                                             accessible.Get());
}

} // namespace tam
