#pragma once

#include "tests/support/Read.h"

#include <string>

namespace benchmark {

// The work that no implementation of a job can avoid: parsing the same text
// and reading the same nodes once, or building the same tree, plus one
// message-loop yield per item where the contract asks for it.

/// `count` yields to the message loop.
void YieldTimes(long count);

/// Parses a device stream, selects its header and reads each point's children.
/// Points with a type cost one catalogue look-up and one reading of its entry.
void ReadStream(const std::wstring& stream, const support::Document& catalogue, long yields);

/// Builds an element with `children` text children below a parent.
void BuildElement(const support::Document& document, IXMLDOMNode* parent, const wchar_t* name, int children);

/// Builds an element with `attributes` attributes below a parent.
com::Ref<IXMLDOMElement> BuildAttributes(const support::Document& document, IXMLDOMNode* parent,
                                         const wchar_t* name, int attributes);

/// Reads type, name and text of every child of a node.
void ReadChildren(IXMLDOMNode* node);

} // namespace benchmark
