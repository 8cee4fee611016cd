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
