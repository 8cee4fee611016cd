#pragma once

namespace tests {

/// True in Wine. Where Wine alone differs, a test asserts there what is known of it
/// (docs/testing.md), and everywhere else what Windows does.
bool IsWine();

} // namespace tests
