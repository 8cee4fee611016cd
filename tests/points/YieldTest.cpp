#include "tests/points/Points.h"
#include "tests/support/HostWindows.h"

#include <cstddef>
#include <functional>
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

TEST_F(YieldTest, GivesATurnAtEachSavedChild) {
    const auto turnsOf = [](const std::function<HRESULT()>& load) {
        const Reposter host;
        EXPECT_EQ(load(), S_OK);
        return host.Handled();
    };
    const auto saved = Saved(L"<Points><A/><!-- c --><B/></Points>");
    EXPECT_EQ(turnsOf([&] { return Inputs(module).As<_CDBInputs>()->XmlLoad(saved.Get()); }), 3);
    EXPECT_EQ(turnsOf([&] { return Outputs(module).As<_CDBOutputs>()->XmlLoad(saved.Get()); }), 3);
    EXPECT_EQ(turnsOf([&] { return Attributes(module).As<_CDBAttributes>()->XmlLoad(saved.Get()); }), 3);
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

TEST_F(YieldTest, ShowsTheOrderOfInputsAsFarAsItIsRestored) {
    module = Loaded(Stream(Named({L"A", L"B", L"C", L"D", L"E"}), L""));
    const auto inputs = Inputs(module);
    const auto load = [&] {
        return inputs.As<_CDBInputs>()->XmlLoad(Saved(L"<Inputs><E/><C/><A/><C/><D/></Inputs>").Get());
    };
    const std::vector<std::wstring> orders{L"ABCDE", L"EABCD", L"ECABD", L"ECABD", L"EABCD"};
    for (std::size_t turn = 1; turn <= orders.size(); ++turn) {
        // Brought back first, so that each round begins with the same order.
        EXPECT_EQ(inputs.As<_CDBInputs>()->XmlLoad(Saved(L"<Inputs><A/><B/><C/><D/><E/></Inputs>").Get()),
                  S_OK);
        std::wstring seen;
        const Reposter looking([&](int count) {
            if (count == static_cast<int>(turn)) {
                for (const std::wstring& name : Names(inputs)) {
                    seen += name;
                }
            }
        });
        EXPECT_EQ(load(), S_OK);
        EXPECT_EQ(seen, orders[turn - 1]) << turn;
        EXPECT_EQ(Names(inputs), (std::vector<std::wstring>{L"E", L"A", L"B", L"C", L"D"})) << turn;
    }
}

/// What is loaded must not be held by the caller alone: a script's variable, say,
/// may get another object while a member runs.
TEST_F(YieldTest, BearsAHostThatDropsTheLoadedCollectionItself) {
    const auto saved = Saved(L"<Saved><B/><A/></Saved>");
    auto inputs = Inputs(module).As<_CDBInputs>();
    auto outputs = Outputs(module).As<_CDBOutputs>();
    auto attributes = Attributes(module).As<_CDBAttributes>();
    _CDBInputs* const askedInputs = inputs.Get();
    const Listener dropping([&] {
        module.Reset();
        inputs.Reset();
    });
    dropping.Post();
    EXPECT_EQ(askedInputs->XmlLoad(saved.Get()), S_OK);
    const Listener droppingOutputs([&] { outputs.Reset(); });
    droppingOutputs.Post();
    _CDBOutputs* const askedOutputs = outputs.Get();
    EXPECT_EQ(askedOutputs->XmlLoad(saved.Get()), S_OK);
    const Listener droppingAttributes([&] { attributes.Reset(); });
    droppingAttributes.Post();
    _CDBAttributes* const askedAttributes = attributes.Get();
    EXPECT_EQ(askedAttributes->XmlLoad(saved.Get()), S_OK);
    EXPECT_FALSE(inputs || outputs || attributes);
}

/// Two loads of one collection are not mixed: the one that began last counts.
class YieldLoadInsideLoadTest : public PointsTest {
  protected:
    void SetUp() override {
        PointsTest::SetUp();
        module = Loaded(Stream(Named({L"A", L"B", L"C"}), Named({L"A", L"B"})));
    }
    void ExpectEnded(const wchar_t* className) {
        ExpectOnlyReport(Boxes(),
                         L"The load was ended, because the object was loaded again or destroyed meanwhile",
                         className, L"Sub XmlLoad");
    }
};

TEST_F(YieldLoadInsideLoadTest, LeavesInputsInTheOrderOfTheLast) {
    const auto inputs = Inputs(module).As<_CDBInputs>();
    const auto inner = Saved(L"<Inputs><B/><C/><A/></Inputs>");
    for (const int turn : {1, 2, 3}) {
        const Reposter loading([&](int count) {
            if (count == turn) {
                EXPECT_EQ(inputs->XmlLoad(inner.Get()), S_OK);
            }
        });
        EXPECT_EQ(inputs->XmlLoad(Saved(L"<Inputs><C/><A/><B/></Inputs>").Get()), S_OK);
        EXPECT_EQ(Names(Inputs(module)), (std::vector<std::wstring>{L"B", L"C", L"A"}));
        ExpectEnded(L"O_Tam_id Class Module CDBInputs");
    }
}

TEST_F(YieldLoadInsideLoadTest, LeavesOutputsWithTheValuesOfTheLast) {
    const auto outputs = Outputs(module).As<_CDBOutputs>();
    const auto inner = Saved(L"<Outputs><A><IsDisplayable>True</IsDisplayable></A>"
                             L"<B><IsDisplayable>True</IsDisplayable></B></Outputs>");
    const Reposter loading([&](int count) {
        if (count == 2) {
            EXPECT_EQ(outputs->XmlLoad(inner.Get()), S_OK);
        }
    });
    EXPECT_EQ(outputs->XmlLoad(Saved(L"<Outputs><A><IsDisplayable>False</IsDisplayable></A>"
                                     L"<B><IsDisplayable>False</IsDisplayable></B></Outputs>")
                                   .Get()),
              S_OK);
    EXPECT_TRUE(Flag(Output(module, L"A"), &IOutput::get_IsDisplayable));
    EXPECT_TRUE(Flag(Output(module, L"B"), &IOutput::get_IsDisplayable));
    ExpectEnded(L"O_Tam_id Class Module CDBOutputs");
}

TEST_F(YieldLoadInsideLoadTest, GoesOnWhenTheOtherDoesNotBegin) {
    const auto inputs = Inputs(module).As<_CDBInputs>();
    const Listener loading([&] { EXPECT_EQ(inputs->XmlLoad(nullptr), S_OK); });
    loading.Post();
    EXPECT_EQ(inputs->XmlLoad(Saved(L"<Inputs><C/><A/><B/></Inputs>").Get()), S_OK);
    EXPECT_EQ(Names(Inputs(module)), (std::vector<std::wstring>{L"C", L"A", L"B"}));
    EXPECT_EQ(Boxes().size(), 1u) << "of the one that got no element";
}

} // namespace
