#pragma once

#include "bench/Keys.h"

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace bench {

/// What the command line asks for. Texts are UTF-16, as files and COM want them.
struct Options {
    std::string command;

    // Common to all commands.
    std::wstring catalogue;
    std::wstring definition = L"O_Tam_id";
    bool usUnits = false;
    bool wire = false;
    bool json = false;
    bool interactive = false;
    bool tolerateBoxes = false;

    // Of single commands.
    std::wstring stream;
    /// The streams of a command that takes several, and folders of them.
    std::vector<std::wstring> streams;
    std::wstring output;
    /// The folder for the results of several streams.
    std::wstring outFolder;
    /// How the names of the command's results end there.
    std::string outEnding;
    /// The file that describes the device; empty for the sample's.
    std::wstring deviceFile;
    std::wstring project;
    std::wstring filter;
    std::wstring deviceKey;
    std::wstring kind;
    std::wstring objectKey;
    std::wstring attribute;
    std::wstring userName;
    std::wstring deviceName;
    std::wstring keyText;
    std::vector<std::wstring> files;
    std::wstring before;
    std::wstring after;
    std::wstring format;
    std::wstring jobs;
    std::wstring schemas;
    bool listsRules = false;
    std::vector<Stroke> keys;
    std::vector<double> position;
    std::vector<std::wstring> displayed;
    std::vector<std::wstring> displayedOfChannels;
    std::vector<std::pair<std::wstring, std::wstring>> values;
    std::wstring firmware;
    bool fetch = false;
    bool noCompiler = false;
    bool debugDump = false;
    bool open = false;
    bool svg = false;
};

/// Exit statuses, as the help explains them.
constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

/// The files and folders of a command that takes several streams.
std::vector<std::filesystem::path> StreamPaths(const Options& options);
/// True when a command that takes several streams is to work on more than one, or puts its
/// results into a folder.
bool IsForMany(const Options& options);

/// Reads the program's own command line. Without a result the run is over:
/// help was printed or the usage was wrong, and `status` says which.
std::optional<Options> ReadCommandLine(int& status);

} // namespace bench
