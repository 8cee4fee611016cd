#include "tests/host/HostDll.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <objbase.h>

namespace {

/// After each test no object of the DLL may live.
class LeakCheck final : public testing::EmptyTestEventListener {
    void OnTestEnd(const testing::TestInfo&) override {
        EXPECT_EQ(S_OK, hosttest::HostDll::Get().CanUnloadNow()) << "an object was never released";
    }
};

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
        return 2;
    }
    auto& listeners = testing::UnitTest::GetInstance()->listeners();
    // Ends of tests go to the listeners in reverse order: before the printer's.
    listeners.Append(new LeakCheck);
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}
