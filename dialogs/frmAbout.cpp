#include "dialogs/frmAbout.h"

#include "com/Dll.h"
#include "common/ComponentState.h"
#include "common/resource.h"
#include "dialogs/ModalDialog.h"

#include <string>
#include <vector>

namespace tam {

namespace {

/// The fixed part of the component's own version resource.
VS_FIXEDFILEINFO FileVersion() {
    VS_FIXEDFILEINFO version{};
    const std::wstring path = com::ThisDll().FilePath();
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(path.c_str(), &ignored);
    std::vector<BYTE> data(size);
    void* block = nullptr;
    UINT length = 0;
    if (size != 0 && GetFileVersionInfoW(path.c_str(), 0, size, data.data()) != FALSE &&
        VerQueryValueW(data.data(), L"\\", &block, &length) != FALSE) {
        version = *static_cast<VS_FIXEDFILEINFO*>(block);
    }
    return version;
}

std::wstring VersionText() {
    const VS_FIXEDFILEINFO version = FileVersion();
    return L"Version " + std::to_wstring(HIWORD(version.dwFileVersionMS)) + L"." +
           std::to_wstring(LOWORD(version.dwFileVersionMS)) + L"." +
           std::to_wstring(HIWORD(version.dwFileVersionLS));
}

class frmAbout final : public ModalDialog {
  protected:
    void OnInit() override {
        SetWindowTextW(Window(), (L"About " + ComponentTitle()).c_str());
        SetText(IDC_ABOUT_TITLE, ComponentTitle());
        SetText(IDC_ABOUT_VERSION, VersionText());
        const HICON logo = LoadIconW(com::ThisDll().Instance(), TAM_ICON_LOGO);
        SendMessageW(Control(IDC_ABOUT_LOGO), STM_SETICON, reinterpret_cast<WPARAM>(logo), 0);
    }
    bool OnCommand(int control, int) override {
        if (control == IDOK) {
            Close();
            return true;
        }
        return false;
    }
};

} // namespace

void ShowAboutBox() {
    frmAbout().ShowOrThrow(IDD_ABOUT);
}

} // namespace tam
