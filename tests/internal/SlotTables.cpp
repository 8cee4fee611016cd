#include "tests/internal/SlotTables.h"

#include <OrvDBFaces.h>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <string_view>

namespace internal_tests {

namespace {

constexpr unsigned kFirstSlot = 7;

/// As Member::Signature tells them. One with a leading "-" does not simply forward.
using Signatures = std::initializer_list<std::wstring_view>;

const Signatures kAppObject = {
    L"get IsPlugInActive() flag",
    L"get Path() text",
    L"put Path(text)",
    L"get ExecTime() long",
    L"get MaxInstances() long",
    L"-get CDBDimension() long",
    L"get Color() long",
    L"put Color(long)",
    L"SetColor(long)",
    L"get Width() long",
    L"get InputWidth() long",
    L"-get DDBDimension() long",
    L"-get SDBDimension() long",
    L"ClearReferences()",
    L"ViewDatasheet(any)",
    L"get DatasheetAvailable() flag",
    L"get PlugInAvailable() flag",
    L"get UserName() text",
    L"get UniqueIDString() text",
    L"get OwnerDeviceXML() IDispatch",
    L"set OwnerDeviceXML(IDispatch)",
    L"put UserName(text)",
    L"get Name() text",
    L"get NodeType() long",
    L"get Tag() text",
    L"put Tag(text)",
    L"get GlobalKey() text",
    L"put GlobalKey(text)",
    L"get key() text",
    L"put key(text)",
    L"get ID() text",
    L"get UniqueID() text",
    L"put UniqueID(text)",
    L"get Description() text",
    L"get Icon() IDispatch",
    L"get Category() text",
    L"-Create()",
    L"Show()",
    L"ObjectDebug()",
    L"Save(any)",
    L"Load(any)",
    L"-get Stream() text",
    L"get IntelStream() any",
    L"put Stream(text)",
    L"-get Inputs() IInputs",
    L"-get Outputs() IOutputs",
    L"-get Attributes() IAttributes",
    L"get Language() long",
    L"put Language(long)",
    L"Destroy()",
    L"get ProgrammaticID() text",
    L"set XmlSNVTDoc(IDispatch)",
    L"-XMLSave(IDispatch, IDispatch)",
    L"XMLSaveSim(IDispatch, IDispatch)",
    L"XMLSaveForInteroperability(IDispatch, IDispatch)",
    L"XmlLoad(IDispatch)",
    L"CallBack(IDispatch)",
    L"get Parent() IDispatch",
    L"set Parent(IDispatch)",
    L"get XPosition() double",
    L"put XPosition(double)",
    L"get YPosition() double",
    L"put YPosition(double)",
    L"put ManageShortFloat(flag)",
    L"Init(text) flag",
    L"-get ExportIndex() short",
    L"put ExportIndex(short)",
    L"-get NumObjects() short",
    L"get ExtendedKey() text",
    L"put ExtendedKey(text)",
    L"get IsDeviceDependent() flag",
    L"get UsesDeviceClock() flag",
    L"-get IsHidden() flag",
    L"-get IsVirtual() flag",
};

const Signatures kInternalAppObject = {
    L"-get TamDeviceKey() text",
    L"-get TamInternalObjectKey() text",
    L"-get TamObjectContainer() IDispatch",
    L"-get TempTamDeviceKey() text",
    L"-put TempTamDeviceKey(text)",
    L"-get TempTamInternalObjectKey() text",
    L"-put TempTamInternalObjectKey(text)",
    L"-get TamDevice() IDispatch",
    L"-get Status() long",
    L"-put Status(long)",
};

const Signatures kInterceptor = {
    L"-InterceptGetDataFromDevice(IAttribute) flag",
    L"-InterceptAttributeValueChanged(IAttribute) flag",
    L"-InterceptTypeChanged(IAttribute) flag",
    L"-InterceptIsUnitsDependent(IAttribute, &flag) flag",
    L"-InterceptIsDifferential(IAttribute, &flag) flag",
};

const Signatures kManager = {
    L"-IsTamInternalObject(text) flag",
    L"-IsTamObject(text) flag",
    L"-CreateTamInternalAppObject(&text, IDispatch) IAppObject",
    L"-CreateTemplateTamInternalObject() IAppObject",
    L"-Init(IDispatch)",
};

const Signatures kInputs = {
    L"set CallBack(IDispatch)", L"get Count() long",       L"get ExtendedKey() text",
    L"get GlobalKey() text",    L"-get Item(text) IInput", L"-get NewEnum() IUnknown",
};

const Signatures kOutputs = {
    L"set CallBack(IDispatch)", L"get Count() long",        L"get ExtendedKey() text",
    L"get GlobalKey() text",    L"-get Item(text) IOutput", L"-get NewEnum() IUnknown",
};

const Signatures kAttributes = {
    L"get Count() long",           L"get ExtendedKey() text",  L"get GlobalKey() text",
    L"-get Item(text) IAttribute", L"-get NewEnum() IUnknown",
};

const Signatures kInput = {
    L"changeType(any)",
    L"set CallBack(IDispatch)",
    L"get NodeType() long",
    L"get IsConnected() flag",
    L"get ConnectedType() ISNVType",
    L"get Visible() flag",
    L"get Mandatory() flag",
    L"get Value() text",
    L"-put Value(text)",
    L"get Name() text",
    L"get GlobalKey() text",
    L"-get Extended() flag",
    L"get Index() long",
    L"get CDBPosition() long",
    L"get SNVTCompatibles() ICompatibleSNVTs",
    L"-get Parent() IAppObject",
    L"get ExtendedKey() text",
    L"get IsMacroConnected() flag",
};

const Signatures kConnable = {
    L"put IsConnected(flag)",
    L"put HasPriority(flag)",
    L"put IncrementalConnIndex(long)",
    L"set ConnectedType(IDispatch)",
    L"get itemType() long",
    L"get GlobalKey() text",
    L"get Name() text",
    L"get SNVTType() ISNVType",
    L"get IsSNVTCompatible(text) flag",
};

const Signatures kOutput = {
    L"get IsConnected() flag",     L"set CallBack(IDispatch)",  L"changeType(any)",
    L"get NodeType() long",        L"get Visible() flag",       L"get Name() text",
    L"get GlobalKey() text",       L"-get Index() long",        L"get SNVTCompatible() ICompatibleSNVT",
    L"get SNVTType() ISNVType",    L"-get Parent() IAppObject", L"get DisplayWritable() flag",
    L"get IsTypeDependent() flag", L"get ExtendedKey() text",   L"get IsMacroConnected() flag",
    L"get IsDisplayable() flag",   L"-put IsDisplayable(flag)",
};

const Signatures kDisplayItem = {
    L"get DisplayText() text",   L"put DisplayText(text)",   L"get key() text",
    L"get itemType() long",      L"get Icon() IDispatch",    L"get IsWritable() flag",
    L"get IsTrendable() flag",   L"-get Reference() text",   L"get IsConnected() flag",
    L"get IsDisplayable() flag", L"get SNVTType() ISNVType", L"get Fields() IDispatch",
};

const Signatures kAttribute = {
    L"-get Parent() IAppObject",
    L"get Visible() flag",
    L"SetValue()",
    L"get IsUnit() flag",
    L"get Description() text",
    L"get Value() text",
    L"get DispValue() text",
    L"get DispMin() text",
    L"get DispMax() text",
    L"get DispDefault() text",
    L"-put Value(text)",
    L"get Name() text",
    L"get NodeType() long",
    L"get GlobalKey() text",
    L"get SNVTType() ISNVType",
    L"BackToDefault()",
    L"get DefaultValue() text",
    L"get Tag() text",
    L"put Tag(text)",
    L"get Fields() IDispatch",
    L"set CallBack(IDispatch)",
    L"get CDBPosition() long",
    L"get ToolOnly() flag",
    L"get IsDeviceDependent() flag",
    L"get IsUnitDependent() flag",
    L"get DeviceKey() text",
    L"get IsKeepFloatStandard() flag",
    L"get DividedBy() long",
    L"get IsType() flag",
    L"get Min() text",
    L"get Max() text",
    L"get ExtendedKey() text",
    L"get IsMacroConnected() flag",
};

// Those that no channel object has: of modules, their types and lists.

const Signatures kTamObject = {
    L"-get DeviceKey() text",     L"-put DeviceKey(text)",
    L"-get Address() short",      L"-put Address(short)",
    L"-get ApplicationID() text", L"-put ApplicationID(text)",
    L"-LoadFromXmlStream(text)",  L"-get TamObjectID() short",
    L"-put TamObjectID(short)",   L"-Contains(ITamInternalAppObject) flag",
};

const Signatures kType = {
    L"-get ID() text",           L"-get Z3Region() long",    L"-get Factor() long",   L"-get ACoef() long",
    L"-get BCoef() long",        L"-get CCoef() long",       L"-get GenType() text",  L"-get LUIType() text",
    L"-get InvalidValue() text", L"-get Name() text",        L"-get Min() text",      L"-get Max() text",
    L"-get Units() text",        L"-get BACnetUnits() text", L"-get EnumDesc() text", L"-get Length() long",
    L"-get HasField() flag",
};

const Signatures kEnumType = {
    L"-get EnumDesc() text",
    L"-put EnumDesc(text)",
    L"-get IsEnumType() flag",
};

const Signatures kMutableTypeAttribute = {L"-SetType(ISNVType)"};

const Signatures kCompatibles = {
    L"-Add(text)",
    L"-get Count() long",
    L"-Exists(text) flag",
    L"-get Item(long) ICompatibleSNVT",
    L"-Merge(ICompatibleSNVTs) ICompatibleSNVTs",
    L"-get NewEnum() IUnknown",
    L"-Remove(text)",
    L"-ToString() text",
};

const Signatures kCompatible = {L"-get ID() text"};
const Signatures kClonable = {L"-Clone() IDispatch"};

// The host's own, which a module asks for.

const Signatures kHostDocument = {L"-get View() IDispatch"};

/// What stands before has no name here.
constexpr unsigned kFiftyFirst = kFirstSlot + 50;
const Signatures kHostView = {L"-ShowObject()"};

constexpr unsigned kThird = kFirstSlot + 2;
const Signatures kDatabaseLocation = {L"-get Path() text"};

/// The member's name alone: what stands before the bracket and after the kind of access.
std::wstring_view NameIn(std::wstring_view signature) {
    const std::wstring_view label = signature.substr(0, signature.find(L'('));
    return label.substr(label.find(L' ') + 1); // from the start where there is no blank
}

void Add(std::vector<SlotCase>& cases, const char* place, const IID& iid, const Signatures& signatures,
         unsigned slot = kFirstSlot) {
    for (std::wstring_view signature : signatures) {
        const bool isForwarded = signature.front() != L'-';
        signature.remove_prefix(isForwarded ? 0 : 1);
        cases.push_back(
            {place, &iid, slot++, std::wstring(NameIn(signature)), std::wstring(signature), isForwarded});
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
        Add(all, "IInputs", __uuidof(IInputs), kInputs);
        Add(all, "IInput", __uuidof(IInput), kInput);
        Add(all, "ISubItemConnableInput", __uuidof(ISubItemConnable), kConnable);
        Add(all, "IOutputs", __uuidof(IOutputs), kOutputs);
        Add(all, "IOutput", __uuidof(IOutput), kOutput);
        Add(all, "ISubItemConnableOutput", __uuidof(ISubItemConnable), kConnable);
        Add(all, "IDisplayItem", __uuidof(IDisplayItem), kDisplayItem);
        Add(all, "IAttributes", __uuidof(IAttributes), kAttributes);
        Add(all, "IAttribute", __uuidof(IAttribute), kAttribute);
        Add(all, "ITamObject", __uuidof(ITamObject), kTamObject);
        Add(all, "ISNVType", __uuidof(ISNVType), kType);
        Add(all, "IEnumType", __uuidof(IEnumType), kEnumType);
        Add(all, "IMutableTypeAttribute", __uuidof(IMutableTypeAttribute), kMutableTypeAttribute);
        Add(all, "ICompatibleSNVTs", __uuidof(ICompatibleSNVTs), kCompatibles);
        Add(all, "ICompatibleSNVT", __uuidof(ICompatibleSNVT), kCompatible);
        Add(all, "IClonable", __uuidof(IClonable), kClonable);
        Add(all, "IHostDocument", __uuidof(IHostDocument), kHostDocument);
        Add(all, "IHostView", __uuidof(IHostView), kHostView, kFiftyFirst);
        Add(all, "IDatabaseLocation", __uuidof(IDatabaseLocation), kDatabaseLocation, kThird);
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
