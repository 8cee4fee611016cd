// A project: an element of the host's with objects in it, or one object alone. An object with
// TamObjectKey, or with the name of a channel object, is a channel's; any other is the
// module's. What it refers to is looked for in the device streams of the same run.

#include "check/Checkers.h"
#include "check/ProjectObject.h"
#include "check/Utf8.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace check {

namespace {

constexpr std::string_view kChannels[] = {"o_tam_ai_id", "o_tam_ao_id", "o_tam_di_id", "o_tam_do_id",
                                          "o_inpcntx_id"};

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
        tree.ForEachElement(element, [&](XmlTree::Index child) {
            has = has || IsPartOf(kProjectModuleParts, tree.Name(child));
        });
        return has;
    }

    void CheckObject(XmlTree::Index object) {
        const XmlTree& tree = document_.Tree();
        const std::string_view name = tree.Name(object);
        document_.CheckContainer(object, Tagged(name));
        document_.CheckAttributes(object, {}, Tagged(name));
        if (IsChannelName(name) || tree.Child(object, "TamObjectKey") != XmlTree::kNone) {
            CheckProjectChannel(document_, object, keys_);
        } else {
            CheckProjectModule(document_, object, keys_);
        }
    }

    Document& document_;
    ProjectKeys keys_;
};

} // namespace

void CheckProject(Document& document) {
    Project(document).Check();
}

} // namespace check
