#include "bench/CommandSyntax.h"

#include "bench/Samples.h"
#include "bench/Text.h"

#include <CLI/CLI.hpp>

#include <cstddef>
#include <string_view>
#include <utility>

namespace bench {

namespace {

/// Newer versions of the parser take no argument whose name has a "=" in it.
/// They get the form with a "_" there; people read the form as it is.
constexpr std::string_view kFormOfParser = "NAME_VALUE";
constexpr std::string_view kForm = "NAME=VALUE";
constexpr const char* kJsonHelp = "Print one JSON document instead of text";
constexpr const char* kCommonGroup = "Options of every command";

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

std::string Exchanged(std::string text, std::string_view from, std::string_view to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
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

} // namespace

std::string FormAsRead(std::string text) {
    return Exchanged(std::move(text), kFormOfParser, kForm);
}

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

} // namespace bench
