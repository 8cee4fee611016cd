#include "tests/fuzz/DocumentRounds.h"
#include "tests/fuzz/ExpectedSaved.h"

namespace component_fuzz {

using namespace support;

namespace {

using Node = com::Ref<IXMLDOMNode>;

/// Each point reads the element of its name, whatever is in it.
template <class Point, class I, class J>
void ReadEach(const Node& section, const com::Ref<I>& points,
              HRESULT (STDMETHODCALLTYPE I::*item)(BSTR, J**)) {
    tam::dom::ForEachChild(section, [&](const Node& child) {
        const auto point = Item(points, item, tam::dom::BaseName(child)).template As<Point>();
        if (point) {
            EXPECT_EQ(point->XmlLoad(child.Get()), S_OK);
        }
    });
}

} // namespace

void DocumentsFuzzTest::CheckSaved(const Input& input) {
    const Document document = NewDocument();
    const auto element = ProjectOf(document, input);
    if (!element) {
        return;
    }
    const auto module = GoodModule();
    const auto inputs = Object(module, &IAppObject::get_Inputs);
    const auto outputs = Object(module, &IAppObject::get_Outputs);
    const auto attributes = Object(module, &IAppObject::get_Attributes);
    ExpectedSaved expected{{L"AO1_In", L"DO1_In"},
                           {L"AI1_Out", L"DI1_Out"},
                           {L"AI1_Gain", L"AI1_Label", L"AI1_Mode", L"AI1_Bits"},
                           {L"AI1_Out"}};
    const auto section = [&](const wchar_t* name) { return tam::dom::Select(Node(element.Get()), name); };
    if (const Node saved = section(L"Inputs")) {
        expected.ReadInputs(saved);
        EXPECT_EQ(inputs.As<_CDBInputs>()->XmlLoad(saved.Get()), S_OK);
    }
    if (const Node saved = section(L"Outputs")) {
        expected.ReadOutputs(saved);
        EXPECT_EQ(outputs.As<_CDBOutputs>()->XmlLoad(saved.Get()), S_OK);
    }
    if (const Node saved = section(L"Attributes")) {
        expected.ReadAttributes(saved);
        EXPECT_EQ(attributes.As<_CDBAttributes>()->XmlLoad(saved.Get()), S_OK);
    }
    Count(expected.reports != 0 ? "saved, reported" : "saved, read");
    EXPECT_EQ(Reports(), expected.reports);
    for (std::size_t i = 0; i < expected.inputs.size(); ++i) {
        const auto point = Item(inputs, &IInputs::get_Item, std::to_wstring(i + 1));
        EXPECT_EQ(Text(point, &IInput::get_Name), expected.inputs[i]);
    }
    for (const std::wstring& name : expected.outputs) {
        EXPECT_EQ(Flag(Item(outputs, &IOutputs::get_Item, name), &IOutput::get_IsDisplayable),
                  expected.displayed.contains(name));
    }
    if (const Node saved = section(L"Inputs")) {
        ReadEach<_CDBInput>(saved, inputs, &IInputs::get_Item);
    }
    if (const Node saved = section(L"Attributes")) {
        ReadEach<_CDBAttribute>(saved, attributes, &IAttributes::get_Item);
    }
    Use(module);
}

} // namespace component_fuzz
