#include "tests/fault/Imports.h"
#include "tests/fault/Injection.h"
#include "tests/support/Fixture.h"

#include <functional>
#include <initializer_list>
#include <iostream>
#include <string>
#include <thread>

// What the component makes at its first use, in a library loaded again for
// each fault.

namespace {

using namespace fault;
using namespace support;

class LoadingFaultTest : public ::testing::Test {
  protected:
    /// Calls the body where the module is to be made.
    using Place = std::function<void(const Component& component, const std::function<void()>& body)>;

    /// For all kinds, each fault once and for ever.
    void CountAll(const char* name, const Place& at) {
        std::cout << name;
        for (const Kind kind : {Kind::Memory, Kind::Text, Kind::Creation}) {
            const int once = Count(kind, Mode::Once, at);
            const int forEver = Count(kind, Mode::ForEver, at);
            EXPECT_GT(once, 0);
            EXPECT_EQ(once >= forEver, true);
            RecordProperty(NameOf(kind), once + forEver);
            std::cout << " " << NameOf(kind) << " " << once << "+" << forEver;
        }
        std::cout << std::endl;
    }

    com::Ref<Converter> converter_ = Converter::Make();
    HostClass converterClass_{kConverterClass, kConverterProgId, [this](REFIID iid, void** out) {
                                  return converter_->QueryInterface(iid, out);
                              }};

  private:
    /// The number of faults until the first module can be made.
    int Count(Kind kind, Mode mode, const Place& at) {
        for (int n = 1;; ++n) {
            const Component component;
            const Imports imports(component.Module());
            bool happened = false;
            at(component, [&] { happened = MakeUnder(kind, n, mode, component); });
            if (!happened || HasFailure()) {
                return n - 1;
            }
        }
    }
    static bool MakeUnder(Kind kind, int n, Mode mode, const Component& component) {
        const testing::ScopedTrace trace(__FILE__, __LINE__,
                                         std::string(NameOf(kind)).append(" ").append(std::to_string(n)));
        com::Ref<IAppObject> module;
        bool happened = false;
        {
            const Injection injection(kind, n, mode);
            module = component.NewModule();
            happened = injection.HasHappened();
        }
        EXPECT_EQ(component.LastCreateResult(), happened ? CodeOf(kind) : S_OK);
        EXPECT_EQ(static_cast<bool>(module), !happened);
        module.Reset();
        EXPECT_EQ(component.CanUnload(), S_OK) << "objects of the component are still alive";
        EXPECT_TRUE(component.NewModule()) << "the next module cannot be made";
        return happened;
    }
};

TEST_F(LoadingFaultTest, FirstModule) {
    CountAll("first module of a component       ",
             [](const Component&, const std::function<void()>& body) { body(); });
}

/// The component is loaded here and used in another apartment.
class LoadingOtherThreadFaultTest : public LoadingFaultTest {
  protected:
    void Elsewhere(const std::function<void()>& body) {
        std::thread([&] {
            EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
            {
                const HostClass converter(kConverterClass, {}, [this](REFIID iid, void** out) {
                    return converter_->QueryInterface(iid, out);
                });
                body();
            }
            CoUninitialize();
        }).join();
    }
    static HRESULT Enter(const Component& component, com::Ref<IClassFactory>& factory) {
        return component.ClassObject(__uuidof(::CDBAppObject), IID_IClassFactory, factory.PutVoid());
    }
};

TEST_F(LoadingOtherThreadFaultTest, FirstModule) {
    CountAll("first module on another thread    ",
             [this](const Component& component, const std::function<void()>& body) {
                 Elsewhere([&] {
                     com::Ref<IClassFactory> factory;
                     ASSERT_EQ(Enter(component, factory), S_OK);
                     factory.Reset();
                     body();
                 });
             });
}

TEST_F(LoadingOtherThreadFaultTest, ItsFirstEntryIsRefusedWithoutMemory) {
    const Component component;
    const Imports imports(component.Module());
    Elsewhere([&] {
        com::Ref<IClassFactory> factory;
        {
            const Injection injection(Kind::Memory, 1, Mode::ForEver);
            EXPECT_EQ(Enter(component, factory), E_OUTOFMEMORY);
        }
        EXPECT_FALSE(factory);
        EXPECT_TRUE(component.NewModule());
    });
}

} // namespace
