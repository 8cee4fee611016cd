#pragma once

#include "com/LateBound.h"

#include <windows.h>

#include <activscp.h>

#include <span>
#include <string>

namespace benchmark {

/// A script in this process, run by the system's VBScript engine: what a user
/// would write with the DOM in place of the component. Hosted here, so that its
/// time is measured with the same clock and without a process's start.
class Script {
  public:
    /// Throws when the engine is missing or the text does not parse.
    explicit Script(const std::wstring& text);
    ~Script();
    Script(const Script&) = delete;
    Script& operator=(const Script&) = delete;

    /// Calls a procedure. A failure in the script ends the program's run.
    com::Variant Call(const std::wstring& procedure, std::span<VARIANT> arguments = {}) const;

  private:
    com::Ref<IActiveScript> engine_;
    com::Ref<IDispatch> procedures_;
};

/// A text argument that stays the caller's.
VARIANT Argument(const com::Bstr& text) noexcept;
VARIANT Argument(IDispatch* object) noexcept;
VARIANT Argument(long number) noexcept;

} // namespace benchmark
