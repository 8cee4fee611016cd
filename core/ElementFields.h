#pragma once

#include "core/Numbers.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tam {

// Documents as tables: a row names an element and the member of a plain struct
// that the element fills, or is written from. One reader and one writer go over
// all tables; which nodes a document has is the callers' part.

/// The conversions that follow the user's locale. The platform makes them.
struct LocaleRules {
    /// These two throw a RunTimeError for a text that is no such value.
    std::int32_t (*wholeNumber)(std::wstring_view text);
    bool (*truth)(std::wstring_view text);
    /// Nothing for a text that is neither.
    std::optional<bool> (*truthIn)(std::wstring_view text);
    std::wstring (*text)(double number);
};

/// An element on its way into a struct. Its text is read when a row takes it: most
/// elements of a document have no row, and of some the presence alone counts.
struct ElementSource {
    const std::function<std::wstring()>& text;
    const LocaleRules& locale;
};

/// A row of a table for reading.
template <class Data>
struct ReadField {
    /// In capitals: names of elements are compared so.
    std::wstring_view keyword;
    /// Throws what reading the text and converting it throw; the member then
    /// keeps its value.
    void (*take)(Data& data, const ElementSource& element);
};

/// Lets the row of a name take the element. False when no row has the name, which
/// must be in capitals.
template <class Data, std::size_t N>
bool TakeElement(const ReadField<Data> (&fields)[N], std::wstring_view keyword, Data& data,
                 const ElementSource& element) {
    for (const ReadField<Data>& field : fields) { // NOLINT(readability-use-anyofallof): it acts
        if (field.keyword == keyword) {
            field.take(data, element);
            return true;
        }
    }
    return false;
}

// What rows take. The member stands in the row: {L"ID", TakeText<&Data::id>}.

template <auto Member, class Data>
void TakeText(Data& data, const ElementSource& element) {
    data.*Member = element.text();
}
/// The element's presence gives the flag its value; the text is not read.
template <auto Member, bool Value, class Data>
void TakePresence(Data& data, const ElementSource&) {
    data.*Member = Value;
}
/// True for exactly "1": a blank beside it makes it another text.
template <auto Member, class Data>
void TakeOne(Data& data, const ElementSource& element) {
    data.*Member = element.text() == L"1";
}
/// The number that the text begins with, whatever the locale.
template <auto Member, class Data>
void TakeNumber(Data& data, const ElementSource& element) {
    data.*Member = Val(element.text());
}
/// The same to the nearest whole number.
template <auto Member, class Data>
void TakeInt16(Data& data, const ElementSource& element) {
    data.*Member = ToInt16(Val(element.text()));
}
template <auto Member, class Data>
void TakeInt32(Data& data, const ElementSource& element) {
    data.*Member = ToInt32(Val(element.text()));
}
// By the rules of the user's locale.
template <auto Member, class Data>
void TakeWholeNumber(Data& data, const ElementSource& element) {
    data.*Member = element.locale.wholeNumber(element.text());
}
template <auto Member, class Data>
void TakeTruth(Data& data, const ElementSource& element) {
    data.*Member = element.locale.truth(element.text());
}

/// A row of a table for writing.
template <class Data>
struct WrittenField {
    const wchar_t* name;
    std::wstring (*give)(const Data& data, const LocaleRules& locale);
};

/// Calls write(name, text) for each row, in the table's order.
template <class Data, std::size_t N, class F>
void GiveElements(const WrittenField<Data> (&fields)[N], const Data& data, const LocaleRules& locale,
                  F&& write) {
    for (const WrittenField<Data>& field : fields) {
        write(field.name, field.give(data, locale));
    }
}

/// How a document writes a flag.
inline std::wstring FlagText(bool flag) {
    return flag ? L"1" : L"0";
}
/// How it writes a truth value: the platform's texts, whatever the locale.
inline std::wstring TruthText(bool value) {
    return value ? L"True" : L"False";
}

// What rows give: {L"UserName", GiveText<&Data::userName>}.

template <auto Member, class Data>
std::wstring GiveText(const Data& data, const LocaleRules&) {
    return data.*Member;
}
template <auto Member, class Data>
std::wstring GiveFlag(const Data& data, const LocaleRules&) {
    return FlagText(data.*Member);
}
template <auto Member, class Data>
std::wstring GiveTruth(const Data& data, const LocaleRules&) {
    return TruthText(data.*Member);
}
/// A flag that a definition gives as text: "1" for every text that means true.
template <auto Member, class Data>
std::wstring GiveTextAsFlag(const Data& data, const LocaleRules& locale) {
    return FlagText(locale.truthIn(data.*Member).value_or(false));
}
template <auto Member, class Data>
std::wstring GiveInteger(const Data& data, const LocaleRules&) {
    return std::to_wstring(data.*Member);
}
/// A number with the user's decimal mark.
template <auto Member, class Data>
std::wstring GiveNumber(const Data& data, const LocaleRules& locale) {
    return locale.text(data.*Member);
}

} // namespace tam
