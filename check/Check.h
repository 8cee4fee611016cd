#pragma once

#include "check/Findings.h"
#include "check/Kinds.h"
#include "check/Surroundings.h"

#include <cstddef>
#include <string>
#include <vector>

// Everything that is wrong with a document, with line and column. Pure code: it
// knows no files and no Windows.

namespace check {

struct Result {
    Kind kind = Kind::Unknown;
    /// In the document's order.
    std::vector<Finding> findings;
    /// Of all findings, those that are not listed too.
    Findings::Counts counts{};

    std::size_t Count(Severity severity) const { return counts.at(static_cast<std::size_t>(severity)); }
    bool HasErrors() const { return Count(Severity::Error) > 0; }
};

/// Checks a document from a file's bytes, in whichever encoding. Fills `summary` from a
/// device stream or the definition of a channel, where it is not null.
Result CheckBytes(std::string bytes, const Surroundings& surroundings, StreamSummary* summary = nullptr);
/// Checks a document that is a text already, in UTF-8: what it says of its encoding
/// does not count.
Result CheckText(std::string text, const Surroundings& surroundings, StreamSummary* summary = nullptr);

/// The types of a catalogue, as far as it can be read.
Catalogue ReadCatalogue(std::string bytes);

} // namespace check
