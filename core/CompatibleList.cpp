#include "core/CompatibleList.h"

#include "core/FieldParser.h"

#include <algorithm>
#include <utility>

namespace tam {

namespace {

/// So many identifiers are compared one after the other.
constexpr std::size_t kFew = 8;

} // namespace

CompatibleList::CompatibleList(const CompatibleList& other)
    : ids_(other.ids_), known_(other.known_ ? std::make_unique<Known>(*other.known_) : nullptr) {}

CompatibleList& CompatibleList::operator=(CompatibleList other) noexcept {
    std::swap(ids_, other.ids_);
    std::swap(known_, other.known_);
    return *this;
}

bool CompatibleList::Exists(std::wstring_view id) const {
    return known_ ? known_->contains(id) : std::ranges::find(ids_, id) != ids_.end();
}

void CompatibleList::Add(std::wstring_view text, const std::function<void()>& yield) {
    if (text.find(L',') == std::wstring_view::npos) {
        if (!text.empty()) {
            AddId(text);
        }
        return;
    }
    FieldWalker walker(text, L",");
    for (auto field = walker.Next(); field; field = walker.Next()) {
        if (yield) {
            yield();
        }
        if (field->empty()) {
            return;
        }
        AddId(*field);
    }
}

std::wstring CompatibleList::GetList() const {
    std::wstring list;
    for (const std::wstring& id : ids_) {
        if (!list.empty()) {
            list.push_back(L',');
        }
        list.append(id);
    }
    return list;
}

bool CompatibleList::Remove(std::wstring_view id) {
    if (!Exists(id)) {
        return false;
    }
    const auto found = std::ranges::find(ids_, id);
    // By the list's own text: the caller's may be the very one that goes.
    if (known_) {
        known_->erase(*found);
    }
    ids_.erase(found);
    return true;
}

bool CompatibleList::RemovePosition(std::size_t oneBased) {
    const std::wstring* id = At(oneBased);
    return id != nullptr && Remove(*id);
}

void CompatibleList::Clear() noexcept {
    ids_.clear();
    known_.reset();
}

const std::wstring* CompatibleList::At(std::size_t oneBased) const noexcept {
    return oneBased >= 1 && oneBased <= ids_.size() ? &ids_[oneBased - 1] : nullptr;
}

CompatibleList CompatibleList::Merge(const CompatibleList& other) const {
    CompatibleList common;
    for (const std::wstring& id : other.ids_) {
        if (Exists(id)) {
            common.AddId(id);
        }
    }
    return common;
}

void CompatibleList::AddId(std::wstring_view id) {
    if (Exists(id)) {
        return;
    }
    std::wstring kept(id);
    Prepare(id);
    ids_.push_back(std::move(kept));
}

void CompatibleList::Prepare(std::wstring_view id) {
    if (ids_.size() == ids_.capacity()) {
        // Lists of one are the usual ones.
        ids_.reserve(ids_.empty() ? 1 : ids_.size() * 2);
    }
    if (known_) {
        known_->emplace(id);
    } else if (ids_.size() >= kFew) {
        auto all = std::make_unique<Known>(ids_.begin(), ids_.end());
        all->emplace(id);
        known_ = std::move(all);
    }
}

} // namespace tam
