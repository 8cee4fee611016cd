#include "dialogs/DataPoint.h"

#include "com/Boundary.h"
#include "com/LateBound.h"

#include <utility>

namespace tam {

std::wstring TextOfResult(const com::Variant& result) {
    if (result.Get().vt == VT_EMPTY || result.Get().vt == VT_NULL) {
        return {};
    }
    VARIANT source = result.Get(); // borrowed
    com::Variant text;
    com::CheckConversion(VariantChangeTypeEx(text.Put(), &source, LOCALE_USER_DEFAULT, 0, VT_BSTR));
    return com::Text(text.Get().bstrVal);
}

com::Ref<IDispatch> ObjectOfResult(const com::Variant& result) noexcept {
    const VARIANT& value = result.Get();
    if (value.vt == VT_DISPATCH) {
        return com::Ref<IDispatch>(value.pdispVal);
    }
    return value.vt == VT_UNKNOWN ? com::Query<IDispatch>(value.punkVal) : com::Ref<IDispatch>();
}

DataPointType::DataPointType(com::Ref<IDispatch> object) : object_(std::move(object)) {
    com::CheckSet(object_.Get());
    type_ = object_.As<ISNVType>();
}

std::wstring DataPointType::Text(TextMember member, const wchar_t* name) const {
    if (!type_) {
        return TextOfResult(com::MemberOrNone(*object_.Get(), name));
    }
    com::Bstr text;
    com::Call(type_, member, text.Put());
    return std::wstring(text.View());
}

std::int32_t DataPointType::Length() const {
    if (!type_) {
        const std::wstring text = TextOfResult(com::MemberOrNone(*object_.Get(), L"Length"));
        return text.empty() ? 0 : static_cast<std::int32_t>(com::LongOf(text));
    }
    long length = 0;
    com::Call(type_, &ISNVType::get_Length, &length);
    return static_cast<std::int32_t>(length);
}

DataPoint::DataPoint(IDispatch* object) : object_(object), attribute_(com::Query<IAttribute>(object)) {
    com::CheckSet(object);
}

std::wstring DataPoint::Name() const {
    if (!attribute_) {
        return TextOfResult(com::GetMember(*object_.Get(), L"Name"));
    }
    com::Bstr name;
    com::Call(attribute_, &IAttribute::get_Name, name.Put());
    return std::wstring(name.View());
}

std::wstring DataPoint::Value() const {
    if (!attribute_) {
        return TextOfResult(com::GetMember(*object_.Get(), L"Value"));
    }
    com::Bstr value;
    com::Call(attribute_, &IAttribute::get_Value, value.Put());
    return std::wstring(value.View());
}

std::wstring DataPoint::DispValue() const {
    if (!attribute_) {
        return TextOfResult(com::MemberOrNone(*object_.Get(), L"DispValue"));
    }
    com::Bstr shown;
    com::Call(attribute_, &IAttribute::get_DispValue, shown.Put());
    return std::wstring(shown.View());
}

void DataPoint::SetValue(const std::wstring& value) const {
    if (!attribute_) {
        com::PutMember(*object_.Get(), L"Value", com::Variant(value).Get());
        return;
    }
    com::Call(attribute_, &IAttribute::put_Value, com::Bstr(value).Get());
}

DataPointType DataPoint::Type() const {
    if (!attribute_) {
        return DataPointType(ObjectOfResult(com::GetMember(*object_.Get(), L"SNVTType")));
    }
    com::Ref<ISNVType> type;
    com::Call(attribute_, &IAttribute::get_SNVTType, type.Put());
    return DataPointType(type);
}

com::Ref<IDispatch> DataPoint::Fields() const {
    com::Ref<IDispatch> fields;
    // A host may lack the slot and have the member for scripts alone.
    com::ForgetErrors();
    const HRESULT result = attribute_ ? attribute_->get_Fields(fields.Put()) : E_NOTIMPL;
    if (result == E_NOTIMPL) {
        return ObjectOfResult(com::MemberOrNone(*object_.Get(), L"Fields"));
    }
    com::CheckCall(result, attribute_.Get(), __uuidof(IAttribute));
    return fields;
}

} // namespace tam
