#pragma once

#include <windows.h>

#include <oaidl.h>

#include <cstddef>
#include <span>

namespace com {

/// One dual interface of an object: its identifier and the object through it.
struct FaceEntry {
    const IID* iid;
    IDispatch* pointer;
};

// Late-bound access to an object with several dual interfaces. The interface
// asked comes first; a name or a kind of access that it lacks is looked up in
// the object's other interfaces, so that a script reaches every member. The
// DISPIDs of the interfaces of one object are distinct but for Item (0) and
// NewEnum (-4), which only one of them has a meaning for.

HRESULT GetFaceTypeInfo(const IID& iid, UINT index, ITypeInfo** info) noexcept;

HRESULT GetFaceIds(std::span<const FaceEntry> faces, std::size_t own, REFIID reserved, LPOLESTR* names,
                   UINT count, DISPID* ids) noexcept;

HRESULT InvokeFace(std::span<const FaceEntry> faces, std::size_t own, DISPID id, REFIID reserved, WORD flags,
                   DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argumentError) noexcept;

} // namespace com
