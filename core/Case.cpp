#include "core/Case.h"

#include <algorithm>
#include <cstdint>

namespace tam {

namespace {

/// Small letters whose capitals stand at one distance.
struct LetterRange {
    std::uint32_t firstSmall;
    std::uint32_t lastSmall;
    std::int32_t toCapital;
};

constexpr LetterRange kRanges[] = {
    {0x00E0, 0x00F6, -32},                                               // Latin-1 up to the division sign
    {0x00F8, 0x00FE, -32},                                               // and after it
    {0x00FF, 0x00FF, 121},                                               // y with diaeresis
    {0x03AC, 0x03AC, -38}, {0x03AD, 0x03AF, -37},                        // Greek with tonos
    {0x03B1, 0x03C1, -32}, {0x03C3, 0x03CB, -32},                        // Greek without the final sigma
    {0x03CC, 0x03CC, -64}, {0x03CD, 0x03CE, -63},                        // Greek with tonos
    {0x0430, 0x044F, -32}, {0x0450, 0x045F, -80}, {0x04CF, 0x04CF, -15}, // Cyrillic
};

/// Ranges in which each capital is followed by its small letter. The first
/// one is a capital.
struct Pairs {
    std::uint32_t first;
    std::uint32_t last;
};

constexpr Pairs kPairs[] = {
    {0x0100, 0x012F}, {0x0132, 0x0137}, {0x0139, 0x0148}, {0x014A, 0x0177}, {0x0179, 0x017E}, // Latin
    {0x01A0, 0x01A5}, {0x01AF, 0x01B0}, {0x0200, 0x021F}, {0x0222, 0x0233},                   // and its
    {0x1E00, 0x1E95}, {0x1EA0, 0x1EFF},                                                       // extensions
    {0x03D8, 0x03EF},                                                                         // Greek
    {0x0460, 0x0481}, {0x048A, 0x04BF}, {0x04C1, 0x04CE}, {0x04D0, 0x052F},                   // Cyrillic
};

constexpr std::uint32_t kFinalSigma = 0x03C2;
constexpr std::uint32_t kCapitalSigma = 0x03A3;

std::uint32_t Code(wchar_t c) {
    return static_cast<std::uint32_t>(c);
}

bool IsCapitalOfPair(const Pairs& pairs, std::uint32_t code) {
    return (code - pairs.first) % 2 == 0;
}

const Pairs* PairsOf(std::uint32_t code) {
    const auto* found = std::find_if(std::begin(kPairs), std::end(kPairs), [&](const Pairs& pairs) {
        return code >= pairs.first && code <= pairs.last;
    });
    return found != std::end(kPairs) ? found : nullptr;
}

std::uint32_t Shifted(std::uint32_t code, std::int32_t by) {
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(code) + by);
}

std::uint32_t Capital(std::uint32_t code) {
    if (code == kFinalSigma) {
        return kCapitalSigma;
    }
    for (const LetterRange& range : kRanges) {
        if (code >= range.firstSmall && code <= range.lastSmall) {
            return Shifted(code, range.toCapital);
        }
    }
    const Pairs* pairs = PairsOf(code);
    return pairs != nullptr && !IsCapitalOfPair(*pairs, code) ? code - 1 : code;
}

std::uint32_t Small(std::uint32_t code) {
    for (const LetterRange& range : kRanges) {
        if (code >= Shifted(range.firstSmall, range.toCapital) &&
            code <= Shifted(range.lastSmall, range.toCapital)) {
            return Shifted(code, -range.toCapital);
        }
    }
    const Pairs* pairs = PairsOf(code);
    return pairs != nullptr && IsCapitalOfPair(*pairs, code) ? code + 1 : code;
}

template <class Map>
std::wstring Mapped(std::wstring_view text, Map map) {
    std::wstring result(text);
    std::transform(result.begin(), result.end(), result.begin(), map);
    return result;
}

} // namespace

wchar_t UpperCase(wchar_t c) {
    if (Code(c) < 0x80) {
        return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - (L'a' - L'A')) : c;
    }
    return static_cast<wchar_t>(Capital(Code(c)));
}

wchar_t LowerCase(wchar_t c) {
    if (Code(c) < 0x80) {
        return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + (L'a' - L'A')) : c;
    }
    return static_cast<wchar_t>(Small(Code(c)));
}

std::wstring UpperCase(std::wstring_view text) {
    return Mapped(text, [](wchar_t c) { return UpperCase(c); });
}

std::wstring LowerCase(std::wstring_view text) {
    return Mapped(text, [](wchar_t c) { return LowerCase(c); });
}

bool EqualIgnoringCase(std::wstring_view a, std::wstring_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](wchar_t x, wchar_t y) { return x == y || UpperCase(x) == UpperCase(y); });
}

std::size_t FoldedHash::operator()(std::wstring_view key) const {
    // FNV-1a over characters in place of bytes.
    std::uint32_t hash = 0x811C9DC5u;
    for (const wchar_t c : key) {
        hash = (hash ^ Code(UpperCase(c))) * 0x01000193u;
    }
    return hash;
}

} // namespace tam
