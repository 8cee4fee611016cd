#include "view/Frame.h"

#include "view/BlockPicture.h"
#include "view/FileDialogs.h"
#include "view/MessageHook.h"
#include "view/resource.h"

#include "bench/Text.h"
#include "bench/WholeFile.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace view {

namespace {

constexpr UINT kProgressPeriod = 60;
/// What takes no longer shows no progress, which would only flicker.
constexpr DWORD kShort = 250;

bool IsSamePath(const std::wstring& one, const std::wstring& other) {
    return CompareStringOrdinal(bench::FullPath(one).c_str(), -1, bench::FullPath(other).c_str(), -1, TRUE) ==
           CSTR_EQUAL;
}

std::wstring WithoutEnding(const std::wstring& path) {
    const std::size_t dot = path.find_last_of(L'.');
    const std::size_t slash = path.find_last_of(L"\\/");
    const bool hasEnding = dot != std::wstring::npos && (slash == std::wstring::npos || dot > slash);
    return hasEnding ? path.substr(0, dot) : path;
}

} // namespace

void Frame::Open(const std::wstring& file) {
    if (busy_ == 0 && AskToSave()) {
        module_.reset();
        Load(bench::FullPath(file));
    }
}

bool Frame::AskToSave() {
    if (busy_ > 0) {
        return false;
    }
    EnterCells();
    if (!history_.IsDirty()) {
        return true;
    }
    switch (Ask(Text(IDS_ASK_SAVE, NameOf(file_), std::to_wstring(history_.Unsaved().size())),
                MB_YESNOCANCEL | MB_ICONQUESTION)) {
    case IDYES:
        return Save();
    case IDNO:
        return true;
    default:
        return false;
    }
}

void Frame::Load(const std::wstring& file) {
    loadStart_ = GetTickCount();
    {
        const Busy busy(*this);
        const WaitPointer wait;
        isLoaded_ = false;
        history_.Clear();
        recovery_.Remove();
        sheet_->Clear();
        session_.reset(); // the old one first: only one gets the boxes
        file_ = file;
        project_.clear();
        watch_.Watch({{file, StampOf(file)}});
        std::vector<FindingRow> findings; // the list paints itself from the former ones meanwhile
        UpdateTitle();
        const std::wstring words = Text(IDS_LOADING, NameOf(file));
        SayAtOnce(words);
        // Some screen readers name the bar by its own text, others by the visible label before it.
        for (const HWND named : {progress_, progressLabel_}) {
            SetWindowTextW(named, words.c_str());
        }
        std::optional<Problem> problem = Try([&] {
            session_ = std::make_unique<Session>();
            session_->SetUnits(isUs_);
            session_->Read(file, module_);
        });
        if (session_ && !session_->Files().empty()) {
            watch_.Watch(session_->Files());
        }
        const bool isRead = session_ && !problem;
        if (isRead) {
            findings = session_->Findings();
            SetTimer(Handle(), kProgressTimer, kProgressPeriod, nullptr);
            isLoading_ = true;
            {
                // The component's own loop hands the messages on meanwhile: it knows no keys of ours.
                const MessageHook keys([this](MSG& message) { return Translate(message); });
                problem = Try([&] { session_->Load(); });
            }
            isLoading_ = false;
            KillTimer(Handle(), kProgressTimer);
            ShowProgress(false);
        }
        if (isClosing_) {
            DestroyWindow(Handle());
            return;
        }
        if (session_) {
            session_->LeaveBoxesToUser();
        }
        isLoaded_ = isRead && !problem && !session_->IsStopped();
        checked_ = std::move(findings);
        boxes_.Clear();
        if (isRead && !session_->IsStopped()) {
            TakeBoxes();
        }
        if (session_ && session_->IsStopped()) {
            Say(Text(IDS_STOPPED, NameOf(file)));
        } else if (problem) {
            AddProblem(*problem, isRead ? IDS_LOAD_RULE : IDS_READ_RULE);
            Say(Text(isRead ? IDS_NOT_LOADED : IDS_NOT_READ, NameOf(file)));
        }
        if (const auto unread = Try([&] { Fill(); })) {
            // What cannot be read as a whole is not shown at all.
            isLoaded_ = false;
            AddProblem(*unread, IDS_LOAD_RULE);
            Say(Text(IDS_NOT_LOADED, NameOf(file)));
            Fill();
        }
        if (isLoaded_) {
            module_ = session_->ModuleKeyOf(); // another one may be before it next time
            settings_.recent.Add(file);
            Say(Text(IDS_LOADED, NameOf(file),
                     std::to_wstring(pages_[0].table.Rows().size() + pages_[1].table.Rows().size() +
                                     pages_[2].table.Rows().size())) +
                (session_->Modules().size() > 1
                     ? Text(IDS_ONE_OF_MODULES, std::to_wstring(session_->Modules().size()))
                     : std::wstring()));
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
        PostMessageW(Handle(), WM_COMMAND, IDM_VIEW_SHOW_SOURCE, 0); // behind the first picture
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

bool Frame::Save() {
    if (project_.empty() && session_ && session_->FileKind() == Session::Kind::Project) {
        project_ = file_;
    }
    return project_.empty() ? SaveAs() : SaveProject(project_);
}

std::wstring Frame::Chosen(const std::function<std::wstring()>& choose) {
    const OwnBox own(*this);
    return choose();
}

bool Frame::SaveAs() {
    const std::wstring path = Chosen([this] {
        return ChooseName(Handle(), IDS_SAVE_PROJECT, IDS_FILTER_PROJECT, L"xml",
                          project_.empty() ? WithoutEnding(file_) + L".project.xml" : project_, false);
    });
    return !path.empty() && SaveProject(path);
}

bool Frame::SaveProject(const std::wstring& path) {
    std::optional<Problem> problem;
    {
        const Busy busy(*this); // the component may handle messages meanwhile
        const WaitPointer wait;
        SayAtOnce(Text(IDS_WRITING, NameOf(path)));
        problem = Try([&] { session_->SaveProject(path, ValuesToSave()); });
    }
    TakeBoxes();
    if (problem) {
        SayNotSaved(path, *problem);
        return false;
    }
    project_ = path;
    MarkAsRead(path);
    settings_.recent.Add(path);
    MarkSaved();
    Say(Text(IDS_SAVED, path));
    return true;
}

void Frame::SaveStream() {
    const std::wstring path = Chosen([this] {
        return ChooseName(Handle(), IDS_SAVE_STREAM, IDS_FILTER_STREAM, L"xml",
                          WithoutEnding(file_) + L".changed.xml", true);
    });
    if (path.empty()) {
        return;
    }
    SayAtOnce(Text(IDS_WRITING, NameOf(path)));
    const WaitPointer wait;
    if (const auto problem =
            Try([&] { bench::WriteWholeFile(path, session_->StreamText(ValuesToSave())); })) {
        SayNotSaved(path, *problem);
        return;
    }
    MarkAsRead(path);
    settings_.recent.Add(path);
    MarkSaved();
    Say(Text(IDS_SAVED, path));
}

void Frame::SayNotSaved(const std::wstring& path, const Problem& problem) {
    Say({});
    Ask(Text(IDS_NOT_SAVED, NameOf(path), problem.words), MB_OK | MB_ICONERROR);
}

void Frame::MarkAsRead(const std::wstring& path) {
    const std::vector<StampedFile>& files = watch_.Files();
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (IsSamePath(path, files[i].path)) {
            watch_.MarkRead(i, StampOf(path));
        }
    }
}

void Frame::Export(int command) {
    struct What {
        int command;
        UINT title;
        UINT filter;
        const wchar_t* ending;
        const wchar_t* addition;
    };
    constexpr What kWhat[] = {
        {IDM_FILE_EXPORT_IMAGE, IDS_EXPORT_IMAGE, IDS_FILTER_IMAGE, L"txt", L".image.txt"},
        {IDM_FILE_EXPORT_INTEROP, IDS_EXPORT_INTEROP, IDS_FILTER_XML, L"xml", L".interop.xml"},
        {IDM_FILE_EXPORT_SHEET, IDS_EXPORT_SHEET, IDS_FILTER_HTML, L"html", L".html"},
        {IDM_FILE_EXPORT_PNG, IDS_EXPORT_PNG, IDS_FILTER_PNG, L"png", L".png"},
        {IDM_FILE_EXPORT_SVG, IDS_EXPORT_SVG, IDS_FILTER_SVG, L"svg", L".svg"}};
    const auto* const what = std::find_if(std::begin(kWhat), std::end(kWhat),
                                          [command](const What& one) { return one.command == command; });
    const std::wstring path = Chosen([&] {
        return ChooseName(Handle(), what->title, what->filter, what->ending,
                          WithoutEnding(file_) + what->addition, true);
    });
    if (path.empty()) {
        return;
    }
    SayAtOnce(Text(IDS_WRITING, NameOf(path)));
    const Busy busy(*this);
    const WaitPointer wait;
    const auto problem = Try([&] {
        switch (command) {
        case IDM_FILE_EXPORT_IMAGE:
            session_->ExportImage(path);
            break;
        case IDM_FILE_EXPORT_INTEROP:
            session_->ExportInteroperability(path);
            break;
        case IDM_FILE_EXPORT_PNG:
            bench::WriteWholeFile(path, PngOf(sheet_->Drawing(), sheet_->Icon()));
            break;
        default:
            session_->ExportSheet(path, command == IDM_FILE_EXPORT_SVG);
            break;
        }
    });
    TakeBoxes();
    if (problem) {
        SayNotSaved(path, *problem);
    } else {
        Say(Text(IDS_SAVED, path));
    }
}

void Frame::CheckDisk() {
    // Who types is asked when the value is entered: the next key would answer.
    const bool isTyped = std::any_of(pages_.begin(), pages_.end(),
                                     [](const PointPage& page) { return page.pane && page.pane->IsTyped(); });
    if (isTyped || busy_ > 0 || file_.empty() || isAsking_ || IsIconic(Handle()) != FALSE) {
        return;
    }
    std::vector<FileStamp> now;
    for (const StampedFile& file : watch_.Files()) {
        now.push_back(StampOf(file.path));
    }
    std::wstring changed;
    for (const std::wstring& path : watch_.Look(now)) {
        changed += (changed.empty() ? L"" : L", ") + NameOf(path);
    }
    if (changed.empty()) {
        return;
    }
    isAsking_ = true;
    const std::wstring question =
        history_.IsDirty() ? Text(IDS_CHANGED_DIRTY, changed, std::to_wstring(history_.Unsaved().size()))
                           : Text(IDS_CHANGED, changed);
    // The box comes unasked for: a key that was meant for the window loses nothing.
    const UINT safe = history_.IsDirty() ? MB_DEFBUTTON2 : MB_DEFBUTTON1;
    const bool isWanted = Ask(question, MB_YESNO | MB_ICONQUESTION | safe) == IDYES;
    isAsking_ = false;
    if (isWanted) {
        Load(file_);
    }
}

void Frame::Close() {
    if (busy_ > 0) {
        if (isLoading_) {
            isClosing_ = true;
            session_->Stop();
        }
        return;
    }
    if (AskToSave()) {
        recovery_.Remove();
        DestroyWindow(Handle());
    }
}

bool Frame::OnQueryEnd() {
    // Who is busy cannot be asked; what is unsaved then keeps the session.
    isEndAgreed_ = busy_ > 0 ? !history_.IsDirty() : AskToSave();
    return isEndAgreed_;
}

void Frame::OnEnd() {
    // The system ends the program without another word.
    SavePlaces();
    if (isEndAgreed_) {
        recovery_.Remove();
    }
}

void Frame::Start(const std::wstring& file) {
    const auto problem = Try([&] {
        OfferRecovery();
        const std::wstring path = file.empty() ? file : bench::FullPath(file);
        const bool isGone = isClosing_; // closed while the file of a recovery was loading
        if (!path.empty() && !isGone && !IsSamePath(path, file_)) {
            Open(path);
        }
    });
    if (problem) {
        OnProblem(problem->words);
    }
}

void Frame::OfferRecovery() {
    for (const RecoveryFile::Left& left : RecoveryFile::FindLeft()) {
        const std::vector<StampedFile>& files = left.recovery.files;
        const bool isSame = std::all_of(files.begin(), files.end(), [](const StampedFile& file) {
            return StampOf(file.path) == file.stamp;
        });
        const std::wstring count = std::to_wstring(left.recovery.values.size());
        const int answer = Ask(Text(isSame ? IDS_RECOVER : IDS_RECOVER_OTHER, files.front().path, count),
                               MB_YESNO | MB_ICONQUESTION);
        if (answer != IDYES) {
            DeleteFileW(left.path.c_str());
            continue;
        }
        module_ = left.recovery.module;
        Load(files.front().path);
        if (isLoaded_ && BringBack(left.recovery)) {
            DeleteFileW(left.path.c_str());
        } // else it stays for the next start
        return;
    }
}

bool Frame::BringBack(const Recovery& recovery) {
    std::vector<view::Change> step;
    std::wstring gone;
    int lost = 0;
    for (const auto& [point, value] : recovery.values) {
        const auto row = session_->ReadRow(point);
        if (!row) {
            constexpr int kMostLines = 20;
            gone += ++lost <= kMostLines     ? L"\n" + point.name + L" = " + value
                    : lost == kMostLines + 1 ? L"\n…"
                                             : L"";
        } else if (row->value != value) {
            step.push_back({point, row->value, value});
        }
    }
    if (bench::IsFile(recovery.project)) {
        project_ = recovery.project;
    }
    history_.Add(step);
    if (!Apply(step)) {
        history_.Undo();
        return false;
    }
    if (!gone.empty()) {
        Ask(Text(IDS_NOT_BROUGHT_BACK, NameOf(file_), gone), MB_OK | MB_ICONWARNING);
    }
    return isKept_ || !history_.IsDirty();
}

} // namespace view
