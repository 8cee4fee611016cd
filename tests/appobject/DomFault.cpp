#include "tests/appobject/DomFault.h"

#include <algorithm>

namespace modules {

namespace {

DomFault* current = nullptr;

} // namespace

DomFault::DomFault(const support::Document& document, int elements, int texts)
    : document_(document), elements_(elements), texts_(texts) {
    void**& table = *reinterpret_cast<void***>(document_.Get());
    original_ = table;
    std::copy_n(original_, kMembers, table_.begin());
    table_[kCreateElement] = reinterpret_cast<void*>(&DomFault::CreateElement);
    table_[kCreateTextNode] = reinterpret_cast<void*>(&DomFault::CreateTextNode);
    table = table_.data();
    current = this;
}

DomFault::~DomFault() {
    *reinterpret_cast<void***>(document_.Get()) = original_;
    current = nullptr;
}

HRESULT STDMETHODCALLTYPE DomFault::CreateElement(IXMLDOMDocument2* document, BSTR name,
                                                  IXMLDOMElement** out) {
    *out = nullptr;
    if (current->elements_-- <= 0) {
        return kRefused;
    }
    using Function = HRESULT(STDMETHODCALLTYPE*)(IXMLDOMDocument2*, BSTR, IXMLDOMElement**);
    return reinterpret_cast<Function>(current->original_[kCreateElement])(document, name, out);
}

HRESULT STDMETHODCALLTYPE DomFault::CreateTextNode(IXMLDOMDocument2* document, BSTR text, IXMLDOMText** out) {
    *out = nullptr;
    if (current->texts_-- <= 0) {
        return kRefused;
    }
    using Function = HRESULT(STDMETHODCALLTYPE*)(IXMLDOMDocument2*, BSTR, IXMLDOMText**);
    return reinterpret_cast<Function>(current->original_[kCreateTextNode])(document, text, out);
}

} // namespace modules
