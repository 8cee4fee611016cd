#pragma once

#include "tests/appobject/Module.h"
#include "tests/fault/FaultLoop.h"

#include <optional>
#include <string>
#include <vector>

namespace fault {

/// A job on a module object.
class ModuleFaultTest : public modules::ModuleTest {
  protected:
    void SetUp() override {
        ModuleTest::SetUp();
        loop_.emplace(Dll(), Watcher());
    }
    void TearDown() override {
        module_.Reset();
        loop_.reset();
        ModuleTest::TearDown();
    }
    FaultLoop& Loop() { return *loop_; }

    com::Ref<IAppObject> module_;

  private:
    std::optional<FaultLoop> loop_;
};

/// Two inputs, an output that is displayable after kDisplayOut, two attributes.
inline std::wstring SmallStream(const std::wstring& name = L"Module of the stream") {
    return support::Stream(
        L"<Input_first><SNVTCompatibilityList>105,36</SNVTCompatibilityList><SNVTType>105</SNVTType>"
        L"<LogicalAddress>address 1</LogicalAddress><ProtocolReference>reference 1</ProtocolReference>"
        L"</Input_first>"
        L"<Input_second><SNVTCompatibilityList>95</SNVTCompatibilityList></Input_second>",
        L"<Output_first><SNVTType>105</SNVTType><LogicalAddress>address 2</LogicalAddress></Output_first>",
        L"<Attribute_first><SNVTType>36</SNVTType><Value>value of the attribute</Value></Attribute_first>"
        L"<Attribute_second><SNVTType>105</SNVTType><Value>20.5</Value></Attribute_second>",
        name);
}
inline constexpr const wchar_t* kDisplayOut =
    L"<Module><OutReferences><Output_first>1</Output_first></OutReferences></Module>";

/// A text property under its name.
template <class I>
std::wstring Field(const wchar_t* name, const com::Ref<I>& object,
                   HRESULT (STDMETHODCALLTYPE I::*get)(BSTR*)) {
    return name + (L"=" + support::Text(object, get));
}
inline std::wstring Field(const wchar_t* name, double number) {
    return name + (L"=" + std::to_wstring(number));
}

/// The nodes below a node in document order, one text each; attributes follow
/// their element.
std::vector<std::wstring> NodesBelow(const tam::dom::Node& node, const std::wstring& indent = {});

} // namespace fault
