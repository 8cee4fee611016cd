#include "points/UnitConversion.h"

#include "com/Boundary.h"
#include "com/Conversion.h"
#include "com/LateBound.h"

#include <OrvDBFaces.h>

#include <span>
#include <string_view>

namespace tam {

namespace {

/// What a member answers by name, as a text in the user's locale.
std::wstring AnswerByName(IDispatch& converter, const wchar_t* member, std::span<VARIANT> arguments) {
    const com::Variant answer = com::CallMember(converter, member, arguments);
    VARIANT given = answer.Get(); // borrowed: the conversion only reads it
    com::Variant text;
    com::Check(VariantChangeTypeEx(text.Put(), &given, LOCALE_USER_DEFAULT, 0, VT_BSTR));
    return com::Text(text.Get().bstrVal);
}

} // namespace

std::wstring ConvertedValue(IDispatch& converter, const std::wstring& value, const std::wstring& unit) {
    if (const auto typed = com::Query<IUnitConverter>(&converter)) {
        com::Bstr converted;
        com::Call(typed, &IUnitConverter::Convert, com::Bstr(value).Get(), com::Bstr(unit).Get(),
                  converted.Put());
        return std::wstring(converted.View());
    }
    const com::Variant given{std::wstring_view(value)};
    const com::Variant of{std::wstring_view(unit)};
    VARIANT arguments[] = {given.Get(), of.Get()};
    return AnswerByName(converter, L"Convert", arguments);
}

std::wstring UnitLabel(IDispatch& converter, const std::wstring& unit) {
    if (const auto typed = com::Query<IUnitConverter>(&converter)) {
        com::Bstr label;
        com::Call(typed, &IUnitConverter::Label, com::Bstr(unit).Get(), label.Put());
        return std::wstring(label.View());
    }
    const com::Variant of{std::wstring_view(unit)};
    VARIANT arguments[] = {of.Get()};
    return AnswerByName(converter, L"Label", arguments);
}

} // namespace tam
