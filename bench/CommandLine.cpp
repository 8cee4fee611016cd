#include "bench/CommandLine.h"

#include "bench/Text.h"

#include <CLI/CLI.hpp>

#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <cstdio>
#include <sstream>

namespace bench {

namespace {

constexpr const char* kAbout =
    "A host without a drawing for the component O_Tam_id.dll: activates it beside this program (nothing has "
    "to be "
    "registered), lends it the host services of OrvHost.dll and shows what it answers.";

constexpr const char* kClosing = R"(
Start with
  tambench inspect full             what a module is: its inputs, outputs and attributes
  tambench set channels AI1_Offset=1.5
  tambench export full              the database image that a controller gets
  tambench device tree              a device: the module and the objects of its channels
  tambench COMMAND --help           what a command does, with examples

STREAM is the file of a device stream, or the name of a sample: channels, full, oddities,
missing_name, damaged, duplicate_attribute.

Message boxes, error reports and dialogs that the component shows are read, printed and
answered with OK; --keys types into the dialogs of edit and rename, and --interactive leaves
all of them to you.

Exit status
  0  done; message boxes may have been shown and are listed
  1  a call failed, the component showed an error report, it kept objects alive at the end,
     or a dialog was not closed by its OK or by the keys typed into it
  2  wrong usage)";

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

/// Builds the parser over the options that it fills.
class Parser {
  public:
    explicit Parser(Options& options) : options_(options), app_(kAbout, "tambench") {
        app_.footer(kClosing);
        app_.allow_windows_style_options(false); // "/tmp/project.xml" is a file
        app_.require_subcommand(1);
        app_.fallthrough();
        app_.get_formatter()->column_width(30);
        app_.set_help_flag("-h,--help", "This text, or that of a command");
        Text(app_, "--catalogue", options_.catalogue,
             "SNVT catalogue; without it catalogue.xml beside the program or in a folder samples");
        Text(app_, "--definition", options_.definition,
             "Name given to Init: the definition is NAME.xml beside the component (O_Tam_id)");
        app_.add_flag("--us", options_.usUnits, "Show values in US units");
        app_.add_flag("--wire", options_.wire,
                      "Wire each input to what its reference in the stream names, as a drawing would");
        app_.add_flag("--json", options_.json, "Print one JSON document instead of text");
        app_.add_flag("--interactive", options_.interactive, "Leave boxes and dialogs to the user");
        AddReading();
        AddProject();
        AddPoints();
        AddServices();
        AddDevice();
    }

    CLI::App& App() { return app_; }

  private:
    static void Text(CLI::App& app, const std::string& name, std::wstring& target, const std::string& help) {
        app.add_option_function<std::string>(
               name, [&target](const std::string& value) { target = Wide(value); }, help)
            ->type_name(name.starts_with("--") ? "TEXT" : "");
    }

    static void Examples(CLI::App& command, const std::string& examples) {
        command.footer("\nExamples\n" + examples + "\n\nOptions of all commands: see tambench --help");
    }

    CLI::App& Command(const std::string& name, const std::string& help, const std::string& examples) {
        CLI::App& command = *app_.add_subcommand(name, help);
        Examples(command, examples);
        command.callback([this, name] { options_.command = name; });
        return command;
    }

    /// A command of the group "device"; the device's module is the sample's.
    CLI::App& DeviceCommand(CLI::App& group, const std::string& name, const std::string& help,
                            const std::string& examples) {
        CLI::App& command = *group.add_subcommand(name, help);
        Examples(command, examples);
        Text(command, "--firmware", options_.firmware,
             "Firmware version of the device (V2_10); V1_00 and V3_00 have no channel objects");
        command.callback([this, name] {
            options_.command = "device " + name;
            options_.stream = L"channels";
        });
        return command;
    }

    /// One that works with the channels that a project names, or with new ones.
    CLI::App& ChannelsCommand(CLI::App& group, const std::string& name, const std::string& help,
                              const std::string& examples) {
        CLI::App& command = DeviceCommand(group, name, help, examples);
        Text(command, "--project", options_.project,
             "Open the device as this project saved it; without it with a new channel of each kind");
        return command;
    }

    CLI::App& StreamCommand(const std::string& name, const std::string& help, const std::string& examples) {
        CLI::App& command = Command(name, help, examples);
        Argument(command, "STREAM", options_.stream, "Device stream: a file or the name of a sample");
        return command;
    }

    static void Argument(CLI::App& app, const std::string& name, std::wstring& target,
                         const std::string& help) {
        Text(app, name, target, help);
        app.get_option(name)->required();
    }

    /// The option that types into the command's dialogs.
    void Keys(CLI::App& app) {
        app.add_option_function<std::string>(
               "--keys",
               [this](const std::string& text) {
                   options_.keyText = Wide(text);
                   try {
                       options_.keys = ReadKeys(options_.keyText);
                   } catch (const KeysError& error) {
                       throw CLI::ValidationError(std::string("--keys: ") + error.what());
                   }
               },
               "Type this into the dialog, and into those that it opens")
            ->type_name("KEYS")
            ->excludes(app_.get_option("--interactive"));
        app.footer(app.get_footer() + kKeysHelp);
    }

    void Output(CLI::App& app, const std::string& help) { Text(app, "-o,--output", options_.output, help); }

    void AddReading() {
        StreamCommand("inspect",
                      "Load a stream and show the module: what it is, and its inputs, outputs and attributes",
                      "  tambench inspect full\n"
                      "  tambench inspect full --us             values in US units\n"
                      "  tambench inspect channels --wire       with its own outputs wired to its inputs\n"
                      "  tambench inspect oddities              a stream with faults: see the boxes");
        CLI::App& types = Command("types", "List the network variable types of the catalogue",
                                  "  tambench types --filter temp\n"
                                  "  tambench types --filter Enum --json    enumerations with their values");
        Text(types, "--filter", options_.filter,
             "Only types with this text in their number, name, kind or unit");
    }

    void AddProject() {
        CLI::App& save = StreamCommand("save", "Load a stream and save the module into a project document",
                                       "  tambench save channels -o project.xml\n"
                                       "  tambench save channels --name \"Reading room 2\" --at 12.5 4");
        Output(save, "File for the project; without it the saved element is only shown");
        Placing(save);
        save.add_option_function<std::vector<std::string>>(
                "--display",
                [this](const std::vector<std::string>& names) { Take(names, options_.displayed); },
                "Outputs that the host shows in its displays")
            ->type_name("NAME");

        CLI::App& load = StreamCommand(
            "load", "Load a stream, then what a project saved of the module; show what that changed",
            "  tambench save channels --name \"Reading room 2\" --at 12.5 4 -o project.xml\n"
            "  tambench load channels project.xml");
        Argument(load, "PROJECT", options_.project, "Project document, as save writes it");

        CLI::App& interop = StreamCommand("interop", "Write the module's description for other tools",
                                          "  tambench interop channels\n"
                                          "  tambench interop full -o interop.xml");
        Output(interop, "File for the document; without it the document is shown");

        CLI::App& exporting =
            StreamCommand("export", "Compile the module into its database image and show its sizes",
                          "  tambench export full\n"
                          "  tambench export full --wire            with connected inputs\n"
                          "  tambench export channels --no-compiler the component's own export document");
        Output(exporting, "File for the stream that the component answers");
        NoCompiler(exporting);
        exporting.add_flag("--debug-dump", options_.debugDump,
                           "Set DEBUG=1, so that the component keeps its export document in C:\\");
    }

    void AddPoints() {
        CLI::App& set =
            StreamCommand("set", "Set values of attributes or inputs and show what becomes of them",
                          "  tambench set channels AI1_Offset=1.5 AO1_Setup=2\n"
                          "  tambench set channels AI1_Offset=1.5 --us\n"
                          "  tambench set channels DO1_In1=DI1_Out  the value of an input is its link");
        Values(set, "NAME=VALUE")->required();

        StreamCommand("clear-refs",
                      "Clear the references of all inputs and show their values before and after",
                      "  tambench clear-refs full --wire");

        CLI::App& contains =
            StreamCommand("contains", "Ask whether the module holds the points of a channel object",
                          "  tambench contains oddities K8 AI6       yes\n"
                          "  tambench contains oddities K8 AI1       no: its points lack the mark");
        Argument(contains, "DEVICEKEY", options_.deviceKey, "Key of the device that the object belongs to");
        Argument(contains, "OBJECTKEY", options_.objectKey, "Key of the object inside the module");

        CLI::App& edit = StreamCommand(
            "edit", "Open the value editor of an attribute, as a double click in a host does",
            "  tambench edit channels AI1_Offset --interactive\n"
            "  tambench edit channels AI1_Offset --keys \"1.5{ENTER}\"\n"
            "  tambench edit channels AO1_Setup --keys \"{DOWN 2}{ENTER}\"   two entries further\n"
            "  tambench edit channels AI1_Offset --keys \"{TAB}{SPACE}{ENTER}\"\n"
            "                                         ticks the invalid value");
        Argument(edit, "ATTRIBUTE", options_.attribute, "Name of the attribute");
        Keys(edit);
    }

    void AddServices() {
        CLI::App& icon =
            Command("icon", "Show which picture the module has", "  tambench icon -o module.ico");
        Output(icon, "File for the picture");
        CLI::App& datasheet = Command("datasheet", "Tell whether the module has a data sheet",
                                      "  tambench datasheet\n  tambench datasheet --open");
        datasheet.add_flag("--open", options_.open, "Have the component open it in the machine's viewer");
        Command("about", "Show the component's about box", "  tambench about");
        CLI::App& rename =
            Command("rename", "Open the dialog that names a device, and show what the user chose",
                    "  tambench rename Tam_1                  confirmed as it is\n"
                    "  tambench rename Tam_1 --keys \"{END}{BACKSPACE}2{ENTER}\"\n"
                    "  tambench rename Tam_1 --keys \"{ESC}\"   cancelled\n"
                    "  tambench rename --keys \"1st{ENTER}{ESC}\"   refused: see the box");
        Text(rename, "NAME", options_.deviceName, "Name that stands in the dialog at first");
        Text(rename, "--key", options_.deviceKey, "Key of the device, kept for the caller");
        Keys(rename);
    }

    void AddDevice() {
        CLI::App& group = *app_.add_subcommand(
            "device", "Work with a sample device: a module and the objects of its channels");
        group.require_subcommand(1);
        Examples(
            group,
            "  tambench device tree\n"
            "  tambench device set AI1 Offset=1.5             the module's AI1_Offset follows\n"
            "  tambench device save AI1.Offset=1.5 -o device.xml\n"
            "  tambench device export --project device.xml\n\n"
            "The device is K7. Its module is loaded from the sample stream \"channels\"; a channel is an\n"
            "object of its own, known by its key: AI1, AO1, DI1, DO1, CTX1. A point of a channel and the\n"
            "module's item named KEY_POINT belong together: AI1_Offset is the offset of AI1. Every run\n"
            "opens the device anew; what is to last is saved and opened with --project.");

        ChannelsCommand(group, "tree", "Open the device and show the points of its module and channels",
                        "  tambench device tree\n"
                        "  tambench device tree --us                 values in US units\n"
                        "  tambench device tree --project device.xml as a project saved it\n"
                        "  tambench device tree --firmware V1_00     fails: no channel objects");
        CLI::App& place = ChannelsCommand(
            group, "place", "Place one more channel and show what its object is",
            "  tambench device place ai AI2              an analogue input\n"
            "  tambench device place o_tam_do_id DO2     the same by identifier, in any letter case");
        Argument(place, "KIND", options_.kind, "Kind of channel: ai, ao, di, do, ctx, or an identifier");
        Argument(place, "KEY", options_.objectKey, "Key for the new channel");
        CLI::App& fetch =
            ChannelsCommand(group, "fetch", "Get a channel's data from the device",
                            "  tambench device fetch AI1                 Channel and Setup are filled\n"
                            "  tambench device fetch CTX1                has neither: nothing changes");
        ObjectKey(fetch);
        CLI::App& set =
            ChannelsCommand(group, "set", "Set values of a channel's points and show the items of the module",
                            "  tambench device set AI1 Offset=1.5 Filter=4\n"
                            "  tambench device set DO1 In1=DI1_Out       the value of an input is its link");
        ObjectKey(set);
        Values(set, "NAME=VALUE")->required();
        CLI::App& save =
            ChannelsCommand(group, "save", "Save the module and its channels into one project",
                            "  tambench device save -o device.xml\n"
                            "  tambench device save AI1.Filter=4 --fetch --display AI1.Out -o device.xml\n"
                            "  tambench device save --project device.xml AO1.Gain=2 -o changed.xml");
        Output(save, "File for the project; without it the project is only shown");
        Placing(save);
        save.add_flag("--fetch", options_.fetch, "Get the data of all channels from the device first");
        save.add_option_function<std::vector<std::string>>(
                "--display",
                [this](const std::vector<std::string>& names) {
                    for (const std::string& name : names) {
                        CheckKey(name, name, "KEY.NAME");
                    }
                    Take(names, options_.displayedOfChannels);
                },
                "An output of a channel that the host shows in its displays; may be repeated")
            ->allow_extra_args(false) // what follows may be a value to set
            ->type_name("KEY.NAME");
        Values(save, "KEY.NAME=VALUE");
        CLI::App& load = DeviceCommand(
            group, "load", "Load a project: the module and the channels in it; show what that restored",
            "  tambench device save AI1.Filter=4 -o device.xml\n"
            "  tambench device load device.xml");
        Argument(load, "PROJECT", options_.project, "Project document, as device save writes it");
        CLI::App& exporting =
            ChannelsCommand(group, "export", "Compile the module of the device into its database image",
                            "  tambench device export\n"
                            "  tambench device export AI1.Offset=1.5 -o image.txt\n"
                            "  tambench device export --project device.xml");
        Output(exporting, "File for the stream that the component answers");
        Values(exporting, "KEY.NAME=VALUE");
        NoCompiler(exporting);
    }

    void ObjectKey(CLI::App& command) {
        Argument(command, "KEY", options_.objectKey, "Key of a channel: AI1, AO1, DI1, DO1 or CTX1");
    }

    CLI::Option* Values(CLI::App& command, const std::string& form) {
        return command
            .add_option_function<std::vector<std::string>>(
                form, [this, form](const std::vector<std::string>& texts) { TakeValues(texts, form); },
                "Values as they are stored: numbers with a point, an enumeration by its number")
            ->type_name("");
    }

    void NoCompiler(CLI::App& command) {
        command.add_flag("--no-compiler", options_.noCompiler,
                         "As on a machine without the database compiler");
    }

    void Placing(CLI::App& command) {
        Text(command, "--name", options_.userName, "The user's name for the module");
        command.add_option("--at", options_.position, "Position on the drawing (0 0)")
            ->expected(2)
            ->type_name("X Y");
    }

    static void Take(const std::vector<std::string>& texts, std::vector<std::wstring>& target) {
        std::transform(texts.begin(), texts.end(), std::back_inserter(target), Wide);
    }

    /// A name that is to have a channel's key before it.
    static void CheckKey(const std::string& name, const std::string& text, const std::string& form) {
        const std::size_t mark = name.find('.');
        if (mark == std::string::npos || mark == 0 || mark + 1 == name.size()) {
            throw CLI::ValidationError("\"" + text + "\" is not of the form " + form);
        }
    }

    void TakeValues(const std::vector<std::string>& texts, const std::string& form) {
        for (const std::string& text : texts) {
            const std::size_t mark = text.find('=');
            if (mark == std::string::npos || mark == 0) {
                throw CLI::ValidationError("\"" + text + "\" is not of the form " + form);
            }
            const std::string name = text.substr(0, mark);
            if (form.starts_with("KEY.")) {
                CheckKey(name, text, form);
            }
            options_.values.emplace_back(Wide(name), Wide(text.substr(mark + 1)));
        }
    }

    Options& options_;
    CLI::App app_;
};

void Print(std::FILE* file, const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), file);
}

/// What is wrong with the command line. A word that is no command is all that
/// the parser leaves over when it says that a command is missing.
std::string Complaint(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<std::string> left = app.remaining();
    if (app.get_subcommands().empty() && !left.empty()) {
        return (left.front().starts_with('-') ? "there is no option " : "there is no command ") +
               left.front();
    }
    return error.what();
}

} // namespace

std::optional<Options> ReadCommandLine(int& status) {
    Options options;
    Parser parser(options);
    std::vector<std::string> arguments = Arguments();
    if (arguments.empty()) {
        arguments.emplace_back("--help");
    }
    std::reverse(arguments.begin(), arguments.end());
    try {
        parser.App().parse(arguments);
    } catch (const CLI::ParseError& error) {
        status = error.get_exit_code() == 0 ? kDone : kWrongUsage;
        if (status == kDone) {
            std::ostringstream help;
            parser.App().exit(error, help, help);
            Print(stdout, help.str());
        } else {
            Print(stderr, "tambench: " + Complaint(parser.App(), error) +
                              "\nTry tambench --help, or tambench COMMAND --help.\n");
        }
        return std::nullopt;
    }
    return options;
}

} // namespace bench
