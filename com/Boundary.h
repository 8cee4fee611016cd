#pragma once

#include "com/Conversion.h"
#include "com/Ref.h"

#include <windows.h>

#include <oaidl.h>

#include <concepts>
#include <exception>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace com {

/// A failure caught at a boundary.
struct Failure {
    HRESULT code = E_UNEXPECTED;
    /// Empty means: this component.
    std::wstring source;
    std::wstring description;
    /// An object outside failed: it is told as that object told it, or not at all.
    bool isCallees = false;
    /// The callee's own error object, when it gave one.
    Ref<IErrorInfo> info;

    /// The number as a message shows it: n for a classic run-time error.
    long Number() const noexcept;
    /// The description, or the system's words for the code.
    std::wstring Description() const;
    std::wstring Source() const;
};

/// A failed call of a function of the platform, told in the system's words, or
/// of an object outside.
class CallError : public std::exception {
  public:
    explicit CallError(HRESULT code) noexcept : code_(code) {}
    /// Of an object, with the error object that it gave; empty when it gave none.
    CallError(HRESULT code, Ref<IErrorInfo> info) noexcept
        : code_(code), isCallees_(true), info_(std::move(info)) {}
    HRESULT Code() const noexcept { return code_; }
    bool IsCallees() const noexcept { return isCallees_; }
    const Ref<IErrorInfo>& Info() const noexcept { return info_; }
    const char* what() const noexcept override { return "failed call"; }

  private:
    HRESULT code_;
    bool isCallees_ = false;
    Ref<IErrorInfo> info_;
};

/// Throws the CallError of a failed function of the platform. Apart from the check,
/// which stands in hundreds of places.
[[noreturn]] void ThrowCallError(HRESULT result);

/// Throws CallError when a function of the platform failed.
inline void Check(HRESULT result) {
    if (FAILED(result)) [[unlikely]] {
        ThrowCallError(result);
    }
}

/// Puts away the error object that an earlier call left on this thread.
inline void ForgetErrors() noexcept {
    SetErrorInfo(0, nullptr);
}

/// Takes the error object that stands on this thread when it is that of an
/// object which failed in a call through this interface: only an object that
/// says so sets one at each failure. What another left is put away.
Ref<IErrorInfo> TakeError(IUnknown* object, REFIID iid) noexcept;

/// Throws the CallError of an object's failed call, with its error object.
[[noreturn]] void ThrowCallError(HRESULT result, IUnknown* object, REFIID iid);

/// Throws CallError, with the object's error object, when a call of its
/// interface iid failed. ForgetErrors goes before the call.
inline HRESULT CheckCall(HRESULT result, IUnknown* object, REFIID iid) {
    if (FAILED(result)) [[unlikely]] {
        ThrowCallError(result, object, iid);
    }
    return result;
}

/// Calls a member of an object outside. Answers its code of success; throws
/// CallError, with the object's error object, when it failed.
template <class T, class I, class... Parameters, class... Arguments>
HRESULT Call(T* object, HRESULT (STDMETHODCALLTYPE I::*member)(Parameters...), Arguments&&... arguments) {
    ForgetErrors();
    return CheckCall((object->*member)(std::forward<Arguments>(arguments)...), object, __uuidof(T));
}
template <class T, class Member, class... Arguments>
HRESULT Call(const Ref<T>& object, Member member, Arguments&&... arguments) {
    return Call(object.Get(), member, std::forward<Arguments>(arguments)...);
}
template <std::derived_from<IUnknown> T, class Member, class... Arguments>
HRESULT Call(T& object, Member member, Arguments&&... arguments) {
    return Call(&object, member, std::forward<Arguments>(arguments)...);
}

/// Throws "object not set" for an empty reference.
void CheckSet(const void* object);

/// Turns the exception in flight into a failure.
Failure CurrentFailure() noexcept;

/// What runs inside a boundary: a callable by reference, without its type. So a
/// boundary is compiled once and not for each body. Lives no longer than the call.
class Body {
  public:
    // NOLINTBEGIN(bugprone-forwarding-reference-overload): the constraint leaves the copy alone
    // NOLINTBEGIN(cppcoreguidelines-pro-type-const-cast): it is given back as what it was
    template <class F>
    requires(!std::same_as<std::remove_cvref_t<F>, Body>) Body(F&& f)
    noexcept
        : callable_(const_cast<void*>(static_cast<const void*>(std::addressof(f))))
        , run_([](void* callable) { (*static_cast<std::remove_reference_t<F>*>(callable))(); }) {}
    // NOLINTEND(cppcoreguidelines-pro-type-const-cast)
    // NOLINTEND(bugprone-forwarding-reference-overload)
    void operator()() const { run_(callable_); }

  private:
    void* callable_;
    void (*run_)(void*);
};

/// Runs the body; what it throws comes back as a failure.
std::optional<Failure> Attempt(Body body) noexcept;

/// Hands a failure to the caller: sets its error object, answers its HRESULT.
HRESULT Publish(const Failure& failure, REFIID iid) noexcept;

/// Answers a refusal that has no error object.
inline HRESULT Refuse(HRESULT code) noexcept {
    ForgetErrors();
    return code;
}

/// The boundary of a COM member: what the body throws becomes HRESULT and error object.
HRESULT Guard(REFIID iid, Body body) noexcept;

/// A COM member with a result: checks and empties the out pointer, and assigns last, within
/// the boundary.
template <class T, class F>
HRESULT Return(REFIID iid, T* out, F&& f) noexcept {
    if (out == nullptr) {
        return Refuse(E_POINTER);
    }
    Empty(out);
    return Guard(iid, [&] { Assign(out, f()); });
}

/// A COM member whose result is joined of texts that the object holds. Nobody is called who
/// could throw or leave an error object, so there is no boundary, and an earlier error
/// object stays. The one failure is that of memory.
HRESULT ReturnJoined(REFIID iid, BSTR* out, std::span<const std::wstring_view> parts) noexcept;

} // namespace com
