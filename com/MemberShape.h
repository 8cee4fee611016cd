#pragma once

#include <windows.h>

#include <oaidl.h>

#include <vector>

namespace com {

/// The arguments of a member as a late-bound caller gives them.
struct MemberShape {
    DISPID id = DISPID_UNKNOWN;
    INVOKEKIND kind = INVOKE_FUNC;
    /// Their types without the result; VT_VARIANT for one that takes anything.
    std::vector<VARTYPE> arguments;
};

/// The shapes of all members of a dispatch interface. Throws CallError.
std::vector<MemberShape> ReadShapes(ITypeInfo& info);

/// The member with this number that one of the kinds of access in `flags`
/// reaches; null when there is none.
const MemberShape* FindShape(const std::vector<MemberShape>& shapes, DISPID id, WORD flags) noexcept;

// Not every platform's Invoke looks at these, and a member that is called
// with arguments that it does not have must not be run.

/// True for arguments to the reading of a property that has none: they are for
/// the default member of the object that it answers.
bool AreForDefaultMember(const MemberShape& shape, const DISPPARAMS& params) noexcept;
/// True for more arguments than the member has.
bool TooMany(const MemberShape& shape, const DISPPARAMS& params) noexcept;
/// The index of the first argument, in the caller's order, that cannot become
/// its type; the number of arguments when there is none.
UINT FirstMismatch(const MemberShape& shape, const DISPPARAMS& params) noexcept;

} // namespace com
