#pragma once

namespace tam {

/// While it lives, one allocation of the program fails, by std::bad_alloc or, of
/// those that throw nothing, by a null pointer: the n-th from its construction
/// on, counted from 0.
class AllocationFault {
  public:
    explicit AllocationFault(int n) noexcept;
    AllocationFault(const AllocationFault&) = delete;
    AllocationFault& operator=(const AllocationFault&) = delete;
    ~AllocationFault();

    /// Whether the program allocated that often.
    bool HasHappened() const noexcept;
};

} // namespace tam
