#include "tests/Program.h"

#include <gtest/gtest.h>

#include <iostream>
#include <utility>

namespace tests {

namespace {

/// Starts a program; the answer is 0 or the system's error. commandLine is as it was afterwards.
DWORD Create(std::wstring& commandLine, Program::Start& start, PROCESS_INFORMATION& process) {
    start.info.cb = sizeof start.info;
    return CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, start.inherits ? TRUE : FALSE,
                          start.flags, nullptr, nullptr, &start.info, &process) != FALSE
               ? ERROR_SUCCESS
               : GetLastError();
}

} // namespace

Program::Program(std::wstring commandLine) : Program(std::move(commandLine), Start()) {}

Program::Program(std::wstring commandLine, Start start) : commandLine_(std::move(commandLine)) {
    DWORD error = Create(commandLine_, start, process_);
    // So Wine answers where the new process went before it ran anything of the program.
    constexpr int kTries = 5;
    for (int i = 1; i < kTries && error == ERROR_INTERNAL_ERROR && IsWine(); ++i) {
        std::cout << "Wine lost a new process; it is started again\n";
        error = Create(commandLine_, start, process_);
    }
    EXPECT_EQ(DWORD{ERROR_SUCCESS}, error) << testing::PrintToString(commandLine_) << " does not start";
}

Program::~Program() {
    if (process_.hProcess != nullptr) {
        CloseHandle(process_.hThread);
        CloseHandle(process_.hProcess);
    }
}

void Program::Resume() const {
    ResumeThread(process_.hThread);
}

DWORD Program::Wait(DWORD milliseconds) const {
    DWORD status = kNoStatus;
    if (process_.hProcess == nullptr) {
        return status;
    }
    if (WaitForSingleObject(process_.hProcess, milliseconds) != WAIT_OBJECT_0) {
        ADD_FAILURE() << testing::PrintToString(commandLine_) << " does not end";
        TerminateProcess(process_.hProcess, status);
        WaitForSingleObject(process_.hProcess, INFINITE);
    }
    GetExitCodeProcess(process_.hProcess, &status);
    return status;
}

} // namespace tests
