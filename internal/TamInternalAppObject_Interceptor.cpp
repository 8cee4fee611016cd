#include "internal/TamInternalAppObject.h"

#include "core/Case.h"
#include "core/EnumDescription.h"

namespace tam {

namespace {

// Attributes that are filled from the device.
constexpr const wchar_t* kChannel = L"CHANNEL";
constexpr const wchar_t* kSetup = L"SETUP";

// Flags of an attribute in the definition document.
constexpr const wchar_t* kUnitDependent = L"UnitDependent";
constexpr const wchar_t* kDifferential = L"Differential";

void SetEnumeration(IAttribute& attribute, const std::wstring& description) {
    com::Ref<ISNVType> type;
    com::Call(attribute, &IAttribute::get_SNVTType, type.Put());
    com::Call(Required<IEnumType>(type), &IEnumType::put_EnumDesc, com::Bstr(description).Get());
}

std::wstring NameOf(IAttribute& attribute) {
    return tam::NameOf(com::Ref<IAttribute>(&attribute));
}

} // namespace

STDMETHODIMP TamInternalAppObject::InterceptGetDataFromDevice(IAttribute* attribute, VARIANT_BOOL* value) {
    return Get(value, [&] {
        com::CheckSet(attribute);
        FillFromDevice(*attribute);
        return true;
    });
}

void TamInternalAppObject::FillFromDevice(IAttribute& attribute) {
    com::Ref<IChannel> channel;
    com::Call(Required<IDevice>(device_), &IDevice::Channel, com::Bstr(internalObjectKey_).Get(),
              channel.Put());
    const std::wstring name = UpperCase(NameOf(attribute));
    com::Bstr text;
    if (name == kChannel) {
        com::CheckSet(channel.Get());
        com::Call(channel, &IChannel::get_ChannelValue, text.Put());
        com::Call(attribute, &IAttribute::put_Value, text.Get());
        SetEnumeration(attribute, {});
    } else if (name == kSetup) {
        com::CheckSet(channel.Get());
        com::Call(channel, &IChannel::get_SetupText, text.Put());
        const std::wstring setup(text.View()); // an enumeration description
        com::Call(attribute, &IAttribute::put_Value, com::Bstr(FirstEnumValue(setup)).Get());
        SetEnumeration(attribute, setup);
    }
}

com::Ref<IAttribute> TamInternalAppObject::MirrorOf(IAttribute& attribute) {
    const auto self = AsChannel();
    return ContainerAttribute(*self.Get(), ContainerKey(*self.Get(), NameOf(attribute)));
}

STDMETHODIMP TamInternalAppObject::InterceptAttributeValueChanged(IAttribute* attribute,
                                                                  VARIANT_BOOL* value) {
    return Get(value, [&] {
        com::CheckSet(attribute);
        if (const auto mirror = MirrorOf(*attribute)) {
            com::Bstr text;
            com::Call(attribute, &IAttribute::get_Value, text.Put());
            com::Call(mirror, &IAttribute::put_Value, text.Get());
        }
        return true;
    });
}

STDMETHODIMP TamInternalAppObject::InterceptTypeChanged(IAttribute* attribute, VARIANT_BOOL* value) {
    return Get(value, [&] {
        com::CheckSet(attribute);
        if (const auto mirror = MirrorOf(*attribute)) {
            com::Ref<ISNVType> type;
            com::Call(attribute, &IAttribute::get_SNVTType, type.Put());
            com::Call(Required<IMutableTypeAttribute>(mirror), &IMutableTypeAttribute::SetType, type.Get());
        }
        // Alone among its siblings it never reports the call as handled.
        return false;
    });
}

dom::Node TamInternalAppObject::FindAttributeDefinition(IAttribute& attribute) const {
    dom::Element root;
    com::Call(DefinitionDocument(), &IXMLDOMDocument::get_documentElement, root.Put());
    com::CheckSet(root.Get());
    return dom::Select(dom::Node(root), L"TAMConfig/Attributes/Attrib[@Name=\"" + NameOf(attribute) + L"\"]");
}

void TamInternalAppObject::AnswerFlag(IAttribute* attribute, const wchar_t* name,
                                      VARIANT_BOOL* answer) const {
    com::CheckSet(attribute);
    if (const dom::Node definition = FindAttributeDefinition(*attribute)) {
        *answer = dom::Attribute(definition, name) == std::wstring(L"1") ? VARIANT_TRUE : VARIANT_FALSE;
    }
}

STDMETHODIMP TamInternalAppObject::InterceptIsUnitsDependent(IAttribute* attribute,
                                                             VARIANT_BOOL* isUnitsDependent,
                                                             VARIANT_BOOL* value) {
    if (isUnitsDependent == nullptr) {
        return com::Refuse(E_POINTER);
    }
    const auto kept = AsChannel(); // the generic object may drop the last reference
    return Get(value, [&] {
        AnswerFlag(attribute, kUnitDependent, isUnitsDependent);
        return true;
    });
}

STDMETHODIMP TamInternalAppObject::InterceptIsDifferential(IAttribute* attribute,
                                                           VARIANT_BOOL* isDifferential,
                                                           VARIANT_BOOL* value) {
    if (isDifferential == nullptr) {
        return com::Refuse(E_POINTER);
    }
    const auto kept = AsChannel(); // the generic object may drop the last reference
    return Get(value, [&] {
        AnswerFlag(attribute, kDifferential, isDifferential);
        return true;
    });
}

} // namespace tam
