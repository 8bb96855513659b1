// Help: the suite's six help books by their numbers, and the escrow book's pages, which are HTML files beside
// the program.
//
// frmHelp, the book's reader: lstTopics, txtKeyword, cmdFind, txtPage (the page's HTML; setting it to a
// page's file name goes there), cmdClose.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/form.h"
#include "shell/session.h"

namespace tallwick {

inline constexpr int kHelpBooks = 6;
inline constexpr int kEscrowHelpBook = 2;

// The platform help viewer's commands.
enum class HelpCommand { kContents = 1, kIndex = 2, kSearch = 3, kKeyword = 13, kContext = 15 };

struct HelpRequest {
  HelpCommand command = HelpCommand::kContents;
  int context = 0;      // of kContext
  std::string keyword;  // of kKeyword
};

// The port to the platform's viewer of help files.
class HelpViewer {
 public:
  virtual ~HelpViewer() = default;
  // False when the file could not be shown.
  virtual bool Show(std::string_view file, const HelpRequest& request) = 0;
};

// Path of help book 1 to 6 in the application path; "" for another number.
std::string HelpFile(std::string_view application_path, int book);

// Opens a book. The escrow book opens in frmHelp; another in the platform's viewer, or a critical message
// names the file that is missing.
void OpenHelp(Session& session, ScreenOpener& opener, int book, const HelpRequest& request);
// The escrow book at the page of a screen.
void OpenHelpOf(ScreenOpener& opener, std::string_view screen);

struct HelpPage {
  std::string_view file;  // "bank-selection.html"
  std::string_view title;
  int context;
  std::string_view screens;   // names, separated by blanks
  std::string_view keywords;  // separated by "|"
};

// The first page is the book's contents.
std::vector<HelpPage> HelpPages();
// Folder of the pages, ending with "\"; "" when the book is nowhere to be found.
std::string HelpFolder(const Session& session);

class FrmHelp : public Form {
 public:
  // `topic`: a screen's name, "context:" and a number, "keyword:" and a word, "index", a page's file name;
  // anything else opens the contents.
  FrmHelp(Session& session, std::string_view topic);

 protected:
  void OnOpen() override;
  void OnChoose(Control& control) override;
  void OnChange(Control& control) override;
  void OnClick(Control& control) override;
  bool OnKey(std::string_view key) override;

 private:
  void Show(const HelpPage& page);
  void FindKeyword();
  const HelpPage* PageOfTopic(std::string_view topic) const;

  Session& session_;
  std::string topic_;
  std::vector<HelpPage> pages_;
};

}  // namespace tallwick
