#pragma once

#include "view/Frame.h"
#include "view/resource.h"

#include <cstddef>

namespace view {

/// The window is busy while this lives: no command but "stop" is taken.
class Frame::Busy {
  public:
    explicit Busy(Frame& frame) : frame_(frame) {
        ++frame_.busy_;
        frame_.UpdateTools();
    }
    ~Busy() {
        --frame_.busy_;
        frame_.UpdateTools();
        // Only now is the command taken: a box that followed the load would have passed it over.
        if (frame_.busy_ == 0 && !frame_.isClosing_ && !frame_.waiting_.empty()) {
            PostMessageW(frame_.Handle(), WM_COMMAND, IDM_FILE_OPEN_WAITING, 0);
        }
    }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

  private:
    Frame& frame_;
};

/// A box of the window itself is shown while this lives: it is none of the component's.
class Frame::OwnBox {
  public:
    explicit OwnBox(Frame& frame)
        : busy_(frame)
        , session_(frame.session_.get())
        , before_(session_ != nullptr ? session_->Boxes() : 0) {}
    ~OwnBox() {
        if (session_ != nullptr) {
            session_->PassOverBoxes(before_);
        }
    }
    OwnBox(const OwnBox&) = delete;
    OwnBox& operator=(const OwnBox&) = delete;

  private:
    Busy busy_; // so no other file is opened meanwhile
    Session* session_;
    std::size_t before_;
};

} // namespace view
