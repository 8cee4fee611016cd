#pragma once

#include "tests/support/Read.h"

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace component_fuzz {

/// What the collections of a module make of a saved element with the sections
/// "Inputs", "Outputs" and "Attributes", by the documents' rules: the inputs in
/// their new order, the outputs that are displayable, and how many failures
/// are reported. Before it is read, it holds what the module has.
struct ExpectedSaved {
    std::vector<std::wstring> inputs, outputs, attributes;
    std::set<std::wstring> displayed;
    std::size_t reports = 0;

    void ReadInputs(const com::Ref<IXMLDOMNode>& section);
    void ReadOutputs(const com::Ref<IXMLDOMNode>& section);
    void ReadAttributes(const com::Ref<IXMLDOMNode>& section);
};

} // namespace component_fuzz
