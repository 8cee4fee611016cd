#include "common/resource.h"
#include "tests/dialogs/Driver.h"
#include "tests/support/ImportPatch.h"

namespace dialogs {
namespace {

class frmAboutTest : public DialogTest {
  protected:
    /// The control shows the component's icon A_LOGO: the system hands out one
    /// handle for an icon of a module, however often it is loaded.
    void ExpectLogo(HWND control) {
        const HICON logo = LoadIconW(Dll().Module(), L"A_LOGO");
        ASSERT_NE(logo, nullptr);
        EXPECT_EQ(reinterpret_cast<HICON>(SendMessageW(control, STM_GETICON, 0, 0)), logo);
        EXPECT_NE(logo, LoadIconW(nullptr, IDI_APPLICATION));
    }
};

TEST_F(frmAboutTest, ShowsTitleVersionAndLogo) {
    const auto module = NewModule().As<ITamDialogs>();
    Next([this](Shown& dialog) {
        EXPECT_EQ(dialog.Caption(), L"About Gateway Object");
        EXPECT_EQ(dialog.Text(IDC_ABOUT_TITLE), L"Gateway Object");
        EXPECT_EQ(dialog.Text(IDC_ABOUT_VERSION), L"Version 1.0.0");
        EXPECT_EQ(dialog.Text(IDC_ABOUT_DESCRIPTION),
                  L"Application objects of remote I/O modules for building-automation controllers.");
        ExpectLogo(dialog.Control(IDC_ABOUT_LOGO));
        EXPECT_EQ(dialog.DefaultButton(), IDOK);
        dialog.Click(IDOK);
    });
    EXPECT_EQ(module->ShowAbout(), S_OK);
}

// The file's own version is 1.0.0.0, which would not show one number in another's place.
TEST_F(frmAboutTest, ShowsMajorMinorAndRevision) {
    const support::ImportPatch version(
        Dll().Module(), "VerQueryValueW",
        reinterpret_cast<const void*>(+[](LPCVOID, LPCWSTR, LPVOID* value, PUINT size) WINAPI -> BOOL {
            static VS_FIXEDFILEINFO info{};
            info.dwFileVersionMS = MAKELONG(2, 1);
            info.dwFileVersionLS = MAKELONG(4, 3);
            info.dwProductVersionMS = MAKELONG(6, 5);
            info.dwProductVersionLS = MAKELONG(8, 7);
            *value = &info;
            *size = sizeof info;
            return TRUE;
        }));
    ASSERT_TRUE(version.IsImported());
    Next([](Shown& dialog) {
        EXPECT_EQ(dialog.Text(IDC_ABOUT_VERSION), L"Version 1.2.3");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(NewModule().As<ITamDialogs>()->ShowAbout(), S_OK);
}

} // namespace
} // namespace dialogs
