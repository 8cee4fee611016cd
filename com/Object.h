#pragma once

#include "com/Boundary.h"
#include "com/Dispatch.h"
#include "com/Dll.h"
#include "com/OwnDispatch.h"
#include "com/Ref.h"

#include <windows.h>

#include <ocidl.h>

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace com {

/// One dual interface of an object, with an IDispatch of its own. A member
/// that clashes with another interface's member is renamed in a class derived
/// from this one.
template <class Derived, class I>
class Face : public I {
  public:
    using Interface = I;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (count == nullptr) {
            return E_POINTER;
        }
        *count = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
        return GetFaceTypeInfo(__uuidof(I), index, info);
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID,
                                            DISPID* ids) override {
        const auto faces = Self().Faces();
        return GetFaceIds(faces, Derived::template FaceIndex<I>(), reserved, names, count, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID, WORD flags, DISPPARAMS* params,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argumentError) override {
        const auto faces = Self().Faces();
        return InvokeFace(faces, Derived::template FaceIndex<I>(), id, reserved, flags, params, result,
                          exception, argumentError);
    }

  protected:
    Derived& Self() noexcept { return static_cast<Derived&>(*this); }
};

/// The object template: identity, counting, QueryInterface over the list of
/// faces, error information and class information. The first face is the
/// default interface. Objects are made by Make and end with their last Release.
template <class Derived, class... Faces_>
class Object : public Faces_..., public ISupportErrorInfo, public IProvideClassInfo {
  public:
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    template <class... Arguments>
    static Ref<Derived> Make(Arguments&&... arguments) {
        return Ref<Derived>::Own(new Derived(std::forward<Arguments>(arguments)...));
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        if (out == nullptr) {
            return E_POINTER;
        }
        *out = Find(iid);
        if (*out == nullptr) {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = CountOff();
        if (left == 0) {
            End();
        }
        return left;
    }

    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override {
        return ((iid == __uuidof(typename Faces_::Interface)) || ...) ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override {
        return info == nullptr ? E_POINTER : ThisDll().TypeInfo(Derived::ClassId(), info);
    }

    std::array<FaceEntry, sizeof...(Faces_)> Faces() noexcept {
        return {FaceEntry{&__uuidof(typename Faces_::Interface),
                          static_cast<typename Faces_::Interface*>(static_cast<Faces_*>(this))}...};
    }
    template <class I>
    static constexpr std::size_t FaceIndex() noexcept {
        std::size_t index = 0;
        static_cast<void>(((std::is_same_v<I, typename Faces_::Interface> || (++index, false)) || ...));
        return index;
    }

    /// This object through one of its interfaces, counted.
    template <class I>
    Ref<I> This() noexcept {
        return Ref<I>(static_cast<I*>(this));
    }

  protected:
    Object() = default;
    virtual ~Object() = default;

    /// Takes a reference off; the caller ends the object with the last.
    ULONG CountOff() noexcept {
        const ULONG left = --references_;
        CountIsWritten();
        return left;
    }
    bool IsReferenced() const noexcept { return references_ != 0; }
    void End() noexcept {
        // A reference taken and dropped while the object ends must not end it twice.
        references_ = kEnding;
        delete this;
    }

    /// A member that only acts; see Guard.
    template <class F>
    HRESULT Do(F&& f) noexcept {
        return Guard(FirstIid(), std::forward<F>(f));
    }
    /// A member with a result; see Return.
    template <class T, class F>
    HRESULT Get(T* out, F&& f) noexcept {
        return Return(FirstIid(), out, std::forward<F>(f));
    }
    /// A member that joins texts which the object holds; see ReturnJoined.
    HRESULT GetJoined(BSTR* out, std::span<const std::wstring_view> parts) noexcept {
        return ReturnJoined(FirstIid(), out, parts);
    }
    /// A member that answers a value as it stands.
    template <class T, class V>
    HRESULT Answer(T* out, const V& value) noexcept {
        return Return(FirstIid(), out, [&]() -> const V& { return value; });
    }

    /// A text property that is only stored.
    HRESULT Store(std::wstring& field, BSTR value) noexcept {
        return Do([&] { field = View(value); });
    }

  private:
    static constexpr ULONG kEnding = 0x40000000;
    using First = std::tuple_element_t<0, std::tuple<Faces_...>>;

    static const IID& FirstIid() noexcept { return __uuidof(typename First::Interface); }

    void* Find(REFIID iid) noexcept {
        void* found = nullptr;
        if (iid == IID_IUnknown || (iid == IID_IDispatch && !OwnDispatch<Derived>::ListsAllMembers())) {
            found = static_cast<typename First::Interface*>(static_cast<First*>(this));
        } else if (OwnDispatch<Derived>::Has(iid)) {
            found = static_cast<IDispatch*>(&ownDispatch_);
        } else if (iid == IID_ISupportErrorInfo) {
            found = static_cast<ISupportErrorInfo*>(this);
        } else if (iid == IID_IProvideClassInfo) {
            found = static_cast<IProvideClassInfo*>(this);
        } else {
            static_cast<void>(
                ((iid == __uuidof(typename Faces_::Interface) &&
                  (found = static_cast<typename Faces_::Interface*>(static_cast<Faces_*>(this)), true)) ||
                 ...));
        }
        return found;
    }

    OwnDispatch<Derived> ownDispatch_{*static_cast<typename First::Interface*>(static_cast<First*>(this))};
    ULONG references_ = 1;
    LiveCount live_;
};

/// The usual object: dual interfaces without clashing members.
template <class Derived, class... Interfaces>
using DualObject = Object<Derived, Face<Derived, Interfaces>...>;

} // namespace com
