// The checks in our engine: the table of checks with its six tags, and the cross-references with their two.
#include <array>
#include <filesystem>

#include "bench/check_store.h"
#include "store/engine/codebase.h"
#include "tests/support/engine_ports.h"

namespace tallwick::bench {
namespace {

using namespace tallwick::engine;

constexpr std::array<FieldLayout, 19> kCheckFields = {{{"CHXNUMBER", 'C', 12},
                                                       {"CHXDATED", 'D', 8},
                                                       {"CHXPAYEE", 'C', 60},
                                                       {"CHXADDR1", 'C', 40},
                                                       {"CHXADDR2", 'C', 40},
                                                       {"CHXCITYST", 'C', 40},
                                                       {"CHXAMOUNT", 'N', 12, 2},
                                                       {"CHXACCTMO", 'N', 2},
                                                       {"CHXACCTYR", 'N', 4},
                                                       {"CHXSTMTMO", 'N', 2},
                                                       {"CHXSTMTYR", 'N', 4},
                                                       {"CHXSTATUS", 'C', 2},
                                                       {"CHXCONTROL", 'C', 10},
                                                       {"CHXVCHRNO", 'C', 12},
                                                       {"CHXFILENO", 'C', 14},
                                                       {"CHXTINNO", 'C', 16},
                                                       {"CHXACCTDA", 'N', 2},
                                                       {"CHXSTMTDA", 'N', 2},
                                                       {"CHXSREASON", 'C', 240}}};
constexpr std::string_view kLive = ".NOT. Deleted ()";
constexpr std::array<TagLayout, 6> kCheckTags = {
    {{"CHXFILENO", "UPPER (CHXFILENo + CHXNUMBER)", kLive, true},
     {"CHXNUMBER", "UPPER (CHXNUMBER)", kLive, true},
     {"CHXPAYEE", "UPPER (CHXPAYEE)", kLive},
     {"CHXDATED", "DTOS(CHXDATED) + UPPER(CHXNUMBER)", kLive},
     {"CHXACCT", "STR(CHXACCTYR,4,0) + STR(CHXACCTMO,2,0) + STR(CHXACCTDA,2,0)", kLive},
     {"CHXSTMT", "STR(CHXSTMTYR,4,0) + STR(CHXSTMTMO,2,0) + STR(CHXSTMTDA,2,0)", kLive}}};

constexpr std::array<FieldLayout, 4> kReferenceFields = {
    {{"XRFSFILENO", 'C', 14}, {"XRFSBANKID", 'C', 8}, {"XRFSTXTYPE", 'C', 2}, {"XRFSTXREFN", 'C', 12}}};
constexpr std::array<TagLayout, 2> kReferenceTags = {
    {{"XRFSFILEBK", "UPPER (XRFSFILENO + XRFSBANKID + XRFSTXTYPE + XRFSTXREFN)", kLive, true},
     {"XRFSBANKFI", "UPPER (XRFSBANKID + XRFSFILENO + XRFSTXTYPE + XRFSTXREFN)", kLive, true}}};

[[noreturn]] void Stop(int code, std::string_view what) {
  Fail("ours: " + std::string(what) + ": " + std::string(error4text(code)));
}

void Require(int code, std::string_view what) {
  if (code != kSuccess) Stop(code, what);
}

class EngineStore : public CheckStore {
 public:
  EngineStore(std::string folder, const Workload& workload)
      : folder_(std::move(folder)), workload_(workload) {
    code_ = code4initVB(ports_.Over(SystemFiles()));
  }
  ~EngineStore() override { code4initUndo(*code_); }
  EngineStore(const EngineStore&) = delete;
  EngineStore& operator=(const EngineStore&) = delete;

  std::string Name() const override { return "ours"; }

  void Prepare(Work work) override {
    code4close(*code_);
    if (work == Work::kAppend) {
      std::filesystem::remove_all(folder_);
      std::filesystem::create_directories(folder_);
      checks_ = d4create(*code_, EngineTablePath(folder_), kCheckFields, kCheckTags);
      references_ = d4create(*code_, folder_ + "/ESCROW_XRFS.DBF", kReferenceFields, kReferenceTags);
    } else {
      code4accessMode(*code_, work == Work::kReindex ? 1 : 0);
      checks_ = d4open(*code_, EngineTablePath(folder_));
      references_ = d4open(*code_, folder_ + "/ESCROW_XRFS.DBF");
      code4accessMode(*code_, 0);
    }
    if (checks_ == nullptr || references_ == nullptr) Stop(code4errorCode(*code_, 0), "open");
    LookUpFields();
    if (work != Work::kPost) return;
    posts_ = MakeChecks(next_post_, workload_.posts);
    next_post_ += workload_.posts;
  }

  std::int64_t Run(Work work) override {
    switch (work) {
      case Work::kAppend:
        return AppendAll();
      case Work::kFind:
        return Find();
      case Work::kWalk:
        return Walk();
      case Work::kSum:
        return Sum();
      case Work::kReindex:
        Require(d4reindex(*checks_), "reindex");
        return d4recCountDo(*checks_);
      case Work::kPost:
        return Post();
    }
    return 0;
  }

 private:
  void LookUpFields() {
    for (std::size_t i = 0; i < fields_.size(); ++i) fields_[i] = d4field(*checks_, kCheckFields[i].name);
    for (std::size_t i = 0; i < reference_fields_.size(); ++i)
      reference_fields_[i] = d4field(*references_, kReferenceFields[i].name);
  }

  std::int64_t AppendAll() {
    Require(code4unitBegin(*code_), "begin");
    for (const Check& check : workload_.checks) Append(check);
    Require(code4unitCommit(*code_), "commit");
    return d4recCountDo(*checks_);
  }

  void Append(const Check& check) {
    Require(d4appendStart(*checks_), "a blank record");
    auto field = fields_.begin();
    ForEachField(
        check, [&](const std::string& value) { Require(f4assignNVB(**field++, value), "a text"); },
        [&](std::int64_t cents) {
          Require(f4assignCurrency(**field++, Currency::FromCents(cents)), "an amount");
        },
        [&](int value) { Require(f4assignLong(**field++, value), "a number"); });
    Require(d4append(*checks_), "an append");
  }

  std::string_view Bytes(std::size_t field) const {
    return {f4ptr(*fields_[field]), static_cast<std::size_t>(f4len(*fields_[field]))};
  }
  std::int64_t Cents() const { return f4currency(*fields_[kAmount]).TenThousandths() / 100; }
  std::int64_t MixCurrent(std::int64_t sum) const {
    return Mix(sum, Bytes(kNumber), Cents(), Bytes(kStatus));
  }

  std::int64_t Find() {
    d4tagSelect(*checks_, d4tag(*checks_, "CHXNUMBER"));
    std::int64_t sum = 0;
    for (const std::string& number : workload_.numbers) {
      Require(d4seek(*checks_, number), "a seek");
      sum = MixCurrent(sum);
    }
    return sum;
  }

  std::int64_t Walk() {
    d4tagSelect(*checks_, d4tag(*checks_, "CHXNUMBER"));
    d4readAhead(*checks_, true);
    std::int64_t sum = 0;
    int result = d4top(*checks_);
    for (; result == kSuccess; result = d4skip(*checks_, 1)) sum = MixCurrent(sum);
    d4readAhead(*checks_, false);
    Require(result == kEof ? int{kSuccess} : result, "the walk");
    return sum;
  }

  std::int64_t Sum() {
    d4tagSelect(*checks_, nullptr);
    d4readAhead(*checks_, true);
    std::int64_t sum = 0;
    int result = d4top(*checks_);
    for (; result == kSuccess; result = d4skip(*checks_, 1)) {
      if (Bytes(kStatus).front() != 'O' || d4deleted(*checks_)) continue;
      const long period =
          f4long(*fields_[kYear]) * 10000 + f4long(*fields_[kMonth]) * 100 + f4long(*fields_[kDay]);
      if (period <= workload_.last_period) sum += Cents();
    }
    d4readAhead(*checks_, false);
    Require(result == kEof ? int{kSuccess} : result, "the sum");
    return sum;
  }

  std::int64_t Post() {
    for (const Check& check : posts_) {
      Require(code4unitBegin(*code_), "begin");
      Append(check);
      Require(d4appendStart(*references_), "a blank record");
      f4assignNVB(*reference_fields_[0], check.file_number);
      f4assignNVB(*reference_fields_[1], "FIRST");
      f4assignNVB(*reference_fields_[2], "C");
      f4assignNVB(*reference_fields_[3], check.number);
      Require(d4append(*references_), "an append");
      Require(code4unitCommit(*code_), "commit");
    }
    return static_cast<std::int64_t>(posts_.size());
  }

  static constexpr std::size_t kNumber = 0;
  static constexpr std::size_t kAmount = 6;
  static constexpr std::size_t kMonth = 7;
  static constexpr std::size_t kYear = 8;
  static constexpr std::size_t kStatus = 11;
  static constexpr std::size_t kDay = 16;

  std::string folder_;
  const Workload& workload_;
  testing::EnginePorts ports_;
  decltype(code4initVB(std::declval<const EngineSetup&>())) code_;
  std::vector<Check> posts_;
  std::uint32_t next_post_ = kFirstPosted;
  Data4* checks_ = nullptr;
  Data4* references_ = nullptr;
  std::array<Field4*, kCheckFields.size()> fields_{};
  std::array<Field4*, kReferenceFields.size()> reference_fields_{};
};

}  // namespace

std::unique_ptr<CheckStore> MakeEngineStore(const std::string& folder, const Workload& workload) {
  return std::make_unique<EngineStore>(folder, workload);
}

std::string EngineTablePath(const std::string& folder) {
  return folder + "/ESCROW_CHECKS_FIRST.DBF";
}

}  // namespace tallwick::bench
