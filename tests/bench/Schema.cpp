#include "tests/bench/Schema.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <regex>
#include <set>
#include <utility>

namespace benchtest {

namespace {

std::string FileOf(const std::string& name) {
    return name + ".schema.json";
}

const Json& SchemaIn(const std::string& file) {
    static std::map<std::string, Json> schemas;
    auto found = schemas.find(file);
    if (found == schemas.end()) {
        const std::wstring path =
            SamplesFolder() + L"..\\docs\\json\\" + std::wstring(file.begin(), file.end());
        found = schemas.emplace(file, Json::parse(ReadFileBytes(path))).first;
    }
    return found->second;
}

bool IsOfType(const Json& value, const std::string& type) {
    return (type == "object" && value.is_object()) || (type == "array" && value.is_array()) ||
           (type == "string" && value.is_string()) || (type == "boolean" && value.is_boolean()) ||
           (type == "null" && value.is_null()) || (type == "number" && value.is_number()) ||
           (type == "integer" && (value.is_number_integer() ||
                                  (value.is_number_float() &&
                                   value.get<double>() == static_cast<double>(value.get<long long>()))));
}

class Validator {
  public:
    /// `file` is where references without a file lead.
    explicit Validator(std::string file) : file_(std::move(file)) {}

    std::vector<std::string> Faults(const Json& value, const Json& schema, const std::string& place) const {
        std::vector<std::string> faults;
        for (const auto& [keyword, rule] : schema.items()) {
            Check(value, schema, keyword, rule, place, faults);
        }
        return faults;
    }

  private:
    static void Add(std::vector<std::string>& faults, std::vector<std::string> more) {
        faults.insert(faults.end(), more.begin(), more.end());
    }

    std::vector<std::string> FaultsAt(const Json& value, const std::string& reference,
                                      const std::string& place) const {
        const std::size_t mark = reference.find('#');
        const std::string file = mark == 0 ? file_ : reference.substr(0, mark);
        const Json& document = SchemaIn(file);
        const Json& schema = mark == std::string::npos
                                 ? document
                                 : document.at(Json::json_pointer(reference.substr(mark + 1)));
        return Validator(file).Faults(value, schema, place);
    }

    void CheckMembers(const Json& value, const Json& schema, const std::string& place,
                      std::vector<std::string>& faults) const {
        const Json& properties = schema.at("properties");
        for (const auto& [name, member] : value.items()) {
            if (properties.contains(name)) {
                Add(faults, Faults(member, properties.at(name), place + "/" + name));
            } else if (schema.contains("additionalProperties")) {
                faults.push_back(place + "/" + name + ": no schema names it");
            }
        }
    }

    void Check(const Json& value, const Json& schema, const std::string& keyword, const Json& rule,
               const std::string& place, std::vector<std::string>& faults) const {
        if (keyword == "$ref") {
            Add(faults, FaultsAt(value, rule, place));
        } else if (keyword == "type") {
            const Json types = rule.is_array() ? rule : Json::array({rule});
            if (std::none_of(types.begin(), types.end(),
                             [&](const Json& type) { return IsOfType(value, type); })) {
                faults.push_back(place + ": is no " + rule.dump());
            }
        } else if (keyword == "properties" && value.is_object()) {
            CheckMembers(value, schema, place, faults);
        } else if (keyword == "required" && value.is_object()) {
            for (const Json& name : rule) {
                if (!value.contains(name.get<std::string>())) {
                    faults.push_back(place + ": lacks " + name.get<std::string>());
                }
            }
        } else if (keyword == "items" && value.is_array()) {
            for (std::size_t i = 0; i < value.size(); ++i) {
                Add(faults, Faults(value[i], rule, place + "/" + std::to_string(i)));
            }
        } else {
            CheckValue(value, schema, keyword, rule, place, faults);
        }
    }

    void CheckValue(const Json& value, const Json& schema, const std::string& keyword, const Json& rule,
                    const std::string& place, std::vector<std::string>& faults) const {
        if (keyword == "enum" || keyword == "const") {
            const Json allowed = keyword == "const" ? Json::array({rule}) : rule;
            if (std::find(allowed.begin(), allowed.end(), value) == allowed.end()) {
                faults.push_back(place + ": " + value.dump() + " is not allowed");
            }
        } else if (keyword == "pattern" && value.is_string()) {
            if (!std::regex_search(value.get<std::string>(), std::regex(rule.get<std::string>()))) {
                faults.push_back(place + ": " + value.dump() + " does not match " + rule.dump());
            }
        } else if (keyword == "minLength" && value.is_string()) {
            if (value.get<std::string>().size() < rule.get<std::size_t>()) {
                faults.push_back(place + ": is shorter than " + rule.dump());
            }
        } else if (keyword == "minItems" && value.is_array()) {
            if (value.size() < rule.get<std::size_t>()) {
                faults.push_back(place + ": has fewer than " + rule.dump());
            }
        } else if (keyword == "minimum" && value.is_number()) {
            if (value < rule) {
                faults.push_back(place + ": is below " + rule.dump());
            }
        } else if (keyword == "anyOf") {
            if (std::none_of(rule.begin(), rule.end(),
                             [&](const Json& one) { return Faults(value, one, place).empty(); })) {
                faults.push_back(place + ": fits none of " + std::to_string(rule.size()) +
                                 " forms, the first for " + Faults(value, rule[0], place).front());
            }
        } else if (keyword == "if") {
            if (Faults(value, rule, place).empty()) {
                Add(faults, Faults(value, schema.at("then"), place));
            }
        } else if (!std::set<std::string>{"$schema", "$defs", "title", "description", "additionalProperties",
                                          "then", "properties", "required", "items", "pattern", "minimum",
                                          "minLength", "minItems"}
                        .contains(keyword)) {
            faults.push_back(place + ": the keyword " + keyword + " is not known here");
        }
    }

    std::string file_;
};

} // namespace

std::vector<std::string> SchemaFaults(const Json& document, const std::string& schema) {
    const std::string file = FileOf(schema);
    return Validator(file).Faults(document, SchemaIn(file), "");
}

std::vector<std::string> SchemaFaults(const Json& answer) {
    std::string name = answer.at("command");
    std::replace(name.begin(), name.end(), ' ', '-');
    return SchemaFaults(answer, answer.contains("summary") && name != "check" ? "several" : name);
}

} // namespace benchtest
