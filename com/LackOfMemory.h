#pragma once

namespace tam {

/// Sees to it that exceptions can be thrown when memory has run out. Called
/// once, before any other code of the DLL runs, which is linked with --wrap=malloc.
void PrepareForLackOfMemory() noexcept;

/// The same for the calling thread alone; a thread may ask again. False without
/// the memory for it: nothing that may throw must run on the thread then.
bool PrepareThisThread() noexcept;

} // namespace tam
