#include "base/file_system_win.h"

#include <windows.h>

#include <algorithm>

#include "base/unique_handle_win.h"

namespace tl {

std::optional<std::string> Win32FileSystem::readFile(const std::string& path, size_t maxBytes) {
    unique_hfile file(::CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
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
    unique_hfile file(::CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                                    nullptr));
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
    const DWORD attributes = ::GetFileAttributesA(to.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY)) {
        // Windows refuses to replace a read-only file; make that hold on every system we run on.
        ::SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    return ::MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

std::vector<DirEntry> Win32FileSystem::findFiles(const std::string& pattern) {
    std::vector<DirEntry> out;
    WIN32_FIND_DATAA data{};
    unique_hfind find(::FindFirstFileA(pattern.c_str(), &data));
    if (!find) {
        return out;
    }
    do {
        DirEntry e;
        e.name = data.cFileName;
        e.isDirectory = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        e.hidden = (data.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN) != 0;
        e.system = (data.dwFileAttributes & FILE_ATTRIBUTE_SYSTEM) != 0;
        e.readOnly = (data.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
        out.push_back(std::move(e));
    } while (::FindNextFileA(find.get(), &data));
    return out;
}

std::string generalDateText(const FILETIME& lastWrite) {
    FILETIME local{};
    SYSTEMTIME st{};
    if (!::FileTimeToLocalFileTime(&lastWrite, &local) || !::FileTimeToSystemTime(&local, &st)) {
        return {};
    }
    char date[80] = {};
    char time[80] = {};
    ::GetDateFormatA(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &st, nullptr, date, sizeof date);
    ::GetTimeFormatA(LOCALE_USER_DEFAULT, 0, &st, nullptr, time, sizeof time);
    return std::string(date) + " " + time;
}

std::optional<FileFacts> Win32FileSystem::facts(const std::string& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!::GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data)) {
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
    return ::DeleteFileA(path.c_str()) != 0;
}

bool Win32FileSystem::copyFile(const std::string& from, const std::string& to) {
    return ::CopyFileA(from.c_str(), to.c_str(), FALSE) != 0;
}

}  // namespace tl
