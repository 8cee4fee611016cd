#include "view/model/BoxLog.h"

namespace view {

void BoxLog::Clear() noexcept {
    latest_.clear();
    leftOut_ = 0;
}

void BoxLog::Add(const std::vector<FindingRow>& boxes) {
    for (const FindingRow& box : boxes) {
        latest_.push_back(box);
        if (latest_.size() > kMost) {
            latest_.pop_front();
            ++leftOut_;
        }
    }
}

} // namespace view
