#include "tests/dialogs/Driver.h"
#include "tests/dialogs/HostPoint.h"
#include "tests/Wine.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace dialogs {
namespace {

/// Objects of this process: of the graphics system and of the window manager.
struct Counts {
    DWORD gdi = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    DWORD user = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
};

/// Wine counts neither and answers 0. There a graphics object has the lowest
/// number that is free, so that the highest of many made at once says how many
/// others there are. Of the window manager's objects only windows are counted.
/// Windows numbers the objects of all processes together, so the number says nothing.
int HighestGraphicsNumber() {
    if (!tests::IsWine()) {
        return 0;
    }
    std::array<HBRUSH, 400> brushes{};
    int highest = 0;
    for (HBRUSH& brush : brushes) {
        brush = CreateSolidBrush(RGB(1, 2, 3));
        highest = std::max<int>(highest, LOWORD(brush));
    }
    for (const HBRUSH brush : brushes) {
        DeleteObject(brush);
    }
    return highest;
}

BOOL CALLBACK CountWindow(HWND, LPARAM count) {
    ++*reinterpret_cast<int*>(count);
    return TRUE;
}

BOOL CALLBACK CountWindowAndChildren(HWND window, LPARAM count) {
    EnumChildWindows(window, &CountWindow, count);
    return CountWindow(window, count);
}

/// Windows of this thread, top-level ones and their children.
int Windows() {
    int count = 0;
    EnumThreadWindows(GetCurrentThreadId(), &CountWindowAndChildren, reinterpret_cast<LPARAM>(&count));
    return count;
}

/// Closes each dialog as soon as it is active. The fixture's watcher, which
/// would read every control, does not get to see it.
class CancelAtOnce {
  public:
    CancelAtOnce() noexcept
        : hook_(SetWindowsHookExW(WH_CBT, &CancelAtOnce::Hook, nullptr, GetCurrentThreadId())) {
        cancelled = 0;
    }
    ~CancelAtOnce() { UnhookWindowsHookEx(hook_); }
    CancelAtOnce(const CancelAtOnce&) = delete;
    CancelAtOnce& operator=(const CancelAtOnce&) = delete;

    static inline int cancelled = 0;

  private:
    static constexpr DWORD kDialogClass = 32770;

    static LRESULT CALLBACK Hook(int code, WPARAM wParam, LPARAM lParam) {
        const auto window = reinterpret_cast<HWND>(wParam);
        if (code != HCBT_ACTIVATE || GetClassLongW(window, GCW_ATOM) != kDialogClass) {
            return CallNextHookEx(nullptr, code, wParam, lParam);
        }
        if (GetPropW(window, L"cancelled") == nullptr) {
            SetPropW(window, L"cancelled", reinterpret_cast<HANDLE>(1));
            PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
            ++cancelled;
        }
        return 0;
    }

    HHOOK hook_;
};

class LeakTest : public DialogTest {
  protected:
    static constexpr int kTimes = 1000;

    template <class F>
    void OpenOften(F&& open) {
        const CancelAtOnce cancel;
        open(); // what is made once, at the first time
        const Counts before;
        const int graphics = HighestGraphicsNumber();
        const int windows = Windows();
        for (int i = 0; i < kTimes; ++i) {
            open();
        }
        EXPECT_EQ(CancelAtOnce::cancelled, kTimes + 1);
        const Counts after;
        EXPECT_EQ(after.gdi, before.gdi);
        EXPECT_EQ(after.user, before.user);
        EXPECT_EQ(Windows(), windows);
        EXPECT_LT(HighestGraphicsNumber(), graphics + kTimes / 2);
    }
    void EditOften(const com::Ref<IAttribute>& point) {
        OpenOften([&] { EXPECT_EQ(point->SetValue(), S_OK); });
    }
};

TEST_F(LeakTest, NumericEditor) {
    EditOften(Attribute(kSigned, L"1"));
}
TEST_F(LeakTest, TextEditor) {
    EditOften(Attribute(kText, L"a"));
}
TEST_F(LeakTest, EnumerationEditor) {
    EditOften(Attribute(kEnum, L"1"));
}
TEST_F(LeakTest, BitFieldEditor) {
    EditOften(Attribute(kBits8, L"1"));
}

TEST_F(LeakTest, StructureEditor) {
    {
        HostPoint field(L"Field", L"1", L"Float");
        HostPoint structure(L"All", L"1", L"Struct");
        structure.SetFields({&field});
        const auto module = NewModule().As<ITamDialogs>();
        const int objects = NamedObject::live;
        OpenOften([&] { EXPECT_EQ(module->EditValue(structure.object.Get()), S_OK); });
        EXPECT_EQ(NamedObject::live, objects);
    }
    EXPECT_EQ(NamedObject::live, 0);
}

TEST_F(LeakTest, RenameDialog) {
    const auto module = NewModule().As<ITamDialogs>();
    OpenOften([&] {
        com::Variant name(std::wstring_view(L"Dev1"));
        VARIANT argument = name.Detach();
        short choice = 0;
        EXPECT_EQ(module->ShowRename(&argument, nullptr, &choice), S_OK);
        VariantClear(&argument);
    });
}

TEST_F(LeakTest, ErrorReport) {
    const auto point = Attribute(kSigned, L"1").As<_CDBAttribute>();
    OpenOften([&] { EXPECT_EQ(point->XmlLoad(nullptr), S_OK); });
}

TEST_F(LeakTest, AboutBox) {
    const auto module = NewModule().As<ITamDialogs>();
    OpenOften([&] { EXPECT_EQ(module->ShowAbout(), S_OK); });
}

} // namespace
} // namespace dialogs
