#pragma once

#include "core/ElementFields.h"
#include "core/Numbers.h"

#include <cstdint>
#include <string>

namespace tam {

// What a module holds beside its points and its host's objects, by who says it, and
// the elements that it is read from and written as.

/// What the definition says.
struct ModuleIdentity {
    /// The definition's own name: its file without the extension.
    std::wstring definitionName;
    std::wstring name;
    std::wstring id;
    std::wstring description;
    std::wstring category;
};

inline constexpr ReadField<ModuleIdentity> kModuleDefinition[] = {
    {L"NAME", TakeText<&ModuleIdentity::name>},
    {L"ID", TakeText<&ModuleIdentity::id>},
    {L"DESCRIPTION", TakeText<&ModuleIdentity::description>},
    {L"CATEGORY", TakeText<&ModuleIdentity::category>},
};

/// What the project element keeps.
struct ModulePlacement {
    std::wstring userName;
    double xPosition = 0;
    double yPosition = 0;
    /// The project's device key: the host's own key of the device.
    std::wstring deviceKey;
    std::int16_t objectId = 0;
};

/// The positions are saved with the user's decimal mark and read without it, which
/// is the hosts' agreed behaviour.
inline constexpr WrittenField<ModulePlacement> kProjectToSave[] = {
    {L"UserName", GiveText<&ModulePlacement::userName>},
    {L"X_Position", GiveNumber<&ModulePlacement::xPosition>},
    {L"Y_Position", GiveNumber<&ModulePlacement::yPosition>},
    {L"DevKey", GiveText<&ModulePlacement::deviceKey>},
    {L"TamObjID", GiveInteger<&ModulePlacement::objectId>},
};
inline constexpr ReadField<ModulePlacement> kSavedProject[] = {
    {L"USERNAME", TakeText<&ModulePlacement::userName>},
    {L"X_POSITION", TakeNumber<&ModulePlacement::xPosition>},
    {L"Y_POSITION", TakeNumber<&ModulePlacement::yPosition>},
    {L"DEVKEY", TakeText<&ModulePlacement::deviceKey>},
    {L"TAMOBJID", TakeInt16<&ModulePlacement::objectId>},
};

/// What the module knows of its device.
struct ModuleDevice {
    /// The number that the host gave, in decimal.
    std::wstring address;
    std::wstring applicationId;
    /// The stream's device key: of the device that the stream belongs to.
    std::wstring streamKey;
    bool isLastOnDevice = false;
    std::int32_t cdbDimension = 0;
    std::int32_t ddbDimension = 0;
    /// Nothing of the component reads it: it is there for callers of its members.
    std::uint8_t channelNumber = 255;
};

/// What the host keeps in the module for itself.
struct ModuleNotes {
    std::wstring tag;
    std::wstring uniqueId;
    std::wstring key;
    std::wstring globalKey;
    std::wstring extendedKey;
    std::int32_t language = 0;
    std::int16_t exportIndex = 0;
};

/// The data sheet that was found beside the definition.
struct ModuleDatasheet {
    bool isAvailable = false;
    std::wstring path;
};

struct ModuleData {
    ModuleIdentity identity;
    ModulePlacement placement;
    ModuleDevice device;
    ModuleNotes notes;
    ModuleDatasheet datasheet;
};

/// A row of the device stream's header.
struct StreamField {
    /// From the document.
    const wchar_t* path;
    /// Without it the stream is refused; what was read before it stays.
    bool isRequired;
    void (*take)(ModuleData& module, const std::wstring& text);
};

/// In the order in which they are read.
inline constexpr StreamField kStreamHeader[] = {
    {L"Tam/Name", true,
     [](ModuleData& module, const std::wstring& text) {
         module.identity.name = text;
         module.placement.userName = text;
     }},
    {L"Tam/DevKey", true,
     [](ModuleData& module, const std::wstring& text) { module.device.streamKey = text; }},
    {L"Tam/IsLastOnDev", true,
     [](ModuleData& module, const std::wstring& text) { module.device.isLastOnDevice = Val(text) == 1.0; }},
    {L"Tam/TamObjID", true,
     [](ModuleData& module, const std::wstring& text) { module.placement.objectId = ToInt16(Val(text)); }},
    {L"Tam/CDB", false,
     [](ModuleData& module, const std::wstring& text) { module.device.cdbDimension = ToInt32(Val(text)); }},
    {L"Tam/DDB", false,
     [](ModuleData& module, const std::wstring& text) { module.device.ddbDimension = ToInt32(Val(text)); }},
};

/// The first elements of the interoperability element.
inline constexpr WrittenField<ModuleData> kInteroperableModule[] = {
    {L"UserName", [](const ModuleData& module, const LocaleRules&) { return module.placement.userName; }},
    {L"Key", [](const ModuleData& module, const LocaleRules&) { return module.notes.extendedKey; }},
};

/// The attributes of the export document's root.
inline constexpr WrittenField<ModuleData> kExportedModule[] = {
    {L"DevAddr", [](const ModuleData& module, const LocaleRules&) { return module.device.address; }},
    {L"AppID", [](const ModuleData& module, const LocaleRules&) { return module.device.applicationId; }},
    {L"DevKey", [](const ModuleData& module, const LocaleRules&) { return module.device.streamKey; }},
    {L"TamObjectID",
     [](const ModuleData& module, const LocaleRules&) { return std::to_wstring(module.placement.objectId); }},
    {L"IsLastOnDev",
     [](const ModuleData& module, const LocaleRules&) { return FlagText(module.device.isLastOnDevice); }},
};

} // namespace tam
