#pragma once

#include <string>

namespace benchmark {

// What the jobs work on, made alike at every size.

/// A catalogue of 221 numeric types: every child of an entry is read.
std::wstring CatalogueText();
/// A definition file with a default value for every attribute of the stream.
std::wstring DefinitionText(long points);
/// A device stream. A third of the points are inputs, a third outputs, a third
/// attributes, in turn.
std::wstring StreamText(long points);
/// A device stream of inputs alone.
std::wstring InputStreamText(long points);

/// The number with zeros before it: a text of the same length at every size.
std::wstring SixDigits(long number);
/// Name of the point with this number, of the same length at every size.
std::wstring PointName(long number);

} // namespace benchmark
