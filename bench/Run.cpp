// One run of the bench: a command over a host of its own, then what became of it (boxes, a
// failure, objects that still live) as text or JSON, and the status. Several streams are
// several such runs; the status is the worst one's.

#include "bench/Run.h"

#include "batch/ForEach.h"
#include "batch/Inputs.h"
#include "batch/Progress.h"
#include "bench/Answer.h"
#include "bench/Commands.h"
#include "bench/Explanations.h"
#include "bench/Host.h"
#include "bench/Output.h"
#include "bench/Text.h"
#include "com/Boundary.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace bench {

namespace {

const std::map<std::string, Command>& Commands() {
    static const std::map<std::string, Command> commands = {{"inspect", Inspect},
                                                            {"types", Types},
                                                            {"sheet", Sheet},
                                                            {"save", Save},
                                                            {"load", Load},
                                                            {"interop", Interop},
                                                            {"export", Export},
                                                            {"set", Set},
                                                            {"clear-refs", ClearRefs},
                                                            {"contains", Contains},
                                                            {"edit", Edit},
                                                            {"icon", Icon},
                                                            {"datasheet", Datasheet},
                                                            {"about", About},
                                                            {"rename", Rename},
                                                            {"device tree", DeviceTree},
                                                            {"device place", DevicePlace},
                                                            {"device fetch", DeviceFetch},
                                                            {"device set", DeviceSet},
                                                            {"device save", DeviceSave},
                                                            {"device load", DeviceLoad},
                                                            {"device export", DeviceExport},
                                                            {"device sheet", DeviceSheet}};
    return commands;
}

struct Fault {
    HRESULT code;
    std::string step;
    std::string text;
};

/// Runs the command; the host and all that it holds are gone afterwards. With a problem
/// there is nothing to run it on.
std::optional<Fault> RunCommand(const Options& options, const std::string& problem, Answer& answer) {
    if (!problem.empty()) {
        return Fault{CodeOf(ERROR_FILE_NOT_FOUND), "", problem};
    }
    std::optional<std::string> own;
    const auto failure = com::Attempt([&] {
        try {
            if (options.command == "doctor") {
                Doctor(answer);
                return;
            }
            Host host(options, answer);
            Commands().at(options.command)(host, options, answer);
        } catch (const BenchError& error) {
            own = error.what();
            throw com::CallError(error.Code());
        }
    });
    if (!failure) {
        return std::nullopt;
    }
    return Fault{failure->code, Host::CurrentStep(), own ? *own : Utf8(failure->Description())};
}

/// What became of one run of a command: the answer has it too.
struct Outcome {
    Answer answer;
    int status = kDone;
    std::size_t faultyBoxes = 0;
    /// Why the status is not 0, a line each.
    std::vector<std::string> reasons;
};

std::string Boxes(std::size_t count) {
    return count == 1 ? "one box" : std::to_string(count) + " boxes";
}

std::vector<std::string> Reasons(const std::optional<Fault>& fault, std::size_t faultyBoxes,
                                 const std::vector<std::string>& busy) {
    std::vector<std::string> reasons;
    if (fault) {
        reasons.push_back((fault->step.empty() ? "" : fault->step + ": ") + Hex(fault->code) + " " +
                          fault->text);
    }
    if (faultyBoxes == 1) {
        reasons.emplace_back("the component reported a fault in one box (--tolerate-boxes passes over it)");
    } else if (faultyBoxes > 1) {
        reasons.push_back("the component reported faults in " + Boxes(faultyBoxes) +
                          " (--tolerate-boxes passes over them)");
    }
    for (const std::string& dll : busy) {
        reasons.push_back(dll + " still has live objects after everything was released");
    }
    return reasons;
}

/// Under a failure, what explains it: the first findings.
void AddFindings(const Json& findings, std::vector<std::string>& reasons) {
    constexpr std::size_t kShown = 3;
    for (std::size_t i = 0; i < std::min(findings.size(), kShown); ++i) {
        reasons.push_back(LineOf(findings[i]));
    }
}

Outcome RunOnce(const Options& options, const std::string& problem = "") {
    Outcome outcome{Answer(options.command, OutputScreen()), kDone, 0, {}};
    Answer& answer = outcome.answer;
    const std::optional<Fault> fault = RunCommand(options, problem, answer);
    const std::vector<std::string> busy = DllsWithObjects();
    outcome.faultyBoxes = options.tolerateBoxes ? 0 : answer.Faults();
    outcome.status = fault || outcome.faultyBoxes > 0 || !busy.empty() ? kFailed : kDone;
    outcome.reasons = Reasons(fault, outcome.faultyBoxes, busy);
    com::Attempt([&] { Explain(answer); });
    if (fault) {
        AddFindings(answer.Findings(), outcome.reasons);
    }
    answer.data["boxes"] = answer.Boxes();
    answer.data["checkFindings"] = answer.Findings();
    answer.data["error"] =
        fault ? Json{{"step", fault->step}, {"hresult", Hex(fault->code)}, {"description", fault->text}}
              : Json();
    answer.data["liveObjectsIn"] = busy;
    answer.data["status"] = outcome.status;
    return outcome;
}

void ComplainOf(const std::vector<std::string>& reasons, const std::string& about) {
    const Screen screen = ErrorScreen();
    for (const std::string& reason : reasons) {
        std::string line = Painted("tambench: ", Ink::Fault, screen);
        // A finding names its file itself.
        const bool isNamed = !about.empty() && reason.starts_with(about.substr(0, about.size() - 1));
        Complain(line.append(isNamed ? "" : about).append(reason).append("\n"));
    }
}

/// A command over several streams: each is a run of its own, and none stops the others.
class ManyRuns {
  public:
    /// The outputs are the inputs' results, or empty when none are written.
    ManyRuns(const Options& options, std::vector<std::filesystem::path> outputs)
        : options_(options), summary_(options.command, OutputScreen()), outputs_(std::move(outputs)) {}

    int Do(const std::vector<batch::Input>& inputs) {
        batch::Progress progress(ErrorScreen().isTerminal ? ShowProgress : batch::ShowLine(), inputs.size(),
                                 ErrorScreen().width);
        std::size_t number = 0;
        batch::ForEach(
            inputs, 1, progress,
            [&](const batch::Input& input) { return RunOnce(OptionsFor(input, number++), input.problem); },
            [&](const batch::Input& input, Outcome outcome) {
                progress.Clear();
                Take(batch::NameOf(input.file), std::move(outcome));
            });
        return Finish(inputs.size());
    }

  private:
    Options OptionsFor(const batch::Input& input, std::size_t number) const {
        Options own = options_;
        own.stream = input.file.wstring();
        if (!outputs_.empty()) {
            std::error_code ignored; // whoever writes the file says what is wrong
            std::filesystem::create_directories(outputs_[number].parent_path(), ignored);
            own.output = outputs_[number].wstring();
        }
        return own;
    }

    void Take(const std::string& name, Outcome outcome) {
        outcome.answer.data["stream"] = name;
        const Json file = outcome.answer.data.value("file", Json());
        const std::string written = file.is_null() ? "" : ", written to " + file.get<std::string>();
        if (!outcome.answer.data["error"].is_null() ||
            (outcome.status != kDone && outcome.faultyBoxes == 0)) {
            ++failed_;
            Tell(name, "failed", Ink::Fault);
        } else if (outcome.faultyBoxes > 0) {
            ++withFaults_;
            Tell(name, "faults in " + Boxes(outcome.faultyBoxes) + written, Ink::Note);
        } else {
            ++done_;
            Tell(name, "done" + written, Ink::Good);
        }
        isPrinted_ = isPrinted_ && (options_.json || Print(lines_));
        lines_.clear();
        ComplainOf(outcome.reasons, name + ": ");
        summary_.data["files"].push_back(std::move(outcome.answer.data));
    }

    void Tell(const std::string& name, const std::string& what, Ink ink) {
        lines_ += name + ": " + summary_.Painted(what, ink) + "\n";
    }

    int Finish(std::size_t count) {
        const int status = failed_ + withFaults_ > 0 ? kFailed : kDone;
        summary_.data["summary"] = {
            {"files", count}, {"done", done_}, {"withFaults", withFaults_}, {"failed", failed_}};
        summary_.data["status"] = status;
        summary_.Line("\n" + Count(count, "stream") + ": " + std::to_string(done_) + " done, " +
                      std::to_string(withFaults_) + " with faults in boxes, " + std::to_string(failed_) +
                      " failed.");
        const bool isPrinted =
            Print(options_.json ? summary_.data.dump(2) + "\n" : summary_.TextWithoutBoxes()) && isPrinted_;
        return isPrinted ? status : kFailed;
    }

    const Options& options_;
    Answer summary_;
    std::vector<std::filesystem::path> outputs_;
    std::string lines_;
    bool isPrinted_ = true;
    std::size_t done_ = 0;
    std::size_t withFaults_ = 0;
    std::size_t failed_ = 0;
};

int RunMany(const Options& options) {
    const auto inputs = batch::FindInputs(StreamPaths(options));
    std::vector<std::filesystem::path> outputs;
    if (!options.outFolder.empty()) {
        try {
            outputs = batch::OutputsIn(options.outFolder, inputs, options.svg ? ".svg" : options.outEnding);
        } catch (const std::invalid_argument& error) {
            ComplainOf({error.what()}, "");
            return kWrongUsage;
        }
    }
    return ManyRuns(options, std::move(outputs)).Do(inputs);
}

} // namespace

int Run(const Options& options) {
    const Apartment apartment;
    if (IsForMany(options)) {
        return RunMany(options);
    }
    const Outcome outcome = RunOnce(options);
    const bool isPrinted = Print(options.json ? outcome.answer.data.dump(2) + "\n" : outcome.answer.Text());
    ComplainOf(outcome.reasons, "");
    return isPrinted ? outcome.status : kFailed;
}

} // namespace bench
