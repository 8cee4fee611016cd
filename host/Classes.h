#pragma once

#include "com/Registration.h"

namespace orv {

/// The creatable classes and the type libraries of the host services.
com::ServerInfo Server() noexcept;

} // namespace orv
