#include "bench/Samples.h"

#include "bench/Text.h"
#include "bench/TextFile.h"

#include <windows.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

namespace {

constexpr const wchar_t* kStreams = L"streams\\";
constexpr std::wstring_view kEnding = L".xml";

struct CloseSearch {
    using pointer = HANDLE;
    void operator()(HANDLE search) const noexcept { FindClose(search); }
};

std::vector<std::wstring> SampleStreams() {
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW found{};
    const HANDLE first = FindFirstFileW((SamplesFolder() + kStreams + L"*.xml").c_str(), &found);
    if (first == INVALID_HANDLE_VALUE) {
        return names;
    }
    const std::unique_ptr<HANDLE, CloseSearch> search(first);
    do {
        const std::wstring name = found.cFileName;
        names.push_back(name.substr(0, name.size() - kEnding.size()));
    } while (FindNextFileW(search.get(), &found) != FALSE);
    std::sort(names.begin(), names.end());
    return names;
}

bool IsThere(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

} // namespace

std::wstring SamplesFolder() {
    constexpr const wchar_t* kFolder = L"samples\\";
    const std::wstring beside = ProgramFolder() + kFolder;
    return IsFile(beside + L"device.xml") ? beside : FullPath(kFolder);
}

std::wstring SampleStream(const std::wstring& name) {
    std::wstring sample = SamplesFolder() + kStreams + name + std::wstring(kEnding);
    return IsFile(sample) ? sample : std::wstring();
}

std::wstring FindStream(const std::wstring& name) {
    if (name == kStandardInput || IsFile(name)) {
        return name;
    }
    const std::wstring sample = SampleStream(name);
    if (!sample.empty() || IsThere(name)) {
        return sample.empty() ? name : sample;
    }
    std::string samples;
    for (const std::wstring& known : SampleStreams()) {
        samples += (samples.empty() ? "" : ", ") + Utf8(known);
    }
    throw BenchError(CodeOf(ERROR_FILE_NOT_FOUND),
                     Utf8(name) + " cannot be read: there is no such file, and no sample of that name" +
                         (samples.empty() ? "" : "; the samples are " + samples));
}

} // namespace bench
