#include "tests/Places.h"

#ifdef _WIN32
#include <windows.h>
#endif

#include <cstdlib>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>

namespace tests {

namespace {

namespace fs = std::filesystem;

bool IsTop(const fs::path& folder) {
    std::error_code none;
    return fs::is_directory(folder / "samples" / "streams", none);
}

fs::path Program() {
#ifdef _WIN32
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const auto room = static_cast<DWORD>(path.size());
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), room);
        if (length < room) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2); // it was cut off
    }
#else
    return fs::read_symlink("/proc/self/exe");
#endif
}

fs::path Named() {
#ifdef _WIN32
    const wchar_t* const named = _wgetenv(L"TAM_ROOT");
#else
    const char* const named = std::getenv("TAM_ROOT");
#endif
    return named != nullptr ? fs::path(named) : fs::path();
}

fs::path FindTop() {
    if (const fs::path named = Named(); IsTop(named)) {
        return named;
    }
    fs::path folder = ProgramFolder();
    while (!IsTop(folder)) {
        if (folder == folder.parent_path()) {
            throw std::runtime_error(
                "no folder above this program has the samples; TAM_ROOT names the right one");
        }
        folder = folder.parent_path();
    }
    return folder;
}

} // namespace

fs::path ProgramFolder() {
    return Program().parent_path();
}

fs::path BinFolder() {
    // The test programs are in tests/<folder> beside it.
    return (ProgramFolder() / ".." / ".." / "bin").lexically_normal();
}

const fs::path& TopFolder() {
    static const fs::path top = FindTop();
    return top;
}

OwnFolder::OwnFolder() {
    std::random_device random;
    do {
        path_ = fs::temp_directory_path() / ("tam_" + std::to_string(random()));
    } while (!fs::create_directory(path_)); // it is somebody else's
}

OwnFolder::~OwnFolder() {
    std::error_code none;
    fs::remove_all(path_, none);
}

} // namespace tests
