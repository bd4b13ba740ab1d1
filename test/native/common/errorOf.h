#pragma once

#include <exception>
#include <string>

namespace quiravent::test {

/// What the exception of a body says; "none" where there is none.
template <class Body>
std::string errorOf(Body body) {
    try {
        body();
        return "none";
    } catch (const std::exception& error) {
        return error.what();
    }
}

}  // namespace quiravent::test
