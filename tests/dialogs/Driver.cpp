#include "tests/dialogs/Driver.h"

#include "tests/support/Clipboard.h"

#include <commctrl.h>

#include <algorithm>
#include <cstddef>

namespace dialogs {

namespace {

constexpr UINT kRunScript = WM_APP;

/// While a window of the test's own has it open, it is not to be had.
BOOL WINAPI OpenWhenOthersLeaveIt(HWND window) {
    return support::OpenClipboardOf(window, [] {
        DWORD process = 0;
        GetWindowThreadProcessId(GetOpenClipboardWindow(), &process);
        return process == GetCurrentProcessId();
    });
}

constexpr const wchar_t* kCatalogue =
    L"<SNVT_105><Name>SNVT_temp_p</Name><Type>SignedNumeric</Type><Unit>\u00B0C</Unit><Min>-100.5</Min>"
    L"<Max>500.25</Max><Length>2</Length><InvalidValue>327.67</InvalidValue></SNVT_105>"
    L"<SNVT_8><Name>SNVT_count</Name><Type>UnsignedNumeric</Type><Min>0</Min><Max>250</Max>"
    L"<Length>2</Length></SNVT_8>"
    L"<SNVT_51><Name>SNVT_count_f</Name><Type>Float</Type><Length>4</Length></SNVT_51>"
    L"<SNVT_195><Name>SNVT_log</Name><Type>UnsignedNumeric</Type><Min>1</Min><Max>65535</Max><Length>2</"
    L"Length>"
    L"<InvalidValue>0</InvalidValue></SNVT_195>"
    L"<SNVT_95><Name>SNVT_switch_state</Name><Type>Enum</Type></SNVT_95>"
    L"<SNVT_83><Name>SNVT_state</Name><Type>Bitfield</Type><Length>2</Length></SNVT_83>"
    L"<SNVT_82><Name>SNVT_state_8</Name><Type>Bitfield</Type><Length>1</Length></SNVT_82>"
    L"<SNVT_36><Name>SNVT_str</Name><Type>Textual</Type><Length>8</Length></SNVT_36>"
    L"<SNVT_84><Name>SNVT_setpoint</Name><Type>Struct</Type></SNVT_84>";

/// Without a window manager Wine waits two seconds whenever it hides a window
/// that one would manage. Said before the first window is made; gone with the
/// server. Windows itself does not look at it.
const bool kUnmanaged = [] {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring program = std::wstring(path).substr(std::wstring(path).find_last_of(L'\\') + 1);
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, (L"Software\\Wine\\AppDefaults\\" + program + L"\\X11 Driver").c_str(),
                    0, nullptr, REG_OPTION_VOLATILE, KEY_SET_VALUE, nullptr, &key, nullptr);
    const LSTATUS result = RegSetValueExW(key, L"Managed", 0, REG_SZ, reinterpret_cast<const BYTE*>(L"N"), 4);
    RegCloseKey(key);
    return result == ERROR_SUCCESS;
}();

} // namespace

std::wstring Shown::TextOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
    const LRESULT length =
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(length));
    return text;
}

int Shown::Height() const {
    RECT place{};
    GetWindowRect(window_, &place);
    return place.bottom - place.top;
}

void Shown::Type(int id, const std::wstring& text) const {
    for (const wchar_t c : text) {
        SendMessageW(Control(id), WM_CHAR, c, 1);
    }
}

void Shown::PressKey(WORD key) const {
    PostMessageW(GetFocus(), WM_KEYDOWN, key, 1);
    PostMessageW(GetFocus(), WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
    Pump();
}

void Shown::PressAccessKey(wchar_t key) const {
    PostMessageW(GetFocus(), WM_SYSCHAR, key, 0x20000001);
    Pump();
}

void Shown::CloseByItsFrame() const {
    SendMessageW(window_, WM_CLOSE, 0, 0); // which posts the Cancel button's command
    Pump();
}

void Shown::Pump() const {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
        if (IsDialogMessageW(window_, &message) == FALSE) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

void Shown::Click(int id) const {
    SendMessageW(Control(id), BM_CLICK, 0, 0);
}

void Shown::DoubleClick(int id, int x, int y) const {
    const LPARAM place = MAKELPARAM(x, y);
    SendMessageW(Control(id), WM_LBUTTONDOWN, MK_LBUTTON, place);
    SendMessageW(Control(id), WM_LBUTTONUP, 0, place);
    SendMessageW(Control(id), WM_LBUTTONDBLCLK, MK_LBUTTON, place);
    SendMessageW(Control(id), WM_LBUTTONUP, 0, place);
}

void Shown::Select(int id, int start, int end) const {
    SendMessageW(Control(id), EM_SETSEL, static_cast<WPARAM>(start), end);
}

std::pair<int, int> Shown::Selection(int id) const {
    DWORD start = 0;
    DWORD end = 0;
    SendMessageW(Control(id), EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    return {static_cast<int>(start), static_cast<int>(end)};
}

void Shown::Copy(const std::wstring& text) const {
    const support::OpenedClipboard clipboard(window_);
    ASSERT_TRUE(clipboard);
    EmptyClipboard();
    const HGLOBAL data = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
    std::copy_n(text.c_str(), text.size() + 1, static_cast<wchar_t*>(GlobalLock(data)));
    GlobalUnlock(data);
    SetClipboardData(CF_UNICODETEXT, data);
}

void Shown::PressPaste(int id) const {
    SendMessageW(Control(id), WM_CHAR, 22, 1);
}

void Shown::Paste(int id, const std::wstring& text) const {
    Copy(text);
    PressPaste(id);
}

void Shown::Choose(int id, int item) const {
    SendMessageW(Control(id), CB_SETCURSEL, static_cast<WPARAM>(item), 0);
    SendMessageW(window_, WM_COMMAND, MAKEWPARAM(id, CBN_SELCHANGE), reinterpret_cast<LPARAM>(Control(id)));
}

std::wstring Shown::Cell(int id, int row, int column) const {
    wchar_t text[256] = {};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = 256;
    SendMessageW(Control(id), LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return text;
}

int Shown::Rows(int id) const {
    return static_cast<int>(SendMessageW(Control(id), LVM_GETITEMCOUNT, 0, 0));
}

void Shown::DoubleClickRow(int id, int row) const {
    RECT place{};
    place.left = LVIR_LABEL;
    SendMessageW(Control(id), LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
    DoubleClick(id, place.left + 3, (place.top + place.bottom) / 2);
}

void DialogTest::SetUp() {
    ComponentTest::SetUp();
    ASSERT_TRUE(kUnmanaged);
    SetCatalogue(kCatalogue);
    clipboard_.emplace(Dll().Module(), "OpenClipboard",
                       reinterpret_cast<const void*>(&OpenWhenOthersLeaveIt));
    EXPECT_TRUE(clipboard_->IsImported());
    runner_ = CreateWindowExW(0, L"Static", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    SetWindowLongPtrW(runner_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetWindowLongPtrW(runner_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&DialogTest::RunnerProcedure));
    Watcher().OnBox([this](HWND window, const bench::Box& box) {
        if (box.isMessageBox || scripts_.empty()) {
            return false;
        }
        handled_.push_back(box.caption);
        running_.push_back(std::move(scripts_.front()));
        scripts_.pop_front();
        PostMessageW(runner_, kRunScript, 0, reinterpret_cast<LPARAM>(window));
        return true;
    });
}

void DialogTest::TearDown() {
    EXPECT_TRUE(scripts_.empty()) << "a dialog that the test expects was not shown";
    Watcher().OnBox(nullptr);
    Messages();
    DestroyWindow(runner_);
    clipboard_.reset();
    ComponentTest::TearDown();
}

LRESULT CALLBACK DialogTest::RunnerProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == kRunScript) {
        reinterpret_cast<DialogTest*>(GetWindowLongPtrW(window, GWLP_USERDATA))
            ->Run(reinterpret_cast<HWND>(lParam));
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

void DialogTest::Run(HWND dialog) {
    const Script script = std::move(running_.front());
    running_.pop_front();
    // A dialog that sets its own focus is active before the system shows it,
    // which waits for an empty queue.
    ShowWindow(dialog, SW_SHOW);
    Shown shown(dialog);
    script(shown);
    if (shown.IsOpen()) {
        ADD_FAILURE() << "the script left its dialog open";
        EndDialog(dialog, 0);
    }
}

com::Ref<IAttribute> DialogTest::Attribute(const std::wstring& type, const std::wstring& value) {
    const auto module = Loaded(support::Stream(
        {}, {}, L"<Point><SNVTType>" + type + L"</SNVTType><Value>" + value + L"</Value></Point>"));
    const auto attributes = support::Object(module, &IAppObject::get_Attributes);
    return support::Item(attributes, &IAttributes::get_Item, L"Point");
}

std::wstring DialogTest::Edit(const com::Ref<IAttribute>& attribute, Script script) {
    Next(std::move(script));
    EXPECT_EQ(attribute->SetValue(), S_OK);
    return support::Text(attribute, &IAttribute::get_Value);
}

std::vector<bench::Box> DialogTest::Messages() {
    std::vector<bench::Box> messages = Boxes();
    for (const std::wstring& caption : handled_) {
        const auto box = std::find_if(messages.begin(), messages.end(), [&](const bench::Box& candidate) {
            return candidate.caption == caption;
        });
        if (box != messages.end()) {
            messages.erase(box);
        }
    }
    handled_.clear();
    return messages;
}

} // namespace dialogs
