// tamview: a window on a module.

#include "view/Frame.h"
#include "view/resource.h"
#include "view/Session.h"
#include "view/Settings.h"
#include "view/Window.h"

#include "bench/Host.h"
#include "com/Dll.h"

#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include <memory>
#include <string>
#include <vector>

namespace {

std::vector<std::wstring> FilesOfCommandLine() {
    int count = 0;
    const std::unique_ptr<wchar_t*, decltype(&LocalFree)> words(CommandLineToArgvW(GetCommandLineW(), &count),
                                                                &LocalFree);
    return words && count > 1 ? std::vector<std::wstring>(words.get() + 1, words.get() + count)
                              : std::vector<std::wstring>();
}

int Run(int how) {
    com::ThisDll().Attach(GetModuleHandleW(nullptr));
    const bench::Apartment apartment;
    INITCOMMONCONTROLSEX controls{};
    controls.dwSize = sizeof controls;
    controls.dwICC = ICC_LISTVIEW_CLASSES | ICC_BAR_CLASSES | ICC_TAB_CLASSES | ICC_PROGRESS_CLASS;
    InitCommonControlsEx(&controls);

    view::Settings settings;
    view::Frame frame(settings);
    frame.Show(how);
    frame.Start(FilesOfCommandLine());
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (!frame.Translate(message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    return static_cast<int>(message.wParam);
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int nShowCmd) {
    int status = 1;
    if (const auto problem = view::Try([&] { status = Run(nShowCmd); })) {
        MessageBoxW(nullptr, problem->words.c_str(), view::Text(IDS_TITLE).c_str(), MB_OK | MB_ICONERROR);
    }
    return status;
}
