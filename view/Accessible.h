#pragma once

#include "com/Ref.h"
#include "com/StandardAccessible.h"

#include <windows.h>

#include <oleacc.h>

namespace view {

/// A number as what an accessible object answers.
inline HRESULT Answer(VARIANT* out, LONG number) noexcept {
    if (out == nullptr) {
        return E_POINTER;
    }
    VariantInit(out);
    out->vt = VT_I4;
    out->lVal = number;
    return S_OK;
}

/// The answer to WM_GETOBJECT that gives a screen reader an object of this class, made of the
/// part; 0 for an object that the system is to answer for.
template <class Object, class Part>
LRESULT AnswerAs(Part& part, WPARAM wParam, LPARAM lParam) {
    if (static_cast<LONG>(lParam) != OBJID_CLIENT) {
        return 0;
    }
    const auto accessible = com::Ref<IAccessible>::Own(new Object(part));
    return com::AnswerWith(*accessible.Get(), wParam);
}

} // namespace view
