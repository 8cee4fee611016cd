#pragma once

#include "core/PointKeys.h"

#include <memory>
#include <string>
#include <utility>

namespace tam {

/// A key that nobody shares yet. Making one takes memory, setting it takes none.
using NewKey = std::shared_ptr<std::wstring>;

/// One key of an owner's side. While exactly the present items share it, a new
/// key is one text replaced, however many items there are; after a change among
/// them it is a new text that each item is given.
class SideKey {
  public:
    const std::wstring& Text() const noexcept { return *text_; }

    /// `give` hands a shared key to an item, and does not fail.
    template <class Items, class Give>
    void Set(NewKey key, const Items& items, Give&& give) noexcept {
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
    NewKey text_ = std::make_shared<std::wstring>();
    bool isShared_ = false;
};

} // namespace tam
