#pragma once

#include <span>
#include <string_view>

namespace check {

/// Errors are faults: a box or a failing call at load, or data that is lost or
/// wrong without a word. Warnings are doubtful, notes are good to know.
enum class Severity { Error, Warning, Note };

/// In the order of the table.
enum class RuleId {
    // The file and its characters.
    FileEmpty,
    EncodingInvalid,
    EncodingUnknown,
    EncodingMismatch,
    // The form of the XML.
    XmlDeclaration,
    XmlCharacter,
    XmlTag,
    XmlUnclosed,
    XmlEndTag,
    XmlAttribute,
    XmlAttributeTwice,
    XmlReference,
    XmlComment,
    XmlCData,
    XmlInstruction,
    XmlDoctype,
    XmlRoot,
    XmlTooDeep,
    XmlTooLong,
    XmlNamespace,
    XmlSpace,
    // Elements and attributes, in all kinds of documents.
    KindUnknown,
    RootName,
    ElementUnknown,
    ElementMisspelt,
    ElementRepeated,
    ElementMisplaced,
    ElementMissing,
    ElementEmpty,
    ElementInText,
    SectionOrder,
    TextSplit,
    TextStray,
    InstructionInside,
    AttributeUnknown,
    AttributeMisspelt,
    AttributeMissing,
    BlankAround,
    NumberForm,
    NumberRange,
    FlagValue,
    FlagPresence,
    // Points.
    PointTwice,
    PointName,
    PointNameCase,
    TypeMissing,
    InputUntyped,
    TypeEmpty,
    TypeUnknown,
    TypeFaulty,
    TypeIncomplete,
    TypeRetired,
    AddressMissing,
    AddressTwice,
    ReferenceNothing,
    ReferenceForm,
    // Compatible lists.
    ListMissing,
    ListEmpty,
    ListEndsEarly,
    ListEntryUnknown,
    ListEntryTwice,
    ListOwnType,
    // Values.
    ValueMissing,
    ValueNotNumber,
    ValueDecimalMark,
    ValueLimit,
    ValueInvalid,
    ValueResolution,
    ValueBits,
    ValueTooLong,
    EnumNoLabel,
    EnumDescription,
    // Module definitions.
    RowName,
    RowTwice,
    RowStray,
    SizeRange,
    DefaultNotNumber,
    DefaultNotTaken,
    // Channel definitions.
    ConfigNothing,
    // Catalogues.
    EntryName,
    EntryTwice,
    EntryType,
    EntryUntyped,
    EntryLength,
    EntryCoefficient,
    EntryLimitForm,
    EntryLimitMissing,
    EntryLimitOrder,
    // Device libraries.
    LibraryMissing,
    LibraryNoModule,
    LibraryObject,
    // Projects.
    ProjectModule,
    ProjectChannel,
    ProjectPoint,
    ProjectKey,
    // Export documents.
    ExportForm,
    ExportConnected,
    // What does not fit on the list.
    TooManyFindings,
    Count
};

struct Rule {
    RuleId id;
    /// What stands in brackets after a message.
    std::string_view name;
    Severity severity;
    std::string_view title;
    std::string_view explanation;
    /// A piece of a document that breaks the rule.
    std::string_view example;
};

const Rule& RuleOf(RuleId id);
std::span<const Rule> AllRules();
/// "error", "warning", "note".
std::string_view NameOf(Severity severity);

} // namespace check
