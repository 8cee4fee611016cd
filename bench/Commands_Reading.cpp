#include "bench/Commands.h"
#include "bench/Model.h"
#include "bench/Text.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <string_view>

namespace bench {

namespace {

std::string YesNo(const Json& flag) {
    return flag.get<bool>() ? "yes" : "no";
}

std::string Number(const Json& value) {
    return std::to_string(value.get<long>());
}

std::string Join(const Json& texts) {
    std::string joined;
    for (const Json& text : texts) {
        joined += (joined.empty() ? "" : ",") + text.get<std::string>();
    }
    return joined;
}

Fields ModuleFields(const Json& module) {
    Fields fields;
    fields.Add("Name", module["name"]);
    fields.Add("Kind", module["id"].get<std::string>() + ", " + module["category"].get<std::string>());
    fields.Add("Description", module["description"]);
    fields.Add("Object", "number " + Number(module["objectId"]) + " of device " +
                             module["deviceKey"].get<std::string>() + ", address " +
                             Number(module["address"]));
    fields.Add("Keys in the host",
               module["globalKey"].get<std::string>() + "  and  " + module["extendedKey"].get<std::string>());
    fields.Add("Database sizes", Number(module["cdbSize"]) + " bytes of configuration (CDB), " +
                                     Number(module["ddbSize"]) + " of data (DDB), as loaded");
    fields.Add("Made by", module["programmaticId"].get<std::string>() + " with the definition " +
                              module["definition"].get<std::string>() + ".xml");
    fields.Add("Data sheet", YesNo(module["datasheetAvailable"]));
    return fields;
}

// Rows are numbered as Item counts, from 1; the points' own Index counts from 0.
Table InputTable(const Json& inputs) {
    Table table(
        {">#", "Input", "Type (SNVT)", "Accepts", "Reference", ">Address", "Permanent", "Wired", "Value"});
    std::size_t number = 0;
    for (const Json& input : inputs) {
        table.Add({std::to_string(++number), input["name"], TypeTitle(input["type"]), Join(input["accepts"]),
                   input["reference"], input["logicalAddress"], YesNo(input["permanent"]),
                   YesNo(input["connected"]), input["value"]});
    }
    return table;
}

Table OutputTable(const Json& outputs) {
    Table table({">#", "Output", "Type (SNVT)", "Kind", "Unit", "Reference", ">Address", "Shown", "Wired"});
    std::size_t number = 0;
    for (const Json& output : outputs) {
        const Json& type = output["type"];
        table.Add({std::to_string(++number), output["name"], TypeTitle(type),
                   type.is_null() ? "" : type["generalType"].get<std::string>(),
                   type.is_null() ? "" : type["unit"].get<std::string>(), output["reference"],
                   output["logicalAddress"], YesNo(output["displayable"]), YesNo(output["connected"])});
    }
    return table;
}

Table AttributeTable(const Json& attributes) {
    Table table({"Attribute", "Type (SNVT)", "Kind", "Value", "Displayed as"});
    for (const Json& attribute : attributes) {
        const Json& type = attribute["type"];
        const Json& display = attribute["display"];
        table.Add({attribute["name"], TypeTitle(type),
                   type.is_null() ? "" : type["generalType"].get<std::string>(), attribute["value"],
                   display.is_null() ? "" : display.get<std::string>()});
    }
    return table;
}

Table WireTable(const Json& wires) {
    Table table({"Input", "Reference", "Result", "Because"});
    for (const Json& wire : wires) {
        if (wire["result"] != "left open") {
            table.Add({wire["input"], wire["reference"], wire["result"], wire["reason"]});
        }
    }
    return table;
}

/// The types of a catalogue as a stream with one attribute of each, so that
/// each has a type object of its own.
std::wstring StreamOfAllTypes(const xml::Node& catalogue) {
    constexpr std::wstring_view kPrefix = L"SNVT_";
    std::wstring attributes;
    xml::ForEachElement(catalogue, [&](const xml::Node& entry) {
        const std::wstring name = xml::NameOf(entry);
        if (name.starts_with(kPrefix)) {
            const std::wstring id = name.substr(kPrefix.size());
            attributes += L"<T" + id + L"><SNVTTYPE>" + id + L"</SNVTTYPE></T" + id + L">";
        }
    });
    return L"<Tam><Name>Catalogue</Name><DevKey/><IsLastOnDev>0</IsLastOnDev><TamObjID>0</"
           L"TamObjID><Attributes>" +
           attributes + L"</Attributes></Tam>";
}

bool Holds(const Json& type, const std::wstring& filter) {
    for (const char* const key : {"id", "name", "generalType", "unit"}) {
        const std::wstring text = Wide(type[key].get<std::string>());
        for (std::size_t at = 0; at + filter.size() <= text.size(); ++at) {
            if (CompareStringOrdinal(text.c_str() + at, static_cast<int>(filter.size()), filter.c_str(),
                                     static_cast<int>(filter.size()), TRUE) == CSTR_EQUAL) {
                return true;
            }
        }
    }
    return filter.empty();
}

/// A limit, in the short form of a floating-point number when it is long.
std::string Limit(const std::string& text) {
    constexpr std::size_t kLongest = 14;
    if (text.size() <= kLongest) {
        return text;
    }
    std::array<char, 32> number = {};
    const auto result = std::to_chars(number.data(), number.data() + number.size(),
                                      std::strtod(text.c_str(), nullptr), std::chars_format::general, 6);
    return {number.data(), result.ptr};
}

std::string Range(const Json& type) {
    const std::string min = Limit(type["min"]);
    const std::string max = Limit(type["max"]);
    return min.empty() && max.empty() ? type["enumDesc"].get<std::string>() : min + " to " + max;
}

} // namespace

std::string Summary(Host& host) {
    std::size_t inputs = 0;
    std::size_t outputs = 0;
    std::size_t attributes = 0;
    ForEachInput(host.App(), [&](IInput&) { ++inputs; });
    ForEachOutput(host.App(), [&](IOutput&) { ++outputs; });
    ForEachAttribute(host.App(), [&](IAttribute&) { ++attributes; });
    return "\"" + TextOf(host.App(), &IAppObject::get_UserName) + "\" with " + Count(inputs, "input") + ", " +
           Count(outputs, "output") + " and " + Count(attributes, "attribute");
}

void LoadAndTell(Host& host, Answer& answer) {
    host.LoadStream();
    answer.Line("Loaded " + answer.data["stream"].get<std::string>() + ": " + Summary(host) + ".");
}

void Inspect(Host& host, const Options& options, Answer& answer) {
    LoadAndTell(host, answer);
    const xml::Node interoperability = Interoperability(host);
    const Json& module = answer.data["module"] = ReadModule(host);
    answer.Heading("The module");
    answer.Add(ModuleFields(module));

    const Json& inputs = answer.data["inputs"] = ReadInputs(host, interoperability);
    answer.Heading("Inputs (" + std::to_string(inputs.size()) +
                   "): what other objects' outputs are wired to");
    answer.Add(InputTable(inputs));
    if (options.wire) {
        const Json& wires = answer.data["wires"] = ReadWires(host);
        answer.Heading("Wiring by the references of the stream");
        answer.Add(WireTable(wires));
    }

    const Json& outputs = answer.data["outputs"] = ReadOutputs(host, interoperability);
    answer.Heading("Outputs (" + std::to_string(outputs.size()) + "): values that the module publishes");
    answer.Add(OutputTable(outputs));

    const Json& attributes = answer.data["attributes"] = ReadAttributes(host);
    answer.Heading("Attributes (" + std::to_string(attributes.size()) + "): how the module is configured");
    answer.Add(AttributeTable(attributes));
}

void Types(Host& host, const Options& options, Answer& answer) {
    answer.data["catalogue"] = Utf8(host.CatalogueFile());
    host.LoadStreamText(StreamOfAllTypes(host.Catalogue()));
    const Json attributes = ReadAttributes(host);
    Json& types = answer.data["types"] = Json::array();
    Table table({">Number", "Name", "Kind", ">Bytes", "Range or values", "Unit"});
    for (const Json& attribute : attributes) {
        const Json& type = attribute["type"];
        if (!type.is_null() && Holds(type, options.filter)) {
            types.push_back(type);
            const bool hasLength = type["length"] != 0;
            table.Add({type["id"], type["name"], type["generalType"], hasLength ? Number(type["length"]) : "",
                       Range(type), type["unit"]});
        }
    }
    answer.data["inCatalogue"] = attributes.size();
    answer.Heading(std::to_string(types.size()) + " of the " + std::to_string(attributes.size()) +
                   " network variable types in " + Utf8(host.CatalogueFile()));
    answer.Add(table);
}

} // namespace bench
