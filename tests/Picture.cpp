#include "tests/Picture.h"

#include "bench/WholeFile.h"

#include <cstddef>
#include <vector>

namespace tests {

std::wstring PictureSetting(const wchar_t* variable) {
    wchar_t text[MAX_PATH] = {};
    GetEnvironmentVariableW(variable, text, MAX_PATH);
    return text;
}

void WritePicture(const std::wstring& name, HDC screen, const RECT& part) {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof(header);
    header.biWidth = part.right - part.left;
    header.biHeight = part.bottom - part.top;
    header.biPlanes = 1;
    header.biBitCount = 32;
    std::vector<char> pixels(static_cast<std::size_t>(header.biWidth * header.biHeight) * 4);
    const HDC memory = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, header.biWidth, header.biHeight);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, header.biWidth, header.biHeight, screen, part.left, part.top, SRCCOPY);
    SelectObject(memory, before);
    GetDIBits(memory, bitmap, 0, static_cast<UINT>(header.biHeight), pixels.data(),
              reinterpret_cast<BITMAPINFO*>(&header), DIB_RGB_COLORS);
    DeleteObject(bitmap);
    DeleteDC(memory);

    BITMAPFILEHEADER file{};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof(file) + sizeof(header);
    file.bfSize = file.bfOffBits + static_cast<DWORD>(pixels.size());
    std::string bytes(reinterpret_cast<const char*>(&file), sizeof(file));
    bytes.append(reinterpret_cast<const char*>(&header), sizeof(header));
    bytes.append(pixels.data(), pixels.size());
    bench::WriteWholeFile(PictureSetting(L"TAM_PICTURES") + L"\\" + name + L".bmp", bytes);
}

} // namespace tests
