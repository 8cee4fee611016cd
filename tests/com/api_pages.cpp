// Writes docs/api: api_pages.exe COMPONENT SERVICES FOLDER, the paths of the two
// DLLs and of the folder.

#include "bench/WholeFile.h"
#include "tests/com/ApiPages.h"

#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <exception>
#include <filesystem>

int wmain(int count, wchar_t** arguments) {
    if (count != 4) {
        std::fputs("usage: api_pages COMPONENT SERVICES FOLDER\n", stderr);
        return 2;
    }
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    try {
        using support::TypeLibrary;
        const TypeLibrary faces(arguments[1], 2);
        const TypeLibrary component(arguments[1], 1);
        const TypeLibrary services(arguments[2], 1);
        for (const contract::ApiPage& page : contract::ApiPages(faces, component, services)) {
            bench::WriteWholeFile((std::filesystem::path(arguments[3]) / page.file).native(), page.text);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "api_pages: %s\n", error.what());
        return 1;
    }
    return 0;
}
