#pragma once

#include <new>
#include <stdexcept>

#include "runtime/core/RuntimeException.h"

namespace vx {

// Runs a step that allocates and reports the library's allocation failures as
// the program's own OutOfMemoryException.
template <class Step>
void GuardAllocation(Step step) {
    try {
        step();
    } catch (const std::bad_alloc&) {
        throw OutOfMemoryException();
    } catch (const std::length_error&) {
        throw OutOfMemoryException();
    }
}

}  // namespace vx
