#pragma once

#include "tests/support/Read.h"

#include <array>
#include <cstddef>

namespace modules {

/// Makes a document refuse, from the n-th on, to make elements or text nodes.
/// Undone at the end; the document must not be used after it is gone.
class DomFault {
  public:
    /// `elements` of the next createElement calls succeed, `texts` of the next
    /// createTextNode calls.
    DomFault(const support::Document& document, int elements, int texts);
    ~DomFault();
    DomFault(const DomFault&) = delete;
    DomFault& operator=(const DomFault&) = delete;

    /// What a refused call answers.
    static constexpr HRESULT kRefused = E_ABORT;

  private:
    static HRESULT STDMETHODCALLTYPE CreateElement(IXMLDOMDocument2* document, BSTR name,
                                                   IXMLDOMElement** out);
    static HRESULT STDMETHODCALLTYPE CreateTextNode(IXMLDOMDocument2* document, BSTR text, IXMLDOMText** out);

    // IUnknown 3, IDispatch 4, IXMLDOMNode 36, IXMLDOMDocument 33 and
    // IXMLDOMDocument2 7 members, with room for an implementation's later ones.
    static constexpr std::size_t kMembers = 90;
    static constexpr std::size_t kCreateElement = 47;
    static constexpr std::size_t kCreateTextNode = 49;

    support::Document document_;
    std::array<void*, kMembers> table_{};
    void** original_ = nullptr;
    int elements_;
    int texts_;
};

} // namespace modules
