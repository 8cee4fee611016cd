#pragma once

#include "com/Boundary.h"
#include "com/Ref.h"
#include "core/RunTimeError.h"

namespace tam {

/// An interface of an object. "Object not set" when there is no object, "type
/// mismatch" when it does not offer the interface; what else keeps it from
/// answering, such as a server that is gone, is its own error and thrown so.
template <class I, class J>
com::Ref<I> Required(J* object) {
    com::CheckSet(object);
    com::Ref<I> face;
    com::ForgetErrors();
    const HRESULT result = object->QueryInterface(__uuidof(I), face.PutVoid());
    if (FAILED(result)) {
        face.Detach(); // a failing object may leave anything in the out pointer
    }
    if (result != E_NOINTERFACE) {
        com::CheckCall(result, object, IID_IUnknown);
    }
    if (!face) {
        throw RunTimeError(RunTime::TypeMismatch);
    }
    return face;
}

template <class I, class J>
com::Ref<I> Required(const com::Ref<J>& object) {
    return Required<I>(object.Get());
}

} // namespace tam
