#pragma once

#include "com/Dispatch.h"

#include <windows.h>

#include <oaidl.h>

namespace com {

/// An object's own IDispatch: calls go as those of its default interface, and the
/// type information lists the members of all its interfaces, where its class has a
/// dispinterface for them (MembersId). Clients such as PowerShell know a member only
/// from there. It is a part of the object, for COM the object itself.
template <class Owner>
class OwnDispatch final : public IDispatch {
  public:
    explicit OwnDispatch(Owner& owner) noexcept : owner_(owner) {}
    OwnDispatch(const OwnDispatch&) = delete;
    OwnDispatch& operator=(const OwnDispatch&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        return owner_.QueryInterface(iid, out);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return owner_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return owner_.Release(); }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (count == nullptr) {
            return E_POINTER;
        }
        *count = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
        if constexpr (requires { Owner::MembersId(); }) {
            return GetFaceTypeInfo(Owner::MembersId(), index, info);
        } else {
            return GetFaceTypeInfo(*owner_.Faces().front().iid, index, info);
        }
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID,
                                            DISPID* ids) override {
        const auto faces = owner_.Faces();
        return GetFaceIds(faces, 0, reserved, names, count, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID, WORD flags, DISPPARAMS* params,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argumentError) override {
        const auto faces = owner_.Faces();
        return InvokeFace(faces, 0, id, reserved, flags, params, result, exception, argumentError);
    }

    static bool Has(REFIID iid) noexcept {
        if constexpr (requires { Owner::MembersId(); }) {
            return iid == IID_IDispatch || iid == Owner::MembersId();
        } else {
            return iid == IID_IDispatch;
        }
    }

  private:
    Owner& owner_;
};

} // namespace com
