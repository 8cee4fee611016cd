#include "view/model/SourcePoints.h"

#include "check/Utf8.h"
#include "check/XmlLexer.h"
#include "core/Case.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>
#include <utility>

namespace view {

namespace {

constexpr std::array<std::pair<std::string_view, Kind>, 3> kSections = {
    {{"InReferences", Kind::Input}, {"OutReferences", Kind::Output}, {"Attributes", Kind::Attribute}}};
/// The elements around a point: the document's and its section.
constexpr std::size_t kAround = 2;

/// Walks the tags and keeps which elements are open.
class Walk {
  public:
    Walk(std::string_view text, std::vector<SourcePoints::Place>& places)
        : text_(text), lexer_(text, nullptr), places_(places) {}

    void Run() {
        lexer_.SkipDeclaration();
        while (!lexer_.IsAtEnd()) {
            Step();
        }
        CloseTo(0);
    }

  private:
    struct Open {
        std::string_view name;
        /// The number of its place; none for what is no point.
        std::optional<std::size_t> place;
    };

    void Step() {
        if (!lexer_.IsMarkup()) {
            lexer_.Text();
        } else if (lexer_.Looks("</")) {
            ReadEndTag();
        } else if (lexer_.Looks("<!--")) {
            lexer_.Comment();
        } else if (lexer_.Looks("<![CDATA[")) {
            lexer_.CData();
        } else if (lexer_.Looks("<?")) {
            lexer_.Instruction();
        } else if (lexer_.Looks("<!DOCTYPE")) {
            lexer_.Doctype();
        } else if (lexer_.Looks("<!")) {
            lexer_.UnknownMarkup();
        } else {
            ReadStartTag();
        }
    }

    std::string_view TagName() {
        const check::Span span = lexer_.TagName();
        return text_.substr(span.at, span.size);
    }

    void ReadStartTag() {
        const std::size_t begin = lexer_.At();
        const std::string_view name = TagName();
        while (lexer_.NextAttribute()) {
        }
        open_.push_back({name, std::nullopt});
        if (open_.size() == kAround + 1) {
            const auto* section = std::find_if(kSections.begin(), kSections.end(), [this](const auto& known) {
                return known.first == open_[kAround - 1].name;
            });
            if (section != kSections.end()) {
                open_.back().place = places_.size();
                places_.push_back({{section->second, check::Wide(name)}, begin, text_.size()});
            }
        }
        if (lexer_.IsEmptyTag()) {
            CloseTo(open_.size() - 1);
        }
    }

    void ReadEndTag() {
        const std::string_view name = TagName();
        lexer_.EndOfEndTag();
        // An end tag that ends nothing is passed over.
        const auto last = std::find_if(open_.rbegin(), open_.rend(),
                                       [&name](const Open& open) { return open.name == name; });
        if (last != open_.rend()) {
            CloseTo(static_cast<std::size_t>(std::distance(last, open_.rend())) - 1);
        }
    }

    void CloseTo(std::size_t depth) {
        for (; open_.size() > depth; open_.pop_back()) {
            if (open_.back().place) {
                places_[*open_.back().place].end = lexer_.At();
            }
        }
    }

    std::string_view text_;
    check::XmlLexer lexer_;
    std::vector<SourcePoints::Place>& places_;
    std::vector<Open> open_;
};

} // namespace

SourcePoints::SourcePoints(const std::string& text) {
    Walk(text, places_).Run();
}

std::optional<PointId> SourcePoints::At(std::size_t offset) const {
    const auto next = std::upper_bound(places_.begin(), places_.end(), offset,
                                       [](std::size_t at, const Place& place) { return at < place.begin; });
    if (next == places_.begin() || offset >= std::prev(next)->end) {
        return std::nullopt;
    }
    return std::prev(next)->point;
}

const SourcePoints::Place* SourcePoints::Find(const PointId& point) const {
    const auto found = std::find_if(places_.begin(), places_.end(), [&point](const Place& place) {
        return place.point.kind == point.kind && tam::EqualIgnoringCase(place.point.name, point.name);
    });
    return found != places_.end() ? &*found : nullptr;
}

} // namespace view
