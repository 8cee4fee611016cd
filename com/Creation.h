#pragma once

#include "com/Ref.h"

#include <windows.h>

#include <oaidl.h>

#include <string>

namespace com {

// Objects of classes outside. Where one is missing, the failure keeps COM's own
// code and says which class it is and what is wrong with it.

/// Creates an object by its ProgID. Throws tam::RunTimeError, CallError without memory.
Ref<IDispatch> CreateByProgId(const std::wstring& progId);

/// Creates an object by its class identifier, which a message calls `name`. Throws the same.
void CreateByClass(REFCLSID clsid, const std::wstring& name, REFIID iid, void** object);

template <class I>
Ref<I> CreateByClass(REFCLSID clsid, const std::wstring& name) {
    Ref<I> object;
    CreateByClass(clsid, name, __uuidof(I), object.PutVoid());
    return object;
}

} // namespace com
