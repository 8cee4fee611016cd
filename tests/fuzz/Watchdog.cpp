#include "tests/fuzz/Watchdog.h"

#include <cstdio>
#include <cwchar>
#include <filesystem>
#include <stdexcept>
#include <utility>

namespace component_fuzz {

namespace {

/// Far above what any round takes, in milliseconds.
constexpr ULONGLONG kMostTime = 60000;
constexpr DWORD kLookEvery = 500;
constexpr UINT kHung = 3;

std::wstring Environment(const wchar_t* name) {
    const wchar_t* const text = _wgetenv(name);
    return text != nullptr ? text : L"";
}

/// Where inputs are kept: the folder that the environment names, otherwise that of temporary
/// files; the program's may be one that nobody writes to.
std::wstring KeepFolder() {
    if (const std::wstring folder = Environment(L"TAM_FUZZ_KEEP"); !folder.empty()) {
        return folder + L"\\";
    }
    return (std::filesystem::temp_directory_path() / L"").native();
}

/// Beside its place until it is whole.
std::wstring PartOf(const std::wstring& file) {
    return file + L".part";
}

/// Puts the part of a file in its place.
void PutInPlace(const std::wstring& file, bool isWhole) {
    const std::wstring part = PartOf(file);
    if (!isWhole || MoveFileExW(part.c_str(), file.c_str(), MOVEFILE_REPLACE_EXISTING) == FALSE) {
        DeleteFileW(part.c_str());
        throw std::runtime_error("the input of a round could not be kept");
    }
}

} // namespace

Watchdog::Watchdog(std::wstring keepFile)
    : keepFile_(std::move(keepFile))
    , began_(GetTickCount64())
    , stop_(CreateEventW(nullptr, TRUE, FALSE, nullptr))
    , thread_(CreateThread(nullptr, 0, &Watchdog::Watch, this, 0, nullptr)) {}

Watchdog::~Watchdog() {
    SetEvent(stop_);
    WaitForSingleObject(thread_, INFINITE);
    CloseHandle(thread_);
    CloseHandle(stop_);
    DeleteFileW(keepFile_.c_str());
}

void Watchdog::Begin(const std::string& input, const std::string& what) {
    const HANDLE file = CreateFileW(PartOf(keepFile_).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                    CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    const bool isWhole =
        WriteFile(file, input.data(), static_cast<DWORD>(input.size()), &written, nullptr) != FALSE &&
        written == input.size();
    CloseHandle(file);
    PutInPlace(keepFile_, isWhole);
    what_ = what;
    began_ = GetTickCount64();
}

std::wstring Watchdog::Keep(unsigned round) {
    const std::wstring kept = keepFile_ + L"." + std::to_wstring(round);
    PutInPlace(kept, CopyFileW(keepFile_.c_str(), PartOf(kept).c_str(), FALSE) != FALSE);
    return kept;
}

DWORD WINAPI Watchdog::Watch(void* self) {
    auto& watchdog = *static_cast<Watchdog*>(self);
    while (WaitForSingleObject(watchdog.stop_, kLookEvery) == WAIT_TIMEOUT) {
        if (GetTickCount64() - watchdog.began_ > kMostTime) {
            std::printf("A round does not end: %s\nIts input is in %ls\n", watchdog.what_.c_str(),
                        watchdog.keepFile_.c_str());
            std::fflush(stdout);
            TerminateProcess(GetCurrentProcess(), kHung);
        }
    }
    return 0;
}

unsigned Setting(const wchar_t* name, unsigned otherwise) {
    const std::wstring text = Environment(name);
    return text.empty() ? otherwise : static_cast<unsigned>(std::wcstoul(text.c_str(), nullptr, 10));
}

std::wstring KeepFile(const wchar_t* name) {
    // Numbers of processes are not enough: two servers of Wine give the same ones.
    static const std::wstring mark = [] {
        LARGE_INTEGER now{};
        QueryPerformanceCounter(&now);
        return std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(now.QuadPart) + L"-";
    }();
    return KeepFolder() + mark + name;
}

} // namespace component_fuzz
