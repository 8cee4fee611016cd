#include "tests/support/Caller.h"

#include "tests/support/Read.h"
#include "tests/support/Recorder.h"

#include <ocidl.h>

#include <algorithm>
#include <cstddef>
#include <ios>
#include <ostream>
#include <utility>

namespace support {

namespace {

/// An object by its class, so that the same object of two models has one name.
std::wstring ObjectText(IUnknown* object) {
    if (object == nullptr || RecorderOf(object) != nullptr) {
        return object == nullptr ? L"no object" : L"double " + LabelOf(object);
    }
    const auto provider = com::Query<IProvideClassInfo>(object);
    com::Ref<ITypeInfo> info;
    com::Bstr name;
    if (provider && SUCCEEDED(provider->GetClassInfo(info.Put())) &&
        SUCCEEDED(info->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr))) {
        return L"object " + std::wstring(name.View());
    }
    return L"object";
}

/// The value with its type.
std::wstring ValueText(const VARIANT& value) {
    const bool isObject = value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN;
    return isObject ? ObjectText(value.punkVal) : std::to_wstring(value.vt) + L" " + Print(value);
}

/// Takes the error object that a failed call left.
void ReadError(Outcome& outcome) {
    const ErrorTexts error = LastError();
    outcome.description = error.description;
    outcome.source = error.source;
    outcome.help = error.help;
}

com::Ref<IUnknown> Find(const Supply& supply, const Parameter& parameter) {
    if (parameter.interfaceId) {
        for (const auto& object : supply.objects) {
            com::Ref<IUnknown> face;
            if (SUCCEEDED(object->QueryInterface(*parameter.interfaceId, face.PutVoid()))) {
                return face;
            }
        }
        return {};
    }
    return parameter.name == L"document" ? supply.document : supply.element;
}

/// A text, or a number of the type.
VARIANT Plain(VARTYPE type, bool isElse) {
    VARIANT value;
    VariantInit(&value);
    value.vt = type;
    switch (type) {
    case VT_BSTR:
        value.bstrVal = com::Bstr(isElse ? L"AI2_Value" : L"1").Detach();
        break;
    case VT_I2:
        value.iVal = isElse ? -7 : 1;
        break;
    case VT_I4:
        value.lVal = isElse ? 2 : 1;
        break;
    case VT_R8:
        value.dblVal = isElse ? -0.25 : 1.5;
        break;
    case VT_BOOL:
        value.boolVal = isElse ? VARIANT_FALSE : VARIANT_TRUE;
        break;
    default:
        break;
    }
    return value;
}

/// A value of the argument's type. An object by reference starts empty.
VARIANT Filled(const Parameter& parameter, Fill fill, const Supply& supply) {
    const bool isFilled = parameter.in && fill != Fill::Nothing;
    const bool isElse = fill == Fill::SomethingElse;
    VARIANT value;
    VariantInit(&value);
    if (parameter.type == VT_VARIANT) {
        return isFilled ? Plain(isElse ? VARTYPE{VT_I4} : VARTYPE{VT_BSTR}, isElse) : value;
    }
    value.vt = parameter.type;
    if (!isFilled) {
        return value;
    }
    if (parameter.type == VT_DISPATCH || parameter.type == VT_UNKNOWN) {
        value.punkVal = Find(supply, parameter).Detach();
        return value;
    }
    return Plain(parameter.type, isElse);
}

/// The place as an argument by reference.
VARIANT Reference(const Parameter& parameter, VARIANT& place) {
    VARIANT value;
    VariantInit(&value);
    value.vt = static_cast<VARTYPE>(VT_BYREF | parameter.type);
    value.byref =
        parameter.type == VT_VARIANT ? static_cast<void*>(&place) : static_cast<void*>(&place.llVal);
    return value;
}

} // namespace

void PrintTo(const Outcome& outcome, std::ostream* stream) {
    *stream << "HRESULT " << std::hex << outcome.code << std::dec << " \"" << Narrow(outcome.description)
            << "\" (" << Narrow(outcome.source) << ")";
    for (const std::wstring& value : outcome.values) {
        *stream << " [" << Narrow(value) << "]";
    }
}

Arguments::Arguments(const Member& member, Fill fill, const Supply& supply) : member_(member) {
    for (const Parameter& parameter : member.parameters) {
        places_.push_back(Filled(parameter, fill, supply));
    }
}

Arguments::Arguments(const Member& member, std::span<const VARIANT> inputs)
    : member_(member), places_(inputs.begin(), inputs.end()), borrowed_(inputs.size()) {
    if (member.Result() != nullptr) {
        places_.push_back(Filled(*member.Result(), Fill::Nothing, {}));
    }
}

Arguments::~Arguments() {
    std::for_each(places_.begin() + static_cast<std::ptrdiff_t>(borrowed_), places_.end(),
                  [](VARIANT& place) { VariantClear(&place); });
}

Outcome Arguments::Taken(HRESULT code) const {
    Outcome outcome;
    outcome.code = code;
    for (std::size_t i = 0; i < places_.size(); ++i) {
        if (member_.parameters[i].byReference) {
            outcome.values.push_back(ValueText(places_[i]));
        }
    }
    return outcome;
}

Outcome Arguments::BySlot(IUnknown* face, int nullAt) {
    std::vector<VARIANT> values;
    std::vector<VARTYPE> types;
    for (std::size_t i = 0; i < places_.size(); ++i) {
        const Parameter& parameter = member_.parameters[i];
        values.push_back(parameter.byReference ? Reference(parameter, places_[i]) : places_[i]);
        if (static_cast<int>(i) == nullAt) {
            values.back().byref = nullptr;
        }
        types.push_back(!parameter.byReference && parameter.type == VT_VARIANT ? VARTYPE{VT_VARIANT}
                                                                               : values.back().vt);
    }
    std::vector<VARIANT*> pointers;
    for (VARIANT& value : values) {
        pointers.push_back(&value);
    }
    SetErrorInfo(0, nullptr);
    com::Variant answer;
    com::Check(DispCallFunc(face, member_.slot * sizeof(void*), CC_STDCALL, VT_I4,
                            static_cast<UINT>(values.size()), types.data(), pointers.data(), answer.Put()));
    Outcome outcome = Taken(answer.Get().lVal);
    if (FAILED(outcome.code)) {
        ReadError(outcome);
    }
    return outcome;
}

std::vector<VARIANT> Arguments::Script() {
    std::vector<VARIANT> values;
    for (std::size_t i = 0; i < places_.size(); ++i) {
        const Parameter& parameter = member_.parameters[i];
        if (!parameter.result) {
            values.push_back(parameter.byReference ? Reference(parameter, places_[i]) : places_[i]);
        }
    }
    std::reverse(values.begin(), values.end());
    return values;
}

Outcome Arguments::Called(IDispatch* face, DISPID id, WORD flags, std::vector<DISPID> names,
                          bool wantsResult) {
    std::vector<VARIANT> values = Script();
    DISPPARAMS params{values.data(), names.data(), static_cast<UINT>(values.size()),
                      static_cast<UINT>(names.size())};
    VARIANT result;
    VariantInit(&result);
    EXCEPINFO exception{};
    const HRESULT answer = face->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params,
                                        wantsResult ? &result : nullptr, &exception, nullptr);
    if (member_.Result() != nullptr && result.vt != VT_EMPTY) {
        places_.back() = result;
    }
    Outcome outcome = Taken(answer == DISP_E_EXCEPTION ? exception.scode : answer);
    outcome.description = com::Text(exception.bstrDescription);
    outcome.source = com::Text(exception.bstrSource);
    outcome.help = HelpText(exception.bstrHelpFile, exception.dwHelpContext);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrHelpFile);
    return outcome;
}

Outcome Arguments::ByName(IDispatch* face, DISPID id, WORD flags) {
    const bool isWrite = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    return Called(face, id, flags, std::vector<DISPID>(isWrite ? 1 : 0, DISPID_PROPERTYPUT), !isWrite);
}

Outcome Arguments::ByName(IDispatch* face, std::vector<DISPID> names) {
    return Called(face, member_.id, static_cast<WORD>(member_.kind), std::move(names), true);
}

void Arguments::UseIdentities() {
    for (VARIANT& place : places_) {
        if (place.vt == VT_DISPATCH && place.pdispVal != nullptr) {
            const auto identity = com::Query<IUnknown>(place.pdispVal);
            VariantClear(&place);
            place.vt = VT_UNKNOWN;
            place.punkVal = com::Ref<IUnknown>(identity).Detach();
        }
    }
}

Outcome CallByName(IDispatch* object, const Member& member, std::span<const VARIANT> inputs) {
    DISPID id = DISPID_UNKNOWN;
    Outcome outcome;
    outcome.code = IdOf(object, member.name, id);
    return FAILED(outcome.code)
               ? outcome
               : Arguments(member, inputs).ByName(object, id, static_cast<WORD>(member.kind));
}

HRESULT Invoke(IDispatch* object, DISPID id, WORD flags, std::vector<VARIANT>& arguments, VARIANT* result,
               EXCEPINFO* exception, UINT* argument) {
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS params{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) {
        params.rgdispidNamedArgs = &put;
        params.cNamedArgs = 1;
        result = nullptr;
    }
    return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, result, exception, argument);
}

HRESULT IdOf(IDispatch* object, const std::wstring& name, DISPID& id) {
    std::wstring copy = name;
    LPOLESTR text = copy.data();
    id = DISPID_UNKNOWN;
    return object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
}

} // namespace support
