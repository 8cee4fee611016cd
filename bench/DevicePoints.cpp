#include "bench/DevicePoints.h"

#include "bench/Text.h"

#include <string>
#include <utility>

namespace bench {

namespace {

// Where a definition lists the points of a kind, and where its configuration does.
struct Section {
    const char* kind;
    const wchar_t* points;
    const wchar_t* configured;
};
constexpr Section kSections[] = {
    {"input", L"InReferences", L"TAMConfig/InReferences/InReference"},
    {"output", L"OutReferences", L"TAMConfig/OutReferences/OutReference"},
    {"attribute", L"Attributes", L"TAMConfig/Attributes/Attrib"},
};

template <class Point>
com::Ref<ISNVType> TypeOf(Point& point) {
    com::Ref<ISNVType> type;
    com::Call(point, &Point::get_SNVTType, type.Put());
    return type;
}

Json ReadPoint(IInput& input) {
    return {{"kind", "input"},
            {"name", TextOf(input, &IInput::get_Name)},
            {"visible", FlagOf(input, &IInput::get_Visible)},
            {"accepts", ReadAccepted(input)},
            {"value", TextOf(input, &IInput::get_Value)}};
}

Json ReadPoint(IOutput& output) {
    return {{"kind", "output"},
            {"name", TextOf(output, &IOutput::get_Name)},
            {"visible", FlagOf(output, &IOutput::get_Visible)},
            {"type", ReadType(TypeOf(output).Get())},
            {"displayable", FlagOf(output, &IOutput::get_IsDisplayable)}};
}

Json ReadPoint(IAttribute& attribute) {
    const auto type = TypeOf(attribute);
    return {{"kind", "attribute"},
            {"name", TextOf(attribute, &IAttribute::get_Name)},
            {"visible", FlagOf(attribute, &IAttribute::get_Visible)},
            {"type", ReadType(type.Get())},
            {"value", TextOf(attribute, &IAttribute::get_Value)},
            {"display", type ? Json(TextOf(attribute, &IAttribute::get_DispValue)) : Json()}};
}

/// The module's item for a point of a channel; null when it has none.
Json ReadItem(IAppObject& module, const Json& point, const std::wstring& name) {
    if (point["kind"] == "input") {
        const auto input = FindInput(module, name);
        return input ? ReadPoint(*input.Get()) : Json();
    }
    if (point["kind"] == "output") {
        const auto output = FindOutput(module, name);
        return output ? ReadPoint(*output.Get()) : Json();
    }
    const auto attribute = FindAttribute(module, name);
    return attribute ? ReadPoint(*attribute.Get()) : Json();
}

xml::Node Definition(IAppObject& app) {
    com::Ref<ILibraryService> service;
    com::Check(CoCreateInstance(__uuidof(LibraryService), nullptr, CLSCTX_INPROC_SERVER,
                                __uuidof(ILibraryService), service.PutVoid()));
    com::Ref<ILibrary> library;
    com::Call(service, &ILibraryService::get_Library, library.Put());
    com::Ref<IDispatch> document;
    com::Call(library, &ILibrary::DefinitionDocument,
              com::Bstr(WideOf(app, &IAppObject::get_UniqueIDString)).Get(), document.Put());
    com::Ref<IXMLDOMElement> root;
    com::Call(document.As<IXMLDOMDocument2>(), &IXMLDOMDocument::get_documentElement, root.Put());
    return {root};
}

/// The text at a path, null when there is none.
Json TextOrNone(const xml::Node& from, const std::wstring& path) {
    const xml::Node node = xml::Select(from, path);
    return node ? Json(Utf8(xml::TextOf(node))) : Json();
}

/// What a definition says of a point's visibility: its own VISIBLE, and the
/// Visible of the configuration, which has the last word.
Json ReadVisibility(const xml::Node& definition, const Json& point) {
    const std::wstring name = Wide(point["name"].get<std::string>());
    for (const Section& section : kSections) {
        if (point["kind"] == section.kind) {
            return {{"VISIBLE", TextOrNone(definition, section.points + (L"/" + name) + L"/VISIBLE")},
                    {"TAMConfig",
                     TextOrNone(definition, section.configured + (L"[@Name=\"" + name) + L"\"]/@Visible")}};
        }
    }
    return nullptr;
}

/// What the channel and the module keep in step: a value, or an output's flag.
Json StateOf(const Json& point) {
    return point["kind"] == "output" ? point["displayable"] : point["value"];
}

void SetState(Host& host, const Channel& channel, const Json& point, const Json& state) {
    const std::wstring name = Wide(point["name"].get<std::string>());
    if (state.is_boolean()) {
        SetDisplayed(host, channel, name, state.get<bool>());
    } else {
        SetPoint(host, channel, name, Wide(state.get<std::string>()));
    }
}

/// The channel's points that the module has items for with another state.
Json Differing(const OpenedDevice& device, const Channel& channel) {
    Json differing = Json::array();
    for (const Json& point : ReadPoints(device, channel)) {
        const Json& item = point["moduleItem"];
        if (!item.is_null() && StateOf(point) != StateOf(item)) {
            differing.push_back(point);
        }
    }
    return differing;
}

} // namespace

Json ReadPoints(IAppObject& object) {
    Json points = Json::array();
    const auto add = [&](auto& point) { points.push_back(ReadPoint(point)); };
    ForEachInput(object, add);
    ForEachOutput(object, add);
    ForEachAttribute(object, add);
    return points;
}

Json ReadPoints(const OpenedDevice& device, const Channel& channel) {
    Json points = ReadPoints(*channel.app.Get());
    for (Json& point : points) {
        const std::wstring name = channel.key + L"_" + Wide(point["name"].get<std::string>());
        point["moduleItem"] = ReadItem(device.Module().App(), point, name);
    }
    return points;
}

Json ReadChannel(const OpenedDevice& device, const Channel& channel) {
    Json result;
    device.Module().Step("reading " + Utf8(channel.key), [&] {
        IAppObject& app = *channel.app.Get();
        Json points = ReadPoints(device, channel);
        const xml::Node definition = Definition(app);
        for (Json& point : points) {
            point["visibility"] = ReadVisibility(definition, point);
        }
        result = {
            {"objectKey", TextOf(*channel.item.Get(), &ITamInternalAppObject::get_TamInternalObjectKey)},
            {"deviceKey", TextOf(*channel.item.Get(), &ITamInternalAppObject::get_TamDeviceKey)},
            {"name", TextOf(app, &IAppObject::get_Name)},
            {"definition", TextOf(app, &IAppObject::get_UniqueIDString)},
            {"description", TextOf(app, &IAppObject::get_Description)},
            {"userName", TextOf(app, &IAppObject::get_UserName)},
            {"globalKey", TextOf(app, &IAppObject::get_GlobalKey)},
            {"x", NumberOf(app, &IAppObject::get_XPosition)},
            {"y", NumberOf(app, &IAppObject::get_YPosition)},
            {"virtual", FlagOf(app, &IAppObject::get_IsVirtual)},
            {"points", std::move(points)}};
    });
    return result;
}

void SetPoint(Host& host, const Channel& channel, const std::wstring& name, const std::wstring& value) {
    const std::string title = Utf8(channel.key) + "." + Utf8(name);
    host.Step("setting " + title, [&] {
        const com::Bstr text(value);
        if (const auto attribute = FindAttribute(*channel.app.Get(), name)) {
            com::Call(attribute, &IAttribute::put_Value, text.Get());
        } else if (const auto input = FindInput(*channel.app.Get(), name)) {
            com::Call(input, &IInput::put_Value, text.Get());
        } else {
            throw BenchError(E_INVALIDARG, "there is no attribute or input \"" + title + "\"");
        }
    });
}

void SetDisplayed(Host& host, const Channel& channel, const std::wstring& name, bool displayed) {
    const std::string title = Utf8(channel.key) + "." + Utf8(name);
    host.Step("displaying " + title, [&] {
        const auto output = FindOutput(*channel.app.Get(), name);
        if (!output) {
            throw BenchError(E_INVALIDARG, "there is no output \"" + title + "\"");
        }
        com::Call(output, &IOutput::put_IsDisplayable, displayed ? VARIANT_TRUE : VARIANT_FALSE);
    });
}

void TakeFromModule(const OpenedDevice& device, const Channel& channel) {
    for (const Json& point : Differing(device, channel)) {
        SetState(device.Module(), channel, point, StateOf(point["moduleItem"]));
    }
}

Json BringInLine(const OpenedDevice& device, const Channel& channel) {
    Json changes = Json::array();
    for (const Json& point : Differing(device, channel)) {
        const Json& item = point["moduleItem"];
        SetState(device.Module(), channel, point, StateOf(point));
        const std::wstring name = Wide(item["name"].get<std::string>());
        changes.push_back({{"objectKey", Utf8(channel.key)},
                           {"name", point["name"]},
                           {"moduleItem", item["name"]},
                           {"before", StateOf(item)},
                           {"after", StateOf(ReadItem(device.Module().App(), point, name))}});
    }
    return changes;
}

} // namespace bench
