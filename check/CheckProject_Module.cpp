// The module's element in a project. What it refers to is looked for in the device streams of
// the same run.

#include "check/Nearest.h"
#include "check/ProjectObject.h"
#include "check/Surroundings.h"
#include "check/Utf8.h"
#include "check/Values.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace check {

namespace {

class ModuleElement final : public ProjectObject {
  public:
    ModuleElement(Document& document, ProjectKeys& keys)
        : ProjectObject(document, keys, kProjectModuleParts) {}

    void Check(XmlTree::Index object) {
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
                CheckKey(Required(child));
            } else if (EqualKeyword(name, "X_Position") || EqualKeyword(name, "Y_Position")) {
                CheckPosition(Required(child));
            } else if (EqualKeyword(name, "TamObjID")) {
                CheckObjectId(Required(child), streams);
            } else if (EqualKeyword(name, "OutReferences")) {
                CheckFlags(child, streams);
            } else if (EqualKeyword(name, "Outputs")) {
                CheckOutputs(child, streams);
            } else if (!EqualKeyword(name, "Environment")) {
                document_.ReportUnknown(child, kProjectModuleParts, {}, Tagged(tree.Name(object)), true);
            }
            ForEachPartInside(child, check);
        };
        tree.ForEachElement(object, check);
    }

  private:
    /// The device streams of the run that have its object number.
    std::vector<const StreamSummary*> StreamsOf(XmlTree::Index object) const {
        const XmlTree& tree = document_.Tree();
        std::string id;
        const std::function<void(XmlTree::Index)> look = [&](XmlTree::Index child) {
            if (EqualKeyword(tree.Name(child), "TamObjID") && tree.FirstChild(child) != XmlTree::kNone) {
                id = Trim(tree.Content(tree.FirstChild(child)));
            }
            ForEachPartInside(child, look);
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

    void CheckKey(const Leaf& leaf) {
        if (leaf.HasText() && !keys_.insert("module\n" + leaf.text).second) {
            document_.Report(RuleId::ProjectKey, leaf.span,
                             "two elements of a module have the key " + Quoted(leaf.text),
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
        ForEachOfSection(section, [&](XmlTree::Index child) {
            const Leaf leaf = document_.ReadLeaf(child);
            document_.CheckFlag(leaf.text, leaf.span, Tagged(tree.Name(child)));
            CheckOutputName(child, streams);
        });
    }

    void CheckOutputs(XmlTree::Index section, const std::vector<const StreamSummary*>& streams) {
        constexpr std::string_view kFlag[] = {"IsDisplayable"};
        const XmlTree& tree = document_.Tree();
        document_.CheckPlainContainer(section, "<Outputs>");
        ForEachOfSection(section, [&](XmlTree::Index child) {
            document_.CheckAttributes(child, kFlag, Tagged(tree.Name(child)));
            if (const auto flag = tree.FindAttribute(child, kFlag[0])) {
                document_.CheckFlag(tree.ValueOf(*flag), flag->value, kFlag[0]);
            }
            CheckOutputName(child, streams);
        });
    }
};

} // namespace

void CheckProjectModule(Document& document, XmlTree::Index object, ProjectKeys& keys) {
    ModuleElement(document, keys).Check(object);
}

} // namespace check
