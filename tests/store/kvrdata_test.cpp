// The store's door: messages to the letter, retries, header repair, and what fields take and refuse. A second
// store on the same folder plays the other workstation.

#include "store/clsKVRData.h"

#include <gtest/gtest.h>

#include <functional>

#include "core/system_ports.h"
#include "tests/support/fakes.h"
#include "tests/support/temp_folder.h"

namespace tallwick {
namespace {

using testing::FakeClock;
using testing::FakeWorkstation;
using testing::ScriptedBoxes;
using testing::TempFolder;

constexpr FieldLayout kFields[] = {{"ID", 'N', 6},   {"CODE", 'C', 8},      {"NAME", 'C', 10},
                                   {"DAY", 'D', 8},  {"AMOUNT", 'N', 9, 2}, {"FLAG", 'L', 1},
                                   {"NOTE", 'M', 10}};
constexpr TagLayout kTags[] = {{"ID", "STR(ID,6,0)", ".NOT. Deleted ()", true},
                               {"CODE", "UPPER (CODE + NAME)", ".NOT. Deleted ()", true},
                               {"DAY", "DAY", ".NOT. Deleted ()"},
                               {"AMOUNT", "AMOUNT", ".NOT. Deleted ()"}};

// Calls back while the store waits, as another workstation would act meanwhile.
class ActingClock : public FakeClock {
 public:
  void Sleep(int milliseconds) override {
    FakeClock::Sleep(milliseconds);
    if (on_sleep) on_sleep();
  }
  std::function<void()> on_sleep;
};

class KvrDataTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(store_.InitializeCodebase());
    ASSERT_TRUE(other_.InitializeCodebase());
    DataHandle made = store_.CreateDatabase(path_, kFields, kTags);
    ASSERT_GT(made, 0);
    ASSERT_EQ(store_.CloseDatabase(made), 0);
  }

  int Append(DataHandle data, int id, std::string_view code, std::string_view name = "") {
    store_.AddRecordStart(data);
    store_.SetNumberFieldValue(data, "ID", id);
    store_.SetStringFieldValue(data, "CODE", code);
    store_.SetStringFieldValue(data, "NAME", name);
    return store_.AddRecordFinish(data);
  }
  std::string Bytes() { return *SystemFileSystem().Read(path_); }
  std::string Quoted() { return "\"" + shown_ + "\""; }
  std::unique_ptr<engine::File> RawFile() {
    int code = 0;
    return engine::SystemFiles().Open(shown_, engine::OpenMode::kReadWrite, &code);
  }
  // Holds the lock that appends take, as another program on the share would.
  std::unique_ptr<engine::File> HoldAppendLock() {
    auto file = RawFile();
    EXPECT_EQ(file->Lock(0x7FFFFFFE, 1, engine::LockKind::kExclusive), 0);
    return file;
  }

  TempFolder folder_;
  std::string path_ = folder_.Held("ITEMS.DBF");
  std::string shown_ = folder_.Platform("ITEMS.DBF");
  ActingClock clock_;
  FakeWorkstation workstation_;
  ScriptedBoxes boxes_;
  ScriptedBoxes other_boxes_;
  StorePorts ports_{clock_, workstation_, SystemFileSystem(), boxes_, engine::SystemFiles()};
  StorePorts other_ports_{clock_, workstation_, SystemFileSystem(), other_boxes_, engine::SystemFiles()};
  clsKVRData store_{ports_, {.max_unique_id_retries = 3}};
  clsKVRData other_{other_ports_};
};

// --- Opening ---

TEST_F(KvrDataTest, MissingTableIsReportedWithItsCode) {
  std::string missing = folder_.Platform("NONE.DBF");
  EXPECT_EQ(store_.OpenDatabase(folder_.Held("NONE.DBF")), -60);
  EXPECT_EQ(store_.OpenErrorCode(), -60);
  EXPECT_EQ(boxes_.LastText(), "\"" + missing + "\" failed to open @ clsKVRData.OpenDatabase\r-60");
  EXPECT_EQ(store_.OpenDatabaseExclusive(folder_.Held("NONE.DBF")), -60);
  EXPECT_EQ(boxes_.LastText(), "\"" + missing + "\" failed to open @ clsKVRData.OpenDatabaseExclusive\r-60");
  DataHandle data = store_.OpenDatabaseSilent(path_, false);
  EXPECT_GT(data, 0);
  EXPECT_EQ(store_.OpenErrorCode(), 0);
  EXPECT_EQ(store_.LastErrorCode(), 0) << "a failure must not poison the next operation";
}

TEST_F(KvrDataTest, MissingIndexOffersARebuild) {
  ASSERT_TRUE(SystemFileSystem().Remove(folder_.Held("ITEMS.CDX")));
  EXPECT_EQ(store_.OpenDatabase(path_), -310);
  EXPECT_FALSE(store_.RebuildRequested());
  boxes_.answers = {BoxAnswer::kYes};
  EXPECT_EQ(store_.OpenDatabase(path_), -310);
  EXPECT_TRUE(store_.RebuildRequested());
  const Box& box = boxes_.shown.back();
  EXPECT_EQ(box.text, Quoted() + " failed to open @ clsKVRData.OpenDatabase\r" +
                          std::string(engine::error4text(-310)) +
                          "\rError Code:-310\r\rWould you like to try to rebuild?");
  EXPECT_EQ(box.icon, BoxIcon::kCritical);
  EXPECT_EQ(box.buttons, BoxButtons::kYesNo);
}

TEST_F(KvrDataTest, TableInUseIsRefusedWithoutAMessage) {
  DataHandle data = store_.OpenDatabase(path_);
  EXPECT_EQ(other_.OpenDatabaseExclusive(path_), -61);
  store_.CloseDatabase(data);
  EXPECT_GT(other_.OpenDatabaseExclusive(path_), 0);
  EXPECT_EQ(store_.OpenDatabase(path_), -61);
  EXPECT_TRUE(boxes_.shown.empty());
  EXPECT_TRUE(other_boxes_.shown.empty());
}

TEST_F(KvrDataTest, HeaderIsRepairedOnlyWhenTheUserAgrees) {
  DataHandle data = store_.OpenDatabase(path_);
  for (int id = 1; id <= 3; ++id) ASSERT_EQ(Append(data, id, std::to_string(id)), 0);
  store_.CloseDatabase(data);
  std::string good = Bytes();
  std::string broken = good;
  broken[4] = 9;
  broken[6] = 1;
  SystemFileSystem().Write(path_, broken);

  EXPECT_EQ(store_.OpenDatabase(path_), -200);
  ASSERT_EQ(boxes_.shown.size(), 1U);
  EXPECT_EQ(boxes_.shown[0].title, "Corrupt Header");
  EXPECT_EQ(boxes_.shown[0].text, shown_ + " has a corrupt file header.  Attempt to correct?");
  EXPECT_EQ(Bytes(), broken);

  boxes_.answers = {BoxAnswer::kOk};
  data = store_.OpenDatabase(path_);
  ASSERT_GT(data, 0);
  EXPECT_EQ(boxes_.shown.back().title, "Corrected Header");
  EXPECT_EQ(boxes_.LastText(),
            "File Header for " + shown_ +
                " has been revised...\rRecord Length: 53 Start Data: 257 Number Records: 3");
  EXPECT_EQ(Bytes(), good);
}

TEST_F(KvrDataTest, HeaderThatCannotBeRepairedEndsTheOpen) {
  std::string bytes = Bytes();
  bytes[4] = 5;
  SystemFileSystem().Write(path_, bytes.substr(0, 100));
  boxes_.answers = {BoxAnswer::kOk, BoxAnswer::kOk};
  EXPECT_LT(store_.OpenDatabase(path_), 0);
  EXPECT_EQ(Bytes().size(), 100U);
}

TEST_F(KvrDataTest, HeaderCheckNamesTheTable) {
  DataHandle data = store_.OpenDatabase(path_);
  ASSERT_EQ(Append(data, 1, "A"), 0);
  std::uint8_t count = 7;
  RawFile()->WriteAt(4, &count, 1);
  EXPECT_TRUE(store_.CheckDatabaseHeader(data)) << "off until it is asked for";
  store_.SetHeaderCheck(true);
  EXPECT_FALSE(store_.CheckDatabaseHeader(data));
  EXPECT_EQ(boxes_.LastText(),
            shown_ + " has a Corrupt File Header.  Swith to Exclusive File Access to fix.");
}

// --- Appending, locking ---

TEST_F(KvrDataTest, AppendWaitsForTheLock) {
  DataHandle data = store_.OpenDatabase(path_);
  auto holder = HoldAppendLock();
  clock_.on_sleep = [&] {
    if (clock_.slept_ms >= 1500) holder.reset();
  };
  EXPECT_EQ(Append(data, 1, "A"), 0);
  EXPECT_EQ(clock_.slept_ms, 1500);
  EXPECT_TRUE(boxes_.shown.empty());
  EXPECT_EQ(store_.RecordCount(data), 1);
}

TEST_F(KvrDataTest, AppendGivesUpAfterTheEleventhLockedResult) {
  DataHandle data = store_.OpenDatabase(path_);
  {
    auto holder = HoldAppendLock();
    EXPECT_EQ(Append(data, 1, "A"), 50);
  }
  EXPECT_EQ(clock_.slept_ms, 10 * 500);
  EXPECT_EQ(boxes_.shown.back().title, "Failed To Update Record");
  EXPECT_EQ(store_.LastErrorCode(), 50);
  EXPECT_EQ(store_.TopDatabase(data), engine::kEof) << "the record given up must not be written later";
  EXPECT_EQ(store_.RecordCount(data), 0);
}

// All banks wait for the writer, so who holds one bank's index must not keep the writer for long.
TEST_F(KvrDataTest, AppendGivesUpSoonWhereAnIndexIsHeld) {
  DataHandle data = store_.OpenDatabase(path_);
  int code = 0;
  const auto holder =
      engine::SystemFiles().Open(folder_.Platform("ITEMS.CDX"), engine::OpenMode::kReadWrite, &code);
  ASSERT_EQ(holder->Lock(0x7FFFFFFE, 1, engine::LockKind::kExclusive), 0);
  EXPECT_EQ(Append(data, 1, "A"), 50);
  EXPECT_LE(clock_.slept_ms, 10 * 500 + 11 * 1000);
  EXPECT_EQ(store_.RecordCount(data), 0);
}

TEST_F(KvrDataTest, UniqueClashListsTheUniqueTags) {
  DataHandle data = store_.OpenDatabase(path_);
  ASSERT_EQ(Append(data, 1, "A"), 0);
  store_.SetTagUniqueContinue(data, "CODE", true);
  EXPECT_EQ(Append(data, 1, "B"), 20);
  EXPECT_EQ(
      boxes_.LastText(),
      "Error: 20\r\n\r\nDatabase: " + shown_ +
          "\r\n\r\n"
          "Tag: ID\r\nExpression: STR(ID,6,0)\r\nFilter: .NOT. Deleted ()\r\nUnique Value: r4unique\r\n\r\n"
          "Tag: CODE\r\nExpression: UPPER (CODE + NAME)\r\nFilter: .NOT. Deleted ()\r\n"
          "Unique Value: r4uniqueContinue\r\n\r\n");
  EXPECT_EQ(store_.RecordCount(data), 1);
}

TEST_F(KvrDataTest, ClashingUniqueIdIsRaisedUpToTheMaximum) {
  DataHandle data = store_.OpenDatabase(path_);
  for (int id = 1; id <= 3; ++id) ASSERT_EQ(Append(data, id, std::to_string(id)), 0);
  store_.AddRecordStart(data);
  store_.SetNumberFieldValue(data, "ID", 1);
  store_.SetStringFieldValue(data, "CODE", "NEW");
  EXPECT_EQ(store_.AddRecordFinish(data, "ID"), 0);
  EXPECT_EQ(store_.GetNumberFieldValue(data, "ID"), 4);

  store_.AddRecordStart(data);
  store_.SetNumberFieldValue(data, "ID", 1);
  EXPECT_EQ(store_.AddRecordFinishSilent(data, "ID"), 20);
  EXPECT_TRUE(boxes_.shown.empty());
  store_.AddRecordStart(data);
  store_.SetNumberFieldValue(data, "ID", 1);
  EXPECT_EQ(store_.AddRecordFinish(data, "ID"), 20);
  EXPECT_EQ(boxes_.LastText(),
            "Error 20\rFailed to Add Unique ID to " + shown_ + "\r\rUID: 4\r\rRetries = 4");
  EXPECT_EQ(store_.RecordCount(data), 4);
}

TEST_F(KvrDataTest, RecordLockAsksUntilItIsGrantedOrGivenUp) {
  DataHandle data = store_.OpenDatabase(path_);
  EXPECT_TRUE(store_.LockTheRecord(data)) << "no record, nothing to lock";
  ASSERT_EQ(Append(data, 1, "A"), 0);
  DataHandle theirs = other_.OpenDatabase(path_);
  other_.TopDatabase(theirs);
  ASSERT_TRUE(other_.LockTheRecord(theirs));
  EXPECT_FALSE(store_.LockTheRecord(data, true));
  EXPECT_TRUE(boxes_.shown.empty());
  boxes_.answers = {BoxAnswer::kRetry, BoxAnswer::kRetry, BoxAnswer::kCancel};
  EXPECT_FALSE(store_.LockTheRecord(data));
  EXPECT_EQ(store_.LastErrorCode(), 50);
  EXPECT_EQ(boxes_.shown.size(), 3U);
  EXPECT_EQ(boxes_.shown.back().title, "Locked Record");
  EXPECT_EQ(boxes_.LastText(), "Information in use...\r\rIn use by FRONTDESK2 (process 4711)");

  other_.SetStringFieldValue(theirs, "NAME", "theirs");
  EXPECT_EQ(other_.UnlockTheRecord(theirs), 0);
  EXPECT_TRUE(store_.LockTheRecord(data));
  store_.RefreshRecord(data);
  EXPECT_EQ(store_.GetStringFieldValue(data, "NAME"), "theirs");
}

// A box that waits for a person in a unit would keep everybody else from writing.
TEST_F(KvrDataTest, NothingIsShownWithinAUnit) {
  DataHandle data = store_.OpenDatabase(path_);
  ASSERT_EQ(Append(data, 1, "A"), 0);
  ASSERT_EQ(Append(data, 2, "B"), 0);
  DataHandle theirs = other_.OpenDatabase(path_);
  other_.TopDatabase(theirs);
  ASSERT_TRUE(other_.LockTheRecord(theirs));
  ASSERT_EQ(store_.GoToRecordNo(data, 1), 0);
  store_.BeginUnit();
  EXPECT_FALSE(store_.LockTheRecord(data));
  EXPECT_EQ(store_.LastErrorCode(), 50);
  store_.SetStringFieldValue(data, "NAME", "mine");
  EXPECT_EQ(store_.WriteTheRecord(data), 50);
  EXPECT_EQ(Append(data, 2, "C"), 20);
  // What could not be read is told when the unit has ended, which it makes fail.
  EXPECT_EQ(Append(data, 3, "C"), 0);
  store_.TellUnreadable(data, engine::kErrorIndex);
  EXPECT_TRUE(boxes_.shown.empty());
  EXPECT_EQ(store_.CommitUnit(), engine::kErrorIndex);
  EXPECT_EQ(boxes_.shown.size(), 1U);
  EXPECT_EQ(boxes_.shown.front().title, "Read Database");
  EXPECT_FALSE(store_.UnitActive());
  EXPECT_EQ(store_.RecordCount(data), 2);
}

TEST_F(KvrDataTest, WriteOfALockedRecordIsGivenUp) {
  DataHandle data = store_.OpenDatabase(path_);
  ASSERT_EQ(Append(data, 1, "A"), 0);
  DataHandle theirs = other_.OpenDatabase(path_);
  other_.TopDatabase(theirs);
  ASSERT_TRUE(other_.LockTheRecord(theirs));
  store_.SetStringFieldValue(data, "NAME", "mine");
  EXPECT_EQ(store_.WriteTheRecord(data), 50);
  EXPECT_EQ(clock_.slept_ms, 5000);
  other_.UnlockTheRecord(theirs);
  EXPECT_EQ(store_.UnlockTheRecord(data), 0);
  other_.RefreshRecord(theirs);
  EXPECT_EQ(other_.GetStringFieldValue(theirs, "NAME"), "");
}

TEST_F(KvrDataTest, RolledBackUnitLeavesNothing) {
  DataHandle data = store_.OpenDatabase(path_);
  store_.BeginUnit();
  ASSERT_EQ(Append(data, 1, "A"), 0);
  store_.RollbackUnit();
  EXPECT_EQ(store_.RecordCount(data), 0);
  store_.BeginUnit();
  ASSERT_EQ(Append(data, 1, "A"), 0);
  EXPECT_EQ(store_.CommitUnit(), 0);
  DataHandle theirs = other_.OpenDatabase(path_);
  EXPECT_EQ(other_.RecordCount(theirs), 1);
}

// --- Fields ---

TEST_F(KvrDataTest, FieldsConvertBothWays) {
  DataHandle data = store_.OpenDatabase(path_);
  store_.AddRecordStart(data);
  EXPECT_EQ(store_.SetStringFieldValue(data, "NAME", "Zoë & Fils"), 0);
  EXPECT_EQ(store_.SetDateFieldValue(data, "DAY", "02/29/2024"), 0);
  EXPECT_EQ(store_.SetCurrencyFieldValue(data, "AMOUNT", Currency::FromCents(-5)), 0);
  EXPECT_EQ(store_.SetBooleanFieldValue(data, "FLAG", true), 0);
  EXPECT_EQ(store_.SetMemoFieldValue(data, "NOTE", "a “note”\r\nof two lines"), 0);
  ASSERT_EQ(store_.AddRecordFinish(data), 0);
  EXPECT_EQ(Bytes().substr(257 + 15, 10), "Zo\xEB & Fils");
  EXPECT_EQ(Bytes().substr(257 + 25, 18), "20240229    -0.05T");

  EXPECT_EQ(store_.GetStringFieldRawValue(data, "CODE"), "        ");
  EXPECT_EQ(store_.GetStringFieldValue(data, "NAME"), "Zoë & Fils");
  EXPECT_EQ(store_.GetDateFieldValue(data, "DAY"), "02/29/2024");
  EXPECT_EQ(store_.GetDateFieldRawValue(data, "DAY"), "20240229");
  EXPECT_EQ(store_.GetCurrencyFieldValue(data, "AMOUNT"), Currency::FromCents(-5));
  EXPECT_EQ(store_.GetMemoFieldValue(data, "NOTE"), "a “note”\r\nof two lines");
  auto any = [&](std::string_view field) {
    return store_.GetFieldValueByPointer(data, store_.FindField(data, field));
  };
  EXPECT_EQ(any("DAY"), FieldValue("02/29/2024"));
  EXPECT_EQ(any("AMOUNT"), FieldValue(std::int32_t{0})) << "the generic read drops decimals";
  EXPECT_EQ(any("FLAG"), FieldValue());
  EXPECT_EQ(boxes_.LastText(), "L not handled...");

  EXPECT_EQ(store_.SetDateFieldValue(data, "DAY", "  /  /    "), 0);
  EXPECT_EQ(store_.GetDateFieldValue(data, "DAY"), "");
  EXPECT_EQ(store_.GetDateFieldRawValue(data, "DAY"), "        ");
  FieldHandle flag = store_.FindField(data, "FLAG");
  for (auto [stored, truth] : {std::pair("Y", true), {"T", true}, {"N", false}, {"?", false}, {" ", false}}) {
    ASSERT_EQ(store_.SetStringFieldValueByPointer(data, flag, stored), 0);
    EXPECT_EQ(store_.GetBooleanFieldValueByPointer(data, flag), truth) << stored;
  }
}

TEST_F(KvrDataTest, RefusedValuesLeaveTheFieldAloneAndNameIt) {
  DataHandle data = store_.OpenDatabase(path_);
  ASSERT_EQ(Append(data, 12, "A", "before"), 0);
  struct Case {
    std::string_view field;
    std::string_view text;
    std::string_view words;
  };
  for (const Case& c :
       {Case{"NAME", "eleven char", "takes 10 characters; the text has 11"},
        Case{"NAME", "Dvořák", "the character \"ř\""}, Case{"NAME", "\xFF", "cannot hold the character"},
        Case{"DAY", "02/30/2024", "is no date"}, Case{"DAY", "2023-02-29", "is no date"},
        Case{"ID", "1234567", "takes 6 characters"},
        Case{"ID", "1.5", "cannot hold 1.5: it takes 6 characters without decimals"},
        Case{"AMOUNT", "12a", "is no number"}, Case{"AMOUNT", "1234567.00", "cannot hold"},
        Case{"AMOUNT", "0.005", "cannot hold"}, Case{"AMOUNT", "0.123456", "cannot hold"},
        Case{"AMOUNT", "1.2.3", "is no number"}, Case{"FLAG", "maybe", "takes T or F"}}) {
    FieldHandle field = store_.FindField(data, c.field);
    std::string before = store_.GetStringFieldRawValueByPointer(data, field);
    EXPECT_EQ(store_.SetFieldTextByPointer(data, field, c.text), -220) << c.text;
    EXPECT_EQ(store_.GetStringFieldRawValueByPointer(data, field), before) << c.text;
    EXPECT_EQ(store_.LastFieldProblem().field, c.field);
    EXPECT_NE(store_.LastFieldProblem().text.find(c.words), std::string::npos)
        << store_.LastFieldProblem().text;
  }
  EXPECT_EQ(store_.SetCurrencyFieldValue(data, "AMOUNT", Currency::Overflow()), -220);
  EXPECT_EQ(store_.SetDateByPointer(data, store_.FindField(data, "DAY"), {2024, 13, 1}), -220);
  EXPECT_EQ(store_.SetNumberFieldValue(data, "ID", -123456), -220);
}

TEST_F(KvrDataTest, UnknownNamesAndDeadHandlesAreHarmless) {
  DataHandle data = store_.OpenDatabase(path_);
  EXPECT_EQ(store_.GetStringFieldValue(data, "NONE"), "");
  EXPECT_EQ(store_.LastErrorCode(), engine::kErrorFieldName);
  EXPECT_TRUE(boxes_.shown.empty());
  EXPECT_FALSE(store_.FieldExist(data, "NONE"));
  EXPECT_EQ(boxes_.LastText(), "\"NONE\" not a valid field name.");
  EXPECT_EQ(store_.GetFieldPointer(data, "NONE"), 0);
  EXPECT_EQ(boxes_.LastText(), "\"NONE\" not valid field name for " + shown_);
  EXPECT_FALSE(store_.SelectTag(data, "NONE"));
  EXPECT_EQ(boxes_.LastText(), "NONE is not a valid tag name for " + shown_);
  EXPECT_EQ(store_.GetDatabasePointer(""), 0);
  EXPECT_EQ(boxes_.LastText(), "GetDatabasePointer = No database specified");
  EXPECT_EQ(store_.GetDatabasePointer("items"), data);

  FieldHandle name = store_.FindField(data, "NAME");
  store_.CloseDatabase(data);
  boxes_.shown.clear();
  for (DataHandle dead : {data, 0, -61, 99999}) {
    EXPECT_EQ(store_.GetStringFieldValueByPointer(dead, name), "");
    EXPECT_NE(store_.SetStringFieldValueByPointer(dead, name, "x"), 0);
    EXPECT_NE(store_.TopDatabase(dead), 0);
    EXPECT_NE(store_.AddRecordFinish(dead), 0);
    EXPECT_FALSE(store_.LockTheRecord(dead));
  }
  EXPECT_NE(store_.OpenDatabase(path_), data) << "a dead handle must not come alive again at once";
}

TEST_F(KvrDataTest, DamagedMemoIsReported) {
  DataHandle data = store_.OpenDatabase(path_);
  store_.AddRecordStart(data);
  store_.SetMemoFieldValue(data, "NOTE", std::string(200, 'x'));
  ASSERT_EQ(store_.AddRecordFinish(data), 0);
  store_.CloseDatabase(data);
  std::string memo = *SystemFileSystem().Read(folder_.Held("ITEMS.FPT"));
  SystemFileSystem().Write(folder_.Held("ITEMS.FPT"), memo.substr(0, 512));
  data = store_.OpenDatabase(path_);
  ASSERT_GT(data, 0);
  store_.TopDatabase(data);
  EXPECT_EQ(store_.GetMemoFieldValue(data, "NOTE"), "");
  EXPECT_EQ(boxes_.shown.back().title, "Memo Error");
  EXPECT_EQ(boxes_.LastText(),
            "An error occurred retrieving data.\r\n\r\nDatabase: " + shown_ + "\r\n\r\nField: NOTE");
}

// --- Tags and relations ---

TEST_F(KvrDataTest, SeeksAndTagEnds) {
  DataHandle data = store_.OpenDatabase(path_);
  EXPECT_EQ(store_.GetFirstTagValue(data, "CODE"), "");
  for (auto [id, code] : {std::pair(3, "ÉTÉ"), {1, "aa"}, {2, "aab"}, {4, "B"}})
    ASSERT_EQ(Append(data, id, code), 0);
  TagHandle by_id = store_.SelectTagPointer(data, "ID");
  EXPECT_EQ(store_.GetFirstTagValue(data, "CODE"), "aa");
  EXPECT_EQ(store_.GetLastTagValue(data, "CODE"), "ÉTÉ");
  EXPECT_EQ(store_.GetLastTagValue(data, "ID"), "4") << "arguments behind the field do not count";
  EXPECT_EQ(store_.GetCurrentTagPointer(data), by_id);

  store_.SelectTag(data, "CODE");
  EXPECT_EQ(store_.SeekDatabase(data, "AA"), 0);
  EXPECT_EQ(store_.recordNumber, 2);
  EXPECT_EQ(store_.SeekDatabaseNext(data, "AA"), 0);
  EXPECT_EQ(store_.recordNumber, 3);
  EXPECT_EQ(store_.SeekDatabaseNext(data, "AA"), engine::kAfter);
  EXPECT_EQ(store_.PadSearch(data, "AAB"), 0);
  EXPECT_EQ(store_.PadSearch(data, "A"), engine::kAfter);
  EXPECT_EQ(store_.SeekDatabase(data, "ÉT"), 0);
  EXPECT_EQ(store_.SeekDatabase(data, "ř"), engine::kEof);
}

TEST_F(KvrDataTest, RelationWalksTheQueryAndFindsTheSlave) {
  DataHandle master = store_.OpenDatabase(path_);
  for (auto [id, code, name] : {std::tuple(1, "A", "C"), {2, "B", ""}, {3, "C", "A"}}) {
    ASSERT_EQ(Append(master, id, code, name), 0);
  }
  DataHandle slave = store_.OpenDatabaseClone(master);
  RelationHandle relation = store_.RelationInitialize(master);
  EXPECT_NE(store_.RelationQuerySet(relation, "CODE +"), 0);
  EXPECT_EQ(store_.RelationQuerySet(relation, ".NOT. EMPTY(NAME)"), 0);
  EXPECT_EQ(store_.RelationSort(relation, "ID"), 0);
  EXPECT_EQ(store_.RelationCreateSlave(relation, slave, "TRIM(NAME)", "CODE"), 0);
  EXPECT_EQ(store_.RelationTop(relation), 0);
  EXPECT_EQ(store_.GetStringFieldValue(slave, "CODE"), "C");
  EXPECT_EQ(store_.RelationSkip(relation), 0);
  EXPECT_EQ(store_.GetStringFieldValue(slave, "CODE"), "A");
  EXPECT_EQ(store_.RelationSkip(relation), engine::kEof);
  store_.RelationFree(relation);
  EXPECT_LT(store_.RelationTop(relation), 0);
}

}  // namespace
}  // namespace tallwick
