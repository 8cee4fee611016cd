#include "view/model/ProjectText.h"

#include "check/Findings.h"
#include "check/Utf8.h"
#include "check/XmlLexer.h"
#include "check/XmlTree.h"
#include "core/Case.h"
#include "core/Numbers.h"

#include <utility>

namespace view {

namespace {

using check::XmlTree;

/// The object that an element of a project belongs to.
struct Identity {
    std::string device;
    /// Of a channel object; empty for a module.
    std::string channel;
    /// A module is in two elements: the component's own and its device stream.
    std::string name;
    double number = 0;
};

/// A place in the text, and what comes in the stead of the characters from it on.
struct Edit {
    std::size_t begin;
    std::size_t end;
    std::string text;
};

std::wstring Plain(std::string_view text) {
    std::wstring plain;
    for (std::size_t at = 0; at < text.size();) {
        plain += static_cast<wchar_t>(check::NextCharacter(text, at));
    }
    return plain;
}

Identity IdentityOf(const XmlTree& tree, XmlTree::Index element) {
    Identity identity;
    identity.name = std::string(tree.Name(element));
    tree.ForEachElement(element, [&](XmlTree::Index child) {
        const std::string_view keyword = tree.Name(child);
        if (check::EqualKeyword(keyword, "DEVKEY")) {
            identity.device = tree.OwnText(child);
        } else if (check::EqualKeyword(keyword, "TAMOBJECTKEY")) {
            identity.channel = tree.OwnText(child);
        } else if (check::EqualKeyword(keyword, "TAMOBJID")) {
            identity.number = tam::Val(Plain(tree.OwnText(child))); // as the component reads it
        }
    });
    return identity;
}

bool IsSame(const Identity& left, const Identity& right) {
    if (left.device != right.device || left.channel.empty() != right.channel.empty()) {
        return false;
    }
    // The object of a channel may be of another kind now.
    return left.channel.empty() ? left.name == right.name && left.number == right.number
                                : tam::EqualIgnoringCase(Plain(left.channel), Plain(right.channel));
}

/// The place after the last child of the document's element; an element without an end tag gets one.
Edit After(const XmlTree& tree, const std::string& added) {
    const std::string_view text = tree.Text();
    const std::size_t begin = tree.OffsetOf(tree.Root());
    const std::size_t end = EndOfElement(text, begin);
    if (text[end - 2] == '/') {
        return {end - 2, end, ">\n" + added + "</" + std::string(tree.Name(tree.Root())) + ">"};
    }
    const std::size_t tag = text.rfind("</", end - 1);
    return {tag, tag, (text[tag - 1] == '\n' ? "" : "\n") + added};
}

void DeclareUtf8(std::string& text) {
    constexpr std::string_view kName = "encoding";
    const std::size_t end = text.starts_with("<?xml") ? text.find("?>") : std::string::npos;
    const std::size_t name = text.find(kName);
    if (end == std::string::npos || name > end) {
        return;
    }
    const std::size_t quote = text.find_first_of("\"'", name);
    const std::size_t last = text.find(text[quote], quote + 1);
    if (!check::EqualKeyword(std::string_view(text).substr(quote + 1, last - quote - 1), "UTF-8")) {
        text.replace(quote + 1, last - quote - 1, "UTF-8");
    }
}

} // namespace

std::size_t EndOfElement(std::string_view text, std::size_t begin) {
    check::XmlLexer lexer(text, nullptr, begin);
    std::size_t depth = 0;
    do {
        if (!lexer.IsMarkup()) {
            lexer.Text();
        } else if (lexer.Looks("</")) {
            lexer.TagName();
            lexer.EndOfEndTag();
            --depth;
        } else if (lexer.Looks("<!--")) {
            lexer.Comment();
        } else if (lexer.Looks("<![CDATA[")) {
            lexer.CData();
        } else if (lexer.Looks("<?")) {
            lexer.Instruction();
        } else {
            lexer.TagName();
            while (lexer.NextAttribute()) {
            }
            depth += lexer.IsEmptyTag() ? 0U : 1U;
        }
    } while (depth > 0 && !lexer.IsAtEnd());
    return lexer.At();
}

std::string RootOf(const std::string& document) {
    check::Findings ignored;
    const XmlTree tree(document, ignored);
    const std::size_t begin = tree.OffsetOf(tree.Root());
    return document.substr(begin, EndOfElement(document, begin) - begin);
}

std::vector<std::string> ElementsOf(const std::string& document) {
    check::Findings ignored;
    const XmlTree tree(document, ignored);
    std::vector<std::string> elements;
    tree.ForEachElement(tree.Root(), [&](XmlTree::Index child) {
        const std::size_t begin = tree.OffsetOf(child);
        elements.emplace_back(tree.Text().substr(begin, EndOfElement(tree.Text(), begin) - begin));
    });
    return elements;
}

bool HasModuleOf(const std::string& project, const std::string& stream) {
    check::Findings ignored;
    const XmlTree own(stream, ignored);
    Identity wanted = IdentityOf(own, own.Root());
    const XmlTree tree(project, ignored);
    bool isThere = false;
    tree.ForEachElement(tree.Root(), [&](XmlTree::Index child) {
        const Identity other = IdentityOf(tree, child);
        wanted.name = other.name; // other programs save the component's element alone
        isThere = isThere || IsSame(other, wanted);
    });
    return isThere;
}

std::string WithElements(std::string project, const std::vector<std::string>& elements) {
    check::Findings ignored;
    const XmlTree tree(std::move(project), ignored);
    struct New {
        Identity identity;
        const std::string* text;
        bool isPlaced = false;
    };
    std::vector<New> news;
    for (const std::string& element : elements) {
        const XmlTree own(element, ignored);
        news.push_back({IdentityOf(own, own.Root()), &element});
    }
    std::vector<Edit> edits; // in the order of their places
    tree.ForEachElement(tree.Root(), [&](XmlTree::Index child) {
        const Identity old = IdentityOf(tree, child);
        for (New& element : news) {
            if (element.isPlaced || !IsSame(old, element.identity)) {
                continue; // of two the first is the one that is opened
            }
            const std::size_t begin = tree.OffsetOf(child);
            edits.push_back({begin, EndOfElement(tree.Text(), begin), *element.text});
            element.isPlaced = true;
            return;
        }
    });
    std::string added;
    for (const New& element : news) {
        added += element.isPlaced ? std::string() : "  " + *element.text + "\n";
    }
    if (!added.empty()) {
        edits.push_back(After(tree, added));
    }
    std::string written;
    std::size_t at = 0;
    for (const Edit& edit : edits) {
        written += tree.Text().substr(at, edit.begin - at);
        written += edit.text;
        at = edit.end;
    }
    written += tree.Text().substr(at);
    DeclareUtf8(written);
    return written;
}

} // namespace view
