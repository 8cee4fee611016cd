// A channel's element in a project. What it refers to is looked for in the device streams and
// the channel definitions of the same run.

#include "check/Nearest.h"
#include "check/ProjectObject.h"
#include "check/Surroundings.h"
#include "check/Utf8.h"
#include "check/Values.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace check {

namespace {

constexpr std::string_view kPointAttributes[] = {"Visible", "IsDisplayable", "Value", "SNVT_Type",
                                                 "EnumDesc"};

class ChannelElement final : public ProjectObject {
  public:
    ChannelElement(Document& document, ProjectKeys& keys)
        : ProjectObject(document, keys, kProjectChannelParts) {}

    void Check(XmlTree::Index object) {
        const XmlTree& tree = document_.Tree();
        std::set<std::string> seen;
        std::string deviceKey;
        Leaf objectKey;
        const std::function<void(XmlTree::Index)> check = [&](XmlTree::Index child) {
            const std::string_view name = tree.Name(child);
            CheckTwin(seen, child, tree.Name(object));
            if (name == "DevKey") {
                deviceKey = Required(child).text;
            } else if (name == "TamObjectKey") {
                objectKey = Required(child);
            } else if (EqualKeyword(name, "X_Position") || EqualKeyword(name, "Y_Position")) {
                CheckPosition(document_.ReadLeaf(child));
            } else if (EqualKeyword(name, "UserName") || EqualKeyword(name, "Key")) {
                document_.ReadLeaf(child);
            } else if (EqualKeyword(name, "Inputs") || EqualKeyword(name, "Outputs") ||
                       EqualKeyword(name, "Attributes")) {
                CheckSavedPoints(child, tree.Name(object));
            } else {
                document_.ReportUnknown(child, kProjectChannelParts, {}, Tagged(tree.Name(object)), false);
            }
            ForEachPartInside(child, check);
        };
        tree.ForEachElement(object, check);
        for (const std::string_view key : {"DevKey", "TamObjectKey"}) {
            if (!seen.contains(Upper(key))) {
                document_.Report(RuleId::ElementMissing, tree.NameSpan(object),
                                 Tagged(tree.Name(object)) + " has no " + Tagged(key), Tagged(key));
            }
        }
        if (objectKey.HasText()) {
            CheckKey(objectKey, deviceKey);
        }
    }

  private:
    void CheckKey(const Leaf& leaf, const std::string& deviceKey) {
        if (!keys_.insert(deviceKey + "\n" + Upper(leaf.text)).second) {
            document_.Report(RuleId::ProjectKey, leaf.span,
                             "the channel " + Quoted(leaf.text) + " is there twice", "a key of its own");
        }
        const auto& keys = document_.Others().ChannelKeys();
        if (!keys.empty() && !keys.contains(leaf.text)) {
            const std::vector<std::string_view> words(keys.begin(), keys.end());
            document_.Report(RuleId::ProjectChannel, leaf.span,
                             "no module of this run has points of a channel " + Quoted(leaf.text), "",
                             std::string(Nearest(leaf.text, words)));
        }
    }

    /// Whether a definition of the run says that its channels have no such point. A section that a
    /// definition leaves out is the host's.
    void CheckSavedName(XmlTree::Index point, std::string_view section, std::string_view object) {
        const XmlTree& tree = document_.Tree();
        const std::size_t side = EqualKeyword(section, "Inputs")    ? 0U
                                 : EqualKeyword(section, "Outputs") ? 1U
                                                                    : 2U;
        std::vector<std::string_view> names;
        bool isListed = false;
        for (const StreamSummary& channel : document_.Others().Definitions()) {
            if (!EqualKeyword(channel.definition, object)) {
                continue;
            }
            if (!channel.sections.at(side)) {
                return;
            }
            isListed = true;
            const std::vector<std::string>& points = side == 0 ? channel.inputs : channel.outputs;
            if (side < 2) {
                names.insert(names.end(), points.begin(), points.end());
            } else {
                for (const auto& [name, general] : channel.attributes) {
                    names.push_back(name);
                }
            }
        }
        const Span span = tree.NameSpan(point);
        const std::string_view name = tree.Piece(span);
        if (isListed && std::none_of(names.begin(), names.end(),
                                     [&](std::string_view known) { return EqualName(known, name); })) {
            document_.Report(RuleId::ProjectPoint, span,
                             "the channel has no point " + Tagged(name) + " in its definition", "",
                             std::string(Nearest(name, names)));
        }
    }

    void CheckSavedPoints(XmlTree::Index section, std::string_view object) {
        const XmlTree& tree = document_.Tree();
        document_.CheckPlainContainer(section, Tagged(tree.Name(section)));
        std::set<std::string> seen;
        ForEachOfSection(section, [&](XmlTree::Index point) {
            CheckTwin(seen, point, tree.Name(section));
            CheckSavedName(point, tree.Name(section), object);
            document_.CheckAttributes(point, kPointAttributes, Tagged(tree.Name(point)));
            const TypeInfo* type = nullptr;
            if (const auto id = tree.FindAttribute(point, "SNVT_Type"); id && id->value.size > 0) {
                type = CheckType(document_, tree.ValueOf(*id), id->value, false);
            }
            for (const std::string_view flag : {"Visible", "IsDisplayable"}) {
                if (const auto attribute = tree.FindAttribute(point, flag)) {
                    document_.CheckFlag(tree.ValueOf(*attribute), attribute->value, flag);
                }
            }
            if (const auto description = tree.FindAttribute(point, "EnumDesc");
                description && description->value.size > 0) {
                const std::string fault = FaultOfDescription(tree.ValueOf(*description));
                if (!fault.empty()) {
                    document_.Report(RuleId::EnumDescription, description->value,
                                     "the description of the enumeration: " + fault,
                                     "value,label; for each entry");
                }
            }
            if (const auto value = tree.FindAttribute(point, "Value");
                value && type != nullptr && value->value.size > 0) {
                CheckValueText(document_, *type, tree.ValueOf(*value), value->value);
            }
        });
    }
};

} // namespace

void CheckProjectChannel(Document& document, XmlTree::Index object, ProjectKeys& keys) {
    ChannelElement(document, keys).Check(object);
}

} // namespace check
