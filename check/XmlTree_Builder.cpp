// How a text becomes nodes, faults and all.

#include "check/Nearest.h"
#include "check/Utf8.h"
#include "check/XmlTree.h"

#include <algorithm>
#include <utility>

namespace check {

namespace {

/// Elements deeper than this are not kept.
constexpr std::size_t kDeepestKept = XmlTree::kDeepest + 8;
/// How far up an end tag is looked for.
constexpr std::size_t kLookUp = 64;

std::string Tag(std::string_view name) {
    return "<" + std::string(name) + ">";
}

} // namespace

/// Makes the nodes of a text.
class XmlTree::Builder {
  public:
    Builder(XmlTree& tree, Findings& findings)
        : tree_(tree), findings_(findings), lexer_(tree.text_, &findings) {}

    void Build() {
        if (Trim(tree_.text_).empty()) {
            findings_.Add(RuleId::FileEmpty, {0, 0}, "the document is empty");
            return;
        }
        lexer_.SkipDeclaration();
        while (!lexer_.IsAtEnd()) {
            Step();
        }
        if (!open_.empty()) {
            EndWithOpenElements();
        } else if (tree_.root_ == kNone && outside_ == 0) {
            findings_.Add(RuleId::XmlRoot, {tree_.text_.size(), 0}, "there is no element in the document");
        }
        std::sort(tree_.unclosed_.begin(), tree_.unclosed_.end());
    }

  private:
    struct Prefix {
        std::string_view name;
        std::size_t depth;
    };

    std::size_t Depth() const { return open_.size() + tooDeep_; }

    void Step() {
        if (!lexer_.IsMarkup()) {
            ReadText();
        } else if (lexer_.Looks("</")) {
            ReadEndTag();
        } else if (lexer_.Looks("<!--")) {
            Keep(Kind::Comment);
            lexer_.Comment();
        } else if (lexer_.Looks("<![CDATA[")) {
            const std::size_t at = lexer_.At();
            Keep(Kind::CData);
            lexer_.CData();
            CheckOutside({at, 9});
        } else if (lexer_.Looks("<?")) {
            Keep(Kind::Instruction);
            lexer_.Instruction();
        } else if (lexer_.Looks("<!DOCTYPE")) {
            lexer_.Doctype();
        } else if (lexer_.Looks("<!")) {
            lexer_.UnknownMarkup();
        } else {
            ReadStartTag();
        }
    }

    Index Keep(Kind kind) { return Keep(kind, lexer_.At()); }
    Index Keep(Kind kind, std::size_t at) {
        if (open_.empty() && kind != Kind::Element) {
            return kNone;
        }
        if (tooDeep_ > 0 || isSecondRoot_) {
            return kNone;
        }
        const auto index = static_cast<Index>(tree_.nodes_.size());
        const auto place = static_cast<std::uint32_t>(at);
        tree_.nodes_.push_back({place | static_cast<std::uint32_t>(kind) << kKindShift, index + 1});
        return index;
    }

    void CheckOutside(Span span) {
        if (Depth() == 0 && outside_++ == 0) {
            const bool isBefore = tree_.root_ == kNone;
            findings_.Add(RuleId::XmlRoot, span,
                          isBefore ? "text before the document element" : "text after the document element");
        }
    }

    void ReadText() {
        const std::size_t at = lexer_.At();
        const std::string_view raw = tree_.Piece(lexer_.Text());
        if (IsAllBlank(raw)) {
            return;
        }
        Keep(Kind::Text, at);
        const auto blanks = static_cast<std::size_t>(Trim(raw).data() - raw.data());
        CheckOutside({at + blanks, Trim(raw).size()});
    }

    void ReadStartTag() {
        const std::size_t begin = lexer_.At();
        const bool isRoot = Depth() == 0;
        if (isRoot && tree_.root_ != kNone) {
            isSecondRoot_ = true;
        }
        Index index = kNone;
        if (tooDeep_ == 0 && open_.size() < kDeepestKept) {
            index = Keep(Kind::Element);
        }
        const Span name = lexer_.TagName();
        if (name.size == 0) {
            findings_.Add(RuleId::XmlTag, {begin, 1}, "a tag without a name");
        }
        if (isRoot && tree_.root_ == kNone && !isSecondRoot_) {
            tree_.root_ = index;
        } else if (isRoot) {
            findings_.Add(RuleId::XmlRoot, name, "a second document element " + Tag(tree_.Piece(name)),
                          "one document element");
        }
        ReadAttributes();
        CheckElementName(name);
        if (lexer_.IsEmptyTag()) {
            Close(index);
        } else {
            Open(index, name);
        }
    }

    void Open(Index index, Span name) {
        if (tooDeep_ > 0 || open_.size() == kDeepestKept) {
            ++tooDeep_;
        } else {
            open_.push_back({index, static_cast<std::uint32_t>(name.at - 1)});
        }
        if (Depth() == kDeepest + 1 && !saidTooDeep_) {
            saidTooDeep_ = true;
            findings_.Add(RuleId::XmlTooDeep, name, "an element " + std::to_string(Depth()) + " levels deep",
                          "at most " + std::to_string(kDeepest));
        }
    }

    void Close(Index index) {
        if (index != kNone) {
            tree_.nodes_[index].next = static_cast<Index>(tree_.nodes_.size());
        }
        while (!prefixes_.empty() && prefixes_.back().depth > Depth()) {
            prefixes_.pop_back();
        }
        isSecondRoot_ = isSecondRoot_ && Depth() > 0;
    }

    void Pop() {
        const Index index = open_.back().index;
        open_.pop_back();
        Close(index);
    }

    std::string_view OpenName(std::size_t fromTop) const {
        XmlLexer lexer(tree_.text_, nullptr, open_[open_.size() - 1 - fromTop].at);
        return tree_.Piece(lexer.TagName());
    }

    void ReadEndTag() {
        const std::size_t begin = lexer_.At();
        const Span span = lexer_.TagName();
        lexer_.EndOfEndTag();
        const std::string_view name = tree_.Piece(span);
        if (tooDeep_ > 0) {
            --tooDeep_;
            return;
        }
        if (open_.empty()) {
            findings_.Add(RuleId::XmlEndTag, {begin, span.size + 2},
                          "</" + std::string(name) + "> ends nothing", "no end tag here");
            return;
        }
        if (name == OpenName(0)) {
            return Pop();
        }
        for (std::size_t up = 1; up < std::min(open_.size(), kLookUp); ++up) {
            if (OpenName(up) == name) {
                return CloseUpTo(up);
            }
        }
        const std::string expected(OpenName(0));
        const bool isNear = Distance(name, expected, 3) <= std::max<std::size_t>(1, expected.size() / 3);
        findings_.Add(RuleId::XmlEndTag, span, "</" + std::string(name) + "> does not end " + Tag(expected),
                      "</" + expected + ">", isNear ? expected : std::string());
        if (isNear) {
            Pop();
        }
    }

    /// Ends elements that the document does not end.
    void CloseUpTo(std::size_t up) {
        for (std::size_t i = 0; i < up; ++i) {
            const std::string_view name = OpenName(0);
            findings_.Add(RuleId::XmlUnclosed, {open_.back().at + std::size_t{1}, name.size()},
                          Tag(name) + " is not ended", "</" + std::string(name) + ">");
            LeaveUnclosed();
        }
        Pop();
    }

    void LeaveUnclosed() {
        const Index element = open_.back().index;
        Pop();
        tree_.unclosed_.push_back(element);
        if (element != kNone && element != tree_.root_) {
            EndAfterText(element);
        }
    }

    /// An element that holds a text ends after it: its end tag is missing there. What
    /// follows the text belongs to the parent.
    void EndAfterText(Index element) {
        bool hasText = false;
        for (Index child = element + 1; child < tree_.nodes_[element].next;
             child = tree_.nodes_[child].next) {
            if (tree_.KindOf(child) == Kind::Text || tree_.KindOf(child) == Kind::CData) {
                hasText = true;
            } else if (hasText) {
                tree_.nodes_[element].next = child;
            } else if (tree_.IsElement(child)) {
                return;
            }
        }
    }

    void EndWithOpenElements() {
        const std::string_view name = OpenName(0);
        findings_.Add(RuleId::XmlUnclosed, {open_.back().at + std::size_t{1}, name.size()},
                      "the document ends inside " + Tag(name) +
                          (Depth() > 1 ? " and " + std::to_string(Depth() - 1) + " more" : std::string()),
                      "</" + std::string(name) + ">");
        tooDeep_ = 0;
        while (!open_.empty()) {
            LeaveUnclosed();
        }
    }

    void ReadAttributes() {
        names_.clear();
        while (const auto attribute = lexer_.NextAttribute()) {
            names_.push_back(static_cast<std::uint32_t>(attribute->name.at));
            const std::string_view name = tree_.Piece(attribute->name);
            const std::string_view value = tree_.Piece(attribute->value);
            if (name == "xmlns" && !value.empty()) {
                findings_.Add(RuleId::XmlNamespace, attribute->name,
                              "a namespace for elements: they are not found by their names then",
                              "elements without a namespace");
            } else if (name.starts_with("xmlns:")) {
                if (value.empty() || name.size() == 6 || name.find(':', 6) != std::string_view::npos) {
                    findings_.Add(RuleId::XmlNamespace, attribute->name, "a prefix without a namespace");
                }
                prefixes_.push_back({name.substr(6), Depth() + 1});
            } else if (name == "xml:space") {
                findings_.Add(RuleId::XmlSpace, attribute->name,
                              "\"xml:space\" makes texts of the blanks between elements", "no \"xml:space\"");
            }
        }
        CheckPrefixesAndTwins();
    }

    Span NameAt(std::uint32_t at) const {
        std::size_t end = at;
        for (std::size_t next = at;
             next < tree_.text_.size() && IsNamePart(NextCharacter(tree_.text_, next));) {
            end = next;
        }
        return {at, end - at};
    }

    void CheckPrefixesAndTwins() {
        for (const std::uint32_t at : names_) {
            const Span span = NameAt(at);
            const std::string_view name = tree_.Piece(span);
            const std::size_t colon = name.find(':');
            if (colon == std::string_view::npos) {
                continue;
            }
            const std::string_view prefix = name.substr(0, colon);
            const bool isKnown = prefix == "xml" || prefix == "xmlns" ||
                                 std::any_of(prefixes_.begin(), prefixes_.end(),
                                             [&](const Prefix& known) { return known.name == prefix; });
            const bool isPlain =
                colon + 1 < name.size() && name.find(':', colon + 1) == std::string_view::npos;
            if (!isKnown || !isPlain) {
                findings_.Add(RuleId::XmlNamespace, span,
                              "the prefix of " + Quoted(name) + " is not declared", "a name without a colon");
            }
        }
        if (names_.size() < 2) {
            return;
        }
        std::sort(names_.begin(), names_.end(), [&](std::uint32_t a, std::uint32_t b) {
            const int order = tree_.Piece(NameAt(a)).compare(tree_.Piece(NameAt(b)));
            return order != 0 ? order < 0 : a < b;
        });
        for (std::size_t i = 1; i < names_.size(); ++i) {
            const Span span = NameAt(names_[i]);
            if (tree_.Piece(span) == tree_.Piece(NameAt(names_[i - 1]))) {
                findings_.Add(RuleId::XmlAttributeTwice, span,
                              "the attribute " + Quoted(tree_.Piece(span)) + " stands twice in one tag");
            }
        }
    }

    void CheckElementName(Span span) {
        const std::string_view name = tree_.Piece(span);
        if (name.find(':') != std::string_view::npos) {
            findings_.Add(RuleId::XmlNamespace, span, "the name " + Tag(name) + " has a prefix",
                          "a name without a colon");
        }
    }

    struct OpenElement {
        Index index;
        /// Of its "<".
        std::uint32_t at;
    };

    XmlTree& tree_;
    Findings& findings_;
    XmlLexer lexer_;
    std::vector<OpenElement> open_;
    std::vector<std::uint32_t> names_;
    std::vector<Prefix> prefixes_;
    /// Open elements below those that are kept.
    std::size_t tooDeep_ = 0;
    std::size_t outside_ = 0;
    bool isSecondRoot_ = false;
    bool saidTooDeep_ = false;
};

XmlTree::XmlTree(std::string text, Findings& findings) : text_(std::move(text)) {
    if (text_.size() < kLongestText) {
        Builder(*this, findings).Build();
    }
}

} // namespace check
