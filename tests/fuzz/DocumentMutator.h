#pragma once

#include "tests/fuzz/Random.h"
#include "tests/fuzz/Tree.h"

#include <string>

namespace component_fuzz {

/// Changes one to five things in a tree: elements dropped, repeated, moved,
/// renamed, attributes too, texts replaced, comments and sections put in.
void Mutate(Tree& tree, Random& random);

/// The text of a tree, in one of several cases damaged as a text: cut off, with
/// a character put in, very deep, with a DTD whose entities grow or lie in
/// `secretFile`.
std::wstring Damage(const Tree& tree, const std::wstring& secretFile, Random& random);

/// UTF-8, in which each half of a surrogate pair is written as if it were a character.
std::string Utf8(const std::wstring& text);
/// Bytes of a file in an encoding, sometimes another one than the text says.
std::string Encode(const std::wstring& text, Random& random);

} // namespace component_fuzz
