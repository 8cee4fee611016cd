#include "tests/fuzz/CheckedLoads.h"

#include "bench/Text.h"
#include "check/Utf8.h"
#include "tests/fuzz/Watchdog.h"
#include "tests/Places.h"
#include "tests/support/Fixture.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <string_view>

namespace component_fuzz {

namespace {

using bench::Utf8;
using check::RuleId;

/// Enough of a document to see what it is.
constexpr std::size_t kShown = 4000;

std::string ErrorsOf(const check::Result& result) {
    std::string text;
    for (const check::Finding& finding : result.findings) {
        if (finding.Level() == check::Severity::Error) {
            text += std::to_string(finding.line) + ":" + std::to_string(finding.column) + " " +
                    std::string(check::RuleOf(finding.rule).name) + ": " + finding.message + "\n";
        }
    }
    return text;
}

template <class F>
bool HasError(const check::Result& result, F&& fits) {
    return std::any_of(result.findings.begin(), result.findings.end(), [&](const check::Finding& finding) {
        return finding.Level() == check::Severity::Error && fits(finding);
    });
}

bool IsOneOf(RuleId rule, std::initializer_list<RuleId> rules) {
    return std::find(rules.begin(), rules.end(), rule) != rules.end();
}

/// The component takes the first piece of a text that is in several.
bool IsOfPieces(RuleId rule) {
    return IsOneOf(rule, {RuleId::TextSplit, RuleId::ElementInText, RuleId::InstructionInside});
}

/// A finding names a type as the document writes it, with blanks around it and shortened.
bool NamesType(std::string_view message, std::string_view id) {
    const std::size_t quote = message.find('"');
    const std::string_view named = message.substr(quote + 1, message.rfind('"') - quote - 1);
    const std::string shown = check::Quoted(id);
    return check::Trim(named) == id || named == std::string_view(shown).substr(1, shown.size() - 2);
}

/// One round alone, or rounds by time, come to other counts.
bool IsWholeRun() {
    constexpr unsigned kNone = 0;
    return Setting(L"TAM_FUZZ_SECONDS", kNone) == kNone && Setting(L"TAM_FUZZ_ROUND", ~0U) == ~0U &&
           Setting(L"TAM_FUZZ_ROUNDS", ~0U) == ~0U;
}

/// Whether an error says what the box says: that the catalogue has not this type, or that this
/// point's list is empty. Of any other box some error must speak.
bool IsExplained(const check::Result& result, const bench::Box& box) {
    constexpr std::string_view kNoNode = "Can't find the node related to SNVT ID ";
    constexpr std::string_view kNoList = ": SNVT Compatibility list not defined";
    const std::string text = Utf8(box.text);
    return HasError(result, [&](const check::Finding& finding) {
        if (finding.rule <= RuleId::XmlSpace || IsOfPieces(finding.rule)) {
            return true;
        }
        if (text.starts_with(kNoNode)) {
            const std::string_view id = check::Trim(std::string_view(text).substr(kNoNode.size()));
            return finding.rule == RuleId::TypeUnknown && NamesType(finding.message, id);
        }
        return text.find(kNoList) == std::string::npos ||
               IsOneOf(finding.rule, {RuleId::ListEmpty, RuleId::TypeEmpty});
    });
}

} // namespace

void CheckedLoads::Compare(const check::Result& result, check::Kind kind, bool isLoaded,
                           const std::vector<bench::Box>& boxes, const std::string& document) {
    if (result.kind != kind && result.kind != check::Kind::Unknown && !result.HasErrors()) {
        ++tally_["another kind of document"];
        return; // a good one of its kind, that no host would load here
    }
    tally_[std::string(check::NameOf(result.kind)) + (result.HasErrors() ? ", errors, " : ", passed, ") +
           (!isLoaded       ? "failed"
            : boxes.empty() ? "quiet"
                            : "boxes")]++;
    EXPECT_TRUE((isLoaded && boxes.empty()) || result.HasErrors())
        << (isLoaded ? "" : "the call failed; ")
        << (boxes.empty() ? std::string() : "a box: " + Utf8(boxes.front().text)) << "\n"
        << document.substr(0, kShown);
    for (const bench::Box& box : boxes) {
        EXPECT_TRUE(IsExplained(result, box)) << Utf8(box.text) << "\n"
                                              << ErrorsOf(result) << document.substr(0, kShown);
    }
}

void CheckedLoads::Print() const {
    for (const auto& [what, count] : tally_) {
        std::printf("%8u %s\n", count, what.c_str());
    }
}

unsigned CheckedLoads::Count(check::Kind kind, const std::string& outcome) const {
    const auto found = tally_.find(std::string(check::NameOf(kind)) + ", " + outcome);
    return found != tally_.end() ? found->second : 0;
}

void CheckedLoads::ExpectBothDirections(check::Kind kind, unsigned passed, unsigned faulty) const {
    if (IsWholeRun()) {
        EXPECT_GE(Count(kind, "passed, quiet"), passed) << check::NameOf(kind);
    }
    ExpectErrorsThatShow(kind, faulty);
}

void CheckedLoads::ExpectErrorsThatShow(check::Kind kind, unsigned faulty) const {
    if (IsWholeRun()) {
        EXPECT_GE(Count(kind, "errors, boxes") + Count(kind, "errors, failed"), faulty)
            << check::NameOf(kind);
    }
}

unsigned SeedOfUser(unsigned seed) {
    constexpr unsigned kApart = 1000;
    return support::DecimalMark() == L"," ? seed + kApart : seed;
}

std::wstring SamplesFolder() {
    return (tests::TopFolder() / L"samples" / L"").make_preferred().native();
}

} // namespace component_fuzz
