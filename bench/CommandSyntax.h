#pragma once

#include "bench/CommandLine.h"

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace bench {

/// What a command takes: the words in which the commands are described, over the
/// parser's library, whose headers only the implementation has to read. A handle;
/// texts go into the options that it was given.
class CommandSyntax {
  public:
    CommandSyntax(CLI::App& app, Options& options) noexcept : app_(&app), options_(&options) {}

    /// A command below this one; the examples end its help.
    CommandSyntax Command(const std::string& name, const std::string& help, const std::string& examples);
    /// One that reads documents and drives no component: of the options of every command it
    /// has the catalogue and the JSON.
    CommandSyntax DocumentCommand(const std::string& name, const std::string& help,
                                  const std::string& examples);
    /// A command that is nothing without one of those below it.
    CommandSyntax Group(const std::string& name, const std::string& help, const std::string& examples);
    /// Called when the command stands in the command line.
    void WhenChosen(std::function<void()> action);

    void Argument(const std::string& name, std::wstring& target, const std::string& help);
    /// An option, or without dashes an argument that may be missing. The form stands for
    /// the option's value in the help.
    void Text(const std::string& name, std::wstring& target, const std::string& help,
              const std::string& form = "TEXT");
    void Flag(const std::string& name, bool& target, const std::string& help);
    /// Several names of the form NAME, or one at each mention of the form KEY.NAME.
    void Names(const std::string& name, const std::string& form, std::vector<std::wstring>& target,
               const std::string& help);

    // Options of several commands.
    /// One device stream.
    void Stream();
    /// Device streams and folders of them, their results in --out with this ending; where
    /// values may be set, arguments of the form NAME=VALUE among them.
    void Streams(const std::string& ending, bool withValues);
    /// The option that types into the command's dialogs.
    void Keys();
    /// Arguments of the form NAME=VALUE or KEY.NAME=VALUE.
    void Values(const std::string& form, bool areRequired);
    void Output(const std::string& help);
    void Placing();
    void NoCompiler();
    /// What every command that drives the component takes, in a group of its own at the end of its help.
    void Common();

  private:
    CLI::App* app_;
    Options* options_;
};

/// A text of the parser's with the forms of arguments as people read them.
std::string FormAsRead(std::string text);

/// The commands that work with one module, or with none.
void AddModuleCommands(CommandSyntax& program, Options& options);
/// The group "device": a module and the objects of its channels.
void AddDeviceCommands(CommandSyntax& program, Options& options);

} // namespace bench
