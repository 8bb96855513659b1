// Reading a log and finding entries in it.

#include "audit/audit_search.h"

#include <chrono>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audit/audit_document.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string Header(const std::string& date, const std::string& tx, const std::string& reference,
                   const std::string& login, const std::string& computer) {
  return "[DATE: " + date + "][TX: " + tx + "][REFERENCE: " + reference + "][LOGIN: " + login +
         "][COMPUTER: " + computer + "]\r\n";
}

std::string SmallLog() {
  return Header("Mar 04, 2024 @ 11:59:59 PM", "Post Check", "10452", "jdoe", "FRONTDESK2") +
         "[ADD] 10452\r\n\r\n" +
         Header("Mar 05, 2024 @ 12:00:00 AM", "Post Check", "10453", "M\xDCLLER", "BACK") +
         "[EDIT] txtCheckPayee was: [DATE: x] now: [GRID]\r\n[EDIT] txtAmount (2) was: 1.00 now: "
         "2.00\r\n\r\n" +
         Header("Mar 06, 2024 @ 12:30:00 PM", "Void Check", "10452", "jdoe", "BACK") +
         "[VOID] 10452\r\n\r\n" +
         // The clock of this workstation was behind.
         Header("Mar 03, 2024 @ 09:00:00 AM", "Post Wire", "W7", "asmith", "FRONTDESK1") +
         "[DELETE] \r\n\r\n" + Header("no date", "Office Grid", "G1", "asmith", "FRONTDESK1") +
         "[GRID] grdItems was:\r\n[H] "
         "File[C]Source[C]Amount\r\n24-1[C]BUYER[C]1.00\r\n24-2[C]SELLER[C]2.00\r\n"
         "[GRID] grdItems now:\r\n[H] "
         "File[C]Source[C]Amount\r\n24-1[C]BUYER[C]1.00\r\n24-2[C]SELLER[C]5.00\r\n";
}

TEST(AuditLogTest, ReadsEntriesEventsAndGrids) {
  const AuditLog log("a line before the first entry\r\n" + SmallLog());
  ASSERT_EQ(log.Entries().size(), 5U);
  const AuditEntry& edit = log.Entries()[1];
  EXPECT_EQ(edit.when, (DateTime{{2024, 3, 5}, 0, 0, 0}));
  ASSERT_EQ(log.Events(edit).size(), 2U);
  EXPECT_EQ(log.Events(edit)[0].name, "txtCheckPayee");
  EXPECT_EQ(log.Events(edit)[0].value, "was: [DATE: x] now: [GRID]");
  EXPECT_EQ(log.Events(edit)[1].name, "txtAmount (2)");
  EXPECT_EQ(log.Events(log.Entries()[3])[0].kind, AuditEventKind::kDelete);
  const AuditEntry& grid = log.Entries()[4];
  EXPECT_FALSE(grid.dated);
  ASSERT_EQ(log.Events(grid).size(), 1U);
  const AuditGrid& items = log.Grid(log.Events(grid)[0]);
  EXPECT_THAT(items.columns, ElementsAre("File", "Source", "Amount"));
  EXPECT_EQ(items.old_rows.size(), 2U);
  EXPECT_THAT(items.new_rows.at(1), ElementsAre("24-2", "SELLER", "5.00"));
  EXPECT_THAT(log.Logins().Values(), ElementsAre("asmith", "jdoe", "M\xC3\x9CLLER"));
  EXPECT_THAT(log.References().Values(), ElementsAre("10452", "10453", "G1", "W7"));
  EXPECT_THAT(log.Controls().Values(), ElementsAre("txtAmount (2)", "txtCheckPayee"));
  EXPECT_THAT(log.GridNames().Values(), ElementsAre("grdItems"));
}

// A wire's number and a login may be anything, what looks like the log's own tags too.
TEST(AuditLogTest, ReadsBackWhateverAReferenceHolds) {
  for (const std::string reference :
       {"A]B", "[DATE: 1", "1][LOGIN: x", "1][TX: x]", "[EDIT]", "[GRID] g", "]", "[COMPUTER: y]"}) {
    const AuditLog log(Header("Mar 04, 2024 @ 11:59:59 PM", "Post Wire", reference, "j[d]oe", "DESK") +
                       "[ADD] " + reference + "\r\n");
    ASSERT_EQ(log.Entries().size(), 1U) << reference;
    const AuditEntry& entry = log.Entries()[0];
    EXPECT_EQ(entry.tx, "Post Wire") << reference;
    EXPECT_EQ(entry.reference, reference);
    EXPECT_EQ(entry.login, "j[d]oe") << reference;
    EXPECT_EQ(entry.computer, "DESK") << reference;
    ASSERT_EQ(log.Events(entry).size(), 1U) << reference;
    EXPECT_EQ(log.Events(entry)[0].kind, AuditEventKind::kAdd) << reference;
    EXPECT_EQ(log.Events(entry)[0].value, reference);
  }
}

TEST(AuditLogTest, TakesWhateverAFileHolds) {
  for (const char* text :
       {"", "\r\n\r\n", "[DATE:", "[DATE: ][TX:", "[EDIT]", "[DATE:]\n[EDIT] x", "[DATE:]\n[GRID]",
        "[DATE:]\n[GRID] g\n[H]\n[C]\n[GRID] g\n[C]", "[ADD] 1\n[DATE:]\n[ADD VOID]"}) {
    const AuditLog log(text);
    for (const AuditEntry& entry : log.Entries()) {
      for (const AuditEvent& event : log.Events(entry))
        EXPECT_LE(LinesOfEvent(log, event, {}).size(), 4U) << text;
    }
  }
  DateTime when;
  for (const char* text :
       {"Feb 30, 2024 @ 02:07:31 PM", "Mar 04, 2024 @ 13:07:31 PM", "Mar 04, 2024 @ 00:07:31 AM",
        "Mar 04, 2024 @ 02:07:31 XM", "Mxr 04, 2024 @ 02:07:31 PM", "Mar 04, 2024 @ 02:07:31 P"})
    EXPECT_FALSE(ParseAuditMoment(text, &when)) << text;
}

struct Search {
  const char* name;
  void (*set)(AuditCriteria&);
  std::vector<std::string> references;
};

TEST(AuditSearchTest, FindsByEveryCriterion) {
  const Search searches[] = {
      // In date order; an entry without a date stands with the one before it.
      {"nothing", [](AuditCriteria&) {}, {"W7", "G1", "10452", "10453", "10452"}},
      {"newest first",
       [](AuditCriteria& c) { c.newest_first = true; },
       {"10452", "10453", "10452", "G1", "W7"}},
      {"part of a reference", [](AuditCriteria& c) { c.reference = " 45 "; }, {"10452", "10453", "10452"}},
      {"small letters", [](AuditCriteria& c) { c.login = "m\xC3\xBCll"; }, {"10453"}},
      {"outside the code page", [](AuditCriteria& c) { c.login = "\xE2\x98\x83"; }, {}},
      {"computer", [](AuditCriteria& c) { c.computer = "desk"; }, {"W7", "G1", "10452"}},
      {"transactions",
       [](AuditCriteria& c) {
         c.tx_names = {"void check", "Post Wire"};
       },
       {"W7", "10452"}},
      {"a transaction is whole", [](AuditCriteria& c) { c.tx_names = {"Post"}; }, {}},
      {"days are inclusive",
       [](AuditCriteria& c) {
         c.from = {2024, 3, 4};
         c.to = {2024, 3, 5};
       },
       {"10452", "10453"}},
      {"from",
       [](AuditCriteria& c) {
         c.from = {2024, 3, 6};
       },
       {"10452"}},
      {"to",
       [](AuditCriteria& c) {
         c.to = {2024, 3, 3};
       },
       {"W7"}},
      {"kinds",
       [](AuditCriteria& c) {
         c.kinds = {AuditEventKind::kDelete, AuditEventKind::kGrid};
       },
       {"W7", "G1"}},
      {"control", [](AuditCriteria& c) { c.controls = {"TXTAMOUNT"}; }, {"10453"}},
      {"member of an array", [](AuditCriteria& c) { c.controls = {"txtAmount (1)"}; }, {}},
      {"grid", [](AuditCriteria& c) { c.grids = {"grdItems"}; }, {"G1"}},
      {"all",
       [](AuditCriteria& c) {
         c.login = "jdoe";
         c.computer = "back";
       },
       {"10452"}},
      {"any",
       [](AuditCriteria& c) {
         c.meet_all = false;
         c.login = "m\xC3\xBC";
         c.tx_names = {"Post Wire"};
       },
       {"W7", "10453"}},
      {"any of none", [](AuditCriteria& c) { c.meet_all = false; }, {"W7", "G1", "10452", "10453", "10452"}},
  };
  const AuditLog log(SmallLog());
  for (const Search& search : searches) {
    AuditCriteria criteria;
    search.set(criteria);
    std::vector<std::string> references;
    for (std::uint32_t place : SearchAuditLog(log, criteria))
      references.emplace_back(log.Entries()[place].reference);
    EXPECT_EQ(references, search.references) << search.name;
  }
}

TEST(AuditSearchTest, GridsShowTheRowsAndColumnsChosen) {
  const AuditLog log(SmallLog());
  const AuditEvent& event = log.Events(log.Entries()[4])[0];
  const auto values = [&](const GridView& view) {
    std::vector<std::string> texts;
    for (const AuditLine& line : LinesOfEvent(log, event, view)) texts.push_back(line.value);
    return texts;
  };
  EXPECT_THAT(values({}), ElementsAre("File | Source | Amount", "Old Grid Value: 24-2 | SELLER | 2.00",
                                      "New Grid Value: 24-2 | SELLER | 5.00"));
  EXPECT_EQ(values({{}, true}).size(), 5U);
  EXPECT_THAT(values({{{"grdItems", GridChoice::Columns::kUpTo, {}, 2}}, false}),
              ElementsAre("File | Source", "Old Grid Value: 24-2 | SELLER", "New Grid Value: 24-2 | SELLER"));
  EXPECT_THAT(values({{{"grdItems", GridChoice::Columns::kMarked, {false, false, true}, 0}}, false}),
              ElementsAre("Amount", "Old Grid Value: 2.00", "New Grid Value: 5.00"));
  EXPECT_THAT(values({{{"grdOther", GridChoice::Columns::kAll, {}, 0}}, false}), IsEmpty());
}

// The bound is generous: an unoptimised build on a busy machine must keep it too.
TEST(AuditSearchTest, TwoHundredThousandEntriesAreSearchedQuickly) {
  std::string bytes;
  constexpr int kEntries = 200'000;
  for (int i = 0; i < kEntries; ++i) {
    const std::string number = std::to_string(100'000 + i);
    const std::string day = i % 28 + 1 < 10 ? "0" + std::to_string(i % 28 + 1) : std::to_string(i % 28 + 1);
    bytes += (i == 0 ? "" : "\r\n") +
             Header("Mar " + day + ", 2024 @ 02:07:31 PM", "Post Check", number, "jdoe", "DESK") +
             "[EDIT] txtCheckPayee was: SMITH now: SMITH CO\r\n";
  }
  const auto start = std::chrono::steady_clock::now();
  const AuditLog log(std::move(bytes));
  AuditCriteria criteria;
  criteria.reference = "99";
  criteria.login = "JD";
  criteria.controls = {"txtCheckPayee"};
  criteria.from = {2024, 3, 2};
  const std::size_t found = SearchAuditLog(log, criteria).size();
  const auto took =
      std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
  EXPECT_EQ(log.Entries().size(), static_cast<std::size_t>(kEntries));
  EXPECT_GT(found, 0U);
  RecordProperty("milliseconds", static_cast<int>(took));
  EXPECT_LT(took, 5000);
}

}  // namespace
}  // namespace tallwick
