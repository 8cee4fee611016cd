#pragma once

#include "tests/Program.h"

#include <windows.h>

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace viewtest {

using Texts = std::vector<std::wstring>;

/// How long something is waited for, in milliseconds: a bound against a hang alone. Under
/// load a file of ten thousand points takes a minute.
inline constexpr DWORD kLongest = 300'000;

/// Asks again and again until it holds. False, and a failed test, when it does not
/// within five minutes.
bool Await(const std::string& what, const std::function<bool()>& holds);

/// The files of what a window that was ended left unsaved.
Texts UnsavedFiles();
void ForgetUnsaved();

/// Memory of another program, for messages that take a pointer.
class RemoteMemory {
  public:
    RemoteMemory(HANDLE process, std::size_t size);
    ~RemoteMemory();
    RemoteMemory(const RemoteMemory&) = delete;
    RemoteMemory& operator=(const RemoteMemory&) = delete;

    BYTE* At(std::size_t offset = 0) const noexcept { return memory_ + offset; }
    void Write(const void* bytes, std::size_t size, std::size_t offset = 0) const;
    void Read(void* bytes, std::size_t size, std::size_t offset = 0) const;

  private:
    HANDLE process_;
    BYTE* memory_;
};

/// Waits until a viewer's window has handled every message that was posted so far, or is gone.
void SettleMessages(HWND frame);

/// The text of any window, of this program or another.
std::wstring TextOf(HWND window);

/// A message box or dialog of the program while it is shown.
class Box {
  public:
    explicit Box(HWND window = nullptr) noexcept
        : window_(window), owner_(window != nullptr ? GetWindow(window, GW_OWNER) : nullptr) {}
    explicit operator bool() const noexcept { return window_ != nullptr; }
    HWND Window() const noexcept { return window_; }
    std::wstring Caption() const { return TextOf(window_); }
    /// Of a message box.
    std::wstring Text() const;
    bool Has(int button) const noexcept { return GetDlgItem(window_, button) != nullptr; }
    /// Presses a button and waits until the box is gone, and what the program does after it.
    void Press(int button) const;
    /// Presses a button, whatever comes of it.
    void Click(int button) const;
    /// Puts a file's name into a common dialog and presses its OK, which ends it.
    void ChooseFile(const std::wstring& path) const;
    /// The same, whatever comes of it.
    void EnterFile(const std::wstring& path) const;
    void AwaitEnd() const;

  private:
    HWND window_;
    HWND owner_;
};

/// tamview.exe as a program of its own, worked from outside. It is ended without being
/// asked when the test ends, unless it has ended before.
class Viewer {
  public:
    /// Starts it and waits for its window. `beforeStart` gets the number of the program
    /// while it does not run yet.
    explicit Viewer(const Texts& arguments = {}, const std::function<void(DWORD)>& beforeStart = {});
    ~Viewer();
    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;

    HANDLE Process() const noexcept { return program_.Process(); }
    HWND Frame() const noexcept { return frame_; }
    HWND Part(int id) const noexcept { return GetDlgItem(frame_, id); }
    std::wstring Title() const { return TextOf(frame_); }
    std::wstring PartText(int id) const { return TextOf(Part(id)); }
    bool IsVisible(int id) const noexcept { return IsWindowVisible(Part(id)) != FALSE; }
    std::wstring Status(int part) const;
    /// Of a command in the toolbar.
    bool IsEnabled(int command) const noexcept;
    bool IsTicked(int command) const noexcept;

    /// The command of a menu entry, done when this returns; one that opens a box is begun.
    void Do(int command) const;
    void Begin(int command) const;
    /// Those of all viewers so far.
    static std::set<int>& Commands() {
        static std::set<int> commands;
        return commands;
    }
    /// Waits until every message that was posted so far is handled.
    void Settle() const;
    /// The next box, another one than the one that is given; the test fails when none comes.
    Box NextBox(const Box& before = Box()) const;
    /// The box that is shown; none when there is none now.
    Box ShownBox() const;
    /// The menu that is open; null when there is none now.
    HWND ShownMenu() const;
    /// Whether keys go to a menu, or to the bar of menus.
    bool IsInMenu() const noexcept;

    // The lists

    int Count(int list) const noexcept;
    std::wstring Cell(int list, int place, int column) const;
    /// A column from top to bottom.
    Texts Cells(int list, int column) const;
    /// The place of the row with this cell; -1 and a failed test when there is none.
    int PlaceOf(int list, const std::wstring& text, int column = 0) const;
    /// The place that has the focus; -1 for none.
    int Picked(int list) const noexcept;
    /// The name in the row that has the focus; empty for none.
    std::wstring PickedName(int list) const;
    void Pick(int list, int place) const;
    void Pick(int list, const std::wstring& name) const { Pick(list, PlaceOf(list, name)); }
    /// A click on a column's heading.
    void ClickHeading(int list, int column) const;
    void DoubleClickRow(int list, int place) const;
    /// Types into the filter.
    void Filter(const std::wstring& words) const;

    /// The field over the value of the picked row; null, and the test has failed, when there
    /// comes none.
    HWND OpenCell(int list) const;
    /// Types a value into a point's row and does not end it: the field is still there.
    HWND BeginCell(int list, const std::wstring& name, const std::wstring& value) const;
    /// Gives a point a value by typing it into its row.
    void SetCell(int list, const std::wstring& name, const std::wstring& value) const;
    /// The value that a row shows.
    std::wstring ValueOf(int list, const std::wstring& name) const;

    // The keyboard. Keys go where the focus is, as from a hand.

    /// Brings the window to the front, so that keys go to it.
    void ToFront() const;
    /// One key, with the keys that are held meanwhile.
    void Press(WORD key, const std::vector<WORD>& held = {}) const;
    /// A key text as the bench types it: letters, {ENTER}, {ALT+x}.
    void Type(const std::wstring& keys) const;
    /// The identifier of the control with the focus.
    int Focus() const noexcept;

    /// Lets files fall on the window.
    void Drop(const Texts& files) const;

    /// Asks the window to close.
    void BeginClose() const noexcept { PostMessageW(frame_, WM_CLOSE, 0, 0); }
    /// Closes the window, which is to ask nothing.
    void Close();
    /// Waits for the end of the program; its exit status.
    DWORD WaitForEnd();
    /// Ends the program as a crash does.
    void Kill();
    bool IsRunning() const noexcept { return WaitForSingleObject(Process(), 0) == WAIT_TIMEOUT; }

  private:
    tests::Program program_;
    HWND frame_ = nullptr;
};

} // namespace viewtest
