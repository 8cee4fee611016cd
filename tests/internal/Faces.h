#pragma once

#include "com/Conversion.h"
#include "com/Ref.h"

#include <windows.h>

#include <oaidl.h>

#include <span>
#include <string>
#include <vector>

// The host interfaces as the type library of the component describes them, so
// that a test can walk, call and answer every slot without naming each.

namespace internal_tests {

struct Parameter {
    /// What is passed or pointed at: VT_BSTR, VT_I2, VT_I4, VT_R8, VT_BOOL,
    /// VT_VARIANT, VT_DISPATCH or VT_UNKNOWN.
    VARTYPE type = VT_EMPTY;
    /// Interface of an object.
    IID iid{};
    /// "text", "short", "long", "double", "flag", "any", or the interface of an object.
    std::wstring typeName;
    bool isResult = false;
    /// Handed over by its address, so that the callee may change it.
    bool isByReference = false;

    /// 32-bit words on the stack.
    unsigned Words() const noexcept;
};

struct Member {
    /// With a capital first letter: a type library keeps one letter case for
    /// all that have a name in common, arguments too.
    std::wstring name;
    /// The name with the kind of access: "get Path", "put Path", "set Parent", "Create".
    std::wstring label;
    WORD kind = 0;
    /// Position in the table of slots; IDispatch has the first seven.
    unsigned slot = 0;
    std::vector<Parameter> inputs;
    /// None where type is VT_EMPTY.
    Parameter result;

    bool HasResult() const noexcept { return result.type != VT_EMPTY; }
    unsigned Words() const noexcept;
    /// Kind of access, name and types: "get Path() text", "Init(text) flag",
    /// "set Parent(IDispatch)"; "&" before what is handed over by its address.
    std::wstring Signature() const;
};

struct FaceInfo {
    std::wstring name;
    IID iid{};
    /// In slot order, from the first behind IDispatch.
    std::vector<Member> members;
    /// For IDispatch; empty for IDispatch itself.
    com::Ref<ITypeInfo> dispatch;

    /// The member in a slot; the test's own mistake when there is none.
    const Member& At(unsigned slot) const;
};

/// The description of an interface; read once. IID_IDispatch has no members.
const FaceInfo& FaceOf(REFIID iid);

/// What a call came to.
struct Outcome {
    HRESULT code = E_UNEXPECTED;
    com::Variant result;
    /// Of a failed call.
    std::wstring description;
    std::wstring source;
    /// Help file and context: "double.hlp#4711".
    std::wstring help;
};

/// Calls the member's slot. Without a place for the result it passes null.
Outcome CallSlot(IUnknown* face, const Member& member, std::span<const VARIANT> inputs,
                 bool withPlace = true);
/// Calls the member through IDispatch, as a script does. The code of a member
/// that raises is the one in its exception.
Outcome CallByName(IDispatch* object, const Member& member, std::span<const VARIANT> inputs);

/// A value as a person reads it; objects of this program by their label.
std::wstring Print(const VARIANT& value);

} // namespace internal_tests
