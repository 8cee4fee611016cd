#pragma once

#include "com/Conversion.h"
#include "com/MemberShape.h"

#include <windows.h>

#include <oaidl.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace com {

/// The arguments of a late-bound call, brought to the types that the member
/// takes before anything is called. The platform's caller brings them too, but
/// not every platform's lets go of the arguments that it has brought by then
/// when it refuses a later one.
class CallArguments {
  public:
    CallArguments(const MemberShape& shape, const DISPPARAMS& given) noexcept
        : shape_(shape), params_(given) {}
    CallArguments(const CallArguments&) = delete;
    CallArguments& operator=(const CallArguments&) = delete;
    ~CallArguments();

    /// S_OK when the member can be called with Params. Otherwise the answer to
    /// the caller; `wrong` is then the index of the argument that has no place
    /// (DISP_E_PARAMNOTFOUND) or does not become its type
    /// (DISP_E_TYPEMISMATCH), the first one in the natural order.
    HRESULT Take(UINT& wrong);
    DISPPARAMS* Params() noexcept { return &params_; }
    /// After the call: a caller's variable of another type than the member's
    /// argument by reference gets what the member wrote to that.
    void GiveBack() noexcept;

  private:
    /// What an argument by reference refers to.
    struct Target {
        Variant value;
        /// The value that the member was given.
        Variant before;
        /// The caller's variable; null when the caller gave a value.
        VARIANT* variable = nullptr;
    };

    std::size_t Positional() const noexcept { return params_.cArgs - params_.cNamedArgs; }
    std::size_t PositionOf(DISPID name) const noexcept;
    std::optional<UINT> IndexOf(std::size_t position) const noexcept;
    HRESULT CheckCount() const noexcept;
    HRESULT CheckNames(UINT& wrong) const noexcept;
    HRESULT CheckPresence() const noexcept;

    HRESULT TakeOne(const ArgumentShape& argument, UINT index);
    HRESULT TakeValue(const ArgumentShape& argument, UINT index);
    HRESULT TakeObject(const ArgumentShape& argument, const VARIANT& value, UINT index);
    HRESULT TakeReference(const ArgumentShape& argument, UINT index);

    /// The argument as it is passed on, to be written.
    VARIANT& Passed(UINT index);
    void PassOwned(UINT index, Variant value);

    const MemberShape& shape_;
    DISPPARAMS params_;
    /// All arguments as they are passed on; empty while they are the caller's.
    std::vector<VARIANT> values_;
    /// Which of them belong to this object. The callee may exchange an object.
    std::vector<UINT> owned_;
    std::vector<Target> targets_;
};

} // namespace com
