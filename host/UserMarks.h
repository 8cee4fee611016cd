#pragma once

#include "host/NumberText.h"

namespace orv {

/// The marks of the user's locale, as they are set now.
NumberMarks UserMarks();

} // namespace orv
