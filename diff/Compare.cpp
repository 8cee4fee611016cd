#include "diff/Compare.h"

#include "check/Utf8.h"

#include <algorithm>
#include <optional>
#include <unordered_map>

namespace diff {

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

struct NameHash {
    bool isExact;
    std::size_t operator()(const std::string& name) const {
        return isExact ? std::hash<std::string>()(name) : static_cast<std::size_t>(check::HashOfName(name));
    }
};

struct NameEqual {
    bool isExact;
    bool operator()(const std::string& one, const std::string& other) const {
        return isExact ? one == other : check::EqualName(one, other);
    }
};

/// Which item of the one document is which of the other.
struct Pairs {
    /// For each item before, its place after; kNone when it is gone.
    std::vector<std::size_t> after;
    /// For each item after, its place before; kNone when it is new.
    std::vector<std::size_t> before;
};

void Join(Pairs& pairs, std::size_t before, std::size_t after) {
    pairs.after[before] = after;
    pairs.before[after] = before;
}

void JoinByName(const Group& before, const Group& after, Pairs& pairs) {
    // Those of one name, which only a faulty document has, in their order.
    std::unordered_map<std::string, std::vector<std::size_t>, NameHash, NameEqual> places(
        after.items.size(), NameHash{after.isExact}, NameEqual{after.isExact});
    for (std::size_t i = after.items.size(); i-- > 0;) {
        places[after.items[i].name].push_back(i);
    }
    for (std::size_t i = 0; i < before.items.size(); ++i) {
        const auto found = places.find(before.items[i].name);
        if (found != places.end() && !found->second.empty()) {
            Join(pairs, i, found->second.back());
            found->second.pop_back();
        }
    }
}

/// Of the items without a partner, those whose identity no other of them has.
std::unordered_map<std::string, std::size_t> Identities(const Group& group,
                                                        const std::vector<std::size_t>& partners) {
    std::unordered_map<std::string, std::size_t> places;
    for (std::size_t i = 0; i < group.items.size(); ++i) {
        if (partners[i] == kNone && !group.items[i].identity.empty()) {
            const auto [place, isNew] = places.emplace(group.items[i].identity, i);
            if (!isNew) {
                place->second = kNone;
            }
        }
    }
    return places;
}

void JoinByIdentity(const Group& before, const Group& after, Pairs& pairs) {
    const auto places = Identities(after, pairs.before);
    for (const auto& [identity, place] : Identities(before, pairs.after)) {
        const auto found = places.find(identity);
        if (place != kNone && found != places.end() && found->second != kNone) {
            Join(pairs, place, found->second);
        }
    }
}

/// The items after that did not keep their place among those that were there before:
/// as few as can be, those outside of the longest sequence that kept its order.
std::vector<bool> MovedOf(const Pairs& pairs) {
    std::vector<std::size_t> lasts;
    std::vector<std::size_t> items;
    std::vector<std::size_t> previous(pairs.after.size(), kNone);
    for (std::size_t i = 0; i < pairs.after.size(); ++i) {
        if (pairs.after[i] == kNone) {
            continue;
        }
        const auto place = std::lower_bound(lasts.begin(), lasts.end(), pairs.after[i]);
        const auto length = static_cast<std::size_t>(place - lasts.begin());
        previous[i] = length > 0 ? items[length - 1] : kNone;
        if (place == lasts.end()) {
            lasts.push_back(pairs.after[i]);
            items.push_back(i);
        } else {
            *place = pairs.after[i];
            items[length] = i;
        }
    }
    std::vector<bool> moved(pairs.before.size(), false);
    for (std::size_t i = 0; i < pairs.before.size(); ++i) {
        moved[i] = pairs.before[i] != kNone;
    }
    for (std::size_t i = items.empty() ? kNone : items.back(); i != kNone; i = previous[i]) {
        moved[pairs.after[i]] = false;
    }
    return moved;
}

/// The fields of an item by name: an element of a project has a field for each output.
class FieldsByName {
  public:
    explicit FieldsByName(const std::vector<Field>& fields) : fields_(fields) {
        if (fields.size() > kFew) {
            for (const Field& field : fields) {
                places_.emplace(check::Upper(field.name), &field);
            }
        }
    }

    /// Null when there is none.
    const Field* Find(const std::string& name) const {
        if (fields_.size() > kFew) {
            const auto found = places_.find(check::Upper(name));
            return found != places_.end() ? found->second : nullptr;
        }
        const auto found = std::find_if(fields_.begin(), fields_.end(), [&name](const Field& field) {
            return check::EqualKeyword(field.name, name);
        });
        return found != fields_.end() ? &*found : nullptr;
    }

  private:
    /// So many are sooner walked than put into a table.
    static constexpr std::size_t kFew = 16;

    const std::vector<Field>& fields_;
    std::unordered_map<std::string, const Field*> places_;
};

/// What a field is named by: an item, or the document itself.
struct Owner {
    std::string noun;
    std::string name;
};

void CompareFields(const Owner& owner, const std::vector<Field>& before, const std::vector<Field>& after,
                   std::vector<Change>& changes) {
    const auto add = [&](const std::string& name, const Field* was, const Field* is) {
        changes.push_back({What::Changed, owner.noun, owner.name, name, was != nullptr ? was->shown : "",
                           is != nullptr ? is->shown : "", was != nullptr ? was->line : 0,
                           is != nullptr ? is->line : 0});
    };
    const FieldsByName fieldsAfter(after);
    for (const Field& was : before) {
        const Field* const is = fieldsAfter.Find(was.name);
        if (is == nullptr || is->meaning != was.meaning) {
            add(was.name, &was, is);
        }
    }
    const FieldsByName fieldsBefore(before);
    for (const Field& is : after) {
        if (fieldsBefore.Find(is.name) == nullptr) {
            add(is.name, nullptr, &is);
        }
    }
}

void CompareGroups(const Group& before, const Group& after, std::vector<Change>& changes) {
    Pairs pairs{std::vector<std::size_t>(before.items.size(), kNone),
                std::vector<std::size_t>(after.items.size(), kNone)};
    JoinByName(before, after, pairs);
    JoinByIdentity(before, after, pairs);
    for (std::size_t i = 0; i < before.items.size(); ++i) {
        if (pairs.after[i] == kNone) {
            const Item& gone = before.items[i];
            changes.push_back({What::Removed, before.noun, gone.name, "", gone.summary, "", gone.line, 0});
        }
    }
    const std::vector<bool> moved =
        after.isOrdered ? MovedOf(pairs) : std::vector<bool>(after.items.size(), false);
    for (std::size_t i = 0; i < after.items.size(); ++i) {
        const Item& is = after.items[i];
        if (pairs.before[i] == kNone) {
            changes.push_back({What::Added, after.noun, is.name, "", "", is.summary, 0, is.line});
            continue;
        }
        const Item& was = before.items[pairs.before[i]];
        if (!NameEqual{after.isExact}(was.name, is.name)) {
            changes.push_back({What::Renamed, after.noun, is.name, "", was.name, is.name, was.line, is.line});
        }
        if (moved[i]) {
            changes.push_back({What::Moved, after.noun, is.name, "", std::to_string(pairs.before[i] + 1),
                               std::to_string(i + 1), was.line, is.line});
        }
        CompareFields({after.noun, is.name}, was.fields, is.fields, changes);
    }
}

} // namespace

std::vector<Change> Compare(const Model& before, const Model& after) {
    std::vector<Change> changes;
    CompareFields({}, before.head, after.head, changes);
    for (std::size_t i = 0; i < std::min(before.groups.size(), after.groups.size()); ++i) {
        CompareGroups(before.groups[i], after.groups[i], changes);
    }
    return changes;
}

} // namespace diff
