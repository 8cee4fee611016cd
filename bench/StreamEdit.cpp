#include "bench/StreamEdit.h"

#include "bench/Text.h"
#include "check/Findings.h"
#include "check/Utf8.h"
#include "check/XmlTree.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace bench {

namespace {

using check::XmlTree;

/// A piece of the text, from one place up to another.
struct Range {
    std::size_t begin = 0;
    std::size_t end = 0;
};

struct Edit {
    std::size_t end = 0;
    std::string text;
};
/// By the place where each begins. One place is edited once: the last value counts.
using Edits = std::map<std::size_t, Edit>;

bool StartsAt(std::string_view text, std::size_t at, std::string_view word) {
    return text.substr(at, word.size()) == word;
}

/// After the tag that begins at a place: a ">" in an attribute's value does not end it.
std::size_t EndOfTag(std::string_view text, std::size_t at) {
    char quote = '\0';
    for (; at < text.size() && (quote != '\0' || text[at] != '>'); ++at) {
        if (text[at] == quote) {
            quote = '\0';
        } else if (quote == '\0' && (text[at] == '"' || text[at] == '\'')) {
            quote = text[at];
        }
    }
    return at + 1;
}

bool IsWholeElement(std::string_view text, std::size_t endOfTag) {
    return text[endOfTag - 2] == '/';
}

/// What stands between the tags of the element that begins at a place. The stream was
/// loaded, so it is well-formed.
Range ContentOf(std::string_view text, std::size_t at) {
    const std::size_t begin = EndOfTag(text, at);
    if (IsWholeElement(text, begin)) {
        return {begin, begin};
    }
    constexpr std::string_view kSections[][2] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
    std::size_t depth = 1;
    for (at = text.find('<', begin); at < text.size(); at = text.find('<', at)) {
        std::size_t end = 0;
        for (const auto& [opening, closing] : kSections) {
            if (StartsAt(text, at, opening)) {
                end = text.find(closing, at + opening.size()) + closing.size();
            }
        }
        if (end == 0) {
            end = EndOfTag(text, at);
            const bool isEnd = StartsAt(text, at, "</");
            if (isEnd && --depth == 0) {
                return {begin, at};
            }
            depth += isEnd || IsWholeElement(text, end) ? 0U : 1U;
        }
        at = end;
    }
    return {begin, begin};
}

/// A value as the content of an element that reads as this very text; what is shown to a
/// person is escaped by drawing::Escaped.
std::string EscapedContent(std::string_view value) {
    std::string escaped;
    for (const char c : value) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '\r':
            escaped += "&#13;";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

/// Gives an element another content; one that ends in "/>" gets an end tag for it.
void SetContent(const XmlTree& tree, XmlTree::Index element, Range replaced, const std::string& content,
                Edits& edits) {
    const std::size_t endOfTag = EndOfTag(tree.Text(), tree.OffsetOf(element));
    if (IsWholeElement(tree.Text(), endOfTag)) {
        edits[endOfTag - 2] = {endOfTag, ">" + content + "</" + std::string(tree.Name(element)) + ">"};
    } else {
        edits[replaced.begin] = {replaced.end, content};
    }
}

/// The points of a section by their names; of two with one name the first.
class Points {
  public:
    Points(const XmlTree& tree, std::string_view section) {
        if (const auto parent = tree.Child(tree.Root(), section); parent != XmlTree::kNone) {
            tree.ForEachElement(parent,
                                [&](XmlTree::Index point) { points_.try_emplace(tree.Name(point), point); });
        }
    }
    XmlTree::Index At(const std::string& name) const {
        const auto found = points_.find(name);
        if (found == points_.end()) {
            throw BenchError(E_INVALIDARG, "the stream has no point \"" + name + "\" to write a value to");
        }
        return found->second;
    }

  private:
    std::unordered_map<std::string_view, XmlTree::Index> points_;
};

/// A new element after the others, with the blanks before it that the first one has.
void Append(const XmlTree& tree, XmlTree::Index point, const std::string& element, Edits& edits) {
    const std::string_view text = tree.Text();
    Range content = ContentOf(text, tree.OffsetOf(point));
    const std::string_view inner = text.substr(content.begin, content.end - content.begin);
    const std::size_t filled = check::Trim(inner).size();
    const std::size_t indent = inner.find_first_not_of(" \t\r\n");
    std::string added = element;
    if (filled > 0) {
        added = std::string(inner.substr(0, indent)) + element;
        content.begin += indent + filled;
        content.end = content.begin;
    }
    SetContent(tree, point, content, added, edits);
}

void SetValue(const XmlTree& tree, XmlTree::Index point, const PointValue& wanted, Edits& edits) {
    const std::string name = wanted.isInput ? "PROTOCOLREFERENCE" : "VALUE";
    const std::string value = EscapedContent(Utf8(wanted.value));
    bool isSet = false;
    tree.ForEachElement(point, [&](XmlTree::Index child) {
        if (check::EqualKeyword(tree.Name(child), name)) {
            SetContent(tree, child, ContentOf(tree.Text(), tree.OffsetOf(child)), value, edits);
            isSet = true;
        }
    });
    if (!isSet) {
        Append(tree, point, "<" + name + ">" + value + "</" + name + ">", edits);
    }
}

/// Where another encoding was declared there are blanks (TextOfDocument): the file is UTF-8.
void DeclareUtf8(std::string& text) {
    constexpr std::string_view kVersion = "version";
    const std::size_t end = text.starts_with("<?xml") ? text.find("?>") : std::string::npos;
    if (end == std::string::npos || text.substr(0, end).find("encoding") != std::string::npos) {
        return;
    }
    const std::size_t quote = text.find_first_of("\"'", text.find(kVersion));
    const std::size_t blanks = quote < end ? text.find(text[quote], quote + 1) + 1 : end;
    const std::size_t next = text.find_first_not_of(' ', blanks);
    if (next <= end && next > blanks + kVersion.size()) {
        text.replace(blanks, next - blanks, next == end ? " encoding=\"UTF-8\"" : " encoding=\"UTF-8\" ");
    }
}

} // namespace

std::string WithValues(const std::wstring& stream, const std::vector<PointValue>& values) {
    check::Findings ignored; // the component took the stream
    const XmlTree tree(Utf8(stream), ignored);
    const Points inputs(tree, "InReferences");
    const Points attributes(tree, "Attributes");
    Edits edits;
    for (const PointValue& value : values) {
        const Points& points = value.isInput ? inputs : attributes;
        SetValue(tree, points.At(Utf8(value.name)), value, edits);
    }
    std::string written;
    std::size_t at = 0;
    for (const auto& [begin, edit] : edits) {
        written += tree.Text().substr(at, begin - at);
        written += edit.text;
        at = edit.end;
    }
    written += tree.Text().substr(at);
    DeclareUtf8(written);
    return written;
}

} // namespace bench
