#pragma once

#include "com/Boundary.h"
#include "com/Conversion.h"
#include "com/Dom.h"
#include "com/Ref.h"

#include <string>

namespace support {

// Short reading of COM members: the value, or a thrown failure that ends the
// test with the member's HRESULT.

template <class I>
std::wstring Text(const com::Ref<I>& object, HRESULT (STDMETHODCALLTYPE I::*get)(BSTR*)) {
    com::Bstr value;
    com::Check((object.Get()->*get)(value.Put()));
    return std::wstring(value.View());
}

template <class I>
bool Flag(const com::Ref<I>& object, HRESULT (STDMETHODCALLTYPE I::*get)(VARIANT_BOOL*)) {
    VARIANT_BOOL value = VARIANT_FALSE;
    com::Check((object.Get()->*get)(&value));
    return value != VARIANT_FALSE;
}

template <class I>
long Long(const com::Ref<I>& object, HRESULT (STDMETHODCALLTYPE I::*get)(long*)) {
    long value = 0;
    com::Check((object.Get()->*get)(&value));
    return value;
}

template <class I>
short Short(const com::Ref<I>& object, HRESULT (STDMETHODCALLTYPE I::*get)(short*)) {
    short value = 0;
    com::Check((object.Get()->*get)(&value));
    return value;
}

template <class I>
double Double(const com::Ref<I>& object, HRESULT (STDMETHODCALLTYPE I::*get)(double*)) {
    double value = 0;
    com::Check((object.Get()->*get)(&value));
    return value;
}

template <class J, class I>
com::Ref<J> Object(const com::Ref<I>& object, HRESULT (STDMETHODCALLTYPE I::*get)(J**)) {
    com::Ref<J> value;
    com::Check((object.Get()->*get)(value.Put()));
    return value;
}

/// Writes a text property.
template <class I>
HRESULT Put(const com::Ref<I>& object, HRESULT (STDMETHODCALLTYPE I::*put)(BSTR), const std::wstring& text) {
    const com::Bstr value(text);
    return (object.Get()->*put)(value.Get());
}

/// The item of a collection by its index text; empty when there is none.
template <class J, class I>
com::Ref<J> Item(const com::Ref<I>& collection, HRESULT (STDMETHODCALLTYPE I::*get)(BSTR, J**),
                 const std::wstring& index) {
    const com::Bstr text(index);
    com::Ref<J> item;
    com::Check((collection.Get()->*get)(text.Get(), item.Put()));
    return item;
}

/// What the last failed call left as its error.
struct ErrorTexts {
    std::wstring description;
    std::wstring source;
    /// Help file and context: "double.hlp#4711"; empty where there is neither.
    std::wstring help;
    GUID guid{};
};
std::wstring HelpText(BSTR file, DWORD context);
ErrorTexts LastError();
/// Whether there is an error object; it is taken.
bool HasLastError();
/// Leaves an error object, as a call of somebody else would.
void LeaveError(const std::wstring& description, const std::wstring& source = L"Somebody");

using Document = com::Ref<IXMLDOMDocument2>;
/// An empty MSXML 6 document.
Document NewDocument();
/// A document from a text; throws when it is no XML.
Document Parse(const std::wstring& xml);
/// The text form of a node, without the line end that a document adds.
std::wstring Xml(IUnknown* node);
/// The document element.
com::Ref<IXMLDOMElement> Root(const Document& document);

} // namespace support
