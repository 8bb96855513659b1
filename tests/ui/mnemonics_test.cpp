// Letters that Alt, or a menu that is open, takes for a command: one that stands for two does neither.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <map>

#include "tests/support/desktop_test.h"
#include "ui/form_binder.h"
#include "ui/screens.h"

namespace tallwick {
namespace {

// The texts by their letter; those without one are left out.
using Letters = std::multimap<QString, QString>;

void AddLetter(Letters& letters, const QString& text) {
  const QString letter = QKeySequence::mnemonic(text).toString();
  if (!letter.isEmpty()) letters.emplace(letter, text);
}

void ExpectOneEach(const Letters& letters, std::string_view where) {
  for (const auto& [letter, text] : letters) {
    EXPECT_EQ(letters.count(letter), 1U)
        << where << ": " << letter.toStdString() << " is " << text.toStdString();
  }
}

Letters LettersOf(const QList<QAction*>& actions) {
  Letters letters;
  for (const QAction* action : actions) {
    if (action->isVisible() && !action->isSeparator()) AddLetter(letters, action->text());
  }
  return letters;
}

// What Alt reaches in the window itself.
Letters LettersOf(const QWidget& window) {
  Letters letters;
  if (const auto* bar = window.findChild<QMenuBar*>()) letters = LettersOf(bar->actions());
  for (const QLabel* label : window.findChildren<QLabel*>()) {
    if (label->buddy() != nullptr && label->isVisibleTo(&window)) AddLetter(letters, label->text());
  }
  for (const QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
    // The choices of a list have one letter together.
    const bool lists = button->text().startsWith("&List ");
    if (button->isVisibleTo(&window) && !lists) AddLetter(letters, button->text());
  }
  return letters;
}

using MnemonicsTest = testing::DesktopTest;

TEST_F(MnemonicsTest, NoTwoCommandsOfAMenuOrScreenShareALetter) {
  testing::Office& office = office_;
  ScreenCatalogue catalogue(desktop_->TheSession(), office);
  int menus = 0;
  for (std::string_view screen : ScreenCatalogue::Names()) {
    std::vector<std::string_view> modes = ScreenCatalogue::Modes(screen);
    if (modes.empty()) modes.emplace_back();
    for (std::string_view mode : modes) {
      const std::unique_ptr<Form> form = catalogue.Make(screen, mode);
      const std::unique_ptr<QWidget> window = MakeScreenWindow(screen);
      ASSERT_TRUE(form && window) << screen << " " << mode;
      const FormBinder binder(*form, *window);
      ExpectOneEach(LettersOf(*window), screen);
      for (const QMenu* menu : window->findChildren<QMenu*>()) {
        ExpectOneEach(LettersOf(menu->actions()), screen);
        ++menus;
      }
    }
  }
  EXPECT_GT(menus, 20);
}

TEST_F(MnemonicsTest, AltReachesEveryFieldOfAPostingScreen) {
  for (const auto& [screen, modes] :
       {std::pair("frmEditChecksPost", std::vector{"Posting", "Voiding", "Clearing"}),
        std::pair("frmEditDepositsPost", std::vector{"Posting"}),
        std::pair("frmEditDepositsClear", std::vector{"Clearing"}),
        std::pair("frmEditWiresPost", std::vector{"Posting"}),
        std::pair("frmEditVouchersPost", std::vector{"Posting"})}) {
    for (const char* mode : modes) {
      Open(screen, mode);
      ExpectOneEach(LettersOf(Window(screen)), screen);
    }
  }
}

}  // namespace
}  // namespace tallwick
