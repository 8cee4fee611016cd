#include "core/ShownValue.h"

#include "core/EnumEditorState.h"
#include "core/StructureEditorState.h"
#include "core/ValueText.h"

namespace tam {

std::wstring WithUnit(const std::wstring& number, const std::wstring& unit) {
    return number.empty() || unit.empty() ? number : number + L" " + unit;
}

std::wstring ShownValue(const ValueToShow& what) {
    switch (EditorFor(what.generalType)) {
    case EditorKind::Numeric:
        return WithUnit(MoveDecimalMark(what.value, what.decimalSeparator), what.unit);
    case EditorKind::Enumeration:
        return EnumEditorState(what.value, what.enumDescription).Current();
    default:
        return what.value;
    }
}

} // namespace tam
