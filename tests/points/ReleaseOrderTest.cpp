#include "tests/support/ReleaseOrder.h"
#include "tests/points/Points.h"

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

// Whoever of a module's objects is let go of first: as long as the host holds a
// point or a collection the module answers, and at the end nothing is left.

using namespace support;
using namespace points;

namespace {

/// What a host may hold of one module.
enum Held : std::size_t { kModule, kCollections, kInput, kAttribute, kEnumerators, kTypes, kHeldCount };
constexpr std::array<const char*, kHeldCount> kHeldNames = {"module",    "collections", "input",
                                                            "attribute", "enumerators", "types"};

class ReleaseOrderModuleTest : public PointsTest {
  protected:
    using References = HeldByKind<kHeldCount>;
    using Change = std::function<void(const com::Ref<IAppObject>&)>;

    static std::wstring Points() {
        const std::wstring type = L"<SNVTTYPE>105</SNVTTYPE>";
        return Stream(L"<In1><SNVTCOMPATIBILITYLIST>8,9</SNVTCOMPATIBILITYLIST></In1>",
                      Named({L"Out1"}, type), Named({L"Gain"}, type));
    }
    /// Every reference that a host can get at, by kind.
    References TakeAll(const Change& change) {
        References held;
        const auto object = Loaded(Points());
        const auto inputs = Inputs(object);
        const auto outputs = Outputs(object);
        const auto attributes = Attributes(object);
        const auto output = Output(object, L"Out1");
        held[kInput] = {Input(object, L"In1")};
        held[kAttribute] = {Attribute(object, L"Gain")};
        held[kEnumerators] = {Object(inputs, &IInputs::get_NewEnum), Object(outputs, &IOutputs::get_NewEnum),
                              Object(attributes, &IAttributes::get_NewEnum)};
        held[kTypes] = {Object(output, &IOutput::get_SNVTType), Object(output, &IOutput::get_SNVTCompatible),
                        Object(Input(object, L"In1"), &IInput::get_SNVTCompatibles)};
        held[kCollections] = {inputs, outputs, attributes};
        held[kModule] = {object, object.As<ITamObject>()};
        change(object);
        return held;
    }
    /// What is still held knows its module, and the module answers.
    static void ExpectAnswered(const References& held) {
        std::vector<com::Ref<IAppObject>> parents;
        for (const auto& object : held[kInput]) {
            parents.push_back(Object(object.As<IInput>(), &IInput::get_Parent));
        }
        for (const auto& object : held[kAttribute]) {
            parents.push_back(Object(object.As<IAttribute>(), &IAttribute::get_Parent));
            EXPECT_EQ(Text(object.As<IAttribute>(), &IAttribute::get_DispValue), L"converted label");
        }
        if (!held[kCollections].empty()) {
            const auto output = Item(held[kCollections][1].As<IOutputs>(), &IOutputs::get_Item, L"Out1");
            parents.push_back(Object(output, &IOutput::get_Parent));
            EXPECT_EQ(Text(output.As<IDisplayItem>(), &IDisplayItem::get_Reference), L"4000");
        }
        for (const auto& object : held[kEnumerators]) {
            com::Variant item;
            ASSERT_EQ(object.As<IEnumVARIANT>()->Reset(), S_OK);
            ASSERT_EQ(object.As<IEnumVARIANT>()->Next(1, item.Put(), nullptr), S_OK);
            parents.push_back(com::Ref<IAppObject>());
            if (const auto input = com::Query<IInput>(item.Get().pdispVal)) {
                parents.back() = Object(input, &IInput::get_Parent);
            } else if (const auto output = com::Query<IOutput>(item.Get().pdispVal)) {
                parents.back() = Object(output, &IOutput::get_Parent);
            } else {
                parents.back() = Object(com::Query<IAttribute>(item.Get().pdispVal), &IAttribute::get_Parent);
            }
        }
        for (const auto& parent : parents) {
            ASSERT_TRUE(parent);
            EXPECT_TRUE(com::SameObject(parent.Get(), parents.front().Get()));
            EXPECT_EQ(Text(parent, &IAppObject::get_Name), L"Module");
        }
    }
    void ReleaseInEveryOrder(const Change& change) {
        const std::size_t rounds = support::ReleaseInEveryOrder(
            kHeldNames, [this]() -> Component& { return Dll(); }, [&] { return TakeAll(change); },
            ExpectAnswered,
            [this] { EXPECT_EQ(Dll().CanUnload(), S_OK) << "an object of the component is still alive"; });
        EXPECT_EQ(rounds, 720u);
    }
};

TEST_F(ReleaseOrderModuleTest, EverythingEndsInEveryOrderOfRelease) {
    ReleaseInEveryOrder([](const com::Ref<IAppObject>&) {});
}

TEST_F(ReleaseOrderModuleTest, EverythingEndsInEveryOrderAfterDestroy) {
    ReleaseInEveryOrder([](const com::Ref<IAppObject>& object) { EXPECT_EQ(object->Destroy(), S_OK); });
}

TEST_F(ReleaseOrderModuleTest, EverythingEndsInEveryOrderAfterAnotherStream) {
    const std::wstring another = Stream(Named({L"In2"}), Named({L"Out2"}, L"<SNVTTYPE>105</SNVTTYPE>"));
    ReleaseInEveryOrder([&](const com::Ref<IAppObject>& object) { EXPECT_EQ(Load(object, another), S_OK); });
}

} // namespace
