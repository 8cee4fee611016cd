// Documents without a model of their own: elements by their paths.

#include "check/Utf8.h"
#include "diff/Readers.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace diff {

namespace {

/// The meaning of an element that is there, and says no more.
constexpr const char* kEmpty = "(empty)";

bool HasElements(const XmlTree& tree, XmlTree::Index element) {
    bool has = false;
    tree.ForEachElement(element, [&has](XmlTree::Index) { has = true; });
    return has;
}

/// The text of an element without elements.
Field LeafField(const Document& document, const std::string& name, XmlTree::Index element) {
    const bool isWords = IsWords(document.Tree().Name(element));
    Field field = isWords ? document.TextField(name, element) : document.NumberField(name, element);
    if (field.meaning.empty()) {
        field.meaning = kEmpty;
        field.shown = "empty";
    }
    return field;
}

/// What tells an element from the others of its name: the key of a channel; empty for any other.
std::string KeyOf(const Document& document, XmlTree::Index element) {
    const XmlTree& tree = document.Tree();
    if (const auto key = tree.FindAttribute(element, "key")) {
        return tree.ValueOf(*key);
    }
    const XmlTree::Index key = tree.Child(element, "TamObjectKey");
    return key != XmlTree::kNone ? document.TextOf(key) : "";
}

/// What values and types mean, where an item has both: as in a point. Answers the type.
std::string ReadTypeAndValue(const Document& document, std::vector<Field>& fields) {
    std::string type;
    for (Field& field : fields) {
        if (check::EqualKeyword(field.name, "SNVTType") || check::EqualKeyword(field.name, "SNVT_Type")) {
            type = field.shown;
            field.shown = ShownType(type, document.Types());
        }
    }
    for (Field& field : fields) {
        // Of an unknown type the text counts: it may be one.
        if (check::EqualKeyword(field.name, "Value") && field.meaning != kEmpty) {
            field.meaning = MeaningOfValue(field.shown, type, document.Types());
            field.shown = ShownValue(field.shown, type, document.Types());
        }
    }
    return type;
}

class PathReader {
  public:
    PathReader(const Document& document, Group& group) : document_(document), group_(group) {}

    void Read(XmlTree::Index element, const std::string& path) {
        const XmlTree& tree = document_.Tree();
        Item item{path, {}, document_.LineOf(element), "", ""};
        document_.AddAttributes(element, item.fields);
        std::map<std::string, int> counts;
        std::vector<std::pair<XmlTree::Index, std::string>> below;
        tree.ForEachElement(element, [&](XmlTree::Index child) {
            std::string name(tree.Name(child));
            if (const std::string key = KeyOf(document_, child); !key.empty()) {
                name += " " + key;
            }
            // Others of one name are told apart by their number.
            const int number = ++counts[check::Upper(name)];
            if (number > 1) {
                name += "[" + std::to_string(number) + "]";
            }
            if (HasElements(tree, child) || !tree.Attributes(child).empty()) {
                below.emplace_back(child, path + "/" + name);
            } else {
                item.fields.push_back(LeafField(document_, name, child));
            }
        });
        if (!HasElements(tree, element)) {
            const std::string text = document_.TextOf(element);
            if (!text.empty()) {
                item.fields.push_back({"text", MeaningOfNumber(text), text, item.line});
            }
        }
        ReadTypeAndValue(document_, item.fields);
        group_.items.push_back(std::move(item));
        for (const auto& [child, childPath] : below) {
            Read(child, childPath);
        }
    }

  private:
    const Document& document_;
    Group& group_;
};

/// The texts of a point's attributes and children, whichever the document has.
Item ReadPoint(const Document& document, XmlTree::Index point) {
    const XmlTree& tree = document.Tree();
    Item item{std::string(tree.Name(point)), {}, document.LineOf(point), "", ""};
    document.AddAttributes(point, item.fields);
    tree.ForEachElement(point, [&](XmlTree::Index child) {
        const std::string name(tree.Name(child));
        item.fields.push_back(IsWords(name) ? document.TextField(name, child)
                                            : document.NumberField(name, child));
    });
    std::string address;
    for (const Field& field : item.fields) {
        if (check::EqualKeyword(field.name, "LogicalAddress")) {
            address = field.meaning;
        }
    }
    const std::string type = ReadTypeAndValue(document, item.fields);
    if (!type.empty() && !address.empty()) {
        item.identity = address + " " + type;
    }
    item.summary = type.empty() ? "" : "type " + ShownType(type, document.Types());
    return item;
}

} // namespace

Model ModelOfTree(const Document& document, check::Kind kind) {
    Model model;
    model.kind = kind;
    Group group{"element", "Elements", {}, false, false};
    const XmlTree& tree = document.Tree();
    PathReader(document, group).Read(tree.Root(), std::string(tree.Name(tree.Root())));
    if (kind == check::Kind::DeviceLibrary) {
        const XmlTree::Index stream = tree.Child(tree.Root(), "Stream");
        model.stream = stream != XmlTree::kNone ? document.TextOf(stream) : "";
    }
    model.groups.push_back(std::move(group));
    return model;
}

Model ModelOfTables(const Document& document, check::Kind kind) {
    struct Section {
        const char* element;
        const char* noun;
    };
    constexpr Section kSections[] = {{"Inputs", "input"}, {"Outputs", "output"}, {"Attributes", "attribute"}};
    Model model;
    model.kind = kind;
    const XmlTree& tree = document.Tree();
    // An interoperability element may stand in a document of the host's.
    const XmlTree::Index found = document.FindAnyCase("O_Tam_id");
    const XmlTree::Index owner = found != XmlTree::kNone ? found : tree.Root();
    document.AddAttributes(owner, model.head);
    tree.ForEachElement(owner, [&](XmlTree::Index child) {
        if (!HasElements(tree, child)) {
            model.head.push_back(LeafField(document, std::string(tree.Name(child)), child));
        }
    });
    for (const Section& section : kSections) {
        Group group{section.noun, section.element, {}, true, false};
        for (const XmlTree::Index element : document.Children(owner, section.element)) {
            tree.ForEachElement(
                element, [&](XmlTree::Index point) { group.items.push_back(ReadPoint(document, point)); });
        }
        model.groups.push_back(std::move(group));
    }
    return model;
}

} // namespace diff
