#include "check/Program.h"

#include "batch/ForEach.h"
#include "batch/Inputs.h"
#include "check/Schemas.h"
#include "check/XmlTree.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace check {

namespace {

namespace fs = std::filesystem;

constexpr const char* kCatalogue = "catalogue.xml";
constexpr std::string_view kStandardInput = "-";
/// Streams of more bytes are not kept in mind for other documents.
constexpr std::size_t kLargestSummary = 64U << 20U;
constexpr int kFoldersUpwards = 8;

bool IsThere(const fs::path& path) {
    std::error_code none;
    return fs::is_regular_file(path, none);
}

/// The catalogues of a run, each read once.
class Catalogues {
  public:
    explicit Catalogues(const ProgramOptions& options) : options_(options) {}

    /// False, with a word of complaint, when the catalogue that was named is none.
    bool CheckNamed() {
        if (options_.catalogue.empty()) {
            return true;
        }
        std::string problem;
        Catalogue types = ReadCatalogue(ReadFile(options_.catalogue, problem));
        if (problem.empty() && types.IsEmpty()) {
            problem = "it has no types";
        }
        if (!problem.empty()) {
            options_.complain(options_.program + ": the catalogue " + batch::NameOf(options_.catalogue) +
                              ": " + problem + "\n");
            return false;
        }
        known_.emplace(options_.catalogue, std::move(types));
        return true;
    }

    /// The catalogue for a file; null when there is none.
    const Catalogue* For(const fs::path& file) {
        const std::scoped_lock lock(mutex_);
        const fs::path path =
            options_.catalogue.empty() ? NearestCatalogue(file, options_.programFolder) : options_.catalogue;
        if (path.empty()) {
            isMissing_ = true;
            return nullptr;
        }
        const auto found = known_.find(path);
        if (found != known_.end()) {
            return &found->second;
        }
        std::string problem;
        return &known_.emplace(path, ReadCatalogue(ReadFile(path, problem))).first->second;
    }
    bool IsMissing() const noexcept { return isMissing_; }

  private:
    const ProgramOptions& options_;
    std::mutex mutex_;
    std::map<fs::path, Catalogue> known_;
    bool isMissing_ = false;
};

struct Checked {
    FileResult result;
    std::optional<StreamSummary> stream;
};

class Run {
  public:
    explicit Run(const ProgramOptions& options) : options_(options), catalogues_(options) {}

    int Do() {
        if (!catalogues_.CheckNamed()) {
            return kUnreadable;
        }
        const std::vector<batch::Input> inputs = batch::FindInputs(options_.inputs);
        hasOthers_ = inputs.size() > 1;
        std::vector<FileResult> results;
        {
            batch::Progress progress(options_.showProgress, inputs.size(), 79);
            batch::ForEach(
                inputs, options_.jobs, progress,
                [&](const batch::Input& input) { return CheckInput(input, {}); },
                [&](const batch::Input&, Checked checked) {
                    if (checked.stream) {
                        streams_.Add(std::move(*checked.stream));
                    }
                    results.push_back(std::move(checked.result));
                });
        }
        CheckAgain(inputs, results);
        return Tell(results);
    }

  private:
    Checked CheckInput(const batch::Input& input, const Surroundings& others) {
        Checked checked;
        checked.result.file = batch::NameOf(input.file);
        std::string bytes;
        if (input.problem.empty()) {
            bytes = ReadFile(input.file, checked.result.problem);
        } else {
            checked.result.problem = input.problem;
        }
        if (!checked.result.problem.empty()) {
            return checked;
        }
        const Surroundings surroundings(catalogues_.For(input.file), others);
        StreamSummary summary;
        const bool isKept = hasOthers_ && bytes.size() <= kLargestSummary;
        checked.result.result = CheckBytes(std::move(bytes), surroundings, isKept ? &summary : nullptr);
        if (checked.result.result.kind == Kind::DeviceStream && isKept) {
            summary.file = checked.result.file;
            checked.stream = std::move(summary);
        }
        return checked;
    }

    /// Definitions and projects, now that the streams of the run are known.
    void CheckAgain(const std::vector<batch::Input>& inputs, std::vector<FileResult>& results) {
        if (streams_.Streams().empty()) {
            return;
        }
        for (std::size_t i = 0; i < results.size(); ++i) {
            const Kind kind = results[i].result.kind;
            const bool isStdin = batch::NameOf(inputs[i].file) == kStandardInput;
            if ((kind == Kind::ModuleDefinition || kind == Kind::Project) && !isStdin) {
                results[i] = CheckInput(inputs[i], streams_).result;
            }
        }
    }

    int Tell(const std::vector<FileResult>& results) {
        const Totals totals = TotalsOf(results);
        if (options_.format == Format::Text) {
            for (const FileResult& result : results) {
                options_.print(TextOf(result, options_.hasColour));
            }
            options_.print(TextOf(totals));
        } else {
            options_.print(options_.format == Format::Sarif
                               ? SarifOf(results, options_.program)
                               : JsonOf(results, options_.program, StatusOf(totals)));
        }
        for (const FileResult& result : results) {
            if (!result.problem.empty()) {
                options_.complain(options_.program + ": " + result.file + ": " + result.problem + "\n");
            }
        }
        if (catalogues_.IsMissing()) {
            options_.complain(
                options_.program +
                ": no catalogue.xml is near, so types and values are not looked up; name one with "
                "--catalogue FILE\n");
        }
        return StatusOf(totals);
    }
    static int StatusOf(const Totals& totals) {
        if (totals.unreadable > 0) {
            return kUnreadable;
        }
        return totals.errors + totals.warnings > 0 ? kFound : kClean;
    }

    const ProgramOptions& options_;
    Catalogues catalogues_;
    /// The device streams of the run.
    Surroundings streams_;
    /// Other documents of the run may look into a stream.
    bool hasOthers_ = false;
};

int ListRules(const ProgramOptions& options) {
    switch (options.format) {
    case Format::Json:
    case Format::Sarif:
        options.print(RulesJson());
        break;
    case Format::Markdown:
        options.print(RulesMarkdown());
        break;
    case Format::Text:
        options.print(RulesText());
        break;
    }
    return kClean;
}

int WriteSchemas(const ProgramOptions& options) {
    std::error_code error;
    fs::create_directories(options.schemas, error);
    for (const Schema& schema : AllSchemas()) {
        const fs::path path = options.schemas / batch::PathOf(schema.file);
        std::ofstream file(path, std::ios::binary);
        file << schema.text;
        file.close();
        if (!file) {
            options.complain(options.program + ": " + batch::NameOf(path) + " cannot be written\n");
            return kUnreadable;
        }
        options.print(batch::NameOf(path) + "\n");
    }
    return kClean;
}

} // namespace

namespace {

std::string ReadStandardInput() {
    std::string bytes;
    std::array<char, 1U << 16U> piece{};
    while (std::cin.read(piece.data(), static_cast<std::streamsize>(piece.size())) || std::cin.gcount() > 0) {
        bytes.append(piece.data(), static_cast<std::size_t>(std::cin.gcount()));
    }
    return bytes;
}

} // namespace

bool ReadFormat(std::string_view word, Format& format) {
    constexpr std::pair<std::string_view, Format> kFormats[] = {{"text", Format::Text},
                                                                {"json", Format::Json},
                                                                {"sarif", Format::Sarif},
                                                                {"markdown", Format::Markdown}};
    const auto* const known = std::find_if(std::begin(kFormats), std::end(kFormats),
                                           [&](const auto& entry) { return entry.first == word; });
    if (known == std::end(kFormats)) {
        return false;
    }
    format = known->second;
    return true;
}

std::string ReadFile(const fs::path& path, std::string& problem) {
    if (batch::NameOf(path) == kStandardInput) {
        return ReadStandardInput();
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
    const std::uintmax_t size = fs::is_regular_file(status) ? fs::file_size(path, error) : 0;
    if (!file || error) {
        problem = "it cannot be read";
        return {};
    }
    if (size >= XmlTree::kLongestText) {
        problem = "it is larger than 512 MB";
        return {};
    }
    std::string bytes(static_cast<std::size_t>(size), '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    if (file.bad()) {
        problem = "it cannot be read";
    }
    return bytes;
}

bool ReadJobs(std::string_view word, unsigned& jobs) {
    constexpr std::size_t kMostDigits = 3;
    unsigned number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error != std::errc() || end != word.data() + word.size() || word.size() > kMostDigits) {
        return false;
    }
    jobs = number > 0 ? number : std::max(1U, std::thread::hardware_concurrency());
    return true;
}

fs::path NearestCatalogue(const fs::path& file, const fs::path& programFolder) {
    std::error_code none;
    fs::path folder = fs::absolute(file, none).parent_path();
    for (int i = 0; i < kFoldersUpwards && !folder.empty(); ++i) {
        if (IsThere(folder / kCatalogue)) {
            return folder / kCatalogue;
        }
        if (folder == folder.parent_path()) {
            break;
        }
        folder = folder.parent_path();
    }
    for (const fs::path& path : {programFolder / kCatalogue, programFolder / "samples" / kCatalogue}) {
        if (IsThere(path)) {
            return path;
        }
    }
    return {};
}

int RunProgram(const ProgramOptions& options) {
    if (options.listsRules) {
        return ListRules(options);
    }
    if (!options.schemas.empty()) {
        return WriteSchemas(options);
    }
    return Run(options).Do();
}

} // namespace check
