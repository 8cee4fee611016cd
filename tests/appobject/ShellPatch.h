#pragma once

#include "tests/support/ImportPatch.h"

#include <windows.h>

#include <string>
#include <vector>

namespace modules {

/// What the component asked the shell for.
struct ShellCall {
    HWND owner = nullptr;
    std::string verb;
    std::string file;
    std::string parameters;
    std::string folder;
    int show = 0;
};

/// Stands in the place of the shell's open operation in one DLL, keeps each
/// call and answers it as told: no viewer starts, and every answer can be had.
class ShellPatch {
  public:
    explicit ShellPatch(HMODULE dll);
    ~ShellPatch();
    ShellPatch(const ShellPatch&) = delete;
    ShellPatch& operator=(const ShellPatch&) = delete;

    int answer = 42;
    std::vector<ShellCall> calls;

  private:
    static HINSTANCE WINAPI Execute(HWND owner, LPCSTR verb, LPCSTR file, LPCSTR parameters, LPCSTR folder,
                                    INT show);

    support::ImportPatch patch_;
};

} // namespace modules
