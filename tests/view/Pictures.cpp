// Pictures of the window for a person to look at, into the folder that TAM_PICTURES
// names; their names tell the scale, which TAM_PICTURE_DPI says. Built on the tests'
// driver; not a test.

#include "tests/Picture.h"
#include "tests/view/Fixture.h"

#include <string>

namespace viewtest {

namespace {

/// The window as it stands on the screen, frame and title included.
void Take(const Viewer& viewer, const std::wstring& name) {
    SetWindowPos(viewer.Frame(), HWND_TOP, 0, 0, 0, 0, SWP_NOSIZE);
    RedrawWindow(viewer.Frame(), nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_ALLCHILDREN);
    viewer.Settle();
    Sleep(400); // until the display has it
    RECT place{};
    GetWindowRect(viewer.Frame(), &place);
    const HDC screen = GetDC(nullptr);
    tests::WritePicture(name, screen, place);
    ReleaseDC(nullptr, screen);
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
    Take(viewer, L"view-" + tests::PictureSetting(L"TAM_PICTURE_DPI"));
}

TEST_F(Pictures, ADeviceWithItsChannels) {
    Viewer viewer({benchtest::SamplesFolder() + L"device.xml"});
    AwaitAttributes(viewer, kAttributes);
    if (tests::PictureSetting(L"TAM_PICTURE_DPI") == L"96") {
        Take(viewer, L"view-device");
    }
}

TEST_F(Pictures, AStreamWithFaults) {
    Viewer viewer({Sample(L"oddities.xml")});
    AwaitAttributes(viewer, 8);
    if (tests::PictureSetting(L"TAM_PICTURE_DPI") == L"96") {
        viewer.Do(IDM_VIEW_NEXT_FINDING);
        Take(viewer, L"view-findings");
    }
}

} // namespace

} // namespace viewtest
