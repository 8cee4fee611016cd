#include "view/Frame_Busy.h"

#include "view/MessageHook.h"
#include "view/resource.h"

#include "bench/Text.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace view {

namespace {

constexpr UINT kProgressPeriod = 60;
/// What takes no longer shows no progress, which would only flicker.
constexpr DWORD kShort = 250;

} // namespace

void Frame::Load(const std::wstring& file) {
    loadStart_ = GetTickCount();
    {
        const Busy busy(*this);
        const WaitPointer wait;
        BeginLoad(file);
        std::optional<Problem> problem = ReadFromFile();
        const bool isRead = session_ && !problem;
        std::vector<FindingRow> findings; // the list paints itself from the former ones meanwhile
        if (isRead) {
            findings = session_->Findings();
            problem = LoadIntoModule();
        }
        if (isClosing_) {
            ForgetUnsaved();
            DestroyWindow(Handle());
            return;
        }
        if (session_) {
            session_->LeaveBoxesToUser();
        }
        checked_ = std::move(findings);
        ShowOutcome(isRead, problem);
        if (isLoaded_) {
            module_ = session_->ModuleKeyOf(); // another one may be before it next time
            settings_.AddRecent(file);
            SayLoaded();
        }
    }
    UpdateTitle();
    UpdateTools();
    UpdateStatus();
    if (!session_ || session_->Source().Text().empty()) {
        Ask(findings_.empty() ? Text(IDS_NOT_READ, NameOf(file)) : bench::Wide(findings_.front().message),
            MB_OK | MB_ICONERROR);
    }
}

void Frame::BeginLoad(const std::wstring& file) {
    LetGo(); // the old one first: only one gets the boxes
    file_ = file;
    watch_.Watch({{file, StampOf(file)}});
    UpdateTitle();
    const std::wstring words = Text(IDS_LOADING, NameOf(file));
    SayAtOnce(words);
    // Some screen readers name the bar by its own text, others by the visible label before it.
    for (const HWND named : {progress_, progressLabel_}) {
        SetWindowTextW(named, words.c_str());
    }
}

std::optional<Problem> Frame::ReadFromFile() {
    std::optional<Problem> problem = Try([&] {
        session_ = std::make_unique<Session>();
        session_->SetUnits(isUs_);
        session_->Read(file_, module_);
    });
    if (session_ && !session_->Files().empty()) {
        watch_.Watch(session_->Files());
    }
    return problem;
}

std::optional<Problem> Frame::LoadIntoModule() {
    SetTimer(Handle(), kProgressTimer, kProgressPeriod, nullptr);
    isLoading_ = true;
    std::optional<Problem> problem;
    {
        // The component's own loop hands the messages on meanwhile: it knows no keys of ours.
        const MessageHook keys([this](MSG& message) { return Translate(message); });
        problem = Try([&] { session_->Load(); });
    }
    isLoading_ = false;
    KillTimer(Handle(), kProgressTimer);
    ShowProgress(false);
    return problem;
}

void Frame::ShowOutcome(bool isRead, const std::optional<Problem>& problem) {
    const bool isStopped = session_ && session_->IsStopped();
    isLoaded_ = isRead && !problem && !isStopped;
    boxes_.Clear();
    if (isRead && !isStopped) {
        TakeBoxes();
    }
    if (isStopped) {
        Say(Text(IDS_STOPPED, NameOf(file_)));
    } else if (problem) {
        AddProblem(*problem, isRead ? IDS_LOAD_RULE : IDS_READ_RULE);
        Say(Text(isRead ? IDS_NOT_LOADED : IDS_NOT_READ, NameOf(file_)));
    }
    if (const auto unread = Try([&] { Fill(); })) {
        // What cannot be read as a whole is not shown at all.
        isLoaded_ = false;
        AddProblem(*unread, IDS_LOAD_RULE);
        Say(Text(IDS_NOT_LOADED, NameOf(file_)));
        Fill();
    }
}

void Frame::SayLoaded() {
    std::size_t points = 0;
    for (const PointPage& page : pages_) {
        points += page.table.Rows().size();
    }
    const std::size_t modules = session_->Modules().size();
    Say(Text(IDS_LOADED, NameOf(file_), std::to_wstring(points)) +
        (modules > 1 ? Text(IDS_ONE_OF_MODULES, std::to_wstring(modules)) : std::wstring()));
}

void Frame::AddProblem(const Problem& problem, UINT rule) {
    FindingRow row;
    row.weight = Weight::Box;
    row.rule = bench::Utf8(Text(rule));
    row.message = bench::Utf8(problem.words);
    std::vector<FindingRow> rows; // before all others
    rows.push_back(std::move(row));
    rows.insert(rows.end(), std::make_move_iterator(checked_.begin()),
                std::make_move_iterator(checked_.end()));
    checked_ = std::move(rows);
}

void Frame::Fill() {
    const std::optional<ModuleKey> module = session_ ? session_->ModuleKeyOf() : std::nullopt;
    const bool isSameFile = shownFile_ == file_ && shownModule_ == module;
    shownFile_ = file_;
    shownModule_ = module;
    for (PointPage& page : pages_) {
        const auto former = page.pane->Picked();
        const auto picked =
            isSameFile && former ? std::optional(page.table.Rows().at(*former).id) : std::nullopt;
        page.pane->Forget();
        page.table.Assign(isLoaded_ ? session_->ReadRows(page.kind) : std::vector<Row>());
        page.pane->Update();
        if (const Row* const row = picked ? page.table.Find(*picked) : nullptr) {
            page.pane->Pick(static_cast<std::size_t>(row - page.table.Rows().data()));
        }
    }
    if (types_.empty() && session_) { // the catalogue is the same for all files
        types_ = session_->ReadTypes();
        typeList_.Reset(types_.size(), 8);
        typePane_->Update();
    }
    if (isLoaded_) {
        sheet_->Show(ReadSheet(), session_->Icon());
        if (!pages_[0].pane->Picked()) {
            pages_[0].pane->Pick(0);
        }
    } else {
        sheet_->Clear();
    }
    ShowFindings();
    isSourceShown_ = false;
    if (settings_.showsSource) {
        PostMessageW(Handle(), WM_COMMAND, IDM_VIEW_SHOW_SOURCE, 0); // after the first picture
    }
}

void Frame::OnProgress() {
    if (!isLoading_ || session_->PointsInFile() == 0 || GetTickCount() - loadStart_ < kShort) {
        return;
    }
    const bool isShown = IsWindowVisible(progress_) != FALSE;
    Send(progress_, PBM_SETRANGE32, 0, session_->PointsInFile());
    Send(progress_, PBM_SETPOS, std::min(session_->PointsLoaded(), session_->PointsInFile()));
    if (!isShown) {
        ShowProgress(true);
    }
}

void Frame::ShowProgress(bool isShown) {
    for (const HWND part : {progressLabel_, progress_, stop_}) {
        ShowWindow(part, isShown ? SW_SHOWNA : SW_HIDE);
    }
}

} // namespace view
