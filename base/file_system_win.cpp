#include "base/file_system_win.h"

#include <windows.h>

#include <algorithm>
#include <vector>

#include "base/unique_handle_win.h"
#include "base/utf8_win.h"

namespace tl {

std::optional<std::string> Win32FileSystem::readFile(const std::string& path, size_t maxBytes) {
    unique_hfile file(::CreateFileW(widen(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file) {
        return std::nullopt;
    }
    LARGE_INTEGER size{};
    if (!::GetFileSizeEx(file.get(), &size)) {
        return std::nullopt;
    }
    const size_t want = std::min<size_t>(maxBytes, static_cast<size_t>(size.QuadPart));
    std::string out(want, '\0');
    size_t done = 0;
    while (done < want) {
        DWORD got = 0;
        const DWORD chunk = static_cast<DWORD>(std::min<size_t>(want - done, 1u << 24));
        if (!::ReadFile(file.get(), out.data() + done, chunk, &got, nullptr) || got == 0) {
            break;
        }
        done += got;
    }
    out.resize(done);
    return out;
}

bool Win32FileSystem::writeNewFile(const std::string& path, std::string_view contents) {
    unique_hfile file(::CreateFileW(widen(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        return false;
    }
    size_t done = 0;
    while (done < contents.size()) {
        DWORD wrote = 0;
        const DWORD chunk = static_cast<DWORD>(std::min<size_t>(contents.size() - done, 1u << 24));
        if (!::WriteFile(file.get(), contents.data() + done, chunk, &wrote, nullptr) || wrote == 0) {
            return false;
        }
        done += wrote;
    }
    return ::FlushFileBuffers(file.get()) != 0;
}

bool Win32FileSystem::moveReplacing(const std::string& from, const std::string& to) {
    const std::wstring target = widen(to);
    const DWORD attributes = ::GetFileAttributesW(target.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY)) {
        // Windows refuses to replace a read-only file; make that hold on every system we run on.
        ::SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    return ::MoveFileExW(widen(from).c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

std::vector<DirEntry> Win32FileSystem::findFiles(const std::string& pattern) {
    std::vector<DirEntry> out;
    // The W record holds a whole name; the A one's MAX_PATH bytes cut a name of another script short.
    WIN32_FIND_DATAW data{};
    unique_hfind find(::FindFirstFileW(widen(pattern).c_str(), &data));
    if (!find) {
        return out;
    }
    do {
        DirEntry e;
        e.name = narrow(data.cFileName, &e.unrepresentable);
        e.isDirectory = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        e.hidden = (data.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN) != 0;
        e.system = (data.dwFileAttributes & FILE_ATTRIBUTE_SYSTEM) != 0;
        e.readOnly = (data.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
        out.push_back(std::move(e));
    } while (::FindNextFileW(find.get(), &data));
    return out;
}

std::string generalDateText(const FILETIME& lastWrite) {
    FILETIME local{};
    SYSTEMTIME st{};
    if (!::FileTimeToLocalFileTime(&lastWrite, &local) || !::FileTimeToSystemTime(&local, &st)) {
        return {};
    }
    wchar_t date[80] = {};
    wchar_t time[80] = {};
    ::GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &st, nullptr, date, 80);
    ::GetTimeFormatW(LOCALE_USER_DEFAULT, 0, &st, nullptr, time, 80);
    return narrow(date) + " " + narrow(time);
}

std::optional<FileFacts> Win32FileSystem::facts(const std::string& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!::GetFileAttributesExW(widen(path).c_str(), GetFileExInfoStandard, &data)) {
        return std::nullopt;
    }
    FileFacts f;
    f.size = (static_cast<uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    f.isDirectory = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    f.readOnly = (data.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
    f.modified = generalDateText(data.ftLastWriteTime);
    return f;
}

bool Win32FileSystem::deleteFile(const std::string& path) {
    return ::DeleteFileW(widen(path).c_str()) != 0;
}

bool Win32FileSystem::copyFile(const std::string& from, const std::string& to) {
    return ::CopyFileW(widen(from).c_str(), widen(to).c_str(), FALSE) != 0;
}

std::optional<std::string> executablePath(std::string* shown) {
    // The path may be longer than MAX_PATH: the buffer grows until the whole of it fits.
    std::vector<wchar_t> buffer(MAX_PATH);
    for (;;) {
        const DWORD n = ::GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
        if (n == 0) {
            return std::nullopt;
        }
        if (n < buffer.size()) {
            bool lost = false;
            std::string path = narrow(std::wstring_view(buffer.data(), n), &lost);
            if (shown) {
                *shown = path;
            }
            return lost ? std::nullopt : std::optional<std::string>(std::move(path));
        }
        if (buffer.size() >= 32768) {
            return std::nullopt;
        }
        buffer.resize(buffer.size() * 2);
    }
}

std::string directoryOf(const std::string& path) {
    std::string dir = path;
    const auto slash = dir.find_last_of("\\/");
    if (slash == std::string::npos) {
        return ".";
    }
    dir.resize(slash);
    if (dir.size() == 2 && dir[1] == ':') {
        dir += '\\';  // a drive root keeps its separator
    }
    return dir;
}

}  // namespace tl
