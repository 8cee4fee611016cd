#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace batch {

/// One of the files that a command line stands for.
struct Input {
    std::filesystem::path file;
    /// Where the file lies below the folder that was given; of a file that was given itself its name.
    std::filesystem::path below;
    /// Why there is nothing to read, for a folder that is empty or cannot be read; else empty.
    std::string problem;
};

/// The files that are given, and for each folder the files below it whose names end in
/// ".xml", in any letter case, sorted. Links to folders are not followed. A file that is
/// given twice is there once. What is not there at all is an input too: whoever reads it
/// says why he cannot.
std::vector<Input> FindInputs(const std::vector<std::filesystem::path>& given);

/// True when the command line names several documents, or a folder.
bool IsMany(const std::vector<std::filesystem::path>& given);

/// The file below a folder that each input's result belongs in: its place below the folder
/// that was given, with another ending (".html"). Throws std::invalid_argument, with a text
/// for the user, when two inputs have one result, a result would replace an input, or a file
/// stands where the folder should.
std::vector<std::filesystem::path> OutputsIn(const std::filesystem::path& folder,
                                             const std::vector<Input>& inputs, std::string_view ending);

/// UTF-8, as it was given.
std::string NameOf(const std::filesystem::path& path);
/// The path of a UTF-8 text.
std::filesystem::path PathOf(std::string_view name);

} // namespace batch
