#include "diff/Program.h"

#include "batch/Inputs.h"
#include "check/Check.h"
#include "check/Files.h"
#include "check/Utf8.h"
#include "diff/Compare.h"
#include "diff/Json.h"
#include "diff/Model.h"
#include "diff/Text.h"

#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <utility>

namespace diff {

namespace {

namespace fs = std::filesystem;

void AddMissingGroups(const Model& from, Model& to) {
    for (std::size_t i = to.groups.size(); i < from.groups.size(); ++i) {
        to.groups.push_back(from.groups[i]);
        to.groups.back().items.clear();
    }
}

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
        std::optional<Model> before = ReadModel(options_.before);
        std::optional<Model> after = ReadModel(options_.after);
        if (!before || !after) {
            return;
        }
        if (before->kind != after->kind) {
            Complain(answer_.before + " is of the kind " + std::string(check::NameOf(before->kind)) + ", " +
                     answer_.after + " of the kind " + std::string(check::NameOf(after->kind)) +
                     "; compare two of one kind");
            return;
        }
        // A device may have got its stream, or lost it.
        AddMissingGroups(*after, *before);
        AddMissingGroups(*before, *after);
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

    /// The model of a document; of a device with what its stream says, which is a file beside it.
    std::optional<Model> ReadModel(const fs::path& path) {
        std::optional<Model> model = ReadDocument(path);
        if (!model || model->stream.empty()) {
            return model;
        }
        const fs::path file = path.parent_path() / batch::PathOf(model->stream);
        std::optional<Model> stream = ReadDocument(file);
        if (!stream) {
            return std::nullopt;
        }
        if (stream->kind != check::Kind::DeviceStream) {
            Complain(batch::NameOf(file) + ", which " + batch::NameOf(path) +
                     " names as its stream, is of the kind " + std::string(check::NameOf(stream->kind)));
            return std::nullopt;
        }
        std::move(stream->head.begin(), stream->head.end(), std::back_inserter(model->head));
        std::move(stream->groups.begin(), stream->groups.end(), std::back_inserter(model->groups));
        return model;
    }

    std::optional<Model> ReadDocument(const fs::path& path) {
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
