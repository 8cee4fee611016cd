// Input: a byte that chooses the marks of a user, a number text. How the host
// services read and write the numbers of users.
#include "host/NumberText.h"
#include "Subjects.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace tam::fuzz {

namespace {

bool IsDigits(const std::wstring& text) {
    return std::all_of(text.begin(), text.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; });
}

std::wstring WithoutSign(const std::wstring& text) {
    return text.starts_with(L'-') || text.starts_with(L'+') ? text.substr(1) : text;
}

/// The digits of a whole part: no groups, or groups of three after the first.
std::optional<std::wstring> Ungrouped(const std::wstring& text, const std::wstring& mark) {
    std::vector<std::wstring> groups(1);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!mark.empty() && text.compare(i, mark.size(), mark) == 0) {
            groups.emplace_back();
            i += mark.size() - 1;
        } else {
            groups.back() += text[i];
        }
    }
    std::wstring digits;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        const bool isFirst = i == 0;
        const std::size_t size = groups[i].size();
        if (!IsDigits(groups[i]) || (groups.size() > 1 && (isFirst ? size == 0 || size > 3 : size != 3))) {
            return std::nullopt;
        }
        digits += groups[i];
    }
    return digits;
}

/// The text in the form of C, taken apart from its marks outwards; none where
/// it is no number.
std::optional<std::string> PlainByRule(std::wstring text, const orv::NumberMarks& marks) {
    text.erase(0, std::min(text.find_first_not_of(L" \t"), text.size()));
    text.erase(text.find_last_not_of(L" \t") + 1);
    const std::size_t exponentAt = std::min(text.find_first_of(L"Ee"), text.size());
    const bool hasExponent = exponentAt < text.size();
    const std::wstring exponent = hasExponent ? text.substr(exponentAt + 1) : L"0";
    const std::wstring mantissa = WithoutSign(text.substr(0, exponentAt));
    const std::size_t mark = std::min(mantissa.find(marks.decimal), mantissa.size());
    const auto whole = Ungrouped(mantissa.substr(0, mark), marks.group);
    const std::wstring decimals =
        mark < mantissa.size() ? mantissa.substr(mark + marks.decimal.size()) : std::wstring();
    const std::wstring exponentDigits = WithoutSign(exponent);
    if (!whole || !IsDigits(decimals) || (*whole + decimals).empty() || exponentDigits.empty() ||
        !IsDigits(exponentDigits)) {
        return std::nullopt;
    }
    const std::wstring plain =
        (text.starts_with(L'-') ? L"-" : L"") + *whole + L"." + decimals + L"e" + exponent;
    return std::string(plain.begin(), plain.end());
}

const orv::NumberMarks& MarksOf(std::size_t choice) {
    static const std::vector<orv::NumberMarks> all = {{L".", L","}, {L",", L"."}, {L",", L"\u00A0"},
                                                      {L".", L"'"}, {L".", L""},  {L",", L" "}};
    return all[choice % all.size()];
}

} // namespace

void FuzzMarks(Input& input) {
    const orv::NumberMarks& marks = MarksOf(input.Byte());
    const std::wstring text = input.Rest();
    const auto number = orv::ParseNumber(text, marks);
    const auto plain = PlainByRule(text, marks);
    Require(plain || !number);
    if (!number) {
        const double size = plain ? std::abs(std::strtod(plain->c_str(), nullptr)) : 0;
        Require(!plain || size == 0 || !std::isfinite(size)); // too small, too large
        return;
    }
    Require(*number == std::strtod(plain->c_str(), nullptr));

    const std::wstring written = orv::FormatNumber(*number, marks);
    const auto again = orv::ParseNumber(written, marks);
    Require(again && *again == *number);
    Require(orv::FormatNumber(*again, marks) == written);
    const double rounded = orv::RoundNumber(*number, 0);
    Require(std::abs(rounded - *number) <= std::abs(*number) * 1e-6);
    Require(orv::RoundNumber(rounded, 0) == rounded && !(rounded == 0 && std::signbit(rounded)));
}

} // namespace tam::fuzz
