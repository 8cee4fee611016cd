#pragma once

#include "com/Object.h"
#include "com/Ref.h"

#include <windows.h>

#include <utility>

namespace com {

/// An object that an owner inside the component holds, such as a point of a
/// module. As long as anybody outside holds the object, its owner lives: the
/// first reference from outside takes one on the owner, the last gives it back.
/// The owner's own hold (Owned) is counted apart from these and does not count
/// as one, so that the two never keep each other alive. Temporary references
/// inside the component count as from outside.
/// OwnerType has AddRef and Release.
template <class Derived, class OwnerType, class... Faces_>
class OwnedObject : public Object<Derived, Faces_...> {
    using Base = Object<Derived, Faces_...>;

  public:
    ULONG STDMETHODCALLTYPE AddRef() override {
        const ULONG count = Base::AddRef();
        if (count == 1 && owner_ != nullptr) {
            owner_->AddRef();
        }
        return count;
    }
    /// Answers how many references from outside are left.
    ULONG STDMETHODCALLTYPE Release() override {
        OwnerType* const owner = owner_;
        const ULONG left = this->CountOff();
        if (left == 0) {
            if (holds_ == 0) {
                this->End();
            }
            if (owner != nullptr) {
                owner->Release(); // last: it may end the owner, and this object with it
            }
        }
        return left;
    }

    /// The owner, which lives whenever somebody outside can ask; null before
    /// there is one. A constructor that sets it must not fail after that.
    OwnerType* Owner() const noexcept { return owner_; }
    void SetOwner(OwnerType* owner) noexcept {
        const bool isHeldOutside = this->IsReferenced();
        if (isHeldOutside && owner != nullptr) {
            owner->AddRef();
        }
        OwnerType* const before = std::exchange(owner_, owner);
        if (isHeldOutside && before != nullptr) {
            before->Release();
        }
    }

    // The owner's hold; see Owned.
    void Hold() noexcept { ++holds_; }
    void LetGo() noexcept {
        const ULONG left = --holds_;
        CountIsWritten();
        if (left == 0 && !this->IsReferenced()) {
            this->End();
        }
    }

  private:
    OwnerType* owner_ = nullptr;
    ULONG holds_ = 0;
};

/// Dual interfaces without clashing members.
template <class Derived, class OwnerType, class... Interfaces>
using OwnedDualObject = OwnedObject<Derived, OwnerType, Face<Derived, Interfaces>...>;

/// An owner's hold on an object of its own. Whoever hands the object out, or
/// keeps it over a call of the host, takes a Ref.
template <class T>
class Owned {
  public:
    Owned() noexcept = default;
    Owned(const Ref<T>& object) noexcept : object_(object.Get()) { Hold(); }
    Owned(const Owned& other) noexcept : object_(other.object_) { Hold(); }
    Owned(Owned&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ~Owned() { Reset(); }

    /// The old object ends with `other`, when this one has its new value.
    Owned& operator=(Owned other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }

    T* Get() const noexcept { return object_; }
    T* operator->() const noexcept { return object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }
    operator Ref<T>() const noexcept { return Ref<T>(object_); }
    bool operator==(const Owned& other) const noexcept { return object_ == other.object_; }
    bool operator==(const Ref<T>& other) const noexcept { return object_ == other.Get(); }

    void Reset() noexcept {
        if (object_ != nullptr) {
            std::exchange(object_, nullptr)->LetGo();
        }
    }

  private:
    void Hold() const noexcept {
        if (object_ != nullptr) {
            object_->Hold();
        }
    }

    T* object_ = nullptr;
};

/// Hands an own object out, counted.
template <class I, class T>
void Assign(I** out, const Owned<T>& object) noexcept {
    *out = Ref<I>(object.Get()).Detach();
}

} // namespace com
