#pragma once

#include <windows.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <thread>
#include <vector>

#include "support/program.h"

// Drives windows the way a user's actions do, those of the real program as well as this process's own
// (from a second thread while the test's thread sits in a modal loop), and reads what they show.
// Buttons are clicked with BM_CLICK and text is typed with WM_CHAR where the pointer and the focus are
// not the point: real input in Wine goes astray when another window takes the focus.
namespace tl::wintest {

std::string windowClass(HWND window);
// A top-level window of the process of that class and caption (null: any); visible ones only if asked.
HWND findWindow(DWORD pid, const char* className, const char* caption, bool visibleOnly);
// The same for this process's visible windows, waited for.
HWND waitForOwnWindow(const char* className, const char* caption, milliseconds timeout = seconds(10));
// The first descendant of the class (case ignored) whose text is text (null: any text).
HWND findChild(HWND parent, const char* className, const char* text = nullptr);
// The first descendant with that control id (GetDlgItem sees children only).
HWND findControl(HWND parent, int id);
// A control's text, asked with WM_GETTEXT: GetWindowText does not ask another process's controls.
std::string controlText(HWND control);
// The texts of parent's Static children, one per line: what a message box says.
std::string staticTexts(HWND parent);

// Clicks a button; posted, so that a modal window the click opens does not hold up the caller.
void clickButton(HWND button);
// Presses a dialog's button by its id, as the dialog hears it (WM_COMMAND).
void pressButton(HWND dialog, int id);
// Selects all the text of an edit box and types text into it.
void typeText(HWND edit, const std::string& text);

// The lines of a list box and the chosen item of a combo box (of another process too).
std::vector<std::string> listLines(HWND listBox);
std::string chosenItem(HWND comboBox);
// A click or a double click on a line as the list box reports it to its parent; in a list box of
// several selections the line joins the selection.
void clickListLine(HWND listBox, int line);
void doubleClickListLine(HWND listBox, int line);
// Files and folders dropped on a window from the shell.
void dropFiles(DWORD pid, HWND target, const std::vector<std::string>& paths);
// The file name box of a common file dialog.
HWND fileNameBox(HWND dialog);
// Types a path into a common file dialog and presses its OK button.
void chooseInFileDialog(HWND dialog, const std::string& path);

// Real input, for where the keys and the pointer are the point. Keys: the modifiers down, the key
// down and up, the modifiers up; true when the system took every event.
bool pressKeys(std::initializer_list<WORD> modifiers, WORD key);
// A click at a point of the screen with modifier keys held; returns once the window under the point
// has taken it in (Wine loses a click that reaches a thread still busy with the one before).
bool clickAt(POINT at, std::initializer_list<WORD> modifiers = {});
bool rightClickAt(POINT at);
POINT centreOf(HWND window);
// The middle of a line of a list box, on the screen.
POINT lineCentre(HWND listBox, int line);
// Chooses the item at that position (from 0, separators not counted) of the pop-up menu now opening,
// with the keyboard. False when no menu opened or it did not close.
bool chooseOpenMenuItem(int position);

// frmMain's tray icon: its callback as the tray sends it, its menu chosen by caption, and whether the
// tray holds it (asked with a modification that changes nothing).
void postTrayMouse(HWND form, UINT mouseMessage);
bool chooseTrayMenuItem(HWND form, const std::string& caption);
bool trayHasIcon(HWND form);
void removeTrayIcon(HWND form);
// Restores the panel from the tray ("Show panel...") and waits until it is in front.
bool showPanel(HWND form);

// The whole screen as 24-bit pixels.
class ScreenShot {
  public:
    ScreenShot();
    // 0xRRGGBB at (x, y) from the top left.
    unsigned pixel(int x, int y) const;
    // Saved as a BMP in the build folder, for a person to look at.
    void save(const std::string& name) const;

  private:
    int width_ = 0;
    int height_ = 0;
    std::vector<unsigned char> bits_;  // bottom-up rows of BGR, 4-byte aligned
};
// Whether two colours differ by at most tolerance in each channel.
bool closeColour(unsigned a, unsigned b, int tolerance = 24);

// Plays the user on a thread of its own; joined when it goes out of scope.
class Driver {
  public:
    explicit Driver(std::function<void()> work) : thread_(std::move(work)) {}
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;
    ~Driver() { thread_.join(); }

  private:
    std::thread thread_;
};

}  // namespace tl::wintest
