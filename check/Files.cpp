#include "check/Files.h"

#include "batch/Inputs.h"
#include "check/Check.h"
#include "check/XmlTree.h"

#include <array>
#include <cstdint>
#include <fstream>
#include <ios>
#include <iostream>
#include <string_view>
#include <system_error>
#include <utility>

namespace check {

namespace {

namespace fs = std::filesystem;

constexpr const char* kCatalogue = "catalogue.xml";
constexpr std::string_view kStandardInput = "-";
constexpr std::size_t kMost = XmlTree::kLongestText - 1;
constexpr const char* kTooLong = "it is larger than 512 MB";

bool IsThere(const fs::path& path) {
    std::error_code none;
    return fs::is_regular_file(path, none);
}

} // namespace

std::string ReadStream(std::istream& from, std::size_t expected, std::size_t most, std::string& problem) {
    std::string bytes;
    bytes.reserve(expected);
    std::array<char, 1U << 16U> piece{};
    while (from.read(piece.data(), static_cast<std::streamsize>(piece.size())) || from.gcount() > 0) {
        const auto count = static_cast<std::size_t>(from.gcount());
        if (count > most - bytes.size()) {
            problem = kTooLong;
            return {};
        }
        bytes.append(piece.data(), count);
    }
    if (from.bad()) {
        problem = "it cannot be read";
    }
    return bytes;
}

std::string ReadFile(const fs::path& path, std::string& problem) {
    if (batch::NameOf(path) == kStandardInput) {
        return ReadStream(std::cin, 0, kMost, problem);
    }
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (fs::is_directory(status)) {
        problem = "it is a folder";
        return {};
    }
    if (!fs::exists(status)) {
        problem = "there is no such file";
        return {};
    }
    std::ifstream file(path, std::ios::binary);
    // A pipe and a device have no size: they are read until they end.
    const std::uintmax_t size = fs::is_regular_file(status) ? fs::file_size(path, error) : 0;
    if (!file || error) {
        problem = "it cannot be read";
        return {};
    }
    if (size > kMost) {
        problem = kTooLong;
        return {};
    }
    return ReadStream(file, static_cast<std::size_t>(size), kMost, problem);
}

fs::path NearestCatalogue(const fs::path& file, const fs::path& programFolder, const fs::path& top) {
    std::error_code none;
    fs::path folder = fs::absolute(file, none).parent_path();
    while (!folder.empty()) {
        if (IsThere(folder / kCatalogue)) {
            return folder / kCatalogue;
        }
        const bool isEnd = folder == top || folder == folder.parent_path();
        folder = isEnd ? fs::path() : folder.parent_path();
    }
    for (const fs::path& path : {programFolder / kCatalogue, programFolder / "samples" / kCatalogue}) {
        if (IsThere(path)) {
            return path;
        }
    }
    return {};
}

Catalogue ReadCatalogueFile(const fs::path& path, std::string& problem) {
    Catalogue types = ReadCatalogue(ReadFile(path, problem));
    if (problem.empty() && types.IsEmpty()) {
        problem = "it has no types";
    }
    return types;
}

} // namespace check
