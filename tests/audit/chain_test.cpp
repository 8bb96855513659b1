// The log's companion: what was changed, removed or put in shows; what a crash or another program leaves does
// not look like that.

#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audit/audit_chain.h"
#include "audit/audit_log.h"
#include "audit/audit_proof.h"
#include "audit/audit_trail.h"
#include "audit/bank_proof.h"
#include "core/text.h"
#include "tests/support/faulty_files.h"
#include "tests/support/office.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::Office;

class EmptyForm : public Form {
 public:
  explicit EmptyForm(MessageBoxes& boxes) : Form("frmEmpty", boxes) {}
};

class ChainTest : public ::testing::Test {
 public:  // for the table of what is done to the files
  void Write(const std::string& reference) {
    EmptyForm form(office_.boxes);
    WriteAuditTrail({true, SystemFileSystem(), office_.clock, office_.folder.Held(), "FNB", "jdoe", "DESK 1"},
                    form, kAuditAdd, kAuditPostCheck, reference);
  }
  void WriteThree() {
    for (const char* reference : {"1001", "1002", "1003"}) Write(reference);
  }
  AuditProof Prove(std::string_view seal = {}) {
    return ProveAuditLog(
        {SystemFileSystem(), engine::SystemFiles(), office_.clock, office_.folder.Held(kLog)}, seal);
  }
  std::string Log() { return office_.ReadFile(kLog); }
  std::string Chain() { return office_.ReadFile(kChain); }
  // Puts `with` in place of the first `what`; what is not there fails the test.
  void Replace(std::string_view file, const std::string& what, const std::string& with) {
    std::string text = office_.ReadFile(file);
    const std::size_t place = text.find(what);
    ASSERT_NE(place, std::string::npos) << what;
    office_.WriteFile(file, text.replace(place, what.size(), with));
  }
  static std::string Line(const std::string& text, int number) {
    return Split(text, '\n')[static_cast<std::size_t>(number) - 1] + "\n";
  }
  std::string Entry(const std::string& reference) {
    return "\r\n[DATE: Mar 15, 2024 @ 09:30:00 AM][TX: Post Check][REFERENCE: " + reference +
           "][LOGIN: jdoe][COMPUTER: DESK 1]\r\n[ADD] " + reference + "\r\n";
  }

  static constexpr std::string_view kLog = "Logs\\FNB\\Audit_Trail.log";
  static constexpr std::string_view kChain = "Logs\\FNB\\Audit_Trail.chain";
  Office office_;
};

TEST_F(ChainTest, AnUntouchedLogIsProven) {
  EXPECT_THAT(Prove().notes, ElementsAre("There is no audit log yet."));
  WriteThree();
  EXPECT_EQ(Log(), Entry("1001").substr(2) + Entry("1002") + Entry("1003"));
  const AuditProof proof = Prove();
  EXPECT_TRUE(proof.proven);
  EXPECT_EQ(proof.records, 3);
  EXPECT_EQ(ProofSummary(proof), "Proven: no line was changed or removed since Mar 15, 2024 @ 09:30:00 AM.");
  EXPECT_THAT(proof.notes, IsEmpty());
  // What a proof gave is found again when the log has gone on.
  Write("1004");
  EXPECT_TRUE(Prove(ToLower(proof.seal)).proven);
}

// Files that another program holds are no reason to believe that there never was a log.
TEST_F(ChainTest, WhatCannotBeReadIsNotProven) {
  WriteThree();
  testing::FaultyFiles files;
  for (const std::string_view held : {kLog, kChain, std::string_view()}) {
    files.unreadable = [held](std::string_view path) { return path.ends_with(held); };
    const AuditProof proof =
        ProveAuditLog({files, engine::SystemFiles(), office_.clock, office_.folder.Held(kLog)}, {});
    EXPECT_FALSE(proof.proven);
    EXPECT_THAT(proof.problems, ElementsAre(HasSubstr("cannot be read")));
  }
}

TEST_F(ChainTest, EveryTamperingShowsAndIsNamed) {
  struct Case {
    const char* name;
    std::function<void(ChainTest&)> tamper;
    const char* problem;
  };
  const Case cases[] = {
      {"changed", [](ChainTest& t) { t.Replace(kLog, "[ADD] 1002", "[ADD] 1009"); }, "(line 4 of the log"},
      {"first changed", [](ChainTest& t) { t.Replace(kLog, "jdoe", "jane"); }, "(line 1 of the log"},
      {"entry removed", [](ChainTest& t) { t.Replace(kLog, t.Entry("1002"), ""); }, "(line 4 of the log"},
      {"first entry removed", [](ChainTest& t) { t.Replace(kLog, t.Entry("1001").substr(2), ""); },
       "changed or removed"},
      {"line put in", [](ChainTest& t) { t.Replace(kLog, "[ADD] 1001\r\n", "[ADD] 1001\r\n[ADD] 7\r\n"); },
       "9 bytes were put into the log before line"},
      {"last entry cut", [](ChainTest& t) { t.Replace(kLog, t.Entry("1003"), ""); }, "(line 6 of the log"},
      {"record removed", [](ChainTest& t) { t.Replace(kChain, Line(t.Chain(), 2), ""); },
       "Records are missing"},
      {"record changed", [](ChainTest& t) { t.Replace(kChain, "DESK 1", "DESK 2"); }, "on DESK 2"},
      {"record spoiled", [](ChainTest& t) { t.Replace(kChain, "E 0", "X 0"); }, "Line 1 of the companion"},
      {"records emptied", [](ChainTest& t) { t.office_.WriteFile(kChain, ""); }, "holds no record"},
      {"companion gone", [](ChainTest& t) { SystemFileSystem().Remove(t.office_.folder.Held(kChain)); },
       "companion file is missing"},
      {"log gone", [](ChainTest& t) { SystemFileSystem().Remove(t.office_.folder.Held(kLog)); },
       "log is missing"},
  };
  for (const Case& one : cases) {
    SystemFileSystem().RemoveFolder(office_.folder.Held("Logs\\"));
    WriteThree();
    one.tamper(*this);
    const AuditProof proof = Prove();
    EXPECT_FALSE(proof.proven) << one.name;
    ASSERT_FALSE(proof.problems.empty()) << one.name;
    EXPECT_THAT(proof.problems.front(), HasSubstr(one.problem)) << one.name;
  }
}

TEST_F(ChainTest, OneRemovedEntryIsOneProblem) {
  WriteThree();
  Write("1004");
  Replace(kLog, Entry("1002"), "");
  EXPECT_EQ(Prove().problems.size(), 1U);
}

TEST_F(ChainTest, ASealFindsWhatWasCutFromBothFiles) {
  WriteThree();
  const std::string seal = Prove().seal;
  Replace(kLog, Entry("1003"), "");
  Replace(kChain, Line(Chain(), 3), "");
  EXPECT_TRUE(Prove().proven);
  EXPECT_THAT(Prove(seal).problems, ElementsAre(HasSubstr("The seal is not among the records")));
}

TEST_F(ChainTest, LinesPutBehindTheRecordedEndAreNeverProven) {
  const std::string header = "[DATE: Mar 15, 2024 @ 09:31:00 AM][TX: ";
  const std::string rest = "][REFERENCE: 2001][LOGIN: jdoe][COMPUTER: DESK 9]\r\n";
  struct Case {
    const char* name;
    std::string lines;
    bool proven;
    const char* said;  // in the problems, or else in the notes
  };
  const Case cases[] = {
      {"an entry as ours", Entry("2001"), false,
       "Lines 10 to 11 were not recorded by this program, though it writes such entries: an entry (Post "
       "Check "
       "2001, Mar 15, 2024 @ 09:30:00 AM, jdoe on DESK 1)"},
      {"two", Entry("2001") + Entry("2002"), false,
       "Lines 10 to 14 were not recorded by this program, though it "
       "writes such entries: 2 entries (the first: Post Check 2001"},
      {"a line of an entry", "[ADD] 9\r\n", false,
       "Line 9 was not recorded by this program, and belongs to no entry"},
      {"no line end", "x", false, "Line 9 was not recorded"},
      {"a grid of another program",
       "\r\n" + header + "Post Deposit" + rest + "[GRID] grdItems was:\r\n1[C]2\r\n", true,
       "Lines 10 to 12 were not recorded by this program: an entry (Post Deposit 2001"},
      {"a transaction of another program", "\r\n" + header + "Office Transfer" + rest, true,
       "Line 10 was not recorded"},
      {"ours behind another program's", "\r\n" + header + "Office Transfer" + rest + Entry("2001"), false,
       "Lines 12 to 13"},
  };
  for (const Case& one : cases) {
    for (const bool taken_up : {false, true}) {
      SystemFileSystem().RemoveFolder(office_.folder.Held("Logs\\"));
      WriteThree();
      office_.WriteFile(kLog, Log() + one.lines);
      if (taken_up) Write("1004");
      const AuditProof proof = Prove();
      EXPECT_EQ(proof.proven, one.proven) << one.name << taken_up;
      EXPECT_THAT(one.proven ? proof.notes : proof.problems, ElementsAre(HasSubstr(one.said)))
          << one.name << taken_up;
      EXPECT_EQ(ProofSummary(proof).starts_with("Proven, but for"), one.proven) << ProofSummary(proof);
    }
    // Whoever noted the seal knows; what comes later is another matter.
    const std::string seal = Prove().seal;
    EXPECT_TRUE(Prove(seal).proven) << one.name;
    office_.WriteFile(kLog, Log() + Entry("2002"));
    EXPECT_FALSE(Prove(seal).proven) << one.name;
    Replace(kLog, one.lines, std::string(one.lines.size(), '-'));
    EXPECT_THAT(Prove(seal).problems, ::testing::Contains(HasSubstr("was changed or removed"))) << one.name;
  }
}

TEST_F(ChainTest, ARecordThatWasCutOffLeavesItsEntryUnrecorded) {
  WriteThree();
  office_.WriteFile(kChain, Chain().substr(0, Chain().size() - 30));
  EXPECT_THAT(Prove().problems, ElementsAre(HasSubstr("a workstation stopped before it could record it")));
  Write("1004");
  EXPECT_EQ(Prove().records, 4);  // the third as bytes taken up
  EXPECT_TRUE(Prove(Prove().seal).proven);
}

TEST_F(ChainTest, ALogFromBeforeTheCompanionIsProvenFromItsEndOn) {
  SystemFileSystem().CreateFolder(office_.folder.Held("Logs\\FNB\\"));
  office_.WriteFile(kLog, Entry("900").substr(2));
  Write("1001");
  EXPECT_EQ(ProofSummary(Prove()),
            "Proven from line 4 on: no line was changed or removed since Mar 15, 2024 @ 09:30:00 AM.");
  EXPECT_THAT(Prove().notes,
              ElementsAre(HasSubstr("The lines before line 4 are older than the companion file")));
  EXPECT_EQ(Prove().records, 2);
  Replace(kLog, "[ADD] 900", "[ADD] 901");
  EXPECT_FALSE(Prove().proven);
}

// Another program appends in the moment of a write, without the lock; or the disk takes a part only.
class CrowdedFiles : public testing::FaultyFiles {
 public:
  bool Append(std::string_view path, std::string_view bytes) override {
    FileSystem& files = SystemFileSystem();
    return files.Append(path, before) && files.Append(path, bytes.substr(0, bytes.size() - cut)) &&
           files.Append(path, after) && cut == 0;
  }
  std::string before;
  std::string after;
  std::size_t cut = 0;
};

TEST_F(ChainTest, AnEntryIsRecordedAmongLinesOfOthers) {
  CrowdedFiles files;
  EmptyForm form(office_.boxes);
  const auto write = [&](const char* reference) {
    WriteAuditTrail({true, files, office_.clock, office_.folder.Held(), "FNB", "jdoe", "DESK 1"}, form,
                    kAuditAdd, kAuditPostCheck, reference);
  };
  WriteThree();
  files.before = files.after =
      "\r\n[DATE: Mar 15, 2024 @ 09:30:00 AM][TX: Office][REFERENCE: 7][LOGIN: a][COMPUTER: b]\r\n";
  write("1004");
  EXPECT_TRUE(Prove().proven) << ProofSummary(Prove());
  EXPECT_EQ(Prove().records, 6);
  EXPECT_EQ(Prove().unrecorded.size(), 2U);
  files.before = files.after = "";
  files.cut = 12;
  write("1005");
  EXPECT_TRUE(Prove().proven) << ProofSummary(Prove());
  EXPECT_EQ(Prove().records, 7);
}

TEST_F(ChainTest, ALogThatLostItsEndSaysSoForEver) {
  WriteThree();
  Replace(kLog, Entry("1003"), "");
  Write("1004");
  Write("1005");
  EXPECT_THAT(Prove().problems, ElementsAre(HasSubstr("of the log were lost or removed")));
}

TEST_F(ChainTest, NothingStopsTheCaller) {
  // A companion that cannot be had: the log is written all the same.
  SystemFileSystem().CreateFolder(office_.folder.Held(kChain));
  WriteThree();
  EXPECT_EQ(Log(), Entry("1001").substr(2) + Entry("1002") + Entry("1003"));
  SystemFileSystem().RemoveFolder(office_.folder.Held("Logs\\"));
  // One that somebody holds for good: the writer waits a while, then goes on.
  WriteThree();
  const std::string chain = Chain();
  int code = 0;
  const auto held = engine::SystemFiles().Open(SystemFileSystem().PlatformPath(office_.folder.Held(kChain)),
                                               engine::OpenMode::kReadWrite, &code);
  ASSERT_NE(held, nullptr);
  ASSERT_EQ(held->Lock(std::int64_t{1} << 40, 1, engine::LockKind::kExclusive), 0);
  Write("1004");
  EXPECT_GT(office_.clock.slept_ms, 0);
  EXPECT_THAT(Log(), HasSubstr("[ADD] 1004"));
  EXPECT_EQ(Chain(), chain);
  // A log that takes nothing.
  SystemFileSystem().RemoveFolder(office_.folder.Held("Logs\\"));
  SystemFileSystem().CreateFolder(office_.folder.Held(kLog));
  Write("1005");
  EXPECT_THAT(office_.boxes.shown, IsEmpty());
}

TEST_F(ChainTest, WorkstationsSideBySideKeepEntriesWholeAndTheChainUnbroken) {
  constexpr int kStations = 4;
  constexpr int kEntries = 50;
  std::vector<std::thread> stations;
  stations.reserve(kStations);
  for (int station = 0; station < kStations; ++station) {
    stations.emplace_back([this, station] {
      testing::ScriptedBoxes boxes;
      EmptyForm form(boxes);
      const AuditTarget target{true,
                               SystemFileSystem(),
                               SystemClock(),
                               office_.folder.Held(),
                               "FNB",
                               "jdoe",
                               "DESK" + std::to_string(station)};
      for (int i = 0; i < kEntries; ++i)
        WriteAuditTrail(target, form, kAuditAdd, kAuditPostCheck, std::to_string(1000 * station + i));
    });
  }
  for (std::thread& station : stations) station.join();
  const AuditLog log(Log());
  ASSERT_EQ(log.Entries().size(), static_cast<std::size_t>(kStations * kEntries));
  for (const AuditEntry& entry : log.Entries()) {
    ASSERT_EQ(entry.event_count, 1U);
    EXPECT_EQ(log.Events(entry)[0].value, entry.reference);
  }
  EXPECT_THAT(Prove().problems, IsEmpty());
}

// Both files gone leave only what the bank itself shows.
TEST(BankProofTest, TheBankShowsThatALogIsMissing) {
  Office office;
  ASSERT_TRUE(office.Open());
  ASSERT_TRUE(office.AddBank("OFF", "No Trail", [](BankRecord& bank) { bank.audit_trail = false; }));
  EXPECT_TRUE(ProveBankLog(*office.session, "FNB").proven) << "nothing was posted yet";
  for (const char* code : {"FNB", "OFF"}) {
    BankTables tables(office.session->Home());
    ASSERT_TRUE(tables.Open(code));
    CheckRecord check;
    for (const char* number : {"1001", "1002"}) {
      check.number = number;
      ASSERT_EQ(tables.checks.Add(check), 0);
    }
  }
  EXPECT_TRUE(ProveBankLog(*office.session, "OFF").proven);
  const char* const log = "Logs\\FNB\\Audit_Trail.log";
  for (const bool emptied : {false, true}) {
    if (emptied) {
      SystemFileSystem().CreateFolder(office.folder.Held("Logs\\FNB\\"));
      for (const char* file : {log, "Logs\\FNB\\Audit_Trail.chain"}) office.WriteFile(file, "");
    }
    EXPECT_THAT(ProveBankLog(*office.session, "FNB").problems,
                ElementsAre(HasSubstr("holds 2 checks, deposits and wires, but its audit log")));
  }
  EmptyForm form(office.boxes);
  const AuditTarget target = AuditTargetOf(*office.session, "FNB", true);
  WriteAuditTrail(target, form, kAuditAdd, kAuditPostCheck, "1001");
  const AuditProof begun_anew = ProveBankLog(*office.session, "FNB");
  EXPECT_THAT(begun_anew.problems, ElementsAre(HasSubstr("and the log tells of only 1 of them")));
  EXPECT_TRUE(ProveBankLog(*office.session, "FNB", begun_anew.seal).proven);
  AppendAuditEntry(target, WriteAuditHeader(target, kAuditAccountEdit, "FNB") +
                               "[EDIT] chkGenAuditTrail was: Unchecked now: Checked\r\n");
  EXPECT_TRUE(ProveBankLog(*office.session, "FNB").proven);
  WriteAuditTrail(target, form, kAuditAdd, kAuditPostCheck, "1002");
  EXPECT_THAT(ProveBankLog(*office.session, "FNB").notes, IsEmpty());
  office.WriteFile("ESCROW_CHECKS_FNB.DBF", "a letter");
  EXPECT_THAT(ProveBankLog(*office.session, "FNB").problems,
              ElementsAre(HasSubstr("ESCROW_CHECKS_FNB cannot be read")));
}

}  // namespace
}  // namespace tallwick
