#pragma once

#include "check/Catalogue.h"
#include "check/Kinds.h"

#include <cstddef>
#include <string>
#include <vector>

namespace diff {

// What a document means, without its form. All texts are UTF-8.

struct Field {
    /// "address"; fields of one item have different names.
    std::string name;
    /// What is compared: numbers without zeros that mean nothing, flags as yes or no.
    std::string meaning;
    /// What a reader sees: the text with its unit or label.
    std::string shown;
    /// From 1.
    std::size_t line = 0;
};

struct Item {
    std::string name;
    std::vector<Field> fields;
    std::size_t line = 0;
    /// Two items of different names that agree in this are one that was renamed. Empty
    /// where nothing tells.
    std::string identity;
    /// What a reader is told of an item that is new or gone.
    std::string summary;
};

/// Items of one kind.
struct Group {
    /// "input"
    std::string noun;
    /// "Inputs"
    std::string title;
    std::vector<Item> items;
    /// Where items stand among the others means something.
    bool isOrdered = false;
    /// Letter case of names means something.
    bool isExact = false;
};

struct Model {
    check::Kind kind = check::Kind::Unknown;
    /// What the document says of itself.
    std::vector<Field> head;
    std::vector<Group> groups;
    /// Of a device the file with its points, as the document names it.
    std::string stream;
};

/// A document that could not be read: where and why.
struct Fault {
    std::string message;
    std::size_t line = 0;
    std::size_t column = 0;
};

struct Reading {
    Model model;
    /// Faults of form; with any of these there is no model.
    std::vector<Fault> faults;
};

/// Reads a document from a file's bytes, in whichever encoding. Units and labels come
/// from the catalogue.
Reading Read(std::string bytes, const check::Catalogue& types);

} // namespace diff
