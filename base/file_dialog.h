#pragma once

#include <string>

namespace tl {

// What a common Open or Save dialog is opened with.
struct FileDialogRequest {
    std::string title;
    std::string filter;            // "Name|pattern" pairs, "|"-separated
    std::string defaultName;       // the file name box's text
    std::string initialDirectory;  // empty: where the dialog was last
    std::string defaultExtension;  // added to a name typed without one; with or without its dot
};

}  // namespace tl
