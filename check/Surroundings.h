#pragma once

#include "check/Catalogue.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace check {

/// What other documents need to know of a device stream.
struct StreamSummary {
    std::string file;
    std::string name;
    std::string deviceKey;
    std::string objectId;
    std::vector<std::string> inputs;
    std::vector<std::string> outputs;
    /// Attributes and the general types of their types; "" when it is not known.
    std::map<std::string, std::string> attributes;
};

/// The documents around the one that is checked: the catalogue, and the streams of
/// the same run.
class Surroundings {
  public:
    Surroundings() = default;
    explicit Surroundings(const Catalogue* catalogue) : catalogue_(catalogue) {}

    /// Empty when there is none: then types are not looked up.
    const Catalogue& Types() const {
        static const Catalogue kNone;
        return catalogue_ != nullptr ? *catalogue_ : kNone;
    }
    bool HasTypes() const { return !Types().IsEmpty(); }

    void Add(StreamSummary stream) { streams_.push_back(std::move(stream)); }
    const std::vector<StreamSummary>& Streams() const noexcept { return streams_; }

  private:
    const Catalogue* catalogue_ = nullptr;
    std::vector<StreamSummary> streams_;
};

} // namespace check
