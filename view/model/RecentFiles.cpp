#include "view/model/RecentFiles.h"

#include "core/Case.h"

#include <algorithm>
#include <utility>

namespace view {

RecentFiles::RecentFiles(std::wstring_view text) {
    std::vector<std::wstring> files;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(L'\0'), text.size());
        files.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    std::reverse(files.begin(), files.end());
    for (std::wstring& file : files) {
        Add(std::move(file));
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
