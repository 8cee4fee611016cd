#include "diff/Program.h"

#include "batch/Inputs.h"
#include "check/Check.h"
#include "check/Files.h"
#include "check/Utf8.h"
#include "diff/Compare.h"
#include "diff/Json.h"
#include "diff/Model.h"
#include "diff/Text.h"

#include <optional>
#include <string>
#include <utility>

namespace diff {

namespace {

namespace fs = std::filesystem;

class Run {
  public:
    explicit Run(const ProgramOptions& options) : options_(options) {}

    int Do() {
        Compare();
        if (options_.isJson) {
            options_.print(Json(answer_));
        }
        return answer_.status;
    }

  private:
    void Compare() {
        answer_.before = batch::NameOf(options_.before);
        answer_.after = batch::NameOf(options_.after);
        answer_.status = kTrouble;
        if (!ReadTypes()) {
            return;
        }
        const std::optional<Model> before = ReadModel(options_.before);
        const std::optional<Model> after = ReadModel(options_.after);
        if (!before || !after) {
            return;
        }
        if (before->kind != after->kind) {
            Complain(answer_.before + " is of the kind " + std::string(check::NameOf(before->kind)) + ", " +
                     answer_.after + " of the kind " + std::string(check::NameOf(after->kind)) +
                     "; compare two of one kind");
            return;
        }
        answer_.kind = check::NameOf(after->kind);
        answer_.changes = diff::Compare(*before, *after);
        answer_.status = answer_.changes.empty() ? kSame : kDifferent;
        if (!options_.isJson) {
            options_.print(Text(answer_.changes, *after, options_.hasColour));
        }
    }

    /// False when the catalogue that counts is none. Without any, values are shown as they stand.
    bool ReadTypes() {
        const fs::path path = options_.catalogue.empty()
                                  ? check::NearestCatalogue(options_.after, options_.programFolder)
                                  : options_.catalogue;
        if (path.empty()) {
            return true;
        }
        std::string problem;
        types_ = check::ReadCatalogueFile(path, problem);
        if (!problem.empty()) {
            Complain("the catalogue " + batch::NameOf(path) + ": " + problem);
        }
        return problem.empty();
    }

    std::optional<Model> ReadModel(const fs::path& path) {
        std::string problem;
        std::string bytes = check::ReadFile(path, problem);
        if (!problem.empty()) {
            Complain(batch::NameOf(path) + ": " + problem);
            return std::nullopt;
        }
        Reading reading = Read(std::move(bytes), types_);
        for (const Fault& fault : reading.faults) {
            Complain(batch::NameOf(path) + ":" + std::to_string(fault.line) + ":" +
                     std::to_string(fault.column) + ": error: " + fault.message);
        }
        return reading.faults.empty() ? std::optional(std::move(reading.model)) : std::nullopt;
    }

    void Complain(const std::string& text) {
        options_.complain(options_.program + ": " + check::Clean(text) + "\n");
        answer_.problems.push_back(text);
    }

    const ProgramOptions& options_;
    check::Catalogue types_;
    Answer answer_;
};

} // namespace

int RunProgram(const ProgramOptions& options) {
    return Run(options).Do();
}

} // namespace diff
