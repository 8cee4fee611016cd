#pragma once

#include <windows.h>

#include <string>

namespace tests {

/// The text of an environment variable; empty when there is none.
std::wstring PictureSetting(const wchar_t* variable);

/// Writes a part of what a device context shows as a bitmap of 32 bits a pixel into the
/// folder that TAM_PICTURES names. Throws BenchError.
void WritePicture(const std::wstring& name, HDC screen, const RECT& part);

} // namespace tests
