#include "shell/about.h"

#include "core/encoding.h"
#include "core/text.h"
#include "core/text_format.h"
#include "shell/machine.h"
#include "shell/start_up.h"

namespace tallwick {
namespace {

// Text as RTF: its own signs escaped, everything beyond ASCII as a byte of the code page.
std::string Escaped(std::string_view text) {
  constexpr std::string_view kHex = "0123456789abcdef";
  std::string escaped;
  for (const char character : ToWindows1252(text).value_or(std::string(text))) {
    const auto byte = static_cast<unsigned char>(character);
    if (character == '\\' || character == '{' || character == '}') escaped += '\\';
    if (byte < 0x80) {
      escaped += character;
    } else {
      escaped += std::string("\\'") + kHex[byte / 16u] + kHex[byte % 16u];
    }
  }
  return escaped;
}

std::string Line(std::string_view label, std::string_view value) {
  return "\\b " + Escaped(label) + "\\b0  " + Escaped(value) + "\\par\n";
}

std::string CompanyText(const Suite& suite) {
  return suite.CompanyName() + " (" + suite.CompanyNumber() + ")";
}

}  // namespace

std::string VersionTextOf(const ProgramVersion& version) {
  return VersionText(version.major, version.minor, version.revision);
}

std::string ShortVersion(const ProgramVersion& version) {
  return FormatNumber(static_cast<long long>(version.major), "#0.") + ZeroPadded(version.minor, 2);
}

std::string LongVersion(const ProgramVersion& version) {
  return VersionTextOf(version) + " - Build: " + std::to_string(version.build);
}

std::string AboutRtf(const Session& session) {
  const Suite& suite = session.TheSuite();
  const FileSystem& files = session.Files();
  const MachineFacts facts = session.TheMachine() != nullptr ? session.TheMachine()->Facts() : MachineFacts();
  const auto shown = [&files](const std::string& folder) {
    return folder.empty() ? folder : files.PlatformPath(WithBackslash(folder));
  };
  std::string text = "{\\rtf1\\ansi\\ansicpg1252{\\fonttbl{\\f0\\fswiss Arial;}}\\f0\\fs20\n";
  text += "\\b " + Escaped(kProgramName) + "\\b0\\par\n";
  text += "Version: " + VersionTextOf(session.Version()) + "\\par\n";
  const std::optional<DateTime> dated = files.Modified(facts.program_file);
  if (dated) text += Escaped(FormatDateTime(*dated, "dddd, mmmm d, yyyy @ h:mm AM/PM")) + "\\par\n";
  text += "\\par\n";
  text += Line("Company:", CompanyText(suite));
  text += Line("Data Path:", shown(session.DataPath()));
  text += Line("Application Path:", shown(suite.ApplicationPath()));
  text += Line("Settings Path:", shown(suite.SettingsPath()));
  text += Line("Update Path:", shown(suite.UpdatePath()));
  text += "\\par\n";
  text += Line("OS Name:", facts.os_name + (facts.is_64_bit ? " (64-bit)" : " (32-bit)"));
  text += Line("Version:", facts.os_version);
  text += Line("System Folder:", shown(facts.system_folder));
  text += Line("Computer Name:", session.TheWorkstation().ComputerName());
  text += Line("Login Name:", suite.Login());
  text += Line("IP Address:", facts.ip_address);
  return text + "}";
}

FrmAbout::FrmAbout(Session& session) : Form("frmAbout", session.Boxes()) {
  SetFormCaption("About " + std::string(kProgramName));
  Add(ControlKind::kLabel, "lblTitle", std::string(kProgramName) + " " + LongVersion(session.Version()));
  Add(ControlKind::kText, "txtAbout").text = AboutRtf(session);
  Add(ControlKind::kButton, "cmdOk", "&Ok");
}

void FrmAbout::OnClick(Control&) {
  Close();
}

bool FrmAbout::OnKey(std::string_view key) {
  return (key == "Esc" || key == "Enter") && Close();
}

}  // namespace tallwick
