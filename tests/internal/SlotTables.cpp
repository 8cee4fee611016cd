#include "tests/internal/SlotTables.h"

#include <OrvDBFaces.h>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <string_view>

namespace internal_tests {

namespace {

constexpr unsigned kFirstSlot = 7;

/// A name with a leading "-" is a member that does not simply forward.
using Names = std::initializer_list<std::wstring_view>;

const Names kAppObject = {L"IsPlugInActive",
                          L"Path",
                          L"Path",
                          L"ExecTime",
                          L"MaxInstances",
                          L"-CDBDimension",
                          L"Color",
                          L"Color",
                          L"SetColor",
                          L"Width",
                          L"InputWidth",
                          L"-DDBDimension",
                          L"-SDBDimension",
                          L"ClearReferences",
                          L"ViewDatasheet",
                          L"DatasheetAvailable",
                          L"PlugInAvailable",
                          L"UserName",
                          L"UniqueIDString",
                          L"OwnerDeviceXML",
                          L"OwnerDeviceXML",
                          L"UserName",
                          L"Name",
                          L"NodeType",
                          L"Tag",
                          L"Tag",
                          L"GlobalKey",
                          L"GlobalKey",
                          L"key",
                          L"key",
                          L"ID",
                          L"UniqueID",
                          L"UniqueID",
                          L"Description",
                          L"Icon",
                          L"Category",
                          L"-Create",
                          L"Show",
                          L"ObjectDebug",
                          L"Save",
                          L"Load",
                          L"-Stream",
                          L"IntelStream",
                          L"Stream",
                          L"-Inputs",
                          L"-Outputs",
                          L"-Attributes",
                          L"Language",
                          L"Language",
                          L"Destroy",
                          L"ProgrammaticID",
                          L"XmlSNVTDoc",
                          L"-XMLSave",
                          L"XMLSaveSim",
                          L"XMLSaveForInteroperability",
                          L"XmlLoad",
                          L"CallBack",
                          L"Parent",
                          L"Parent",
                          L"XPosition",
                          L"XPosition",
                          L"YPosition",
                          L"YPosition",
                          L"ManageShortFloat",
                          L"Init",
                          L"-ExportIndex",
                          L"ExportIndex",
                          L"-NumObjects",
                          L"ExtendedKey",
                          L"ExtendedKey",
                          L"IsDeviceDependent",
                          L"UsesDeviceClock",
                          L"-IsHidden",
                          L"-IsVirtual"};

const Names kInternalAppObject = {L"-TamDeviceKey",
                                  L"-TamInternalObjectKey",
                                  L"-TamObjectContainer",
                                  L"-TempTamDeviceKey",
                                  L"-TempTamDeviceKey",
                                  L"-TempTamInternalObjectKey",
                                  L"-TempTamInternalObjectKey",
                                  L"-TamDevice",
                                  L"-Status",
                                  L"-Status"};

const Names kInterceptor = {L"-InterceptGetDataFromDevice", L"-InterceptAttributeValueChanged",
                            L"-InterceptTypeChanged", L"-InterceptIsUnitsDependent",
                            L"-InterceptIsDifferential"};

const Names kManager = {L"-IsTamInternalObject", L"-IsTamObject", L"-CreateTamInternalAppObject",
                        L"-CreateTemplateTamInternalObject", L"-Init"};

const Names kCollection = {L"CallBack", L"Count", L"ExtendedKey", L"GlobalKey", L"-Item", L"-NewEnum"};

const Names kAttributeCollection = {L"Count", L"ExtendedKey", L"GlobalKey", L"-Item", L"-NewEnum"};

const Names kInput = {L"changeType", L"CallBack",    L"NodeType",        L"IsConnected", L"ConnectedType",
                      L"Visible",    L"Mandatory",   L"Value",           L"-Value",      L"Name",
                      L"GlobalKey",  L"-Extended",   L"Index",           L"CDBPosition", L"SNVTCompatibles",
                      L"-Parent",    L"ExtendedKey", L"IsMacroConnected"};

const Names kConnable = {L"IsConnected",   L"HasPriority", L"IncrementalConnIndex",
                         L"ConnectedType", L"itemType",    L"GlobalKey",
                         L"Name",          L"SNVTType",    L"IsSNVTCompatible"};

const Names kOutput = {L"IsConnected",     L"CallBack",    L"changeType",       L"NodeType",
                       L"Visible",         L"Name",        L"GlobalKey",        L"-Index",
                       L"SNVTCompatible",  L"SNVTType",    L"-Parent",          L"DisplayWritable",
                       L"IsTypeDependent", L"ExtendedKey", L"IsMacroConnected", L"IsDisplayable",
                       L"-IsDisplayable"};

const Names kDisplayItem = {L"DisplayText", L"DisplayText",   L"key",         L"itemType",
                            L"Icon",        L"IsWritable",    L"IsTrendable", L"-Reference",
                            L"IsConnected", L"IsDisplayable", L"SNVTType",    L"Fields"};

const Names kAttribute = {L"-Parent",
                          L"Visible",
                          L"SetValue",
                          L"IsUnit",
                          L"Description",
                          L"Value",
                          L"DispValue",
                          L"DispMin",
                          L"DispMax",
                          L"DispDefault",
                          L"-Value",
                          L"Name",
                          L"NodeType",
                          L"GlobalKey",
                          L"SNVTType",
                          L"BackToDefault",
                          L"DefaultValue",
                          L"Tag",
                          L"Tag",
                          L"Fields",
                          L"CallBack",
                          L"CDBPosition",
                          L"ToolOnly",
                          L"IsDeviceDependent",
                          L"IsUnitDependent",
                          L"DeviceKey",
                          L"IsKeepFloatStandard",
                          L"DividedBy",
                          L"IsType",
                          L"Min",
                          L"Max",
                          L"ExtendedKey",
                          L"IsMacroConnected"};

void Add(std::vector<SlotCase>& cases, const char* place, const IID& iid, const Names& names) {
    unsigned slot = kFirstSlot;
    for (const std::wstring_view name : names) {
        const bool isForwarded = name.front() != L'-';
        cases.push_back({place, &iid, slot++, std::wstring(name.substr(isForwarded ? 0 : 1)), isForwarded});
    }
}

} // namespace

std::string SlotCase::Title() const {
    std::string title = place + "_" + std::to_string(slot) + "_";
    std::transform(name.begin(), name.end(), std::back_inserter(title),
                   [](wchar_t letter) { return static_cast<char>(letter); });
    return title;
}

const std::vector<SlotCase>& AllSlots() {
    static const std::vector<SlotCase> cases = [] {
        std::vector<SlotCase> all;
        Add(all, "IAppObject", __uuidof(IAppObject), kAppObject);
        Add(all, "ITamInternalAppObject", __uuidof(ITamInternalAppObject), kInternalAppObject);
        Add(all, "IAttributeInterceptor", __uuidof(IAttributeInterceptor), kInterceptor);
        Add(all, "ITamObjectManager", __uuidof(ITamObjectManager), kManager);
        Add(all, "IInputs", __uuidof(IInputs), kCollection);
        Add(all, "IInput", __uuidof(IInput), kInput);
        Add(all, "ISubItemConnableInput", __uuidof(ISubItemConnable), kConnable);
        Add(all, "IOutputs", __uuidof(IOutputs), kCollection);
        Add(all, "IOutput", __uuidof(IOutput), kOutput);
        Add(all, "ISubItemConnableOutput", __uuidof(ISubItemConnable), kConnable);
        Add(all, "IDisplayItem", __uuidof(IDisplayItem), kDisplayItem);
        Add(all, "IAttributes", __uuidof(IAttributes), kAttributeCollection);
        Add(all, "IAttribute", __uuidof(IAttribute), kAttribute);
        return all;
    }();
    return cases;
}

std::vector<SlotCase> ForwardedSlots() {
    std::vector<SlotCase> forwarded;
    std::copy_if(AllSlots().begin(), AllSlots().end(), std::back_inserter(forwarded),
                 [](const SlotCase& one) { return one.isForwarded; });
    return forwarded;
}

} // namespace internal_tests
