// The suite's help files in whatever the desktop shows them with.
#pragma once

#include "shell/help.h"

namespace tallwick {

class QtHelpViewer : public HelpViewer {
 public:
  bool Show(std::string_view file, const HelpRequest& request) override;
};

}  // namespace tallwick
