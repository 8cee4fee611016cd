#pragma once

#include "core/ElementFields.h"
#include "core/RunTimeError.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tam {

/// Rules of a user who writes 0,5, as far as the tests go.
inline constexpr LocaleRules kCommaRules = {
    [](std::wstring_view text) -> std::int32_t {
        if (text.empty() || text.find_first_not_of(L"0123456789") != std::wstring_view::npos) {
            throw RunTimeError(RunTime::TypeMismatch);
        }
        return static_cast<std::int32_t>(Val(text));
    },
    [](std::wstring_view text) {
        if (text != L"True" && text != L"False") {
            throw RunTimeError(RunTime::TypeMismatch);
        }
        return text == L"True";
    },
    [](std::wstring_view text) {
        return text == L"True" || text == L"False" ? std::optional(text == L"True") : std::nullopt;
    },
    [](double number) {
        const int tenths = static_cast<int>(number * 10);
        return std::to_wstring(tenths / 10) + L"," + std::to_wstring(tenths % 10);
    },
};

/// Lets the table take one element. True when it has a row of that name.
template <class Data, std::size_t N>
bool Take(const ReadField<Data> (&fields)[N], std::wstring_view keyword, Data& data,
          const std::wstring& elementText) {
    const std::function<std::wstring()> text = [&] { return elementText; };
    return TakeElement(fields, keyword, data, {text, kCommaRules});
}

/// What a table writes.
using Written = std::vector<std::pair<std::wstring, std::wstring>>;
template <class Data, std::size_t N>
Written Give(const WrittenField<Data> (&fields)[N], const Data& data) {
    Written written;
    GiveElements(fields, data, kCommaRules, [&](const wchar_t* name, std::wstring text) {
        written.emplace_back(name, std::move(text));
    });
    return written;
}

/// The keywords of a table. Rows after the first of a name would never be asked.
template <class Data, std::size_t N>
std::multiset<std::wstring> Keywords(const ReadField<Data> (&fields)[N]) {
    std::multiset<std::wstring> keywords;
    for (const ReadField<Data>& field : fields) {
        keywords.emplace(field.keyword);
    }
    return keywords;
}

} // namespace tam
