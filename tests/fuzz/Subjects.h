#pragma once

#include "Input.h"

#include <array>

namespace tam::fuzz {

// One function per subject: it reads the input and throws BrokenProperty where
// the pure code breaks a property that holds for every input.

void FuzzCollection(Input& input);
void FuzzCompatible(Input& input);
void FuzzDialogs(Input& input);
void FuzzEnumeration(Input& input);
void FuzzExport(Input& input);
void FuzzFields(Input& input);
void FuzzKeys(Input& input);
void FuzzMarks(Input& input);
void FuzzNames(Input& input);
void FuzzValues(Input& input);

struct Subject {
    /// The name of its folder in the corpus.
    const char* name;
    void (*run)(Input& input);
    /// Its time grows with the length of the input, not with the square.
    bool isLinear = false;
};

inline constexpr std::array<Subject, 10> kSubjects = {{
    {"collection", &FuzzCollection},
    {"compatible", &FuzzCompatible},
    {"dialogs", &FuzzDialogs},
    {"enumeration", &FuzzEnumeration},
    {"export", &FuzzExport, true},
    {"fields", &FuzzFields, true},
    {"keys", &FuzzKeys},
    {"marks", &FuzzMarks, true},
    {"names", &FuzzNames, true},
    {"values", &FuzzValues, true},
}};

} // namespace tam::fuzz
