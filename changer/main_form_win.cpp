#include "changer/main_form_win.h"

#include <memory>

#include "app/program_win.h"
#include "base/window_win.h"

namespace tl {

namespace {

constexpr const char* kMainClass = "TessalineMain";

class MainForm : public Window {
public:
    void load() {
        registerClass(kMainClass, ::LoadIconA(program().instance, MAKEINTRESOURCEA(1)));
        create(kMainClass, "Tessaline", WS_OVERLAPPEDWINDOW, 0, CW_USEDEFAULT, CW_USEDEFAULT, 400, 300);
        if (hwnd()) {
            formLoaded();
        }
    }

protected:
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override {
        if (msg == WM_DESTROY) {
            formUnloaded();
        }
        return defaultProc(msg, wParam, lParam);
    }
};

std::unique_ptr<MainForm> mainForm;

}  // namespace

void loadMainForm() {
    if (!mainForm) {
        mainForm = std::make_unique<MainForm>();
    }
    if (!mainForm->isCreated()) {
        mainForm->load();
    }
}

}  // namespace tl
