// The lines of the deposit screen: their texts and totals, moving them up, cutting and pasting.
#include <algorithm>

#include "audit/audit_trail.h"
#include "posting/deposit_facts.h"
#include "posting/deposit_posting.h"
#include "posting/post_deposit.h"
#include "shell/company_tables.h"
#include "tables/status_text.h"

namespace tallwick {

DepositRow FrmEditDepositsPost::RowAt(int row) {
  const auto typed = [&](std::string_view control) { return std::string(Trim(Text(control, row))); };
  return {row, typed("txtFileNumbers"), typed("txtSources"), typed("txtAmounts"),
          At("chkWireIn", row).value == 1};
}

std::vector<DepositRow> FrmEditDepositsPost::Rows() {
  std::vector<DepositRow> rows;
  for (int row = 1; row <= kDepositItems; ++row) rows.push_back(RowAt(row));
  return rows;
}

void FrmEditDepositsPost::PutRow(const DepositRow& values, int row) {
  SetText("txtFileNumbers", values.file_number, row);
  SetText("txtSources", values.source, row);
  SetText("txtAmounts", values.amount, row);
  SetValue("chkWireIn", values.wire_in ? 1 : 0, row);
}

void FrmEditDepositsPost::ClearRow(int row) {
  PutRow({}, row);
  origin_[static_cast<std::size_t>(row)] = {};
}

// Lines in use stand on the first places, as they are stored.
void FrmEditDepositsPost::CloseGaps() {
  int to = 1;
  for (int row = 1; row <= kDepositItems; ++row) {
    const DepositRow values = RowAt(row);
    if (!values.IsUsed()) {
      ClearRow(row);
      continue;
    }
    if (to != row) {
      const Origin origin = origin_[static_cast<std::size_t>(row)];
      ClearRow(row);
      PutRow(values, to);
      origin_[static_cast<std::size_t>(to)] = origin;
    }
    ++to;
  }
  ShowRows();
}

// What stands beside the lines. The amount of a line that has cleared stays what the bank has cleared.
void FrmEditDepositsPost::ShowRows() {
  for (int row = 1; row <= kDepositItems; ++row) {
    const int item = ItemOf(row);
    const bool posted = loaded_ && item != 0;
    const std::string status =
        posted ? loaded_->items[static_cast<std::size_t>(item) - 1].status : std::string();
    SetCaption("lblItemStatus", posted ? VoucherStatusText(status) : "", row);
    SetEnabled("txtAmounts", status != "C", row);
  }
  ShowTotals();
  if (viewing_) CloseEntries();
}

// Who only looks changes nothing.
void FrmEditDepositsPost::CloseEntries() {
  for (const Control& control : Controls()) {
    if (IsEntry(control)) SetEnabled(control.name, false, control.index);
  }
  for (std::string_view command :
       {"cmdOk", "mnuEditUseTodaysDateandNextSequence", "mnuEditInsertCurrentFile", "mnuEditCutLineItems"}) {
    SetEnabled(command, false);
  }
}

void FrmEditDepositsPost::ShowTotals() {
  Currency total;
  int lines = 0;
  for (int row = 1; row <= kDepositItems; ++row) {
    const std::string& typed = Text("txtAmounts", row);
    if (Trim(typed).empty()) continue;
    total += Currency::ParseTyped(typed).value_or(Currency());
    ++lines;
  }
  SetCaption("lblDepositTotal", AmountText(total));
  SetCaption("lblItemCount", std::to_string(lines) + (lines == 1 ? " item" : " items"));
  SetEnabled("mnuEditCutLineItems", lines > 0 && !viewing_);
}

// Deleting the file number of a posted line deletes the line.
void FrmEditDepositsPost::LeaveFileNumber(int row) {
  const std::string typed(Trim(Text("txtFileNumbers", row)));
  SetText("txtFileNumbers", typed, row);
  const int item = ItemOf(row);
  if (!typed.empty() || item == 0 || !loaded_) return;
  const DepositItem& posted = loaded_->items[static_cast<std::size_t>(item) - 1];
  if (posted.status == "C") {
    SetText("txtFileNumbers", posted.file_number, row);
    return Boxes().Critical(Caption(), "Line " + std::to_string(row) + " has cleared in " +
                                           ShortForm(posted.statement) +
                                           " and can not be deleted.  Set it outstanding first.");
  }
  const BoxAnswer answer =
      Boxes().Show({BoxIcon::kQuestion, Caption(), "Delete Line " + std::to_string(row) + " ?",
                    BoxButtons::kYesNo, BoxAnswer::kNo});
  if (answer != BoxAnswer::kYes) return SetText("txtFileNumbers", posted.file_number, row);
  ClearRow(row);
  ShowRows();
}

// The current file is the one that was entered last above the line, else in any line.
void FrmEditDepositsPost::InsertCurrentFile() {
  const auto is_given = [this](int row) { return !Trim(Text("txtFileNumbers", row)).empty(); };
  int from = current_row_ - 1;
  while (from > 0 && !is_given(from)) --from;
  if (from == 0) from = kDepositItems;
  while (from > current_row_ && !is_given(from)) --from;
  if (from != current_row_) SetText("txtFileNumbers", Text("txtFileNumbers", from), current_row_);
  SetFocus("txtFileNumbers", current_row_);
}

// --- Cut and paste ---

bool FrmEditDepositsPost::MayGiveUpBuffer() {
  const std::string question = Quoted("Clear Paste Buffers") + " means data from last " +
                               Quoted("Cut Line Items") + " will be lost.  Proceed?";
  return Boxes().Show({BoxIcon::kQuestion, Caption(), question, BoxButtons::kYesNo, BoxAnswer::kNo}) ==
         BoxAnswer::kYes;
}

bool FrmEditDepositsPost::GiveUpBuffer() {
  if (!MayGiveUpBuffer()) return false;
  buffer_.clear();
  for (Origin& origin : origin_) origin.cut = 0;
  ShowState();
  return true;
}

// Lines that were pasted and taken out again before the post stay.
void FrmEditDepositsPost::TakePostedFromBuffer() {
  std::vector<DepositRow> left;
  for (std::size_t line = 0; line < buffer_.size(); ++line) {
    const bool posted = std::any_of(origin_.begin(), origin_.end(), [&](const Origin& origin) {
      return static_cast<std::size_t>(origin.cut) == line + 1;
    });
    if (!posted) left.push_back(buffer_[line]);
  }
  buffer_ = std::move(left);
}

bool FrmEditDepositsPost::ShowsWhatIsStored() {
  if (!loaded_ || !IsChanged()) return true;
  const DepositRecord shown = *loaded_;
  if (!MayDropChanges(UnsavedQuestion())) return false;
  OpenDeposit(shown.dated, shown.sequence);
  return loaded_.has_value();
}

// What is cut is what is stored, not what is typed over it.
void FrmEditDepositsPost::CutRows() {
  if (!ShowsWhatIsStored()) return;
  if (const int cleared = loaded_ ? FirstCleared(*loaded_) : 0; cleared != 0) {
    return Boxes().Critical(Caption(), "Line " + std::to_string(cleared) +
                                           " has cleared and can not be cut.  Set it outstanding first.");
  }
  const std::string question =
      Quoted("Cut Line Items") +
      " will remove transactions from this deposit.   It is used to quickly clear all lines and in "
      "preparation for a " +
      Quoted("Paste") + " operation to a different date and sequence number.  Proceed?";
  const BoxAnswer answer =
      Boxes().Show({BoxIcon::kQuestion, Caption(), question, BoxButtons::kYesNo, BoxAnswer::kNo});
  if (answer != BoxAnswer::kYes) return;
  if (!buffer_.empty() && !MayGiveUpBuffer()) return;
  std::vector<DepositRow> rows = Rows();
  std::erase_if(rows, [](const DepositRow& row) { return !row.IsUsed(); });
  if (loaded_ && !(MayWrite() && MayChangeReconciled() && RemovePosted())) return;
  buffer_ = std::move(rows);
  pasted_ = false;
  for (int row = 1; row <= kDepositItems; ++row) ClearRow(row);
  ShowState();
  KeepState();
}

void FrmEditDepositsPost::PasteRows() {
  if (loaded_) {
    return Boxes().Critical(Caption(), "Can not " + Quoted("Paste") +
                                           " to a date and sequence that has transactions already posted...");
  }
  if (pasted_) return;  // once is enough: the lines are here
  CloseGaps();
  int row = 1;
  while (row <= kDepositItems && RowAt(row).IsUsed()) ++row;
  const auto room = static_cast<std::size_t>(kDepositItems + 1 - row);
  if (buffer_.size() > room) {
    return Boxes().Critical(Caption(), std::to_string(buffer_.size()) + " lines were cut, and " +
                                           std::to_string(room) +
                                           " are free here.  Paste them into an empty deposit.");
  }
  for (int line = 1; line <= static_cast<int>(buffer_.size()); ++line, ++row) {
    PutRow(buffer_[static_cast<std::size_t>(line) - 1], row);
    origin_[static_cast<std::size_t>(row)] = {0, line};
  }
  pasted_ = true;
  ShowState();
}

}  // namespace tallwick
