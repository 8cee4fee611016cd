#pragma once

#include <string>
#include <string_view>

namespace check {

class Findings;

/// Makes the text of a file's bytes: by the byte order mark, else by what the XML
/// declaration names, else as UTF-8. What cannot be read is reported, and
/// U+FFFD stands in its place. The bytes are moved where they are the text.
std::string Decode(std::string bytes, Findings& findings);

/// Reports a declaration of an encoding that there is none; the text is in UTF-8 whatever it
/// declares.
void CheckDeclaredEncoding(const std::string& text, Findings& findings);

/// Reports a declared encoding that not every parser loads: of a document that the component has
/// its own parser load.
void CheckCommonEncoding(std::string_view text, Findings& findings);

} // namespace check
