// What the program says about itself: its version, its company and folders, and the machine it runs on.
//
// frmAbout, the About box: lblTitle, txtAbout (the text as RTF), cmdOk.
#pragma once

#include <string>

#include "core/form.h"
#include "shell/session.h"

namespace tallwick {

std::string VersionTextOf(const ProgramVersion& version);  // "3.05.0123"
std::string ShortVersion(const ProgramVersion& version);   // "3.05"
std::string LongVersion(const ProgramVersion& version);    // "3.05.0123 - Build: 7"

// The About box's text: RTF in Arial, labels in bold.
std::string AboutRtf(const Session& session);

class FrmAbout : public Form {
 public:
  explicit FrmAbout(Session& session);

 protected:
  void OnClick(Control& control) override;
  bool OnKey(std::string_view key) override;
};

}  // namespace tallwick
