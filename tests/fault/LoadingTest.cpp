#include "tests/fault/Imports.h"
#include "tests/fault/Injection.h"
#include "tests/support/Fixture.h"

#include <iostream>

// What the component makes at its first use, in a library loaded anew for
// each fault.

namespace {

using namespace fault;
using namespace support;

class LoadingFaultTest : public ::testing::Test {
  protected:
    /// The number of faults until the first module can be made.
    int Run(Kind kind, Mode mode) {
        for (int n = 1;; ++n) {
            const testing::ScopedTrace trace(__FILE__, __LINE__,
                                             std::string(NameOf(kind)).append(" ").append(std::to_string(n)));
            const Component component;
            const Imports imports(component.Module());
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
            if (!happened || HasFailure()) {
                return n - 1;
            }
        }
    }

    com::Ref<Converter> converter_ = Converter::Make();
    HostClass converterClass_{kConverterClass, kConverterProgId, [this](REFIID iid, void** out) {
                                  return converter_->QueryInterface(iid, out);
                              }};
};

TEST_F(LoadingFaultTest, FirstModule) {
    std::cout << "first module of a component       ";
    for (const Kind kind : {Kind::Memory, Kind::Text, Kind::Creation}) {
        const int once = Run(kind, Mode::Once);
        const int forEver = Run(kind, Mode::ForEver);
        EXPECT_GT(once, 0);
        EXPECT_EQ(once >= forEver, true);
        RecordProperty(NameOf(kind), once + forEver);
        std::cout << " " << NameOf(kind) << " " << once << "+" << forEver;
    }
    std::cout << std::endl;
}

} // namespace
