#pragma once

#include "bench/Answer.h"
#include "bench/Text.h"
#include "bench/Xml.h"
#include "com/Boundary.h"
#include "com/Conversion.h"
#include "com/Ref.h"

#include <OrvDBFaces.h>

#include <functional>
#include <string>

namespace bench {

class Host;

// Properties, read by slot. A failing member is thrown.

template <class I>
std::wstring WideOf(I& object, HRESULT (STDMETHODCALLTYPE I::*member)(BSTR*)) {
    com::Bstr text;
    com::Call(object, member, text.Put());
    return std::wstring(text.View());
}

template <class I>
std::string TextOf(I& object, HRESULT (STDMETHODCALLTYPE I::*member)(BSTR*)) {
    return Utf8(WideOf(object, member));
}

template <class I, class T>
T NumberOf(I& object, HRESULT (STDMETHODCALLTYPE I::*member)(T*)) {
    T value{};
    com::Call(object, member, &value);
    return value;
}

template <class I>
bool FlagOf(I& object, HRESULT (STDMETHODCALLTYPE I::*member)(VARIANT_BOOL*)) {
    return NumberOf(object, member) != VARIANT_FALSE;
}

// The points in the object's order, by its enumerators.

void ForEachInput(IAppObject& object, const std::function<void(IInput&)>& visit);
void ForEachOutput(IAppObject& object, const std::function<void(IOutput&)>& visit);
void ForEachAttribute(IAppObject& object, const std::function<void(IAttribute&)>& visit);

// A point by its name, in any letter case; empty when there is none. Item
// itself would also take a number for a position.

com::Ref<IInput> FindInput(IAppObject& object, const std::wstring& name);
com::Ref<IOutput> FindOutput(IAppObject& object, const std::wstring& name);
com::Ref<IAttribute> FindAttribute(IAppObject& object, const std::wstring& name);

/// The interoperability element: the only place where the component tells
/// references and logical addresses.
xml::Node Interoperability(Host& host);
/// Its points of one kind ("Inputs", "Outputs", "Attributes") by name.
xml::ElementIndex PointsIn(const xml::Node& interoperability, const wchar_t* kind);

// Each as a document: all that the interfaces tell.

Json ReadType(ISNVType* type);
/// The identifiers of the types that an input accepts.
Json ReadAccepted(IInput& input);
/// "value" and "display" of an attribute; it displays nothing without a type.
Json ReadValue(IAttribute& attribute);
Json ReadModule(Host& host);
Json ReadInputs(Host& host, const xml::Node& interoperability);
Json ReadOutputs(Host& host, const xml::Node& interoperability);
Json ReadAttributes(Host& host);
Json ReadWires(const Host& host);

/// The "display" of a value; empty for none.
std::string DisplayOf(const Json& value);

/// "105 temp_p": number and name, without the prefix that all names have; "-"
/// when there is no type.
std::string TypeTitle(const Json& type);

} // namespace bench
