#pragma once

#include <gtest/gtest.h>

#include <source_location>

namespace support {

/// The last parameter of a helper with expectations, left out by its callers:
/// what fails inside then names the caller's line.
class CalledFrom {
  public:
    CalledFrom(std::source_location where = std::source_location::current())
        : trace_(where.file_name(), static_cast<int>(where.line()), "called here") {}

  private:
    testing::ScopedTrace trace_;
};

} // namespace support
