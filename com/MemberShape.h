#pragma once

#include <windows.h>

#include <oaidl.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace com {

/// What an argument of a member takes.
struct ArgumentShape {
    /// Without "by reference"; VT_DISPATCH for an object, VT_VARIANT for anything.
    VARTYPE type = VT_EMPTY;
    bool isByReference = false;
    bool isOptional = false;
    /// The interface of an object that is not a plain IDispatch.
    std::optional<IID> interfaceId;
};

/// A member as a late-bound caller reaches it.
struct MemberShape {
    DISPID id = DISPID_UNKNOWN;
    INVOKEKIND kind = INVOKE_FUNC;
    /// In their natural order, without the result.
    std::vector<ArgumentShape> arguments;

    bool IsWrite() const noexcept { return kind == INVOKE_PROPERTYPUT || kind == INVOKE_PROPERTYPUTREF; }
    /// How many arguments cannot be left out.
    std::size_t Required() const noexcept;
};

/// The shapes of all members of a dispatch interface. Throws CallError.
std::vector<MemberShape> ReadShapes(ITypeInfo& info);

/// The member with this number that one of the kinds of access in `flags`
/// reaches; null when there is none.
const MemberShape* FindShape(const std::vector<MemberShape>& shapes, DISPID id, WORD flags) noexcept;

/// True for arguments to the reading of a property that has none: they are for
/// the default member of the object that it answers.
bool AreForDefaultMember(const MemberShape& shape, const DISPPARAMS& params) noexcept;

} // namespace com
