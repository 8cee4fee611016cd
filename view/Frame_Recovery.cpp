#include "view/Frame.h"

#include "view/resource.h"

#include "bench/Text.h"

#include <algorithm>
#include <string>
#include <vector>

namespace view {

void Frame::Start(const std::vector<std::wstring>& files) {
    const auto problem = Try([&] {
        OfferRecovery();
        const bool isGone = isClosing_; // closed while the file of a recovery was loading
        if (isGone || files.empty()) {
            return;
        }
        if (IsSamePath(files.front(), file_)) {
            TellOfOthers(files.size() - 1);
        } else {
            OpenFirst(files);
        }
    });
    if (problem) {
        OnProblem(problem->words);
    }
}

void Frame::OfferRecovery() {
    const std::vector<RecoveryFile::Left> all = RecoveryFile::FindLeft();
    for (const RecoveryFile::Left& left : all) {
        const std::vector<StampedFile>& files = left.recovery.files;
        const bool isSame = std::all_of(files.begin(), files.end(), [](const StampedFile& file) {
            return StampOf(file.path) == file.stamp;
        });
        const std::wstring count = std::to_wstring(left.recovery.values.size());
        const int answer = Ask(Text(isSame ? IDS_RECOVER : IDS_RECOVER_OTHER, files.front().path, count),
                               MB_YESNO | MB_ICONQUESTION);
        if (answer != IDYES) {
            notWanted_.push_back(left.path);
            continue;
        }
        module_ = left.recovery.module;
        Load(files.front().path);
        if (isLoaded_ && BringBack(left.recovery)) {
            DeleteFileW(left.path.c_str());
        } // else it stays for the next start
        const std::size_t more = all.size() - notWanted_.size() - 1;
        if (more > 0 && !isClosing_) {
            Ask(Text(IDS_MORE_LEFT, std::to_wstring(more)), MB_OK | MB_ICONINFORMATION);
        }
        return;
    }
}

void Frame::ForgetUnsaved() {
    recovery_.Remove();
    for (const std::wstring& file : notWanted_) {
        DeleteFileW(file.c_str());
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
            if (++lost <= kMostLines) {
                gone += Text(IDS_LOST_VALUE, point.name, value);
            } else if (lost == kMostLines + 1) {
                gone += Text(IDS_MORE_LOST);
            }
        } else if (row->value != value) {
            step.push_back({point, row->value, value});
        }
    }
    if (bench::IsFile(recovery.project)) {
        project_ = recovery.project;
        projectStamp_ = StampOf(project_);
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
