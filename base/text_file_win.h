#pragma once

#include "base/text_file.h"

namespace tl {

// The system's ANSI code page (CP_ACP), as MultiByteToWideChar decodes it.
class Win32AnsiCodePage : public AnsiCodePage {
  public:
    std::string toUtf8(std::string_view ansi) const override;
};

}  // namespace tl
