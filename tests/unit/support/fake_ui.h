#pragma once

#include <string>
#include <vector>

#include "base/ui.h"

namespace tl::test {

// Records every message box and beep; answers message boxes from a queue (OK when it is empty).
class FakeUi : public Ui {
  public:
    struct Message {
        std::string text;
        std::string title;
        unsigned style;
        bool operator==(const Message&) const = default;
    };

    int messageBox(std::string_view text, std::string_view title, unsigned style) override {
        messages.push_back({std::string(text), std::string(title), style});
        if (answers.empty()) {
            return kIdOk;
        }
        const int a = answers.front();
        answers.erase(answers.begin());
        return a;
    }
    void beep() override { ++beeps; }

    std::vector<Message> messages;
    std::vector<int> answers;
    int beeps = 0;
};

}  // namespace tl::test
