#pragma once

#include "tests/support/CalledFrom.h"
#include "tests/support/Fixture.h"
#include "tests/support/OnlyBox.h"

#include <ostream>
#include <string>

namespace types {

using Type = com::Ref<ISNVType>;

/// A catalogue entry: <SNVT_id attributes>children</SNVT_id>.
std::wstring Entry(const std::wstring& id, const std::wstring& children, const std::wstring& attributes = {});

/// What a type answers to every member, for a comparison of all at once.
struct Answers {
    std::wstring id;
    long z3Region = 0;
    long factor = 0;
    long aCoef = 0;
    long bCoef = 0;
    long cCoef = 0;
    std::wstring genType;
    std::wstring luiType;
    std::wstring invalidValue;
    std::wstring name;
    std::wstring min;
    std::wstring max;
    std::wstring units;
    std::wstring bacnetUnits;
    std::wstring enumDesc;
    long length = 0;
    bool hasField = false;
    bool isEnumType = false;

    bool operator==(const Answers&) const = default;
};
Answers AnswersOf(const Type& type);
/// For a person who reads a failure.
void PrintTo(const Answers& answers, std::ostream* out);

/// Types are reached through points: an output assigns its type's identifier
/// once to a new object; an attribute's XmlLoad assigns one to the object that
/// it has.
class TypesTest : public support::ComponentTest {
  protected:
    com::Ref<IAppObject> module;

    void TearDown() override;
    /// A new type with this identifier, assigned once.
    Type Assigned(const std::wstring& id, const support::CalledFrom& = {});
    /// The same over a catalogue of this one entry, named 1.
    Type FromEntry(const std::wstring& children, const std::wstring& attributes = {},
                   const support::CalledFrom& = {});
    /// An attribute without a type: its first XmlLoad makes one.
    com::Ref<IAttribute> Untyped(const support::CalledFrom& = {});
    /// Assigns an identifier to an attribute's type, text as it stands.
    Type Assign(const com::Ref<IAttribute>& attribute, const std::wstring& id,
                const support::CalledFrom& = {});

    void ExpectNoBox(const support::CalledFrom& = {});
    /// The one box since the last look, a message box with an OK button.
    void ExpectMessage(const std::wstring& text, const std::wstring& caption, UINT icon,
                       const support::CalledFrom& = {});
    /// The one box since the last look, the report of a failed assignment.
    void ExpectAssignmentReport(const std::wstring& description, const std::wstring& id,
                                const support::CalledFrom& = {});
};

} // namespace types
