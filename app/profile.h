#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tl {

// An INI-style profile file, read and written key by key as the Win32 profile functions do.
class ProfileFile {
public:
    virtual ~ProfileFile() = default;

    // What the profile functions leave in a buffer of bufferSize characters: the value (or the default
    // when the key is missing), at most bufferSize - 1 characters (whole ones), then a NUL.
    virtual std::string readString(std::string_view section, std::string_view key, std::string_view defaultValue,
                                   size_t bufferSize) = 0;

    // As WritePrivateProfileString: nonzero on success.
    virtual int writeString(std::string_view section, std::string_view key, std::string_view value) = 0;

    // A batch of writes that reaches the file whole or not at all: between beginUpdate and
    // commitUpdate the writes go to a working copy, and commitUpdate puts it in place in one step.
    // Either may fail (false), in which case the file on disk is left as it was.
    virtual bool beginUpdate() { return true; }
    virtual bool commitUpdate() { return true; }
    virtual void abandonUpdate() {}

    // Between beginRead and endRead the reads answer from one reading of the file, so that a batch of
    // them sees one version of it even while another program rewrites it.
    virtual void beginRead() {}
    virtual void endRead() {}
};

}  // namespace tl
