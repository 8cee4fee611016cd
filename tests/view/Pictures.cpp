// Pictures of the window for a person to look at, into the folder that TAM_PICTURES
// names; their names tell the scale, which TAM_PICTURE_DPI says. Built on the tests'
// driver; not a test.

#include "bench/WholeFile.h"
#include "tests/view/Fixture.h"

#include <cstddef>
#include <string>
#include <vector>

namespace viewtest {

namespace {

std::wstring Setting(const wchar_t* name) {
    wchar_t text[MAX_PATH] = {};
    GetEnvironmentVariableW(name, text, MAX_PATH);
    return text;
}

void WriteBitmap(const std::wstring& path, const BITMAPINFOHEADER& header, const std::vector<char>& pixels) {
    BITMAPFILEHEADER file{};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof(file) + sizeof(header);
    file.bfSize = file.bfOffBits + static_cast<DWORD>(pixels.size());
    std::string bytes(reinterpret_cast<const char*>(&file), sizeof(file));
    bytes.append(reinterpret_cast<const char*>(&header), sizeof(header));
    bytes.append(pixels.data(), pixels.size());
    bench::WriteWholeFile(path, bytes);
}

/// The window as it stands on the screen, frame and title included.
void Take(const Viewer& viewer, const std::wstring& name) {
    SetWindowPos(viewer.Frame(), HWND_TOP, 0, 0, 0, 0, SWP_NOSIZE);
    RedrawWindow(viewer.Frame(), nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_ALLCHILDREN);
    viewer.Settle();
    Sleep(400); // until the display has it
    RECT place{};
    GetWindowRect(viewer.Frame(), &place);
    BITMAPINFOHEADER header{};
    header.biSize = sizeof(header);
    header.biWidth = place.right - place.left;
    header.biHeight = place.bottom - place.top;
    header.biPlanes = 1;
    header.biBitCount = 32;
    std::vector<char> pixels(static_cast<std::size_t>(header.biWidth * header.biHeight) * 4);
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, header.biWidth, header.biHeight);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, header.biWidth, header.biHeight, screen, place.left, place.top, SRCCOPY);
    SelectObject(memory, before);
    GetDIBits(memory, bitmap, 0, static_cast<UINT>(header.biHeight), pixels.data(),
              reinterpret_cast<BITMAPINFO*>(&header), DIB_RGB_COLORS);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    WriteBitmap(Setting(L"TAM_PICTURES") + L"\\" + name + L".bmp", header, pixels);
}

class Pictures : public ViewTest {};

TEST_F(Pictures, AFullModule) {
    constexpr int kAttributesOfFull = 65;
    Viewer viewer({Sample(L"full.xml")});
    AwaitAttributes(viewer, kAttributesOfFull);
    viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Filter", L"4.0");
    viewer.SetCell(IDC_ATTRIBUTES, L"AI4_Offset", L"-2.5");
    viewer.Do(IDM_VIEW_OUTPUTS);
    viewer.Pick(IDC_OUTPUTS, L"AI4_Out");
    viewer.Do(IDM_VIEW_ATTRIBUTES);
    viewer.Pick(IDC_ATTRIBUTES, L"AI1_Offset");
    Take(viewer, L"view-" + Setting(L"TAM_PICTURE_DPI"));
}

TEST_F(Pictures, ADeviceWithItsChannels) {
    Viewer viewer({benchtest::SamplesFolder() + L"device.xml"});
    AwaitAttributes(viewer, kAttributes);
    if (Setting(L"TAM_PICTURE_DPI") == L"96") {
        Take(viewer, L"view-device");
    }
}

TEST_F(Pictures, AStreamWithFaults) {
    Viewer viewer({Sample(L"oddities.xml")});
    AwaitAttributes(viewer, 8);
    if (Setting(L"TAM_PICTURE_DPI") == L"96") {
        viewer.Do(IDM_VIEW_NEXT_FINDING);
        Take(viewer, L"view-findings");
    }
}

} // namespace

} // namespace viewtest
