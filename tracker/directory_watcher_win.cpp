#include "tracker/directory_watcher_win.h"

#include <mutex>

#include "base/text.h"
#include "base/utf8_win.h"
#include "tracker/directory_changes.h"

namespace tl {

struct DirectoryWatcher::Queue {
    std::mutex mutex;
    std::vector<ShellChange> changes;
    std::vector<std::string> watched;
    bool posted = false;
    HWND target = nullptr;
    UINT message = 0;

    void push(std::vector<ShellChange> more) {
        if (more.empty()) {
            return;
        }
        std::lock_guard lock(mutex);
        changes.insert(changes.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
        if (!posted) {
            posted = ::PostMessageW(target, message, 0, 0) != FALSE;
        }
    }
};

namespace {

// 64 KiB: the most a watch over the network may ask for, and room for a burst of copies.
constexpr DWORD kBufferBytes = 64 * 1024;
constexpr DWORD kWatchFilter = FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_DIR_NAME;

std::wstring joinWide(const std::wstring& dir, const std::wstring& name) {
    return !dir.empty() && dir.back() == L'\\' ? dir + name : dir + L"\\" + name;
}

}  // namespace

// One worker thread and its watches. The reads complete as APCs on the worker, which waits alertably
// for its stop event; everything the reads touch belongs to the worker alone.
struct DirectoryWatcher::Session {
    struct Watch {
        OVERLAPPED overlapped{};
        unique_hfile directory;
        std::string folder;
        std::wstring wideFolder;
        std::vector<DWORD> buffer = std::vector<DWORD>(kBufferBytes / sizeof(DWORD));
        DirectoryChangeReader reader;
        Session* session = nullptr;
        bool pending = false;
    };

    std::shared_ptr<Queue> queue;
    std::vector<std::string> folders;
    std::vector<std::unique_ptr<Watch>> watches;
    unique_handle stopEvent{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    unique_handle readyEvent{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    unique_handle thread;
    bool stopping = false;

    static DWORD WINAPI run(void* self) {
        static_cast<Session*>(self)->work();
        return 0;
    }

    void work() {
        std::vector<std::string> watched;
        for (const std::string& folder : folders) {
            auto w = std::make_unique<Watch>();
            w->folder = folder;
            w->wideFolder = widen(folder);
            w->session = this;
            w->overlapped.hEvent = w.get();  // unused by completion routines: free for the watch's address
            w->directory.reset(::CreateFileW(
                w->wideFolder.c_str(), FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OVERLAPPED, nullptr));
            if (w->directory && arm(*w)) {
                watched.push_back(folder);
                watches.push_back(std::move(w));
            }
        }
        {
            std::lock_guard lock(queue->mutex);
            queue->watched = watched;
        }
        ::SetEvent(readyEvent.get());
        while (::WaitForSingleObjectEx(stopEvent.get(), INFINITE, TRUE) != WAIT_OBJECT_0) {
        }
        stopping = true;
        for (auto& w : watches) {
            if (w->pending) {
                ::CancelIo(w->directory.get());
            }
        }
        // The cancelled reads still complete, as APCs, and their buffers must live until they have.
        for (int i = 0; i < 100 && anyPending(); ++i) {
            ::SleepEx(20, TRUE);
        }
        for (auto& w : watches) {
            w->directory.reset();
        }
        for (int i = 0; i < 100 && anyPending(); ++i) {
            ::SleepEx(20, TRUE);
        }
        if (anyPending()) {
            // The system still owns a buffer: better to leave it than to free it under a read.
            for (auto& w : watches) {
                if (w->pending) {
                    w.release();
                }
            }
        }
        watches.clear();
    }

    bool anyPending() const {
        for (const auto& w : watches) {
            if (w && w->pending) {
                return true;
            }
        }
        return false;
    }

    static bool arm(Watch& w) {
        w.pending = ::ReadDirectoryChangesW(w.directory.get(), w.buffer.data(), kBufferBytes, TRUE, kWatchFilter,
                                            nullptr, &w.overlapped, &Session::completed) != FALSE;
        return w.pending;
    }

    static void CALLBACK completed(DWORD error, DWORD bytes, OVERLAPPED* overlapped) {
        auto* w = static_cast<Watch*>(overlapped->hEvent);
        w->pending = false;
        if (w->session->stopping || error == ERROR_OPERATION_ABORTED) {
            return;
        }
        if (error == ERROR_SUCCESS && bytes > 0) {
            w->session->queue->push(read(*w, bytes));
        }
        // bytes = 0: more changes than the buffer holds; those are lost, and the watch goes on.
        arm(*w);
    }

    static std::vector<ShellChange> read(Watch& w, DWORD bytes) {
        std::vector<ShellChange> out;
        const auto* base = reinterpret_cast<const BYTE*>(w.buffer.data());
        DWORD offset = 0;
        while (offset + sizeof(FILE_NOTIFY_INFORMATION) <= bytes) {
            const auto* info = reinterpret_cast<const FILE_NOTIFY_INFORMATION*>(base + offset);
            const size_t length = info->FileNameLength / sizeof(WCHAR);
            const std::wstring name(info->FileName, length);
            const auto action = static_cast<DirectoryAction>(info->Action);
            bool isDirectory = false;
            if (action == DirectoryAction::Added || action == DirectoryAction::RenamedNewName) {
                const DWORD attributes = ::GetFileAttributesW(joinWide(w.wideFolder, name).c_str());
                isDirectory = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
            }
            bool lost = false;
            const std::string path = joinPath(w.folder, narrow(name, &lost));
            auto changes = w.reader.read(action, path, isDirectory);
            // A new name UTF-8 can't hold is flagged where it appears (the receipt tells the user of it).
            for (ShellChange& change : changes) {
                change.unrepresentable1 = change.unrepresentable1 || (lost && change.path1 == path);
                change.unrepresentable2 = change.unrepresentable2 || (lost && change.path2 == path);
            }
            out.insert(out.end(), changes.begin(), changes.end());
            if (info->NextEntryOffset == 0) {
                break;
            }
            offset += info->NextEntryOffset;
        }
        return out;
    }
};

DirectoryWatcher::DirectoryWatcher(HWND target, UINT message) : queue_(std::make_shared<Queue>()) {
    queue_->target = target;
    queue_->message = message;
}

DirectoryWatcher::~DirectoryWatcher() {
    stop();
}

void DirectoryWatcher::watch(const std::vector<std::string>& folders) {
    if (session_ && folders == requested_) {
        return;
    }
    stop();
    requested_ = folders;
    if (folders.empty()) {
        return;
    }
    auto session = std::make_unique<Session>();
    session->queue = queue_;
    session->folders = folders;
    if (!session->stopEvent || !session->readyEvent) {
        return;
    }
    session->thread.reset(::CreateThread(nullptr, 0, &Session::run, session.get(), 0, nullptr));
    if (!session->thread) {
        return;
    }
    // Opening and arming a few folders is quick; a stuck network drive does not hold the window for long.
    ::WaitForSingleObject(session->readyEvent.get(), 5000);
    session_ = std::move(session);
}

void DirectoryWatcher::stop() {
    if (!session_) {
        return;
    }
    ::SetEvent(session_->stopEvent.get());
    ::WaitForSingleObject(session_->thread.get(), INFINITE);
    session_.reset();
    requested_.clear();
    std::lock_guard lock(queue_->mutex);
    queue_->watched.clear();
}

std::vector<std::string> DirectoryWatcher::watchedFolders() const {
    std::lock_guard lock(queue_->mutex);
    return queue_->watched;
}

std::vector<ShellChange> DirectoryWatcher::takeChanges() {
    std::lock_guard lock(queue_->mutex);
    queue_->posted = false;
    return std::exchange(queue_->changes, {});
}

}  // namespace tl
