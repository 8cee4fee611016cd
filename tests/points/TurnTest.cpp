#include "tests/points/Points.h"
#include "tests/support/HostWindows.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>

using namespace support;
using namespace points;

namespace {

int expired = 0;

LRESULT CALLBACK CountTimer(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    expired += message == WM_TIMER ? 1 : 0;
    return DefWindowProcW(window, message, wParam, lParam);
}

using List = com::Ref<ICompatibleSNVTs>;

/// What the host's messages get in a turn: what waited when it began, and no more.
/// A list with commas gives one turn for each identifier.
class TurnTest : public PointsTest {
  protected:
    List list;

    void SetUp() override {
        PointsTest::SetUp();
        list = Object(Input(Loaded(Stream(L"<In1/>")), L"1"), &IInput::get_SNVTCompatibles);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) { // what the last window left
            DispatchMessageW(&message);
        }
    }
    void TearDown() override {
        list.Reset();
        PointsTest::TearDown();
    }
    void Add(const std::wstring& text, const CalledFrom& = {}) const {
        EXPECT_EQ(list->Add(com::Bstr(text).Get()), S_OK);
    }
    /// One turn, with an end of the list after it.
    void GiveTurn() const { Add(L","); }
    /// A list of three turns is read while a window of the host always has a message
    /// waiting, which is handled once a turn at most.
    void ExpectReadUnder(const HostWindow& window, const CalledFrom& = {}) const {
        Add(L"1,2,3");
        EXPECT_EQ(Shown(), L"1,2,3");
        EXPECT_GE(window.Handled(), 1);
        EXPECT_LE(window.Handled(), 3);
    }
    std::wstring Shown() const { return Text(list, &ICompatibleSNVTs::ToString); }
};

TEST_F(TurnTest, EndsForAWindowThatPostsItsMessageAgain) {
    const Reposter window;
    ExpectReadUnder(window);
    EXPECT_EQ(window.Handled(), 3) << "one for each turn";
}

TEST_F(TurnTest, EndsForATimerThatExpiresInItsHandler) {
    ExpectReadUnder(SlowTimer());
}

TEST_F(TurnTest, EndsForAWindowThatIsNeverValidated) {
    ExpectReadUnder(Unpainted());
}

// The system names one window until it is validated, and no other meanwhile.
TEST_F(TurnTest, PaintsTheOthersBesideAWindowThatIsNeverValidated) {
    const Unpainted below(1);
    const Unpainted never;
    const Unpainted above(1);
    const Unpainted firstChild(1, never.Window());
    const Unpainted neverChild(1000, never.Window());
    const Unpainted lastChild(1, never.Window());
    GiveTurn();
    for (const Unpainted* window : {&below, &never, &above, &firstChild, &neverChild, &lastChild}) {
        EXPECT_EQ(window->Handled(), 1);
    }
    GiveTurn();
    for (const Unpainted* window : {&below, &above, &firstChild, &lastChild}) {
        EXPECT_EQ(window->Handled(), 1) << "nothing to paint any more";
    }
    EXPECT_EQ(never.Handled(), 2);
    EXPECT_EQ(neverChild.Handled(), 2);
}

TEST_F(TurnTest, LeavesTheEndOfTheHostsLoopBesideAWindowThatIsNeverValidated) {
    const Unpainted never;
    PostQuitMessage(7);
    Add(L"1,2,3");
    MSG message{};
    ASSERT_NE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE), FALSE);
    EXPECT_EQ(message.wParam, 7U);
}

TEST_F(TurnTest, EndsForAllOfThemAtOnce) {
    const Unpainted window;
    const SlowTimer timer;
    const Reposter reposter;
    GiveTurn();
    EXPECT_EQ(window.Handled(), 1);
    EXPECT_EQ(timer.Handled(), 1);
    EXPECT_EQ(reposter.Handled(), 1);
}

TEST_F(TurnTest, HandlesAllThatWaits) {
    const Unpainted windows[] = {Unpainted(1), Unpainted(1)};
    const SlowTimer timers[2];
    std::wstring heard;
    const Listener first([&] { heard += L"1"; });
    const Listener second([&] { heard += L"2"; });
    for (int i = 0; i < 3; ++i) {
        first.Post();
        second.Post();
    }
    GiveTurn();
    EXPECT_EQ(heard, L"121212");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(windows[i].Handled(), 1);
        EXPECT_EQ(timers[i].Handled(), 1);
    }
}

TEST_F(TurnTest, HandlesKeysThatWaitAfterPostedMessages) {
    const HWND box = CreateWindowExW(WS_EX_TOOLWINDOW, L"Edit", L"", WS_POPUP | WS_VISIBLE, 0, 0, 50, 20,
                                     nullptr, nullptr, nullptr, nullptr);
    AwaitFront(box);
    GiveTurn();
    INPUT keys[2] = {};
    for (INPUT& key : keys) {
        key.type = INPUT_KEYBOARD;
        key.ki.wVk = VK_HOME;
    }
    keys[1].ki.dwFlags = KEYEVENTF_KEYUP;
    SendMessageW(box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"text"));
    SendMessageW(box, EM_SETSEL, 4, 4);
    int heard = 0;
    const Listener listener([&] { ++heard; });
    listener.Post();
    ASSERT_EQ(SendInput(2, keys, sizeof(INPUT)), 2u);
    GiveTurn();
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(SendMessageW(box, EM_GETSEL, 0, 0), 0) << "the caret has gone home";
    DestroyWindow(box);
}

TEST_F(TurnTest, HandlesEachKeysCharacterBeforeTheNextKey) {
    const HWND box = CreateWindowExW(WS_EX_TOOLWINDOW, L"Edit", L"", WS_POPUP | WS_VISIBLE, 0, 0, 50, 20,
                                     nullptr, nullptr, nullptr, nullptr);
    AwaitFront(box);
    GiveTurn();
    std::array<INPUT, 6> keys{};
    const std::array<WORD, 3> typed{'A', VK_HOME, 'B'};
    for (std::size_t i = 0; i < keys.size(); ++i) {
        keys[i].type = INPUT_KEYBOARD;
        keys[i].ki.wVk = typed[i / 2];
        keys[i].ki.dwFlags = i % 2 == 0 ? 0 : KEYEVENTF_KEYUP;
    }
    ASSERT_EQ(SendInput(static_cast<UINT>(keys.size()), keys.data(), sizeof(INPUT)), keys.size());
    GiveTurn();
    GiveTurn();
    std::array<wchar_t, 8> text{};
    GetWindowTextW(box, text.data(), static_cast<int>(text.size()));
    EXPECT_EQ(std::wstring(text.data()), L"ba");
    DestroyWindow(box);
}

TEST_F(TurnTest, HandlesAFloodOfKeysInSeveralTurns) {
    const HWND box = CreateWindowExW(WS_EX_TOOLWINDOW, L"Edit", L"", WS_POPUP | WS_VISIBLE | ES_AUTOHSCROLL,
                                     0, 0, 50, 20, nullptr, nullptr, nullptr, nullptr);
    AwaitFront(box);
    GiveTurn();
    constexpr int kTyped = 40; // each pressed and let go: more than a turn handles
    std::array<INPUT, std::size_t{2} * kTyped> keys{};
    for (std::size_t i = 0; i < keys.size(); ++i) {
        keys[i].type = INPUT_KEYBOARD;
        keys[i].ki.wVk = 'A';
        keys[i].ki.dwFlags = i % 2 == 0 ? 0 : KEYEVENTF_KEYUP;
    }
    ASSERT_EQ(SendInput(static_cast<UINT>(keys.size()), keys.data(), sizeof(INPUT)), keys.size());
    const auto typed = [box] { return GetWindowTextLengthW(box); };
    GiveTurn();
    EXPECT_GT(typed(), 0);
    EXPECT_LT(typed(), kTyped);
    for (int turn = 0; turn < 3 && typed() < kTyped; ++turn) {
        GiveTurn();
    }
    EXPECT_EQ(typed(), kTyped);
    DestroyWindow(box);
}

TEST_F(TurnTest, GivesATimerWithoutANumberItsTurnBesideThePaintOfItsWindow) {
    expired = 0;
    const HWND window = CreateWindowExW(WS_EX_TOOLWINDOW, L"Static", L"", WS_POPUP | WS_VISIBLE, 0, 0, 50, 20,
                                        nullptr, nullptr, nullptr, nullptr);
    GiveTurn();
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CountTimer));
    SetTimer(window, 0, 10, nullptr);
    AwaitTimer(window);
    InvalidateRect(window, nullptr, TRUE);
    GiveTurn();
    EXPECT_EQ(expired, 1);
    DestroyWindow(window);
}

TEST_F(TurnTest, LeavesWhatAHandlerPostsForTheNext) {
    int heard = 0;
    const Listener later([&] { ++heard; });
    const Listener listener([&] { later.Post(); });
    listener.Post();
    GiveTurn();
    EXPECT_EQ(heard, 0);
    GiveTurn();
    EXPECT_EQ(heard, 1);
}

TEST_F(TurnTest, LeavesNoWindowBehind) {
    const auto windows = [] {
        int count = 0;
        for (HWND one = FindWindowExW(HWND_MESSAGE, nullptr, nullptr, nullptr); one != nullptr;
             one = FindWindowExW(HWND_MESSAGE, one, nullptr, nullptr)) {
            count += GetWindowThreadProcessId(one, nullptr) == GetCurrentThreadId() ? 1 : 0;
        }
        return count;
    };
    const Reposter window;
    const int before = windows();
    ASSERT_GE(before, 1);
    Add(L"1,2,3");
    EXPECT_EQ(windows(), before);
}

// A message that posts itself again and loads would go ever deeper otherwise.
TEST_F(TurnTest, GivesNoTurnInTheHandlerOfAMessage) {
    int depth = 0;
    int deepest = 0;
    const Reposter window([&](int) {
        deepest = std::max(deepest, ++depth);
        if (depth < 50) {
            Add(L"7,8,9");
        }
        --depth;
    });
    Add(L"1,2,3");
    EXPECT_EQ(Shown(), L"7,8,9,1,2,3");
    EXPECT_EQ(deepest, 1);
    EXPECT_EQ(window.Handled(), 3);
}

/// Handles all that is posted, as the loop of a dialog does.
void RunLoop() {
    MSG message;
    for (int i = 0; i < 10 && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE; ++i) {
        DispatchMessageW(&message);
    }
}

TEST_F(TurnTest, GivesATurnInALoopThatAHandlerRuns) {
    for (const bool isTimer : {false, true}) {
        int heard = 0;
        const Listener listener([&] { ++heard; });
        const Listener inDialog([&] {
            listener.Post();
            Add(L"7,8");
            EXPECT_EQ(heard, 1);
        });
        bool isOpen = false;
        const auto open = [&] {
            if (!std::exchange(isOpen, true)) {
                inDialog.Post();
                RunLoop();
            }
        };
        const Listener opening(open);
        struct Timer final : HostWindow {
            explicit Timer(std::function<void()> action) : action_(std::move(action)) {
                SetTimer(Window(), 1, 10, nullptr);
                AwaitTimer(Window());
            }
            UINT Message() const override { return WM_TIMER; }
            void Handle() override { action_(); }
            std::function<void()> action_;
        };
        std::optional<Timer> timer;
        if (isTimer) {
            timer.emplace(open);
        } else {
            opening.Post();
        }
        GiveTurn();
        EXPECT_TRUE(isOpen);
        EXPECT_EQ(heard, 1);
    }
}

TEST_F(TurnTest, EndsWhenALoopThatAHandlerRanHasHandledWhatWaited) {
    const Listener listener([] { RunLoop(); });
    listener.Post();
    const Reposter window;
    GiveTurn();
    EXPECT_GE(window.Handled(), 1);
    EXPECT_LE(window.Handled(), 10) << "those of the loop";
}

// A loop may take messages and give none of them to its window.
TEST_F(TurnTest, EndsWhenALoopThatAHandlerRanHasThrownTheMarkAway) {
    std::optional<Reposter> window;
    int heard = 0;
    const Listener listener([&] {
        ++heard;
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
        }
        if (!window) {
            window.emplace([](int) { Sleep(5); });
        }
    });
    listener.Post();
    GiveTurn();
    EXPECT_EQ(heard, 1);
    EXPECT_LT(window->Handled(), Reposter::kGivesUp / 10);
    window.reset();
    listener.Post();
    GiveTurn();
    EXPECT_EQ(heard, 2) << "the next turn is as ever";
}

TEST_F(TurnTest, LeavesTheEndOfTheHostsLoopToTheHost) {
    int heard = 0;
    const Listener listener([&] {
        ++heard;
        PostQuitMessage(7);
    });
    listener.Post();
    Add(L"1,2,3");
    EXPECT_EQ(Shown(), L"1,2,3") << "the list is read to its end";
    EXPECT_EQ(heard, 1);
    MSG message{};
    ASSERT_NE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE), FALSE);
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(message.wParam, 7U);
    EXPECT_EQ(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE), FALSE) << "once";
}

TEST_F(TurnTest, BearsAHostThatDropsTheList) {
    com::Ref<IDispatch> copy;
    com::Check(list.As<IClonable>()->Clone(copy.Put()));
    List other = copy.As<ICompatibleSNVTs>();
    copy.Reset();
    ICompatibleSNVTs* const asked = other.Get();
    const Listener dropping([&] { other.Reset(); });
    dropping.Post();
    EXPECT_EQ(asked->Add(com::Bstr(L"1,2,3").Get()), S_OK);
    EXPECT_FALSE(other);
}

TEST_F(TurnTest, BearsAScriptThatChangesTheTextItGave) {
    BSTR text = SysAllocString(L"1,2,3");
    const Listener changing([&] {
        wmemset(text, L'9', 5);
        SysFreeString(std::exchange(text, nullptr));
    });
    changing.Post();
    EXPECT_EQ(list->Add(text), S_OK);
    EXPECT_EQ(Shown(), L"1,2,3");
}

} // namespace
