#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace view {

/// After the element that begins at a place of a well-formed text.
std::size_t EndOfElement(std::string_view text, std::size_t begin);

/// A document's element as it stands there, without what is before and after it.
std::string RootOf(const std::string& document);

/// The children of a document's element, each as it stands there.
std::vector<std::string> ElementsOf(const std::string& document);

/// Whether a project, well-formed and in UTF-8, has an element of the module of this stream: the
/// component's own, its stream or both.
bool HasModuleOf(const std::string& project, const std::string& stream);

/// A project's text, well-formed and in UTF-8, with elements of a device written into it: each
/// in the place of the first one that is of the same object, else after all others. Every other
/// character stays as it is, but for a declaration of another encoding.
std::string WithElements(std::string project, const std::vector<std::string>& elements);

} // namespace view
