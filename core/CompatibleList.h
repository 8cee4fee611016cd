#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace tam {

/// Identifiers of network variable types, each once, in the order in which
/// they were added. An identifier is a text exactly as it stood in the list's
/// text: blanks belong to it, and letter case counts, unlike in a keyed
/// collection, for "exists" means exactly that identifier.
class CompatibleList {
  public:
    CompatibleList() = default;
    CompatibleList(const CompatibleList& other);
    CompatibleList(CompatibleList&&) noexcept = default;
    CompatibleList& operator=(CompatibleList other) noexcept;
    ~CompatibleList() = default;

    /// Adds the identifiers of a comma-separated text up to the first empty
    /// one, leaving out those that are present; an empty text adds nothing.
    /// Calls yield before each field of a text with commas, so that a long
    /// list does not freeze the user interface; whatever yield throws ends the
    /// walk, and what was added before it stays.
    void Add(std::wstring_view text, const std::function<void()>& yield = {});
    /// Adds one identifier as it stands unless it is present; a comma in it is no end.
    void AddId(std::wstring_view id);
    /// The identifiers with one comma between two.
    std::wstring GetList() const;

    bool Exists(std::wstring_view id) const;
    /// False when there is none.
    bool Remove(std::wstring_view id);
    bool RemovePosition(std::size_t oneBased);
    void Clear() noexcept;

    std::size_t Count() const noexcept { return ids_.size(); }
    /// By 1-based position; null when out of range.
    const std::wstring* At(std::size_t oneBased) const noexcept;

    /// The identifiers of other that this list has too, in other's order.
    CompatibleList Merge(const CompatibleList& other) const;

  private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::wstring_view id) const { return std::hash<std::wstring_view>()(id); }
    };
    using Known = std::unordered_set<std::wstring, Hash, std::equal_to<>>;

    /// Makes room for one more, so that adding it cannot fail after that.
    void Prepare(std::wstring_view id);

    std::vector<std::wstring> ids_;
    /// The identifiers once more, to be found at once. Null for the few that most
    /// lists have: they are found as fast without it, and a module has thousands of
    /// lists.
    std::unique_ptr<Known> known_;
};

} // namespace tam
