// tamcheck: what is wrong with documents, without Windows.

#include "check/Program.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace {

constexpr std::string_view kHelp = R"(Usage: tamcheck FILE|FOLDER... [OPTION...]

Says everything that is wrong with device streams, definitions, device libraries,
catalogues, projects, interoperability elements and export documents, each with line
and column. Of a folder all files below it whose names end in .xml. "-" is the
standard input.

  --catalogue FILE   the types; without it the nearest catalogue.xml, from the folder
                     of each file upwards, then beside this program
  --format FORMAT    text, json or sarif; --rules takes markdown too
  --out FOLDER       write the findings of each file there too, in a file of its own
  --jobs N           so many files at a time; 0 for as many as there are processors
  --rules            list what is looked for, and why
  --schemas FOLDER   write XML Schemas for editors into a folder
  --version, --help

Exit status: 0 nothing but notes, 1 errors or warnings, 2 wrong usage or a file that
cannot be read.
)";

struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

bool IsTerminal(int file) {
    return isatty(file) == 1;
}

unsigned ReadJobs(const std::string& text) {
    unsigned jobs = 0;
    if (!check::ReadJobs(text, jobs)) {
        throw UsageError("--jobs takes a number, not \"" + text + "\"");
    }
    return jobs;
}

/// False when help or the version was asked for.
bool ReadArguments(std::span<char*> arguments, check::ProgramOptions& options) {
    bool takesOptions = true;
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        std::string word = arguments[i];
        if (!takesOptions || word == "-" || !word.starts_with('-')) {
            options.inputs.emplace_back(word);
            continue;
        }
        std::string value;
        const std::size_t equal = word.find('=');
        const bool hasValue = equal != std::string::npos;
        if (hasValue) {
            value = word.substr(equal + 1);
            word.resize(equal);
        }
        const auto next = [&] {
            if (hasValue) {
                return value;
            }
            if (i + 1 == arguments.size()) {
                throw UsageError(word + " needs a value");
            }
            return std::string(arguments[++i]);
        };
        const auto nextPath = [&] {
            std::string path = next();
            if (path.empty()) {
                throw UsageError(word + " needs a name");
            }
            return path;
        };
        if (word == "--") {
            takesOptions = false;
        } else if (word == "--help" || word == "-h") {
            std::cout << kHelp;
            return false;
        } else if (word == "--version") {
            std::cout << "tamcheck " TAM_VERSION "\n";
            return false;
        } else if (word == "--rules") {
            options.listsRules = true;
        } else if (word == "--catalogue") {
            options.catalogue = nextPath();
        } else if (word == "--schemas") {
            options.schemas = nextPath();
        } else if (word == "--out") {
            options.outFolder = nextPath();
        } else if (word == "--jobs") {
            options.jobs = ReadJobs(next());
        } else if (word == "--format") {
            const std::string format = next();
            if (!check::ReadFormat(format, options.format)) {
                throw UsageError("there is no format " + format + "; text, json or sarif");
            }
        } else {
            throw UsageError("there is no option " + word);
        }
    }
    if (const std::string fault = check::UsageFault(options); !fault.empty()) {
        throw UsageError(fault);
    }
    return true;
}

void ShowProgress(std::string_view line) {
    std::cerr << "\r\x1b[K" << line << std::flush;
}

} // namespace

int main(int count, char** values) {
    check::ProgramOptions options;
    options.print = [](const std::string& text) { std::cout << text; };
    options.complain = [](const std::string& text) { std::cerr << text; };
    std::error_code none;
    options.programFolder = std::filesystem::read_symlink("/proc/self/exe", none).parent_path();
    options.hasColour = IsTerminal(STDOUT_FILENO) && std::getenv("NO_COLOR") == nullptr;
    if (IsTerminal(STDERR_FILENO)) {
        options.showProgress = ShowProgress;
        winsize size{};
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system has no other
        if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1) {
            options.width = size.ws_col - 1U; // a full line would be followed by an empty one
        }
    }
    try {
        if (!ReadArguments({values, static_cast<std::size_t>(count)}, options)) {
            return check::kClean;
        }
        const int status = check::RunProgram(options);
        if (!std::cout.flush()) {
            std::cerr << "tamcheck: the output could not be written\n";
            return check::kUnreadable;
        }
        return status;
    } catch (const UsageError& error) {
        std::cerr << "tamcheck: " << error.what() << "\nTry tamcheck --help.\n";
    } catch (const std::exception& error) {
        std::cerr << "tamcheck: " << error.what() << "\n";
    }
    return check::kUnreadable;
}
