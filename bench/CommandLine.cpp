#include "bench/CommandLine.h"

#include "batch/Inputs.h"
#include "bench/CommandSyntax.h"
#include "bench/Output.h"
#include "bench/Samples.h"
#include "bench/Table.h"
#include "bench/Text.h"

#include <CLI/CLI.hpp>

#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

namespace bench {

namespace {

constexpr const char* kAbout =
    "A host without a drawing for the component O_Tam_id.dll: activates it beside this program (nothing has "
    "to be registered), lends it the host services of OrvHost.dll and shows what it answers.";

constexpr const char* kClosing = R"(
Start with
  tambench inspect full             what a module is: its inputs, outputs and attributes
  tambench set channels AI1_Offset=1.5
  tambench export full              the database image that a controller gets
  tambench device tree              a device: the module and the objects of its channels
  tambench COMMAND --help           what a command does, with examples

STREAM is the file of a device stream, "-" for the standard input, or the name of a sample:
channels, full, oddities, missing_name, damaged, duplicate_attribute. Where several may
stand, a folder stands for all .xml files below it.

Message boxes, error reports and dialogs that the component shows are read, printed and
answered with OK; --keys types into the dialogs of edit and rename, and --interactive leaves
all of them to you.

Files are written beside and put in place when they are whole: when a command fails, the old
file stands there as it was. A box with a fault does not end a command: what the command was
told to write is written, and the exit status is 1.

Exit status
  0  done
  1  a call failed, the compiler refused the module, a file or the output could not be
     written, the component kept objects alive at the end, or a dialog was not closed by its
     OK or by the keys typed into it; and, unless --tolerate-boxes is given, the component
     reported a fault: in an error report or in a message box, of whatever sign, that the
     command line did not ask for
  2  wrong usage
With several streams the command goes on after one that fails; the status is 1 when any did.)";

std::vector<std::string> Arguments() {
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) {
        arguments.push_back(Utf8(wide[i]));
    }
    LocalFree(wide);
    return arguments;
}

/// The columns of an option's name in the help; its description comes after them.
constexpr std::size_t kNameColumns = 30;
constexpr const char* kNoName = "                              ";

/// A help text whose descriptions go on below each other where the screen ends.
std::string Folded(const std::string& help, std::size_t width) {
    std::string text;
    std::istringstream lines(help);
    for (std::string line; std::getline(lines, line);) {
        const bool isOption = line.starts_with("  -") && line.size() > kNameColumns;
        const bool isArgument =
            line.size() > kNameColumns && line.starts_with("  ") && line[kNameColumns - 1] == ' ';
        if (Width(line) <= width || !(isOption || isArgument)) {
            text += line + "\n";
            continue;
        }
        text += line.substr(0, kNameColumns);
        const char* indent = "";
        for (const std::string& part : Wrap(line.substr(kNameColumns), width - kNameColumns)) {
            text += indent + part + "\n";
            indent = kNoName;
        }
    }
    return text;
}

/// What stands before and after the commands, and the options of all of them.
void SetUp(CLI::App& app, Options& options) {
    app.footer(kClosing);
    app.allow_windows_style_options(false); // "/tmp/project.xml" is a file
    app.require_subcommand(1);
    app.fallthrough();
    app.get_formatter()->column_width(kNameColumns);
    app.set_help_flag("-h,--help", "This text, or that of a command");
    app.set_version_flag("--version", "tambench " TAM_BENCH_VERSION, "The version of this program");
    CommandSyntax program(app, options);
    program.Common();
    AddModuleCommands(program, options);
    AddDeviceCommands(program, options);
}

/// Options that exclude each other.
void CheckTogether(const Options& options) {
    if (options.interactive && !options.keyText.empty()) {
        throw CLI::ValidationError("--keys excludes --interactive: one types into the dialogs, the other "
                                   "leaves them to you");
    }
    if (!options.outFolder.empty() && !options.output.empty()) {
        throw CLI::ValidationError("-o names one file and --out a folder for several: give one of them");
    }
    if (IsForMany(options) && !options.output.empty()) {
        throw CLI::ValidationError("-o names one file: several streams need --out FOLDER");
    }
    if (options.command == "sheet" && options.output.empty() && options.outFolder.empty()) {
        throw CLI::ValidationError("a sheet is a file: name it with -o, or a folder with --out");
    }
    if (options.command == "device sheet" && options.output.empty()) {
        throw CLI::ValidationError("a sheet is a file: name it with -o");
    }
}

/// What is wrong with the command line. A word that is no command is all that
/// the parser leaves over when it says that a command is missing.
std::string Complaint(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<std::string> left = app.remaining();
    if (app.get_subcommands().empty() && !left.empty()) {
        return (left.front().starts_with('-') ? "there is no option " : "there is no command ") +
               left.front();
    }
    return FormAsRead(error.what());
}

} // namespace

std::vector<std::filesystem::path> StreamPaths(const Options& options) {
    std::vector<std::filesystem::path> paths;
    for (const std::wstring& stream : options.streams) {
        const std::wstring sample = SampleStream(stream);
        std::error_code none;
        // Beside the program lies a folder with the name of a sample.
        const bool isFolder = std::filesystem::is_directory(stream, none);
        paths.emplace_back(isFolder && !sample.empty() ? sample : stream);
    }
    return paths;
}

bool IsForMany(const Options& options) {
    return !options.outFolder.empty() || batch::IsMany(StreamPaths(options));
}

std::optional<Options> ReadCommandLine(int& status) {
    Options options;
    CLI::App app(kAbout, "tambench");
    SetUp(app, options);
    std::vector<std::string> arguments = Arguments();
    if (arguments.empty()) {
        arguments.emplace_back("--help");
    }
    std::reverse(arguments.begin(), arguments.end());
    try {
        app.parse(arguments);
        CheckTogether(options);
    } catch (const CLI::ParseError& error) {
        status = error.get_exit_code() == 0 ? kDone : kWrongUsage;
        if (status == kDone) {
            std::ostringstream help;
            app.exit(error, help, help);
            status = Print(Folded(FormAsRead(help.str()), OutputScreen().width)) ? kDone : kFailed;
        } else {
            Complain("tambench: " + Complaint(app, error) +
                     "\nTry tambench --help, or tambench COMMAND --help.\n");
        }
        return std::nullopt;
    }
    return options;
}

} // namespace bench
