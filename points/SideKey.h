#pragma once

#include "points/PointKeys.h"

#include <memory>
#include <string>
#include <utility>

namespace tam {

/// One key of an owner's side. While exactly the present items share it, a new
/// key is one text replaced, however many items there are; after a change among
/// them it is a new text that each item is given.
class SideKey {
  public:
    const std::wstring& Text() const noexcept { return *text_; }

    /// `give` hands a shared key to an item. Only memory can run out, and
    /// nothing has changed then.
    template <class Items, class Give>
    void Set(std::wstring key, const Items& items, Give&& give) {
        if (isShared_) {
            *text_ = std::move(key);
            return;
        }
        text_ = std::make_shared<std::wstring>(std::move(key));
        for (const auto& item : items) {
            give(item, text_);
        }
        isShared_ = true;
    }
    /// To be called when an item comes or goes.
    void ItemsChange() noexcept { isShared_ = false; }

  private:
    std::shared_ptr<std::wstring> text_ = std::make_shared<std::wstring>();
    bool isShared_ = false;
};

} // namespace tam
