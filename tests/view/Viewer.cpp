#include "tests/view/Viewer.h"

#include "bench/Keys.h"
#include "tests/bench/BenchRun.h"
#include "view/resource.h"

#include <commctrl.h>
#include <commdlg.h>
#include <dlgs.h>
#include <shlobj.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace viewtest {

namespace {

using benchtest::Narrow;

constexpr DWORD kPause = 5;
constexpr DWORD kLongestPause = 100;

struct Search {
    DWORD process;
    const wchar_t* className;
    HWND found;
};

BOOL CALLBACK FindTop(HWND window, LPARAM data) {
    auto& search = *reinterpret_cast<Search*>(data);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    if (process != search.process || IsWindowVisible(window) == FALSE ||
        lstrcmpW(name, search.className) != 0) {
        return TRUE;
    }
    search.found = window;
    return FALSE;
}

HWND TopWindow(DWORD process, const wchar_t* className) {
    Search search{process, className, nullptr};
    EnumWindows(&FindTop, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

GUITHREADINFO ThreadOf(HWND window) noexcept {
    GUITHREADINFO thread{};
    thread.cbSize = sizeof thread;
    GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &thread);
    return thread;
}

BOOL CALLBACK FindEdit(HWND window, LPARAM data) {
    wchar_t name[16] = {};
    GetClassNameW(window, name, 16);
    if (lstrcmpiW(name, WC_EDITW) != 0 || IsWindowVisible(window) == FALSE) {
        return TRUE;
    }
    *reinterpret_cast<HWND*>(data) = window;
    return FALSE;
}

std::wstring Folder() {
    wchar_t folder[MAX_PATH] = {};
    GetEnvironmentVariableW(L"LOCALAPPDATA", folder, MAX_PATH);
    return std::wstring(folder) + L"\\O_Tam_id\\View\\";
}

/// As the program's start-up code reads it back; no test has a quotation mark in a name.
std::wstring CommandLine(const Texts& arguments) {
    std::wstring line = L"\"" + benchtest::ProgramFolder() + L"tamview.exe\"";
    for (const std::wstring& argument : arguments) {
        line += L" \"" + argument + L"\"";
    }
    return line;
}

INPUT KeyInput(WORD key, wchar_t character, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = key != 0 ? static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC)) : character;
    input.ki.dwFlags = flags;
    return input;
}

void Send(std::vector<INPUT> inputs) {
    EXPECT_EQ(inputs.size(), SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT)))
        << "error " << GetLastError();
}

} // namespace

bool Await(const std::string& what, const std::function<bool()>& holds) {
    const ULONGLONG begin = GetTickCount64();
    while (!holds()) {
        if (GetTickCount64() - begin > kLongest) {
            ADD_FAILURE() << "waited in vain for: " << what;
            return false;
        }
        // The longer it takes, the less often: each look takes the other program its time.
        Sleep(std::clamp(static_cast<DWORD>((GetTickCount64() - begin) / 50), kPause, kLongestPause));
    }
    return true;
}

Texts UnsavedFiles() {
    Texts files;
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW((Folder() + L"*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return files;
    }
    do {
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
            files.push_back(Folder() + found.cFileName);
        }
    } while (FindNextFileW(search, &found) != FALSE);
    FindClose(search);
    return files;
}

void ForgetUnsaved() {
    for (const std::wstring& file : UnsavedFiles()) {
        DeleteFileW(file.c_str());
    }
}

RemoteMemory::RemoteMemory(HANDLE process, std::size_t size)
    : process_(process)
    , memory_(static_cast<BYTE*>(
          VirtualAllocEx(process, nullptr, size, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE))) {
    EXPECT_NE(nullptr, memory_) << "error " << GetLastError();
}

RemoteMemory::~RemoteMemory() {
    VirtualFreeEx(process_, memory_, 0, MEM_RELEASE);
}

void RemoteMemory::Write(const void* bytes, std::size_t size, std::size_t offset) const {
    EXPECT_TRUE(WriteProcessMemory(process_, At(offset), bytes, size, nullptr));
}

void RemoteMemory::Read(void* bytes, std::size_t size, std::size_t offset) const {
    EXPECT_TRUE(ReadProcessMemory(process_, At(offset), bytes, size, nullptr));
}

void SettleMessages(HWND frame) {
    wchar_t name[64] = {};
    GetClassNameW(frame, name, 64);
    if (lstrcmpW(name, VIEW_CLASS) != 0) {
        return; // a dialog that is still there
    }
    // Nobody else presses the button that is hidden; messages are handled in their order.
    const HWND stop = GetDlgItem(frame, IDC_STOP);
    PostMessageW(stop, BM_SETSTATE, TRUE, 0);
    Await("the end of the messages", [stop] {
        return IsWindow(stop) == FALSE || (SendMessageW(stop, BM_GETSTATE, 0, 0) & BST_PUSHED) != 0;
    });
    SendMessageW(stop, BM_SETSTATE, FALSE, 0);
}

std::wstring TextOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
    const LRESULT length =
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(length));
    return text;
}

std::wstring Box::Text() const {
    constexpr int kMessageText = 0xFFFF;
    return TextOf(GetDlgItem(window_, kMessageText));
}

void Box::Click(int button) const {
    const HWND control = GetDlgItem(window_, button);
    EXPECT_NE(nullptr, control) << "no button " << button << " in " << Narrow(Caption());
    PostMessageW(control, BM_CLICK, 0, 0);
}

void Box::Press(int button) const {
    Click(button);
    AwaitEnd();
}

void Box::AwaitEnd() const {
    // A box is hidden before the program goes on after it.
    const HWND frame = owner_;
    Await("the end of the box " + Narrow(Caption()),
          [this] { return IsWindow(window_) == FALSE || IsWindowVisible(window_) == FALSE; });
    SettleMessages(frame);
}

void Box::EnterFile(const std::wstring& path) const {
    HWND edit = GetDlgItem(window_, edt1);
    if (edit == nullptr || IsWindowVisible(edit) == FALSE) {
        EnumChildWindows(window_, &FindEdit, reinterpret_cast<LPARAM>(&edit));
    }
    ASSERT_NE(nullptr, edit) << Narrow(Caption()) << " has no field for a name";
    SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
    Click(IDOK);
}

void Box::ChooseFile(const std::wstring& path) const {
    EnterFile(path);
    AwaitEnd();
}

Viewer::Viewer(const Texts& arguments, const std::function<void(DWORD)>& beforeStart)
    : program_(CommandLine(arguments), {.flags = CREATE_SUSPENDED}) {
    if (Process() == nullptr) {
        return;
    }
    if (beforeStart) {
        beforeStart(program_.Id());
    }
    program_.Resume();
    Await("the window of " + Narrow(CommandLine(arguments)), [this] {
        frame_ = TopWindow(program_.Id(), VIEW_CLASS);
        return frame_ != nullptr || !IsRunning();
    });
    EXPECT_NE(nullptr, frame_) << "it ended, or shows no window";
}

Viewer::~Viewer() {
    if (Process() != nullptr) {
        Kill();
    }
}

std::wstring Viewer::Status(int part) const {
    constexpr std::size_t kRoom = 1024;
    const RemoteMemory memory(Process(), kRoom * sizeof(wchar_t));
    const auto length =
        LOWORD(SendMessageW(Part(IDC_STATUS), SB_GETTEXTLENGTHW, static_cast<WPARAM>(part), 0));
    std::wstring text(std::min<std::size_t>(length, kRoom - 1), L'\0');
    SendMessageW(Part(IDC_STATUS), SB_GETTEXTW, static_cast<WPARAM>(part),
                 reinterpret_cast<LPARAM>(memory.At()));
    memory.Read(text.data(), text.size() * sizeof(wchar_t));
    return text;
}

bool Viewer::IsEnabled(int command) const noexcept {
    return SendMessageW(Part(IDC_TOOLBAR), TB_ISBUTTONENABLED, static_cast<WPARAM>(command), 0) != 0;
}

bool Viewer::IsTicked(int command) const noexcept {
    return SendMessageW(Part(IDC_TOOLBAR), TB_ISBUTTONCHECKED, static_cast<WPARAM>(command), 0) != 0;
}

void Viewer::Begin(int command) const {
    Commands().insert(command);
    PostMessageW(frame_, WM_COMMAND, static_cast<WPARAM>(command), 0);
}

void Viewer::Do(int command) const {
    Commands().insert(command);
    DWORD_PTR answer = 0;
    EXPECT_NE(0, SendMessageTimeoutW(frame_, WM_COMMAND, static_cast<WPARAM>(command), 0, SMTO_NORMAL,
                                     kLongest, &answer))
        << "the command " << command << " does not end";
}

void Viewer::Settle() const {
    SettleMessages(frame_);
}

Box Viewer::ShownBox() const {
    return Box(TopWindow(program_.Id(), L"#32770"));
}

Box Viewer::NextBox(const Box& before) const {
    Box box;
    Await("a box", [&] {
        box = ShownBox();
        return (box && box.Window() != before.Window()) || !IsRunning();
    });
    return box;
}

HWND Viewer::ShownMenu() const {
    return TopWindow(program_.Id(), L"#32768");
}

void Viewer::ToFront() const {
    Await("the window in front", [this] {
        DWORD process = 0;
        GetWindowThreadProcessId(GetForegroundWindow(), &process);
        return process == program_.Id() || (SetForegroundWindow(frame_), false);
    });
}

void Viewer::Press(WORD key, const std::vector<WORD>& held) const {
    ToFront();
    std::vector<INPUT> inputs;
    for (const WORD holder : held) {
        inputs.push_back(KeyInput(holder, 0, 0));
    }
    inputs.push_back(KeyInput(key, 0, 0));
    inputs.push_back(KeyInput(key, 0, KEYEVENTF_KEYUP));
    for (auto holder = held.rbegin(); holder != held.rend(); ++holder) {
        inputs.push_back(KeyInput(*holder, 0, KEYEVENTF_KEYUP));
    }
    Send(std::move(inputs));
}

void Viewer::Type(const std::wstring& keys) const {
    ToFront();
    for (const bench::Stroke& stroke : bench::ReadKeys(keys)) {
        switch (stroke.kind) {
        case bench::Stroke::Kind::Key:
            Press(stroke.key);
            break;
        case bench::Stroke::Kind::Access:
            Press(LOBYTE(VkKeyScanW(stroke.character)), {VK_MENU});
            break;
        case bench::Stroke::Kind::Character:
            Send({KeyInput(0, stroke.character, KEYEVENTF_UNICODE),
                  KeyInput(0, stroke.character, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP)});
            break;
        }
    }
}

bool Viewer::IsInMenu() const noexcept {
    return (ThreadOf(frame_).flags & GUI_INMENUMODE) != 0;
}

int Viewer::Focus() const noexcept {
    const GUITHREADINFO thread = ThreadOf(frame_);
    return thread.hwndFocus != nullptr ? GetDlgCtrlID(thread.hwndFocus) : 0;
}

void Viewer::Drop(const Texts& files) const {
    std::wstring names;
    for (const std::wstring& file : files) {
        names.append(file) += L'\0';
    }
    names += L'\0';
    // The window frees it, as far as memory that it did not allocate can be freed.
    auto* const memory = static_cast<BYTE*>(VirtualAllocEx(
        Process(), nullptr, sizeof(DROPFILES) + names.size() * 2, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE));
    DROPFILES head{};
    head.pFiles = sizeof head;
    head.fWide = TRUE;
    WriteProcessMemory(Process(), memory, &head, sizeof head, nullptr);
    WriteProcessMemory(Process(), memory + sizeof head, names.data(), names.size() * sizeof(wchar_t),
                       nullptr);
    PostMessageW(frame_, WM_DROPFILES, reinterpret_cast<WPARAM>(memory), 0);
}

void Viewer::Close() {
    BeginClose();
    Await("the end of the window", [this] { return !IsRunning() || static_cast<bool>(ShownBox()); });
    if (const Box box = ShownBox()) {
        ADD_FAILURE() << "it asks: " << Narrow(box.Text());
        Kill();
    }
    EXPECT_EQ(0U, WaitForEnd());
}

DWORD Viewer::WaitForEnd() {
    DWORD status = ~0UL;
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(Process(), kLongest)) << "it does not end";
    GetExitCodeProcess(Process(), &status);
    return status;
}

void Viewer::Kill() {
    if (IsRunning()) {
        TerminateProcess(Process(), 9);
        WaitForSingleObject(Process(), kLongest);
    }
}

} // namespace viewtest
