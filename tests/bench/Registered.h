#pragma once

#include "tests/bench/BenchRun.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace benchtest {

/// Both DLLs registered for the machine for as long as this lives.
class Registered {
  public:
    Registered() { Run({L"/s"}); }
    ~Registered() { Run({L"/s", L"/u"}); }
    Registered(const Registered&) = delete;
    Registered& operator=(const Registered&) = delete;

  private:
    static void Run(const std::vector<std::wstring>& options) {
        for (const wchar_t* const dll : {L"O_Tam_id.dll", L"OrvHost.dll"}) {
            std::vector<std::wstring> arguments = options;
            arguments.push_back(ProgramFolder() + dll);
            EXPECT_EQ(0U, RunProgram(L"regsvr32.exe", arguments).status) << Narrow(dll);
        }
    }
};

} // namespace benchtest
