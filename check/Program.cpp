#include "check/Program.h"

#include "batch/ForEach.h"
#include "batch/Inputs.h"
#include "check/Files.h"
#include "check/Schemas.h"
#include "check/Utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

namespace check {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kStandardInput = "-";
/// Streams of more bytes are not kept in mind for other documents.
constexpr std::size_t kLargestSummary = 64U << 20U;

/// What a complaint shows of a file's name.
std::string Shown(const fs::path& path) {
    return Clean(batch::NameOf(path));
}

/// Documents of these kinds name types.
bool LooksTypesUp(Kind kind) {
    return kind != Kind::Catalogue && kind != Kind::Unknown;
}

std::string_view EndingOf(Format format) {
    switch (format) {
    case Format::Json:
        return ".json";
    case Format::Sarif:
        return ".sarif";
    case Format::Text:
    case Format::Markdown:
        break;
    }
    return ".txt";
}

/// Writes a file beside its place and puts it there when it is whole.
bool WriteWhole(const fs::path& path, const std::function<void(const Print&)>& write) {
    std::error_code error;
    fs::create_directories(path.parent_path(), error);
    fs::path beside = path;
    beside += ".new";
    std::ofstream file(beside, std::ios::binary);
    write([&file](const std::string& text) { file << text; });
    file.close();
    if (!file) {
        return false;
    }
    fs::rename(beside, path, error);
    return !error;
}

/// The catalogues of a run, each read once.
class Catalogues {
  public:
    struct Known {
        Catalogue types;
        /// Why there are no types in it; empty when there are.
        std::string problem;
        bool isUsed = false;
    };

    explicit Catalogues(const ProgramOptions& options) : options_(options) {}

    /// A catalogue that was named is to have types, whatever is checked.
    void UseNamed() {
        if (!options_.catalogue.empty()) {
            Read(options_.catalogue).isUsed = true;
        }
    }

    /// The catalogue for a file; null when there is none.
    Known* For(const fs::path& file) {
        const std::scoped_lock lock(mutex_);
        const fs::path path = options_.catalogue.empty()
                                  ? NearestCatalogue(file, options_.programFolder, options_.top)
                                  : options_.catalogue;
        return path.empty() ? nullptr : &Read(path);
    }
    /// Types were to be looked up there.
    void Use(Known* known) {
        const std::scoped_lock lock(mutex_);
        (known == nullptr ? isMissing_ : known->isUsed) = true;
    }

    bool HasProblem() const {
        return std::any_of(known_.begin(), known_.end(), [](const auto& entry) {
            return entry.second.isUsed && !entry.second.problem.empty();
        });
    }
    /// Says why types were not looked up, where they were not.
    void Complain() const {
        for (const auto& [path, known] : known_) {
            if (known.isUsed && !known.problem.empty()) {
                ComplainOf(path, known);
            }
        }
        if (isMissing_) {
            options_.complain(
                options_.program +
                ": no catalogue.xml is near, so types and values are not looked up; name one with "
                "--catalogue FILE\n");
        }
    }

  private:
    Known& Read(const fs::path& path) {
        const auto [entry, isNew] = known_.try_emplace(path);
        if (isNew) {
            entry->second.types = ReadCatalogueFile(path, entry->second.problem);
        }
        return entry->second;
    }
    void ComplainOf(const fs::path& path, const Known& known) const {
        options_.complain(options_.program + ": the catalogue " + Shown(path) + ": " + known.problem + "\n");
    }

    const ProgramOptions& options_;
    std::mutex mutex_;
    std::map<fs::path, Known> known_;
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
        catalogues_.UseNamed();
        const std::vector<batch::Input> inputs = batch::FindInputs(options_.inputs);
        std::vector<fs::path> outputs;
        if (!options_.outFolder.empty()) {
            try {
                outputs = batch::OutputsIn(options_.outFolder, inputs, EndingOf(options_.format));
            } catch (const std::invalid_argument& error) {
                options_.complain(options_.program + ": " + Clean(error.what()) + "\n");
                return kUnreadable;
            }
        }
        hasOthers_ = inputs.size() > 1;
        std::vector<FileResult> results;
        {
            batch::Progress progress(options_.showProgress, inputs.size(), options_.width);
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
        const bool isWritten = WriteEach(results, outputs);
        const int status = Tell(results);
        return isWritten ? status : kUnreadable;
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
        Catalogues::Known* const catalogue = catalogues_.For(input.file);
        const Surroundings surroundings(catalogue != nullptr ? &catalogue->types : nullptr, others);
        StreamSummary summary;
        const bool isKept = hasOthers_ && bytes.size() <= kLargestSummary;
        checked.result.result = CheckBytes(std::move(bytes), surroundings, isKept ? &summary : nullptr);
        if (LooksTypesUp(checked.result.result.kind)) {
            catalogues_.Use(catalogue);
        }
        const Kind kind = checked.result.result.kind;
        if (isKept && (kind == Kind::DeviceStream || !summary.definition.empty())) {
            summary.file = checked.result.file;
            checked.stream = std::move(summary);
        }
        return checked;
    }

    /// Definitions and projects, now that the streams and the channels of the run are known.
    void CheckAgain(const std::vector<batch::Input>& inputs, std::vector<FileResult>& results) {
        if (streams_.Streams().empty() && streams_.Definitions().empty()) {
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

    /// False, with a word of complaint, when a file cannot be written.
    bool WriteEach(const std::vector<FileResult>& results, const std::vector<fs::path>& outputs) const {
        bool isWritten = true;
        for (std::size_t i = 0; i < outputs.size(); ++i) {
            if (results[i].problem.empty() && !WriteWhole(outputs[i], [&](const Print& print) {
                    PrintAnswer({&results[i], 1}, false, print);
                })) {
                options_.complain(options_.program + ": " + Shown(outputs[i]) + " cannot be written\n");
                isWritten = false;
            }
        }
        return isWritten;
    }

    void PrintAnswer(std::span<const FileResult> results, bool hasColour, const Print& print) const {
        switch (options_.format) {
        case Format::Sarif:
            return PrintSarif(results, options_.program, print);
        case Format::Json:
            return PrintJson(results, options_.program, StatusOf(TotalsOf(results)), print);
        case Format::Text:
        case Format::Markdown: // is refused
            break;
        }
        PrintText(results, hasColour, print);
    }

    int Tell(const std::vector<FileResult>& results) {
        PrintAnswer(results, options_.hasColour, options_.print);
        for (const FileResult& result : results) {
            if (!result.problem.empty()) {
                options_.complain(options_.program + ": " + Clean(result.file) + ": " + result.problem +
                                  "\n");
            }
        }
        catalogues_.Complain();
        return StatusOf(TotalsOf(results));
    }
    int StatusOf(const Totals& totals) const {
        if (totals.unreadable > 0 || catalogues_.HasProblem()) {
            return kUnreadable;
        }
        return totals.errors + totals.warnings > 0 ? kFound : kClean;
    }

    const ProgramOptions& options_;
    Catalogues catalogues_;
    /// The device streams and the definitions of channels of the run.
    Surroundings streams_;
    /// Other documents of the run may look into them.
    bool hasOthers_ = false;
};

int ListRules(const ProgramOptions& options) {
    switch (options.format) {
    case Format::Json:
        options.print(RulesJson());
        break;
    case Format::Markdown:
        options.print(RulesMarkdown());
        break;
    case Format::Sarif: // is refused
    case Format::Text:
        options.print(RulesText());
        break;
    }
    return kClean;
}

int WriteSchemas(const ProgramOptions& options) {
    for (const Schema& schema : AllSchemas()) {
        const fs::path path = options.schemas / batch::PathOf(schema.file);
        if (!WriteWhole(path, [&](const Print& print) { print(std::string(schema.text)); })) {
            options.complain(options.program + ": " + Shown(path) + " cannot be written\n");
            return kUnreadable;
        }
        options.print(Shown(path) + "\n");
    }
    return kClean;
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

std::string UsageFault(const ProgramOptions& options) {
    if (options.listsRules || !options.schemas.empty()) {
        const std::string option = options.listsRules ? "--rules" : "--schemas";
        if (!options.inputs.empty()) {
            return option + " checks no files: leave them out";
        }
        if (options.listsRules && !options.schemas.empty()) {
            return "--rules lists and --schemas writes: give one of them";
        }
        if (options.listsRules && options.format == Format::Sarif) {
            return "--rules takes text, json or markdown";
        }
        if (!options.listsRules && options.format != Format::Text) {
            return "--schemas takes no format";
        }
    } else if (options.inputs.empty()) {
        return "no file was named";
    }
    return options.format == Format::Markdown && !options.listsRules
               ? "--format markdown goes with --rules; text, json or sarif"
               : "";
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
