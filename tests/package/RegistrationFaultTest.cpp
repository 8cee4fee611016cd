// The n-th write to the registry fails, for every n: nothing may have changed,
// and the answer says so.

#include "tests/package/Dll.h"
#include "tests/package/RegistryFault.h"

#include <iostream>
#include <optional>

namespace package {

namespace {

constexpr HRESULT kDenied = static_cast<HRESULT>(0x80070005);

enum class Ground { Clean, OlderInstall, OtherDll };

struct Case {
    const char* name;
    const DllFacts& (*facts)();
    Scope scope;
    Ground ground;
};

void PrintTo(const Case& entry, std::ostream* out) {
    *out << entry.name;
}

/// Lets a part of the registry stand for the machine's, as long as it lives: a
/// machine's own has tens of thousands of keys, too many to read each time.
class SmallMachine {
  public:
    SmallMachine() {
        EXPECT_EQ(ERROR_SUCCESS,
                  RegCreateKeyExW(HKEY_CURRENT_USER, kPlace, 0, nullptr, REG_OPTION_NON_VOLATILE,
                                  KEY_ALL_ACCESS, nullptr, &key_, nullptr));
        EXPECT_EQ(ERROR_SUCCESS, RegOverridePredefKey(HKEY_LOCAL_MACHINE, key_));
    }
    ~SmallMachine() {
        EXPECT_EQ(ERROR_SUCCESS, RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr));
        RegCloseKey(key_);
        EXPECT_EQ(ERROR_SUCCESS, RegDeleteTreeW(HKEY_CURRENT_USER, kPlace));
    }
    SmallMachine(const SmallMachine&) = delete;
    SmallMachine& operator=(const SmallMachine&) = delete;

  private:
    static constexpr const wchar_t* kPlace = L"Software\\O_Tam_id package tests";
    HKEY key_ = nullptr;
};

class RegistrationFaultTest : public RegistryTest, public ::testing::WithParamInterface<Case> {
  protected:
    void SetUp() override {
        RegistryTest::SetUp();
        if (GetParam().scope == Scope::Machine) {
            machine_.emplace();
            // Somebody else's, so that the places themselves are there.
            Plant(Scope::Machine, L"CLSID\\{11111111-0000-0000-0000-000000000000}", nullptr, L"Other");
        }
        if (GetParam().ground == Ground::OlderInstall) {
            PlantOlderInstall(Subject().Facts(), InScope());
        } else if (GetParam().ground == Ground::OtherDll) {
            ASSERT_EQ(S_OK, Other().Register(InScope()));
        }
    }
    void TearDown() override {
        EXPECT_EQ(S_OK, Subject().Unregister(InScope()));
        EXPECT_EQ(S_OK, Other().Unregister(InScope()));
        machine_.reset();
        RegistryTest::TearDown();
    }

    Scope InScope() const { return GetParam().scope; }
    const Dll& Subject() const { return GetParam().facts == &Component ? component : hostServices; }
    const Dll& Other() const { return GetParam().facts == &Component ? hostServices : component; }

    /// Makes the call fail at each of its writes. Leaves it done once.
    template <class F>
    void FailEachWrite(const char* name, F&& call) {
        const Lines start = Snapshot(InScope());
        for (int number = 1;; ++number) {
            HRESULT result = S_OK;
            int writes = 0;
            {
                const RegistryFault fault(Subject().Module(), number);
                ASSERT_TRUE(fault.IsComplete()) << "the DLL writes by other functions";
                result = call();
                writes = fault.Writes();
            }
            if (writes < number) {
                EXPECT_EQ(S_OK, result);
                std::cout << name << ": failed at each of " << writes << " writes\n";
                EXPECT_LT(0, writes);
                return;
            }
            ASSERT_EQ(kDenied, result) << "write " << number;
            ASSERT_EQ("", Difference(start, Snapshot(InScope()))) << "write " << number;
        }
    }

  private:
    std::optional<SmallMachine> machine_;
};

TEST_P(RegistrationFaultTest, ChangesNothingWhenAWriteFails) {
    FailEachWrite("registering", [&] { return Subject().Register(InScope()); });
    FailEachWrite("unregistering", [&] { return Subject().Unregister(InScope()); });
}

TEST_P(RegistrationFaultTest, RefusesAUserWhoMayNotWrite) {
    const Lines start = Snapshot(InScope());
    {
        const RegistryFault fault(Subject().Module(), 1, RegistryFault::Kind::ForEver);
        EXPECT_EQ(kDenied, Subject().Register(InScope()));
        EXPECT_EQ(kDenied, Subject().Unregister(InScope()));
    }
    EXPECT_EQ("", Difference(start, Snapshot(InScope())));
}

INSTANTIATE_TEST_SUITE_P(
    Dlls, RegistrationFaultTest,
    ::testing::Values(Case{"ComponentForTheUser", &Component, Scope::User, Ground::Clean},
                      Case{"ComponentOverAnOlderOne", &Component, Scope::Machine, Ground::OlderInstall},
                      Case{"HostServicesOverAnOlderOne", &HostServices, Scope::User, Ground::OlderInstall},
                      Case{"HostServicesBesideTheComponent", &HostServices, Scope::Machine,
                           Ground::OtherDll}),
    [](const auto& entry) { return std::string(entry.param.name); });

} // namespace

} // namespace package
