#pragma once

#include "core/ElementFields.h"
#include "core/References.h"

#include <string>
#include <string_view>

namespace tam {

// What a point holds beside its name, its keys and its objects, and the elements
// that it is read from and written as. The names are those of the documents.

/// A row's text of what a point holds, for what the export shows of it.
template <auto Give, class Exported>
std::wstring GiveExported(const Exported& exported, const LocaleRules& locale) {
    return Give(exported.data, locale);
}

struct InputData {
    /// What the input is linked to; the host writes it.
    std::wstring linkReference;
    std::wstring logicalAddress;
    std::wstring protocolReference;
    std::wstring snvtType;
    bool isPermanent = false;
    bool isConnected = false;
    // The definition's word. Hosts are told fixed answers in their place: every
    // input of a module is visible and none is mandatory.
    bool isVisible = false;
    bool isMandatory = true;
};

inline constexpr ReadField<InputData> kInputDefinition[] = {
    {L"MANDATORY", TakePresence<&InputData::isMandatory, false>}, // the element's presence clears the flag
    {L"VISIBLE", TakePresence<&InputData::isVisible, true>},
    {L"LOGICALADDRESS", TakeText<&InputData::logicalAddress>},
    {L"ISPERMANENT", TakeOne<&InputData::isPermanent>},
    {L"PROTOCOLREFERENCE", TakeText<&InputData::protocolReference>},
    {L"SNVTTYPE", TakeText<&InputData::snvtType>},
};
inline constexpr ReadField<InputData> kSavedInput[] = {
    {L"SNVT_TYPE", TakeText<&InputData::snvtType>},
};
inline constexpr WrittenField<InputData> kInteroperableInput[] = {
    {L"Reference", GiveText<&InputData::protocolReference>},
    {L"LogicalAddress", GiveText<&InputData::logicalAddress>},
    {L"isPermanent", GiveTruth<&InputData::isPermanent>},
    {L"SNVTType", GiveText<&InputData::snvtType>}, // outputs spell it differently
};
inline constexpr WrittenField<InputData> kExportedInput[] = {
    {L"LinkReference", GiveText<&InputData::linkReference>},
    {L"LogicalAddress", GiveText<&InputData::logicalAddress>},
    {L"SNVTType", GiveText<&InputData::snvtType>},
    {L"isPermanent", GiveFlag<&InputData::isPermanent>},
    {L"IsConnected",
     [](const InputData& input, const LocaleRules&) {
         return FlagText(LeadsToAnOutput(std::wstring_view(input.linkReference)));
     }},
};

struct OutputData {
    /// Whether the definition names a type, and the identifier, which may be empty.
    bool hasType = false;
    std::wstring snvtType;
    std::wstring logicalAddress;
    std::wstring mapAsObject;
    std::wstring objectOffset;
    std::wstring absoluteObjectIndex;
    std::wstring writable = TruthText(false);
    /// Kept from one project to the next; nothing else asks for it.
    std::wstring exportIndex;
    /// Identifier of the type that the host has connected. Nothing asks for it; it is
    /// there for a person who looks at an output in a debugger.
    std::wstring connectedType;
    bool isConnected = false;
    bool isDisplayable = false;
    // The definition's word. Hosts are told fixed answers in their place: every
    // output of a module is visible and none depends on another's type.
    bool isVisible = false;
    bool isTypeDependent = false;
};

/// The attributes of the definition's element.
inline constexpr ReadField<OutputData> kOutputDefinitionAttributes[] = {
    {L"TYPEDEPENDENT", TakePresence<&OutputData::isTypeDependent, true>},
};
inline constexpr ReadField<OutputData> kOutputDefinition[] = {
    {L"VISIBLE", TakePresence<&OutputData::isVisible, true>},
    {L"LOGICALADDRESS", TakeText<&OutputData::logicalAddress>},
    {L"ISMAPASOO", TakeText<&OutputData::mapAsObject>},
    {L"OBJOFFSET", TakeText<&OutputData::objectOffset>},
    {L"ABSOLUTEOBJECTINDEX", TakeText<&OutputData::absoluteObjectIndex>},
    {L"ISWRITABLE", TakeText<&OutputData::writable>},
};
inline constexpr ReadField<OutputData> kSavedOutput[] = {
    {L"ISCONNECTED", TakeTruth<&OutputData::isConnected>},
    {L"ISDISPLAYABLE", TakeTruth<&OutputData::isDisplayable>},
    {L"EXPORTINDEX", TakeText<&OutputData::exportIndex>},
};
inline constexpr WrittenField<OutputData> kOutputToSave[] = {
    {L"SNVT_Type", GiveText<&OutputData::snvtType>},
    {L"IsConnected", GiveTruth<&OutputData::isConnected>},
    {L"IsDisplayable", GiveTruth<&OutputData::isDisplayable>},
    {L"ExportIndex", GiveText<&OutputData::exportIndex>},
};
inline constexpr WrittenField<OutputData> kInteroperableOutput[] = {
    {L"SNVT_Type", GiveText<&OutputData::snvtType>},
    {L"LogicalAddress", GiveText<&OutputData::logicalAddress>},
};
/// An output as the export document shows it.
struct ExportedOutput {
    const OutputData& data;
    /// As the export finds it, not as the host has said.
    bool isConnected = false;
};

inline constexpr WrittenField<ExportedOutput> kExportedOutput[] = {
    {L"LogicalAddress", GiveExported<&GiveText<&OutputData::logicalAddress, OutputData>>},
    {L"SNVTType", GiveExported<&GiveText<&OutputData::snvtType, OutputData>>},
    {L"isMapAsOO", GiveExported<&GiveTextAsFlag<&OutputData::mapAsObject, OutputData>>},
    {L"ObjOffset", GiveExported<&GiveText<&OutputData::objectOffset, OutputData>>},
    {L"AbsoluteObjectIndex", GiveExported<&GiveText<&OutputData::absoluteObjectIndex, OutputData>>},
    {L"IsConnected", GiveFlag<&ExportedOutput::isConnected>},
    {L"IsWritable", GiveExported<&GiveTextAsFlag<&OutputData::writable, OutputData>>},
};

struct AttributeData {
    /// As it was written, without unit.
    std::wstring value;
    std::wstring logicalAddress;
    std::wstring isPermanent = L"1";
    /// Of the definition document, for a number. Hosts are told that there is none;
    /// it is there for a person who looks at an attribute in a debugger, and so is
    /// the description.
    std::wstring defaultValue;
    std::wstring description;
    /// The definition's word; hosts are told that every attribute is visible.
    bool isVisible = false;
};

inline constexpr ReadField<AttributeData> kAttributeDefinition[] = {
    {L"DESCRIPTION", TakeText<&AttributeData::description>},
    {L"VISIBLE", TakePresence<&AttributeData::isVisible, true>},
    {L"LOGICALADDRESS", TakeText<&AttributeData::logicalAddress>},
    {L"ISPERMANENT", TakeText<&AttributeData::isPermanent>},
    {L"VALUE", TakeText<&AttributeData::value>},
};

/// An attribute as the export document shows it.
struct ExportedAttribute {
    const AttributeData& data;
    std::wstring snvtType;
    bool isConnected = false;
};

inline constexpr WrittenField<ExportedAttribute> kExportedAttribute[] = {
    {L"LogicalAddress", GiveExported<&GiveText<&AttributeData::logicalAddress, AttributeData>>},
    {L"SNVTType", GiveText<&ExportedAttribute::snvtType>},
    {L"Value", GiveExported<&GiveText<&AttributeData::value, AttributeData>>},
    {L"isPermanent", GiveExported<&GiveTextAsFlag<&AttributeData::isPermanent, AttributeData>>},
    {L"IsConnected", GiveFlag<&ExportedAttribute::isConnected>},
};

} // namespace tam
