#include "com/DocumentType.h"

namespace tam::dom {

bool HasDocumentType(const Document& document) {
    com::Ref<IXMLDOMDocumentType> type;
    com::Call(document, &IXMLDOMDocument::get_doctype, type.Put());
    return static_cast<bool>(type);
}

} // namespace tam::dom
