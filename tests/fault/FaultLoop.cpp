// Runs a job without a fault, to learn its right answer. Then, for each kind of call
// that can fail, it runs the job with the first call failing, with the second, and so
// on, until a run ends before the n-th call: it must give the right answer. Each series
// is run twice, with the n-th call alone failing and with all later ones too. After
// each fault three things are checked: what the job told (HRESULT, report, box) and left
// is a documented outcome, no object of the component is alive, and the next run
// without a fault gives the right answer. Imports puts stand-ins that fail in place of
// the functions that the component imports, Slots in place of the methods of objects.
#include "tests/fault/FaultLoop.h"

#include "tests/fault/DomSlots.h"

#include <algorithm>
#include <cstddef>
#include <iomanip>
#include <iostream>
#include <sstream>

namespace fault {

namespace {

/// Past this many calls of a kind only every seventh is made to fail; no job
/// of these tests comes near it without a note.
constexpr int kDense = 2000;
constexpr int kStride = 7;

Told ToldBy(const bench::Box& box) {
    Told told;
    told.isReport = !box.isMessageBox;
    told.text = box.text;
    for (const auto& [id, text] : box.controls) {
        const std::wstring objectLabel = L"* Calling object (Me.Name or module name): \r\n  ";
        const std::wstring functionLabel = L"\r\n* Calling function: \r\n  ";
        const auto object = text.find(objectLabel);
        const auto function = text.find(functionLabel);
        if (object != std::wstring::npos && function != std::wstring::npos) {
            const auto begin = object + objectLabel.size();
            told.callingObject = text.substr(begin, function - begin);
            told.callingFunction = text.substr(function + functionLabel.size());
        }
    }
    if (told.isReport && !box.fields.empty()) {
        told.text = box.fields.front();
    }
    return told;
}

/// Says at the end of the program how much it did, and which methods no job called.
class Total : public testing::Environment {
  public:
    void Add(int points) {
        ++jobs_;
        points_ += points;
    }
    void TearDown() override {
        std::cout << points_ << " points in " << jobs_ << " jobs\n";
        for (const auto& [method, calls] : Slots::Counts()) {
            if (*calls == 0) {
                std::cout << "replaced and never called: " << method << "\n";
            }
        }
        std::cout << std::flush;
    }

  private:
    int jobs_ = 0;
    int points_ = 0;
};

/// GoogleTest owns it.
Total& TheTotal() {
    static auto* const total = static_cast<Total*>(testing::AddGlobalTestEnvironment(new Total));
    return *total;
}

std::string Plain(const std::wstring& text) {
    std::string plain;
    for (const wchar_t c : text) {
        plain += c < 128 ? static_cast<char>(c) : '?';
    }
    return plain;
}

std::string Lines(const std::vector<std::wstring>& texts) {
    std::string lines;
    for (const std::wstring& text : texts) {
        lines += "\n    " + Plain(text);
    }
    return lines;
}

std::string Lines(const std::vector<Told>& told) {
    std::vector<std::wstring> texts;
    for (const Told& one : told) {
        texts.push_back(one.Line());
    }
    return Lines(texts);
}

const char* NameOf(Mode mode) {
    return mode == Mode::Once ? "once" : "for ever";
}

int Failures() {
    const auto* result = testing::UnitTest::GetInstance()->current_test_info()->result();
    int failures = 0;
    for (int i = 0; i < result->total_part_count(); ++i) {
        failures += result->GetTestPartResult(i).failed() ? 1 : 0;
    }
    return failures;
}

} // namespace

std::wstring Told::Line() const {
    return isReport ? L"report \"" + text + L"\" of " + callingObject + L" / " + callingFunction
                    : L"box \"" + text + L"\"";
}

FaultLoop::FaultLoop(HMODULE dll, bench::BoxWatcher& watcher)
    : canUnload_(reinterpret_cast<decltype(canUnload_)>(
          reinterpret_cast<void*>(GetProcAddress(dll, "DllCanUnloadNow"))))
    , watcher_(watcher)
    , slots_(dll)
    , imports_(dll) {
    ReplaceDom(slots_);
}

std::vector<Told> FaultLoop::TakeTold() {
    std::vector<Told> told;
    for (const bench::Box& box : watcher_.Take()) {
        const Told one = ToldBy(box);
        const bool isOther = one.isReport && one.callingFunction.empty(); // a dialog of the job itself
        if (!isOther) {
            told.push_back(one);
        }
    }
    return told;
}

Left FaultLoop::RunOnce(const Job& job, Kind kind, int n, Mode mode, bool& happened) {
    job.prepare();
    before_.fields = job.read();
    TakeTold();
    Left left;
    {
        Injection injection(kind, n, mode);
        left = job.run();
        happened = n == 0 || injection.HasHappened();
    }
    SetErrorInfo(0, nullptr);
    left.fields = job.read();
    job.release();
    told_ = TakeTold();
    EXPECT_EQ(canUnload_(), S_OK) << "objects of the component are still alive";
    return left;
}

void FaultLoop::Run(const Job& job) {
    bool happened = false;
    untouched_ = RunOnce(job, Kind::Memory, 0, Mode::Once, happened);
    ASSERT_EQ(untouched_.result, S_OK);
    std::ostringstream row;
    row << std::left << std::setw(36) << job.name;
    int all = 0;
    for (const Kind kind : kKinds) {
        int points[] = {0, 0};
        if (std::find(job.kinds.begin(), job.kinds.end(), kind) != job.kinds.end()) {
            points[0] = RunKind(job, kind, Mode::Once);
            points[1] = RunKind(job, kind, Mode::ForEver);
            EXPECT_GT(points[0], 0) << "nothing of the kind " << NameOf(kind) << " was called";
        }
        all += points[0] + points[1];
        row << std::setw(9) << NameOf(kind) << std::setw(5) << points[0] << "+" << std::setw(5) << points[1];
        testing::Test::RecordProperty(std::string(NameOf(kind)) + "_once", points[0]);
        testing::Test::RecordProperty(std::string(NameOf(kind)) + "_for_ever", points[1]);
    }
    std::cout << row.str() << std::endl;
    TheTotal().Add(all);
}

int FaultLoop::RunKind(const Job& job, Kind kind, Mode mode) {
    int points = 0;
    for (int n = 1;; n += n < kDense ? 1 : kStride) {
        if (n == kDense) {
            std::cout << job.name << ": from " << kDense << " on every " << kStride << "th call\n";
        }
        const testing::ScopedTrace trace(
            __FILE__, __LINE__, std::string(NameOf(kind)) + " " + std::to_string(n) + " " + NameOf(mode));
        bool happened = false;
        const Left left = RunOnce(job, kind, n, mode, happened);
        if (!happened) {
            EXPECT_TRUE(left == untouched_)
                << Lines(left.fields) << "\n  untouched" << Lines(untouched_.fields);
            return points;
        }
        ++points;
        const std::vector<Told> told = told_;
        const int failuresBefore = Failures();
        Judge(job, Case{kind, mode, n, before_, untouched_, left, told});
        // What failed leaves nothing behind: the next run is right.
        const Left next = RunOnce(job, kind, 0, mode, happened);
        EXPECT_TRUE(next == untouched_) << "the next run gives" << Lines(next.fields);
        if (Failures() > failuresBefore) {
            ADD_FAILURE() << "result " << std::hex << static_cast<unsigned long>(left.result) << "\n  answer "
                          << Plain(left.answer) << "\n  boxes" << Lines(told) << "\n  left"
                          << Lines(left.fields) << "\n  untouched " << Plain(untouched_.answer)
                          << Lines(untouched_.fields);
            return points;
        }
    }
}

void FaultLoop::Judge(const Job& job, const Case& run) const {
    if (run.HasFailed()) {
        EXPECT_TRUE(job.mayFail);
        const bool isFollowUp =
            std::find(job.followUps.begin(), job.followUps.end(), run.left.result) != job.followUps.end();
        EXPECT_TRUE(run.left.result == CodeOf(run.kind) || isFollowUp)
            << std::hex << static_cast<unsigned long>(run.left.result);
        EXPECT_EQ(run.left.answer, L"");
    }
    for (const Told& told : run.told) {
        const bool isExpected = !told.isReport || std::find(job.reports.begin(), job.reports.end(),
                                                            told.callingFunction) != job.reports.end();
        EXPECT_TRUE(isExpected) << Plain(told.Line());
        if (told.isReport && run.mode == Mode::Once && run.kind != Kind::File) {
            EXPECT_EQ(told.text, SystemText(CodeOf(run.kind)));
        }
    }
    job.judge(run);
}

void ExpectSetInOrder(const Case& run) {
    const auto& seen = run.left.fields;
    const auto& old = run.before.fields;
    const auto& target = run.untouched.fields;
    ASSERT_EQ(seen.size(), old.size());
    ASSERT_EQ(seen.size(), target.size());
    std::size_t i = 0;
    while (i < seen.size() && seen[i] == target[i]) {
        ++i;
    }
    while (i < seen.size() && seen[i] == old[i]) {
        ++i;
    }
    EXPECT_EQ(i, seen.size()) << "set out of turn: " << (i < seen.size() ? Plain(seen[i]) : "");
}

void ExpectFirstOf(const Case& run) {
    const auto& seen = run.left.fields;
    const auto& all = run.untouched.fields;
    ASSERT_LE(seen.size(), all.size());
    EXPECT_TRUE(std::equal(seen.begin(), seen.end(), all.begin()));
}

void ExpectNotSilent(const Case& run) {
    const bool isMute = run.mode == Mode::ForEver && (run.kind == Kind::Memory || run.kind == Kind::Text);
    if (!run.HasFailed() && run.told.empty() && !isMute) {
        EXPECT_TRUE(run.left == run.untouched) << "a fault has been passed over in silence";
    }
}

} // namespace fault
