#include "bench/Commands.h"
#include "bench/Output.h"
#include "bench/Text.h"
#include "check/Program.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <string>

namespace bench {

int CheckDocuments(const Options& options) {
    check::ProgramOptions run;
    run.program = "tambench";
    run.programFolder = ProgramFolder();
    run.catalogue = options.catalogue;
    run.listsRules = options.listsRules;
    run.schemas = options.schemas;
    run.outFolder = options.outFolder;
    run.inputs.assign(options.files.begin(), options.files.end());
    if (!options.format.empty() && !check::ReadFormat(Utf8(options.format), run.format)) {
        Complain("tambench: there is no format " + Utf8(options.format) + "; text, json or sarif\n");
        return kWrongUsage;
    }
    if (!options.jobs.empty() && !check::ReadJobs(Utf8(options.jobs), run.jobs)) {
        Complain("tambench: --jobs takes a number, not \"" + Utf8(options.jobs) + "\"\n");
        return kWrongUsage;
    }
    if (options.json) {
        run.format = check::Format::Json;
    }
    if (const std::string fault = check::UsageFault(run); !fault.empty()) {
        Complain("tambench: " + fault + "\nTry tambench check --help.\n");
        return kWrongUsage;
    }
    _setmode(_fileno(stdin), _O_BINARY);
    bool isPrinted = true;
    run.print = [&](const std::string& text) { isPrinted = isPrinted && Print(text); };
    run.complain = [](const std::string& text) { Complain(text); };
    run.hasColour = OutputScreen().isColoured;
    if (ErrorScreen().isTerminal) {
        run.showProgress = ShowProgress;
        run.width = ErrorScreen().width;
    }
    const int status = check::RunProgram(run);
    return isPrinted ? status : check::kUnreadable;
}

} // namespace bench
