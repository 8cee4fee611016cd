#include "diff/Readers.h"

#include <string>
#include <utility>

namespace diff {

void AddIdentity(const Document& document, Model& model) {
    constexpr std::pair<const char*, const char*> kTexts[] = {
        {"NAME", "name"}, {"ID", "identifier"}, {"DESCRIPTION", "description"}, {"CATEGORY", "category"}};
    const XmlTree::Index object = document.FindAnyCase("AppObject");
    if (object == XmlTree::kNone) {
        return;
    }
    for (const auto& [element, name] : kTexts) {
        const XmlTree::Index child = document.LastChild(object, element);
        if (child != XmlTree::kNone) {
            model.head.push_back(document.TextField(name, child));
        }
    }
}

Model ModelOfDefinition(const Document& document) {
    Model model;
    model.kind = check::Kind::ModuleDefinition;
    AddIdentity(document, model);
    const XmlTree& tree = document.Tree();

    Group sizes{"size row", "Database sizes", {}, false, true};
    const XmlTree::Index table = document.FindAnyCase("DataSizes");
    if (table != XmlTree::kNone) {
        tree.ForEachElement(table, [&](XmlTree::Index row) {
            Item item{std::string(tree.Name(row)), {}, document.LineOf(row), "", ""};
            document.AddAttributes(row, item.fields);
            sizes.items.push_back(std::move(item));
        });
    }
    model.groups.push_back(std::move(sizes));

    Group defaults{"default", "Default values", {}, false, true};
    const XmlTree::Index tam = tree.Find("Tam");
    const XmlTree::Index attributes = tam == XmlTree::kNone ? XmlTree::kNone : tree.Child(tam, "Attributes");
    if (attributes != XmlTree::kNone) {
        tree.ForEachElement(attributes, [&](XmlTree::Index attribute) {
            const XmlTree::Index value = tree.Child(attribute, "DefaultValue");
            if (value != XmlTree::kNone) {
                Item item{std::string(tree.Name(attribute)),
                          {document.NumberField("value", value)},
                          document.LineOf(attribute),
                          "",
                          document.TextOf(value)};
                defaults.items.push_back(std::move(item));
            }
        });
    }
    model.groups.push_back(std::move(defaults));
    return model;
}

} // namespace diff
