#pragma once

#include "bench/Answer.h"
#include "bench/Host.h"

#include <string>

namespace bench {

/// Has the object make its stream, with the database compiler at hand or
/// without one, on a machine that has one registered too.
std::string ReadStream(Host& host, bool withCompiler);

/// For an object that answered no stream: asks the compiler what it refuses,
/// puts that into the answer and throws it as a BenchError. The component
/// passes over the reason, so its export document is given to the compiler once
/// more. The sizes of the object are gone afterwards.
[[noreturn]] void ThrowRefusal(Host& host, Answer& answer);

} // namespace bench
