#pragma once

#include "common/resource.h"
#include "tests/support/Fixture.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/OnlyBox.h"

#include <windows.h>

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace dialogs {

/// The edit control of an editor.
inline constexpr int kValueBox = IDC_NEW_VALUE;

/// A dialog of the component while it is shown, worked as a user works it.
class Shown {
  public:
    explicit Shown(HWND window) noexcept : window_(window) {}

    HWND Window() const noexcept { return window_; }
    HWND Control(int id) const noexcept { return GetDlgItem(window_, id); }
    std::wstring Caption() const { return TextOf(window_); }
    std::wstring Text(int id) const { return TextOf(Control(id)); }
    bool IsEnabled(int id) const noexcept { return IsWindowEnabled(Control(id)) != FALSE; }
    bool IsVisible(int id) const noexcept { return IsWindowVisible(Control(id)) != FALSE; }
    bool IsTicked(int id) const noexcept { return IsDlgButtonChecked(window_, id) == BST_CHECKED; }
    bool HasFocus(int id) const noexcept { return GetFocus() == Control(id); }
    /// Still on the screen: no button has closed it.
    bool IsOpen() const noexcept { return IsWindowVisible(window_) != FALSE; }
    /// Control that Enter presses.
    int DefaultButton() const noexcept { return LOWORD(SendMessageW(window_, DM_GETDEFID, 0, 0)); }
    int Height() const;

    /// Characters as a keyboard sends them to a control.
    void Type(int id, const std::wstring& text) const;
    /// A key as it goes through the dialog's own handling, to the control with
    /// the focus.
    void PressKey(WORD key) const;
    /// Alt with a character, to the control with the focus.
    void PressAccessKey(wchar_t key) const;
    /// The closing button of the window's frame.
    void CloseByItsFrame() const;
    void Click(int id) const;
    /// A double click on a control, at its middle or at a point of its own.
    void DoubleClick(int id, int x = 5, int y = 5) const;
    void Select(int id, int start, int end) const;
    std::pair<int, int> Selection(int id) const;
    /// Puts a text on the clipboard.
    void Copy(const std::wstring& text) const;
    /// Ctrl+V as a keyboard sends it.
    void PressPaste(int id) const;
    /// Puts a text on the clipboard and pastes it.
    void Paste(int id, const std::wstring& text) const;

    // The drop-down list and the list of fields
    void Choose(int id, int item) const;
    std::wstring Cell(int id, int row, int column) const;
    int Rows(int id) const;
    void DoubleClickRow(int id, int row) const;

  private:
    static std::wstring TextOf(HWND window);
    void Pump() const;

    HWND window_;
};

/// Value attributes of every general type, and dialogs that do what a test
/// says. A dialog that a test leaves open is closed and counts as a failure.
class DialogTest : public support::ComponentTest {
  protected:
    using Script = std::function<void(Shown& dialog)>;

    void SetUp() override;
    void TearDown() override;

    /// What is done with the next dialog; a second call is for the one after.
    void Next(Script script) { scripts_.push_back(std::move(script)); }
    /// An attribute of a new module, with this type and value.
    com::Ref<IAttribute> Attribute(const std::wstring& type, const std::wstring& value);
    /// Edits the attribute with the script; its value text afterwards.
    std::wstring Edit(const com::Ref<IAttribute>& attribute, Script script);
    /// The message boxes and dialogs since the last call that no script had.
    std::vector<bench::Box> Messages();

    // Types of the catalogue of these tests
    static constexpr const wchar_t* kSigned = L"105";   // -100.5 to 500.25 °C, invalid 327.67
    static constexpr const wchar_t* kUnsigned = L"8";   // 0 to 250
    static constexpr const wchar_t* kFloat = L"51";     // no limits
    static constexpr const wchar_t* kPositive = L"195"; // 1 to 65535, invalid 0
    static constexpr const wchar_t* kEnum = L"95";
    static constexpr const wchar_t* kBits16 = L"83";
    static constexpr const wchar_t* kBits8 = L"82";
    static constexpr const wchar_t* kText = L"36"; // 8 characters
    static constexpr const wchar_t* kStruct = L"84";

  private:
    static LRESULT CALLBACK RunnerProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void Run(HWND dialog);

    HWND runner_ = nullptr;
    /// The component opens the clipboard once, and a program of the desktop may have it then.
    std::optional<support::ImportPatch> clipboard_;
    std::deque<Script> scripts_;
    std::deque<Script> running_;
    std::vector<std::wstring> handled_;
};

} // namespace dialogs
