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
#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
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
With several streams the command goes on behind one that fails; the status is 1 when any did.)";

constexpr const char* kKeysHelp = R"(

KEYS are characters that stand for themselves, and keys by name in braces:
  {ENTER} {ESC} {TAB} {SPACE} {BACKSPACE} {DEL} {LEFT} {RIGHT} {UP} {DOWN} {HOME} {END}
  {PGUP} {PGDN} {F2} {F4}
  {TAB 3}       the same key three times
  {ALT+i}       the control whose underlined character is i
  {{} {}}       the braces themselves
Each key goes to the window that has the focus by then. Message boxes get none: they are
printed and answered with OK, as always. At the end all keys must have been typed and all
dialogs closed; else the run fails and says what was left.)";

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

/// Newer versions of the parser take no argument whose name has a "=" in it.
/// They get the form with a "_" there; people read the form as it is.
constexpr std::string_view kFormOfParser = "NAME_VALUE";
constexpr const char* kJsonHelp = "Print one JSON document instead of text";
constexpr const char* kCommonGroup = "Options of every command";
constexpr std::string_view kForm = "NAME=VALUE";

std::string Exchanged(std::string text, std::string_view from, std::string_view to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

/// The columns of an option's name in the help; its description stands behind them.
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

void AddExamples(CLI::App& command, const std::string& examples) {
    command.footer("\nExamples\n" + examples);
}

void Refuse(const std::string& text, const std::string& form) {
    throw CLI::ValidationError("\"" + text + "\" is not of the form " + form);
}

/// A name that is to have a channel's key before it.
void CheckKey(const std::string& name, const std::string& text, const std::string& form) {
    const std::size_t mark = name.find('.');
    if (mark == std::string::npos || mark == 0 || mark + 1 == name.size()) {
        Refuse(text, form);
    }
}

void TakeValues(const std::vector<std::string>& texts, const std::string& form, Options& options) {
    for (const std::string& text : texts) {
        const std::size_t mark = text.find('=');
        if (mark == std::string::npos || mark == 0) {
            Refuse(text, form);
        }
        const std::string name = text.substr(0, mark);
        if (form.starts_with("KEY.")) {
            CheckKey(name, text, form);
        }
        options.values.emplace_back(Wide(name), Wide(text.substr(mark + 1)));
    }
}

/// An argument is a value when it has a "=" and is no file.
void TakeStreams(const std::vector<std::string>& texts, bool withValues, Options& options) {
    std::vector<std::string> values;
    for (const std::string& text : texts) {
        if (withValues && text.find('=') != std::string::npos && !IsFile(Wide(text))) {
            values.push_back(text);
        } else {
            options.streams.push_back(Wide(text));
        }
    }
    TakeValues(values, std::string(kForm), options);
    if (options.streams.empty()) {
        throw CLI::ValidationError("STREAM is required");
    }
    options.stream = options.streams.front();
}

/// What stands before and behind the commands, and the options of all of them.
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
    return Exchanged(error.what(), kFormOfParser, kForm);
}

} // namespace

CommandSyntax CommandSyntax::Command(const std::string& name, const std::string& help,
                                     const std::string& examples) {
    CLI::App& command = *app_->add_subcommand(name, help);
    AddExamples(command, examples);
    CommandSyntax syntax(command, *options_);
    syntax.Common();
    return syntax;
}

CommandSyntax CommandSyntax::DocumentCommand(const std::string& name, const std::string& help,
                                             const std::string& examples) {
    CLI::App& command = *app_->add_subcommand(name, help);
    AddExamples(command, examples);
    CommandSyntax syntax(command, *options_);
    syntax.Text(
        "--catalogue", options_->catalogue,
        "SNVT catalogue; without it the nearest catalogue.xml, from the folder of the document upwards, "
        "then beside the program",
        "FILE");
    syntax.Flag("--json", options_->json, kJsonHelp);
    return syntax;
}

CommandSyntax CommandSyntax::Group(const std::string& name, const std::string& help,
                                   const std::string& examples) {
    CommandSyntax group = Command(name, help, examples);
    group.app_->require_subcommand(1);
    return group;
}

void CommandSyntax::WhenChosen(std::function<void()> action) {
    app_->callback(std::move(action));
}

void CommandSyntax::Argument(const std::string& name, std::wstring& target, const std::string& help) {
    Text(name, target, help);
    app_->get_option(name)->required();
}

void CommandSyntax::Text(const std::string& name, std::wstring& target, const std::string& help,
                         const std::string& form) {
    app_->add_option_function<std::string>(
            name, [&target](const std::string& value) { target = Wide(value); }, help)
        ->type_name(name.starts_with("-") ? form : "");
}

void CommandSyntax::Flag(const std::string& name, bool& target, const std::string& help) {
    app_->add_flag(name, target, help);
}

void CommandSyntax::Names(const std::string& name, const std::string& form, std::vector<std::wstring>& target,
                          const std::string& help) {
    const bool haveKeys = form.starts_with("KEY.");
    CLI::Option* const option = app_->add_option_function<std::vector<std::string>>(
        name,
        [&target, form, haveKeys](const std::vector<std::string>& names) {
            for (const std::string& given : names) {
                if (haveKeys) {
                    CheckKey(given, given, form);
                }
                target.push_back(Wide(given));
            }
        },
        help);
    option->type_name(form);
    if (haveKeys) {
        option->allow_extra_args(false); // what follows may be a value to set
    }
}

void CommandSyntax::Keys() {
    app_->add_option_function<std::string>(
            "--keys",
            [&options = *options_](const std::string& text) {
                options.keyText = Wide(text);
                try {
                    options.keys = ReadKeys(options.keyText);
                } catch (const KeysError& error) {
                    throw CLI::ValidationError(std::string("--keys: ") + error.what());
                }
            },
            "Type this into the dialog, and into those that it opens")
        ->type_name("KEYS");
    app_->footer(app_->get_footer() + kKeysHelp);
}

void CommandSyntax::Values(const std::string& form, bool areRequired) {
    app_->add_option_function<std::vector<std::string>>(
            Exchanged(form, kForm, kFormOfParser),
            [&options = *options_, form](const std::vector<std::string>& texts) {
                TakeValues(texts, form, options);
            },
            "Values as they are stored: numbers with a point, an enumeration by its number")
        ->type_name("")
        ->required(areRequired);
}

void CommandSyntax::Stream() {
    Argument("STREAM", options_->stream, "Device stream: a file, \"-\", or the name of a sample");
}

void CommandSyntax::Streams(const std::string& ending, bool withValues) {
    app_->add_option_function<std::vector<std::string>>(
            "STREAM",
            [&options = *options_, ending, withValues](const std::vector<std::string>& texts) {
                options.outEnding = ending;
                TakeStreams(texts, withValues, options);
            },
            withValues ? "Device streams: files, \"-\", folders, or names of samples; and, of the form "
                         "NAME=VALUE, values to set after loading"
                       : "Device streams: files, \"-\", folders, or names of samples")
        ->type_name("")
        ->required();
    Text("--out", options_->outFolder, "Folder for the results of several streams, made when it is missing",
         "FOLDER");
}

void CommandSyntax::Output(const std::string& help) {
    Text("-o,--output", options_->output, help, "FILE");
}

void CommandSyntax::Common() {
    app_->option_defaults()->group(kCommonGroup);
    Text("--catalogue", options_->catalogue,
         "SNVT catalogue; without it catalogue.xml beside the program or in a folder samples", "FILE");
    Text("--definition", options_->definition,
         "Name given to Init: the definition is NAME.xml beside the component (O_Tam_id)", "NAME");
    Flag("--us", options_->usUnits, "Show values in US units");
    Flag("--wire", options_->wire,
         "Wire each input to what its reference in the stream names, as a drawing would");
    Flag("--json", options_->json, kJsonHelp);
    Flag("--interactive", options_->interactive, "Leave boxes and dialogs to the user");
    Flag("--tolerate-boxes", options_->tolerateBoxes, "Take a command as done whose boxes report a fault");
    app_->option_defaults()->group("Options");
}

void CommandSyntax::Placing() {
    Text("--name", options_->userName, "The user's name for the module");
    app_->add_option("--at", options_->position, "Position on the drawing (0 0)")
        ->expected(2)
        ->type_name("X Y");
}

void CommandSyntax::NoCompiler() {
    Flag("--no-compiler", options_->noCompiler, "As on a machine without the database compiler");
}

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
            status = Print(Folded(Exchanged(help.str(), kFormOfParser, kForm), OutputScreen().width))
                         ? kDone
                         : kFailed;
        } else {
            Complain("tambench: " + Complaint(app, error) +
                     "\nTry tambench --help, or tambench COMMAND --help.\n");
        }
        return std::nullopt;
    }
    return options;
}

} // namespace bench
