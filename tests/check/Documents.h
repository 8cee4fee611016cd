#pragma once

#include "check/Check.h"

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace checking {

/// A finding as a test says it.
struct Place {
    check::RuleId rule;
    std::size_t line = 0;
    std::size_t column = 0;
    bool operator==(const Place&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Place& place);

/// A small catalogue: 7 Textual of 1, 8 UnsignedNumeric, 10 retired, 22 Enum, 81 and 105
/// with resolution and 105 with an invalid value, 83 Bitfield of 2, 95 Struct, 51
/// Float, 216 without a general type, 300 with a fault.
const check::Surroundings& Types();

/// What is found in a text, without its catalogue.
std::vector<check::Finding> Find(std::string_view document);
std::vector<Place> Places(const std::vector<check::Finding>& findings);

/// A device stream, each part given or as a good stream has it. No line ends.
std::string Stream(std::string_view inputs, std::string_view outputs, std::string_view attributes);
/// A good attribute AI1_Value with these type and value.
std::string WithValue(std::string_view type, std::string_view value);
/// A good stream with an attribute in place of its own.
std::string WithAttribute(std::string_view attribute);
std::string WithOutput(std::string_view output);
std::string WithInput(std::string_view input);

/// The document has a "^" before the very thing that breaks the rule, and breaks
/// no other one. `suggestion` is what the finding must suggest.
void ExpectOne(check::RuleId rule, std::string_view marked, std::string_view suggestion = {},
               const check::Surroundings& surroundings = Types());
/// The same where the one fault has others in its wake.
void ExpectAmong(check::RuleId rule, std::string_view marked, std::string_view suggestion = {},
                 const check::Surroundings& surroundings = Types());
void ExpectClean(std::string_view document, const check::Surroundings& surroundings = Types());

} // namespace checking
