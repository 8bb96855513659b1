#include "cli/office.h"

#include <algorithm>

#include "cli/pdf_module.h"
#include "core/system_ports.h"
#include "core/text.h"
#include "shell/bank_select.h"
#include "shell/clsSecurity.h"
#include "shell/company_tables.h"
#include "shell/lost_table.h"
#include "shell/rights.h"
#include "shell/start_up.h"
#include "tables/bank_table.h"
#include "tables/bank_tables.h"

namespace tallwick::cli {

Office::Office(GlobalOptions& options, CommandLineBoxes& boxes, Output& out)
    : options_(options),
      boxes_(boxes),
      out_(out),
      files_(SystemFileSystem()),
      clock_(SystemClock()),
      workstation_(SystemWorkstation(), options.computer) {
  clock_.Hold(options.today, options.time);
}

Office::~Office() = default;

clsKVRData* Office::Store() {
  if (!store_) {
    store_ =
        std::make_unique<clsKVRData>(StorePorts{clock_, workstation_, files_, boxes_, engine::SystemFiles()});
    if (!store_->InitializeCodebase()) store_.reset();
  }
  if (!store_) Refused("The record engine did not start", kNoTables);
  return store_.get();
}

Session* Office::Refused(std::string_view why, int status) {
  out_.Fail(why);
  status_ = status;
  return nullptr;
}

bool Office::HasDataOption() {
  if (options_.data.empty()) Refused("This command needs --data DIR, the company's data folder", kWrongUsage);
  return !options_.data.empty();
}

std::optional<TableHome> Office::Tables() {
  if (!HasDataOption()) return std::nullopt;
  const std::string folder = WithBackslash(CommandLineSuite(options_, files_).DataPath());
  if (std::string problem = DataPathProblem(files_, folder); !problem.empty()) {
    std::replace(problem.begin(), problem.end(), '\r', ' ');
    Refused(problem, kNoTables);
    return std::nullopt;
  }
  if (Store() == nullptr) return std::nullopt;
  const TableHome home{*store_, files_, boxes_, folder};
  if (!files_.FileExists(folder + std::string(kBankLayout.name) + ".DBF")) {
    const std::string why = WhyLost(home, kBankLayout.name);
    Refused(why.empty() ? "There is no company in " + options_.data
                        : std::string(kBankLayout.name) + " is missing in " + options_.data + ", but " + why +
                              ".  Restore it from a copy",
            kNoTables);
    return std::nullopt;
  }
  return MayEnter(folder) ? std::optional(home) : std::nullopt;
}

bool Office::MayEnter(const std::string& folder) {
  std::string holder;
  if (Store() == nullptr || store_->MayEnter(folder, &holder) != engine::kErrorOpenRefused) return true;
  Refused(std::string(kExclusiveText) + "  " + (holder.empty() ? "Another workstation" : holder) +
              " has the files for maintenance, or restores them.",
          kNoTables);
  return false;
}

bool Office::MakeDataFolder() {
  if (!HasDataOption()) return false;
  const std::string folder = CommandLineSuite(options_, files_).DataPath();
  if (files_.CreateFolder(folder)) return true;
  Refused("The folder " + options_.data + " cannot be made.  Make sure that you may write there", kNoTables);
  return false;
}

Session* Office::Open() {
  if (application_) return &application_->TheSession();
  if (!HasDataOption()) return nullptr;
  StartUpOutcome outcome =
      StartUpOrUpdate(ThePorts(), [this] { return std::make_unique<CommandLineSuite>(options_, files_); });
  if (outcome.result == StartUpResult::kExclusive && !MayEnter(CommandLineSuite(options_, files_).DataPath()))
    return nullptr;
  if (!outcome.session) {
    const std::string held =
        outcome.result == StartUpResult::kExclusive ? ": " + std::string(kTableIsHeld) : "";
    return Refused("The company in " + options_.data + " could not be opened" + held, kNoTables);
  }
  made_tables_ = std::move(outcome.made_tables);
  application_ = std::make_unique<Application>(std::move(outcome.session), opener_);
  return &application_->TheSession();
}

bool Office::Granted(int right) {
  if (!options_.security) return true;
  const std::optional<TableHome> home = Tables();
  if (!home) return false;
  if (const std::string problem = clsSecurity::UsersProblem(*home); !problem.empty()) {
    Refused(problem, kNoTables);
    return false;
  }
  const std::optional<clsSecurity> user = clsSecurity::GetUserSecurity(*home, options_.user);
  if (user && user->MayUse(right)) return true;
  Refused(kCommandNotGranted, kRefused);
  return false;
}

Session* Office::OpenBank() {
  Session* session = Open();
  if (session == nullptr || !session->BankCode().empty()) return session;
  if (options_.bank.empty()) return Refused("This command needs --bank CODE", kWrongUsage);
  for (const BankRecord& bank : OfferedBanks(*session)) {
    if (!EqualsIgnoreCase(Trim(bank.code), Trim(options_.bank))) continue;
    session->SetBank(bank.code, bank.name);
    return session;
  }
  return Refused("There is no bank " + Quoted(options_.bank) + " that this user may work with", kRefused);
}

bool Office::BankTablesAreThere() {
  BankTables tables(application_->TheSession().Home());
  const std::array<TableBase*, 5> all = tables.All();
  return std::all_of(all.begin(), all.end(), [this](TableBase* table) {
    return table->Exists(application_->TheSession().BankCode());
  });
}

std::unique_ptr<Form> Office::MakeScreen(std::string_view screen, std::string_view mode) {
  std::unique_ptr<Form> form = Screens().Make(screen, mode);
  if (form) return form;
  const bool opened = application_->TheSession().Data().OpenErrorCode() == 0 && BankTablesAreThere();
  status_ = opened ? kRefused : kNoTables;
  return nullptr;
}

std::optional<std::int32_t> Office::BankAccountingDay() {
  Session* session = OpenBank();
  if (session == nullptr) return std::nullopt;
  const std::optional<BankRecord> bank = session->Company().banks.Find(session->BankCode());
  if (!bank) Refused("The bank " + Quoted(session->BankCode()) + " is gone", kRefused);
  return bank ? std::optional(bank->accounting.day) : std::nullopt;
}

bool Office::PrintInto(const std::string& path) {
  const SheetPrinterMaker make = LoadSheetPrinterMaker();
  if (make != nullptr) sheets_.reset(make(path.c_str(), &boxes_));
  if (sheets_ == nullptr) Refused(std::string(kNoPrintModule) + "  Print from the desktop", kRefused);
  return sheets_ != nullptr;
}

void Office::ReloadUser() {
  if (application_) application_->TheSession().ReloadUser();
}

}  // namespace tallwick::cli
