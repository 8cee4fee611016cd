#pragma once

#include "com/Boundary.h"
#include "com/Object.h"
#include "com/Ref.h"
#include "com/Required.h"

#include <type_traits>

namespace tam {

/// Hands a call to the same member of the inner object. Its HRESULT and its
/// error object go back to the host untouched. Derived offers
/// `com::Ref<I> Inner<I>()`; a failure to get it is this component's own error.
template <class Derived, class I>
class ForwardFace : public com::Face<Derived, I> {
  protected:
    template <class Method, class... Arguments>
    HRESULT To(Method method, Arguments... arguments) noexcept {
        if ((IsNullOut(arguments) || ...)) {
            return com::Refuse(E_POINTER);
        }
        (EmptyOut(arguments), ...);
        com::Ref<I> inner;
        const HRESULT found = com::Guard(__uuidof(I), [&] {
            inner = this->Self().template Inner<I>();
            com::CheckSet(inner.Get());
        });
        return inner ? Pass(inner, method, arguments...) : found;
    }

  private:
    /// The host takes what stands on the thread for this object's error: only
    /// what the inner object owns to goes back.
    template <class Method, class... Arguments>
    static HRESULT Pass(const com::Ref<I>& inner, Method method, Arguments... arguments) noexcept {
        com::ForgetErrors();
        const HRESULT result = (inner.Get()->*method)(arguments...);
        if (FAILED(result)) {
            SetErrorInfo(0, com::TakeError(inner.Get(), __uuidof(I)).Get());
        }
        return result;
    }
    /// A null BSTR is an empty text and a null object an empty reference; a
    /// null pointer to either is a missing place for the result.
    template <class T>
    static constexpr bool IsOut() noexcept {
        using Target = std::remove_pointer_t<T>;
        return std::is_pointer_v<T> && !std::is_same_v<T, BSTR> && !std::is_base_of_v<IUnknown, Target>;
    }
    template <class T>
    static bool IsNullOut(T argument) noexcept {
        if constexpr (IsOut<T>()) {
            return argument == nullptr;
        } else {
            return false;
        }
    }
    /// What the host finds when nothing answers.
    template <class T>
    static void EmptyOut([[maybe_unused]] T argument) noexcept {
        if constexpr (IsOut<T>()) {
            com::Empty(argument);
        }
    }
};

} // namespace tam
