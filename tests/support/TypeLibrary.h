#pragma once

#include "com/Ref.h"

#include <windows.h>

#include <oaidl.h>

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace support {

/// An argument of a member as its type library describes it.
struct Parameter {
    std::wstring name;
    /// The type without "by reference"; VT_DISPATCH or VT_UNKNOWN for an object.
    VARTYPE type = VT_EMPTY;
    /// "text", "short", "long", "double", "flag", "any", or the interface of an object.
    std::wstring typeName;
    bool byReference = false;
    bool in = false;
    bool out = false;
    bool result = false;
    bool optional = false;
    /// The interface of an object that is not a plain IDispatch or IUnknown.
    std::optional<IID> interfaceId;

    /// The interface of an object, whichever it is.
    REFIID ObjectId() const noexcept;
    /// Words of a pointer's size that hand it over.
    unsigned Words() const noexcept;
};

/// A member of an interface: a slot and what a script knows of it.
struct Member {
    /// With a capital first letter: a type library keeps one letter case for
    /// all that have a name in common, arguments too.
    std::wstring name;
    /// As the library spells it.
    std::wstring spelling;
    DISPID id = DISPID_UNKNOWN;
    INVOKEKIND kind = INVOKE_FUNC;
    /// Position in the table of slots; IDispatch has the first seven.
    unsigned slot = 0;
    /// The result is the last one.
    std::vector<Parameter> parameters;
    /// What object browsers show of the name; a name has one, whatever its kinds.
    std::wstring help;
    bool isHidden = false;

    bool IsWrite() const noexcept { return kind == INVOKE_PROPERTYPUT || kind == INVOKE_PROPERTYPUTREF; }
    /// Arguments that a script gives: all but the result.
    std::span<const Parameter> Inputs() const noexcept;
    std::size_t Given() const noexcept { return Inputs().size(); }
    /// Null when there is none.
    const Parameter* Result() const noexcept;
    unsigned Words() const noexcept;
    /// The name with the kind of access: "get Path", "put Path", "set Parent", "Create".
    std::wstring Label() const;
    /// Label and types: "get Path() text", "Init(text) flag", "set Parent(IDispatch)";
    /// "&" before what is handed over by its address.
    std::wstring Signature() const;
};

struct Interface {
    IID id{};
    std::wstring name;
    /// In slot order, from the first after IDispatch.
    std::vector<Member> members;
    std::wstring help;
    /// Its description, which calls members by name; empty for IDispatch itself.
    com::Ref<ITypeInfo> info;

    /// The member in a slot; the test's own mistake when there is none.
    const Member& At(unsigned slot) const;
};

struct Class {
    CLSID id{};
    std::wstring name;
    bool creatable = false;
    /// The interfaces that its objects have, the default one first.
    std::vector<Interface> interfaces;
    std::wstring help;
    /// Its dispinterface: all members that a script reaches. The host services have none.
    std::optional<Interface> byName;
};

struct EnumerationValue {
    std::wstring name;
    long number = 0;
};

struct Enumeration {
    std::wstring name;
    std::vector<EnumerationValue> values;
    std::wstring help;
};

/// What a DLL's own resources say: number 1 is the DLL's library, number 2 the
/// host interfaces.
class TypeLibrary {
  public:
    /// Throws when a type cannot be followed: nothing of it is registered, so
    /// a library must say all by itself.
    TypeLibrary(const std::wstring& dllPath, int resource);

    const std::wstring& Name() const noexcept { return name_; }
    const std::wstring& Help() const noexcept { return help_; }
    const GUID& Id() const noexcept { return id_; }
    /// Those with slots.
    const std::vector<Interface>& Interfaces() const noexcept { return interfaces_; }
    const std::vector<Class>& Classes() const noexcept { return classes_; }
    const std::vector<Enumeration>& Enumerations() const noexcept { return enumerations_; }
    bool Has(REFCLSID clsid) const;
    /// Throws when there is no such class.
    const Class& ClassOf(REFCLSID clsid) const;

  private:
    std::wstring name_;
    std::wstring help_;
    GUID id_{};
    std::vector<Interface> interfaces_;
    std::vector<Class> classes_;
    std::vector<Enumeration> enumerations_;
};

/// The component's own library.
const TypeLibrary& OwnLibrary();
/// The library of the interfaces between the component and its hosts.
const TypeLibrary& HostLibrary();
/// An interface of either; IDispatch, which has no members, too.
const Interface& InterfaceOf(REFIID iid);

/// A member as a test names it: interface, kind of access and name.
std::string Title(const Interface& face, const Member& member);
/// Names in a library have no letter case of their own: it keeps one spelling
/// of names that differ in nothing else.
bool SameName(const std::wstring& left, const std::wstring& right);
std::string Narrow(const std::wstring& text);
std::wstring TextOf(REFGUID guid);

/// The attributes of a type, without the arrays that end with them.
TYPEATTR AttributesOf(ITypeInfo& info);

} // namespace support
