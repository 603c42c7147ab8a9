#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "base/file_system_posix.h"

namespace tl::test {

// Thrown where the process would have died.
struct Crash {};

// Passes through to the disk until the chosen step, where it stops the way a crash or a full disk
// would: a partial write, or nothing after a point.
class FaultyFileSystem : public PosixFileSystem {
  public:
    enum class Fault { None, CrashDuringWrite, DiskFullDuringWrite, CrashBeforeMove, CrashAfterMove };
    Fault fault = Fault::None;
    size_t bytesBeforeFault = 0;

    bool writeNewFile(const std::string& path, std::string_view contents) override {
        if (fault == Fault::CrashDuringWrite || fault == Fault::DiskFullDuringWrite) {
            PosixFileSystem::writeNewFile(path, contents.substr(0, std::min(bytesBeforeFault, contents.size())));
            if (fault == Fault::CrashDuringWrite) {
                throw Crash{};
            }
            return false;
        }
        return PosixFileSystem::writeNewFile(path, contents);
    }
    bool moveReplacing(const std::string& from, const std::string& to) override {
        if (fault == Fault::CrashBeforeMove) {
            throw Crash{};
        }
        const bool ok = PosixFileSystem::moveReplacing(from, to);
        if (fault == Fault::CrashAfterMove) {
            throw Crash{};
        }
        return ok;
    }
};

}  // namespace tl::test
