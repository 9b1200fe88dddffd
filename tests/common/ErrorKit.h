// The run-time error that a piece of code raises.
#pragma once

#include <kelmar/Variant.h>

#include <functional>

namespace kelmar::test {

// Runs f and returns the number of the run-time error it raised (0 for none).
inline int errorNumber(const std::function<void()>& f) {
    try {
        f();
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

}  // namespace kelmar::test
