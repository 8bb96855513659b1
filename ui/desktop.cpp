#include "ui/desktop.h"

#include <QApplication>
#include <QPrinterInfo>
#include <algorithm>

#include "shell/help.h"
#include "ui/screens.h"

namespace tallwick {
namespace {

constexpr int kLookAroundMs = 5000;

}  // namespace

Desktop::~Desktop() {
  while (!hosts_.empty())
    hosts_.pop_back();  // dialogs before the windows they stand on; all before the session
  for (const QPointer<ScreenHost>& host : closed_) delete host;
}

bool Desktop::Start(const SuiteFactory& attach) {
  application_ = StartApplication(ports_, attach, *this);
  if (!application_) return false;
  TheSession().SetPrinter(QPrinterInfo::defaultPrinterName().toStdString());
  OpenScreen(kMainScreen, {});
  // Other workstations throw the transactions switch and post, and nobody tells this one.
  connect(&look_around_, &QTimer::timeout, this, [this] {
    TheSession().NotifyChanged(SessionChange::kSwitch);
    TheSession().NotifyChanged(SessionChange::kPosted);
  });
  look_around_.start(kLookAroundMs);
  return Find(kMainScreen) != nullptr;
}

ScreenHost* Desktop::Find(std::string_view screen) const {
  // clang 14 cannot read a reversed view of the standard library at hand.
  // NOLINTNEXTLINE(modernize-loop-convert)
  for (auto host = hosts_.rbegin(); host != hosts_.rend(); ++host) {
    if ((*host)->TheForm().Name() == screen && (*host)->TheForm().IsOpen()) return host->get();
  }
  return nullptr;
}

// A screen stays with the bank it was opened for: it never stands in for the same screen of another.
ScreenHost* Desktop::FindForBank(std::string_view screen, std::string_view mode,
                                 std::string_view bank_code) const {
  const QString wanted = QString::fromUtf8(mode.data(), static_cast<qsizetype>(mode.size()));
  for (const auto& host : hosts_) {
    const Form& form = host->TheForm();
    if (form.Name() != screen || !form.IsOpen() || host->BankCode() != bank_code) continue;
    if (host->UseMode(mode) || host->Window().property("openMode").toString() == wanted) return host.get();
  }
  return nullptr;
}

void Desktop::OpenScreen(std::string_view screen, std::string_view mode) {
  const std::string bank_code = TheSession().BankCode();
  if (ScreenHost* open = FindForBank(screen, mode, bank_code)) {
    open->Window().raise();
    open->Window().activateWindow();
    return;
  }
  std::unique_ptr<Form> form = application_->Screens().Make(screen, mode);
  std::unique_ptr<QWidget> window = MakeScreenWindow(screen);
  if (!form || !window) return;
  window->setProperty("openMode", QString::fromUtf8(mode.data(), static_cast<qsizetype>(mode.size())));
  // A reader shows one topic at a time.
  if (ScreenHost* reader = Find(screen); reader != nullptr && window->property("perTopic").toBool())
    reader->Close();
  // What opens over a dialog could not be used before the dialog has closed, unless it waits itself.
  const bool modal = window->property("waits").toBool() || QApplication::activeModalWidget() != nullptr;
  if (modal) {
    window->setParent(QApplication::activeWindow(), window->windowFlags());
    window->setWindowModality(Qt::ApplicationModal);
  }
  hosts_.push_back(std::make_unique<ScreenHost>(std::move(form), std::move(window), bank_code));
  ScreenHost& host = *hosts_.back();
  connect(&host, &ScreenHost::Closed, this, [this, &host] { ScreenClosed(host); });
  connect(&host, &ScreenHost::HelpAsked, this, [this, &host] { OpenHelpOf(*this, host.TheForm().Name()); });
  modal ? host.OpenAndWait() : host.Open();
}

void Desktop::OpenItem(std::string_view screen, std::string_view mode, const std::vector<KeyText>& key) {
  OpenScreen(screen, mode);
  if (ScreenHost* host = FindForBank(screen, mode, TheSession().BankCode())) EnterTexts(host->TheForm(), key);
}

bool Desktop::Offers(std::string_view screen, std::string_view mode) const {
  return ScreenCatalogue::Knows(screen, mode) && HasScreenWindow(screen);
}

void Desktop::ScreenClosed(ScreenHost& host) {
  const bool is_main = host.TheForm().Name() == kMainScreen;
  const auto found =
      std::find_if(hosts_.begin(), hosts_.end(), [&](const auto& one) { return one.get() == &host; });
  std::erase_if(closed_, [](const auto& one) { return one.isNull(); });
  closed_.emplace_back(found->release())->deleteLater();
  hosts_.erase(found);
  TheSession().NotifyChanged(SessionChange::kScreenClosed);
  if (is_main && CloseOthers()) {
    emit Ended();
  } else if (is_main) {
    OpenScreen(kMainScreen, {});  // an entry is kept: so is the program
  }
}

bool Desktop::CloseOthers() {
  while (!hosts_.empty()) {
    if (!hosts_.back()->Close()) return false;
  }
  return true;
}

}  // namespace tallwick
