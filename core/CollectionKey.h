#pragma once

#include "core/PointKeys.h"

#include <memory>
#include <string>
#include <utility>

namespace tam {

/// The keys of an owner's three collections. They are made before anything is changed:
/// after them nothing of a key's writing can fail.
struct CollectionKeyTexts {
    explicit CollectionKeyTexts(const std::wstring& ownersKey)
        : inputs(ownersKey + L"\\RIN"), outputs(ownersKey + L"\\ROU"), attributes(ownersKey + L"\\ATT") {}
    std::wstring inputs;
    std::wstring outputs;
    std::wstring attributes;
};

/// A key that nobody shares yet. Making one takes memory, setting it takes none.
using NewCollectionKey = std::shared_ptr<std::wstring>;

/// One of the two keys of a collection, which its points share. As long as all points
/// of the collection share it, and no others, a new key replaces one text, however
/// many points there are. After a point has come or gone, each point is given a new
/// text.
class CollectionKey {
  public:
    const std::wstring& Text() const noexcept { return *text_; }

    /// `give` hands a shared key to an item, and does not fail.
    template <class Items, class Give>
    void Set(NewCollectionKey key, const Items& items, Give&& give) noexcept {
        if (isShared_) {
            *text_ = std::move(*key);
            return;
        }
        text_ = std::move(key);
        for (const auto& item : items) {
            give(item, text_);
        }
        isShared_ = true;
    }
    /// To be called when an item comes or goes.
    void ItemsChange() noexcept { isShared_ = false; }

  private:
    NewCollectionKey text_ = std::make_shared<std::wstring>();
    bool isShared_ = false;
};

} // namespace tam
