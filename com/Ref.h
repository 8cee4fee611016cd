#pragma once

#include <windows.h>

#include <unknwn.h>

#include <cstddef>
#include <type_traits>
#include <utility>

namespace com {

/// A counted reference to a COM object. Unlike `_com_ptr_t` it needs no
/// link-time identifier and answers a refused interface with an empty
/// reference instead of an exception.
template <class I>
class Ref {
  public:
    Ref() noexcept = default;
    Ref(std::nullptr_t) noexcept {}
    explicit Ref(I* object) noexcept : object_(object) { Keep(); }
    Ref(const Ref& other) noexcept : object_(other.object_) { Keep(); }
    Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    template <class J>
    requires std::is_convertible_v<J*, I*> Ref(const Ref<J>& other)
    noexcept : object_(other.Get()) { Keep(); }
    ~Ref() { Drop(); }

    Ref& operator=(Ref other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }

    /// Takes over a reference that the caller owns.
    static Ref Own(I* object) noexcept {
        Ref result;
        result.object_ = object;
        return result;
    }

    I* Get() const noexcept { return object_; }
    I* operator->() const noexcept { return object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }
    bool operator==(const Ref& other) const noexcept { return object_ == other.object_; }

    /// The address for a callee that hands out a reference. Empties first.
    I** Put() noexcept {
        Reset();
        return &object_;
    }
    void** PutVoid() noexcept { return reinterpret_cast<void**>(Put()); }
    I* Detach() noexcept { return std::exchange(object_, nullptr); }
    void Reset() noexcept { *this = Ref(); }

    /// The same object through another interface; empty when it has none.
    template <class J>
    Ref<J> As() const noexcept {
        return Query<J>(object_);
    }

    /// As `As`, for a raw pointer that may be null.
    template <class J>
    static Ref<J> Query(I* object) noexcept {
        Ref<J> result;
        if (object != nullptr && FAILED(object->QueryInterface(__uuidof(J), result.PutVoid()))) {
            result.Detach(); // a failing object may leave anything in the out pointer
        }
        return result;
    }

  private:
    void Keep() noexcept {
        if (object_ != nullptr) {
            object_->AddRef();
        }
    }
    void Drop() noexcept {
        if (object_ != nullptr) {
            std::exchange(object_, nullptr)->Release();
        }
    }

    I* object_ = nullptr;
};

/// The interface J of a raw pointer that may be null; empty when refused.
template <class J, class I>
Ref<J> Query(I* object) noexcept {
    return Ref<I>::template Query<J>(object);
}

/// True when both are the same COM object.
inline bool SameObject(IUnknown* left, IUnknown* right) noexcept {
    return Query<IUnknown>(left) == Query<IUnknown>(right);
}

} // namespace com
