#pragma once

#include "check/Document.h"
#include "check/Surroundings.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <set>
#include <span>
#include <string_view>
#include <vector>

namespace check {

/// What a point is, in the order of the sections.
enum class PointKind { Input, Output, Attribute };

/// How a document keeps its points.
struct PointWords {
    PointKind kind;
    /// In messages: "an input".
    std::string_view what;
    /// What a point holds, in capitals; letter case does not count.
    std::span<const std::string_view> keywords;
    /// Keywords of other points, which mean nothing here.
    std::span<const std::string_view> elsewhere;
    std::span<const std::string_view> attributes;
};

/// The points of a module's stream or of a channel's definition. Of each point no
/// more is kept than two numbers, because there may be very many.
class Points {
  public:
    /// `isModule`: points of a module, with addresses and names of channels.
    Points(Document& document, bool isModule) : document_(document), isModule_(isModule) {}

    void CheckSection(XmlTree::Index section, const PointWords& words);
    /// What can be said when all sections were seen.
    void Finish();
    /// Whether a point of the kind has the name.
    bool Has(PointKind kind, std::string_view name) const;
    /// The name of such a point that was probably meant; "" too when many have been looked for.
    /// To be asked when all sections were seen.
    std::string_view NearestName(PointKind kind, std::string_view name);
    void FillSummary(StreamSummary& summary) const;

  private:
    struct Field;
    /// A name with its hash; where names are equal, they are compared.
    struct Name {
        std::uint32_t hash;
        std::uint32_t at;
        bool operator<(const Name& other) const {
            return hash != other.hash ? hash < other.hash : at < other.at;
        }
    };
    struct Address {
        std::uint32_t number;
        std::uint32_t at;
        std::uint32_t pointAt;
    };

    void CheckPoint(XmlTree::Index element, const PointWords& words);
    void CheckFields(const std::vector<Field>& fields, Span point, const PointWords& words);
    void CheckField(const Field& field, Span point, const PointWords& words);
    const TypeInfo* CheckPointType(const std::vector<Field>& fields, Span point, const PointWords& words);
    void CheckPointValue(const std::vector<Field>& fields, Span point, const TypeInfo* type);
    void CheckAddress(const Leaf& leaf, Span point);
    void CheckList(const Leaf& leaf, std::string_view ownType);
    void CheckListEntry(std::string_view entry, Span span);
    void CheckPresence(const Leaf& leaf, std::string_view keyword);
    void CheckName(Span span);
    void CheckReference(std::uint32_t index);
    void ReportTwins(std::vector<Name>& names, std::string_view what);
    void ReportAddressTwins();
    void ReportPrefixCases();
    std::vector<Name>& NamesOf(PointKind kind) { return names_[static_cast<std::size_t>(kind)]; }
    const std::vector<Name>& NamesOf(PointKind kind) const { return names_[static_cast<std::size_t>(kind)]; }
    static std::uint32_t ShortHash(std::string_view name);
    std::string_view NameAt(std::uint32_t at) const;
    bool HasPrefix(std::string_view prefix) const;

    Document& document_;
    bool isModule_;
    std::vector<Name> names_[3];
    /// The names themselves, once a near one is looked for.
    std::array<std::vector<std::string_view>, 3> words_;
    std::vector<Name> prefixes_;
    std::vector<Address> addresses_;
    /// Where the texts of references begin, each with its size.
    std::vector<Span> references_;
    /// Letters that the keys of channels begin with.
    std::set<std::string_view> stems_;
};

/// The words of a module's stream.
const PointWords& StreamWords(PointKind kind);
/// The words of a channel's definition.
const PointWords& ChannelWords(PointKind kind);

} // namespace check
