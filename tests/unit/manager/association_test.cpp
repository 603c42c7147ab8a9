#include "manager/file_association.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fake_ui.h"

namespace tl::test {
namespace {

using ::testing::ElementsAre;

class FakeRegistry : public ClassesRegistry {
  public:
    void setDefaultValue(const std::string& subKey, const std::string& value) override {
        calls.push_back("set " + subKey + " = " + value);
    }
    void deleteKey(const std::string& subKey) override { calls.push_back("delete " + subKey); }
    std::vector<std::string> calls;
};

TEST(FileAssociation, AssociateWritesTheFourKeysInOrderThenSaysHowToUndo) {
    FakeRegistry registry;
    FakeUi ui;
    associateWallFiles(registry, ui, "C:\\Program Files\\Tessaline", "tessaline");
    EXPECT_THAT(registry.calls,
                ElementsAre("set Tessaline = Tessaline File", "set .wall = Tessaline",
                            "set Tessaline\\shell\\open\\command = \"C:\\Program Files\\Tessaline\\tessaline.EXE\" %1",
                            "set Tessaline\\DefaultIcon = C:\\Program Files\\Tessaline\\tessaline.exe,0"));
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text,
              "WALL files are now associated with Tessaline.\r\nTo undo this action, choose 'Un-associate'.");
    EXPECT_EQ(ui.messages[0].title, "Complete!");
}

TEST(FileAssociation, UnassociateDeletesBothKeysOnlyAfterYes) {
    for (const int answer : {kIdNo, kIdYes}) {
        FakeRegistry registry;
        FakeUi ui;
        ui.answers = {answer};
        unassociateWallFiles(registry, ui);
        ASSERT_GE(ui.messages.size(), 1u);
        EXPECT_EQ(ui.messages[0].title, "Warning!");
        EXPECT_EQ(ui.messages[0].style, kMbYesNo);
        if (answer == kIdNo) {
            EXPECT_TRUE(registry.calls.empty());
            EXPECT_EQ(ui.messages.size(), 1u);
        } else {
            EXPECT_THAT(registry.calls, ElementsAre("delete Tessaline", "delete .wall"));
            ASSERT_EQ(ui.messages.size(), 2u);
            EXPECT_EQ(ui.messages[1].text, "Registry entries deleted.");
            EXPECT_EQ(ui.messages[1].title, "Complete!");
        }
    }
}

}  // namespace
}  // namespace tl::test
