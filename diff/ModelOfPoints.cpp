// Device streams and definitions of channels: both have points in three sections.

#include "check/Utf8.h"
#include "core/References.h"
#include "diff/Readers.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace diff {

namespace {

/// How the text of a point's element is read.
enum class Form {
    Text,
    Number,
    Type,
    Value,
    /// The element counts, whatever it holds.
    Presence,
    /// "1" is yes, anything else no.
    One,
    /// The same, and yes without the element.
    OneOrAbsent,
    List,
    Reference
};

struct Word {
    std::string_view element;
    const char* name;
    Form form;
};

constexpr std::array<Word, 7> kInput = {{{"SNVTTYPE", "type", Form::Type},
                                         {"LOGICALADDRESS", "address", Form::Number},
                                         {"ISPERMANENT", "permanent", Form::One},
                                         {"VISIBLE", "visible", Form::Presence},
                                         {"MANDATORY", "mandatory mark", Form::Presence},
                                         {"SNVTCOMPATIBILITYLIST", "accepted types", Form::List},
                                         {"PROTOCOLREFERENCE", "reference", Form::Reference}}};
constexpr std::array<Word, 7> kOutput = {{{"SNVTTYPE", "type", Form::Type},
                                          {"LOGICALADDRESS", "address", Form::Number},
                                          {"VISIBLE", "visible", Form::Presence},
                                          {"ISMAPASOO", "mapped as object output", Form::Number},
                                          {"OBJOFFSET", "object offset", Form::Number},
                                          {"ABSOLUTEOBJECTINDEX", "absolute object index", Form::Number},
                                          {"ISWRITABLE", "writable", Form::Number}}};
constexpr std::array<Word, 6> kAttribute = {{{"SNVTTYPE", "type", Form::Type},
                                             {"LOGICALADDRESS", "address", Form::Number},
                                             {"ISPERMANENT", "permanent", Form::OneOrAbsent},
                                             {"VISIBLE", "visible", Form::Presence},
                                             {"VALUE", "value", Form::Value},
                                             {"DESCRIPTION", "description", Form::Text}}};

struct Section {
    std::string_view element;
    const char* noun;
    const char* title;
    std::span<const Word> words;
};

constexpr Section kSections[] = {{"InReferences", "input", "Inputs", kInput},
                                 {"OutReferences", "output", "Outputs", kOutput},
                                 {"Attributes", "attribute", "Attributes", kAttribute}};

std::string YesNo(bool is) {
    return is ? "yes" : "no";
}

/// The identifiers of a list up to its first empty one, which ends it.
std::string MeaningOfList(std::string_view text, const check::Catalogue& types, std::string& shown) {
    std::string meaning;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(',', at), text.size());
        const std::string_view entry = text.substr(at, end - at);
        if (entry.empty()) {
            break;
        }
        meaning += (meaning.empty() ? "" : ",") + std::string(entry);
        shown += (shown.empty() ? "" : ", ") + ShownType(entry, types);
        at = end + 1;
    }
    return meaning;
}

class PointReader {
  public:
    explicit PointReader(const Document& document) : document_(document) {}

    Item Read(XmlTree::Index point, std::span<const Word> words) const {
        const XmlTree& tree = document_.Tree();
        Item item;
        item.name = std::string(tree.Name(point));
        item.line = document_.LineOf(point);
        const XmlTree::Index typeElement = document_.LastChild(point, "SNVTTYPE");
        const std::string type = typeElement == XmlTree::kNone ? "" : document_.TextOf(typeElement);
        for (const Word& word : words) {
            const XmlTree::Index element = document_.LastChild(point, word.element);
            const Field field = Make(word, element, type, item.line);
            if (!field.meaning.empty()) {
                item.fields.push_back(field);
            }
        }
        for (const XmlTree::Attribute& attribute : tree.Attributes(point)) {
            if (check::EqualKeyword(tree.Piece(attribute.name), "TYPEDEPENDENT")) {
                item.fields.push_back({"type depends on the setup", "yes", "yes", item.line});
            }
        }
        const XmlTree::Index address = document_.LastChild(point, "LOGICALADDRESS");
        const std::string addressText = address == XmlTree::kNone ? "" : document_.TextOf(address);
        if (!addressText.empty() && !type.empty()) {
            item.identity = MeaningOfNumber(addressText) + " " + type;
        }
        item.summary = type.empty() ? "" : "type " + ShownType(type, document_.Types());
        if (!addressText.empty()) {
            item.summary += (item.summary.empty() ? "" : ", ") + ("address " + addressText);
        }
        return item;
    }

  private:
    Field Make(const Word& word, XmlTree::Index element, const std::string& type, std::size_t line) const {
        const bool isThere = element != XmlTree::kNone;
        const std::string text = isThere ? document_.TextOf(element) : "";
        Field field{word.name, text, text, isThere ? document_.LineOf(element) : line};
        switch (word.form) {
        case Form::Text:
            break;
        case Form::Number:
            field.meaning = MeaningOfNumber(text);
            break;
        case Form::Type:
            field.shown = ShownType(text, document_.Types());
            break;
        case Form::Value: {
            // Blanks around a text are a part of it.
            const std::string value =
                isThere && IsText(type, document_.Types()) ? document_.WholeTextOf(element) : text;
            field.meaning = MeaningOfValue(value, type, document_.Types());
            field.shown = ShownValue(value, type, document_.Types());
            break;
        }
        case Form::Presence:
            field.meaning = field.shown = YesNo(isThere);
            break;
        case Form::One:
            field.meaning = field.shown = YesNo(text == "1");
            break;
        case Form::OneOrAbsent:
            field.meaning = field.shown = YesNo(!isThere || text == "1");
            break;
        case Form::List:
            field.shown.clear();
            field.meaning = MeaningOfList(text, document_.Types(), field.shown);
            break;
        case Form::Reference:
            field.meaning = tam::LeadsToAnOutput(std::string_view(text)) ? check::Upper(text) : "";
            break;
        }
        return field;
    }

    const Document& document_;
};

/// What a channel's definition says of its points beside the points themselves.
Group Configuration(const Document& document) {
    Group group{"configuration", "Configuration (TAMConfig)", {}, false, false};
    const XmlTree& tree = document.Tree();
    const XmlTree::Index configuration = document.FindAnyCase("TAMConfig");
    if (configuration == XmlTree::kNone) {
        return group;
    }
    tree.ForEachElement(configuration, [&](XmlTree::Index section) {
        tree.ForEachElement(section, [&](XmlTree::Index entry) {
            Item item;
            item.line = document.LineOf(entry);
            document.AddAttributes(entry, item.fields);
            std::string name;
            std::erase_if(item.fields, [&name](const Field& field) {
                const bool isName = check::EqualKeyword(field.name, "Name");
                name = isName ? field.shown : name;
                return isName;
            });
            item.name = std::string(tree.Name(entry)) + " " + name;
            group.items.push_back(std::move(item));
        });
    });
    return group;
}

void AddStreamHead(const Document& document, XmlTree::Index tam, Model& model) {
    constexpr std::pair<std::string_view, const char*> kTexts[] = {{"Name", "name"},
                                                                   {"DevKey", "device key"}};
    constexpr std::pair<std::string_view, const char*> kNumbers[] = {
        {"TamObjID", "object number"}, {"CDB", "CDB size"}, {"DDB", "DDB size"}};
    const XmlTree& tree = document.Tree();
    const auto child = [&](std::string_view name) { return tree.Child(tam, name); };
    for (const auto& [element, name] : kTexts) {
        if (child(element) != XmlTree::kNone) {
            model.head.push_back(document.TextField(name, child(element)));
        }
    }
    for (const auto& [element, name] : kNumbers) {
        if (child(element) != XmlTree::kNone) {
            model.head.push_back(document.NumberField(name, child(element)));
        }
    }
    const XmlTree::Index last = child("IsLastOnDev");
    if (last != XmlTree::kNone) {
        Field field = document.NumberField("last on the device", last);
        field.meaning = field.shown = YesNo(field.meaning == MeaningOfNumber("1"));
        model.head.push_back(field);
    }
}

} // namespace

Model ModelOfPoints(const Document& document, check::Kind kind) {
    Model model;
    model.kind = kind;
    const XmlTree& tree = document.Tree();
    XmlTree::Index owner = tree.Root();
    if (kind == check::Kind::DeviceStream) {
        AddStreamHead(document, owner, model);
    } else {
        AddIdentity(document, model);
        const XmlTree::Index object = document.FindAnyCase("AppObject");
        owner = object != XmlTree::kNone ? object : owner;
    }
    const PointReader reader(document);
    for (const Section& section : kSections) {
        Group group{section.noun, section.title, {}, true, false};
        for (const XmlTree::Index element : document.Children(owner, section.element)) {
            // A module finds its sections by their very names; a host's library does not care.
            if (kind == check::Kind::DeviceStream && tree.Name(element) != section.element) {
                continue;
            }
            tree.ForEachElement(element, [&](XmlTree::Index point) {
                group.items.push_back(reader.Read(point, section.words));
            });
        }
        model.groups.push_back(std::move(group));
    }
    if (kind == check::Kind::ChannelDefinition) {
        model.groups.push_back(Configuration(document));
    }
    return model;
}

} // namespace diff
