#include "tests/appobject/ShellPatch.h"

#include <stdexcept>

namespace modules {

namespace {

ShellPatch* current = nullptr;

std::string TextOf(LPCSTR text) {
    return text == nullptr ? "(none)" : text;
}

} // namespace

ShellPatch::ShellPatch(HMODULE dll)
    : patch_(dll, "ShellExecuteA", reinterpret_cast<const void*>(&ShellPatch::Execute)) {
    if (!patch_.IsImported()) {
        throw std::runtime_error("the component does not import the shell's open operation");
    }
    current = this;
}

ShellPatch::~ShellPatch() {
    current = nullptr;
}

HINSTANCE WINAPI ShellPatch::Execute(HWND owner, LPCSTR verb, LPCSTR file, LPCSTR parameters, LPCSTR folder,
                                     INT show) {
    current->calls.push_back({owner, TextOf(verb), TextOf(file), TextOf(parameters), TextOf(folder), show});
    return reinterpret_cast<HINSTANCE>(static_cast<INT_PTR>(current->answer));
}

} // namespace modules
