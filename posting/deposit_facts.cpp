#include "posting/deposit_facts.h"

#include <algorithm>
#include <cctype>
#include <vector>

#include "core/text.h"
#include "core/text_format.h"
#include "shell/status_style.h"
#include "tables/status_text.h"

namespace tallwick {
namespace {

constexpr int kMonths = 12;
constexpr std::size_t kShortestMonth = 3;  // "Mar"
constexpr std::size_t kYearDigits = 4;

// Of few enough digits.
int NumberOf(std::string_view digits) {
  int value = 0;
  for (char digit : digits) value = value * 10 + (digit - '0');
  return value;
}

// 1 to 12 for a month's name or its beginning; 0 for none.
int MonthOf(std::string_view word) {
  if (word.size() < kShortestMonth) return 0;
  for (int month = 1; month <= kMonths; ++month) {
    const std::string_view name = MonthName(month);
    if (EqualsIgnoreCase(name.substr(0, word.size()), word)) return month;
  }
  return 0;
}

// Runs of letters and runs of digits.
std::vector<std::string> Words(std::string_view text) {
  std::vector<std::string> words;
  char kind = ' ';
  for (char c : text) {
    const bool letter = std::isalpha(static_cast<unsigned char>(c)) != 0;
    const char now = IsDigit(c) ? 'd' : letter ? 'l' : ' ';
    if (now != ' ' && now != kind) words.emplace_back();
    if (now != ' ') words.back() += c;
    kind = now;
  }
  return words;
}

// 0, which no day has, for a year of any other length than two digits or four.
int FullYear(std::string_view digits) {
  const int year = NumberOf(digits);
  if (digits.size() == kYearDigits) return year;
  if (digits.size() != 2) return 0;
  return year < 50 ? year + 2000 : year + 1900;
}

bool IsYearFirst(const std::vector<std::string>& words) {
  return words.size() == 3 && words.front().size() == kYearDigits && IsAllDigits(words.front());
}

}  // namespace

std::string DepositDateText(std::string_view dated) {
  return FormatDate(ParseStoredDate(dated).value_or(Date{}), "mm-dd-yyyy");
}

std::string DepositName(std::string_view dated, std::string_view sequence) {
  return DepositDateText(dated) + " / " + std::string(Trim(sequence));
}

bool IsEmptyDate(std::string_view text) {
  return text.find_first_not_of(" _/,.-") == std::string_view::npos;
}

std::optional<Date> ParseFreeDate(std::string_view text, const Date& today) {
  if (const std::optional<Date> date = ParseDisplayDate(text)) return date;
  std::vector<std::string> words = Words(text);
  const bool too_long = std::any_of(words.begin(), words.end(), [](const std::string& word) {
    return IsAllDigits(word) && word.size() > kYearDigits;
  });
  if (too_long || words.size() < 2 || words.size() > 3) return std::nullopt;
  if (IsYearFirst(words)) std::rotate(words.begin(), words.begin() + 1, words.end());
  Date date{today.year, 0, 0};
  const auto named =
      std::find_if(words.begin(), words.end(), [](const std::string& word) { return MonthOf(word) != 0; });
  if (named != words.end()) {
    date.month = MonthOf(*named);
    words.erase(named);
  } else {
    if (!IsAllDigits(words.front())) return std::nullopt;
    date.month = NumberOf(words.front());
    words.erase(words.begin());
  }
  if (words.empty() || !std::all_of(words.begin(), words.end(), IsAllDigits)) return std::nullopt;
  date.day = NumberOf(words.front());
  if (words.size() == 2) date.year = FullYear(words.back());
  return IsValidDate(date) ? std::optional(date) : std::nullopt;
}

std::string StoredSequence(std::string_view typed) {
  typed = Trim(typed);
  if (typed.size() == 2 && typed.front() == '0') typed.remove_prefix(1);
  return std::string(typed);
}

int SequencesUsed::Next() const {
  int next = highest + 1;
  if (next <= kLastSequence) return next;
  for (next = 1; next <= kLastSequence && used[static_cast<std::size_t>(next)];) ++next;
  return next;
}

std::string AllSequencesUsed(std::string_view dated) {
  return "All " + std::to_string(kLastSequence) + " sequence numbers of " + DepositDateText(dated) +
         " are used.  Type another date.";
}

SequencesUsed SequencesOf(DepositTable& deposits, std::string_view dated) {
  SequencesUsed found;
  if (!deposits.Seek("DEPODATED", dated)) return found;
  for (bool on = true; on; on = deposits.Skip()) {
    clsKVRData& data = deposits.Data();
    const DataHandle table = deposits.Handle();
    if (data.GetStringFieldValueByPointer(table, deposits.Field("DEPODATED")) != dated) break;
    const std::string sequence = data.GetStringFieldValueByPointer(table, deposits.Field("DEPOSEQNC"));
    if (!IsAllDigits(sequence) || sequence.size() > 2) continue;
    const int number = NumberOf(sequence);
    found.used.set(static_cast<std::size_t>(number));
    found.highest = std::max(found.highest, number);
  }
  return found;
}

std::string LastDepositReminder(DepositTable& deposits) {
  if (!deposits.Bottom("DEPODATED")) return {};
  const DepositRecord last = deposits.Read();
  const Date date = ParseStoredDate(last.dated).value_or(Date{});
  return "\r\nLast Deposit was Posted " + FormatDate(date, "mmm dd, yyyy") + " / " + last.sequence;
}

Currency DepositTotal(const DepositRecord& deposit) {
  Currency total;
  for (const DepositItem& item : deposit.items) total += item.amount;
  return total;
}

DepositState StateOf(const DepositRecord& deposit) {
  const std::string text = DepositStatusText(deposit);
  return {text, StatusStyle(text == VoucherStatusText("C") ? "C" : "O")};
}

bool HaveSameLines(const DepositRecord& one, const DepositRecord& other) {
  return std::equal(one.items.begin(), one.items.end(), other.items.begin(),
                    [](const DepositItem& a, const DepositItem& b) {
                      return a.file_number.empty() == b.file_number.empty() && a.status == b.status &&
                             a.statement == b.statement;
                    });
}

int FirstCleared(const DepositRecord& deposit) {
  for (int item = 1; item <= kDepositItems; ++item) {
    if (deposit.items[static_cast<std::size_t>(item) - 1].status == "C") return item;
  }
  return 0;
}

}  // namespace tallwick
