// A project: an element of the host's with objects in it, or one object alone. An object with
// TamObjectKey, or with the name of a channel object, is a channel's; any other is the
// module's. What it refers to is looked for in the device streams of the same run.

#include "check/Checkers.h"
#include "check/Decimal.h"
#include "check/Nearest.h"
#include "check/Utf8.h"
#include "check/Values.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace check {

namespace {

constexpr std::string_view kModuleParts[] = {"Environment", "UserName", "X_Position",    "Y_Position",
                                             "DevKey",      "TamObjID", "OutReferences", "Outputs"};
constexpr std::string_view kChannelParts[] = {"DevKey",     "TamObjectKey", "UserName",
                                              "X_Position", "Y_Position",   "Key",
                                              "Inputs",     "Outputs",      "Attributes"};
constexpr std::string_view kChannels[] = {"o_tam_ai_id", "o_tam_ao_id", "o_tam_di_id", "o_tam_do_id",
                                          "o_inpcntx_id"};
constexpr std::string_view kPointAttributes[] = {"Visible", "IsDisplayable", "Value", "SNVT_Type",
                                                 "EnumDesc"};

bool IsChannelName(std::string_view name) {
    return std::any_of(std::begin(kChannels), std::end(kChannels),
                       [&](std::string_view known) { return EqualKeyword(known, name); });
}

class Project {
  public:
    explicit Project(Document& document) : document_(document) {}

    void Check() {
        const XmlTree& tree = document_.Tree();
        if (IsObject(tree.Root()) || HasParts(tree.Root())) {
            CheckObject(tree.Root());
            return;
        }
        document_.CheckContainer(tree.Root(), Tagged(tree.Name(tree.Root())));
        tree.ForEachElement(tree.Root(), [&](XmlTree::Index child) {
            if (IsObject(child)) {
                CheckObject(child);
            } // any other object of the sheet is its own maker's
        });
    }

  private:
    bool IsObject(XmlTree::Index element) const {
        const XmlTree& tree = document_.Tree();
        const std::string_view name = tree.Name(element);
        if (EqualKeyword(name, "O_Tam_id") || IsChannelName(name)) {
            return true;
        }
        if (name == "Tam") {
            return false; // a device stream that is kept in the project
        }
        // Under the name of another definition.
        int known = 0;
        tree.ForEachElement(element, [&](XmlTree::Index child) {
            const std::string_view part = tree.Name(child);
            known += EqualKeyword(part, "TamObjID") || EqualKeyword(part, "TamObjectKey") ? 1 : 0;
        });
        return known > 0;
    }

    /// An object alone, under whichever name.
    bool HasParts(XmlTree::Index element) const {
        const XmlTree& tree = document_.Tree();
        bool has = false;
        tree.ForEachElement(element, [&](XmlTree::Index child) { has = has || IsPart(child, kModuleParts); });
        return has;
    }

    void CheckObject(XmlTree::Index object) {
        const XmlTree& tree = document_.Tree();
        const std::string_view name = tree.Name(object);
        document_.CheckContainer(object, Tagged(name));
        document_.CheckAttributes(object, {}, Tagged(name));
        if (IsChannelName(name) || tree.Child(object, "TamObjectKey") != XmlTree::kNone) {
            CheckChannel(object);
        } else {
            CheckModule(object);
        }
    }

    /// Where the end tag of a part is missing, the parts that follow lie inside.
    void ForEachPartInside(XmlTree::Index part, std::span<const std::string_view> parts,
                           const std::function<void(XmlTree::Index)>& check) const {
        const XmlTree& tree = document_.Tree();
        if (!tree.IsUnclosed(part)) {
            return;
        }
        tree.ForEachElement(part, [&](XmlTree::Index child) {
            if (IsPart(child, parts)) {
                check(child);
            }
        });
    }

    bool IsPart(XmlTree::Index element, std::span<const std::string_view> parts) const {
        return std::any_of(parts.begin(), parts.end(), [&](std::string_view name) {
            return EqualKeyword(name, document_.Tree().Name(element));
        });
    }

    /// Hands over what stands in a section, without the parts that follow one whose end tag is missing.
    void ForEachOfSection(XmlTree::Index section, std::span<const std::string_view> parts,
                          const std::function<void(XmlTree::Index)>& check) {
        const XmlTree& tree = document_.Tree();
        tree.ForEachElement(section, [&](XmlTree::Index child) {
            if (!tree.IsUnclosed(section) || !IsPart(child, parts)) {
                check(child);
            }
        });
    }

    /// The text of an element that the component needs a text of.
    Leaf Required(XmlTree::Index element) {
        Leaf leaf = document_.ReadLeaf(element);
        if (!leaf.HasText()) {
            document_.Report(RuleId::ElementEmpty, leaf.span,
                             Tagged(document_.Tree().Piece(leaf.name)) + " is empty: reading ends here",
                             "a text");
        }
        return leaf;
    }

    void CheckPosition(const Leaf& leaf) {
        const std::string_view text = Trim(leaf.text);
        if (text.empty()) {
            return;
        }
        const std::string what = Tagged(document_.Tree().Piece(leaf.name));
        const auto number = ReadDecimal(text);
        if (number && std::isfinite(number->value)) {
            return;
        }
        if (number) {
            document_.Report(RuleId::NumberRange, leaf.span, what + " is too large",
                             "a position on the sheet");
        } else if (const auto withPoint = WithPoint(text)) {
            document_.Report(RuleId::ValueDecimalMark, leaf.span,
                             what + " is " + Quoted(text) + ": it is read up to the comma",
                             "\".\" as the decimal mark", *withPoint);
        } else {
            document_.Report(RuleId::NumberForm, leaf.span, what + " is " + Quoted(text), "a number",
                             LeadingNumber(text));
        }
    }

    void CheckTwin(std::set<std::string>& seen, XmlTree::Index child, std::string_view object) {
        const XmlTree& tree = document_.Tree();
        if (!seen.insert(Upper(tree.Name(child))).second) {
            document_.Report(RuleId::ElementRepeated, tree.NameSpan(child),
                             Tagged(tree.Name(child)) + " stands twice in " + Tagged(object) +
                                 ": the last one counts",
                             "one of each");
        }
    }

    void CheckModule(XmlTree::Index object) {
        const XmlTree& tree = document_.Tree();
        std::set<std::string> seen;
        std::vector<XmlTree::Index> flags;
        const std::vector<const StreamSummary*> streams = StreamsOf(object);
        const std::function<void(XmlTree::Index)> check = [&](XmlTree::Index child) {
            const std::string_view name = tree.Name(child);
            CheckTwin(seen, child, tree.Name(object));
            if (EqualKeyword(name, "UserName")) {
                Required(child);
            } else if (EqualKeyword(name, "DevKey")) {
                CheckKey(Required(child), "module");
            } else if (EqualKeyword(name, "X_Position") || EqualKeyword(name, "Y_Position")) {
                CheckPosition(Required(child));
            } else if (EqualKeyword(name, "TamObjID")) {
                CheckObjectId(Required(child), streams);
            } else if (EqualKeyword(name, "OutReferences")) {
                CheckFlags(child, streams);
            } else if (EqualKeyword(name, "Outputs")) {
                CheckOutputs(child, streams);
            } else if (!EqualKeyword(name, "Environment")) {
                document_.ReportUnknown(child, kModuleParts, {}, Tagged(tree.Name(object)), true);
            }
            ForEachPartInside(child, kModuleParts, check);
        };
        tree.ForEachElement(object, check);
    }

    /// The device streams of the run that have its object number.
    std::vector<const StreamSummary*> StreamsOf(XmlTree::Index object) const {
        const XmlTree& tree = document_.Tree();
        std::string id;
        const std::function<void(XmlTree::Index)> look = [&](XmlTree::Index child) {
            if (EqualKeyword(tree.Name(child), "TamObjID") && tree.FirstChild(child) != XmlTree::kNone) {
                id = Trim(tree.Content(tree.FirstChild(child)));
            }
            ForEachPartInside(child, kModuleParts, look);
        };
        tree.ForEachElement(object, look);
        std::vector<const StreamSummary*> streams;
        for (const StreamSummary& stream : document_.Others().Streams()) {
            if (stream.objectId == id) {
                streams.push_back(&stream);
            }
        }
        return streams;
    }

    void CheckObjectId(const Leaf& leaf, const std::vector<const StreamSummary*>& streams) {
        const std::string_view text = Trim(leaf.text);
        if (text.empty() || !document_.CheckWhole(text, leaf.span, "<TamObjID>", INT16_MIN, INT16_MAX)) {
            return;
        }
        if (streams.empty() && !document_.Others().Streams().empty()) {
            document_.Report(RuleId::ProjectModule, leaf.span,
                             "no device stream of this run has the object number " + std::string(text),
                             "a module whose stream is there");
        }
    }

    void CheckKey(const Leaf& leaf, std::string_view what) {
        if (leaf.HasText() && !keys_.insert(std::string(what) + "\n" + leaf.text).second) {
            document_.Report(RuleId::ProjectKey, leaf.span,
                             "two elements of a " + std::string(what) + " have the key " + Quoted(leaf.text),
                             "a key of its own");
        }
    }

    void CheckOutputName(XmlTree::Index element, const std::vector<const StreamSummary*>& streams) {
        const XmlTree& tree = document_.Tree();
        const Span span = tree.NameSpan(element);
        const std::string_view name = tree.Piece(span);
        const std::uint64_t hash = HashOfName(name);
        const bool isKnown = std::any_of(streams.begin(), streams.end(), [&](const StreamSummary* stream) {
            return stream->outputHashes.contains(hash);
        });
        if (streams.empty() || isKnown) {
            return;
        }
        std::vector<std::string_view> names;
        if (document_.MaySuggest()) {
            for (const StreamSummary* stream : streams) {
                names.insert(names.end(), stream->outputs.begin(), stream->outputs.end());
            }
        }
        document_.Report(RuleId::ProjectPoint, span, "the module has no output " + Tagged(name), "",
                         std::string(Nearest(name, names)));
    }

    void CheckFlags(XmlTree::Index section, const std::vector<const StreamSummary*>& streams) {
        const XmlTree& tree = document_.Tree();
        document_.CheckPlainContainer(section, "<OutReferences>");
        ForEachOfSection(section, kModuleParts, [&](XmlTree::Index child) {
            const Leaf leaf = document_.ReadLeaf(child);
            document_.CheckFlag(leaf.text, leaf.span, Tagged(tree.Name(child)));
            CheckOutputName(child, streams);
        });
    }

    void CheckOutputs(XmlTree::Index section, const std::vector<const StreamSummary*>& streams) {
        constexpr std::string_view kFlag[] = {"IsDisplayable"};
        const XmlTree& tree = document_.Tree();
        document_.CheckPlainContainer(section, "<Outputs>");
        ForEachOfSection(section, kModuleParts, [&](XmlTree::Index child) {
            document_.CheckAttributes(child, kFlag, Tagged(tree.Name(child)));
            if (const auto flag = tree.FindAttribute(child, kFlag[0])) {
                document_.CheckFlag(tree.ValueOf(*flag), flag->value, kFlag[0]);
            }
            CheckOutputName(child, streams);
        });
    }

    void CheckChannel(XmlTree::Index object) {
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
                document_.ReportUnknown(child, kChannelParts, {}, Tagged(tree.Name(object)), false);
            }
            ForEachPartInside(child, kChannelParts, check);
        };
        tree.ForEachElement(object, check);
        for (const std::string_view key : {"DevKey", "TamObjectKey"}) {
            if (!seen.contains(Upper(key))) {
                document_.Report(RuleId::ElementMissing, tree.NameSpan(object),
                                 Tagged(tree.Name(object)) + " has no " + Tagged(key), Tagged(key));
            }
        }
        if (objectKey.HasText()) {
            CheckChannelKey(objectKey, deviceKey);
        }
    }

    void CheckChannelKey(const Leaf& leaf, const std::string& deviceKey) {
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
        ForEachOfSection(section, kChannelParts, [&](XmlTree::Index point) {
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

    Document& document_;
    std::set<std::string> keys_;
};

} // namespace

void CheckProject(Document& document) {
    Project(document).Check();
}

} // namespace check
