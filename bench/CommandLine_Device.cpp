#include "bench/CommandSyntax.h"

#include <string>

namespace bench {

namespace {

/// The commands of the group "device".
class DeviceCommands {
  public:
    DeviceCommands(CommandSyntax& program, Options& options) : program_(program), options_(options) {}

    void Add() {
        CommandSyntax group = program_.Group(
            "device", "Work with a device: a module and the objects of its channels",
            "  tambench device tree\n"
            "  tambench device set AI1 Offset=1.5             the module's AI1_Offset follows\n"
            "  tambench device save AI1.Offset=1.5 -o device.xml\n"
            "  tambench device export --project device.xml\n\n"
            "Without --device it is the sample device K7. Its module is loaded from the sample stream\n"
            "\"channels\"; a channel is an object of its own, known by its key: AI1, AO1, DI1, DO1, CTX1.\n"
            "A point of a channel and the module's item named KEY_POINT belong together:\n"
            "AI1_Offset is the offset of AI1. Every run opens the device as it is described; what is to\n"
            "last is saved and opened with --project.\n\n"
            "A device of your own is a file:\n"
            "  <Device>\n"
            "    <Stream>hall.xml</Stream>\n"
            "    <Channels>\n"
            "      <Channel key=\"AI1\" kind=\"ai\" terminal=\"5\" setup=\"2,Ni1000;1,Pt1000\"/>\n"
            "      <Channel key=\"CTX1\" kind=\"ctx\"/>\n"
            "    </Channels>\n"
            "  </Device>\n"
            "  tambench device tree --device hall-device.xml\n"
            "docs/formats.md says what else it may hold.");

        ChannelsCommand(group, "tree", "Open the device and show the points of its module and channels",
                        "  tambench device tree\n"
                        "  tambench device tree --us                 values in US units\n"
                        "  tambench device tree --project device.xml as a project saved it\n"
                        "  tambench device tree --firmware V1_00     fails: no channel objects");
        CommandSyntax place = ChannelsCommand(
            group, "place", "Place one more channel and show what its object is",
            "  tambench device place ai AI2              an analogue input\n"
            "  tambench device place o_tam_do_id DO2     the same by identifier, in any letter case");
        place.Argument("KIND", options_.kind, "Kind of channel: ai, ao, di, do, ctx, or an identifier");
        place.Argument("KEY", options_.objectKey, "Key for the new channel");
        CommandSyntax fetch =
            ChannelsCommand(group, "fetch", "Get a channel's data from the device",
                            "  tambench device fetch AI1                 Channel and Setup are filled\n"
                            "  tambench device fetch CTX1                has neither: nothing changes");
        ObjectKey(fetch);
        CommandSyntax set =
            ChannelsCommand(group, "set", "Set values of a channel's points and show the items of the module",
                            "  tambench device set AI1 Offset=1.5 Filter=4\n"
                            "  tambench device set DO1 In1=DI1_Out       the value of an input is its link");
        ObjectKey(set);
        set.Values("NAME=VALUE", true);
        CommandSyntax save =
            ChannelsCommand(group, "save", "Save the module and its channels into one project",
                            "  tambench device save -o device.xml\n"
                            "  tambench device save AI1.Filter=4 --fetch --display AI1.Out -o device.xml\n"
                            "  tambench device save --project device.xml AO1.Gain=2 -o changed.xml");
        save.Output("File for the project; without it the project is only shown");
        save.Placing();
        save.Flag("--fetch", options_.fetch, "Get the data of all channels from the device first");
        save.Names("--display", "KEY.NAME", options_.displayedOfChannels,
                   "An output of a channel that the host shows in its displays; may be repeated");
        save.Values("KEY.NAME=VALUE", false);
        CommandSyntax load = DeviceCommand(
            group, "load", "Load a project: the module and the channels in it; show what that restored",
            "  tambench device save AI1.Filter=4 -o device.xml\n"
            "  tambench device load device.xml");
        load.Argument("PROJECT", options_.project, "Project document, as device save writes it");
        CommandSyntax exporting =
            ChannelsCommand(group, "export", "Compile the module of the device into its database image",
                            "  tambench device export\n"
                            "  tambench device export AI1.Offset=1.5 -o image.txt\n"
                            "  tambench device export --project device.xml");
        exporting.Output("File for the stream that the component answers");
        exporting.Values("KEY.NAME=VALUE", false);
        exporting.NoCompiler();
        CommandSyntax sheet = ChannelsCommand(
            group, "sheet",
            "Write the device sheet, one page for browsers and paper: module, channels, points, findings",
            "  tambench device sheet -o device.html\n"
            "  tambench device sheet --svg -o device.svg  the blocks alone\n"
            "  tambench device sheet --device hall-device.xml -o hall.html");
        sheet.Output("File for the page");
        sheet.Flag("--svg", options_.svg, "Write the blocks alone, as a picture");
    }

  private:
    CommandSyntax DeviceCommand(CommandSyntax& group, const std::string& name, const std::string& help,
                                const std::string& examples) {
        CommandSyntax command = group.Command(name, help, examples);
        command.Text("--device", options_.deviceFile,
                     "File that describes the device; without it the sample device", "FILE");
        command.Text("--firmware", options_.firmware,
                     "Firmware version in place of the file's; of the sample's versions V2_10 has channel "
                     "objects, V1_00 and V3_00 have none",
                     "VERSION");
        command.WhenChosen([&options = options_, name] { options.command = "device " + name; });
        return command;
    }

    /// One that works with the channels that a project names, or with new ones.
    CommandSyntax ChannelsCommand(CommandSyntax& group, const std::string& name, const std::string& help,
                                  const std::string& examples) {
        CommandSyntax command = DeviceCommand(group, name, help, examples);
        command.Text("--project", options_.project,
                     "Open the device as this project saved it; without it with the file's channels as new",
                     "FILE");
        return command;
    }

    void ObjectKey(CommandSyntax& command) {
        command.Argument("KEY", options_.objectKey,
                         "Key of a channel; of the sample device AI1, AO1, DI1, DO1 or CTX1");
    }

    CommandSyntax& program_;
    Options& options_;
};

} // namespace

void AddDeviceCommands(CommandSyntax& program, Options& options) {
    DeviceCommands(program, options).Add();
}

} // namespace bench
