#include "bench/DeviceSheet.h"

#include "bench/Commands.h"
#include "bench/Model.h"
#include "bench/SheetTypes.h"
#include "bench/Text.h"
#include "core/References.h"
#include "page/Icon.h"

#include <windows.h>

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace bench {

namespace {

using Row = std::vector<page::Cell>;

// Sections of a stream, in capitals.
constexpr const char* kInputs = "INREFERENCES";
constexpr const char* kOutputs = "OUTREFERENCES";
constexpr const char* kAttributes = "ATTRIBUTES";

std::string Joined(const std::vector<std::string>& texts) {
    std::string joined;
    for (const std::string& text : texts) {
        joined += (joined.empty() ? "" : ", ") + text;
    }
    return joined;
}

std::string Capitals(std::wstring text) {
    CharUpperBuffW(text.data(), static_cast<DWORD>(text.size()));
    return Utf8(text);
}

/// Texts of an element's children by their names in capitals, as the component finds them.
std::map<std::string, std::string> TextsBelow(const xml::Node& element) {
    std::map<std::string, std::string> texts;
    xml::ForEachElement(element, [&texts](const xml::Node& child) {
        texts[Capitals(xml::NameOf(child))] = Utf8(xml::TextOf(child));
    });
    return texts;
}

/// What a document says of a point: of the stream, its own; of the definition, of its
/// attribute.
class Documents {
  public:
    Documents(Host& host, const Options& options) {
        const xml::Document stream = xml::LoadText(host.StreamText());
        if (stream) {
            xml::ForEachElement(xml::Node(stream), [&](const xml::Node& root) {
                xml::ForEachElement(root, [&](const xml::Node& section) {
                    xml::ForEachElement(section, [&](const xml::Node& point) {
                        points_.emplace(Capitals(xml::NameOf(section)) + "/" + Utf8(xml::NameOf(point)),
                                        TextsBelow(point));
                    });
                });
            });
        }
        definition_ = ProgramFolder() + options.definition + L".xml";
        const xml::Node defaults = xml::Select(xml::Node(xml::LoadFile(definition_)), L"//Tam/Attributes");
        if (defaults) {
            xml::ForEachElement(defaults, [&](const xml::Node& attribute) {
                defaults_.emplace(Utf8(xml::NameOf(attribute)),
                                  Utf8(xml::TextAt(attribute, L"DefaultValue")));
            });
        }
    }

    /// The sections are those of a stream, in capitals.
    std::string OfPoint(const char* section, const std::string& name, const char* child) const {
        const auto point = points_.find(std::string(section) + "/" + name);
        if (point == points_.end()) {
            return "";
        }
        const auto text = point->second.find(child);
        return text != point->second.end() ? text->second : "";
    }

    /// Only numbers have one.
    std::string DefaultOf(const std::string& name, const Json& type) const {
        const std::string kind = type.is_null() ? "" : type["generalType"].get<std::string>();
        const auto text = defaults_.find(name);
        const bool isNumber = kind == "SignedNumeric" || kind == "UnsignedNumeric" || kind == "Float";
        return isNumber && text != defaults_.end() ? text->second : "";
    }

    const std::wstring& Definition() const noexcept { return definition_; }

  private:
    std::wstring definition_;
    std::map<std::string, std::map<std::string, std::string>> points_;
    std::map<std::string, std::string> defaults_;
};

/// "1.0.0" of a DLL or program; empty when its file says none.
std::string VersionOf(const wchar_t* name) {
    const HMODULE module = GetModuleHandleW(name);
    const auto* const kind = MAKEINTRESOURCEW(16); // RT_VERSION, for texts of wide characters
    const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(VS_VERSION_INFO), kind);
    const HGLOBAL loaded = resource != nullptr ? LoadResource(module, resource) : nullptr;
    if (loaded == nullptr) {
        return "";
    }
    // The fixed part stands after a header of three words and the name of the whole.
    constexpr std::size_t kFixedPart = 40;
    const auto* const info = reinterpret_cast<const VS_FIXEDFILEINFO*>(
        static_cast<const std::byte*>(LockResource(loaded)) + kFixedPart);
    if (SizeofResource(module, resource) < kFixedPart + sizeof *info ||
        info->dwSignature != VS_FFI_SIGNATURE) {
        return "";
    }
    return std::to_string(HIWORD(info->dwFileVersionMS)) + "." +
           std::to_string(LOWORD(info->dwFileVersionMS)) + "." +
           std::to_string(HIWORD(info->dwFileVersionLS));
}

std::string FileName(const std::wstring& path) {
    return Utf8(path.substr(path.find_last_of(L"\\/") + 1));
}

std::vector<page::Facts> Identity(Host& host, const Options& options, const Json& module,
                                  const Documents& documents) {
    const auto number = [&module](const char* member) { return std::to_string(module[member].get<long>()); };
    page::Facts identity{"Identity",
                         {{"Name", module["name"]},
                          {"Identifier", module["id"]},
                          {"Category", module["category"]},
                          {"Description", module["description"]},
                          {"Device", module["deviceKey"]},
                          {"Object number", number("objectId")},
                          {"Data sheet", module["datasheetAvailable"].get<bool>() ? "yes" : "no"}}};
    page::Facts versions{"Versions",
                         {{"Component", "O_Tam_id.dll " + VersionOf(L"O_Tam_id.dll")},
                          {"Class", module["programmaticId"]},
                          {"Definition", FileName(documents.Definition())},
                          {"Catalogue", FileName(host.CatalogueFile()) + ", " +
                                            Count(xml::CountElements(host.Catalogue()), "type")},
                          {"Units", options.usUnits ? "US" : "SI"}}};
    return {identity, versions};
}

drawing::Pin PinOf(const Json& point, const Json& type, const std::vector<std::string>& wiredTo,
                   bool isHidden) {
    drawing::Pin pin;
    pin.name = point["name"];
    pin.type = type.is_null() ? "" : TypeTitle(type);
    pin.address = point["logicalAddress"];
    pin.isWired = !wiredTo.empty() || point["connected"].get<bool>();
    pin.wiredTo = Joined(wiredTo);
    pin.isHidden = isHidden;
    return pin;
}

/// Adds the words of what holds to a list.
void Mark(std::vector<std::string>& marks, bool holds, const char* word) {
    if (holds) {
        marks.emplace_back(word);
    }
}

std::vector<page::Column> Columns(std::vector<page::Column> more) {
    std::vector<page::Column> columns = {{"Name"}};
    const std::vector<page::Column> types = TypeColumns();
    columns.insert(columns.end(), types.begin(), types.end());
    columns.insert(columns.end(), more.begin(), more.end());
    return columns;
}

Row Cells(const Json& point, const Json& type, const std::string& description, Row more) {
    Row row = {{point["name"], description}};
    const Row types = TypeCells(type);
    row.insert(row.end(), types.begin(), types.end());
    row.insert(row.end(), more.begin(), more.end());
    return row;
}

/// Reads the points of a module into the tables and the block of its page.
class Points {
  public:
    Points(Host& host, const Documents& documents, page::Page& page)
        : host_(host), documents_(documents), page_(page), interoperability_(Interoperability(host)) {}

    void Read() {
        const Json inputs = ReadInputs(host_, interoperability_);
        const Json outputs = ReadOutputs(host_, interoperability_);
        AddInputs(inputs);
        AddOutputs(outputs, inputs);
        AddAttributes(ReadAttributes(host_));
        page_.enumerations = enumerations_.List();
    }

  private:
    void AddInputs(const Json& inputs) {
        page::Table table{"Inputs",
                          "What other objects' outputs are wired to.",
                          "The module has no inputs.",
                          Columns({{"Accepts"}, {"Wired to"}, {"Address", true}, {"Marks"}}),
                          {}};
        std::vector<bool> hidden;
        ForEachInput(host_.App(),
                     [&](IInput& input) { hidden.push_back(!FlagOf(input, &IInput::get_Visible)); });
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            const Json& input = inputs[i];
            const Json type = input["type"].is_null()
                                  ? Json()
                                  : TypeOfCatalogue(host_, Wide(input["type"]["id"].get<std::string>()));
            const std::string reference = input["reference"];
            std::vector<std::string> wiredTo;
            Mark(wiredTo, tam::LeadsToAnOutput(std::string_view(reference)), reference.c_str());
            std::vector<std::string> marks;
            Mark(marks, input["permanent"], "permanent");
            Mark(marks, hidden[i], "hidden");
            std::vector<std::string> accepted;
            for (const Json& id : input["accepts"]) {
                accepted.push_back(id);
            }
            table.rows.push_back(
                Cells(input, type, documents_.OfPoint(kInputs, input["name"], "DESCRIPTION"),
                      {{Joined(accepted)}, {Joined(wiredTo)}, {input["logicalAddress"]}, {Joined(marks)}}));
            page_.sheet.module.inputs.push_back(PinOf(input, type, wiredTo, hidden[i]));
            enumerations_.Add(type, input["name"]);
        }
        page_.points.push_back(std::move(table));
    }

    void AddOutputs(const Json& outputs, const Json& inputs) {
        page::Table table{"Outputs",
                          "Values that the module publishes.",
                          "The module has no outputs.",
                          Columns({{"Wired to"}, {"Address", true}, {"Marks"}}),
                          {}};
        std::unordered_map<std::string, std::vector<std::string>> inputsOf;
        for (const Json& input : inputs) {
            inputsOf[Capitals(Wide(input["reference"].get<std::string>()))].push_back(input["name"]);
        }
        std::vector<bool> hidden;
        std::vector<bool> dependent;
        ForEachOutput(host_.App(), [&](IOutput& output) {
            hidden.push_back(!FlagOf(output, &IOutput::get_Visible));
            dependent.push_back(FlagOf(output, &IOutput::get_IsTypeDependent));
        });
        for (std::size_t i = 0; i < outputs.size(); ++i) {
            const Json& output = outputs[i];
            Json type = output["type"];
            if (!type.is_null() && type["enumDesc"].get<std::string>().empty()) {
                type["enumDesc"] =
                    Utf8(host_.CatalogueText(Wide(type["id"].get<std::string>()), L"EnumDesc"));
            }
            const std::vector<std::string> wiredTo =
                inputsOf[Capitals(Wide(output["name"].get<std::string>()))];
            std::vector<std::string> marks;
            Mark(marks, dependent[i], "type depends on the setup");
            Mark(marks, output["displayable"], "in displays");
            Mark(marks, output["displayWritable"], "writable");
            Mark(marks, hidden[i], "hidden");
            table.rows.push_back(Cells(output, type,
                                       documents_.OfPoint(kOutputs, output["name"], "DESCRIPTION"),
                                       {{Joined(wiredTo)}, {output["logicalAddress"]}, {Joined(marks)}}));
            page_.sheet.module.outputs.push_back(PinOf(output, type, wiredTo, hidden[i]));
            enumerations_.Add(type, output["name"]);
        }
        page_.points.push_back(std::move(table));
    }

    void AddAttributes(const Json& attributes) {
        page::Table table{
            "Attributes",
            "How the module is configured. Limits, resolution, default and value are in the unit of the "
            "type.",
            "The module has no attributes.",
            Columns({{"Default", true}, {"Value", true}, {"Displayed as"}, {"Address", true}, {"Marks"}}),
            {}};
        for (const Json& attribute : attributes) {
            const std::string name = attribute["name"];
            std::vector<std::string> marks;
            Mark(marks, documents_.OfPoint(kAttributes, name, "ISPERMANENT") != "0", "permanent");
            Mark(marks, attribute["macroConnected"], "read by a macro");
            table.rows.push_back(Cells(attribute, attribute["type"],
                                       documents_.OfPoint(kAttributes, attribute["name"], "DESCRIPTION"),
                                       {{documents_.DefaultOf(name, attribute["type"])},
                                        {attribute["value"]},
                                        {DisplayOf(attribute)},
                                        {documents_.OfPoint(kAttributes, name, "LOGICALADDRESS")},
                                        {Joined(marks)}}));
            enumerations_.Add(attribute["type"], name);
        }
        page_.points.push_back(std::move(table));
    }

    Host& host_;
    const Documents& documents_;
    page::Page& page_;
    xml::Node interoperability_;
    Enumerations enumerations_;
};

} // namespace

page::Page ReadDeviceSheet(Host& host, const Options& options) {
    page::Page page;
    const Documents documents(host, options);
    const Json module = ReadModule(host);
    page.title = module["name"];
    page.subtitle = module["description"];
    page.sheet.module.name = page.title;
    page.sheet.module.subtitle =
        module["category"].get<std::string>() + " \u00B7 " + module["id"].get<std::string>();
    page.identity = Identity(host, options, module, documents);
    Points(host, documents, page).Read();
    page.icon = page::PngOfIcon(IconBytes(host));
    page.sheet.module.hasIcon = !page.icon.empty();
    return page;
}

} // namespace bench
