#include "batch/Inputs.h"

#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace batch {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kEnding = ".xml";

/// File systems that take "A.xml" and "a.xml" for one file are common.
std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

fs::path WholeOf(const fs::path& path) {
    std::error_code ignored;
    const fs::path whole = fs::absolute(path, ignored);
    return (ignored ? path : whole).lexically_normal();
}

std::string KeyOf(const fs::path& path) {
    return Lower(NameOf(WholeOf(path)));
}

/// Whether two paths of one key lead to one file: "A.xml" and "a.xml" may be two.
bool IsSame(const fs::path& a, const fs::path& b) {
    std::error_code none;
    return WholeOf(a) == WholeOf(b) || fs::equivalent(a, b, none);
}

std::string GenericNameOf(const fs::path& path) {
    const std::u8string name = path.generic_u8string();
    return {name.begin(), name.end()};
}

bool IsFolder(const fs::path& path) {
    std::error_code none;
    return fs::is_directory(path, none);
}

/// A path with the separators that the user wrote the folder with.
fs::path Alike(const fs::path& path, const fs::path& folder) {
    return NameOf(folder).find('/') != std::string::npos ? PathOf(GenericNameOf(path)) : path;
}

void AddFolder(const fs::path& folder, std::vector<Input>& inputs) {
    std::vector<fs::path> found;
    std::error_code error;
    fs::recursive_directory_iterator at(folder, fs::directory_options::skip_permission_denied, error);
    while (!error && at != fs::recursive_directory_iterator()) {
        if (Lower(NameOf(at->path().extension())) == kEnding && !IsFolder(at->path())) {
            found.push_back(at->path());
        }
        at.increment(error);
    }
    if (error || found.empty()) {
        inputs.push_back({folder, folder.filename(),
                          error ? "the folder cannot be read: " + error.message()
                                : "the folder holds no file whose name ends in .xml"});
        return;
    }
    std::sort(found.begin(), found.end());
    for (const fs::path& file : found) {
        inputs.push_back({Alike(file, folder), file.lexically_relative(folder), ""});
    }
}

} // namespace

std::vector<Input> FindInputs(const std::vector<fs::path>& given) {
    std::vector<Input> all;
    for (const fs::path& path : given) {
        if (IsFolder(path)) {
            AddFolder(path, all);
        } else {
            all.push_back({path, path.filename(), ""});
        }
    }
    std::map<std::string, std::vector<fs::path>> known;
    std::vector<Input> inputs;
    for (Input& input : all) {
        std::vector<fs::path>& alike = known[KeyOf(input.file)];
        const bool isKnown = std::any_of(alike.begin(), alike.end(),
                                         [&](const fs::path& file) { return IsSame(file, input.file); });
        if (!isKnown) {
            alike.push_back(input.file);
            inputs.push_back(std::move(input));
        }
    }
    return inputs;
}

bool IsMany(const std::vector<fs::path>& given) {
    return given.size() > 1 || std::any_of(given.begin(), given.end(), IsFolder);
}

std::vector<fs::path> OutputsIn(const fs::path& folder, const std::vector<Input>& inputs,
                                std::string_view ending) {
    std::error_code unknown; // what cannot be asked shows when it is written
    if (fs::exists(folder, unknown) && !fs::is_directory(folder, unknown)) {
        throw std::invalid_argument(NameOf(folder) + " is no folder; the results cannot be written there");
    }
    std::map<std::string, fs::path> sources;
    std::set<std::string> read;
    for (const Input& input : inputs) {
        read.insert(KeyOf(input.file));
    }
    std::vector<fs::path> outputs;
    for (const Input& input : inputs) {
        fs::path output = folder / input.below;
        output.replace_extension(PathOf(ending));
        const std::string key = KeyOf(output);
        const auto [entry, isNew] = sources.emplace(key, input.file);
        if (!isNew) {
            throw std::invalid_argument(NameOf(entry->second) + " and " + NameOf(input.file) +
                                        " would both be written to " + NameOf(output) +
                                        "; name the folder above them instead");
        }
        if (read.contains(key)) {
            throw std::invalid_argument(NameOf(output) +
                                        " is read and would be written over; choose another folder");
        }
        outputs.push_back(Alike(output, folder));
    }
    return outputs;
}

std::string NameOf(const fs::path& path) {
    const std::u8string name = path.u8string();
    return {name.begin(), name.end()};
}

fs::path PathOf(std::string_view name) {
    // The caller's text lives as long as the call.
    // cppcheck-suppress danglingTemporaryLifetime
    return {std::u8string(name.begin(), name.end())};
}

} // namespace batch
