#include "tests/points/Points.h"

#include <string>

using namespace support;
using namespace points;

namespace {

constexpr long kMany = 1000;

std::wstring Name(const wchar_t* prefix, long i) {
    return prefix + std::to_wstring(i);
}

/// A thousand points of each kind: each is found by its name and at its
/// position, with its index, keys and reference.
class ManyPointsTest : public PointsTest {
  protected:
    void SetUp() override {
        PointsTest::SetUp();
        std::wstring inputs;
        std::wstring outputs;
        std::wstring attributes;
        for (long i = 0; i < kMany; ++i) {
            const std::wstring number = std::to_wstring(i);
            inputs +=
                L"<In_" + number + L"><LOGICALADDRESS>" + number + L"</LOGICALADDRESS></In_" + number + L">";
            outputs += L"<Out_" + number + L"><SNVTTYPE>105</SNVTTYPE></Out_" + number + L">";
            attributes += L"<Att_" + number + L"><SNVTTYPE>36</SNVTTYPE><VALUE>" + number +
                          L"</VALUE></Att_" + number + L">";
        }
        module = Loaded(Stream(inputs, outputs, attributes));
        Put(module, &IAppObject::put_GlobalKey, L"G");
        Put(module, &IAppObject::put_ExtendedKey, L"E");
    }
};

TEST_F(ManyPointsTest, FindsEachInput) {
    const auto inputs = Inputs(module);
    ASSERT_EQ(Long(inputs, &IInputs::get_Count), kMany);
    for (long i = 0; i < kMany; ++i) {
        SCOPED_TRACE(i);
        const std::wstring name = Name(L"In_", i);
        const auto input = Item(inputs, &IInputs::get_Item, name);
        ASSERT_TRUE(input);
        ASSERT_TRUE(
            com::SameObject(input.Get(), Item(inputs, &IInputs::get_Item, std::to_wstring(i + 1)).Get()));
        ASSERT_EQ(Text(input, &IInput::get_Name), name);
        ASSERT_EQ(Long(input, &IInput::get_Index), i);
        ASSERT_EQ(Text(input, &IInput::get_GlobalKey), L"G\\RIN\\" + name);
        ASSERT_EQ(Text(input, &IInput::get_ExtendedKey), L"E\\RIN\\" + name);
    }
    EXPECT_FALSE(Item(inputs, &IInputs::get_Item, L"1001"));
    EXPECT_FALSE(Item(inputs, &IInputs::get_Item, L"In_1000"));
}

TEST_F(ManyPointsTest, FindsEachOutput) {
    const auto outputs = Outputs(module);
    ASSERT_EQ(Long(outputs, &IOutputs::get_Count), kMany);
    for (long i = 0; i < kMany; ++i) {
        SCOPED_TRACE(i);
        const auto output = Item(outputs, &IOutputs::get_Item, Name(L"out_", i));
        ASSERT_TRUE(output);
        ASSERT_TRUE(
            com::SameObject(output.Get(), Item(outputs, &IOutputs::get_Item, std::to_wstring(i + 1)).Get()));
        ASSERT_EQ(Long(output, &IOutput::get_Index), i);
        ASSERT_EQ(Text(output.As<IDisplayItem>(), &IDisplayItem::get_key), L"E\\ROU\\" + Name(L"Out_", i));
        wchar_t reference[8] = {};
        wsprintfW(reference, L"%04X", static_cast<unsigned>(0x4000 + i));
        ASSERT_EQ(Text(output.As<IDisplayItem>(), &IDisplayItem::get_Reference), reference);
    }
}

TEST_F(ManyPointsTest, FindsEachAttribute) {
    const auto attributes = Attributes(module);
    ASSERT_EQ(Long(attributes, &IAttributes::get_Count), kMany);
    for (long i = 0; i < kMany; ++i) {
        SCOPED_TRACE(i);
        const auto attribute = Item(attributes, &IAttributes::get_Item, Name(L"Att_", i));
        ASSERT_TRUE(attribute);
        ASSERT_TRUE(com::SameObject(attribute.Get(),
                                    Item(attributes, &IAttributes::get_Item, std::to_wstring(i + 1)).Get()));
        ASSERT_EQ(Text(attribute, &IAttribute::get_DispValue), std::to_wstring(i));
        ASSERT_EQ(Text(attribute, &IAttribute::get_GlobalKey), L"G\\ATT\\" + Name(L"Att_", i));
    }
}

TEST_F(ManyPointsTest, ReversesTheInputs) {
    const auto inputs = Inputs(module);
    std::wstring saved;
    for (long i = kMany; i-- > 0;) {
        saved += L"<" + Name(L"In_", i) + L"/>";
    }
    EXPECT_EQ(inputs.As<_CDBInputs>()->XmlLoad(Saved(L"<Inputs>" + saved + L"</Inputs>").Get()), S_OK);
    EXPECT_EQ(inputs.As<_CDBInputs>()->RebuildIndexes(), S_OK);
    for (long i = 0; i < kMany; ++i) {
        SCOPED_TRACE(i);
        const auto input = Item(inputs, &IInputs::get_Item, std::to_wstring(i + 1));
        ASSERT_TRUE(input);
        ASSERT_EQ(Text(input, &IInput::get_Name), Name(L"In_", kMany - 1 - i));
        ASSERT_EQ(Long(input, &IInput::get_Index), i);
        ASSERT_TRUE(com::SameObject(input.Get(),
                                    Item(inputs, &IInputs::get_Item, Name(L"In_", kMany - 1 - i)).Get()));
    }
}

TEST_F(ManyPointsTest, EnumeratesThemInOrder) {
    const auto enumerator = Object(Inputs(module), &IInputs::get_NewEnum).As<IEnumVARIANT>();
    for (long i = 0; i < kMany; ++i) {
        com::Variant item;
        ASSERT_EQ(enumerator->Next(1, item.Put(), nullptr), S_OK);
        ASSERT_EQ(Text(com::Query<IInput>(item.Get().pdispVal), &IInput::get_Name), Name(L"In_", i));
    }
    com::Variant none;
    EXPECT_EQ(enumerator->Next(1, none.Put(), nullptr), S_FALSE);
}

} // namespace
