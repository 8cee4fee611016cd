#include "tests/Places.h"

#ifdef _WIN32
#include <windows.h>
#endif

#include <cstdlib>
#include <stdexcept>
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
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return path;
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

const fs::path& TopFolder() {
    static const fs::path top = FindTop();
    return top;
}

} // namespace tests
