#include "bench/Model.h"

#include "bench/Host.h"
#include "com/Enumerator.h"

#include <string_view>

namespace bench {

namespace {

/// Calls visit for each item of a collection, as For Each does.
template <class Item, class Collection>
void ForEach(Collection& collection, const std::function<void(Item&)>& visit) {
    com::Ref<IUnknown> enumerator;
    com::Call(collection, &Collection::get_NewEnum, enumerator.Put());
    const auto variants = enumerator.template As<IEnumVARIANT>();
    com::CheckSet(variants.Get());
    com::ForEachItem(*variants.Get(), [&](com::Variant& value) {
        const auto item = com::Query<Item>(value.Get().punkVal);
        com::CheckSet(item.Get());
        visit(*item.Get());
        return true;
    });
}

template <class Item, class Collection>
com::Ref<Item> Find(Collection& collection, const std::wstring& name) {
    com::Ref<Item> item;
    com::Call(collection, &Collection::get_Item, com::Bstr(name).Get(), item.Put());
    if (item && lstrcmpiW(WideOf(*item.Get(), &Item::get_Name).c_str(), name.c_str()) != 0) {
        item.Reset();
    }
    return item;
}

template <class Collection>
com::Ref<Collection> CollectionOf(IAppObject& object,
                                  HRESULT (STDMETHODCALLTYPE IAppObject::*member)(Collection**)) {
    com::Ref<Collection> collection;
    com::Call(object, member, collection.Put());
    com::CheckSet(collection.Get());
    return collection;
}

std::string TextBelow(const xml::Node& element, const std::wstring& path) {
    return Utf8(xml::TextAt(element, path));
}

/// The type of an input as the stream gives it: the component looks up only
/// the types of outputs and attributes.
Json TypeByNumber(const Host& host, const std::wstring& id) {
    if (id.empty()) {
        return nullptr;
    }
    return {{"id", Utf8(id)}, {"name", Utf8(host.CatalogueText(id, L"Name"))}};
}

} // namespace

void ForEachInput(IAppObject& object, const std::function<void(IInput&)>& visit) {
    ForEach(*CollectionOf(object, &IAppObject::get_Inputs).Get(), visit);
}

void ForEachOutput(IAppObject& object, const std::function<void(IOutput&)>& visit) {
    ForEach(*CollectionOf(object, &IAppObject::get_Outputs).Get(), visit);
}

void ForEachAttribute(IAppObject& object, const std::function<void(IAttribute&)>& visit) {
    ForEach(*CollectionOf(object, &IAppObject::get_Attributes).Get(), visit);
}

com::Ref<IInput> FindInput(IAppObject& object, const std::wstring& name) {
    return Find<IInput>(*CollectionOf(object, &IAppObject::get_Inputs).Get(), name);
}

com::Ref<IOutput> FindOutput(IAppObject& object, const std::wstring& name) {
    return Find<IOutput>(*CollectionOf(object, &IAppObject::get_Outputs).Get(), name);
}

com::Ref<IAttribute> FindAttribute(IAppObject& object, const std::wstring& name) {
    return Find<IAttribute>(*CollectionOf(object, &IAppObject::get_Attributes).Get(), name);
}

xml::Node Interoperability(Host& host) {
    const xml::Document document = xml::New();
    const xml::Node root = xml::Append(document, xml::Node(document), L"Interoperability");
    host.Step("XMLSaveForInteroperability", [&] {
        com::Call(host.App(), &IAppObject::XMLSaveForInteroperability, root.Get(), document.Get());
    });
    xml::Node element;
    com::Call(root, &IXMLDOMNode::get_firstChild, element.Put());
    com::CheckSet(element.Get());
    return element;
}

xml::ElementIndex PointsIn(const xml::Node& interoperability, const wchar_t* kind) {
    const xml::Node points = xml::Select(interoperability, kind);
    return points ? xml::IndexOf(points) : xml::ElementIndex();
}

Json ReadType(ISNVType* type) {
    if (type == nullptr) {
        return nullptr;
    }
    return {{"id", TextOf(*type, &ISNVType::get_ID)},
            {"name", TextOf(*type, &ISNVType::get_Name)},
            {"generalType", TextOf(*type, &ISNVType::get_GenType)},
            {"luiType", TextOf(*type, &ISNVType::get_LUIType)},
            {"length", NumberOf(*type, &ISNVType::get_Length)},
            {"min", TextOf(*type, &ISNVType::get_Min)},
            {"max", TextOf(*type, &ISNVType::get_Max)},
            {"unit", TextOf(*type, &ISNVType::get_Units)},
            {"bacnetUnit", TextOf(*type, &ISNVType::get_BACnetUnits)},
            {"a", NumberOf(*type, &ISNVType::get_ACoef)},
            {"b", NumberOf(*type, &ISNVType::get_BCoef)},
            {"c", NumberOf(*type, &ISNVType::get_CCoef)},
            {"factor", NumberOf(*type, &ISNVType::get_Factor)},
            {"z3Region", NumberOf(*type, &ISNVType::get_Z3Region)},
            {"invalidValue", TextOf(*type, &ISNVType::get_InvalidValue)},
            {"enumDesc", TextOf(*type, &ISNVType::get_EnumDesc)}};
}

Json ReadAccepted(IInput& input) {
    com::Ref<ICompatibleSNVTs> accepted;
    com::Call(input, &IInput::get_SNVTCompatibles, accepted.Put());
    com::CheckSet(accepted.Get());
    Json identifiers = Json::array();
    const std::function<void(ICompatibleSNVT&)> visit = [&](ICompatibleSNVT& entry) {
        identifiers.push_back(TextOf(entry, &ICompatibleSNVT::get_ID));
    };
    ForEach(*accepted.Get(), visit);
    return identifiers;
}

Json ReadValue(IAttribute& attribute) {
    com::Ref<ISNVType> type;
    com::Call(attribute, &IAttribute::get_SNVTType, type.Put());
    return {{"value", TextOf(attribute, &IAttribute::get_Value)},
            {"display", type ? Json(TextOf(attribute, &IAttribute::get_DispValue)) : Json()}};
}

Json ReadModule(Host& host) {
    IAppObject& app = host.App();
    ITamObject& tam = host.Tam();
    Json module;
    host.Step("reading the module", [&] {
        module = {{"programmaticId", TextOf(app, &IAppObject::get_ProgrammaticID)},
                  {"definition", TextOf(app, &IAppObject::get_UniqueIDString)},
                  {"name", TextOf(app, &IAppObject::get_Name)},
                  {"userName", TextOf(app, &IAppObject::get_UserName)},
                  {"id", TextOf(app, &IAppObject::get_ID)},
                  {"description", TextOf(app, &IAppObject::get_Description)},
                  {"category", TextOf(app, &IAppObject::get_Category)},
                  {"globalKey", TextOf(app, &IAppObject::get_GlobalKey)},
                  {"extendedKey", TextOf(app, &IAppObject::get_ExtendedKey)},
                  {"deviceKey", Utf8(host.DeviceKey())},
                  {"objectId", NumberOf(tam, &ITamObject::get_TamObjectID)},
                  {"address", NumberOf(tam, &ITamObject::get_Address)},
                  {"cdbSize", NumberOf(app, &IAppObject::get_CDBDimension)},
                  {"ddbSize", NumberOf(app, &IAppObject::get_DDBDimension)},
                  {"nodeType", NumberOf(app, &IAppObject::get_NodeType)},
                  {"datasheetAvailable", FlagOf(app, &IAppObject::get_DatasheetAvailable)}};
    });
    return module;
}

Json ReadInputs(Host& host, const xml::Node& interoperability) {
    Json inputs = Json::array();
    const xml::ElementIndex described = PointsIn(interoperability, L"Inputs");
    host.Step("reading the inputs", [&] {
        ForEachInput(host.App(), [&](IInput& input) {
            const std::wstring name = WideOf(input, &IInput::get_Name);
            const xml::Node& point = described.at(name);
            com::Ref<ISNVType> connectedType;
            com::Call(input, &IInput::get_ConnectedType, connectedType.Put());
            inputs.push_back(
                {{"name", Utf8(name)},
                 {"index", NumberOf(input, &IInput::get_Index)},
                 {"type", TypeByNumber(host, xml::TextAt(point, L"SNVTType"))},
                 {"accepts", ReadAccepted(input)},
                 {"reference", TextBelow(point, L"Reference")},
                 {"logicalAddress", TextBelow(point, L"LogicalAddress")},
                 {"permanent", TextBelow(point, L"isPermanent") == "True"},
                 {"value", TextOf(input, &IInput::get_Value)},
                 {"connected", FlagOf(input, &IInput::get_IsConnected)},
                 {"connectedType",
                  connectedType ? Json(TextOf(*connectedType.Get(), &ISNVType::get_ID)) : Json()},
                 {"macroConnected", FlagOf(input, &IInput::get_IsMacroConnected)},
                 {"globalKey", TextOf(input, &IInput::get_GlobalKey)},
                 {"extendedKey", TextOf(input, &IInput::get_ExtendedKey)}});
        });
    });
    return inputs;
}

Json ReadOutputs(Host& host, const xml::Node& interoperability) {
    Json outputs = Json::array();
    const xml::ElementIndex described = PointsIn(interoperability, L"Outputs");
    host.Step("reading the outputs", [&] {
        ForEachOutput(host.App(), [&](IOutput& output) {
            const std::wstring name = WideOf(output, &IOutput::get_Name);
            com::Ref<ISNVType> type;
            com::Call(output, &IOutput::get_SNVTType, type.Put());
            const auto item = com::Query<IDisplayItem>(&output);
            com::CheckSet(item.Get());
            outputs.push_back({{"name", Utf8(name)},
                               {"index", NumberOf(output, &IOutput::get_Index)},
                               {"type", ReadType(type.Get())},
                               {"reference", TextOf(*item.Get(), &IDisplayItem::get_Reference)},
                               {"logicalAddress", TextBelow(described.at(name), L"LogicalAddress")},
                               {"connected", FlagOf(output, &IOutput::get_IsConnected)},
                               {"displayable", FlagOf(output, &IOutput::get_IsDisplayable)},
                               {"displayWritable", FlagOf(output, &IOutput::get_DisplayWritable)},
                               {"macroConnected", FlagOf(output, &IOutput::get_IsMacroConnected)},
                               {"globalKey", TextOf(output, &IOutput::get_GlobalKey)},
                               {"extendedKey", TextOf(output, &IOutput::get_ExtendedKey)}});
        });
    });
    return outputs;
}

Json ReadAttributes(Host& host) {
    Json attributes = Json::array();
    host.Step("reading the attributes", [&] {
        ForEachAttribute(host.App(), [&](IAttribute& attribute) {
            com::Ref<ISNVType> type;
            com::Call(attribute, &IAttribute::get_SNVTType, type.Put());
            attributes.push_back(
                {{"name", TextOf(attribute, &IAttribute::get_Name)},
                 {"type", ReadType(type.Get())},
                 {"value", TextOf(attribute, &IAttribute::get_Value)},
                 {"display", type ? Json(TextOf(attribute, &IAttribute::get_DispValue)) : Json()},
                 {"macroConnected", FlagOf(attribute, &IAttribute::get_IsMacroConnected)},
                 {"globalKey", TextOf(attribute, &IAttribute::get_GlobalKey)},
                 {"extendedKey", TextOf(attribute, &IAttribute::get_ExtendedKey)}});
        });
    });
    return attributes;
}

Json ReadWires(const Host& host) {
    Json wires = Json::array();
    for (const Wire& wire : host.Wires()) {
        wires.push_back({{"input", wire.input},
                         {"reference", wire.reference},
                         {"result", wire.result},
                         {"reason", wire.reason}});
    }
    return wires;
}

std::string DisplayOf(const Json& value) {
    return value["display"].is_null() ? "" : value["display"];
}

std::string TypeTitle(const Json& type) {
    constexpr std::string_view kPrefix = "SNVT_";
    if (type.is_null() || type["id"].get<std::string>().empty()) {
        return "-";
    }
    const std::string name = type["name"];
    return type["id"].get<std::string>() + " " +
           (name.starts_with(kPrefix) ? name.substr(kPrefix.size()) : name);
}

} // namespace bench
