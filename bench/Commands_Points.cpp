#include "bench/Commands.h"
#include "bench/InternalItem.h"
#include "bench/Model.h"
#include "bench/StreamEdit.h"
#include "bench/Text.h"
#include "bench/WholeFile.h"

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

namespace {

/// An attribute or input that is to be set.
struct Target {
    com::Ref<IAttribute> attribute;
    com::Ref<IInput> input;
    std::wstring value;
};

Target FindTarget(Host& host, const std::wstring& name, const std::wstring& value) {
    Target target{FindAttribute(host.App(), name), nullptr, value};
    if (!target.attribute) {
        target.input = FindInput(host.App(), name);
    }
    if (!target.attribute && !target.input) {
        throw BenchError(E_INVALIDARG,
                         "there is no attribute or input \"" + Utf8(name) + "\"; nothing was set");
    }
    return target;
}

Json ReadTarget(const Target& target) {
    if (target.input) {
        return {{"value", TextOf(*target.input.Get(), &IInput::get_Value)}, {"display", nullptr}};
    }
    return ReadValue(*target.attribute.Get());
}

Table ChangeTable(const Json& changes) {
    Table table({"Point", "", "Value", "Displayed as"});
    for (const Json& change : changes) {
        table.Add({change["name"], "before", change["before"]["value"], DisplayOf(change["before"])});
        table.Add({"", "after", change["after"]["value"], DisplayOf(change["after"])});
    }
    return table;
}

Json ReadReferences(Host& host) {
    Json references = Json::array();
    ForEachInput(host.App(), [&](IInput& input) {
        references.push_back({{"name", TextOf(input, &IInput::get_Name)},
                              {"extended", FlagOf(input, &IInput::get_Extended)},
                              {"value", TextOf(input, &IInput::get_Value)}});
    });
    return references;
}

} // namespace

Json SetValues(Host& host, const Options& options, Answer& answer) {
    std::vector<Target> targets;
    host.Step("looking up the points", [&] {
        for (const auto& [name, value] : options.values) {
            targets.push_back(FindTarget(host, name, value));
        }
    });
    Json changes = Json::array();
    for (const Target& target : targets) {
        const bool isInput = static_cast<bool>(target.input);
        const std::string name = isInput ? TextOf(*target.input.Get(), &IInput::get_Name)
                                         : TextOf(*target.attribute.Get(), &IAttribute::get_Name);
        const com::Bstr value(target.value);
        Json before;
        Json after;
        host.Step("setting " + name, [&] {
            before = ReadTarget(target);
            if (isInput) {
                com::Call(target.input, &IInput::put_Value, value.Get());
            } else {
                com::Call(target.attribute, &IAttribute::put_Value, value.Get());
            }
            after = ReadTarget(target);
        });
        changes.push_back({{"name", name},
                           {"kind", isInput ? "input" : "attribute"},
                           {"before", before},
                           {"after", after}});
    }
    if (!changes.empty()) {
        answer.data["changes"] = changes;
        answer.Heading("Values");
        answer.Add(ChangeTable(changes));
    }
    return changes;
}

void Set(Host& host, const Options& options, Answer& answer) {
    LoadAndTell(host, answer);
    const Json changes = SetValues(host, options, answer);
    if (!options.output.empty()) {
        std::vector<PointValue> values;
        for (const Json& change : changes) {
            values.push_back({change["kind"] == "input", Wide(change["name"].get<std::string>()),
                              Wide(change["after"]["value"].get<std::string>())});
        }
        host.Step("writing the stream",
                  [&] { WriteWholeFile(options.output, WithValues(host.StreamText(), values)); });
        answer.data["file"] = Utf8(options.output);
        answer.Line("\nWritten to " + Utf8(options.output) + ".");
    }
}

void ClearRefs(Host& host, const Options&, Answer& answer) {
    LoadAndTell(host, answer);
    const Json before = ReadReferences(host);
    host.Step("ClearReferences", [&] { com::Call(host.App(), &IAppObject::ClearReferences); });
    const Json after = ReadReferences(host);
    Json& inputs = answer.data["inputs"] = Json::array();
    Table table({"Input", "Extended", "Value before", "Value after"});
    for (std::size_t i = 0; i < after.size(); ++i) {
        inputs.push_back({{"name", after[i]["name"]},
                          {"extended", after[i]["extended"]},
                          {"before", before[i]["value"]},
                          {"after", after[i]["value"]}});
        table.Add({after[i]["name"], after[i]["extended"].get<bool>() ? "yes" : "no", before[i]["value"],
                   after[i]["value"]});
    }
    answer.Heading("The inputs' references: zeros name no output");
    answer.Add(table);
}

void Contains(Host& host, const Options& options, Answer& answer) {
    LoadAndTell(host, answer);
    VARIANT_BOOL found = VARIANT_FALSE;
    host.Step("Contains", [&] {
        const auto item = InternalItem::Make(options.deviceKey, options.objectKey);
        com::Call(host.Tam(), &ITamObject::Contains, item.Get(), &found);
    });
    const bool contains = found != VARIANT_FALSE;
    answer.data["deviceKey"] = Utf8(options.deviceKey);
    answer.data["objectKey"] = Utf8(options.objectKey);
    answer.data["contains"] = contains;
    answer.Heading(contains ? "Yes" : "No");
    const std::string device = Utf8(options.deviceKey);
    const std::string mark = "_" + Utf8(options.objectKey);
    answer.Line(contains ? "  The module is of device " + device +
                               " and has a point whose name begins with " + mark + "."
                         : "  The module is of another device than " + device +
                               ", or it has no point whose name begins with " + mark + ".");
}

} // namespace bench
