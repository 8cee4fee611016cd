#include "bench/Commands.h"
#include "bench/Explanations.h"
#include "bench/Model.h"
#include "bench/Text.h"

#include <string>
#include <utility>

namespace bench {

namespace {

void ShowOrSave(const xml::Node& root, const std::wstring& file, Answer& answer) {
    if (file.empty()) {
        answer.Document(xml::Print(root));
        return;
    }
    xml::Save(root, file);
    answer.data["file"] = Utf8(file);
    answer.Line("Written to " + Utf8(file) + ".");
}

std::string NumberText(double number) {
    return Utf8(com::TextOf(number));
}

/// What a project can restore.
Json ReadSaved(Host& host) {
    Json displayed = Json::array();
    ForEachOutput(host.App(), [&](IOutput& output) {
        if (FlagOf(output, &IOutput::get_IsDisplayable)) {
            displayed.push_back(TextOf(output, &IOutput::get_Name));
        }
    });
    return {{"userName", TextOf(host.App(), &IAppObject::get_UserName)},
            {"x", NumberOf(host.App(), &IAppObject::get_XPosition)},
            {"y", NumberOf(host.App(), &IAppObject::get_YPosition)},
            {"deviceKey", TextOf(host.Tam(), &ITamObject::get_DeviceKey)},
            {"objectId", NumberOf(host.Tam(), &ITamObject::get_TamObjectID)},
            {"displayedOutputs", displayed}};
}

std::string Shown(const Json& value) {
    if (value.is_string()) {
        return "\"" + value.get<std::string>() + "\"";
    }
    if (value.is_array()) {
        std::string names;
        for (const Json& name : value) {
            names += (names.empty() ? "" : ", ") + name.get<std::string>();
        }
        return names.empty() ? "none" : names;
    }
    return value.is_number_float() ? NumberText(value.get<double>()) : std::to_string(value.get<long>());
}

xml::Node FindObject(const xml::Node& document, const std::wstring& name, const std::wstring& file) {
    xml::Node element = xml::Select(document, L"//" + name);
    if (!element) {
        throw BenchError(E_INVALIDARG, Utf8(file) + " holds no element " + Utf8(name));
    }
    return element;
}

} // namespace

void Place(Host& host, const Options& options) {
    host.Step("placing the module", [&] {
        if (!options.userName.empty()) {
            com::Call(host.App(), &IAppObject::put_UserName, com::Bstr(options.userName).Get());
        }
        if (options.position.size() == 2) {
            com::Call(host.App(), &IAppObject::put_XPosition, options.position[0]);
            com::Call(host.App(), &IAppObject::put_YPosition, options.position[1]);
        }
        com::Call(host.Tam(), &ITamObject::put_DeviceKey, com::Bstr(host.DeviceKey()).Get());
        for (const std::wstring& name : options.displayed) {
            const com::Ref<IOutput> output = FindOutput(host.App(), name);
            if (!output) {
                throw BenchError(E_INVALIDARG, "there is no output \"" + Utf8(name) + "\"");
            }
            com::Call(output, &IOutput::put_IsDisplayable, VARIANT_TRUE);
        }
    });
}

void Save(Host& host, const Options& options, Answer& answer) {
    LoadAndTell(host, answer);
    SetValues(host, options, answer);
    Place(host, options);
    const xml::Document document = xml::New();
    const xml::Node project = xml::Append(document, xml::Node(document), L"Project");
    host.Step("XMLSave", [&] { com::Call(host.App(), &IAppObject::XMLSave, project.Get(), document.Get()); });
    xml::Node saved;
    com::Call(project, &IXMLDOMNode::get_firstChild, saved.Put());
    com::CheckSet(saved.Get());
    answer.data["element"] = xml::Print(saved);
    answer.Heading("What the component wrote into the project");
    answer.Document(xml::Print(saved));
    if (!options.output.empty()) {
        xml::Save(project, options.output);
        answer.data["file"] = Utf8(options.output);
        answer.Line("\nWritten to " + Utf8(options.output) + ".");
    }
}

void Load(Host& host, const Options& options, Answer& answer) {
    LoadAndTell(host, answer);
    AddSource(options.project, answer);
    const xml::Document document = xml::LoadFile(options.project);
    const std::wstring name = WideOf(host.App(), &IAppObject::get_UniqueIDString);
    const xml::Node element = FindObject(xml::Node(document), name, options.project);
    const Json before = ReadSaved(host);
    host.Step("XmlLoad", [&] { com::Call(host.App(), &IAppObject::XmlLoad, element.Get()); });
    const Json after = ReadSaved(host);
    answer.data["project"] = Utf8(options.project);
    answer.data["before"] = before;
    answer.data["after"] = after;

    const std::pair<const char*, const char*> rows[] = {
        {"userName", "User's name"},   {"x", "X position"},
        {"y", "Y position"},           {"deviceKey", "Key of the device"},
        {"objectId", "Object number"}, {"displayedOutputs", "Displayed outputs"}};
    Table table({"Saved with a project", "After the stream", "After the project", ""});
    for (const auto& [key, title] : rows) {
        table.Add({title, Shown(before[key]), Shown(after[key]), before[key] == after[key] ? "" : "changed"});
    }
    answer.Heading("What " + Utf8(options.project) + " restored");
    answer.Add(table);
}

void Interop(Host& host, const Options& options, Answer& answer) {
    LoadAndTell(host, answer);
    SetValues(host, options, answer);
    const xml::Node element = Interoperability(host);
    const auto count = [&](const wchar_t* section) {
        const xml::Node node = xml::Select(element, section);
        return node ? xml::CountElements(node) : 0;
    };
    const Json counts = {
        {"inputs", count(L"Inputs")}, {"outputs", count(L"Outputs")}, {"attributes", count(L"Attributes")}};
    answer.data["counts"] = counts;
    answer.data["element"] = xml::Print(element);
    answer.Heading("The module for other tools: " + Count(counts["inputs"], "input") + ", " +
                   Count(counts["outputs"], "output") + ", " + Count(counts["attributes"], "attribute"));
    ShowOrSave(element, options.output, answer);
}

} // namespace bench
