// tambench: a host without a drawing, on the command line.

#include "bench/CommandLine.h"
#include "bench/Commands.h"
#include "bench/Output.h"
#include "bench/Run.h"
#include "bench/Text.h"
#include "com/Boundary.h"
#include "com/Dll.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>

int main() {
    // All texts are UTF-8, with the line ends that they have.
    SetConsoleOutputCP(CP_UTF8);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    int status = bench::kFailed;
    const auto failure = com::Attempt([&] {
        com::ThisDll().Attach(GetModuleHandleW(nullptr));
        if (const auto options = bench::ReadCommandLine(status)) {
            status = options->command == "check"  ? bench::CheckDocuments(*options)
                     : options->command == "diff" ? bench::CompareDocuments(*options)
                                                  : bench::Run(*options);
        }
    });
    if (failure) {
        bench::Complain("tambench: " + bench::Hex(failure->code) + " " + bench::Utf8(failure->Description()) +
                        "\n");
        status = bench::kFailed;
    }
    return status;
}
