#pragma once

#include "tests/support/CalledFrom.h"
#include "tests/support/Fixture.h"
#include "tests/support/OnlyBox.h"

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace points {

// One type of each general type in the catalogue of these tests.
inline constexpr const wchar_t* kSigned = L"105";
inline constexpr const wchar_t* kUnsigned = L"8";
inline constexpr const wchar_t* kFloat = L"51";
inline constexpr const wchar_t* kEnum = L"95";
inline constexpr const wchar_t* kBitfield = L"83";
inline constexpr const wchar_t* kTextual = L"36";
inline constexpr const wchar_t* kStruct = L"84";
/// In the catalogue, with a general type that is none.
inline constexpr const wchar_t* kBadType = L"900";
/// Not in the catalogue.
inline constexpr const wchar_t* kUnknown = L"999";

// The points of a module. A test goes on with an empty reference when there is
// no such point; Expect… before use where that would end it.
com::Ref<IInputs> Inputs(const com::Ref<IAppObject>& module);
com::Ref<IOutputs> Outputs(const com::Ref<IAppObject>& module);
com::Ref<IAttributes> Attributes(const com::Ref<IAppObject>& module);
com::Ref<IInput> Input(const com::Ref<IAppObject>& module, const std::wstring& index);
com::Ref<IOutput> Output(const com::Ref<IAppObject>& module, const std::wstring& index);
com::Ref<IAttribute> Attribute(const com::Ref<IAppObject>& module, const std::wstring& index);

/// What LoadFromXmlStream answers.
HRESULT Load(const com::Ref<IAppObject>& module, const std::wstring& stream);

/// A section with one point of each name: <name content/>.
std::wstring Named(std::initializer_list<const wchar_t*> names, const std::wstring& content = {});

/// Names in the order of the positions 1 to Count.
template <class I, class J>
std::vector<std::wstring> NamesOf(const com::Ref<I>& collection,
                                  HRESULT (STDMETHODCALLTYPE I::*item)(BSTR, J**)) {
    std::vector<std::wstring> names;
    const long count = support::Long(collection, &I::get_Count);
    for (long i = 1; i <= count; ++i) {
        const auto point = support::Item(collection, item, std::to_wstring(i));
        names.push_back(point ? support::Text(point, &J::get_Name) : L"(none)");
    }
    return names;
}
inline std::vector<std::wstring> Names(const com::Ref<IInputs>& inputs) {
    return NamesOf(inputs, &IInputs::get_Item);
}
inline std::vector<std::wstring> Names(const com::Ref<IOutputs>& outputs) {
    return NamesOf(outputs, &IOutputs::get_Item);
}
inline std::vector<std::wstring> Names(const com::Ref<IAttributes>& attributes) {
    return NamesOf(attributes, &IAttributes::get_Item);
}

/// What the interoperability element says of a point, the only place where
/// some of its fields show; kind is "Inputs", "Outputs" or "Attributes".
std::wstring Interop(const com::Ref<IAppObject>& module, const std::wstring& kind, const std::wstring& point,
                     const std::wstring& child);

/// The document element of a text, as an argument for XmlLoad; its document
/// stays alive with it.
com::Ref<IXMLDOMElement> Saved(const std::wstring& xml);
/// The names of the children of the element at a path, in order.
std::vector<std::wstring> ChildNames(const support::Document& document, const std::wstring& path);
/// The text at a path of a document; "(none)" where there is no such node.
std::wstring TextAt(const support::Document& document, const std::wstring& path);

class PointsTest : public support::ComponentTest {
  protected:
    /// The module under test; gone before the fixture counts what still lives.
    com::Ref<IAppObject> module;

    void SetUp() override;
    void TearDown() override;
    /// A module with these points; the catalogue has the types above.
    com::Ref<IAppObject> WithAttributes(const std::wstring& attributes);
    com::Ref<IAppObject> WithInputs(const std::wstring& inputs);
    com::Ref<IAppObject> WithOutputs(const std::wstring& outputs);
    /// What a module's export says of a point.
    std::wstring Exported(const com::Ref<IAppObject>& from, const std::wstring& path);
};

} // namespace points
