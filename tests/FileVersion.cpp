#include "tests/FileVersion.h"

namespace tests {

FileVersion::FileVersion(const std::wstring& path) {
    DWORD unused = 0;
    info_.resize(GetFileVersionInfoSizeW(path.c_str(), &unused));
    if (GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(info_.size()), info_.data()) == FALSE) {
        info_.clear();
    }
}

VS_FIXEDFILEINFO FileVersion::Fixed() const {
    void* root = nullptr;
    UINT length = 0;
    return VerQueryValueW(info_.data(), L"\\", &root, &length) == FALSE
               ? VS_FIXEDFILEINFO{}
               : *static_cast<const VS_FIXEDFILEINFO*>(root);
}

std::wstring FileVersion::Text(const wchar_t* name) const {
    void* text = nullptr;
    UINT length = 0;
    const std::wstring path = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
    return VerQueryValueW(info_.data(), path.c_str(), &text, &length) == FALSE
               ? L"(none)"
               : static_cast<const wchar_t*>(text);
}

} // namespace tests
