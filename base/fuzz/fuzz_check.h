#pragma once

#include <stdexcept>
#include <string>

// What the fuzz targets' "one input" functions use to say that something that must hold for every input
// did not. Under libFuzzer the exception ends the run (std::terminate) and the input is kept as a crash;
// the unit tests catch it and name the regression input.
namespace tl::fuzz {

class FuzzFailure : public std::logic_error {
  public:
    using std::logic_error::logic_error;
};

inline void check(bool holds, const char* target, const char* what) {
    if (!holds) {
        throw FuzzFailure(std::string(target) + ": " + what);
    }
}

}  // namespace tl::fuzz
