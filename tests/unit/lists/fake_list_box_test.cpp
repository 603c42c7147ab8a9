#include "support/fake_list_box.h"

#include <gtest/gtest.h>

#include "support/list_box_contract.h"

namespace tl {
namespace {

// The same scenario runs under Wine on a real LISTBOX: the fake must keep telling the truth about it.
TEST(FakeListBox, BehavesAsTheWin32ListBox) {
    test::FakeListBox single(false);
    test::checkListBoxContract(single, false);
    test::FakeListBox multi(true);
    test::checkListBoxContract(multi, true);
}

}  // namespace
}  // namespace tl
