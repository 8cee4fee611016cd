#include "view/model/FileWatch.h"

#include <algorithm>
#include <utility>

namespace view {

void FileWatch::Watch(std::vector<StampedFile> files) {
    files_ = std::move(files);
    seen_.assign(files_.size(), FileStamp{});
}

std::vector<std::wstring> FileWatch::Look(const std::vector<FileStamp>& now) {
    std::vector<std::wstring> changed;
    for (std::size_t i = 0; i < std::min(files_.size(), now.size()); ++i) {
        const bool isWhole = std::exchange(seen_[i], now[i]) == now[i];
        if (isWhole && now[i] != files_[i].stamp && now[i] != FileStamp{}) {
            files_[i].stamp = now[i];
            changed.push_back(files_[i].path);
        }
    }
    return changed;
}

} // namespace view
