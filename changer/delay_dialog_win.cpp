#include "changer/delay_dialog_win.h"

#include <string>
#include <variant>

#include "app/settings.h"
#include "base/ui_win.h"
#include "changer/delay_entry.h"
#include "changer/small_dialog_win.h"

namespace tl {

namespace {

constexpr const char* kDelayClass = "TessalineDelay";
constexpr int kTxtDelay = 100;

class DelayDialog : public SmallDialog {
  public:
    DelayDialog(Settings& settings, char decimalSeparator) : settings_(settings), separator_(decimalSeparator) {}

    bool run(HWND owner) {
        if (!createDialog(kDelayClass, "Delay", 264, 104, owner)) {
            return false;
        }
        addControl("STATIC", "Enter the time (in minutes) you'd like each wallpaper to appear for:", SS_LEFT, 10, 10,
                   244, 28, 0);
        txtDelay_ = addControl("EDIT", "", ES_AUTOHSCROLL | WS_TABSTOP | WS_GROUP, 10, 42, 244, 22, kTxtDelay,
                               WS_EX_CLIENTEDGE);
        addControl("BUTTON", "&Ok", BS_DEFPUSHBUTTON | WS_TABSTOP | WS_GROUP, 98, 72, 75, 23, IDOK);
        addControl("BUTTON", "&Cancel", BS_PUSHBUTTON | WS_TABSTOP, 179, 72, 75, 23, IDCANCEL);
        useFont(createPointFont("Tahoma", 8, dpi()));
        showCurrentDelay();
        runModalDialog(owner);
        return changed_;
    }

  protected:
    void onCommand(int id, int, HWND) override {
        if (id == IDOK) {
            onOk();
        } else if (id == IDCANCEL) {
            close();
        }
    }

  private:
    void showCurrentDelay() {
        setWindowText(txtDelay_, std::to_string(settings_.Delay));
        ::SendMessageW(txtDelay_, EM_SETSEL, 0, -1);
        setFocusControl(txtDelay_);
    }

    void onOk() {
        const DelayEntry entry = checkDelayEntry(windowText(txtDelay_), separator_);
        if (const auto* accepted = std::get_if<DelayAccepted>(&entry)) {
            settings_.Delay = accepted->minutes;
            changed_ = true;
            close();
            return;
        }
        // Text that is no number at all gets the same answer as one out of range: the user sees why the
        // dialog stays, and the current delay comes back to start again from.
        Win32Ui(hwnd()).messageBox(kDelayRangeMessage, "Error", kMbOk | kMbIconExclamation);
        showCurrentDelay();
        ::SetFocus(txtDelay_);
    }

    Settings& settings_;
    char separator_;
    HWND txtDelay_ = nullptr;
    bool changed_ = false;
};

}  // namespace

bool showDelayDialog(HWND owner, Settings& settings, char decimalSeparator) {
    DelayDialog dialog(settings, decimalSeparator);
    return dialog.run(owner);
}

}  // namespace tl
