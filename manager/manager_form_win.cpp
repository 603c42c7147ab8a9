#include "manager/manager_form_win.h"

#include <memory>

#include "app/program_win.h"
#include "base/text.h"
#include "base/window_win.h"

namespace tl {

namespace {

constexpr const char* kManagerClass = "TessalineManager";

class ManagerForm : public Window {
  public:
    void load() {
        registerClass(kManagerClass, ::LoadIconA(program().instance, MAKEINTRESOURCEA(1)));
        const std::string& path = program().app.listPath;
        const std::string caption = trimBlanks(path).empty() ? "Tessaline" : "Tessaline (" + path + ")";
        create(kManagerClass, caption.c_str(), WS_OVERLAPPEDWINDOW, 0, CW_USEDEFAULT, CW_USEDEFAULT, 640, 480);
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

std::unique_ptr<ManagerForm> managerForm;

}  // namespace

void showManager() {
    if (!managerForm) {
        managerForm = std::make_unique<ManagerForm>();
    }
    if (!managerForm->isCreated()) {
        managerForm->load();
    }
    ::ShowWindow(managerForm->hwnd(), SW_SHOWNORMAL);
    ::SetForegroundWindow(managerForm->hwnd());
}

}  // namespace tl
