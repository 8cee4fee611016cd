// What is said of the points together: names, addresses and references that do not fit.

#include "check/Nearest.h"
#include "check/Points.h"
#include "check/Utf8.h"

#include <algorithm>
#include <string>

namespace check {

namespace {

/// A reference of this text's beginning, zeros, is none.
constexpr std::string_view kNoReference = "000000";

/// What stands before the first "_" after the first character.
std::string_view PrefixOf(std::string_view name) {
    const std::size_t mark = name.find('_', 1);
    return mark == std::string_view::npos ? std::string_view() : name.substr(0, mark);
}

/// "AI" of "AI12"; empty when the text is not letters and then digits.
std::string_view StemOf(std::string_view key) {
    const std::size_t digit = key.find_first_of("0123456789");
    const bool isStem = digit != std::string_view::npos && digit > 0 &&
                        key.find_first_not_of("0123456789", digit) == std::string_view::npos;
    return isStem ? key.substr(0, digit) : std::string_view();
}

} // namespace

std::uint32_t Points::ShortHash(std::string_view name) {
    const std::uint64_t hash = HashOfName(name);
    return static_cast<std::uint32_t>(hash ^ hash >> 32U);
}

std::string_view Points::NameAt(std::uint32_t at) const {
    XmlLexer lexer(document_.Tree().Text(), nullptr, at - std::size_t{1});
    return document_.Tree().Piece(lexer.TagName());
}

void Points::CheckName(Span span) {
    if (!isModule_) {
        return;
    }
    const std::string_view name = document_.Tree().Piece(span);
    const std::string_view prefix = PrefixOf(name);
    if (prefix.empty() || prefix.size() + 1 == name.size()) {
        document_.Report(RuleId::PointName, span,
                         "no channel can match " + Tagged(name) + ": it has not the form KEY_NAME",
                         "the key of a channel, \"_\" and the name of its point");
        return;
    }
    prefixes_.push_back({ShortHash(prefix), static_cast<std::uint32_t>(span.at)});
}

void Points::ReportTwins(std::vector<Name>& names, std::string_view what) {
    std::sort(names.begin(), names.end());
    for (std::size_t begin = 0; begin < names.size();) {
        std::size_t end = begin + 1;
        while (end < names.size() && names[end].hash == names[begin].hash) {
            const std::string_view name = NameAt(names[end].at);
            if (EqualName(NameAt(names[begin].at), name)) {
                const std::string_view first = NameAt(names[begin].at);
                document_.Report(RuleId::PointTwice, {names[end].at, name.size()},
                                 "there is " + std::string(what) + " " + Tagged(first) +
                                     " already; letter case does not count",
                                 "names that differ");
            }
            ++end;
        }
        begin = end;
    }
}

void Points::ReportAddressTwins() {
    std::sort(addresses_.begin(), addresses_.end(), [](const Address& a, const Address& b) {
        return a.number != b.number ? a.number < b.number : a.at < b.at;
    });
    std::size_t first = 0;
    for (std::size_t i = 1; i < addresses_.size(); ++i) {
        if (addresses_[i].number != addresses_[first].number) {
            first = i;
            continue;
        }
        const std::string number = std::to_string(addresses_[i].number);
        const std::string_view text = document_.Tree().Text().substr(addresses_[i].at);
        document_.Report(RuleId::AddressTwice,
                         {addresses_[i].at, std::min(text.find_first_not_of("0123456789"), text.size())},
                         "the logical address " + number + " is that of " +
                             Tagged(NameAt(addresses_[first].pointAt)),
                         "an address of its own");
    }
}

void Points::ReportPrefixCases() {
    std::sort(prefixes_.begin(), prefixes_.end());
    for (std::size_t begin = 0; begin < prefixes_.size();) {
        const std::string_view prefix = PrefixOf(NameAt(prefixes_[begin].at));
        std::size_t end = begin + 1;
        for (; end < prefixes_.size() && prefixes_[end].hash == prefixes_[begin].hash; ++end) {
            const std::string_view other = PrefixOf(NameAt(prefixes_[end].at));
            // Attributes of the configuration are known in any letter case.
            if (other != prefix && EqualName(other, prefix) && !EqualKeyword(prefix, "CONFIG")) {
                document_.Report(RuleId::PointNameCase, {prefixes_[end].at, other.size()},
                                 "the key " + Quoted(other) + " is written " + Quoted(prefix) +
                                     " elsewhere: to a channel they are two",
                                 Quoted(prefix), std::string(prefix));
            }
        }
        begin = end;
    }
}

bool Points::HasPrefix(std::string_view prefix) const {
    const auto found = std::lower_bound(prefixes_.begin(), prefixes_.end(), Name{ShortHash(prefix), 0});
    return found != prefixes_.end() && found->hash == ShortHash(prefix);
}

bool Points::Has(PointKind kind, std::string_view name) const {
    const std::vector<Name>& names = NamesOf(kind);
    const std::uint32_t hash = ShortHash(name);
    for (auto at = std::lower_bound(names.begin(), names.end(), Name{hash, 0});
         at != names.end() && at->hash == hash; ++at) {
        if (EqualName(NameAt(at->at), name)) {
            return true;
        }
    }
    return false;
}

std::string_view Points::NearestName(PointKind kind, std::string_view name) {
    constexpr std::size_t kMostCompared = 2000;
    if (NamesOf(kind).size() > kMostCompared || !document_.MaySuggest()) {
        return {};
    }
    std::vector<std::string_view>& words = words_.at(static_cast<std::size_t>(kind));
    if (words.empty()) {
        for (const Name& known : NamesOf(kind)) {
            words.push_back(NameAt(known.at));
        }
    }
    return Nearest(name, words);
}

void Points::CheckReference(std::uint32_t index) {
    const Span span = references_[index];
    const std::string_view text = document_.Tree().Piece(span);
    if (text.find_first_not_of('0') == std::string_view::npos) {
        if (text.size() > kNoReference.size()) {
            document_.Report(RuleId::ReferenceForm, span,
                             Quoted(text) + " counts as a reference: it has too many zeros", "0000 or 000000",
                             "000000");
        }
        return;
    }
    const std::size_t mark = text.rfind('_');
    if (mark == std::string_view::npos || mark == 0 || mark + 1 == text.size()) {
        document_.Report(RuleId::ReferenceForm, span, Quoted(text) + " is no reference",
                         "the key of an object, \"_\" and the name of its output, or 0000");
        return;
    }
    if (Has(PointKind::Output, text)) {
        return;
    }
    const std::string_view key = text.substr(0, mark);
    const std::string_view stem = StemOf(key);
    if (HasPrefix(key) || stems_.contains(stem)) {
        document_.Report(RuleId::ReferenceNothing, span, "this module has no output " + Quoted(text), "",
                         std::string(NearestName(PointKind::Output, text)));
    }
}

void Points::Finish() {
    ReportTwins(NamesOf(PointKind::Input), "an input");
    ReportTwins(NamesOf(PointKind::Output), "an output");
    ReportTwins(NamesOf(PointKind::Attribute), "an attribute");
    ReportAddressTwins();
    ReportPrefixCases();
    for (const Name& name : prefixes_) {
        stems_.insert(StemOf(PrefixOf(NameAt(name.at))));
    }
    stems_.erase(std::string_view());
    for (std::size_t i = 0; i < references_.size(); ++i) {
        CheckReference(static_cast<std::uint32_t>(i));
    }
}

void Points::FillSummary(StreamSummary& summary) const {
    for (const Name& name : NamesOf(PointKind::Input)) {
        summary.inputs.emplace_back(NameAt(name.at));
    }
    for (const Name& name : NamesOf(PointKind::Output)) {
        summary.outputs.emplace_back(NameAt(name.at));
    }
    if (!isModule_) {
        for (const Name& name : NamesOf(PointKind::Attribute)) {
            summary.attributes.emplace(NameAt(name.at), "");
        }
    }
}

} // namespace check
