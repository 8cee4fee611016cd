#pragma once

#include "com/Registration.h"

namespace tam {

/// The classes and type libraries of this DLL: read by its exports,
/// registration and tests.
const com::ServerInfo& ThisServer() noexcept;

} // namespace tam
