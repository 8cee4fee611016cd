#pragma once

#include "check/Catalogue.h"
#include "check/XmlTree.h"
#include "diff/Model.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace diff {

using check::XmlTree;

/// A document on its way into a model.
class Document {
  public:
    Document(const XmlTree& tree, const check::Catalogue& types);

    const XmlTree& Tree() const noexcept { return tree_; }
    const check::Catalogue& Types() const noexcept { return types_; }
    std::size_t LineOf(XmlTree::Index node) const;
    /// All texts below an element, without the blanks around them.
    std::string TextOf(XmlTree::Index element) const;
    /// The same with them.
    std::string WholeTextOf(XmlTree::Index element) const;
    /// The children of an element whose name is this, in any case.
    std::vector<XmlTree::Index> Children(XmlTree::Index parent, std::string_view name) const;
    /// The last one, which is the one that counts where a name is repeated; kNone when there is none.
    XmlTree::Index LastChild(XmlTree::Index parent, std::string_view name) const;
    /// The first element of the name at any depth, in any case; kNone when there is none.
    XmlTree::Index FindAnyCase(std::string_view name) const;

    /// A text as it stands.
    Field TextField(std::string name, XmlTree::Index element) const;
    /// A text that is a number, if it is one.
    Field NumberField(std::string name, XmlTree::Index element) const;
    /// The attributes of an element, numbers as such.
    void AddAttributes(XmlTree::Index element, std::vector<Field>& fields) const;

  private:
    const XmlTree& tree_;
    const check::Catalogue& types_;
    std::vector<std::size_t> lineStarts_;
};

/// The same for all ways to write a number; a text that is no number is its own meaning.
std::string MeaningOfNumber(std::string_view text);
/// Of a text that is no number even where it looks like one: a name, a key, the identifier of a type.
bool IsWords(std::string_view fieldName);

/// "105 temp_p": an identifier with its name, without the prefix that all names have.
std::string ShownType(std::string_view id, const check::Catalogue& types);
/// A value with its unit, or its label.
std::string ShownValue(const std::string& text, std::string_view typeId, const check::Catalogue& types);
/// What a value means: a number for types of numbers and enumerations, else the text.
std::string MeaningOfValue(const std::string& text, std::string_view typeId, const check::Catalogue& types);

/// Whether a type's values are texts.
bool IsText(std::string_view typeId, const check::Catalogue& types);

// One for each kind of document.

Model ModelOfPoints(const Document& document, check::Kind kind);
Model ModelOfDefinition(const Document& document);
Model ModelOfCatalogue(const Document& document);
/// Of documents whose points have attributes or children: interoperability and export.
Model ModelOfTables(const Document& document, check::Kind kind);
/// Of any other document: its elements by their paths.
Model ModelOfTree(const Document& document, check::Kind kind);

/// Adds the texts NAME, ID, DESCRIPTION and CATEGORY of a definition to its head.
void AddIdentity(const Document& document, Model& model);

} // namespace diff
