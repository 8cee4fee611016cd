#include "view/model/RecentFiles.h"

#include "core/Case.h"

#include <algorithm>
#include <utility>

namespace view {

RecentFiles::RecentFiles(std::wstring_view text) {
    std::vector<std::wstring> oldestLast;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(L'\0'), text.size());
        oldestLast.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    for (auto file = oldestLast.rbegin(); file != oldestLast.rend(); ++file) {
        Add(std::move(*file));
    }
}

void RecentFiles::Add(std::wstring path) {
    if (path.empty()) {
        return;
    }
    Remove(path);
    files_.insert(files_.begin(), std::move(path));
    if (files_.size() > kMost) {
        files_.pop_back();
    }
}

void RecentFiles::Remove(std::wstring_view path) {
    std::erase_if(files_, [&](const std::wstring& file) { return tam::EqualIgnoringCase(file, path); });
}

std::wstring RecentFiles::Text() const {
    std::wstring text;
    for (const std::wstring& file : files_) {
        text.append(file) += L'\0';
    }
    return text += L'\0';
}

} // namespace view
