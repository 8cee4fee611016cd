#include "check/Catalogue.h"

#include "check/Utf8.h"
#include "diff/Readers.h"

#include <string>
#include <utility>

namespace diff {

namespace {

Item ReadType(const Document& document, XmlTree::Index element) {
    const XmlTree& tree = document.Tree();
    Item item{std::string(tree.Name(element)), {}, document.LineOf(element), "", ""};
    document.AddAttributes(element, item.fields);
    tree.ForEachElement(element, [&](XmlTree::Index child) {
        const std::string name(tree.Name(child));
        if (check::EqualKeyword(name, "EnumDesc")) {
            for (const check::EnumLabel& label : check::ReadLabels(document.TextOf(child))) {
                item.fields.push_back(
                    {"label of " + label.value, label.label, label.label, document.LineOf(child)});
            }
            return;
        }
        if (check::EqualKeyword(name, "Name")) {
            item.summary = document.TextOf(child);
        }
        item.fields.push_back(IsWords(name) ? document.TextField(name, child)
                                            : document.NumberField(name, child));
    });
    return item;
}

} // namespace

Model ModelOfCatalogue(const Document& document) {
    Model model;
    model.kind = check::Kind::Catalogue;
    Group types{"type", "Types", {}, false, true};
    const XmlTree& tree = document.Tree();
    tree.ForEachElement(tree.Root(),
                        [&](XmlTree::Index element) { types.items.push_back(ReadType(document, element)); });
    model.groups.push_back(std::move(types));
    return model;
}

} // namespace diff
