#pragma once

#include "page/Page.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace page {

// The parts of the page, each as an element.

std::string FactsHtml(const Facts& facts);
std::string TableHtml(const Table& table, std::string_view id);
std::string EnumerationHtml(const Enumeration& enumeration);
std::string FindingHtml(const Finding& finding);

/// "Inputs (13)": the number in an element of its own.
std::string HeadingHtml(std::string_view title, std::size_t count);

} // namespace page
