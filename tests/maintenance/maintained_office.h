// An office with money in it: a bank FNB with checks, deposits, wires, vouchers and their references, a note,
// and settings files; and a progress that a test may act from.
#pragma once

#include <functional>
#include <map>
#include <memory>

#include "maintenance/work_progress.h"
#include "store/clsKVRData.h"
#include "tests/support/faulty_files.h"
#include "tests/support/office.h"

namespace tallwick::testing {

class WatchedProgress : public WorkProgress {
 public:
  void Show(std::string_view what, std::int64_t, std::int64_t) override {
    if (shown.empty() || shown.back() != what) shown.emplace_back(what);
    if (at_show) at_show(what);
  }
  void Tell(std::string_view subject, std::string_view result) override {
    told.emplace_back(std::string(subject) + ": " + std::string(result));
  }
  bool StopWanted() override { return stop_after > 0 && ++asked >= stop_after; }

  std::vector<std::string> shown;
  std::vector<std::string> told;
  std::function<void(std::string_view)> at_show;
  int stop_after = 0;  // the question that is answered with stop; 0 = none
  int asked = 0;
};

class MaintainedOffice : public Office {
 public:
  MaintainedOffice() {
    files = &faulty;
    started = Open();
    for (int i = 1; i <= 5 && started; ++i)
      started = AddCheck(std::to_string(100 + i), "24-000" + std::to_string(i));
    started = started && AddOthers();
    WriteFile("MICR_Print_FNB.dat", "NextCheckNumber=500");
    WriteFile("Inactive Banks.dat", "OLD");
    WriteFile("letter.txt", "not escrow");
    boxes.shown.clear();
  }

  bool AddCheck(const std::string& number, const std::string& file, Session* other = nullptr) {
    Session& at = other != nullptr ? *other : *session;
    BankTables bank(at.Home());
    CheckRecord check;
    check.number = number;
    check.file_number = file;
    check.payee = "SMITH TITLE CO";
    check.amount = Currency::FromCents(10000);
    check.status = "O";
    if (!bank.Open("FNB")) return false;
    int code = at.Data().BeginUnit();
    if (code == 0) code = bank.checks.Add(check, true);
    if (code == 0) code = at.Company().xrefs.Add(CheckXref(file, "FNB", number), true);
    if (code == 0) return at.Data().CommitUnit() == 0;
    at.Data().RollbackUnit();
    return false;
  }

  // Another workstation on the same data.
  StartUpOutcome Another() {
    return StartUp({other_boxes, SystemFileSystem(), clock, workstation},
                   [this] { return std::make_unique<FakeSuite>(suite); });
  }

  // Every record of every table, as text: what a person would call the data.
  std::string Picture() {
    std::string text;
    BankTables bank(session->Home());
    if (!bank.Open("FNB")) return "(the bank does not open)";
    std::vector<TableBase*> tables;
    for (TableBase* table : session->Company().All()) tables.push_back(table);
    for (TableBase* table : bank.All()) tables.push_back(table);
    for (TableBase* table : tables) {
      text += table->Name() + "\n";
      for (bool on = table->Top(""); on; on = table->Skip()) {
        const auto bytes = table->Data().RecordBytes(table->Handle());
        if (bytes.front() != '*') text += std::string(bytes.begin(), bytes.end()) + "\n";
      }
      std::vector<engine::TableProblem> problems;
      table->Data().VerifyDatabase(table->Handle(), &problems);
      for (const auto& problem : problems) text += "PROBLEM " + problem.problem + "\n";
    }
    for (const NoteRecord& note : session->Company().notes.NotesOf("24-0001")) text += note.text + "\n";
    return text;
  }

  bool Has(const std::string& name) { return SystemFileSystem().FileExists(folder.Held(name)); }

  FaultyFiles faulty;
  ScriptedBoxes other_boxes;
  bool started = false;

 private:
  bool AddOthers() {
    BankTables bank(session->Home());
    if (!bank.Open("FNB")) return false;
    XrefTable& xrefs = session->Company().xrefs;
    DepositRecord deposit;
    deposit.dated = "20240315";
    deposit.sequence = "1";
    deposit.item_count = 2;
    deposit.items[0] = {"1", "24-0001", "BUYER", Currency::FromCents(50000), {}, "O"};
    deposit.items[1] = {"2", "24-0002", "LENDER", Currency::FromCents(70000), {}, "O"};
    int code = bank.deposits.Add(deposit);
    for (int item : {1, 2}) {
      const std::string file = "24-000" + std::to_string(item);
      code += xrefs.Add(DepositItemXref(file, "FNB", "20240315", "1", item));
      code += bank.deposit_xrefs.Add({file, "20240315", "1", std::to_string(item)});
    }
    WireRecord wire;
    wire.number = "FED1";
    wire.file_number = "24-0001";
    code += bank.wires.Add(wire) + xrefs.Add(WireXref("24-0001", "FNB", "FED1"));
    VoucherRecord voucher;
    voucher.number = "7";
    voucher.file_number = "24-0001";
    code += bank.vouchers.Add(voucher) + xrefs.Add(VoucherXref("24-0001", "FNB", "7"));
    code += session->Company().notes.Save({"24-0001", "GEN", "Call the lender"});
    return code == 0;
  }
};

}  // namespace tallwick::testing
