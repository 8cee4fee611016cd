#include "com/VariantReference.h"

#include "com/Boundary.h"
#include "core/RunTimeError.h"

namespace com {

bool LeadsNowhere(const VARIANT& value) noexcept {
    const bool isVariable = value.vt == (VT_BYREF | VT_VARIANT) && value.pvarVal != nullptr;
    const VARIANT& place = isVariable ? *value.pvarVal : value;
    return (place.vt & VT_BYREF) != 0 && place.byref == nullptr;
}

Variant CopyOf(const VARIANT& value) {
    if (LeadsNowhere(value)) {
        throw tam::RunTimeError(tam::RunTime::TypeMismatch);
    }
    VARIANT source = value; // borrowed
    Variant copy;
    Check(VariantCopyInd(copy.Put(), &source));
    return copy;
}

} // namespace com
