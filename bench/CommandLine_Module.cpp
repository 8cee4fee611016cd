#include "bench/CommandSyntax.h"

#include <string>

namespace bench {

namespace {

/// The commands that work with one module, or with none.
class ModuleCommands {
  public:
    ModuleCommands(CommandSyntax& program, Options& options) : program_(program), options_(options) {}

    void AddReading() {
        StreamCommand("inspect",
                      "Load a stream and show the module: what it is, and its inputs, outputs and attributes",
                      "  tambench inspect full\n"
                      "  tambench inspect full --us             values in US units\n"
                      "  tambench inspect channels --wire       with its own outputs wired to its inputs\n"
                      "  tambench inspect oddities              a stream with faults: see the boxes");
        CommandSyntax types =
            Command("types", "List the network variable types of the catalogue",
                    "  tambench types temp\n"
                    "  tambench types Enum --json             enumerations with their values\n"
                    "  tambench types --filter 105            the same as an option");
        types.Text("TEXT", options_.filter,
                   "Only types with this text in their number, name, kind or unit, in any letter case");
        types.Text("--filter", options_.filter, "The same");
    }

    void AddSheet() {
        CommandSyntax sheet = StreamsCommand(
            "sheet", ".html",
            "Write the device sheet, one page for browsers and paper: block, points, identity, findings",
            "  tambench sheet full -o full.html\n"
            "  tambench sheet full --us -o full.html  displayed values in US units\n"
            "  tambench sheet full --svg -o full.svg  the block alone\n"
            "  tambench sheet streams --out sheets    each stream below a folder");
        sheet.Output("File for the page");
        sheet.Flag("--svg", options_.svg, "Write the block alone, as a picture");
    }

    void AddDiff() {
        CommandSyntax diff = DocumentCommand(
            "diff", "Say what changed in meaning between two documents of one kind",
            "  tambench diff old.xml new.xml\n"
            "  tambench diff full new.xml --json      the sample full and a file\n\n"
            "Exit status: 0 nothing changed, 1 something did, 2 a file cannot be read or compared");
        diff.Argument("BEFORE", options_.before, "File, or name of a sample");
        diff.Argument("AFTER", options_.after, "File, or name of a sample");
    }

    void AddCheck() {
        CommandSyntax check = DocumentCommand(
            "check", "Say everything that is wrong with documents, with line and column",
            "  tambench check stream.xml\n"
            "  tambench check samples --format sarif  all .xml files below a folder\n"
            "  tambench check --rules                 what is looked for, and why\n"
            "  tambench check --schemas folder        write XML Schemas for editors\n\n"
            "Exit status: 0 nothing but notes, 1 errors or warnings, 2 a file cannot be read");
        check.Names("FILE", "", options_.files,
                    "Files, and folders with all .xml files below; - is the standard input");
        check.Text("--format", options_.format, "text, json or sarif; --rules takes markdown too");
        check.Text("--out", options_.outFolder,
                   "Folder that the findings of each file are written to as well, in a file of its own",
                   "FOLDER");
        check.Text("--jobs", options_.jobs, "So many files at a time; 0 for as many as there are processors",
                   "N");
        check.Flag("--rules", options_.listsRules, "List the rules");
        check.Text("--schemas", options_.schemas, "Folder that the XML Schemas are written to");
    }

    void AddProject() {
        CommandSyntax save =
            StreamsCommand("save", ".xml", "Load a stream and save the module into a project document",
                           "  tambench save channels -o project.xml\n"
                           "  tambench save channels --name \"Reading room 2\" --at 12.5 4\n"
                           "  tambench save streams --out projects   each stream below a folder");
        save.Output("File for the project; without it the saved element is only shown");
        save.Placing();
        save.Names("--display", "NAME", options_.displayed, "Outputs that the host shows in its displays");

        CommandSyntax load = StreamCommand(
            "load", "Load a stream, then what a project saved of the module; show what that changed",
            "  tambench save channels --name \"Reading room 2\" --at 12.5 4 -o project.xml\n"
            "  tambench load channels project.xml");
        load.Argument("PROJECT", options_.project, "Project document, as save writes it");

        CommandSyntax interop =
            StreamsCommand("interop", ".xml", "Write the module's description for other tools",
                           "  tambench interop channels\n"
                           "  tambench interop full AI1_Offset=1.5 -o interop.xml\n"
                           "  tambench interop streams --out descriptions");
        interop.Output("File for the document; without it the document is shown");

        CommandSyntax exporting =
            StreamsCommand("export", ".txt", "Compile the module into its database image and show its sizes",
                           "  tambench export full\n"
                           "  tambench export full --wire            with connected inputs\n"
                           "  tambench export channels AI1_Offset=1.5 -o image.txt\n"
                           "  tambench export channels --no-compiler the component's own export document\n"
                           "  tambench export a.xml b.xml --out images");
        exporting.Output("File for the stream that the component answers");
        exporting.NoCompiler();
        exporting.Flag("--debug-dump", options_.debugDump,
                       "Set DEBUG=1, so that the component keeps its export document in C:\\");
    }

    void AddPoints() {
        CommandSyntax set =
            StreamCommand("set", "Set values of attributes or inputs and show what becomes of them",
                          "  tambench set channels AI1_Offset=1.5 AO1_Setup=2\n"
                          "  tambench set channels AI1_Offset=1.5 --us\n"
                          "  tambench set channels DO1_In1=DI1_Out  the value of an input is its link\n"
                          "  tambench set channels AI1_Offset=1.5 -o changed.xml");
        set.Values("NAME=VALUE", true);
        set.Output("File for the stream with the new values; all else in it stays as it is");

        StreamCommand("clear-refs",
                      "Clear the references of all inputs and show their values before and after",
                      "  tambench clear-refs full --wire");

        CommandSyntax contains =
            StreamCommand("contains", "Ask whether the module holds the points of a channel object",
                          "  tambench contains oddities K8 AI6       yes\n"
                          "  tambench contains oddities K8 AI1       no: its points lack the mark");
        contains.Argument("DEVICEKEY", options_.deviceKey, "Key of the device that the object belongs to");
        contains.Argument("OBJECTKEY", options_.objectKey, "Key of the object inside the module");

        CommandSyntax edit = StreamCommand(
            "edit", "Open the value editor of an attribute, as a double click in a host does",
            "  tambench edit channels AI1_Offset --interactive\n"
            "  tambench edit channels AI1_Offset --keys \"1.5{ENTER}\"\n"
            "  tambench edit channels AO1_Setup --keys \"{DOWN 2}{ENTER}\"   two entries further\n"
            "  tambench edit channels AI1_Offset --keys \"{TAB}{SPACE}{ENTER}\"\n"
            "                                         ticks the invalid value");
        edit.Argument("ATTRIBUTE", options_.attribute, "Name of the attribute");
        edit.Keys();
    }

    void AddServices() {
        CommandSyntax icon =
            Command("icon", "Show which picture the module has", "  tambench icon -o module.ico");
        icon.Output("File for the picture");
        CommandSyntax datasheet = Command("datasheet", "Tell whether the module has a data sheet",
                                          "  tambench datasheet\n  tambench datasheet --open");
        datasheet.Flag("--open", options_.open, "Have the component open it in the machine's viewer");
        Command("about", "Show the component's about box", "  tambench about");
        Command("doctor",
                "Tell what is registered for 32-bit and for 64-bit programs, and what to do where they find "
                "no class",
                "  tambench doctor\n"
                "  tambench doctor --json                 exit status 1 when a client with as many bits as\n"
                "                                         this program misses something");
        CommandSyntax rename =
            Command("rename", "Open the dialog that names a device, and show what the user chose",
                    "  tambench rename Tam_1                  confirmed as it is\n"
                    "  tambench rename Tam_1 --keys \"{END}{BACKSPACE}2{ALT+o}\"\n"
                    "  tambench rename Tam_1 --keys \"{ESC}\"   cancelled\n"
                    "  tambench rename --keys \"1st{ALT+o}{ESC}\"   refused: see the box");
        rename.Text("NAME", options_.deviceName, "Name that stands in the dialog at first");
        rename.Text("--key", options_.deviceKey, "Key of the device, kept for the caller");
        rename.Keys();
    }

  private:
    CommandSyntax Command(const std::string& name, const std::string& help, const std::string& examples) {
        CommandSyntax command = program_.Command(name, help, examples);
        command.WhenChosen([&options = options_, name] { options.command = name; });
        return command;
    }

    /// One that reads documents and needs no host.
    CommandSyntax DocumentCommand(const std::string& name, const std::string& help,
                                  const std::string& examples) {
        CommandSyntax command = program_.DocumentCommand(name, help, examples);
        command.WhenChosen([&options = options_, name] { options.command = name; });
        return command;
    }

    CommandSyntax StreamCommand(const std::string& name, const std::string& help,
                                const std::string& examples) {
        CommandSyntax command = Command(name, help, examples);
        command.Stream();
        return command;
    }

    /// One that works on several streams too, and whose results end so.
    CommandSyntax StreamsCommand(const std::string& name, const std::string& ending, const std::string& help,
                                 const std::string& examples) {
        CommandSyntax command = Command(name, help, examples);
        command.Streams(ending, true);
        return command;
    }

    CommandSyntax& program_;
    Options& options_;
};

} // namespace

void AddModuleCommands(CommandSyntax& program, Options& options) {
    ModuleCommands commands(program, options);
    commands.AddReading();
    commands.AddSheet();
    commands.AddCheck();
    commands.AddDiff();
    commands.AddProject();
    commands.AddPoints();
    commands.AddServices();
}

} // namespace bench
