#include "view/MessageHook.h"

#include "com/Boundary.h"

#include <utility>

namespace view {

namespace {

// A hook gets no data of its own.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): one for each thread
thread_local MessageHook* current = nullptr;

} // namespace

MessageHook::MessageHook(Taker taker)
    : taker_(std::move(taker))
    , hook_(SetWindowsHookExW(WH_GETMESSAGE, &MessageHook::OnTaken, nullptr, GetCurrentThreadId())) {
    current = this;
}

MessageHook::~MessageHook() {
    current = nullptr;
    UnhookWindowsHookEx(hook_);
}

LRESULT CALLBACK MessageHook::OnTaken(int code, WPARAM wParam, LPARAM lParam) noexcept {
    // A message that is only looked at comes again.
    if (code == HC_ACTION && wParam == PM_REMOVE && current != nullptr) {
        auto& message = *reinterpret_cast<MSG*>(lParam);
        bool isTaken = false;
        com::Attempt([&] { isTaken = current->taker_(message); });
        if (isTaken) {
            message.message = WM_NULL;
        }
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

} // namespace view
