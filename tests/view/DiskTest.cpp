// A file that changes on the disk while it is open.

#include "tests/view/Fixture.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace viewtest {

namespace {

class DiskTest : public OpenedTest {
  protected:
    /// Writes the file with another value of its first attribute.
    void Rewrite(const std::string& value) {
        std::string text = BytesOf(file_);
        const std::size_t at = text.find("<VALUE>") + 7;
        text.replace(at, text.find('<', at) - at, value);
        // Whole at once: a look at it sees the old one or the new one.
        EXPECT_TRUE(MoveFileExW(FileWith(L"channels.xml.new", text).c_str(), file_.c_str(),
                                MOVEFILE_REPLACE_EXISTING));
    }
    /// Until the window has looked at its files twice: a second window, that was opened later,
    /// has asked.
    void AwaitLooks() {
        FileWith(L"second.xml", BytesOf(Sample(L"channels.xml")));
        const Viewer second({FileNamed(L"second.xml")});
        AwaitAttributes(second, kAttributes);
        FileWith(L"second.xml", BytesOf(Sample(L"full.xml")));
        EXPECT_TRUE(second.NextBox());
    }
    /// Has the window look at its files as often as it takes to ask.
    void LookNow() const {
        constexpr WPARAM kDiskTimer = 1;
        for (int i = 0; i < 3; ++i) { // it is asked at the second look
            PostMessageW(viewer_.Frame(), WM_TIMER, kDiskTimer, 0);
        }
        viewer_.Settle();
    }
    std::wstring Value() const { return viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"); }
};

TEST_F(DiskTest, IsOfferedAgain) {
    Rewrite("88");
    const Box box = viewer_.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(L"channels.xml")) << Narrow(box.Text());
    box.Press(IDYES);
    Await("the new value", [&] { return viewer_.Count(IDC_ATTRIBUTES) == kAttributes && Value() == L"88"; });
    viewer_.Close();
}

TEST_F(DiskTest, IsOfferedOnceForEachChange) {
    Rewrite("88");
    viewer_.NextBox().Press(IDNO);
    EXPECT_EQ(L"1", Value());
    AwaitLooks();
    EXPECT_FALSE(viewer_.ShownBox());
    Rewrite("777");
    viewer_.NextBox().Press(IDYES);
    Await("the new value", [&] { return viewer_.Count(IDC_ATTRIBUTES) == kAttributes && Value() == L"777"; });
}

TEST_F(DiskTest, SaysThatUnsavedValuesWouldBeLost) {
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Setup", L"6");
    Rewrite("88");
    const Box box = viewer_.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(L"unsaved")) << Narrow(box.Text());
    box.Press(IDCANCEL);
    EXPECT_EQ(L"6", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Setup"));
    EXPECT_TRUE(viewer_.IsEnabled(IDM_EDIT_UNDO));
}

// Who types "delay" does not mean "yes".
TEST_F(DiskTest, NoLetterThrowsUnsavedValuesAway) {
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Setup", L"6");
    Rewrite("88");
    const Box box = viewer_.NextBox();
    const HWND button = FindWindowExW(box.Window(), nullptr, L"Button", nullptr);
    ASSERT_NE(nullptr, button);
    for (const wchar_t letter : std::wstring_view(L"adelnoyz")) {
        PostMessageW(button, WM_CHAR, letter, 1);
    }
    viewer_.Settle();
    EXPECT_TRUE(viewer_.ShownBox());
    EXPECT_EQ(L"6", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Setup"));
    box.Press(IDOK);
    Await("the file's value", [&] {
        return viewer_.Count(IDC_ATTRIBUTES) == kAttributes && Value() == L"88" &&
               viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Setup") == L"3";
    });
}

// The Enter meant for the value would answer the question.
TEST_F(DiskTest, WhoTypesIsAskedWhenTheValueIsEntered) {
    const HWND cell = viewer_.BeginCell(IDC_ATTRIBUTES, L"AI1_Setup", L"8");
    Rewrite("88");
    LookNow();
    EXPECT_FALSE(viewer_.ShownBox());
    ASSERT_TRUE(IsWindow(cell)) << "it is still typed into";
    PostMessageW(cell, WM_KEYDOWN, VK_RETURN, 1);
    const Box box = viewer_.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(L"unsaved")) << Narrow(box.Text());
    Await("the focus on the answer that loses nothing", [&] { return viewer_.Focus() == IDCANCEL; });
    box.Press(IDCANCEL);
    EXPECT_EQ(L"8", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Setup"));
}

TEST_F(DiskTest, WhoFiltersIsAskedInTheList) {
    viewer_.ToFront();
    viewer_.Do(IDM_EDIT_FILTER);
    Await("the focus on the filter", [&] { return viewer_.Focus() == IDC_FILTER; });
    Rewrite("88");
    LookNow();
    EXPECT_FALSE(viewer_.ShownBox());
    viewer_.Press(VK_DOWN);
    viewer_.NextBox().Press(IDNO);
}

/// The mouse's own button, held down on a window. A posted press would not last: the system
/// tells a window of the pointer as it is, and a move without the button ends a drag.
class HeldButton {
  public:
    explicit HeldButton(HWND window) {
        GetCursorPos(&before_);
        POINT at = {2, 2};
        ClientToScreen(window, &at);
        SetCursorPos(at.x, at.y);
        mouse_event(MOUSEEVENTF_LEFTDOWN, 0, 0, 0, 0);
        isDown_ = Await("the drag", [window] {
            GUITHREADINFO thread{};
            thread.cbSize = sizeof thread;
            GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &thread);
            return thread.hwndCapture == window;
        });
    }
    HeldButton(const HeldButton&) = delete;
    HeldButton& operator=(const HeldButton&) = delete;
    ~HeldButton() {
        mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
        SetCursorPos(before_.x, before_.y);
    }
    bool IsDown() const noexcept { return isDown_; }

  private:
    POINT before_{};
    bool isDown_ = false;
};

TEST_F(DiskTest, WhoDragsIsAskedAfterIt) {
    viewer_.ToFront();
    {
        const HeldButton button(viewer_.Part(IDC_SHEET));
        ASSERT_TRUE(button.IsDown());
        Rewrite("88");
        LookNow();
        EXPECT_FALSE(viewer_.ShownBox());
    }
    viewer_.NextBox().Press(IDNO);
}

// A menu may close for reasons of the display's; where it is still open, nobody was asked.
TEST_F(DiskTest, WhoHasAMenuOpenIsAskedAfterIt) {
    constexpr int kMostRounds = 5;
    bool wasOpen = false;
    for (int round = 0; round < kMostRounds && !wasOpen; ++round) {
        Rewrite(std::to_string(80 + round) + std::string(static_cast<std::size_t>(round), ' '));
        PostMessageW(viewer_.Frame(), WM_SYSCOMMAND, SC_KEYMENU, L'f');
        Await("the menu", [&] { return viewer_.ShownMenu() != nullptr || viewer_.ShownBox(); });
        LookNow();
        wasOpen = !viewer_.ShownBox() && viewer_.ShownMenu() != nullptr;
        SendMessageW(viewer_.Frame(), WM_CANCELMODE, 0, 0);
        Await("the menu's end", [&] { return viewer_.ShownMenu() == nullptr; });
        viewer_.NextBox().Press(IDNO);
    }
    EXPECT_TRUE(wasOpen) << "the question comes over an open menu";
}

TEST_F(DiskTest, ADevicesStreamIsOfferedAgain) {
    std::string device = BytesOf(benchtest::SamplesFolder() + L"device.xml");
    const std::string stream = "<Stream>streams/channels.xml</Stream>";
    const std::size_t at = device.find(stream);
    ASSERT_NE(std::string::npos, at);
    device.replace(at, stream.size(), "<Stream>channels.xml</Stream>");
    FileWith(L"device.xml", device);
    Rewrite("88");
    viewer_.NextBox().Press(IDNO);
    viewer_.Close();
    Viewer viewer({FileNamed(L"device.xml")});
    AwaitAttributes(viewer, kAttributes);
    EXPECT_EQ(L"88", viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"));
    Rewrite("777");
    const Box box = viewer.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(L"channels.xml")) << Narrow(box.Text());
    box.Press(IDYES);
    Await("the new value", [&] {
        return viewer.Count(IDC_ATTRIBUTES) == kAttributes &&
               viewer.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel") == L"777";
    });
    FileWith(L"device.xml", device + "\n");
    const Box second = viewer.NextBox(box);
    EXPECT_NE(std::wstring::npos, second.Text().find(L"device.xml")) << Narrow(second.Text());
}

TEST_F(DiskTest, AFileThatIsGoneStaysOpen) {
    DeleteFileW(file_.c_str());
    AwaitLooks();
    EXPECT_FALSE(viewer_.ShownBox());
    EXPECT_EQ(L"1", Value());
}

} // namespace

} // namespace viewtest
