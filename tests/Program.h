#pragma once

#include "tests/Wine.h"

#include <windows.h>

#include <string>

namespace tests {

/// A program that a test starts. If it cannot be started, the test has failed.
class Program {
  public:
    struct Start {
        STARTUPINFOW info{};            ///< without its size
        DWORD flags = WithoutConsole(); ///< of CreateProcess
        bool inherits = false;
    };

    /// The status of a program that was not started, or that had to be ended.
    static constexpr DWORD kNoStatus = ~DWORD{0};

    explicit Program(std::wstring commandLine);
    Program(std::wstring commandLine, Start start);
    /// Leaves a program that runs alone.
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// Nothing if it was not started.
    HANDLE Process() const noexcept { return process_.hProcess; }
    DWORD Id() const noexcept { return process_.dwProcessId; }
    /// Lets one run that was started with CREATE_SUSPENDED.
    void Resume() const;
    /// The exit status. A program that has not ended after that many milliseconds is
    /// ended, and the test has failed.
    DWORD Wait(DWORD milliseconds) const;

  private:
    std::wstring commandLine_;
    PROCESS_INFORMATION process_{};
};

} // namespace tests
