#pragma once

#include "com/Conversion.h"
#include "com/Ref.h"

#include <windows.h>

#include <oaidl.h>

#include <exception>
#include <optional>
#include <string>
#include <utility>

namespace com {

/// A failure caught at a boundary.
struct Failure {
    HRESULT code = E_UNEXPECTED;
    /// Empty means: this component.
    std::wstring source;
    std::wstring description;
    /// The callee's own error object, when it gave one.
    Ref<IErrorInfo> info;

    /// The number as a message shows it: n for a classic run-time error.
    long Number() const noexcept;
    /// The description, or the system's words for the code.
    std::wstring Description() const;
    std::wstring Source() const;
};

/// A failed call on an object outside, with its error object.
class CallError : public std::exception {
  public:
    explicit CallError(HRESULT code) noexcept;
    HRESULT Code() const noexcept { return code_; }
    const Ref<IErrorInfo>& Info() const noexcept { return info_; }
    const char* what() const noexcept override { return "failed call"; }

  private:
    HRESULT code_;
    Ref<IErrorInfo> info_;
};

/// Throws CallError, with the callee's error object, when a call failed.
inline void Check(HRESULT result) {
    if (FAILED(result)) [[unlikely]] {
        throw CallError(result);
    }
}

/// Throws "object not set" for an empty reference.
void CheckSet(const void* object);

/// Turns the exception in flight into a failure; the one catch of everything.
Failure CurrentFailure() noexcept;

/// Runs f; what it throws comes back as a failure.
template <class F>
std::optional<Failure> Attempt(F&& f) noexcept {
    try {
        f();
        return std::nullopt;
    } catch (...) {
        return CurrentFailure();
    }
}

/// Hands a failure to the caller: sets its error object, answers its HRESULT.
HRESULT Publish(const Failure& failure, REFIID iid) noexcept;

/// The boundary of a COM member: what f throws becomes HRESULT and error object.
template <class F>
HRESULT Guard(REFIID iid, F&& f) noexcept {
    SetErrorInfo(0, nullptr); // what an earlier call left is not this call's error
    const auto failure = Attempt(std::forward<F>(f));
    return failure ? Publish(*failure, iid) : S_OK;
}

/// A COM member with a result: checks and empties the out pointer, assigns last.
template <class T, class F>
HRESULT Return(REFIID iid, T* out, F&& f) noexcept {
    if (out == nullptr) {
        return E_POINTER;
    }
    Empty(out);
    return Guard(iid, [&] { Assign(out, f()); });
}

} // namespace com
