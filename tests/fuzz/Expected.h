#pragma once

#include "tests/support/Read.h"

#include <set>
#include <string>
#include <vector>

namespace component_fuzz {

// What the documents' rules say that a module makes of a document, read by the
// test's own DOM.

/// A definition: the texts that it gives, and whether it has the element that
/// they stand in.
struct ExpectedDefinition {
    bool hasObject = false;
    std::wstring name, userName, id, description, category;
};
ExpectedDefinition DefinitionOf(const support::Document& document);

/// A device stream: how the call ends and what stands then.
struct ExpectedStream {
    HRESULT result = S_OK;
    std::wstring name, devKey;
    short objectId = 0;
    long cdb = 0, ddb = 0;
    std::vector<std::wstring> inputs, outputs, attributes;
};
/// `isXml` is false for a text that the DOM does not take.
ExpectedStream StreamOf(const support::Document& document, bool isXml);

/// A project element over what the module held before. Reading ends at the
/// first fault, which is reported.
struct ExpectedProject {
    std::wstring userName, deviceKey;
    double x = 0, y = 0;
    short objectId = 0;
    std::set<std::wstring> displayed;
    bool isFaulty = false;
};
void Apply(const com::Ref<IXMLDOMElement>& element, const std::vector<std::wstring>& outputs,
           ExpectedProject& expected);

} // namespace component_fuzz
