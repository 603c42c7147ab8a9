#include "base/file_system_posix.h"

#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

#include "base/utf8.h"

namespace tl {

std::string PosixFileSystem::nativePath(const std::string& path) {
    std::string p = path;
    for (char& c : p) {
        if (c == '\\') {
            c = '/';
        }
    }
    return p;
}

std::optional<std::string> PosixFileSystem::readFile(const std::string& path, size_t maxBytes) {
    const int fd = ::open(nativePath(path).c_str(), O_RDONLY);
    if (fd < 0) {
        return std::nullopt;
    }
    std::string out;
    char buf[65536];
    while (out.size() < maxBytes) {
        const size_t want = std::min(sizeof buf, maxBytes - out.size());
        const ssize_t n = ::read(fd, buf, want);
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n <= 0) {
            break;
        }
        out.append(buf, static_cast<size_t>(n));
    }
    ::close(fd);
    return out;
}

bool PosixFileSystem::writeNewFile(const std::string& path, std::string_view contents) {
    const int fd = ::open(nativePath(path).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd < 0) {
        return false;
    }
    size_t done = 0;
    while (done < contents.size()) {
        const ssize_t n = ::write(fd, contents.data() + done, contents.size() - done);
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n <= 0) {
            ::close(fd);
            return false;
        }
        done += static_cast<size_t>(n);
    }
    const bool synced = ::fsync(fd) == 0;
    return ::close(fd) == 0 && synced;
}

bool PosixFileSystem::moveReplacing(const std::string& from, const std::string& to) {
    const std::string target = nativePath(to);
    struct stat st {};
    if (::stat(target.c_str(), &st) == 0 && (st.st_mode & S_IWUSR) == 0) {
        return false;  // read-only target: Windows refuses to replace it, even for an administrator
    }
    if (::rename(nativePath(from).c_str(), target.c_str()) != 0) {
        return false;
    }
    const auto slash = target.rfind('/');
    const std::string dir = slash == std::string::npos ? "." : (slash == 0 ? "/" : target.substr(0, slash));
    const int dfd = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY);
    if (dfd >= 0) {
        ::fsync(dfd);
        ::close(dfd);
    }
    return true;
}

std::vector<DirEntry> PosixFileSystem::findFiles(const std::string& pattern) {
    const std::string p = nativePath(pattern);
    const auto slash = p.rfind('/');
    const std::string dir = slash == std::string::npos ? "." : (slash == 0 ? "/" : p.substr(0, slash));
    const std::string mask = slash == std::string::npos ? p : p.substr(slash + 1);
    std::vector<DirEntry> out;
    DIR* d = ::opendir(dir.c_str());
    if (!d) {
        return out;
    }
    while (const dirent* e = ::readdir(d)) {
        if (::fnmatch(mask.c_str(), e->d_name, FNM_CASEFOLD) != 0) {
            continue;
        }
        DirEntry entry;
        // A name that is not UTF-8 plays the part of a Windows name UTF-8 can't hold.
        entry.name = validUtf8(e->d_name);
        entry.unrepresentable = entry.name != e->d_name;
        struct stat st {};
        if (::stat((dir + "/" + e->d_name).c_str(), &st) == 0) {
            entry.isDirectory = S_ISDIR(st.st_mode);
            entry.readOnly = (st.st_mode & S_IWUSR) == 0;
        }
        out.push_back(std::move(entry));
    }
    ::closedir(d);
    return out;
}

std::optional<FileFacts> PosixFileSystem::facts(const std::string& path) {
    struct stat st {};
    if (::stat(nativePath(path).c_str(), &st) != 0) {
        return std::nullopt;
    }
    FileFacts f;
    f.size = static_cast<uint64_t>(st.st_size);
    f.isDirectory = S_ISDIR(st.st_mode);
    f.readOnly = (st.st_mode & S_IWUSR) == 0;
    char buf[64];
    struct tm local {};
    ::localtime_r(&st.st_mtime, &local);
    std::strftime(buf, sizeof buf, "%d/%m/%Y %H:%M:%S", &local);
    f.modified = buf;
    return f;
}

bool PosixFileSystem::deleteFile(const std::string& path) {
    return ::unlink(nativePath(path).c_str()) == 0;
}

bool PosixFileSystem::copyFile(const std::string& from, const std::string& to) {
    auto data = readFile(from);
    return data && writeNewFile(to, *data);
}

}  // namespace tl
