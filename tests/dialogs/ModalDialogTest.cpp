// Where a dialog that centres itself opens: the bit editor, which first leaves
// out the bits that its type has not.

#include "common/resource.h"
#include "tests/dialogs/Driver.h"

#include <memory>

namespace dialogs {
namespace {

struct DestroyIt {
    using pointer = HWND;
    void operator()(HWND window) const noexcept { DestroyWindow(window); }
};
using HostWindow = std::unique_ptr<HWND, DestroyIt>;

POINT MiddleOf(const RECT& place) {
    return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
}

RECT PlaceOf(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    return place;
}

RECT WorkArea() {
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    return work;
}

class ModalDialogTest : public DialogTest {
  protected:
    HostWindow Host(int left, int top, int width, int height, DWORD style = WS_VISIBLE) {
        HostWindow host(CreateWindowExW(0, L"Static", L"Host", WS_POPUP | style, left, top, width, height,
                                        nullptr, nullptr, nullptr, nullptr));
        SetActiveWindow(host.get());
        return host;
    }
    /// The editor's middle is this one, but for half a pixel.
    void ExpectMiddle(const RECT& around) {
        const POINT expected = MiddleOf(around);
        Edit(Attribute(kBits8, L"5"), [expected](Shown& dialog) {
            const POINT found = MiddleOf(PlaceOf(dialog.Window()));
            EXPECT_NEAR(found.x, expected.x, 1);
            EXPECT_NEAR(found.y, expected.y, 1);
            dialog.Click(IDCANCEL);
        });
    }
};

TEST_F(ModalDialogTest, OpensOverTheMiddleOfTheHostsWindow) {
    const auto host = Host(150, 90, 800, 700);
    ExpectMiddle(PlaceOf(host.get()));
}

TEST_F(ModalDialogTest, OpensInTheMiddleOfTheScreenWhereTheHostsWindowIsNotSeen) {
    const auto host = Host(150, 90, 800, 700, 0);
    ASSERT_EQ(GetActiveWindow(), host.get());
    ExpectMiddle(WorkArea());
}

TEST_F(ModalDialogTest, OpensInTheMiddleOfTheScreenWithoutAWindowOfTheHost) {
    ASSERT_EQ(GetActiveWindow(), nullptr);
    ExpectMiddle(WorkArea());
}

} // namespace
} // namespace dialogs
