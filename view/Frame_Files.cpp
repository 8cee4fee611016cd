#include "view/Frame_Busy.h"

#include "view/BlockPicture.h"
#include "view/FileDialogs.h"
#include "view/resource.h"

#include "bench/Text.h"
#include "bench/WholeFile.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace view {

namespace {

std::wstring WithoutEnding(const std::wstring& path) {
    const std::size_t dot = path.find_last_of(L'.');
    const std::size_t slash = path.find_last_of(L"\\/");
    const bool hasEnding = dot != std::wstring::npos && (slash == std::wstring::npos || dot > slash);
    return hasEnding ? path.substr(0, dot) : path;
}

} // namespace

bool Frame::Open(const std::wstring& file) {
    if (busy_ > 0 || !AskToSave()) {
        return false;
    }
    module_.reset();
    Load(bench::FullPath(file));
    return true;
}

void Frame::OpenFirst(const std::vector<std::wstring>& files) {
    if (!files.empty() && Open(files.front())) {
        TellOfOthers(files.size() - 1);
    }
}

void Frame::OpenDropped(const std::vector<std::wstring>& files) {
    if (!isLoading_ || files.empty()) {
        OpenFirst(files);
        return;
    }
    Say(Text(IDS_OPENS_NEXT, NameOf(files.front()), NameOf(file_)));
    waiting_ = files;
}

void Frame::OpenWaiting() {
    OpenFirst(std::exchange(waiting_, {}));
}

void Frame::TellOfOthers(std::size_t others) {
    if (others == 1) {
        Say(Text(IDS_OTHER_FILE, said_));
    } else if (others > 1) {
        Say(Text(IDS_OTHER_FILES, std::to_wstring(others), said_));
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

bool Frame::Save() {
    if (project_.empty() && session_ && session_->FileKind() == Session::Kind::Project) {
        project_ = file_;
        projectStamp_ = session_->Files().front().stamp;
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

bool Frame::IsAsKnown(const std::wstring& path) const {
    const FileStamp now = StampOf(path);
    if (IsSamePath(path, project_)) {
        return now == projectStamp_;
    }
    return session_->FileKind() == Session::Kind::Project && IsSamePath(path, file_) &&
           now == session_->Files().front().stamp;
}

bool Frame::SaveProject(const std::wstring& path) {
    if (!IsAsKnown(path) && session_->IsIn(path) &&
        Ask(Text(IDS_REPLACE_MODULE, NameOf(path)), MB_OKCANCEL | MB_ICONWARNING | MB_DEFBUTTON2) != IDOK) {
        return false;
    }
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
    projectStamp_ = StampOf(path);
    MarkAsRead(path);
    settings_.AddRecent(path);
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
    settings_.AddRecent(path);
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

void Frame::LetGo() {
    isLoaded_ = false;
    history_.Clear();
    recovery_.Remove();
    sheet_->Clear();
    session_.reset();
    project_.clear();
}

void Frame::CloseFile() {
    if (!AskToSave()) {
        return;
    }
    LetGo();
    file_.clear();
    module_.reset();
    watch_.Watch({});
    checked_.clear();
    boxes_.Clear();
    types_.clear(); // it comes with the next file
    typeList_.Reset(0, 0);
    Fill();
    for (std::size_t page = 0; page <= kCatalogue; ++page) {
        ListingOf(page).Sort(std::nullopt);
        ListingOf(page).Filter({});
        PaneOf(page).Update();
    }
    findingList_.Sort(std::nullopt);
    findingList_.Filter({});
    findingPane_->Update();
    SetWindowTextW(sourceBox_, L"");
    SetWindowTextW(sourceTitle_, Text(IDS_SOURCE).c_str());
    SetWindowTextW(search_, L"");
    isSearchShown_ = false;
    isRowTold_ = false;
    Layout();
    GoToPage(0);
    Say(Text(IDS_START));
    UpdateTitle();
}

void Frame::CheckDisk() {
    if (busy_ > 0 || IsInHand() || file_.empty() || IsIconic(Handle()) != FALSE) {
        return;
    }
    std::vector<FileStamp> now;
    for (const StampedFile& file : watch_.Files()) {
        now.push_back(StampOf(file.path));
    }
    std::wstring changed;
    for (const std::wstring& path : watch_.Look(now)) {
        changed += (changed.empty() ? std::wstring() : Text(IDS_SEPARATOR)) + NameOf(path);
    }
    if (changed.empty()) {
        return;
    }
    // The box comes unasked for: a key that was meant for the window loses nothing. "Yes" would
    // be the answer of its letter.
    const int answer = history_.IsDirty()
                           ? Ask(Text(IDS_CHANGED_DIRTY, changed, std::to_wstring(history_.Unsaved().size())),
                                 MB_OKCANCEL | MB_ICONQUESTION | MB_DEFBUTTON2)
                           : Ask(Text(IDS_CHANGED, changed), MB_YESNO | MB_ICONQUESTION);
    if (answer == IDOK || answer == IDYES) {
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
        ForgetUnsaved();
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
        ForgetUnsaved();
    }
}

} // namespace view
