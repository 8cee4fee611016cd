#pragma once

#include "check/Catalogue.h"

#include <cstddef>
#include <filesystem>
#include <istream>
#include <string>

namespace check {

/// Bytes of a file, of a pipe, or for "-" of the standard input. Empty, with the reason in
/// `problem`, when it cannot be read or is too long.
std::string ReadFile(const std::filesystem::path& path, std::string& problem);

/// What is left of an open stream, `most` bytes of it at most; `expected` are asked for at once.
std::string ReadStream(std::istream& from, std::size_t expected, std::size_t most, std::string& problem);

/// The catalogue.xml that counts for a document: the nearest from its folder upwards to `top`,
/// or to the root, else the one beside the program or in its folder samples. Empty when there
/// is none.
std::filesystem::path NearestCatalogue(const std::filesystem::path& file,
                                       const std::filesystem::path& programFolder,
                                       const std::filesystem::path& top = {});

/// The types of a catalogue's file. Empty, with the reason in `problem`, when it has none.
Catalogue ReadCatalogueFile(const std::filesystem::path& path, std::string& problem);

} // namespace check
