#include "view/SplitterAccessible.h"

#include "view/Accessible.h"
#include "view/resource.h"
#include "view/Splitter.h"
#include "view/Window.h"

#include "com/Boundary.h"
#include "com/Ref.h"
#include "com/StandardAccessible.h"

#include <oleacc.h>

#include <string>

namespace view {

namespace {

/// It may outlive the window; its calls fail then.
class SplitterAccessible final : public com::StandardAccessible {
  public:
    explicit SplitterAccessible(const Splitter& splitter)
        : StandardAccessible(splitter.Handle()), splitter_(splitter), window_(splitter.Handle()) {}

    STDMETHODIMP get_accName(VARIANT, BSTR* name) override {
        return com::Return(__uuidof(IAccessible), name, [&] { return TextOf(window_); });
    }
    STDMETHODIMP get_accRole(VARIANT, VARIANT* role) override { return Answer(role, ROLE_SYSTEM_SEPARATOR); }
    STDMETHODIMP get_accState(VARIANT, VARIANT* state) override {
        return Answer(state, STATE_SYSTEM_FOCUSABLE |
                                 (IsWindowVisible(window_) != FALSE ? 0 : STATE_SYSTEM_INVISIBLE) |
                                 (GetFocus() == window_ ? STATE_SYSTEM_FOCUSED : 0));
    }
    STDMETHODIMP get_accValue(VARIANT, BSTR* value) override {
        return com::Return(__uuidof(IAccessible), value, [&] {
            constexpr int kTenth = 10;
            return IsWindow(window_) != FALSE ? Text(IDS_ZOOM, std::to_wstring(splitter_.Share() / kTenth))
                                              : std::wstring();
        });
    }
    STDMETHODIMP get_accDescription(VARIANT, BSTR* text) override {
        return text == nullptr ? E_POINTER : (*text = nullptr, S_FALSE);
    }

  private:
    const Splitter& splitter_;
    HWND window_;
};

} // namespace

LRESULT AnswerGetObject(const Splitter& splitter, WPARAM wParam, LPARAM lParam) {
    return AnswerAs<SplitterAccessible>(splitter, wParam, lParam);
}

} // namespace view
