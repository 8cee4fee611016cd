// IDispatch for objects that have several dual interfaces. Each interface answers from
// its own type information (com/Dll.h keeps it), and falls back on the object's others:
// - GetFaceIds asks the own interface for a name first, then the others in turn.
// - InvokeFace looks the DISPID up in the same order. DISPIDs are distinct over the
//   interfaces of an object, so at most one has it. If that one does not allow this
//   kind of access, a member of the same name in another interface may.
// - InvokeAs brings the arguments to their types (com/CallArguments.h) and lets the
//   platform's ITypeInfo::Invoke make the call by slot.
#include "com/Dispatch.h"

#include "com/Boundary.h"
#include "com/CallArguments.h"
#include "com/Dll.h"

namespace com {

namespace {

constexpr WORD kPut = DISPATCH_PROPERTYPUT;
constexpr WORD kPutRef = DISPATCH_PROPERTYPUTREF;

struct Request {
    WORD flags;
    DISPPARAMS* params;
    VARIANT* result;
    EXCEPINFO* exception;
    UINT* argumentError;
};

/// Hands the arguments to the default member of the object that property `id`
/// answers. The platform does so too, but not every one looks first whether
/// there is an object.
HRESULT InvokeDefaultOf(const FaceEntry& face, ITypeInfo& info, DISPID id, const Request& call) {
    if (call.result == nullptr) {
        return DISP_E_BADPARAMCOUNT; // whoever indexes wants to know what is there
    }
    DISPPARAMS none{};
    Variant answer;
    UINT untold = 0;
    const HRESULT result =
        info.Invoke(face.pointer, id, DISPATCH_PROPERTYGET, &none, answer.Put(), call.exception, &untold);
    const VARIANT& owner = answer.Get();
    if (FAILED(result)) {
        return result;
    }
    if (owner.vt != VT_DISPATCH || owner.pdispVal == nullptr) {
        return DISP_E_NOTACOLLECTION;
    }
    return owner.pdispVal->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, call.flags, call.params,
                                  call.result, call.exception, call.argumentError);
}

/// Calls member `id` of one interface with one kind of access.
HRESULT InvokeAs(const FaceEntry& face, const TypeEntry& type, DISPID id, WORD flags, const Request& call) {
    const MemberShape* const shape = FindShape(type.shapes, id, flags);
    if (shape == nullptr) {
        return DISP_E_MEMBERNOTFOUND;
    }
    if (AreForDefaultMember(*shape, *call.params)) {
        return InvokeDefaultOf(face, *type.info.Get(), id, call);
    }
    CallArguments arguments(*shape, *call.params);
    constexpr UINT kUntold = static_cast<UINT>(-1);
    UINT wrong = kUntold;
    HRESULT result = arguments.Take(wrong);
    if (SUCCEEDED(result)) {
        const auto kind = static_cast<WORD>(shape->kind); // the member that the arguments were taken for
        result = type.info->Invoke(face.pointer, id, kind, arguments.Params(), call.result, call.exception,
                                   &wrong);
    }
    if (SUCCEEDED(result)) {
        arguments.GiveBack();
    }
    if (wrong != kUntold && call.argumentError != nullptr) {
        *call.argumentError = wrong;
    }
    return result;
}

/// Calls member `id` of one interface. A property that is set by reference is
/// also found by a plain assignment, and the other way round: script languages
/// do not agree on which of the two they use for objects.
HRESULT InvokeOne(const FaceEntry& face, DISPID id, const Request& call) {
    const TypeEntry& type = ThisDll().Type(*face.iid);
    if (!type.info) {
        return type.result;
    }
    HRESULT result = InvokeAs(face, type, id, call.flags, call);
    if (result == DISP_E_MEMBERNOTFOUND && (call.flags & (kPut | kPutRef)) != 0) {
        const WORD other = (call.flags & kPut) != 0 ? kPutRef : kPut;
        result = InvokeAs(face, type, id, other, call);
    }
    return result;
}

/// The name of member `id` in whichever interface has it; empty when none has.
Bstr NameOf(std::span<const FaceEntry> faces, DISPID id) {
    for (const FaceEntry& face : faces) {
        const TypeEntry& type = ThisDll().Type(*face.iid);
        Bstr name;
        UINT count = 0;
        if (type.info && SUCCEEDED(type.info->GetNames(id, name.Put(), 1, &count)) && count == 1) {
            return name;
        }
    }
    return {};
}

/// Another interface may have a member of the same name that allows this kind
/// of access: a point's `IsConnected` is read in one and written in another.
HRESULT InvokeByName(std::span<const FaceEntry> faces, DISPID id, const Request& call) {
    const Bstr name = NameOf(faces, id);
    if (name.Get() == nullptr) {
        return DISP_E_MEMBERNOTFOUND;
    }
    for (const FaceEntry& face : faces) {
        const TypeEntry& type = ThisDll().Type(*face.iid);
        DISPID other = DISPID_UNKNOWN;
        BSTR text = name.Get();
        if (!type.info || FAILED(type.info->GetIDsOfNames(&text, 1, &other)) || other == id) {
            continue;
        }
        const HRESULT result = InvokeOne(face, other, call);
        if (result != DISP_E_MEMBERNOTFOUND) {
            return result;
        }
    }
    return DISP_E_MEMBERNOTFOUND;
}

bool IsWellFormed(const DISPPARAMS* params) noexcept {
    return params != nullptr && (params->cArgs == 0 || params->rgvarg != nullptr) &&
           params->cNamedArgs <= params->cArgs &&
           (params->cNamedArgs == 0 || params->rgdispidNamedArgs != nullptr);
}

template <class F>
HRESULT OwnFirst(std::span<const FaceEntry> faces, std::size_t own, HRESULT goOn, F&& f) {
    HRESULT result = f(faces[own]);
    for (std::size_t i = 0; i < faces.size() && result == goOn; ++i) {
        if (i != own) {
            result = f(faces[i]);
        }
    }
    return result;
}

} // namespace

HRESULT GetFaceTypeInfo(const IID& iid, UINT index, ITypeInfo** info) noexcept {
    if (info == nullptr) {
        return E_POINTER;
    }
    *info = nullptr;
    return index != 0 ? DISP_E_BADINDEX : ThisDll().TypeInfo(iid, info);
}

HRESULT GetFaceIds(std::span<const FaceEntry> faces, std::size_t own, REFIID reserved, LPOLESTR* names,
                   UINT count, DISPID* ids) noexcept {
    if (reserved != IID_NULL) {
        return DISP_E_UNKNOWNINTERFACE;
    }
    if (names == nullptr || ids == nullptr || count == 0) {
        return E_INVALIDARG;
    }
    HRESULT answer = E_UNEXPECTED;
    const auto failure = Attempt([&] {
        answer = OwnFirst(faces, own, DISP_E_UNKNOWNNAME, [&](const FaceEntry& face) {
            const TypeEntry& type = ThisDll().Type(*face.iid);
            if (!type.info) {
                return type.result;
            }
            ids[0] = DISPID_UNKNOWN;
            const HRESULT result = type.info->GetIDsOfNames(names, count, ids);
            // The member is known and one of its arguments is not: no other
            // interface can do better.
            return result == DISP_E_UNKNOWNNAME && ids[0] != DISPID_UNKNOWN ? S_FALSE : result;
        });
    });
    if (answer != S_OK) {
        const bool memberKnown = answer == S_FALSE;
        for (UINT i = memberKnown ? 1 : 0; i < count; ++i) {
            ids[i] = DISPID_UNKNOWN;
        }
        answer = memberKnown ? DISP_E_UNKNOWNNAME : answer;
    }
    return failure ? failure->code : answer;
}

// argumentError is written through Request.
// NOLINTBEGIN(readability-non-const-parameter)
HRESULT InvokeFace(std::span<const FaceEntry> faces, std::size_t own, DISPID id, REFIID reserved, WORD flags,
                   DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argumentError) noexcept {
    // NOLINTEND(readability-non-const-parameter)
    if (reserved != IID_NULL) {
        return DISP_E_UNKNOWNINTERFACE;
    }
    if (!IsWellFormed(params)) {
        return E_INVALIDARG;
    }
    HRESULT answer = E_UNEXPECTED;
    const Request call{flags, params, result, exception, argumentError};
    const auto failure = Attempt([&] {
        answer = OwnFirst(faces, own, DISP_E_MEMBERNOTFOUND,
                          [&](const FaceEntry& face) { return InvokeOne(face, id, call); });
        if (answer == DISP_E_MEMBERNOTFOUND) {
            answer = InvokeByName(faces, id, call);
        }
    });
    return failure ? failure->code : answer;
}

} // namespace com
