#include "view/Frame.h"

#include "view/BlockPicture.h"
#include "view/FileDialogs.h"
#include "view/resource.h"

#include "bench/Text.h"
#include "bench/WholeFile.h"

#include <algorithm>
#include <utility>

namespace view {

namespace {

constexpr UINT_PTR kProgressTimer = 2;
constexpr UINT kProgressPeriod = 60;
/// What takes no longer shows no progress, which would only flicker.
constexpr DWORD kShort = 250;

std::wstring NameOf(const std::wstring& path) {
    return path.substr(path.find_last_of(L"\\/") + 1);
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
        Load(bench::FullPath(file));
    }
}

bool Frame::AskToSave() {
    if (busy_ > 0) {
        return false;
    }
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
        HCURSOR const former = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
        isLoaded_ = false;
        history_.Clear();
        changed_.clear();
        recovery_.Remove();
        sheet_->Clear();
        session_.reset(); // the old one first: only one gets the boxes
        file_ = file;
        project_.clear();
        stamp_ = StampOf(file);
        findings_.clear();
        UpdateTitle();
        Say(Text(IDS_LOADING, NameOf(file)));
        std::optional<Problem> problem = Try([&] {
            session_ = std::make_unique<Session>();
            session_->SetUnits(isUs_);
            session_->Read(file);
        });
        const bool isRead = session_ && !problem;
        if (isRead) {
            findings_ = session_->Findings();
            SetTimer(Handle(), kProgressTimer, kProgressPeriod, nullptr);
            isLoading_ = true;
            problem = Try([&] { session_->Load(); });
            isLoading_ = false;
            KillTimer(Handle(), kProgressTimer);
            ShowWindow(progress_, SW_HIDE);
            ShowWindow(stop_, SW_HIDE);
        }
        SetCursor(former);
        if (isClosing_) {
            DestroyWindow(Handle());
            return;
        }
        if (session_) {
            session_->LeaveBoxesToUser();
        }
        isLoaded_ = isRead && !problem;
        if (isRead && !session_->IsStopped()) {
            TakeBoxes();
        }
        if (session_ && session_->IsStopped()) {
            Say(Text(IDS_STOPPED, NameOf(file)));
        } else if (problem) {
            FindingRow row;
            row.weight = Weight::Box;
            row.rule = bench::Utf8(Text(isRead ? IDS_LOAD_RULE : IDS_READ_RULE));
            row.message = bench::Utf8(problem->words);
            findings_.insert(findings_.begin(), std::move(row));
            Say(Text(isRead ? IDS_NOT_LOADED : IDS_NOT_READ, NameOf(file)));
        }
        Fill();
        if (isLoaded_) {
            settings_.recent.Add(file);
            Say(Text(IDS_LOADED, NameOf(file),
                     std::to_wstring(pages_[0].table.Rows().size() + pages_[1].table.Rows().size() +
                                     pages_[2].table.Rows().size())));
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

void Frame::Fill() {
    for (PointPage& page : pages_) {
        page.table.Assign(isLoaded_ ? session_->ReadRows(page.kind) : std::vector<Row>());
        page.pane->Update();
    }
    types_ = session_ ? session_->ReadTypes() : std::vector<TypeRow>();
    typeList_.Reset(types_.size(), 8);
    typePane_->Update();
    if (isLoaded_) {
        sheet_->Show(ReadSheet(), session_->Icon());
        pages_[0].pane->Pick(0);
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
        ShowWindow(progress_, SW_SHOWNA);
        ShowWindow(stop_, SW_SHOWNA);
    }
}

bool Frame::Save() {
    if (project_.empty() && session_ && session_->FileKind() == Session::Kind::Project) {
        project_ = file_;
    }
    return project_.empty() ? SaveAs() : SaveProject(project_);
}

bool Frame::SaveAs() {
    const Busy busy(*this);
    const std::wstring path =
        ChooseName(Handle(), IDS_SAVE_PROJECT, IDS_FILTER_PROJECT, L"xml",
                   project_.empty() ? WithoutEnding(file_) + L".project.xml" : project_, false);
    return !path.empty() && SaveProject(path);
}

bool Frame::SaveProject(const std::wstring& path) {
    if (const auto problem = Try([&] { session_->SaveProject(path, ValuesToSave()); })) {
        Ask(Text(IDS_NOT_SAVED, NameOf(path), problem->words), MB_OK | MB_ICONERROR);
        return false;
    }
    project_ = path;
    if (CompareStringOrdinal(path.c_str(), -1, file_.c_str(), -1, TRUE) == CSTR_EQUAL) {
        stamp_ = StampOf(file_);
    }
    settings_.recent.Add(path);
    MarkSaved();
    Say(Text(IDS_SAVED, path));
    return true;
}

void Frame::SaveStream() {
    const Busy busy(*this);
    const std::wstring path = ChooseName(Handle(), IDS_SAVE_STREAM, IDS_FILTER_STREAM, L"xml",
                                         WithoutEnding(file_) + L".changed.xml", true);
    if (path.empty()) {
        return;
    }
    if (const auto problem =
            Try([&] { bench::WriteWholeFile(path, session_->StreamText(ValuesToSave())); })) {
        Ask(Text(IDS_NOT_SAVED, NameOf(path), problem->words), MB_OK | MB_ICONERROR);
        return;
    }
    if (CompareStringOrdinal(path.c_str(), -1, file_.c_str(), -1, TRUE) == CSTR_EQUAL) {
        stamp_ = StampOf(file_);
    }
    settings_.recent.Add(path);
    MarkSaved();
    Say(Text(IDS_SAVED, path));
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
    const Busy busy(*this);
    const std::wstring path = ChooseName(Handle(), what->title, what->filter, what->ending,
                                         WithoutEnding(file_) + what->addition, true);
    if (path.empty()) {
        return;
    }
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
        Ask(Text(IDS_NOT_SAVED, NameOf(path), problem->words), MB_OK | MB_ICONERROR);
    } else {
        Say(Text(IDS_SAVED, path));
    }
}

void Frame::CheckDisk() {
    if (busy_ > 0 || file_.empty() || isAsking_ || IsIconic(Handle()) != FALSE) {
        return;
    }
    const FileStamp now = StampOf(file_);
    if (now == stamp_ || now == FileStamp{}) {
        return;
    }
    stamp_ = now; // asked once for each change
    isAsking_ = true;
    const std::wstring question = history_.IsDirty() ? Text(IDS_CHANGED_DIRTY, NameOf(file_),
                                                            std::to_wstring(history_.Unsaved().size()))
                                                     : Text(IDS_CHANGED, NameOf(file_));
    const bool isWanted = Ask(question, MB_YESNO | MB_ICONQUESTION) == IDYES;
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

bool Frame::OfferRecovery() {
    for (const RecoveryFile::Left& left : RecoveryFile::FindLeft()) {
        const bool isSame = StampOf(left.recovery.file) == left.recovery.stamp;
        const std::wstring count = std::to_wstring(left.recovery.values.size());
        const int answer = Ask(Text(isSame ? IDS_RECOVER : IDS_RECOVER_OTHER, left.recovery.file, count),
                               MB_YESNO | MB_ICONQUESTION);
        if (answer != IDYES) {
            DeleteFileW(left.path.c_str());
            continue;
        }
        Load(left.recovery.file);
        if (!isLoaded_) {
            return true; // it stays for the next start
        }
        std::vector<view::Change> step;
        for (const auto& [point, value] : left.recovery.values) {
            const auto row = session_->ReadRow(point);
            if (row) {
                step.push_back({point, row->value, value});
            }
        }
        history_.Add(step);
        Apply(step);
        DeleteFileW(left.path.c_str());
        return true;
    }
    return false;
}

} // namespace view
