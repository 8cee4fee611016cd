// A script's arguments come as VARIANTs of whatever type the script had, some of them
// as variables of the script and some under a name. A member takes fixed types in a
// fixed order. Take goes over the member's arguments in their order and finds the
// caller's argument for each. One that fits is passed on as it is; of another one a
// converted copy is passed on, which this object owns (owned_). An argument by
// reference gets a variable of this object's instead (targets_), and GiveBack puts
// what the member wrote there into the caller's own. Nothing is called before all
// arguments fit, so that a refused call has no effect.
#include "com/CallArguments.h"

#include "com/Ref.h"
#include "com/VariantReference.h"

#include <utility>

namespace com {

namespace {

constexpr VARTYPE kVariable = VT_BYREF | VT_VARIANT;

bool IsLeftOut(const VARIANT& value) noexcept {
    return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND;
}

bool IsObject(const VARIANT& value) noexcept {
    return value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN;
}

/// The value that an argument stands for, borrowed: of a script's variable what
/// is in it, of a reference to a text or an object the text or the object.
VARIANT ValueOf(const VARIANT& argument) noexcept {
    VARIANT value = argument.vt == kVariable && argument.pvarVal != nullptr ? *argument.pvarVal : argument;
    const bool isPointer = value.vt == (VT_BYREF | VT_BSTR) || value.vt == (VT_BYREF | VT_DISPATCH) ||
                           value.vt == (VT_BYREF | VT_UNKNOWN);
    if (isPointer && value.byref != nullptr) {
        value.vt = static_cast<VARTYPE>(value.vt & ~VT_BYREF);
        value.punkVal = *value.ppunkVal;
    }
    return value;
}

VARIANT ReferenceTo(VARIANT& target) noexcept {
    VARIANT reference{};
    reference.vt = static_cast<VARTYPE>(VT_BYREF | target.vt);
    reference.byref = &target.llVal;
    return reference;
}

/// A value as another type. No object and no place are no value, and neither is
/// a variable inside a variable.
HRESULT Convert(const VARIANT& value, VARTYPE type, VARIANT& converted) {
    if (value.vt == kVariable || LeadsNowhere(value) || (IsObject(value) && value.punkVal == nullptr)) {
        return DISP_E_TYPEMISMATCH;
    }
    const bool isNumber = type == VT_I2 || type == VT_I4 || type == VT_R8;
    VARIANT source = value; // borrowed: the conversion does not change it
    const HRESULT result = isNumber && value.vt == VT_BSTR
                               ? ReadNumber(View(value.bstrVal), type, converted)
                               : VariantChangeTypeEx(&converted, &source, LOCALE_USER_DEFAULT, 0, type);
    // Other failures are those of an object's default member, or have no name.
    const bool isTold = result == DISP_E_OVERFLOW || result == DISP_E_BADVARTYPE || result == E_OUTOFMEMORY;
    return FAILED(result) && !isTold ? DISP_E_TYPEMISMATCH : result;
}

} // namespace

CallArguments::~CallArguments() {
    for (const UINT index : owned_) {
        VariantClear(&values_[index]);
    }
}

HRESULT CallArguments::Take(UINT& wrong) {
    HRESULT result = CheckCount();
    if (SUCCEEDED(result)) {
        result = CheckNames(wrong);
    }
    if (SUCCEEDED(result)) {
        result = CheckPresence();
    }
    for (std::size_t position = 0; position < shape_.arguments.size() && SUCCEEDED(result); ++position) {
        const auto index = IndexOf(position);
        if (!index) {
            continue; // left out
        }
        result = TakeOne(shape_.arguments[position], *index);
        if (result == DISP_E_TYPEMISMATCH) {
            wrong = *index;
        }
    }
    return result;
}

void CallArguments::GiveBack() noexcept {
    for (Target& target : targets_) {
        constexpr LCID kByCharacter = 0;
        const bool isWritten =
            VarCmp(target.value.Address(), target.before.Address(), kByCharacter, 0) != VARCMP_EQ;
        if (target.variable != nullptr && isWritten) {
            VariantClear(target.variable);
            *target.variable = target.value.Detach();
        }
    }
}

/// The position among the member's arguments that a name of the caller's means;
/// one past the last when it means none.
std::size_t CallArguments::PositionOf(DISPID name) const noexcept {
    const std::size_t count = shape_.arguments.size();
    if (name == DISPID_PROPERTYPUT && shape_.IsWrite()) {
        return count - 1;
    }
    return name >= 0 && static_cast<std::size_t>(name) < count ? static_cast<std::size_t>(name) : count;
}

/// The caller's argument for a position. Named ones come first in the caller's
/// order, the others last to first after them.
std::optional<UINT> CallArguments::IndexOf(std::size_t position) const noexcept {
    if (position < Positional()) {
        return params_.cArgs - 1 - static_cast<UINT>(position);
    }
    for (UINT i = 0; i < params_.cNamedArgs; ++i) {
        if (PositionOf(params_.rgdispidNamedArgs[i]) == position) {
            return i;
        }
    }
    return std::nullopt;
}

HRESULT CallArguments::CheckCount() const noexcept {
    const bool isRight = params_.cArgs >= shape_.Required() && params_.cArgs <= shape_.arguments.size();
    return isRight ? S_OK : DISP_E_BADPARAMCOUNT;
}

/// Each name is that of an argument, and of one that has no value yet. The
/// value of a property that is written has its own name, and comes first.
HRESULT CallArguments::CheckNames(UINT& wrong) const noexcept {
    const DISPID* const names = params_.rgdispidNamedArgs;
    if (shape_.IsWrite() && (params_.cNamedArgs == 0 || names[0] != DISPID_PROPERTYPUT)) {
        wrong = 0;
        return DISP_E_PARAMNOTFOUND;
    }
    for (UINT i = 0; i < params_.cNamedArgs; ++i) {
        const std::size_t position = PositionOf(names[i]);
        const bool isFree = position >= Positional() && IndexOf(position) == i;
        if (position == shape_.arguments.size() || !isFree) {
            wrong = i;
            return DISP_E_PARAMNOTFOUND;
        }
    }
    return S_OK;
}

HRESULT CallArguments::CheckPresence() const noexcept {
    for (std::size_t position = 0; position < shape_.arguments.size(); ++position) {
        if (!shape_.arguments[position].isOptional && !IndexOf(position)) {
            return DISP_E_PARAMNOTOPTIONAL;
        }
    }
    return S_OK;
}

HRESULT CallArguments::TakeOne(const ArgumentShape& argument, UINT index) {
    const VARIANT& given = params_.rgvarg[index];
    if (IsLeftOut(given)) {
        return argument.isOptional || argument.type == VT_VARIANT ? S_OK : DISP_E_PARAMNOTOPTIONAL;
    }
    if (argument.isByReference) {
        return TakeReference(argument, index);
    }
    if (LeadsNowhere(given)) {
        return DISP_E_TYPEMISMATCH;
    }
    return argument.type == VT_VARIANT ? S_OK : TakeValue(argument, index);
}

HRESULT CallArguments::TakeValue(const ArgumentShape& argument, UINT index) {
    const VARIANT& given = params_.rgvarg[index];
    const VARIANT value = ValueOf(given);
    if (argument.type == VT_DISPATCH && IsObject(value)) {
        return TakeObject(argument, value, index);
    }
    if (value.vt == argument.type) {
        if (given.vt != argument.type) {
            Passed(index) = value;
        }
        return S_OK;
    }
    Variant converted;
    const HRESULT result = Convert(value, argument.type, *converted.Put());
    if (SUCCEEDED(result)) {
        PassOwned(index, std::move(converted));
    }
    return result;
}

HRESULT CallArguments::TakeObject(const ArgumentShape& argument, const VARIANT& value, UINT index) {
    if (value.punkVal == nullptr || (value.vt == VT_DISPATCH && !argument.interfaceId)) {
        if (params_.rgvarg[index].vt != VT_DISPATCH) {
            Passed(index) = value;
            Passed(index).vt = VT_DISPATCH;
        }
        return S_OK;
    }
    Ref<IUnknown> object;
    const HRESULT result =
        value.punkVal->QueryInterface(argument.interfaceId.value_or(IID_IDispatch), object.PutVoid());
    if (FAILED(result)) {
        object.Detach(); // a failing object may leave anything in the out pointer
        return result == E_OUTOFMEMORY ? result : DISP_E_TYPEMISMATCH;
    }
    Variant owned;
    owned.Put()->vt = VT_DISPATCH;
    owned.Address()->punkVal = object.Detach();
    PassOwned(index, std::move(owned));
    return S_OK;
}

HRESULT CallArguments::TakeReference(const ArgumentShape& argument, UINT index) {
    const VARIANT& given = params_.rgvarg[index];
    const auto reference = static_cast<VARTYPE>(VT_BYREF | argument.type);
    if (given.vt == reference && given.byref == nullptr) {
        return S_OK; // that is the member's to refuse
    }
    if (argument.type == VT_VARIANT) {
        return LeadsNowhere(given) ? DISP_E_TYPEMISMATCH : S_OK;
    }
    if (given.vt == reference) {
        return S_OK;
    }
    VARIANT* const variable = given.vt == kVariable ? given.pvarVal : nullptr;
    if ((given.vt & VT_BYREF) != 0 && variable == nullptr) {
        return DISP_E_TYPEMISMATCH;
    }
    if (variable != nullptr && (variable->vt & VT_BYREF) != 0 && variable->vt != reference) {
        return DISP_E_TYPEMISMATCH; // its owner expects what it writes in another place
    }
    if (variable != nullptr && (variable->vt == argument.type || variable->vt == reference)) {
        Passed(index) = variable->vt == reference ? *variable : ReferenceTo(*variable);
        return S_OK;
    }
    targets_.reserve(shape_.arguments.size()); // what refers to one must not move
    Target& target = targets_.emplace_back();
    target.variable = variable;
    HRESULT result = Convert(ValueOf(given), argument.type, *target.value.Put());
    if (SUCCEEDED(result)) {
        Passed(index) = ReferenceTo(*target.value.Address());
        result = VariantCopy(target.before.Put(), target.value.Address());
    }
    return result;
}

VARIANT& CallArguments::Passed(UINT index) {
    if (values_.empty()) {
        owned_.reserve(params_.cArgs);
        values_.assign(params_.rgvarg, params_.rgvarg + params_.cArgs);
        params_.rgvarg = values_.data();
    }
    return values_[index];
}

void CallArguments::PassOwned(UINT index, Variant value) {
    VARIANT& passed = Passed(index);
    owned_.push_back(index); // has its room already
    passed = value.Detach();
}

} // namespace com
