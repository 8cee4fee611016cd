#include "tests/points/Listener.h"
#include "tests/points/Points.h"

#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

/// Loops over saved points give the host's message loop its turn.
class YieldTest : public PointsTest {
  protected:
    int heard = 0;
    Listener listener{[this] { ++heard; }};

    void SetUp() override {
        PointsTest::SetUp();
        const std::wstring type = L"<SNVTTYPE>105</SNVTTYPE>";
        module = Loaded(Stream(Named({L"A", L"B"}), Named({L"A", L"B"}, type), Named({L"A", L"B"}, type)));
        listener.Post();
    }
};

TEST_F(YieldTest, DispatchesMessagesWhileInputsAreLoaded) {
    EXPECT_EQ(Inputs(module).As<_CDBInputs>()->XmlLoad(Saved(L"<Inputs><A/></Inputs>").Get()), S_OK);
    EXPECT_EQ(heard, 1);
}

TEST_F(YieldTest, DispatchesMessagesWhileOutputsAreLoaded) {
    EXPECT_EQ(Outputs(module).As<_CDBOutputs>()->XmlLoad(Saved(L"<Outputs><A/></Outputs>").Get()), S_OK);
    EXPECT_EQ(heard, 1);
}

TEST_F(YieldTest, DispatchesMessagesWhileAttributesAreLoaded) {
    EXPECT_EQ(Attributes(module).As<_CDBAttributes>()->XmlLoad(Saved(L"<Attributes><A/></Attributes>").Get()),
              S_OK);
    EXPECT_EQ(heard, 1);
}

TEST_F(YieldTest, LeavesTheEndOfTheHostsLoopToTheHost) {
    PostQuitMessage(7);
    EXPECT_EQ(Inputs(module).As<_CDBInputs>()->XmlLoad(Saved(L"<Inputs><B/><A/></Inputs>").Get()), S_OK);
    EXPECT_EQ(Names(Inputs(module)), (std::vector<std::wstring>{L"B", L"A"}));
    MSG message{};
    ASSERT_NE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE), FALSE);
    EXPECT_EQ(message.wParam, 7U);
}

TEST_F(YieldTest, TurnsKeysIntoCharacters) {
    const HWND box =
        CreateWindowExW(0, L"Edit", nullptr, 0, 0, 0, 9, 9, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ASSERT_NE(box, nullptr);
    PostMessageW(box, WM_KEYDOWN, VK_SPACE, 0x00390001);
    EXPECT_EQ(Inputs(module).As<_CDBInputs>()->XmlLoad(Saved(L"<Inputs><A/><B/></Inputs>").Get()), S_OK);
    wchar_t text[8] = {};
    GetWindowTextW(box, text, 8);
    EXPECT_STREQ(text, L" ");
    DestroyWindow(box);
}

TEST_F(YieldTest, BearsAHostThatDropsTheModuleMeanwhile) {
    const auto inputs = Inputs(module).As<_CDBInputs>();
    const Listener dropping([this] { module.Reset(); });
    dropping.Post();
    EXPECT_EQ(inputs->XmlLoad(Saved(L"<Inputs><B/><A/></Inputs>").Get()), S_OK);
    EXPECT_FALSE(module);
    EXPECT_EQ(Names(inputs.As<IInputs>()), (std::vector<std::wstring>{L"B", L"A"}));
}

TEST_F(YieldTest, BearsAHostThatReordersMeanwhile) {
    const auto inputs = Inputs(module).As<_CDBInputs>();
    const auto turned = Saved(L"<Inputs><B/><A/></Inputs>");
    const Listener reordering([&] { inputs->XmlLoad(turned.Get()); });
    reordering.Post();
    EXPECT_EQ(inputs->XmlLoad(Saved(L"<Inputs><A/><B/></Inputs>").Get()), S_OK);
    EXPECT_EQ(Names(inputs.As<IInputs>()), (std::vector<std::wstring>{L"A", L"B"}));
}

} // namespace
