#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

namespace tl {

// The numbered error a reusable class raises to its caller: number = 0x80040000 + a code of the class's
// own, source = the executable's name + "." + the class's name, and a description for the user.
class ObjectError : public std::runtime_error {
  public:
    static constexpr uint32_t kBase = 0x80040000u;

    ObjectError(int32_t code, std::string source, const std::string& description)
        : std::runtime_error(description), code_(code), source_(std::move(source)) {}

    // The class's own code (1049, 1090 ...).
    int32_t code() const { return code_; }
    // The full error number, 0x80040000 + code.
    uint32_t number() const { return kBase + static_cast<uint32_t>(code_); }
    const std::string& source() const { return source_; }
    std::string description() const { return what(); }

  private:
    int32_t code_;
    std::string source_;
};

}  // namespace tl
