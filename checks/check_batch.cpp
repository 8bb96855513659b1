#include "checks/check_batch.h"

#include <set>
#include <utility>

#include "checks/check_sheet.h"
#include "core/text.h"
#include "posting/check_numbering.h"

namespace tallwick {
namespace {

constexpr long long kMostOfRange = 1000;

class Collector {
 public:
  Collector(BankTables& tables, std::string_view advice) : tables_(tables), advice_(advice) {}

  void Take(const std::string& text) {
    const std::size_t dash = text.find('-');
    if (dash == std::string::npos) return TakeOne(std::string(Trim(text)));
    const auto first = NumberValue(Trim(text.substr(0, dash)));
    const auto last = NumberValue(Trim(text.substr(dash + 1)));
    if (!first || !last || *last < *first || *last - *first >= kMostOfRange) {
      batch.problem = Quoted(text) + " is no range of at most " + std::to_string(kMostOfRange) +
                      " check numbers, such as 10452-10460.";
      return;
    }
    bool found = false;
    long long left_out = 0;  // numbers on end, up to the one at hand
    for (long long number = *first; number <= *last; ++number) {
      if (tables_.checks.SeekNumber(std::to_string(number)) && StatusProblem(tables_.checks.Read()).empty()) {
        LeaveOut(number, std::exchange(left_out, 0));
        TakeFound();
        found = true;
      } else {
        ++left_out;
      }
    }
    LeaveOut(*last + 1, left_out);
    if (!found) batch.problem = "No outstanding check has a number of " + text + ".";
  }

  CheckBatch batch;

 private:
  void TakeOne(const std::string& number) {
    if (!tables_.checks.SeekNumber(number)) {
      batch.problem = "Check " + number + " is not posted.  Post it first.";
      return;
    }
    const CheckRecord check = tables_.checks.Read();
    batch.problem = StatusProblem(check);
    if (batch.problem.empty()) TakeFound();
  }

  // The `count` numbers before `number`.
  void LeaveOut(long long number, long long count) {
    if (count == 0) return;
    batch.left_out.push_back(std::to_string(number - count) +
                             (count == 1 ? "" : "-" + std::to_string(number - 1)));
  }

  // A check that is named twice is printed once.
  void TakeFound() {
    const CheckRecord check = tables_.checks.Read();
    if (!taken_.insert(check.number).second) return;
    std::string advice = advice_;
    if (advice.empty() && !check.voucher_number.empty() && tables_.vouchers.SeekNumber(check.voucher_number))
      advice = tables_.vouchers.Read().reason;
    batch.checks.push_back(MakeCheckOnPaper(check, advice));
  }

  BankTables& tables_;
  const std::string advice_;
  std::set<std::string> taken_;
};

}  // namespace

CheckBatch CollectChecks(BankTables& tables, std::span<const std::string> numbers, std::string_view advice) {
  Collector collector(tables, advice);
  for (const std::string& text : numbers) {
    if (collector.batch.problem.empty()) collector.Take(text);
  }
  return collector.batch;
}

std::string LeftOutText(const CheckBatch& batch) {
  if (batch.left_out.empty()) return {};
  std::string numbers;
  for (const std::string& one : batch.left_out) numbers += (numbers.empty() ? "" : ", ") + one;
  return "Left out, since no check to be printed has the number: " + numbers + ".";
}

bool AgreesToPrint(const CheckBatch& batch, MessageBoxes& boxes, std::string_view title) {
  if (const std::string text = LeftOutText(batch); !text.empty()) boxes.Inform(title, text);
  for (const CheckOnPaper& paper : batch.checks) {
    const std::string name = "Check " + paper.check.number + "\r\n";
    if (paper.check.amount.IsZero() &&
        boxes.Show({BoxIcon::kQuestion, std::string(title), name + "Check Amount is Zero...  Print ?",
                    BoxButtons::kYesNo, BoxAnswer::kNo}) != BoxAnswer::kYes) {
      return false;
    }
    if (Trim(paper.check.payee).empty()) boxes.Exclaim(title, name + "WARNING - Payee name is blank...");
  }
  return true;
}

}  // namespace tallwick
