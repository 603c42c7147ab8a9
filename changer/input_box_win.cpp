#include "changer/input_box_win.h"

#include "changer/small_dialog_win.h"

namespace tl {

namespace {

constexpr const char* kInputBoxClass = "TessalineInputBox";
constexpr int kAnswerId = 100;

class InputBoxWindow : public SmallDialog {
  public:
    std::string run(HWND owner, std::string_view prompt, std::string_view title, std::string_view defaultText) {
        if (!createDialog(kInputBoxClass, std::string(title).c_str(), 360, 124, owner)) {
            return {};
        }
        addControl("STATIC", std::string(prompt).c_str(), SS_LEFT | SS_NOPREFIX, 10, 10, 258, 72, 0);
        addControl("BUTTON", "OK", BS_DEFPUSHBUTTON | WS_TABSTOP, 278, 10, 72, 23, IDOK);
        addControl("BUTTON", "Cancel", BS_PUSHBUTTON | WS_TABSTOP, 278, 38, 72, 23, IDCANCEL);
        answer_ = addControl("EDIT", std::string(defaultText).c_str(), ES_AUTOHSCROLL | WS_TABSTOP | WS_GROUP, 10, 92,
                             340, 22, kAnswerId, WS_EX_CLIENTEDGE);
        useFont(createMessageFont(dpi()));
        ::SendMessageW(answer_, EM_SETSEL, 0, -1);
        setFocusControl(answer_);
        runModalDialog(owner);
        return result_;
    }

  protected:
    void onCommand(int id, int, HWND) override {
        if (id == IDOK) {
            result_ = windowText(answer_);
            close();
        } else if (id == IDCANCEL) {
            result_.clear();
            close();
        }
    }

  private:
    HWND answer_ = nullptr;
    std::string result_;
};

}  // namespace

std::string showInputBox(HWND owner, std::string_view prompt, std::string_view title, std::string_view defaultText) {
    InputBoxWindow box;
    return box.run(owner, prompt, title, defaultText);
}

}  // namespace tl
