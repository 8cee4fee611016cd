#pragma once

#include "tests/fault/Imports.h"
#include "tests/fault/Injection.h"
#include "tests/fault/Slots.h"
#include "tests/support/Fixture.h"

#include <functional>
#include <string>
#include <vector>

namespace fault {

/// A box as the component told of a failure.
struct Told {
    bool isReport = false;
    /// Description of a report, text of a message box.
    std::wstring text;
    std::wstring callingObject;
    std::wstring callingFunction;
    /// One line of it, for comparing and for messages.
    std::wstring Line() const;
};

/// What a job's run left: its HRESULT, its answer and what can be read of its
/// objects afterwards, one text each, in the order in which the job sets them.
struct Left {
    HRESULT result = S_OK;
    std::wstring answer;
    std::vector<std::wstring> fields;
    bool operator==(const Left&) const = default;
};

/// A run under a fault, for a job's own judgement.
struct Case {
    Kind kind;
    Mode mode;
    int n;
    const Left& before;
    const Left& untouched;
    const Left& left;
    const std::vector<Told>& told;
    bool HasFailed() const noexcept { return FAILED(left.result); }
    bool IsAsUntouched() const { return left == untouched; }
};

/// A piece of work that is run again and again, each time with another fault.
struct Job {
    std::string name;
    /// Makes the objects; not under the fault.
    std::function<void()> prepare;
    std::function<Left()> run;
    /// What can be read; not under the fault.
    std::function<std::vector<std::wstring>()> read;
    /// Lets go of every object.
    std::function<void()> release;
    /// Expectations of this job beside those of all.
    std::function<void(const Case&)> judge;
    std::vector<Kind> kinds;
    /// Whether a failure goes back to the caller as HRESULT.
    bool mayFail = true;
    /// What it may answer beside the fault's own code.
    std::vector<HRESULT> followUps = {};
    /// Calling functions of the reports that it may show.
    std::vector<std::wstring> reports;
};

/// The fields up to some place are the untouched run's, the others those from
/// before: nothing was set out of turn or by half.
void ExpectSetInOrder(const Case& run);
/// The fields are the first ones of the untouched run's.
void ExpectFirstOf(const Case& run);
/// Unless the caller was given a failure or the user a report, all is as in
/// the untouched run. Memory that is gone for ever may have no report either.
void ExpectNotSilent(const Case& run);

/// Runs jobs under every single fault.
class FaultLoop {
  public:
    /// Faults of any DLL of this family, and its own word on objects that live.
    FaultLoop(HMODULE dll, bench::BoxWatcher& watcher);
    FaultLoop(const support::Component& component, bench::BoxWatcher& watcher)
        : FaultLoop(component.Module(), watcher) {}
    FaultLoop(const FaultLoop&) = delete;
    FaultLoop& operator=(const FaultLoop&) = delete;

    /// For the methods of host objects.
    Slots& HostSlots() noexcept { return slots_; }

    /// Each call of each kind fails, once and with all later ones. After each
    /// the component must be whole, and the next run right.
    void Run(const Job& job);

  private:
    Left RunOnce(const Job& job, Kind kind, int n, Mode mode, bool& happened);
    int RunKind(const Job& job, Kind kind, Mode mode);
    void Judge(const Job& job, const Case& run) const;
    std::vector<Told> TakeTold();

    HRESULT(STDAPICALLTYPE* canUnload_)() = nullptr;
    bench::BoxWatcher& watcher_;
    Slots slots_;
    Imports imports_;
    Left before_;
    Left untouched_;
    std::vector<Told> told_;
};

} // namespace fault
