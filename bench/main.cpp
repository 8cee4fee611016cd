// tambench: a host without a drawing, on the command line.

#include "bench/CommandLine.h"
#include "bench/Commands.h"
#include "bench/Output.h"
#include "bench/Run.h"
#include "bench/Text.h"
#include "check/Program.h"
#include "com/Boundary.h"
#include "com/Dll.h"
#include "diff/Program.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <string>

namespace {

/// The status of a run that an exception ended. For the two that compare and judge, 1 is an
/// answer.
int StatusOfFailure(const std::string& command) {
    return command == "check" ? check::kUnreadable : command == "diff" ? diff::kTrouble : bench::kFailed;
}

} // namespace

int main() {
    // All texts are UTF-8, with the line ends that they have; a console gets characters
    // (Output.cpp), so its code page stays the user's.
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    // The bench attends to the component itself: it answers the boxes, counts them, and types
    // into the dialogs. Of what is not shown it would know nothing.
    SetEnvironmentVariableW(L"O_TAM_ID_UNATTENDED", nullptr);
    int status = bench::kFailed;
    std::string command;
    const auto failure = com::Attempt([&] {
        com::ThisDll().Attach(GetModuleHandleW(nullptr));
        if (const auto options = bench::ReadCommandLine(status)) {
            command = options->command;
            status = options->command == "check"  ? bench::CheckDocuments(*options)
                     : options->command == "diff" ? bench::CompareDocuments(*options)
                                                  : bench::Run(*options);
        }
    });
    if (failure) {
        bench::Complain("tambench: " + bench::Hex(failure->code) + " " + bench::Utf8(failure->Description()) +
                        "\n");
        status = StatusOfFailure(command);
    }
    return status;
}
