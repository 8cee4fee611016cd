#pragma once

namespace tam {

/// Sees to it that exceptions can be thrown when memory has run out. Called
/// once, before any other code of the component runs.
void PrepareForLackOfMemory() noexcept;

} // namespace tam
