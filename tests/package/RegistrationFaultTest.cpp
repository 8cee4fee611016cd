// The n-th write to the registry fails, for every n: nothing may have changed,
// and the answer says so.

#include "tests/package/Dll.h"
#include "tests/package/MemoryFault.h"
#include "tests/package/MemoryRegistry.h"
#include "tests/package/RegistryFault.h"

#include <initializer_list>
#include <iostream>
#include <string>
#include <vector>

namespace package {

namespace {

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

class RegistrationFaultTest : public RegistryTest, public ::testing::WithParamInterface<Case> {
  protected:
    void SetUp() override {
        RegistryTest::SetUp();
        if (GetParam().ground == Ground::OlderInstall) {
            PlantOlderInstall(Subject().Facts(), InScope());
        } else if (GetParam().ground == Ground::OtherDll) {
            ASSERT_EQ(S_OK, Other().Register(InScope()));
        }
    }
    void TearDown() override {
        EXPECT_EQ(S_OK, Subject().Unregister(InScope()));
        EXPECT_EQ(S_OK, Other().Unregister(InScope()));
        RegistryTest::TearDown();
    }

    Scope InScope() const { return GetParam().scope; }
    const Dll& Subject() const { return GetParam().facts == &Component ? component : hostServices; }
    const Dll& Other() const { return GetParam().facts == &Component ? hostServices : component; }

    /// Makes the call fail at one write in so many, and compares the contents.
    /// Leaves it done once.
    template <class Call, class Content, class Show>
    void FailWrites(const char* name, int step, const Call& call, const Content& content, const Show& show) {
        const auto start = content();
        int failures = 0;
        for (int number = 1;; number += step) {
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
                std::cout << name << ": failed at " << failures << " of " << writes << " writes\n";
                EXPECT_EQ((writes + step - 1) / step, failures);
                EXPECT_LT(0, writes);
                return;
            }
            ASSERT_EQ(E_ACCESSDENIED, result) << "write " << number;
            ASSERT_TRUE(content() == start) << "write " << number << "\n"
                                            << Difference(show(start), show(content()));
            ++failures;
        }
    }
    template <class Content, class Show>
    void FailWrites(int step, const Content& content, const Show& show) {
        FailWrites(
            "registering", step, [&] { return Subject().Register(InScope()); }, content, show);
        FailWrites(
            "unregistering", step, [&] { return Subject().Unregister(InScope()); }, content, show);
    }
};

TEST_P(RegistrationFaultTest, ChangesNothingWhicheverWriteFails) {
    Lines unregistered;
    {
        const MemoryRegistry memory(Subject().Module(), InScope());
        ASSERT_TRUE(memory.IsComplete()) << "the DLL reads or writes by other functions";
        const auto show = [&](const MemoryRegistry::Keys& keys) { return memory.LinesOf(keys); };
        ASSERT_EQ("", Difference(Snapshot(InScope()), show(memory.Content())));
        const auto content = [&]() -> const MemoryRegistry::Keys& {
            EXPECT_EQ(0U, memory.OpenKeys());
            return memory.Content();
        };
        FailWrites(1, content, show);
        unregistered = show(memory.Content());
    }
    // The system's registry takes the same calls to the same content.
    ASSERT_EQ(S_OK, Subject().Register(InScope()));
    const Lines registered = Snapshot(InScope());
    ASSERT_EQ(S_OK, Subject().Unregister(InScope()));
    EXPECT_EQ("", Difference(unregistered, Snapshot(InScope())));

    const MemoryRegistry memory(Subject().Module(), InScope());
    ASSERT_EQ(S_OK, Subject().Register(InScope()));
    EXPECT_EQ("", Difference(registered, memory.LinesOf(memory.Content())));
}

TEST_P(RegistrationFaultTest, ChangesNothingWithoutMemory) {
    const MemoryRegistry memory(Subject().Module(), InScope());
    const auto call = [&](bool registers) {
        return registers ? Subject().Register(InScope()) : Subject().Unregister(InScope());
    };
    for (const bool registers : {true, false}) {
        for (const auto kind : {MemoryFault::Kind::Once, MemoryFault::Kind::ForEver}) {
            ASSERT_EQ(S_OK, call(!registers));
            const MemoryRegistry::Keys start = memory.Content();
            // Some allocations are the same step for each of many interfaces.
            constexpr int kStep = 31;
            int failures = 0;
            for (int number = 1;; number += number < 100 ? 1 : kStep) {
                MemoryFault fault(Subject().Module(), number, kind);
                ASSERT_TRUE(fault.IsComplete()) << "the DLL takes its memory elsewhere";
                const HRESULT result = call(registers);
                EXPECT_EQ(0U, memory.OpenKeys());
                if (!fault.HasFailed()) {
                    EXPECT_EQ(S_OK, result);
                    break;
                }
                ASSERT_EQ(E_OUTOFMEMORY, result) << "allocation " << number;
                ASSERT_TRUE(memory.Content() == start)
                    << "allocation " << number << "\n"
                    << Difference(memory.LinesOf(start), memory.LinesOf(memory.Content()));
                ++failures;
            }
            std::cout << (registers ? "registering" : "unregistering") << ": failed at " << failures
                      << " allocations\n";
            EXPECT_LT(0, failures);
        }
    }
}

TEST_P(RegistrationFaultTest, ChangesNothingInTheSystemsRegistry) {
    constexpr int kStep = 23; // no multiple of the writes of one key
    FailWrites(
        kStep, [&] { return ReadKeys(InScope()); },
        [&](const std::vector<Key>& keys) { return LinesOf(InScope(), keys); });
}

TEST_P(RegistrationFaultTest, ChangesNothingWhereOneKeyIsProtected) {
    ASSERT_EQ(S_OK, Subject().Register(InScope()));
    const Lines start = Snapshot(InScope());
    std::vector<std::string> keys = {Subject().Facts().library.id};
    for (const Class& entry : Subject().Facts().classes) {
        keys.push_back(entry.id);
    }
    for (const std::string& key : keys) {
        const RegistryFault fault(Subject().Module(), Wide(key));
        EXPECT_EQ(E_ACCESSDENIED, Subject().Unregister(InScope())) << key;
        EXPECT_EQ("", Difference(start, Snapshot(InScope()))) << key;
        EXPECT_EQ(E_ACCESSDENIED, Subject().Register(InScope())) << key;
        EXPECT_EQ("", Difference(start, Snapshot(InScope()))) << key;
    }
}

TEST_P(RegistrationFaultTest, RefusesAUserWhoMayNotWrite) {
    const Lines start = Snapshot(InScope());
    {
        const RegistryFault fault(Subject().Module(), 1, RegistryFault::Kind::ForEver);
        EXPECT_EQ(E_ACCESSDENIED, Subject().Register(InScope()));
        EXPECT_EQ(E_ACCESSDENIED, Subject().Unregister(InScope()));
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
