#include "tests/support/TypeLibrary.h"

#include "com/Boundary.h"
#include "com/Conversion.h"
#include "tests/support/Component.h"

#include <algorithm>
#include <cwctype>
#include <stdexcept>

namespace support {

namespace {

using InfoRef = com::Ref<ITypeInfo>;

constexpr unsigned kPointerSize = sizeof(void*);

std::wstring NameOf(ITypeInfo& info, MEMBERID id = MEMBERID_NIL) {
    com::Bstr name;
    com::Check(info.GetDocumentation(id, name.Put(), nullptr, nullptr, nullptr));
    return std::wstring(name.View());
}

std::wstring HelpOf(ITypeInfo& info, MEMBERID id = MEMBERID_NIL) {
    com::Bstr help;
    com::Check(info.GetDocumentation(id, nullptr, help.Put(), nullptr, nullptr));
    return std::wstring(help.View());
}

/// True for a dispinterface, which has no slots.
bool IsForScriptsAlone(ITypeInfo& info) {
    const TYPEATTR attributes = AttributesOf(info);
    return attributes.typekind == TKIND_DISPATCH && (attributes.wTypeFlags & TYPEFLAG_FDUAL) == 0;
}

/// The side of a dual interface that has slots.
InfoRef Slots(const InfoRef& info) {
    const TYPEATTR attributes = AttributesOf(*info.Get());
    if (attributes.typekind != TKIND_DISPATCH || IsForScriptsAlone(*info.Get())) {
        return info;
    }
    HREFTYPE reference = 0;
    InfoRef slots;
    com::Check(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
    com::Check(info->GetRefTypeInfo(reference, slots.Put()));
    return slots;
}

/// Of anything but an interface of a library's own.
std::wstring TypeName(VARTYPE type) {
    switch (type) {
    case VT_BSTR:
        return L"text";
    case VT_I2:
        return L"short";
    case VT_I4:
        return L"long";
    case VT_R8:
        return L"double";
    case VT_BOOL:
        return L"flag";
    case VT_VARIANT:
        return L"any";
    case VT_DISPATCH:
        return L"IDispatch";
    case VT_UNKNOWN:
        return L"IUnknown";
    default:
        return L"type " + std::to_wstring(type);
    }
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
    parameter.typeName = TypeName(type.vt);
    if (type.vt == VT_USERDEFINED) {
        parameter.type = VT_DISPATCH;
        InfoRef target;
        com::Check(info.GetRefTypeInfo(type.hreftype, target.Put()));
        parameter.interfaceId = AttributesOf(*target.Get()).guid;
        parameter.typeName = NameOf(*target.Get());
    }
}

Member ReadMember(ITypeInfo& info, const FUNCDESC& function) {
    Member member;
    member.id = function.memid;
    member.kind = function.invkind;
    member.slot = static_cast<unsigned>(function.oVft) / kPointerSize;
    member.help = HelpOf(info, function.memid);
    member.isHidden = (function.wFuncFlags & FUNCFLAG_FHIDDEN) != 0;
    constexpr UINT kMost = 16;
    BSTR names[kMost] = {};
    UINT count = 0;
    com::Check(info.GetNames(function.memid, names, kMost, &count));
    member.spelling = com::Text(names[0]);
    member.name = member.spelling;
    member.name[0] = static_cast<wchar_t>(std::towupper(member.name[0]));
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
    const TYPEDESC& answer = function.elemdescFunc.tdesc;
    if (function.funckind == FUNC_DISPATCH && answer.vt != VT_VOID) {
        Parameter parameter;
        ReadType(info, answer, parameter);
        parameter.out = true;
        parameter.result = true;
        member.parameters.push_back(parameter);
    }
    std::for_each_n(names, count, SysFreeString);
    const auto result = std::ranges::find_if(member.parameters, &Parameter::result);
    if (result != member.parameters.end() && result + 1 != member.parameters.end()) {
        throw std::logic_error("an argument stands after the result");
    }
    return member;
}

Interface ReadInterface(const InfoRef& described) {
    const InfoRef info = Slots(described);
    const TYPEATTR attributes = AttributesOf(*info.Get());
    Interface face{attributes.guid, NameOf(*info.Get()), {}, HelpOf(*info.Get()), described};
    for (UINT i = 0; i < attributes.cFuncs; ++i) {
        FUNCDESC* function = nullptr;
        com::Check(info->GetFuncDesc(i, &function));
        face.members.push_back(ReadMember(*info.Get(), *function));
        info->ReleaseFuncDesc(function);
    }
    std::ranges::sort(face.members, {}, &Member::slot);
    return face;
}

Class ReadClass(const InfoRef& info) {
    const TYPEATTR attributes = AttributesOf(*info.Get());
    Class entry{attributes.guid,
                NameOf(*info.Get()),
                (attributes.wTypeFlags & TYPEFLAG_FCANCREATE) != 0,
                {},
                HelpOf(*info.Get()),
                {}};
    for (UINT i = 0; i < attributes.cImplTypes; ++i) {
        HREFTYPE reference = 0;
        INT flags = 0;
        InfoRef face;
        com::Check(info->GetRefTypeOfImplType(i, &reference));
        com::Check(info->GetImplTypeFlags(i, &flags));
        com::Check(info->GetRefTypeInfo(reference, face.Put()));
        if (IsForScriptsAlone(*face.Get())) {
            entry.byName = ReadInterface(face);
            continue;
        }
        const bool isDefault = (flags & IMPLTYPEFLAG_FDEFAULT) != 0;
        entry.interfaces.insert(isDefault ? entry.interfaces.begin() : entry.interfaces.end(),
                                ReadInterface(face));
    }
    return entry;
}

Enumeration ReadEnumeration(const InfoRef& info) {
    Enumeration entry{NameOf(*info.Get()), {}, HelpOf(*info.Get())};
    for (UINT i = 0; i < AttributesOf(*info.Get()).cVars; ++i) {
        VARDESC* value = nullptr;
        com::Check(info->GetVarDesc(i, &value));
        const MEMBERID id = value->memid;
        const long number = value->lpvarValue->lVal;
        info->ReleaseVarDesc(value);
        entry.values.push_back({NameOf(*info.Get(), id), number});
    }
    return entry;
}

} // namespace

TYPEATTR AttributesOf(ITypeInfo& info) {
    TYPEATTR* attributes = nullptr;
    com::Check(info.GetTypeAttr(&attributes));
    const TYPEATTR copy = *attributes;
    info.ReleaseTypeAttr(attributes);
    return copy;
}

REFIID Parameter::ObjectId() const noexcept {
    return interfaceId ? *interfaceId : type == VT_UNKNOWN ? IID_IUnknown : IID_IDispatch;
}

unsigned Parameter::Words() const noexcept {
    // 64-bit code hands over the place of what is longer than a word.
    return byReference || kPointerSize == 8 ? 1 : type == VT_VARIANT ? 4 : type == VT_R8 ? 2 : 1;
}

std::span<const Parameter> Member::Inputs() const noexcept {
    return std::span(parameters).first(parameters.size() - (Result() != nullptr ? 1 : 0));
}

const Parameter* Member::Result() const noexcept {
    return !parameters.empty() && parameters.back().result ? &parameters.back() : nullptr;
}

unsigned Member::Words() const noexcept {
    unsigned words = 0;
    for (const Parameter& parameter : parameters) {
        words += parameter.Words();
    }
    return words;
}

std::wstring Member::Label() const {
    const wchar_t* access = kind == INVOKE_PROPERTYGET      ? L"get "
                            : kind == INVOKE_PROPERTYPUT    ? L"put "
                            : kind == INVOKE_PROPERTYPUTREF ? L"set "
                                                            : L"";
    return access + name;
}

std::wstring Member::Signature() const {
    std::wstring arguments;
    for (const Parameter& input : Inputs()) {
        arguments += (arguments.empty() ? L"" : L", ");
        arguments += (input.byReference ? L"&" : L"") + input.typeName;
    }
    return Label() + L"(" + arguments + L")" + (Result() != nullptr ? L" " + Result()->typeName : L"");
}

const Member& Interface::At(unsigned slot) const {
    const auto found = std::ranges::find(members, slot, &Member::slot);
    if (found == members.end()) {
        throw std::logic_error("no such slot");
    }
    return *found;
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
        } else if ((kind == TKIND_DISPATCH || kind == TKIND_INTERFACE) && !IsForScriptsAlone(*info.Get())) {
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

const TypeLibrary& OwnLibrary() {
    static const TypeLibrary library(Component::DllPath(), 1);
    return library;
}

const TypeLibrary& HostLibrary() {
    static const TypeLibrary library(Component::DllPath(), 2);
    return library;
}

const Interface& InterfaceOf(REFIID iid) {
    static const Interface plain{IID_IDispatch, L"IDispatch", {}, {}, {}};
    if (iid == IID_IDispatch) {
        return plain;
    }
    // The hosts' interfaces first: their library refers to no other.
    for (const TypeLibrary* library : {&HostLibrary(), &OwnLibrary()}) {
        const auto found = std::ranges::find(library->Interfaces(), iid, &Interface::id);
        if (found != library->Interfaces().end()) {
            return *found;
        }
    }
    throw std::logic_error("the type libraries lack an interface");
}

std::string Title(const Interface& face, const Member& member) {
    return Narrow(face.name + L" " + member.Label());
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

} // namespace support
