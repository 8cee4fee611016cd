#pragma once

#include "com/Counted.h"
#include "com/Ref.h"

#include <windows.h>

#include <oleacc.h>

namespace com {

/// A window's client area to a screen reader: what the system says of it. A window that says
/// more overrides the members. May outlive the window; the system's object fails then.
class StandardAccessible : public Counted<IAccessible> {
  public:
    /// Throws CallError.
    explicit StandardAccessible(HWND window);

    STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
        return Counted::QueryInterface(iid == IID_IDispatch ? __uuidof(IAccessible) : iid, out);
    }

    // By slot alone, as screen readers call.
    STDMETHODIMP GetTypeInfoCount(UINT* count) final {
        return count == nullptr ? E_POINTER : (*count = 0, S_OK);
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) final {
        return info == nullptr ? E_POINTER : (*info = nullptr, E_NOTIMPL);
    }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) final { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) final {
        return E_NOTIMPL;
    }

    STDMETHODIMP get_accParent(IDispatch** parent) override { return plain_->get_accParent(parent); }
    STDMETHODIMP get_accChildCount(LONG* count) override { return plain_->get_accChildCount(count); }
    STDMETHODIMP get_accChild(VARIANT child, IDispatch** out) override {
        return plain_->get_accChild(child, out);
    }
    STDMETHODIMP get_accName(VARIANT self, BSTR* name) override { return plain_->get_accName(self, name); }
    STDMETHODIMP get_accValue(VARIANT self, BSTR* value) override {
        return plain_->get_accValue(self, value);
    }
    STDMETHODIMP get_accDescription(VARIANT self, BSTR* text) override {
        return plain_->get_accDescription(self, text);
    }
    STDMETHODIMP get_accRole(VARIANT self, VARIANT* role) override { return plain_->get_accRole(self, role); }
    STDMETHODIMP get_accState(VARIANT self, VARIANT* state) override {
        return plain_->get_accState(self, state);
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
    STDMETHODIMP get_accDefaultAction(VARIANT self, BSTR* action) override {
        return plain_->get_accDefaultAction(self, action);
    }
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
    STDMETHODIMP accDoDefaultAction(VARIANT self) override { return plain_->accDoDefaultAction(self); }
    STDMETHODIMP put_accName(VARIANT, BSTR) final { return DISP_E_MEMBERNOTFOUND; }
    STDMETHODIMP put_accValue(VARIANT, BSTR) final { return DISP_E_MEMBERNOTFOUND; }

  private:
    Ref<IAccessible> plain_;
};

/// The answer to WM_GETOBJECT that gives the reader an object. Throws CallError.
LRESULT AnswerWith(IAccessible& accessible, WPARAM wParam);

} // namespace com
