#pragma once

#include <windows.h>

#include <functional>

namespace view {

/// While this lives, each message that any loop of the thread takes is offered first: what
/// the taker says yes to goes to nobody else. For the time in which other code's loop runs.
/// One per thread.
class MessageHook {
  public:
    using Taker = std::function<bool(MSG& message)>;

    explicit MessageHook(Taker taker);
    ~MessageHook();
    MessageHook(const MessageHook&) = delete;
    MessageHook& operator=(const MessageHook&) = delete;

  private:
    static LRESULT CALLBACK OnTaken(int code, WPARAM wParam, LPARAM lParam) noexcept;

    Taker taker_;
    HHOOK hook_;
};

} // namespace view
