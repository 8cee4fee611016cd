#pragma once

#include "bench/Answer.h"

#include <string>

namespace bench {

/// Says what `check` finds in the documents that the run read: the errors, the first
/// thousand of them, each with the boxes that it explains.
void Explain(Answer& answer);

/// A file that the run reads beside its stream; nothing for one that is not there.
void AddSource(const std::wstring& file, Answer& answer);
/// The same of a document that the others stand on.
void AddGround(const std::wstring& file, Answer& answer);

} // namespace bench
