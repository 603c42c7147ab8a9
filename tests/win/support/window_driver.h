#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>

namespace tl::wintest {

// Drives this process's own windows the way a user would, from a second thread while the test's thread
// sits in a modal loop (a dialog, a message box, a save dialog).

// A visible top-level window of this process with the class (null: any) and caption; null when none.
HWND findOwnWindow(const char* className, const char* caption);
HWND waitForOwnWindow(const char* className,
                      const char* caption,
                      std::chrono::milliseconds timeout = std::chrono::seconds(10));
// The first descendant of parent of the class whose text is text (null: any text).
HWND findChild(HWND parent, const char* className, const char* text = nullptr);
// The texts of parent's Static children, one per line.
std::string staticTexts(HWND parent);

// Selects everything in an edit box and types text into it, character by character.
void typeText(HWND edit, const std::string& text);
// Clicks a button. Posted, so that a modal box the click opens does not block the caller.
void clickButton(HWND button);

// Runs work on its own thread; joined when it goes out of scope.
class Driver {
  public:
    explicit Driver(std::function<void()> work) : thread_(std::move(work)) {}
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;
    ~Driver() {
        if (thread_.joinable()) {
            thread_.join();
        }
    }

  private:
    std::thread thread_;
};

}  // namespace tl::wintest
