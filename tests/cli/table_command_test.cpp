// table and verify: support work on any table, and the faults that verify must find.
#include <gtest/gtest.h>

#include "tests/cli/run_escrowctl.h"

namespace tallwick::testing {
namespace {

using Json = nlohmann::json;

class TableCommand : public ::testing::Test {
 protected:
  TableCommand() {
    escrowctl_.Run("init");
    escrowctl_.Run("bank add FNT BANKNAME=First BANKACCTMO=3 BANKACCTYR=2024");
  }

  Json Do(const std::string& arguments) { return escrowctl_.Run("--json " + arguments).Json(); }
  // Changes bytes of a file behind the program's back.
  void Patch(const std::string& file, std::size_t offset, const std::string& bytes) {
    std::string whole = ReadWhole(escrowctl_.Data(file));
    ASSERT_LE(offset + bytes.size(), whole.size());
    whole.replace(offset, bytes.size(), bytes);
    std::ofstream(escrowctl_.Data(file), std::ios::binary) << whole;
  }
  std::size_t RecordOffset(const std::string& file, std::size_t record) {
    const std::string head = ReadWhole(escrowctl_.Data(file)).substr(0, 12);
    const auto at = [&](std::size_t place) {
      return static_cast<std::size_t>(static_cast<unsigned char>(head[place])) +
             std::size_t{256} * static_cast<unsigned char>(head[place + 1]);
    };
    return at(8) + (record - 1) * at(10);
  }

  Escrowctl escrowctl_;
};

TEST_F(TableCommand, AppendsChangesSeeksAndDumps) {
  const char* const kChecks = "ESCROW_CHECKS_FNT ";
  for (const char* values :
       {"CHXNUMBER=B CHXDATED=2024-03-15 CHXPAYEE=Peña CHXAMOUNT=-0.01",
        "CHXNUMBER=A CHXDATED=03/16/2024 CHXPAYEE='  x'", "CHXNUMBER=C CHXDATED=20240317 CHXFILENO=24-1"})
    ASSERT_EQ(Do("table append " + std::string(kChecks) + values)["error"], Json()) << values;
  const Json ordered = Do("table dump escrow_checks_fnt.dbf --tag CHXNUMBER")["records"];
  ASSERT_EQ(ordered.size(), 3u);
  EXPECT_EQ(ordered[0]["_recno"], 2);
  EXPECT_EQ(ordered[0]["CHXPAYEE"], "  x");  // leading blanks count
  EXPECT_EQ(ordered[0]["CHXDATED"], "2024-03-16");
  EXPECT_EQ(ordered[1]["CHXPAYEE"], "Peña");
  EXPECT_EQ(ordered[1]["CHXAMOUNT"], "-0.01");
  EXPECT_EQ(ordered[2]["CHXDATED"], "2024-03-17");

  EXPECT_EQ(Do("table seek ESCROW_CHECKS_FNT CHXPAYEE PE"), Json::parse(R"({"found":true,"recno":1})"));
  EXPECT_EQ(Do("table seek ESCROW_CHECKS_FNT CHXPAYEE PEX"), Json::parse(R"({"found":false,"recno":0})"));
  EXPECT_EQ(Do("table seek '" + escrowctl_.Data("ESCROW_CHECKS_FNT.DBF") + "' CHXDATED 20240317")["recno"],
            3);

  EXPECT_EQ(Do("table set ESCROW_CHECKS_FNT 1 CHXPAYEE=ZEBRA CHXDATED=")["fields"]["CHXDATED"], "");
  EXPECT_EQ(Do("table delete ESCROW_CHECKS_FNT 2")["recno"], 2);
  EXPECT_EQ(Do("table dump ESCROW_CHECKS_FNT")["records"].size(), 2u);
  const Json with_deleted = Do("table dump ESCROW_CHECKS_FNT --deleted")["records"];
  EXPECT_EQ(with_deleted.size(), 3u);
  EXPECT_EQ(with_deleted[1]["_deleted"], true);
  EXPECT_EQ(Do("table verify ESCROW_CHECKS_FNT")["ok"], true);
  EXPECT_EQ(Do("table pack ESCROW_CHECKS_FNT")["records"], 2);
  EXPECT_EQ(Do("table verify ESCROW_CHECKS_FNT")["ok"], true);
}

TEST_F(TableCommand, RefusesByFieldAndWritesNothing) {
  Do("table append ESCROW_CHECKS_FNT CHXNUMBER=1 CHXPAYEE=First CHXAMOUNT=5");
  const Json before = Do("table dump ESCROW_CHECKS_FNT --deleted");
  const struct {
    const char* arguments;
    int status;
    const char* reason;
  } kRefusals[] = {
      {"append ESCROW_CHECKS_FNT CHXNUMBER=1", 1, "did not take the record"},  // the number is taken
      {"append ESCROW_CHECKS_FNT CHXNUMBER=1234567890123", 1, "CHXNUMBER"},
      {"append ESCROW_CHECKS_FNT CHXNUMBER=2 CHXAMOUNT=1.005", 1, "CHXAMOUNT"},
      {"append ESCROW_CHECKS_FNT CHXNUMBER=2 CHXAMOUNT=12x", 1, "CHXAMOUNT"},
      {"append ESCROW_CHECKS_FNT CHXNUMBER=2 CHXDATED=2024-02-30", 1, "CHXDATED"},
      {"append ESCROW_CHECKS_FNT CHXNUMBER=2 CHXPAYEE=Łódź", 1, "CHXPAYEE"},
      {"append ESCROW_CHECKS_FNT CHXACCTMO=123", 1, "CHXACCTMO"},
      {"append ESCROW_CHECKS_FNT NOSUCH=1", 1, "NOSUCH"},
      {"set ESCROW_CHECKS_FNT 1 CHXPAYEE=Changed CHXAMOUNT=x", 1, "CHXAMOUNT"},
      {"set ESCROW_CHECKS_FNT 2 CHXPAYEE=x", 1, "no record 2"},
      {"set ESCROW_CHECKS_FNT 0 CHXPAYEE=x", 1, "no record 0"},
      {"set ESCROW_CHECKS_FNT 1", 2, ""},
      {"delete ESCROW_CHECKS_FNT 7", 1, "no record 7"},
      {"seek ESCROW_CHECKS_FNT NOTAG 1", 1, "NOTAG"},
      {"dump ESCROW_CHECKS_FNT --tag NOTAG", 1, "NOTAG"},
      {"info NOSUCHTABLE", 3, "NOSUCHTABLE"},
  };
  for (const auto& refusal : kRefusals) {
    const RunResult result = escrowctl_.Run(std::string("--json table ") + refusal.arguments);
    EXPECT_EQ(result.status, refusal.status) << refusal.arguments << result.out;
    EXPECT_TRUE(result.Json().contains("error")) << result.out;
    EXPECT_NE(result.err.find(refusal.reason), std::string::npos) << refusal.arguments << ": " << result.err;
  }
  EXPECT_EQ(Do("table dump ESCROW_CHECKS_FNT --deleted"), before);
}

// No way round the trail: who switches it off by the table stands in it too.
TEST_F(TableCommand, ChangesOfABankStandInItsTrail) {
  Do("--user RUTH table set ESCROW_BANKS 1 AUDITTRAIL=F BANKPHONE=555");
  Do("table set ESCROW_BANKS 1 BANKPHONE=556");
  Do("table delete ESCROW_BANKS 1");
  const std::string log = ReadWhole(escrowctl_.Data("Logs/FNT/Audit_Trail.log"));
  EXPECT_EQ(log,
            "[DATE: Mar 15, 2024 @ 09:30:00 AM][TX: Account Edit][REFERENCE: FNT][LOGIN: RUTH]"
            "[COMPUTER: FRONTDESK]\r\n[EDIT] txtBANKPHONE was:  now: 555\r\n"
            "[EDIT] chkGenAuditTrail was: Checked now: Unchecked\r\n");
}

// A damaged index is found, and reindexing mends it.
TEST_F(TableCommand, VerifyFindsWhatReindexMends) {
  for (int number = 10; number < 40; ++number)
    Do("table append ESCROW_CHECKS_FNT CHXNUMBER=" + std::to_string(number) + " CHXPAYEE=P" +
       std::to_string(number));
  Patch("ESCROW_CHECKS_FNT.DBF", RecordOffset("ESCROW_CHECKS_FNT.DBF", 5) + 1, "99");
  const RunResult damaged = escrowctl_.Run("--json table verify ESCROW_CHECKS_FNT");
  EXPECT_EQ(damaged.status, 1);
  EXPECT_EQ(damaged.Json()["ok"], false);
  bool named = false;
  const Json problems = damaged.Json()["problems"];
  for (const Json& problem : problems)
    named = named || (problem["record"] == 5 && problem["table"] == "ESCROW_CHECKS_FNT");
  EXPECT_TRUE(named) << damaged.out;
  EXPECT_EQ(Do("table reindex ESCROW_CHECKS_FNT")["completed"], true);
  EXPECT_EQ(Do("table verify ESCROW_CHECKS_FNT")["ok"], true);
}

// A damaged table: a question whose safe answer changes nothing, its exact text among the messages, status 3.
TEST_F(TableCommand, OpensNoDamagedTable) {
  std::filesystem::remove(escrowctl_.Data("ESCROW_CHECKS_FNT.CDX"));
  const RunResult missing = escrowctl_.Run("--json table info ESCROW_CHECKS_FNT");
  EXPECT_EQ(missing.status, 3);
  const Json box = missing.Json()["messages"][0];
  EXPECT_EQ(box["icon"], "critical");
  EXPECT_EQ(box["answer"], "No");
  EXPECT_NE(box["text"].get<std::string>().find("\r\rWould you like to try to rebuild?"), std::string::npos);
  EXPECT_EQ(escrowctl_.Run("--answer Yes table info ESCROW_CHECKS_FNT").status, 0);
  EXPECT_EQ(Do("table info ESCROW_CHECKS_FNT")["tags"].size(), 6u);
  Patch("ESCROW_XRFS.DBF", 8, std::string(4, '\xFF'));
  const RunResult broken = escrowctl_.Run("--json file 24-1");
  EXPECT_EQ(broken.status, 3);
  EXPECT_TRUE(broken.Json().contains("error"));
}

// What is damaged is shown as it stands, and a table that may not be written says so.
TEST_F(TableCommand, ShowsWhatIsStoredAndWhyItStays) {
  Do("table append ESCROW_CHECKS_FNT CHXNUMBER=1 CHXDATED=2024-03-15 CHXAMOUNT=12345.67 CHXACCTMO=10");
  std::string table = ReadWhole(escrowctl_.Data("ESCROW_CHECKS_FNT.DBF"));
  Patch("ESCROW_CHECKS_FNT.DBF", table.find("20240315"), "20241399");
  Patch("ESCROW_CHECKS_FNT.DBF", table.find("12345.67"), "  1e3   ");
  Patch("ESCROW_CHECKS_FNT.DBF", table.find("10", table.find("12345.67")), "**");
  const Json record = Do("table dump ESCROW_CHECKS_FNT")["records"][0];
  EXPECT_EQ(record["CHXDATED"], "20241399");
  EXPECT_EQ(record["CHXAMOUNT"], "1e3");
  EXPECT_EQ(record["CHXACCTMO"], "**");
}

// A record that disagrees with its tag must neither count in a ledger nor send its walk round and round.
TEST_F(TableCommand, LedgerOfADamagedTableIsRefused) {
  for (int number = 1; number <= 3; ++number)
    Do("--bank FNT check post " + std::to_string(number) +
       " --dated 3/15/2024 --payee P --amount 5 --file 24-1 --period 3/2024");
  const std::string table = ReadWhole(escrowctl_.Data("ESCROW_CHECKS_FNT.DBF"));
  Patch("ESCROW_CHECKS_FNT.DBF", table.find("24-1"), "99-9");
  const RunResult ledger = escrowctl_.Run("ledger 24-1");
  EXPECT_EQ(ledger.status, 3);
  EXPECT_NE(ledger.err.find("ESCROW_CHECKS_FNT and its index do not agree"), std::string::npos) << ledger.err;
  Do("table reindex ESCROW_CHECKS_FNT");
  EXPECT_EQ(Do("ledger 24-1")["banks"][0]["totalChecksCount"], 2);
}

// A table that does not open is one problem, not one for each reference into it.
TEST_F(TableCommand, VerifyNamesATableThatDoesNotOpenOnce) {
  Do("--bank FNT check post 1 --dated 3/15/2024 --payee P --amount 5 --file 24-1 --period 3/2024");
  std::filesystem::remove(escrowctl_.Data("ESCROW_CHECKS_FNT.CDX"));
  const Json verified = Do("verify");
  ASSERT_EQ(verified["problems"].size(), 1u);
  EXPECT_EQ(verified["problems"][0]["table"], "ESCROW_CHECKS_FNT");
  EXPECT_NE(verified["problems"][0]["problem"].get<std::string>().find("does not open"), std::string::npos);
  EXPECT_TRUE(verified["messages"].empty());  // no question whether it shall be rebuilt
}

// Each fault between tables is a problem that names table and record.
TEST_F(TableCommand, VerifyHoldsTheCompanyTogether) {
  const char* const kPost =
      "--bank FNT check post 1 --dated 3/15/2024 --payee P --amount 5 --file 24-1 --period 3/2024";
  ASSERT_EQ(escrowctl_.Run(kPost).status, 0);
  ASSERT_EQ(Do("verify"), Json::parse(R"({"ok":true,"problems":[]})"));
  const struct {
    const char* fault;
    const char* table;
    const char* problem;
  } kFaults[] = {
      {"table append ESCROW_XRFS XRFSFILENO=24-2 XRFSBANKID=FNT XRFSTXTYPE=W XRFSTXREFN=9", "ESCROW_XRFS",
       "names \"W 9\" of file \"24-2\" in bank FNT, which is not there: compare with the paper, and enter "
       "the transaction again where it was real"},
      {"table append ESCROW_XRFS XRFSFILENO=24-2 XRFSBANKID=OLD XRFSTXTYPE=C XRFSTXREFN=9", "ESCROW_XRFS",
       "names bank \"OLD\", which is not there: enter the bank again, if its account is still in use"},
      {"table append ESCROW_DEPOXRFS_FNT DXRFFILENO=24-1 DXRFDATED=20240315 DXRFSEQNC=' 1' DXRFITEMNO=16",
       "ESCROW_DEPOXRFS_FNT",
       "names item 16 of deposit 20240315 1 of file \"24-1\", which is not there: compare with the paper, "
       "and enter the transaction again where it was real"},
      {"table append ESCROW_VOUCHERS_FNT VCHRNUMBER='           8' VCHRFILENO=24-1", "ESCROW_BANKS",
       "the voucher counter of bank FNT is 0, below voucher 8"},
      {"table append ESCROW_DEPOSITS_FNT DEPODATED=20240315 DEPOSEQNC=' 1' DEPOFILE2=24-1",
       "ESCROW_DEPOSITS_FNT", "item 2 of deposit 20240315 1 of file \"24-1\" has no deposit cross-reference"},
      {"table set ESCROW_CHECKS_FNT 1 CHXFILENO=24-7", "ESCROW_CHECKS_FNT",
       "check 1 of file \"24-7\" has no cross-reference"},
  };
  for (const auto& one : kFaults) {
    ASSERT_FALSE(Do(one.fault).contains("error")) << one.fault;
    const RunResult result = escrowctl_.Run("--json verify");
    EXPECT_EQ(result.status, 1);
    bool found = false;
    const Json problems = result.Json()["problems"];
    for (const Json& problem : problems)
      found = found || (problem["table"] == one.table && problem["problem"] == one.problem);
    EXPECT_TRUE(found) << one.problem << "\n" << result.out;
  }
}

}  // namespace
}  // namespace tallwick::testing
