#pragma once

#include "com/Ref.h"

#include <windows.h>

#include <functional>

namespace package {

/// Hands an object of this thread to a multithreaded apartment, and lets that do something
/// with what comes there. This thread serves its calls meanwhile; a minute is allowed.
void InAnotherApartment(IUnknown* object, REFIID iid,
                        const std::function<void(const com::Ref<IUnknown>& there)>& act);

} // namespace package
