#include "tests/com/TypeLibrary.h"

#include "com/Boundary.h"
#include "com/Conversion.h"

#include <algorithm>
#include <stdexcept>

namespace contract {

namespace {

using InfoRef = com::Ref<ITypeInfo>;

TYPEATTR AttributesOf(ITypeInfo& info) {
    TYPEATTR* attributes = nullptr;
    com::Check(info.GetTypeAttr(&attributes));
    const TYPEATTR copy = *attributes;
    info.ReleaseTypeAttr(attributes);
    return copy;
}

std::wstring NameOf(ITypeInfo& info) {
    com::Bstr name;
    com::Check(info.GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr));
    return std::wstring(name.View());
}

/// The side of a dual interface that has slots.
InfoRef Slots(const InfoRef& info) {
    const TYPEATTR attributes = AttributesOf(*info.Get());
    if (attributes.typekind != TKIND_DISPATCH) {
        return info;
    }
    HREFTYPE reference = 0;
    InfoRef slots;
    com::Check(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
    com::Check(info->GetRefTypeInfo(reference, slots.Put()));
    return slots;
}

/// Reads a type through its pointers: T, T*, object* or object**.
void ReadType(ITypeInfo& info, const TYPEDESC& type, Parameter& parameter) {
    if (type.vt == VT_PTR) {
        const TYPEDESC& inner = *type.lptdesc;
        const bool toObject = inner.vt == VT_USERDEFINED;
        ReadType(info, inner, parameter);
        parameter.byReference = parameter.byReference || !toObject;
        return;
    }
    parameter.type = type.vt;
    if (type.vt == VT_USERDEFINED) {
        parameter.type = VT_DISPATCH;
        InfoRef target;
        com::Check(info.GetRefTypeInfo(type.hreftype, target.Put()));
        parameter.interfaceId = AttributesOf(*target.Get()).guid;
    }
}

Member ReadMember(ITypeInfo& info, const FUNCDESC& function, REFIID iid) {
    Member member;
    member.interfaceId = iid;
    member.id = function.memid;
    member.kind = function.invkind;
    member.offset = static_cast<ULONG_PTR>(function.oVft);
    constexpr UINT kMost = 16;
    BSTR names[kMost] = {};
    UINT count = 0;
    com::Check(info.GetNames(function.memid, names, kMost, &count));
    member.name = com::Text(names[0]);
    for (int i = 0; i < function.cParams; ++i) {
        const ELEMDESC& element = function.lprgelemdescParam[i];
        Parameter parameter;
        ReadType(info, element.tdesc, parameter);
        const UINT index = static_cast<UINT>(i) + 1;
        parameter.name = index < count ? com::Text(names[index]) : std::wstring();
        parameter.in = (element.paramdesc.wParamFlags & PARAMFLAG_FIN) != 0;
        parameter.out = (element.paramdesc.wParamFlags & PARAMFLAG_FOUT) != 0;
        parameter.result = (element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0;
        parameter.optional = (element.paramdesc.wParamFlags & PARAMFLAG_FOPT) != 0;
        member.parameters.push_back(parameter);
    }
    std::for_each_n(names, count, SysFreeString);
    return member;
}

Interface ReadInterface(const InfoRef& described) {
    const InfoRef info = Slots(described);
    const TYPEATTR attributes = AttributesOf(*info.Get());
    Interface face{attributes.guid, NameOf(*info.Get()), {}};
    for (UINT i = 0; i < attributes.cFuncs; ++i) {
        FUNCDESC* function = nullptr;
        com::Check(info->GetFuncDesc(i, &function));
        face.members.push_back(ReadMember(*info.Get(), *function, face.id));
        info->ReleaseFuncDesc(function);
    }
    return face;
}

Class ReadClass(const InfoRef& info) {
    const TYPEATTR attributes = AttributesOf(*info.Get());
    Class entry{attributes.guid, NameOf(*info.Get()), (attributes.wTypeFlags & TYPEFLAG_FCANCREATE) != 0, {}};
    for (UINT i = 0; i < attributes.cImplTypes; ++i) {
        HREFTYPE reference = 0;
        INT flags = 0;
        InfoRef face;
        com::Check(info->GetRefTypeOfImplType(i, &reference));
        com::Check(info->GetImplTypeFlags(i, &flags));
        com::Check(info->GetRefTypeInfo(reference, face.Put()));
        const bool isDefault = (flags & IMPLTYPEFLAG_FDEFAULT) != 0;
        entry.interfaces.insert(isDefault ? entry.interfaces.begin() : entry.interfaces.end(),
                                ReadInterface(face));
    }
    return entry;
}

Enumeration ReadEnumeration(const InfoRef& info) {
    Enumeration entry{NameOf(*info.Get()), {}};
    for (UINT i = 0; i < AttributesOf(*info.Get()).cVars; ++i) {
        VARDESC* value = nullptr;
        com::Bstr name;
        com::Check(info->GetVarDesc(i, &value));
        const MEMBERID id = value->memid;
        info->ReleaseVarDesc(value);
        com::Check(info->GetDocumentation(id, name.Put(), nullptr, nullptr, nullptr));
        entry.values.emplace_back(name.View());
    }
    return entry;
}

} // namespace

std::size_t Member::Given() const {
    return static_cast<std::size_t>(
        std::count_if(parameters.begin(), parameters.end(), [](const Parameter& p) { return !p.result; }));
}

TypeLibrary::TypeLibrary(const std::wstring& dllPath, int resource) {
    com::Ref<ITypeLib> library;
    const std::wstring path = dllPath + L"\\" + std::to_wstring(resource);
    com::Check(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put()));
    TLIBATTR* attributes = nullptr;
    com::Check(library->GetLibAttr(&attributes));
    id_ = attributes->guid;
    library->ReleaseTLibAttr(attributes);
    com::Bstr name;
    com::Bstr help;
    com::Check(library->GetDocumentation(-1, name.Put(), help.Put(), nullptr, nullptr));
    name_ = name.View();
    help_ = help.View();
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        InfoRef info;
        com::Check(library->GetTypeInfo(i, info.Put()));
        const TYPEKIND kind = AttributesOf(*info.Get()).typekind;
        if (kind == TKIND_COCLASS) {
            classes_.push_back(ReadClass(info));
        } else if (kind == TKIND_DISPATCH || kind == TKIND_INTERFACE) {
            interfaces_.push_back(ReadInterface(info));
        } else if (kind == TKIND_ENUM) {
            enumerations_.push_back(ReadEnumeration(info));
        }
    }
}

bool TypeLibrary::Has(REFCLSID clsid) const {
    return std::any_of(classes_.begin(), classes_.end(),
                       [&](const Class& entry) { return entry.id == clsid; });
}

const Class& TypeLibrary::ClassOf(REFCLSID clsid) const {
    for (const Class& entry : classes_) {
        if (entry.id == clsid) {
            return entry;
        }
    }
    throw std::runtime_error("the library has no such class");
}

std::string Title(const Interface& face, const Member& member) {
    const char* kind = member.kind == INVOKE_FUNC          ? " call "
                       : member.kind == INVOKE_PROPERTYGET ? " get "
                       : member.kind == INVOKE_PROPERTYPUT ? " put "
                                                           : " putref ";
    return Narrow(face.name) + kind + Narrow(member.name);
}

bool SameName(const std::wstring& left, const std::wstring& right) {
    return CompareStringOrdinal(left.data(), -1, right.data(), -1, TRUE) == CSTR_EQUAL;
}

std::string Narrow(const std::wstring& text) {
    std::string narrow;
    for (const wchar_t c : text) {
        narrow += c > 0 && c < 128 ? static_cast<char>(c) : '?';
    }
    return narrow;
}

std::wstring TextOf(REFGUID guid) {
    wchar_t text[40] = {};
    StringFromGUID2(guid, text, 40);
    return text;
}

} // namespace contract
