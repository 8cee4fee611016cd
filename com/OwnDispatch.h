#pragma once

#include "com/Dispatch.h"

#include <windows.h>

#include <oaidl.h>

namespace com {

/// What the own IDispatch of every object has in common: it is a part of the object,
/// for COM the object itself, and calls go as those of its default interface. No
/// template: thirty classes would repeat it.
class OwnDispatchCalls : public IDispatch {
  public:
    explicit OwnDispatchCalls(IDispatch& defaultInterface) noexcept : default_(defaultInterface) {}
    OwnDispatchCalls(const OwnDispatchCalls&) = delete;
    OwnDispatchCalls& operator=(const OwnDispatchCalls&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        return default_.QueryInterface(iid, out);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return default_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return default_.Release(); }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        return default_.GetTypeInfoCount(count);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override {
        return default_.GetTypeInfo(index, locale, info);
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) override {
        return default_.GetIDsOfNames(reserved, names, count, locale, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* params,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argumentError) override {
        return default_.Invoke(id, reserved, locale, flags, params, result, exception, argumentError);
    }

  protected:
    ~OwnDispatchCalls() = default;

  private:
    IDispatch& default_;
};

/// An object's own IDispatch. The type information lists the members of all its
/// interfaces, where its class has a dispinterface for them (MembersId). Clients such as
/// PowerShell know a member only from there.
template <class Owner>
class OwnDispatch final : public OwnDispatchCalls {
  public:
    using OwnDispatchCalls::OwnDispatchCalls;

    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override {
        if constexpr (requires { Owner::MembersId(); }) {
            return GetFaceTypeInfo(Owner::MembersId(), index, info);
        } else {
            return OwnDispatchCalls::GetTypeInfo(index, locale, info);
        }
    }

    /// Whether it tells more than the default interface does.
    static constexpr bool ListsAllMembers() noexcept {
        return requires {
            Owner::MembersId();
        };
    }
    static bool Has(REFIID iid) noexcept {
        if constexpr (requires { Owner::MembersId(); }) {
            return iid == IID_IDispatch || iid == Owner::MembersId();
        } else {
            return iid == IID_IDispatch;
        }
    }
};

} // namespace com
