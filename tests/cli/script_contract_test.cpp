// What scripts rely on beside the results: how the words of a command line are read, which questions a
// command answers itself, the exit status where tables are damaged, and output that nobody can take.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/cli/run_escrowctl.h"

namespace tallwick::testing {
namespace {

using Json = nlohmann::json;

// A company with the bank FNT and its check 1001.
class ScriptContract : public ::testing::Test {
 protected:
  ScriptContract() {
    escrowctl_.Run("init");
    escrowctl_.Run("bank add FNT BANKNAME=First BANKACCTMO=3 BANKACCTDA=15 BANKACCTYR=2024");
    EXPECT_EQ(Run("check post 1001" + kItem + kPayee).status, 0);
  }

  RunResult Run(const std::string& arguments) const {
    return escrowctl_.Run("--json --bank FNT " + arguments);
  }
  Json Do(const std::string& arguments) const { return Run(arguments).Json(); }
  // Writes over 64 bytes, by which no table or index is read any more.
  void Spoil(const std::string& name, std::streamoff offset = 0) const {
    std::fstream file(escrowctl_.Data(name), std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(offset);
    file << std::string(64, '\xA5');
  }

  const std::string kItem = " --dated 3/15/2024 --amount 5 --file 24-1 --period 3/15/2024";
  const std::string kPayee = " --payee Smith";
  Escrowctl escrowctl_;
};

// Neither the next word nor an option is ever taken for the value that an option lacks.
TEST_F(ScriptContract, ReadsWordsAsTheyWereWritten) {
  const struct {
    std::string arguments;
    int status;
  } kCases[] = {
      {"check void 1001 --reason --stmt 3/16/2024", 2},
      {"check post 1002 --payee --handwritten" + kItem, 2},
      {"check post 1002 --payee --" + kItem, 2},
      {"--user= --security=on check list", 1},  // security stays on: no login, no bank
      {"check clear 1001", 2},
      {"check stop 1001 --reason Lost", 2},
      {"table append ESCROW_NOTES '[NOTEFILENO=a,NOTETEXT=b]'", 1},
      {"demo --seed -1", 2},
      {"demo --seed=", 2},
  };
  const Json before = Do("check show 1001")["fields"];
  for (const auto& one : kCases) EXPECT_EQ(Run(one.arguments).status, one.status) << one.arguments;
  EXPECT_EQ(Do("check show 1001")["fields"], before);

  EXPECT_EQ(Do("check post 1002 --payee=--handwritten" + kItem)["fields"]["CHXPAYEE"], "--handwritten");
  EXPECT_EQ(Do("check post 1003 --payee '[A,B]' --addr1= --addr2=Suite" + kItem)["fields"]["CHXPAYEE"],
            "[A,B]");
  EXPECT_EQ(Do("check show 1003")["fields"]["CHXADDR2"], "Suite");
  const Json voided = Do("check void 1001 --reason= --stmt=3/16/2024")["fields"];
  EXPECT_EQ(voided["CHXSREASON"], "");
  EXPECT_EQ(voided["CHXSTMTDA"], 16);
  const std::string deposit = "deposit post --dated 3/15/2024 --period 3/15/2024 --item ";
  EXPECT_EQ(Do(deposit + "'[24-1:5:x,24-2:6:y]'")["fields"]["DEPOITMNOS"], 1);
  const Json no_sequence = Do(deposit + "24-1:5:x --seq ''");
  EXPECT_EQ(no_sequence["messages"].back()["text"], "Sequence Number Required ...");
}

TEST_F(ScriptContract, HelpAndErrorsNameTheCommand) {
  EXPECT_NE(escrowctl_.RunPlain("bank add --help").out.find("Usage: escrowctl bank add"), std::string::npos);
  EXPECT_NE(Run("bank add").err.find("(escrowctl bank add --help tells more)"), std::string::npos);
}

// A command is the answer to the question whether it is meant.
TEST_F(ScriptContract, AsksNothingThatTheCommandAnswers) {
  // What a damaged table asks takes nothing from that.
  const std::string wires = ReadWhole(escrowctl_.Data("ESCROW_WIRES_FNT.CDX"));
  Spoil("ESCROW_WIRES_FNT.CDX");
  EXPECT_NE(Run("check remove 1001").status, 0);
  escrowctl_.Write("data/ESCROW_WIRES_FNT.CDX", wires);
  EXPECT_EQ(Do("--answer No check remove 1001")["removed"], false);
  EXPECT_EQ(Do("check remove 1001")["removed"], true);
  ASSERT_EQ(Run("check post 0" + kItem + kPayee).status, 0);
  EXPECT_EQ(Do("check remove 0")["removed"], false);
}

TEST_F(ScriptContract, FindsCountedNumbersInTheirTag) {
  EXPECT_EQ(Do("table seek ESCROW_CHECKS_FNT CHXNUMBER 1001")["recno"], 1);
  EXPECT_EQ(Do("table seek ESCROW_CHECKS_FNT CHXNUMBER 100")["found"], false);
}

TEST_F(ScriptContract, EndsWithThreeWhereATableDoesNotOpen) {
  ASSERT_EQ(Run("voucher post 41 --reason Fees" + kItem + kPayee).status, 0);
  const std::string check = "check post 1002 --voucher 41" + kItem + kPayee;
  const std::string deposit = "deposit post --dated 3/15/2024 --period 3/15/2024 --item 24-1:5:x";
  const struct {
    const char* file;
    std::string command;
  } kCases[] = {{"ESCROW_VOUCHERS_FNT.DBF", check},
                {"ESCROW_DEPOXRFS_FNT.DBF", deposit},
                {"ESCROW_DEPOXRFS_FNT.DBF", "check remove 1001"},
                {"ESCROW_WIRES_FNT.CDX", "recon --statement 3/20/2024 --balance 0"}};
  for (const auto& one : kCases) {
    const std::string whole = ReadWhole(escrowctl_.Data(one.file));
    Spoil(one.file);
    EXPECT_EQ(Run(one.command).status, 3) << one.command;
    escrowctl_.Write(std::string("data/") + one.file, whole);
  }
  EXPECT_EQ(Run("--security on check post 1002" + kItem + kPayee).status, 1);
  std::filesystem::remove(escrowctl_.Data("ESCROW_VOUCHERS_FNT.DBF"));
  EXPECT_EQ(Run("--answer No " + check).status, 3);
}

// A number that could not be read is not printed either.
TEST_F(ScriptContract, GivesNoNextNumberFromADamagedIndex) {
  Spoil("ESCROW_CHECKS_FNT.CDX", 8192);
  const RunResult next = Run("check next");
  EXPECT_EQ(next.status, 1);
  EXPECT_FALSE(next.Json().contains("next")) << next.out;
  EXPECT_EQ(next.Json()["messages"][0]["title"], "Read Database");
}

// What was posted stays posted, and no table takes the place of an output that is closed.
TEST_F(ScriptContract, SaysWhenItsOutputIsNotTaken) {
  for (const std::string output : {"/dev/full", "&-"}) {
    const std::string number = output == "&-" ? "1002" : "1003";
    const std::string err = escrowctl_.Data("err.txt");
    const std::string line = "'" TALLWICK_BIN_DIR "/escrowctl' --data '" + escrowctl_.Data() +
                             "' --bank FNT check post " + number + kItem + kPayee + " >" + output + " 2>'" +
                             err + "'";
    EXPECT_EQ((std::system(line.c_str()) >> 8) & 0xFF, 1) << output;
    EXPECT_NE(ReadWhole(err).find("look before you repeat it"), std::string::npos) << ReadWhole(err);
    EXPECT_EQ(Run("check show " + number).status, 0) << output;
  }
  EXPECT_EQ(Do("verify")["ok"], true);
}

TEST_F(ScriptContract, ReconKeepsItsStatusBesideTheUpdate) {
  const std::string recon = "recon --statement 3/20/2024 --balance 5 --beginning 5 ";
  EXPECT_FALSE(Do(recon).contains("update"));
  const Json updated = Do(recon + "--update");
  EXPECT_EQ(updated["status"], "Account Balanced to a Zero Difference...");
  EXPECT_EQ(updated["update"], "Updated as Reconciled for 3-20-2024 ...");
}

TEST_F(ScriptContract, ScriptsNameBanksAndUsersWithBlanks) {
  ASSERT_EQ(Run("bank add 'A B' BANKNAME=Blank").status, 0);
  const RunResult played = escrowctl_.Run(
      "drive < '" +
      escrowctl_.Write("script.txt", "\xEF\xBB\xBF# kept by an editor\nuser JOHN DOE\nuser\nbank A B\n") +
      "'");
  EXPECT_EQ(played.status, 0) << played.out;
  const std::string open = escrowctl_.Write("open.txt", "open frmEditWiresPost");
  EXPECT_EQ(escrowctl_.Run("--json --bank NOPE drive '" + open + "'").Json()["lines"].back(),
            "error line 1: the bank \"NOPE\" is not selected");
  const std::string longest = escrowctl_.Write("long.txt", std::string(100'000, 'x'));
  EXPECT_LT(escrowctl_.Run("drive '" + longest + "'").err.size(), 400U);
}

// Nothing is written behind 800 blocks of 512 bytes: the demo's check table is longer, the journal is not.
const char* const kLimit = "ulimit -f 800; trap '' XFSZ; ";
const char* const kDemoItem =
    " --dated 03/15/2024 --payee SMITH --amount 5 --file 24-0117 --period 12/15/2030";

// A post stands once it is in the journal. Where the tables can not be written after that, nor read, it is told
// as done, and no number is proposed from what was not read; a repeated command would post it twice.
TEST(StandingPost, TellsAPostThatStandsAsPosted) {
  Escrowctl escrowctl;
  ASSERT_EQ(escrowctl.Run("demo").status, 0);
  const std::string script = escrowctl.Write("post.txt", R"(open frmEditChecksPost Posting
set txtCheckNumber 90002
set txtCheckPayee SMITH
set txtCheckAmount 5
set txtCheckFileNumber 24-0117
set txtCheckAcctPeriod 12/15/2030
click cmdOk
show txtCheckNumber txtCheckPayee lblLastCheckNumber
)");
  ASSERT_GT(ReadWhole(escrowctl.Data("ESCROW_CHECKS_FNT.DBF")).size(), 800U * 512);
  const auto run = [&](const std::string& before, const std::string& arguments) {
    escrowctl.before = before;
    return escrowctl.Run("--json --bank FNT " + arguments);
  };
  const RunResult posted = run(kLimit, "check post 90001" + std::string(kDemoItem));
  EXPECT_EQ(posted.status, 0) << posted.out;
  EXPECT_EQ(posted.Json()["posted"], true) << posted.out;
  EXPECT_NE(posted.err.find("do not post it again"), std::string::npos) << posted.err;
  EXPECT_NE(posted.err.find("have the disk and the network seen to"), std::string::npos) << posted.err;
  EXPECT_EQ(run("", "check show 90001").Json()["fields"]["CHXSTATUS"], "O");

  EXPECT_EQ(run(kLimit, "check void 90001 --reason x --stmt 12/15/2030").status, 0);
  EXPECT_EQ(run("", "check show 90001").Json()["fields"]["CHXSTATUS"], "V");

  escrowctl.before = kLimit;
  const RunResult driven = escrowctl.Run("--bank FNT drive '" + script + "'");
  EXPECT_NE(driven.out.find("txtCheckNumber = \"\"\ntxtCheckPayee = \"\"\nlblLastCheckNumber = \"Last Check "
                            "Number: not known\""),
            std::string::npos)
      << driven.out << driven.err;
  EXPECT_EQ(run("", "check show 90002").Json()["fields"]["CHXSTATUS"], "O");
}

// A unit that waits because the disk refuses: a copy in the table's place would lose it, and nothing is said to be
// done before it is.
TEST(StandingPost, LetsAWaitingUnitWaitUntilTheDiskTakesIt) {
  Escrowctl escrowctl;
  ASSERT_EQ(escrowctl.Run("demo").status, 0);
  escrowctl.before = kLimit;
  ASSERT_EQ(escrowctl.Run("--bank FNT check post 90001" + std::string(kDemoItem)).status, 0);
  const RunResult listed = escrowctl.Run("bank list");
  EXPECT_EQ(listed.status, 3);
  EXPECT_NE(listed.err.find("have the disk and the network seen to, and try again."), std::string::npos)
      << listed.err;
  for (const char* command : {"verify", "mend"}) {
    const std::string said = escrowctl.Run(command).out;
    EXPECT_NE(said.find("(-120).  The disk or the network refuses."), std::string::npos) << said;
    EXPECT_EQ(said.find("Restore the table"), std::string::npos) << said;
    EXPECT_EQ(said.find("Done:"), std::string::npos) << said;
  }
  escrowctl.before.clear();
  EXPECT_NE(escrowctl.Run("mend").out.find("brings the waiting units to the tables"), std::string::npos);
  EXPECT_EQ(escrowctl.Run("--bank FNT check show 90001").status, 0);
}

}  // namespace
}  // namespace tallwick::testing
