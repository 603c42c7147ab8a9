#pragma once

// What both list manager benchmarks use: the paths of the listed and the added files, and a user and a
// file remover that stay quiet.
#include <string>
#include <string_view>

#include "base/ui.h"
#include "bench/timing.h"
#include "manager/manager_view.h"

namespace tl::bench {

class SilentUi : public tl::Ui {
  public:
    int messageBox(std::string_view, std::string_view, unsigned) override { return tl::kIdOk; }
    void beep() override {}
};

class NoRemover : public tl::FileRemover {
  public:
    bool removeFileFromDisk(const std::string&, bool, bool) override { return false; }
};

// A camera's pictures sorted into yearly folders, as a list of 20,000 holds them.
inline std::string listedPath(int i) {
    return "D:\\Photos\\Family\\Holiday " + std::to_string(2000 + i % 20) + "\\IMG_" + std::to_string(100000 + i) +
           ".JPG";
}

// The newly imported pictures, added from one folder.
inline std::string addedName(int i) {
    return "DSC" + std::to_string(500000 + i) + ".jpg";
}

}  // namespace tl::bench
