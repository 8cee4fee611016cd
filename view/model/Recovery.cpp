#include "view/model/Recovery.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

namespace view {

namespace {

constexpr std::wstring_view kFirstLine = L"tamview unsaved 2";
constexpr std::wstring_view kLastLine = L"end";
constexpr std::wstring_view kFile = L"file";
constexpr std::wstring_view kProject = L"project";
constexpr std::wstring_view kModule = L"module";
constexpr std::array<std::pair<Kind, std::wstring_view>, 3> kKinds = {
    {{Kind::Input, L"input"}, {Kind::Output, L"output"}, {Kind::Attribute, L"attribute"}}};
/// What cannot stand in a part of a line, and the letter that stands for it after "\".
constexpr std::array<std::pair<wchar_t, wchar_t>, 5> kEscapes = {
    {{L'\\', L'\\'}, {L'\n', L'n'}, {L'\r', L'r'}, {L'\t', L't'}, {L'\0', L'0'}}};

std::wstring Escaped(std::wstring_view text) {
    std::wstring escaped;
    for (const wchar_t c : text) {
        const auto found =
            std::find_if(kEscapes.begin(), kEscapes.end(), [c](const auto& pair) { return pair.first == c; });
        if (found != kEscapes.end()) {
            escaped += L'\\';
        }
        escaped += found != kEscapes.end() ? found->second : c;
    }
    return escaped;
}

std::optional<std::wstring> Unescaped(std::wstring_view text) {
    std::wstring plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != L'\\') {
            plain += text[i];
            continue;
        }
        const wchar_t letter = ++i < text.size() ? text[i] : L'\0';
        const auto found = std::find_if(kEscapes.begin(), kEscapes.end(),
                                        [letter](const auto& pair) { return pair.second == letter; });
        if (found == kEscapes.end()) {
            return std::nullopt;
        }
        plain += found->first;
    }
    return plain;
}

std::optional<std::uint64_t> ReadNumber(std::wstring_view text) {
    constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t number = 0;
    for (const wchar_t c : text) {
        if (c < L'0' || c > L'9') {
            return std::nullopt;
        }
        const auto digit = static_cast<std::uint64_t>(c - L'0');
        if (number > (kMost - digit) / 10) {
            return std::nullopt;
        }
        number = number * 10 + digit;
    }
    return text.empty() ? std::nullopt : std::optional(number);
}

std::vector<std::wstring_view> Split(std::wstring_view text, wchar_t mark) {
    std::vector<std::wstring_view> parts;
    for (;;) {
        const std::size_t end = text.find(mark);
        parts.push_back(text.substr(0, end));
        if (end == std::wstring_view::npos) {
            return parts;
        }
        text.remove_prefix(end + 1);
    }
}

/// Adds the file of a line "file<tab>path<tab>size<tab>time"; false for another one.
bool AddFile(const std::vector<std::wstring_view>& parts, Recovery& recovery) {
    if (parts.size() != 4 || parts[0] != kFile) {
        return false;
    }
    std::optional<std::wstring> path = Unescaped(parts[1]);
    const auto size = ReadNumber(parts[2]);
    const auto modified = ReadNumber(parts[3]);
    if (!path || path->empty() || !size || !modified) {
        return false;
    }
    recovery.files.push_back({std::move(*path), {*size, *modified}});
    return true;
}

/// Takes the project of a line "project<tab>path"; false for another one.
bool SetProject(const std::vector<std::wstring_view>& parts, Recovery& recovery) {
    if (parts.size() != 2 || parts[0] != kProject || !recovery.project.empty()) {
        return false;
    }
    recovery.project = Unescaped(parts[1]).value_or(std::wstring());
    return !recovery.project.empty();
}

/// Takes the module of a line "module<tab>device<tab>number"; false for another one.
bool SetModule(const std::vector<std::wstring_view>& parts, Recovery& recovery) {
    if (parts.size() != 3 || parts[0] != kModule || recovery.module) {
        return false;
    }
    std::optional<std::wstring> device = Unescaped(parts[1]);
    const bool isNegative = parts[2].starts_with(L'-');
    const auto number = ReadNumber(parts[2].substr(isNegative ? 1 : 0));
    if (!device || !number || *number > 32768) {
        return false;
    }
    const int size = static_cast<int>(*number);
    recovery.module = ModuleKey{std::move(*device), isNegative ? -size : size};
    return true;
}

/// Adds the value of a line "kind<tab>name<tab>value"; false for another one.
bool AddValue(const std::vector<std::wstring_view>& parts, Recovery& recovery) {
    if (parts.size() != 3) {
        return false;
    }
    const auto kind =
        std::find_if(kKinds.begin(), kKinds.end(), [&](const auto& pair) { return pair.second == parts[0]; });
    std::optional<std::wstring> name = Unescaped(parts[1]);
    std::optional<std::wstring> value = Unescaped(parts[2]);
    return kind != kKinds.end() && name && !name->empty() && value &&
           recovery.values.try_emplace({kind->first, std::move(*name)}, std::move(*value)).second;
}

} // namespace

std::wstring TextOf(const Recovery& recovery) {
    std::wstring text(kFirstLine);
    text += L'\n';
    for (const StampedFile& file : recovery.files) {
        text.append(kFile) += L'\t' + Escaped(file.path) + L'\t' + std::to_wstring(file.stamp.size) + L'\t' +
                              std::to_wstring(file.stamp.modified) + L'\n';
    }
    if (!recovery.project.empty()) {
        text.append(kProject) += L'\t' + Escaped(recovery.project) + L'\n';
    }
    if (recovery.module) {
        text.append(kModule) += L'\t' + Escaped(recovery.module->device) + L'\t' +
                                std::to_wstring(recovery.module->number) + L'\n';
    }
    for (const auto& [point, value] : recovery.values) {
        const auto kind = std::find_if(kKinds.begin(), kKinds.end(), [wanted = point.kind](const auto& pair) {
            return pair.first == wanted;
        });
        text.append(kind->second) += L'\t' + Escaped(point.name) + L'\t' + Escaped(value) + L'\n';
    }
    return text.append(kLastLine) + L'\n';
}

std::optional<Recovery> ReadRecovery(std::wstring_view text) {
    const std::vector<std::wstring_view> lines = Split(text, L'\n');
    // After the last line end nothing follows.
    constexpr std::size_t kHead = 1;
    constexpr std::size_t kTail = 2;
    if (lines.size() < kHead + kTail || lines[0] != kFirstLine || lines[lines.size() - kTail] != kLastLine ||
        !lines.back().empty()) {
        return std::nullopt;
    }
    Recovery recovery;
    for (std::size_t i = kHead; i < lines.size() - kTail; ++i) {
        const std::vector<std::wstring_view> parts = Split(lines[i], L'\t');
        if (!AddFile(parts, recovery) && !SetProject(parts, recovery) && !SetModule(parts, recovery) &&
            !AddValue(parts, recovery)) {
            return std::nullopt;
        }
    }
    return recovery.files.empty() ? std::nullopt : std::optional(std::move(recovery));
}

bool IsOfThisVersion(std::wstring_view text) {
    const std::size_t end = text.find(L'\n');
    return end == std::wstring_view::npos ? kFirstLine.starts_with(text) : text.substr(0, end) == kFirstLine;
}

} // namespace view
