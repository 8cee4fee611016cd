#include "tests/internal/Faces.h"

#include "com/Boundary.h"
#include "tests/internal/Recorder.h"
#include "tests/support/Component.h"
#include "tests/support/Read.h"

#include <algorithm>
#include <cwctype>
#include <list>
#include <stdexcept>

namespace internal_tests {

namespace {

using com::Check;
using com::Ref;

constexpr unsigned kPointerSize = 4;

Ref<ITypeInfo> InfoOf(REFIID iid) {
    // The library of the host's interfaces first: it refers to no other.
    for (const int resource : {2, 1}) {
        Ref<ITypeLib> library;
        const std::wstring path = support::Component::DllPath() + L"\\" + std::to_wstring(resource);
        Check(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put()));
        Ref<ITypeInfo> info;
        if (SUCCEEDED(library->GetTypeInfoOfGuid(iid, info.Put()))) {
            return info;
        }
    }
    throw std::logic_error("the type libraries lack an interface");
}

/// The slots' side of a dual interface.
Ref<ITypeInfo> SlotsOf(const Ref<ITypeInfo>& info) {
    HREFTYPE reference = 0;
    Check(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
    Ref<ITypeInfo> slots;
    Check(info->GetRefTypeInfo(reference, slots.Put()));
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

Parameter ReadParameter(ITypeInfo& info, const ELEMDESC& element) {
    Parameter parameter;
    parameter.isResult = (element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0;
    const TYPEDESC* type = &element.tdesc;
    if (parameter.isResult) {
        type = type->lptdesc; // a result is handed out through a pointer
    }
    if (type->vt == VT_PTR) {
        type = type->lptdesc;
        parameter.isByReference = type->vt != VT_USERDEFINED; // an object is a pointer anyhow
    }
    parameter.type = type->vt;
    parameter.typeName = TypeName(type->vt);
    parameter.iid = type->vt == VT_UNKNOWN ? IID_IUnknown : IID_IDispatch;
    if (type->vt == VT_USERDEFINED) {
        Ref<ITypeInfo> referred;
        Check(info.GetRefTypeInfo(type->hreftype, referred.Put()));
        TYPEATTR* attributes = nullptr;
        Check(referred->GetTypeAttr(&attributes));
        parameter.type = VT_DISPATCH;
        parameter.iid = attributes->guid;
        com::Bstr name;
        Check(referred->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr));
        parameter.typeName = name.View();
        referred->ReleaseTypeAttr(attributes);
    }
    return parameter;
}

Member ReadMember(ITypeInfo& info, const FUNCDESC& function) {
    Member member;
    com::Bstr name;
    UINT count = 0;
    Check(info.GetNames(function.memid, name.Put(), 1, &count));
    member.name = name.View();
    member.name[0] = static_cast<wchar_t>(std::towupper(member.name[0]));
    member.kind = static_cast<WORD>(function.invkind);
    member.slot = static_cast<unsigned>(function.oVft) / kPointerSize;
    const wchar_t* prefix = function.invkind == INVOKE_PROPERTYGET      ? L"get "
                            : function.invkind == INVOKE_PROPERTYPUT    ? L"put "
                            : function.invkind == INVOKE_PROPERTYPUTREF ? L"set "
                                                                        : L"";
    member.label = prefix + member.name;
    for (SHORT i = 0; i < function.cParams; ++i) {
        const Parameter parameter = ReadParameter(info, function.lprgelemdescParam[i]);
        if (parameter.isResult) {
            member.result = parameter;
        } else {
            member.inputs.push_back(parameter);
        }
    }
    return member;
}

FaceInfo ReadFace(REFIID iid) {
    FaceInfo face;
    face.iid = iid;
    if (iid == IID_IDispatch) {
        face.name = L"IDispatch";
        return face;
    }
    face.dispatch = InfoOf(iid);
    const Ref<ITypeInfo> slots = SlotsOf(face.dispatch);
    com::Bstr name;
    Check(slots->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr));
    face.name = name.View();
    TYPEATTR* attributes = nullptr;
    Check(slots->GetTypeAttr(&attributes));
    const WORD count = attributes->cFuncs;
    slots->ReleaseTypeAttr(attributes);
    for (WORD i = 0; i < count; ++i) {
        FUNCDESC* function = nullptr;
        Check(slots->GetFuncDesc(i, &function));
        face.members.push_back(ReadMember(*slots.Get(), *function));
        slots->ReleaseFuncDesc(function);
    }
    std::sort(face.members.begin(), face.members.end(),
              [](const Member& left, const Member& right) { return left.slot < right.slot; });
    return face;
}

std::wstring Help(const std::wstring& file, DWORD context) {
    return file + L"#" + std::to_wstring(context);
}

/// Takes the error object that a failed call left.
void ReadError(Outcome& outcome) {
    Ref<IErrorInfo> info;
    if (GetErrorInfo(0, info.Put()) != S_OK) {
        return;
    }
    com::Bstr text;
    info->GetDescription(text.Put());
    outcome.description = text.View();
    info->GetSource(text.Put());
    outcome.source = text.View();
    DWORD context = 0;
    info->GetHelpFile(text.Put());
    info->GetHelpContext(&context);
    outcome.help = Help(std::wstring(text.View()), context);
}

} // namespace

unsigned Parameter::Words() const noexcept {
    if (isResult) {
        return 1;
    }
    switch (type) {
    case VT_VARIANT:
        return 4;
    case VT_R8:
        return 2;
    default:
        return 1;
    }
}

unsigned Member::Words() const noexcept {
    unsigned words = HasResult() ? 1 : 0;
    for (const Parameter& input : inputs) {
        words += input.Words();
    }
    return words;
}

std::wstring Member::Signature() const {
    std::wstring arguments;
    for (const Parameter& input : inputs) {
        arguments += (arguments.empty() ? L"" : L", ");
        arguments += (input.isByReference ? L"&" : L"") + input.typeName;
    }
    return label + L"(" + arguments + L")" + (HasResult() ? L" " + result.typeName : L"");
}

const Member& FaceInfo::At(unsigned slot) const {
    const auto found = std::find_if(members.begin(), members.end(),
                                    [&](const Member& member) { return member.slot == slot; });
    if (found == members.end()) {
        throw std::logic_error("no such slot");
    }
    return *found;
}

const FaceInfo& FaceOf(REFIID iid) {
    static std::list<FaceInfo> faces;
    const auto found =
        std::find_if(faces.begin(), faces.end(), [&](const FaceInfo& face) { return face.iid == iid; });
    return found != faces.end() ? *found : faces.emplace_back(ReadFace(iid));
}

Outcome CallSlot(IUnknown* face, const Member& member, std::span<const VARIANT> inputs, bool withPlace) {
    Outcome outcome;
    std::vector<VARIANT> values(inputs.begin(), inputs.end());
    std::vector<VARTYPE> types;
    for (const Parameter& input : member.inputs) {
        types.push_back(input.type);
    }
    VARIANT* place = outcome.result.Put();
    if (member.HasResult()) {
        VARIANT pointer{};
        pointer.vt = VT_PTR;
        // The values of a VARIANT share one address; a VARIANT result is the whole of it.
        pointer.byref = member.result.type == VT_VARIANT ? static_cast<void*>(place) : &place->lVal;
        pointer.byref = withPlace ? pointer.byref : nullptr;
        values.push_back(pointer);
        types.push_back(VT_PTR);
    }
    std::vector<VARIANT*> pointers;
    for (VARIANT& value : values) {
        pointers.push_back(&value);
    }
    VARIANT returned{};
    Check(DispCallFunc(face, member.slot * kPointerSize, CC_STDCALL, VT_ERROR,
                       static_cast<UINT>(values.size()), types.data(), pointers.data(), &returned));
    outcome.code = returned.scode;
    if (FAILED(outcome.code)) {
        ReadError(outcome);
    }
    if (member.HasResult() && member.result.type != VT_VARIANT) {
        place->vt = member.result.type;
    }
    return outcome;
}

Outcome CallByName(IDispatch* object, const Member& member, std::span<const VARIANT> inputs) {
    Outcome outcome;
    com::Bstr name(member.name);
    BSTR text = name.Get();
    DISPID id = DISPID_UNKNOWN;
    outcome.code = object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(outcome.code)) {
        return outcome;
    }
    std::vector<VARIANT> reversed(inputs.rbegin(), inputs.rend());
    DISPID putId = DISPID_PROPERTYPUT;
    DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    if ((member.kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) {
        params.rgdispidNamedArgs = &putId;
        params.cNamedArgs = 1;
    }
    EXCEPINFO exception{};
    outcome.code = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, member.kind, &params,
                                  member.HasResult() ? outcome.result.Put() : nullptr, &exception, nullptr);
    if (outcome.code == DISP_E_EXCEPTION) {
        outcome.code = exception.scode;
        outcome.description = com::Text(exception.bstrDescription);
        outcome.source = com::Text(exception.bstrSource);
        outcome.help = Help(com::Text(exception.bstrHelpFile), exception.dwHelpContext);
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrHelpFile);
    }
    return outcome;
}

std::wstring Print(const VARIANT& value) {
    switch (value.vt) {
    case VT_EMPTY:
        return L"empty";
    case VT_BSTR:
        return L"\"" + com::Text(value.bstrVal) + L"\"";
    case VT_BOOL:
        return value.boolVal != VARIANT_FALSE ? L"True" : L"False";
    case VT_I2:
        return std::to_wstring(value.iVal);
    case VT_I4:
        return std::to_wstring(value.lVal);
    case VT_R8:
        return std::to_wstring(value.dblVal);
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return value.punkVal != nullptr ? LabelOf(value.punkVal) : L"nothing";
    default:
        return L"type " + std::to_wstring(value.vt);
    }
}

} // namespace internal_tests
