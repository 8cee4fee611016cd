#include "dialogs/StructureEditorState.h"

namespace tam {

EditorKind EditorFor(std::wstring_view generalType) noexcept {
    if (generalType == L"SignedNumeric" || generalType == L"UnsignedNumeric" || generalType == L"Float") {
        return EditorKind::Numeric;
    }
    if (generalType == L"Textual") {
        return EditorKind::Text;
    }
    if (generalType == L"Enum") {
        return EditorKind::Enumeration;
    }
    if (generalType == L"Struct") {
        return EditorKind::Structure;
    }
    if (generalType == L"Bitfield") {
        return EditorKind::BitField;
    }
    return EditorKind::None;
}

} // namespace tam
