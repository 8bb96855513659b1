#include "ui/screenshots.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTimer>
#include <deque>

#include "core/system_ports.h"
#include "print/sheet_printer.h"
#include "shell/bank_select.h"
#include "shell/machine.h"
#include "tables/bank_table.h"
#include "ui/desktop.h"
#include "ui/folder_suite.h"
#include "ui/maintenance_pictures.h"

namespace tallwick {
namespace {

// Stands still on the day that the company's data end with.
class PictureClock : public Clock {
 public:
  explicit PictureClock(const Date& today) : today_(today) {}
  DateTime Now() override { return today_.IsEmpty() ? SystemClock().Now() : DateTime{today_, 9, 30, 0}; }
  void Sleep(int milliseconds) override { SystemClock().Sleep(milliseconds); }

 private:
  Date today_;
};

// Nobody sits here to answer: questions take the answers laid out, or the safe one.
class AnsweringBoxes : public PrintedBoxes {
 public:
  std::deque<BoxAnswer> answers;

  BoxAnswer Show(const Box& box) override {
    if (IsQuestion(box) && !answers.empty()) {
      const BoxAnswer answer = answers.front();
      answers.pop_front();
      return answer;
    }
    return PrintedBoxes::Show(box);
  }
};

constexpr int kSmallest = 0;  // the "quality" of a PNG file is its size

struct TypedEntry {
  const char* control;
  const char* text;
  int index;
};
struct Entry {
  const char* control;
  const char* text;
};
constexpr Entry kEntries[] = {{"txtCheckPayee", "Lucas County Recorder"},
                              {"txtCheckAddr1", "One Government Center"},
                              {"txtCheckAddr2", "Suite 700"},
                              {"txtCheckCityState", "Toledo, OH 43604"},
                              {"txtCheckAmount", "1250"},
                              {"txtCheckFileNumber", "24-0054"},
                              {"txtCheckControl", "MARY K"}};

// The entries of the other posting screens, in the order in which they are typed.
struct Posting {
  std::string_view screen;
  const char* picture;
  std::vector<TypedEntry> entries;
};
const Posting kPostings[] = {
    {"frmEditDepositsPost",
     "deposit-posting",
     {{"txtFileNumbers", "24-0054", 1},
      {"txtSources", "MIDWEST MORTGAGE CORP", 1},
      {"txtAmounts", "184000", 1},
      {"txtFileNumbers", "24-0054", 2},
      {"txtSources", "DANA AND LEE PETERSON", 2},
      {"txtAmounts", "21350.75", 2},
      {"txtFileNumbers", "24-0061", 3},
      {"txtSources", "EARNEST MONEY", 3},
      {"txtAmounts", "5000", 3},
      {"txtFileNumbers", "24-0063", 4}}},
    {"frmEditWiresPost",
     "wire-posting",
     {{"txtWireNumber", "20240315-00417", 0},
      {"txtWirePayee", "Fifth Third Mortgage, payoff", 0},
      {"txtWireAmount", "98412.33", 0},
      {"txtWireFileNumber", "24-0054", 0},
      {"txtWireStmtPeriod", "3/15/2024", 0}}},
    {"frmEditVouchersPost",
     "voucher-posting",
     {{"txtVCHRFileNumber", "24-0054", 0},
      {"txtVCHRPayee", "Lucas County Treasurer", 0},
      {"txtVCHRReason", "Second half taxes", 0},
      {"txtVCHRAmount", "1250", 0}}},
};

class Photographer {
 public:
  Photographer(const ScreenshotOrder& order, bool dark)
      : order_(order),
        dark_(dark),
        clock_(order.today),
        desktop_({boxes_, SystemFileSystem(), clock_, SystemWorkstation(), nullptr, &SystemMachine(), nullptr,
                  nullptr, &sheets_}) {}

  int Run() {
    QDir().mkpath(order_.folder);
    if (!desktop_.Start([this] {
          return std::make_unique<FolderSuite>(
              FolderCompany{order_.data_path, order_.company_name, order_.company_number}, "PICTURES");
        }))
      return 1;
    Take("frmMainEscrowAccounting", "main-window-no-bank");
    const std::vector<BankRecord> banks = OfferedBanks(desktop_.TheSession());
    if (banks.empty() || !SelectBank(desktop_.TheSession(), banks.front().code)) return 1;
    Take("frmMainEscrowAccounting", "main-window");
    TakeDialog("frmBankSelect", "bank-select");
    TakeDialog("frmAbout", "about");
    desktop_.OpenScreen("frmHelp", "frmMainEscrowAccounting");
    Take("frmHelp", "help");
    TakeMaintenancePictures(desktop_, boxes_.answers,
                            [this](std::string_view screen, const QString& name) { Take(screen, name); });
    TakeCheckPosting();
    for (const Posting& posting : kPostings) TakePosting(posting);
    TakeDepositClearing();
    TakeReconciliation();
    TakeLedgers();
    TakeUsers();
    TakeAuditViewer();
    return failed_ ? 1 : 0;
  }

 private:
  void Settle() {
    for (int i = 0; i < 5; ++i) QApplication::processEvents(QEventLoop::AllEvents, 20);
  }

  // Null, and the run has failed, where the screen does not stand.
  ScreenHost* FindHost(std::string_view screen) {
    ScreenHost* host = desktop_.Find(screen);
    failed_ = failed_ || host == nullptr;
    return host;
  }
  ScreenHost* OpenHost(std::string_view screen, std::string_view mode = {}) {
    desktop_.OpenScreen(screen, mode);
    return FindHost(screen);
  }

  void Take(std::string_view screen, const QString& name) {
    Settle();
    ScreenHost* host = FindHost(screen);
    if (host == nullptr) return;
    host->Window().activateWindow();
    Settle();
    const QImage picture = host->Window().grab().toImage().convertToFormat(QImage::Format_RGB888);
    const QString scale = picture.devicePixelRatio() > 1 ? "-200" : "";
    const QString path = QDir(order_.folder).filePath(name + (dark_ ? "-dark" : "") + scale + ".png");
    failed_ = !picture.save(path, "PNG", kSmallest) || failed_;
  }

  // A dialog waits for its answer, so it is photographed from within.
  void TakeDialog(std::string_view screen, const QString& name) {
    QTimer::singleShot(200, &desktop_, [this, screen, name] {
      Take(screen, name);
      if (ScreenHost* host = desktop_.Find(screen)) host->Close();
    });
    desktop_.OpenScreen(screen, {});
  }

  void TakePosting(const Posting& posting) {
    ScreenHost* host = OpenHost(posting.screen, "Posting");
    if (host == nullptr) return;
    for (const TypedEntry& entry : posting.entries) {
      host->TheForm().Enter(entry.control, entry.index);
      host->TheForm().Change(entry.control, entry.text, entry.index);
    }
    Take(posting.screen, posting.picture);
  }

  void TakeDepositClearing() {
    ScreenHost* host = OpenHost("frmEditDepositsClear", "Clearing");
    if (host == nullptr) return;
    host->TheForm().Choose("lstDepositDates", 1);
    host->TheForm().SetCheck("chkCleared", 1, 1);
    Take("frmEditDepositsClear", "deposit-clearing");
  }

  void TakeCheckPosting() {
    ScreenHost* host = OpenHost("frmEditChecksPost", "Posting");
    if (host == nullptr) return;
    Take("frmEditChecksPost", "check-posting-empty");
    Form& form = host->TheForm();
    TakeCheckVoiding(*host);
    for (const Entry& entry : kEntries) {
      form.Enter(entry.control);
      form.Change(entry.control, entry.text);
    }
    if (auto* field = host->Window().findChild<QLineEdit*>("txtCheckVoucherNumber"))
      field->setFocus(Qt::TabFocusReason);
    Take("frmEditChecksPost", "check-posting");
    form.Change("txtCheckFileNumber", "");
    form.Click("cmdOk");
    Take("frmEditChecksPost", "check-posting-refused");
    form.Click("cmdRolodex");
    Take("frmEditChecksPost", "check-payees");
    form.Enter("txtCheckFileNumber");
    form.Key("F4");
    Take("frmEditChecksPost", "check-files");
    TakePrintChecks(*form.Find("lstCheckNumbers")->source);
  }

  void TakePrintChecks(RowSource& posted) {
    if (posted.RowCount() == 0) return;
    const std::string first = posted.Row(std::min<std::size_t>(posted.RowCount(), 12) - 1).front();
    const std::string numbers = first + "-" + posted.Row(0).front();
    QTimer::singleShot(200, &desktop_, [this, numbers] {
      ScreenHost* host = FindHost("frmPrintChecks");
      if (host == nullptr) return;
      host->TheForm().Enter("txtNumbers");
      host->TheForm().Change("txtNumbers", numbers);
      host->TheForm().Key("Enter");
      Take("frmPrintChecks", "print-checks");
      host->Close();
    });
    desktop_.OpenScreen("frmPrintChecks", {});
  }

  void TakeCheckVoiding(ScreenHost& host) {
    Form& form = host.TheForm();
    form.Choose("lstCheckNumbers", 1);
    host.UseMode("Voiding");
    form.Change("txtCheckReason", "Lost in the mail");
    Take("frmEditChecksPost", "check-voiding");
    form.Change("txtCheckReason", "");
    host.UseMode("Posting");
    form.Menu("mnuEditUseNextHigherCheckNumber");
  }

  // The statement of the month behind the last reconciliation, with the balance that agrees.
  void TakeReconciliation() {
    ScreenHost* host = OpenHost("frmReconcileAccount");
    if (host == nullptr) return;
    Form& form = host->TheForm();
    form.Click("cmdCompute");
    const auto amount = [&](const char* control) {
      return Currency::ParseTyped(form.Find(control)->text).value_or(Currency());
    };
    const Currency agreeing = amount("txtEndingCheckBookBalance") - amount("txtAdjustedBalance");
    form.Change("txtBankStatementBalance", agreeing.ToText());
    form.Click("cmdCompute");
    form.Click("cmdOutstandingChecks");
    Take("frmReconcileAccount", "reconciliation");
  }

  void TakeLedgers() {
    desktop_.OpenScreen("frmViewFileLedgers", "24-0025");
    Take("frmViewFileLedgers", "file-ledger");
    ScreenHost* host = OpenHost("frmViewTrialBalance");
    if (host == nullptr) return;
    host->TheForm().Choose("lstKinds", 2);
    host->TheForm().Click("cmdCompute");
    Take("frmViewTrialBalance", "trial-balance");
  }

  void TakeUsers() {
    ScreenHost* host = OpenHost("frmEditUsers");
    if (host == nullptr) return;
    if (host->TheForm().Find("lstUsers")->rows.size() >= 3) host->TheForm().Choose("lstUsers", 3);
    Take("frmEditUsers", "users");
  }

  void TakeAuditViewer() {
    ScreenHost* host = OpenHost("frmViewLog");
    if (host == nullptr) return;
    Form& form = host->TheForm();
    form.SetCheck("optOrder", 1, 2);
    Take("frmViewLog", "audit-viewer");
    form.Change("cboLogin", "davis");
    form.Mark("lstTXCode", 4, true);
    form.Mark("lstEntries", 6, true);
    form.Click("cmdSearch");
    Take("frmViewLog", "audit-viewer-search");
  }

  const ScreenshotOrder& order_;
  const bool dark_;
  bool failed_ = false;
  PictureClock clock_;
  AnsweringBoxes boxes_;
  QtSheetPrinter sheets_{boxes_};
  Desktop desktop_;
};

}  // namespace

int TakeScreenshots(const ScreenshotOrder& order, bool dark) {
  return Photographer(order, dark).Run();
}

int TakeAllScreenshots(const QStringList& arguments) {
  for (const char* scale : {"1", "2"}) {
    for (const char* scheme : {"--light", "--dark"}) {
      QProcess process;
      QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
      environment.insert("QT_SCALE_FACTOR", scale);
      process.setProcessEnvironment(environment);
      process.setProcessChannelMode(QProcess::ForwardedChannels);
      process.start(QCoreApplication::applicationFilePath(), arguments + QStringList{scheme});
      if (!process.waitForFinished(-1) || process.exitCode() != 0) return 1;
    }
  }
  return 0;
}

}  // namespace tallwick
