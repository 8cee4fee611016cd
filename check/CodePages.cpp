#include "check/CodePages.h"

#include "check/Findings.h"
#include "check/Nearest.h"
#include "check/Utf8.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>
#include <vector>

namespace check {

namespace {

constexpr CodePage kCodePages[] = {
#include "check/CodePages.inc"
};

constexpr const char* kAll =
    "UTF-8, UTF-16, US-ASCII, ISO-8859-1 to -11 and -13 to -16, windows-874 and -1250 to -1258, KOI8-R, "
    "KOI8-U, TIS-620, macintosh, or one of IBM's from IBM437 to IBM869";

/// Names that other programs write. Not every parser knows them, so they are an error; but what
/// they mean is known, and the text is read.
constexpr std::pair<std::string_view, std::string_view> kAliases[] = {
    {"UTF8", kUtf8},           {"ASCII", kAscii},         {"ANSI_X3.4-1968", kAscii},
    {"LATIN1", "ISO-8859-1"},  {"LATIN-1", "ISO-8859-1"}, {"LATIN2", "ISO-8859-2"},
    {"LATIN-2", "ISO-8859-2"}, {"LATIN9", "ISO-8859-15"}, {"LATIN-9", "ISO-8859-15"}};

/// Encodings of several bytes, and of which not even the declaration is ASCII's.
constexpr std::string_view kNotRead[] = {
    "SHIFT_JIS", "EUC-JP",  "ISO-2022-JP", "GB2312",     "GBK",        "GB18030", "BIG5",   "EUC-KR",
    "IBM037",    "IBM1047", "ISO-2022-KR", "HZ-GB-2312", "BIG5-HKSCS", "IBM500",  "IBM864", "UTF-7"};

/// The encoding that was probably meant. None where the numbers alone differ: 874 is no
/// slip of the pen for 1254.
std::string_view Meant(std::string_view name, std::span<const std::string_view> known) {
    const auto withoutDigits = [](std::string_view text) {
        std::string letters = Upper(text);
        std::erase_if(letters, [](char c) { return c >= '0' && c <= '9'; });
        return letters;
    };
    const std::string_view near = Nearest(name, known);
    return withoutDigits(near) == withoutDigits(name) ? std::string_view() : near;
}

} // namespace

const CodePage* FindCodePage(std::string_view name) {
    const auto* const page = std::find_if(std::begin(kCodePages), std::end(kCodePages),
                                          [&](const CodePage& known) { return known.name == name; });
    return page != std::end(kCodePages) ? page : nullptr;
}

std::string StandardName(std::string_view name) {
    for (const auto& [alias, standard] : kAliases) {
        if (alias == name) {
            return std::string(standard);
        }
    }
    // ISO8859-1, ISO_8859-1, CP1252, CP-1252, CP850.
    for (const auto& [prefix, standard] :
         {std::pair<std::string_view, std::string_view>{"ISO8859", "ISO-8859"},
          {"ISO_8859", "ISO-8859"},
          {"CP-", "WINDOWS-"},
          {"CP", "WINDOWS-"},
          {"CP", "IBM"}}) {
        std::string known =
            name.starts_with(prefix) ? std::string(standard) + std::string(name.substr(prefix.size())) : "";
        if (FindCodePage(known) != nullptr) {
            return known;
        }
    }
    return {};
}

void ReportUnknownEncoding(std::string_view name, Span declared, Findings& findings) {
    const std::string meant = StandardName(Upper(name));
    std::vector<std::string_view> known = {kUtf8, kUtf16, kAscii};
    for (const CodePage& page : kCodePages) {
        known.push_back(page.name);
    }
    const bool isThere =
        std::find(std::begin(kNotRead), std::end(kNotRead), Upper(name)) != std::end(kNotRead);
    findings.Add(RuleId::EncodingUnknown, declared,
                 isThere ? "the encoding " + Quoted(name) + " is not read"
                         : "there is no encoding " + Quoted(name),
                 kAll, meant.empty() && !isThere ? std::string(Meant(name, known)) : meant);
}

} // namespace check
