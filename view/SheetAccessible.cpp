#include "view/SheetAccessible.h"

#include "view/Accessible.h"
#include "view/resource.h"
#include "view/SheetView.h"
#include "view/Window.h"

#include "com/Boundary.h"
#include "com/Ref.h"
#include "com/StandardAccessible.h"

#include <oleacc.h>

#include <cstddef>
#include <optional>

namespace view {

namespace {

/// The window as the system describes it, with the pins as its children: child n is the
/// drawing's spot n - 1. It may outlive the window; its calls fail then.
class SheetAccessible final : public com::StandardAccessible {
  public:
    explicit SheetAccessible(SheetView& sheet)
        : StandardAccessible(sheet.Handle()), sheet_(sheet), window_(sheet.Handle()) {}

    STDMETHODIMP get_accChildCount(LONG* count) override {
        return count == nullptr ? E_POINTER : (*count = static_cast<LONG>(Count()), S_OK);
    }
    STDMETHODIMP get_accChild(VARIANT, IDispatch** child) override {
        return child == nullptr ? E_POINTER : (*child = nullptr, S_FALSE); // simple elements
    }
    STDMETHODIMP get_accName(VARIANT self, BSTR* name) override {
        if (IsNobody(self)) {
            return name == nullptr ? E_POINTER : (*name = nullptr, E_INVALIDARG);
        }
        return com::Return(__uuidof(IAccessible), name,
                           [&] { return IsChild(self) ? sheet_.WordsOf(SpotOf(self)) : TextOf(window_); });
    }
    STDMETHODIMP get_accRole(VARIANT self, VARIANT* role) override {
        if (IsNobody(self)) {
            return Refuse(role);
        }
        return Answer(role, IsChild(self) ? ROLE_SYSTEM_GRAPHIC : ROLE_SYSTEM_DIAGRAM);
    }
    STDMETHODIMP get_accState(VARIANT self, VARIANT* state) override {
        if (state == nullptr) {
            return E_POINTER;
        }
        if (IsNobody(self)) {
            return Refuse(state);
        }
        if (!IsChild(self)) {
            return StandardAccessible::get_accState(self, state);
        }
        const bool isPicked = sheet_.PickedSpot() == SpotOf(self);
        const LONG focus = isPicked && GetFocus() == window_ ? STATE_SYSTEM_FOCUSED : 0;
        return Answer(state, STATE_SYSTEM_SELECTABLE | STATE_SYSTEM_FOCUSABLE |
                                 (isPicked ? STATE_SYSTEM_SELECTED : 0) | focus);
    }
    STDMETHODIMP get_accFocus(VARIANT* child) override {
        const auto picked = Count() > 0 ? sheet_.PickedSpot() : std::nullopt;
        return picked && GetFocus() == window_ ? Answer(child, static_cast<LONG>(*picked) + 1)
                                               : StandardAccessible::get_accFocus(child);
    }
    STDMETHODIMP get_accSelection(VARIANT* children) override {
        const auto picked = Count() > 0 ? sheet_.PickedSpot() : std::nullopt;
        return picked ? Answer(children, static_cast<LONG>(*picked) + 1)
                      : StandardAccessible::get_accSelection(children);
    }
    STDMETHODIMP accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT self) override {
        if (IsNobody(self)) {
            return E_INVALIDARG;
        }
        if (!IsChild(self)) {
            return StandardAccessible::accLocation(left, top, width, height, self);
        }
        if (left == nullptr || top == nullptr || width == nullptr || height == nullptr) {
            return E_POINTER;
        }
        const RECT area = sheet_.AreaOfSpot(SpotOf(self));
        *left = area.left;
        *top = area.top;
        *width = area.right - area.left;
        *height = area.bottom - area.top;
        return S_OK;
    }
    STDMETHODIMP accHitTest(LONG left, LONG top, VARIANT* child) override {
        const auto spot = Count() > 0 ? sheet_.SpotAt({left, top}) : std::nullopt;
        return spot ? Answer(child, static_cast<LONG>(*spot) + 1)
                    : StandardAccessible::accHitTest(left, top, child);
    }
    STDMETHODIMP accNavigate(LONG direction, VARIANT start, VARIANT* end) override {
        if (end == nullptr) {
            return E_POINTER;
        }
        const auto count = static_cast<LONG>(Count());
        const LONG from = start.vt == VT_I4 ? start.lVal : CHILDID_SELF;
        const LONG to = direction == NAVDIR_FIRSTCHILD  ? 1
                        : direction == NAVDIR_LASTCHILD ? count
                        : from == CHILDID_SELF          ? 0
                        : direction == NAVDIR_NEXT      ? from + 1
                        : direction == NAVDIR_PREVIOUS  ? from - 1
                                                        : 0;
        if (to >= 1 && to <= count) {
            return Answer(end, to);
        }
        return from == CHILDID_SELF ? StandardAccessible::accNavigate(direction, start, end)
                                    : (VariantInit(end), S_FALSE);
    }

    STDMETHODIMP get_accValue(VARIANT, BSTR* value) override {
        return value == nullptr ? E_POINTER : (*value = nullptr, S_FALSE);
    }
    STDMETHODIMP get_accDescription(VARIANT, BSTR* text) override {
        return text == nullptr ? E_POINTER : (*text = nullptr, S_FALSE);
    }
    STDMETHODIMP get_accHelp(VARIANT, BSTR* text) override {
        return text == nullptr ? E_POINTER : (*text = nullptr, S_FALSE);
    }
    STDMETHODIMP get_accHelpTopic(BSTR* file, VARIANT, LONG*) override {
        return file == nullptr ? E_POINTER : (*file = nullptr, S_FALSE);
    }
    STDMETHODIMP get_accKeyboardShortcut(VARIANT, BSTR* text) override {
        return text == nullptr ? E_POINTER : (*text = nullptr, S_FALSE);
    }
    STDMETHODIMP get_accDefaultAction(VARIANT self, BSTR* action) override {
        if (!IsChild(self)) {
            return action == nullptr ? E_POINTER : (*action = nullptr, S_FALSE);
        }
        return com::Return(__uuidof(IAccessible), action, [] { return Text(IDS_OPEN_PIN); });
    }
    STDMETHODIMP accDoDefaultAction(VARIANT self) override {
        if (!IsChild(self)) {
            return DISP_E_MEMBERNOTFOUND;
        }
        const HRESULT result = accSelect(SELFLAG_TAKESELECTION, self);
        // What opens waits for a person: not within this call.
        PostMessageW(window_, WM_KEYDOWN, VK_RETURN, 1);
        return result;
    }
    STDMETHODIMP accSelect(LONG flags, VARIANT self) override {
        if (IsNobody(self)) {
            return E_INVALIDARG;
        }
        if (!IsChild(self)) {
            return StandardAccessible::accSelect(flags, self);
        }
        constexpr LONG kTaken = SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION;
        if (flags == 0 || (flags & ~kTaken) != 0) {
            return E_INVALIDARG; // one pin is picked at a time
        }
        const auto failure = com::Attempt([&] {
            if ((flags & SELFLAG_TAKEFOCUS) != 0) {
                SetFocus(window_);
            }
            sheet_.PickByHand(sheet_.Drawing().spots.at(SpotOf(self)).pin);
        });
        return failure ? failure->code : S_OK;
    }

  private:
    std::size_t Count() const { return IsWindow(window_) != FALSE ? sheet_.Drawing().spots.size() : 0; }
    bool IsChild(const VARIANT& self) const {
        return self.vt == VT_I4 && self.lVal >= 1 && static_cast<std::size_t>(self.lVal) <= Count();
    }
    /// Neither the sheet nor one of its pins.
    bool IsNobody(const VARIANT& self) const {
        return self.vt != VT_I4 || (self.lVal != CHILDID_SELF && !IsChild(self));
    }
    static HRESULT Refuse(VARIANT* out) noexcept {
        return out == nullptr ? E_POINTER : (VariantInit(out), E_INVALIDARG);
    }
    static std::size_t SpotOf(const VARIANT& self) noexcept {
        return static_cast<std::size_t>(self.lVal) - 1;
    }

    SheetView& sheet_;
    HWND window_;
};

} // namespace

LRESULT AnswerGetObject(SheetView& sheet, WPARAM wParam, LPARAM lParam) {
    return AnswerAs<SheetAccessible>(sheet, wParam, lParam);
}

} // namespace view
