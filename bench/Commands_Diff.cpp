#include "bench/Commands.h"
#include "bench/Output.h"
#include "bench/Samples.h"
#include "bench/Text.h"
#include "diff/Program.h"

#include <string>

namespace bench {

namespace {

/// A file, or the sample of this name; what is neither is a file that cannot be read.
std::wstring FileOf(const std::wstring& name) {
    if (IsFile(name)) {
        return name;
    }
    const std::wstring sample = SampleStream(name);
    return sample.empty() ? name : sample;
}

} // namespace

int CompareDocuments(const Options& options) {
    diff::ProgramOptions run;
    run.programFolder = ProgramFolder();
    run.catalogue = options.catalogue;
    run.before = FileOf(options.before);
    run.after = FileOf(options.after);
    run.isJson = options.json;
    run.hasColour = OutputScreen().isColoured;
    bool isPrinted = true;
    run.print = [&isPrinted](const std::string& text) { isPrinted = Print(text) && isPrinted; };
    run.complain = [](const std::string& text) { Complain(text); };
    const int status = diff::RunProgram(run);
    return isPrinted ? status : diff::kTrouble;
}

} // namespace bench
