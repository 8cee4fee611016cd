#include "core/CompatibleList.h"

#include "core/FieldParser.h"
#include "core/MakeRoom.h"

#include <algorithm>
#include <utility>

namespace tam {

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
    const auto known = known_.find(id);
    if (known == known_.end()) {
        return false;
    }
    // By the set's own text: the caller's may be the very one in the list.
    ids_.erase(std::find(ids_.begin(), ids_.end(), *known));
    known_.erase(known);
    return true;
}

bool CompatibleList::RemovePosition(std::size_t oneBased) {
    const std::wstring* id = At(oneBased);
    return id != nullptr && Remove(*id);
}

void CompatibleList::Clear() noexcept {
    ids_.clear();
    known_.clear();
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
    MakeRoom(ids_);
    known_.emplace(id);
    ids_.push_back(std::move(kept));
}

} // namespace tam
