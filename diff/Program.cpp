#include "diff/Program.h"

#include "batch/Inputs.h"
#include "check/Check.h"
#include "check/Program.h"
#include "diff/Compare.h"
#include "diff/Json.h"
#include "diff/Model.h"
#include "diff/Text.h"

#include <optional>
#include <system_error>
#include <utility>
#include <vector>

namespace diff {

namespace {

namespace fs = std::filesystem;

constexpr const char* kCatalogue = "catalogue.xml";

bool IsFile(const fs::path& path) {
    std::error_code none;
    return fs::is_regular_file(path, none);
}

/// The nearest catalogue; empty when there is none.
fs::path NearestCatalogue(const ProgramOptions& options) {
    std::error_code none;
    fs::path folder = fs::absolute(options.after, none).parent_path();
    while (!folder.empty()) {
        if (IsFile(folder / kCatalogue)) {
            return folder / kCatalogue;
        }
        if (folder == folder.parent_path()) {
            break;
        }
        folder = folder.parent_path();
    }
    for (const fs::path& path :
         {options.programFolder / kCatalogue, options.programFolder / "samples" / kCatalogue}) {
        if (IsFile(path)) {
            return path;
        }
    }
    return {};
}

class Run {
  public:
    explicit Run(const ProgramOptions& options) : options_(options) {}

    int Do() {
        if (!ReadTypes()) {
            return kTrouble;
        }
        const std::optional<Model> before = ReadModel(options_.before);
        const std::optional<Model> after = ReadModel(options_.after);
        if (!before || !after) {
            return kTrouble;
        }
        if (before->kind != after->kind) {
            Complain(batch::NameOf(options_.before) + " is of the kind " +
                     std::string(check::NameOf(before->kind)) + ", " + batch::NameOf(options_.after) +
                     " of the kind " + std::string(check::NameOf(after->kind)) + "; compare two of one kind");
            return kTrouble;
        }
        const std::vector<Change> changes = Compare(*before, *after);
        options_.print(options_.isJson ? Json(changes, check::NameOf(after->kind),
                                              batch::NameOf(options_.before), batch::NameOf(options_.after))
                                       : Text(changes, *after, options_.hasColour));
        return changes.empty() ? kSame : kDifferent;
    }

  private:
    /// False when the catalogue that was named is none. Without any, values are shown as they stand.
    bool ReadTypes() {
        const bool isNamed = !options_.catalogue.empty();
        const fs::path path = isNamed ? options_.catalogue : NearestCatalogue(options_);
        if (path.empty()) {
            return true;
        }
        std::string problem;
        types_ = check::ReadCatalogue(check::ReadFile(path, problem));
        if (isNamed && (!problem.empty() || types_.IsEmpty())) {
            Complain("the catalogue " + batch::NameOf(path) + ": " +
                     (problem.empty() ? "it has no types" : problem));
            return false;
        }
        return true;
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

    void Complain(const std::string& text) { options_.complain(options_.program + ": " + text + "\n"); }

    const ProgramOptions& options_;
    check::Catalogue types_;
};

} // namespace

int RunProgram(const ProgramOptions& options) {
    return Run(options).Do();
}

} // namespace diff
