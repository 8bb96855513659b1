// The contract of the command line: exit status, one JSON object, boxes and their answers, and the commands
// by which a company is made, posted to and looked at.
#include <gtest/gtest.h>

#include <filesystem>

#include "core/system_ports.h"
#include "store/clsKVRData.h"
#include "tests/cli/run_escrowctl.h"
#include "tests/support/fakes.h"

namespace tallwick::testing {
namespace {

using Json = nlohmann::json;

const char* const kAddBank =
    "bank add FNT BANKNAME='First National Trust' BANKACCTMO=3 BANKACCTDA=15 BANKACCTYR=2024 BANKRECOMO=2 "
    "BANKRECODA=28 BANKRECOYR=2024";
const char* const kPost =
    "--bank FNT check post 1001 --dated 03/15/2024 --payee 'Smith Title Co' --amount '$1,250.00' --file "
    "24-0117 --period 3/15/2024 --addr1 '12 Main Street' --control JMK ";

// Each call and how it ends; with --json there is one object on standard output, whatever happens.
TEST(CommandLine, EndsWithItsStatusAndOneObject) {
  const struct {
    const char* arguments;
    int status;
  } kCases[] = {
      {"words 12.5", 0},
      {"words -- -5.25", 0},
      {"words twelve", 1},
      {"period parse 3/2024 --form month", 0},
      {"period parse 3/2024 --form week", 2},
      {"period parse", 2},
      {"", 2},
      {"cook books", 2},
      {"check", 2},
      {"check list", 2},                                  // no --data
      {"--data /nowhere/at/all check list --bank X", 3},  // no folder
      {"--data /nowhere/at/all table info X", 3},
      {"--today 2024-02-30 words 1", 2},
      {"--time 25:00:00 words 1", 2},
      {"--answer Perhaps words 1", 2},
      {"--answer OK --answer Cancel words 1", 0},
      {"words 1 --answer OK", 0},  // global options may stand behind the command
      {"--help", 0},
      {"table seek --help", 0},
      {"--version", 0},
  };
  const Escrowctl escrowctl;
  for (const auto& one : kCases) {
    EXPECT_EQ(escrowctl.RunPlain(one.arguments).status, one.status) << one.arguments;
    const RunResult result = escrowctl.RunPlain(std::string("--json ") + one.arguments);
    EXPECT_EQ(result.status, one.status) << one.arguments;
    ASSERT_TRUE(result.Json().is_object()) << one.arguments << ": " << result.out;
    EXPECT_EQ(result.Json().contains("error"), one.status != 0) << result.out;
    EXPECT_EQ(result.err.empty(), one.status == 0) << result.err;
  }
}

// While another workstation has the files for itself: who it is, and that the tables could not be opened.
TEST(CommandLine, SaysWhoHasTheFilesForMaintenance) {
  const Escrowctl escrowctl;
  escrowctl.Run("init");
  FakeClock clock;
  FakeWorkstation workstation;
  ScriptedBoxes boxes;
  clsKVRData store({clock, workstation, SystemFileSystem(), boxes, engine::SystemFiles()});
  ASSERT_TRUE(store.InitializeCodebase());
  ASSERT_EQ(store.TakeFolder(SystemFileSystem().HeldPath(escrowctl.Data()), "ESCROW_*.DBF"), 0);
  for (const char* command : {"verify", "mend", "bank list", "--answer OK copy"}) {
    const RunResult result = escrowctl.Run(command);
    EXPECT_EQ(result.status, 3) << command;
    EXPECT_NE(result.err.find("Exclusive Access Mode - Try again later...  FRONTDESK2 (process 4711) has"),
              std::string::npos)
        << command << ": " << result.err;
  }
  store.ReleaseFolder();
  EXPECT_EQ(escrowctl.Run("verify").status, 0);
}

// The number of the next check is no business of anybody while nothing may be posted.
TEST(CommandLine, KeepsTheNextCheckNumberWhileTransactionsAreLocked) {
  const Escrowctl escrowctl;
  escrowctl.Run("init");
  ASSERT_EQ(escrowctl.Run(kAddBank).status, 0);
  const std::string before = escrowctl.Run("--bank FNT check next").out;
  escrowctl.Write("data/ESCROW_TRANSACTIONS.SWITCH", "F");
  const RunResult result = escrowctl.Run("--bank FNT check next --set 20000");
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find("Transactions Locked"), std::string::npos) << result.err;
  EXPECT_EQ(escrowctl.Run("--bank FNT check next").out, before);
}

// While security is on each command asks for its right, and other banks than the user's are not there. An
// unknown login has nothing.
TEST(CommandLine, RefusesWhatIsNotGranted) {
  const Escrowctl escrowctl;
  escrowctl.Run("init");
  ASSERT_EQ(escrowctl.Run(kAddBank).status, 0);
  ASSERT_EQ(escrowctl.Run("bank add LSB BANKNAME=Savings BANKACCTMO=3 BANKACCTYR=2024").status, 0);
  const std::string none(62, '1');
  ASSERT_EQ(escrowctl.Run("user add ANN --name Ann --group User --banks LSB --rights " + none).status, 0);
  ASSERT_EQ(escrowctl.Run("user add RUTH --name Ruth --group Administrator").status, 0);
  ASSERT_EQ(escrowctl.Run(kPost).status, 0);
  const struct {
    const char* command;
    const char* refusal;
    const char* found = "";  // what ANN learns all the same
  } kCases[] = {
      {"bank add NEW BANKNAME=x", "do not have the right"},
      {"bank set LSB BANKNAME=x", "do not have the right"},
      {"table info USERS", "do not have the right"},
      {"table dump USERS", "do not have the right"},
      {"table seek ESCROW_BANKS BANKCODE FNT", "do not have the right"},
      {"table verify ESCROW_BANKS", "do not have the right"},
      {"table append ESCROW_BANKS.DBF BANKCODE=X", "do not have the right"},
      {"table set ESCROW_BANKS.DBF 1 BANKNAME=x", "do not have the right"},
      {"table delete ESCROW_BANKS.DBF 1", "do not have the right"},
      {"table pack ESCROW_BANKS.DBF", "do not have the right"},
      {"verify", "do not have the right"},
      {"mend", "do not have the right"},
      {"mend --dry-run", "do not have the right"},
      {"copy", "do not have the right"},
      {"restore", "do not have the right"},
      {"maintain rebuild", "do not have the right"},
      {"maintain pack", "do not have the right"},
      {"maintain versions", "do not have the right"},
      {"trial-balance", "do not have the right"},
      {"user list", "Only an administrator"},
      {"user show RUTH", "Only an administrator"},
      {"user right RUTH 51", "Only an administrator"},
      {"user set ANN --rights 0", "Only an administrator"},
      {"bank show FNT", "that this user may work with"},
      {"--bank FNT check list", "that this user may work with"},
      {"--bank FNT audit", "that this user may work with"},
      {"user show ANN", "", "\"LOGIN\":\"ANN\""},
      {"user right ANN 51", "", "\"granted\":false"},
      {"bank show LSB", "", "Savings"},
      {"bank list", "", "Savings"},
      {"--bank LSB check list", "", "\"checks\":[]"},
  };
  for (const auto& one : kCases) {
    for (const std::string user : {"ANN", "NOBODY"}) {
      const RunResult result =
          escrowctl.Run("--json --answer OK --security on --user " + user + " " + one.command);
      const std::string what = user + ": " + one.command + "\n" + result.out + result.err;
      EXPECT_EQ(result.out.find("1001"), std::string::npos) << what;
      EXPECT_EQ(result.out.find("Trust"), std::string::npos) << what;
      if (*one.refusal == '\0' && user == "NOBODY") continue;
      EXPECT_EQ(result.status, *one.refusal == '\0' ? 0 : 1) << what;
      EXPECT_NE(result.err.find(one.refusal), std::string::npos) << what;
      EXPECT_NE(result.Json().dump().find(one.found), std::string::npos) << what;
    }
  }
  EXPECT_EQ(escrowctl.Run("bank show LSB").out.find("= x"), std::string::npos);
  EXPECT_EQ(escrowctl.Run("--security on --user RUTH --bank LSB check list").status, 1) << "no bank of hers";
  for (const char* command : {"bank show FNT", "bank set FNT BANKNAME=Erie", "table dump USERS",
                              "user show ANN", "verify", "trial-balance", "--answer OK copy"})
    EXPECT_EQ(escrowctl.Run(std::string("--security on --user RUTH ") + command).status, 0) << command;
}

TEST(CommandLine, SpeaksWordsAndPeriods) {
  const Escrowctl escrowctl;
  EXPECT_EQ(escrowctl.RunPlain("words 1234.56").out,
            "One Thousand Two Hundred Thirty Four dollars & Fifty Six cents \n");
  EXPECT_EQ(escrowctl.RunPlain("--json words -- -0.50").Json()["words"], "Negative dollars & Fifty cents ");
  EXPECT_EQ(escrowctl.RunPlain("--json period parse '3 15 24'").Json(),
            Json::parse(R"({"month":3,"day":15,"year":2024,"key":20240315,"valid":true,"short":"3-15-2024",
                            "long":"March 15, 2024"})"));
  const Json other_form = escrowctl.RunPlain("--json period parse 3/15/2024 --form month").Json();
  EXPECT_EQ(other_form["valid"], false);
  EXPECT_EQ(other_form["key"], 20240315);

  escrowctl.Run(std::string("init"));
  escrowctl.Run("bank add LSB BANKNAME=Savings BANKACCTMO=3 BANKACCTYR=2024");
  EXPECT_EQ(escrowctl.Run("--json --bank LSB period parse 3/2024").Json()["valid"], true);
  EXPECT_EQ(escrowctl.Run("--json --bank LSB period parse 3/15/2024").Json()["valid"], false);
}

TEST(CommandLine, MakesWhatIsMissingOnce) {
  const Escrowctl escrowctl;
  const Json made = escrowctl.Run("--json init").Json()["created"];
  EXPECT_EQ(made.size(), 4u);
  EXPECT_EQ(escrowctl.Run("--json init").Json()["created"], Json::array());
}

TEST(Banks, AreWrittenByFieldNameOrNotAtAll) {
  const Escrowctl escrowctl;
  escrowctl.Run("init");
  const Json added =
      escrowctl.Run(std::string("--json ") + kAddBank + " BANKBEGBAL=-0.01 BANKVCHRNO=7").Json();
  EXPECT_EQ(added["fields"]["BANKCODE"], "FNT");
  EXPECT_EQ(added["fields"]["BANKBEGBAL"], "-0.01");
  EXPECT_EQ(added["fields"]["BANKVCHRNO"], 7);
  EXPECT_EQ(added["fields"]["BANKDTETYP"], 1);
  const Json before = escrowctl.Run("--json bank show FNT").Json();

  // Each is refused with the reason, and changes nothing.
  const struct {
    const char* arguments;
    int status;
    const char* reason;
  } kRefusals[] = {
      {"bank add FNT BANKNAME=Twice", 1, "already"},
      {"bank add .. BANKNAME=Outside", 1, ""},
      {"bank add 'A/B'", 1, ""},
      {"bank add NEW BANKBEGBAL=12.345", 1, "BANKBEGBAL"},
      {"bank add NEW BANKNAME='Łódź Bank'", 1, "BANKNAME"},
      {"bank add NEW NOSUCH=1", 1, "NOSUCH"},
      {"bank add NEW BANKNAME", 2, "FIELD=VALUE"},
      {"bank add NEW BANKCODE=XYZ", 1, "BANKCODE"},
      {"bank set FNT BANKCODE=XYZ", 1, "BANKCODE"},
      {"bank set FNT BANKNAME=Kept BANKRECOMO=13", 1, "BANKRECOMO"},
      {"bank set FNT BANKACCTDA=-1", 1, "BANKACCTDA"},
      {"bank set FNT BANKPHONE=12345678901234567890", 1, "BANKPHONE"},
      {"bank set FNT BANKNAME=Kept BANKACCTMO=x", 1, "BANKACCTMO"},
      {"bank set NONE BANKNAME=x", 1, "NONE"},
      {"bank show NONE", 1, "NONE"},
  };
  for (const auto& refusal : kRefusals) {
    const RunResult result = escrowctl.Run(std::string("--json ") + refusal.arguments);
    EXPECT_EQ(result.status, refusal.status) << refusal.arguments << result.out;
    EXPECT_NE(result.err.find(refusal.reason), std::string::npos) << refusal.arguments << ": " << result.err;
  }
  EXPECT_EQ(escrowctl.Run("--json bank show FNT").Json(), before);
  EXPECT_EQ(escrowctl.Run("--json bank list").Json()["banks"].size(), 1u);
  EXPECT_EQ(escrowctl.Run("table info ESCROW_CHECKS_NEW").status, 3);  // no tables of a refused bank

  EXPECT_EQ(escrowctl.Run("--json bank set FNT BANKNAME='Erie Trust' PPUsePP=T").Json()["fields"]["PPUSEPP"],
            "T");
}

TEST(Checks, ArePostedRefusedAndListed) {
  const Escrowctl escrowctl;
  escrowctl.Run("init");
  escrowctl.Run(kAddBank);
  const RunResult posted = escrowctl.Run(std::string("--json ") + kPost);
  ASSERT_EQ(posted.status, 0) << posted.out;
  const Json fields = posted.Json()["fields"];
  EXPECT_EQ(posted.Json()["posted"], true);
  EXPECT_EQ(fields["CHXAMOUNT"], "1250.00");
  EXPECT_EQ(fields["CHXDATED"], "2024-03-15");
  EXPECT_EQ(fields["CHXSTATUS"], "O");
  EXPECT_EQ(fields["CHXACCTDA"], 15);
  EXPECT_EQ(posted.Json()["messages"],
            Json::parse(R"([{"icon":"information","title":"Post Checks - First National Trust",
                             "text":"24-0117 is not on file...","answer":"OK"}])"));
  EXPECT_EQ(posted.err, "[information] Post Checks - First National Trust: 24-0117 is not on file...\n");
  EXPECT_EQ(escrowctl.Run("--json --bank FNT check show 1001").Json()["fields"], fields);

  // The screen's refusals reach the command, texts exact.
  const RunResult twice = escrowctl.Run(std::string("--json ") + kPost + "--payee Again");
  EXPECT_EQ(twice.status, 2) << twice.out;  // an option given twice
  const std::string other =
      "--json --bank FNT check post 1002 --dated 03/15/2024 --payee Smith --amount 5 --file 24-0117 "
      "--period ";
  const RunResult bad_period = escrowctl.Run(other + "3/2024");
  EXPECT_EQ(bad_period.status, 1);
  EXPECT_EQ(bad_period.Json()["posted"], false);
  EXPECT_EQ(
      bad_period.Json()["messages"].back()["text"],
      "The escrow period 3/2024 is invalid.\rYou must specify the period as a month, day and year seperated "
      "by - / , . or a space.");
  EXPECT_NE(bad_period.err.find("is invalid.\n    You must"), std::string::npos) << bad_period.err;
  EXPECT_EQ(escrowctl.Run(other + "2/28/2024").status, 1);
  EXPECT_EQ(escrowctl.Run(std::string("--json ") + kPost).status, 1);  // the number is posted already
  EXPECT_EQ(escrowctl.Run("check list").status, 2);                    // no bank named
  EXPECT_EQ(escrowctl.Run("--bank NONE check list").status, 1);

  EXPECT_EQ(escrowctl.Run(other + "3/16/2024 --handwritten").Json()["fields"]["CHXSTATUS"], "H");
  const auto numbers = [&](const std::string& options) {
    std::string found;
    const Json checks = escrowctl.Run("--json --bank FNT check list " + options).Json()["checks"];
    for (const Json& check : checks) found += check["CHXNUMBER"].get<std::string>() + " ";
    return found;
  };
  EXPECT_EQ(numbers(""), "1001 1002 ");
  EXPECT_EQ(numbers("--order payee"), "1002 1001 ");
  EXPECT_EQ(numbers("--order amount"), "1002 1001 ");
  EXPECT_EQ(numbers("--status h"), "1002 ");

  const Json file = escrowctl.Run("--json file 24-0117").Json();
  EXPECT_EQ(file, Json::parse(R"({"banks":["FNT"],"checks":2,"deposits":0,"wires":0,"vouchers":0})"));
  const Json ledger = escrowctl.Run("--json ledger 24-0117").Json();
  EXPECT_EQ(ledger["fileBalance"], "-1255.00");
  EXPECT_EQ(ledger["condition"], "Over Drawn");
  EXPECT_EQ(ledger["multipleBanks"], "No");
  EXPECT_EQ(ledger["banks"][0]["totalChecksCount"], 2);
  EXPECT_EQ(escrowctl.Run("--json ledger 24-9999").Json()["banks"], Json::array());
}

// The command and the script go through the same screen: not one byte may differ.
TEST(Checks, GoToPaperTogetherOrNotAtAll) {
  const Escrowctl escrowctl;
  escrowctl.Run("init");
  ASSERT_EQ(escrowctl.Run(std::string(kAddBank) + " BANKACCTNO=00123456 BankABANo=041200051").status, 0);
  const std::string post = kPost;
  for (const char* number : {"1001", "1002", "1003"})
    ASSERT_EQ(escrowctl.Run(std::string(post).replace(post.find("1001"), 4, number)).status, 0);
  const std::string pdf = escrowctl.Data("checks.pdf");
  const std::string print = "--json --bank FNT check print 1001-1005 --layout three --pdf '" + pdf + "'";
  RunResult result = escrowctl.Run(print);
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.out.find("its last digit does not fit"), std::string::npos) << result.out;
  EXPECT_EQ(ReadWhole(pdf), "");
  ASSERT_EQ(escrowctl.Run("bank set FNT BankABANo=041200050").status, 0);
  const std::string elsewhere =
      "--bank FNT check print 1001 --pdf '" + escrowctl.Data("no folder/x.pdf") + "'";
  EXPECT_EQ(escrowctl.Run(elsewhere).status, 1);
  result = escrowctl.Run(print);
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.Json()["printed"], Json({"1001", "1002", "1003"}));
  EXPECT_EQ(result.Json()["leftOut"], Json({"1004-1005"}));
  EXPECT_EQ(ReadWhole(pdf).rfind("%PDF", 0), 0U);
  EXPECT_EQ(escrowctl.Run(print).status, 1) << "printed before, and nobody said Yes";
  EXPECT_EQ(escrowctl.Run("--answer Yes " + print).status, 0);
  EXPECT_EQ(escrowctl.Run("--bank FNT check print 1001 --pdf x.pdf --security on --user NOBODY").status, 1);
  result = escrowctl.Run("--bank FNT check layout --layout three");
  EXPECT_NE(result.out.find("CheckTops=0,88.9,177.8"), std::string::npos) << result.out;
  const std::string script =
      escrowctl.Write("print.txt",
                      "bank FNT\nopen frmEditChecksPost Posting\n"
                      "set txtCheckPayee Lucas County\nset txtCheckAmount 12.50\n"
                      "set txtCheckFileNumber 24-0117\nclick cmdPrint\nanswer Yes\nclose\n");
  result = escrowctl.Run("drive '" + script + "' --pdf '" + escrowctl.Data("screen.pdf") + "'");
  EXPECT_NE(result.out.find("Printed a Check but have NOT posted it."), std::string::npos) << result.out;
  EXPECT_EQ(ReadWhole(escrowctl.Data("screen.pdf")).rfind("%PDF", 0), 0U);
}

TEST(Checks, AreTheSameFromCommandAndScript) {
  const Escrowctl by_command;
  const Escrowctl by_script;
  for (const Escrowctl* escrowctl : {&by_command, &by_script}) {
    escrowctl->Run("init");
    escrowctl->Run(kAddBank);
  }
  ASSERT_EQ(by_command.Run(kPost).status, 0);
  const std::string script =
      by_script.Write("post.txt",
                      "bank FNT\nopen frmEditChecksPost Posting\n"
                      "set txtCheckNumber 1001\nset txtCheckDated 3-15-24\n"
                      "set txtCheckPayee Smith Title Co\nset txtCheckAmount 1250\n"
                      "set txtCheckAddr1 12 Main Street\nset txtCheckControl JMK\n"
                      "set txtCheckFileNumber 24-0117\nset txtCheckAcctPeriod 3 15 2024\n"
                      "click cmdOk\n");
  const RunResult drive = by_script.Run("--json drive '" + script + "'");
  ASSERT_EQ(drive.status, 0) << drive.out;
  EXPECT_EQ(drive.Json()["lines"][0], "> bank FNT");
  for (const char* file :
       {"ESCROW_CHECKS_FNT.DBF", "ESCROW_CHECKS_FNT.CDX", "ESCROW_XRFS.DBF", "ESCROW_XRFS.CDX"})
    EXPECT_EQ(ReadWhole(by_command.Data(file)), ReadWhole(by_script.Data(file))) << file;
}

TEST(Questions, TakeTheirAnswersInOrderElseTheSafeOne) {
  const Escrowctl escrowctl;
  escrowctl.Run("init");
  escrowctl.Run(kAddBank);
  escrowctl.Run("--bank FNT check post 0 --dated 3/15/2024 --payee x --amount 1 --file F --period 3/15/2024");
  const std::string script = escrowctl.Write("zero.txt",
                                             "bank FNT\nopen frmEditChecksPost\nset txtCheckNumber 0\nleave\n"
                                             "set txtCheckNumber 5\nset txtCheckPayee y\nclose\n");
  const RunResult none = escrowctl.Run("--json drive '" + script + "'");
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.Json()["messages"][0]["answer"], "Cancel");
  EXPECT_EQ(none.Json()["lines"].back(), "error line 4: a question had no answer");
  const RunResult wrong_word = escrowctl.Run("--answer Yes drive '" + script + "'");
  EXPECT_EQ(wrong_word.status, 1);  // OK or Cancel was asked for
  EXPECT_EQ(escrowctl.Run("--json --bank FNT check list").Json()["checks"].size(), 1u);
  EXPECT_EQ(escrowctl.Run("--answer OK --answer No drive '" + script + "'").status, 0);
  EXPECT_EQ(escrowctl.Run("--json --bank FNT check list").Json()["checks"].size(), 0u);
}

// A wrong line ends the script: it is named, and what came before it stays told.
TEST(Scripts, EndAtTheLineThatIsWrong) {
  const Escrowctl escrowctl;
  escrowctl.Run("init");
  escrowctl.Run(kAddBank);
  const std::string open = "bank FNT\nopen frmEditChecksPost\n";
  const struct {
    std::string script;
    const char* error;
  } kCases[] = {
      {"open frmEditChecksPosted", "line 1: there is no screen \"frmEditChecksPosted\""},
      {"bank FNT\n\nopen frmEditChecksPost Cooking", "line 3: frmEditChecksPost has no mode \"Cooking\""},
      {"set txtCheckPayee x", "line 1: no screen is open"},
      {open + "set txtPayee x", "line 3: frmEditChecksPost has no control txtPayee"},
      {open + "show txtCheckNumber txtCheckNumber(3)",
       "line 3: frmEditChecksPost has no control txtCheckNumber(3)"},
      {open + "set cmdOk x", "line 3: cmdOk is no control for this"},
      {open + "click txtCheckPayee", "line 3: txtCheckPayee is no control for this"},
      {open + "choose lstCheckNumbers 1", "line 3: lstCheckNumbers has 0 rows"},
      {open + "choose lstCheckNumbers(0) 1", "line 3: \"choose\": a control must follow"},
      {"# fine\nclik cmdOk", "line 2: \"clik\" is no word of a script"},
      {"today 2024-02-30", "line 1: \"today\": a day YYYY-MM-DD must follow"},
      {"today 2024-02-29 9", "line 1: \"today\": behind the day only a time HH:MM:SS may stand"},
      {"security maybe", "line 1: \"security\": on or off must follow"},
      {"answer Perhaps", "line 1: \"answer\": OK, Cancel, Yes, No or Retry must follow"},
      {"bank NONE", "line 1: the bank \"NONE\" is not selected"},
  };
  for (const auto& one : kCases) {
    const RunResult result =
        escrowctl.Run("--json drive < '" + escrowctl.Write("script.txt", one.script) + "'");
    EXPECT_EQ(result.status, 1) << one.script;
    EXPECT_EQ(result.Json()["error"], one.error) << one.script;
    EXPECT_EQ(result.Json()["lines"].back(), std::string("error ") + one.error);
  }
  EXPECT_EQ(escrowctl.Run("drive '" + escrowctl.Data() + "'").status, 1);  // a folder is no script
}

TEST(Users, AreKeptWithRightsAndBanks) {
  const Escrowctl escrowctl;
  escrowctl.Run("init");
  ASSERT_EQ(escrowctl.Run(kAddBank).status, 0);
  ASSERT_EQ(escrowctl.Run("bank add LSB BANKNAME=Savings").status, 0);
  EXPECT_EQ(escrowctl.Run("user add RUTH --name Ruth --group User --banks FNT,NOPE").status, 1);
  const Json added =
      escrowctl.Run("--json user add RUTH --name 'Ruth L' --group 'Power User' --rights 0001 --banks FNT,LSB")
          .Json();
  EXPECT_EQ(added["group"], "Power User");
  EXPECT_EQ(added["banks"], Json::parse(R"(["FNT","LSB"])"));
  EXPECT_EQ(added["fields"]["SECURITY"], "0001" + std::string(96, '0'));
  escrowctl.Run("user add ANN --name Ann --group User");
  EXPECT_EQ(escrowctl.Run("--json user right RUTH 4").Json()["granted"], false);
  EXPECT_EQ(escrowctl.Run("--json user right RUTH 5").Json()["granted"], true);
  EXPECT_EQ(escrowctl.Run("user right NOBODY 5").status, 1);
  EXPECT_EQ(escrowctl.Run("user add ruth --name Again --group User").status, 1);
  EXPECT_EQ(escrowctl.Run("user add BOB --name Bob --group Owner").status, 2);
  for (const char* login : {" ", " ruth ", "\xC2\xA0RUTH", "RUTH\xC2\xA0"})
    EXPECT_EQ(escrowctl.Run("user add '" + std::string(login) + "' --name Bob --group User").status, 1)
        << login;
  EXPECT_EQ(escrowctl.Run("--json user reset-passwords").Json()["users"], 2);

  EXPECT_EQ(added["fields"]["MUSTCHANGE"], 1) << "there is no password yet";
  EXPECT_EQ(escrowctl.Run("--json user set RUTH --banks ''").Json()["banks"], Json::array());
  EXPECT_EQ(escrowctl.Run("--json user set RUTH --banks LSB").Json()["banks"], Json::parse(R"(["LSB"])"));

  const RunResult own = escrowctl.Run("--json --user Ann user delete ANN");
  EXPECT_EQ(own.status, 1);
  EXPECT_EQ(own.Json()["messages"][0]["text"], "You cannot delete your own account.");
  escrowctl.Run("user set ANN --group Administrator");
  for (const char* change : {"--disabled on", "--group User"}) {
    EXPECT_EQ(escrowctl.Run("--user Ann user set ANN " + std::string(change)).status, 1) << change;
    EXPECT_EQ(escrowctl.Run("--user Ann user set RUTH " + std::string(change)).status, 0) << change;
  }
  EXPECT_EQ(escrowctl.Run("user delete RUTH").status, 0);
  const Json left = escrowctl.Run("--json user list").Json()["users"];
  ASSERT_EQ(left.size(), 1u);
  EXPECT_EQ(left[0]["MUSTCHANGE"], 1);
  EXPECT_EQ(escrowctl.Run("--json table dump USERSESC").Json()["records"], Json::array());

  // Users that cannot be read are not "no users".
  std::ofstream(escrowctl.Data("USERS.DBF")) << "no table";
  for (const char* command :
       {"user list", "user show ANN", "user right ANN 1", "user add NEW --name N --group User",
        "user delete ANN", "user reset-passwords", "--security on --user ANN table dump USERS",
        "--security on --user ANN bank list"}) {
    const RunResult result = escrowctl.Run(command);
    EXPECT_EQ(result.status, 3) << command;
    EXPECT_NE(result.err.find("USERS could not be opened"), std::string::npos) << command << result.err;
  }
  std::filesystem::remove(escrowctl.Data("USERS.DBF"));
  EXPECT_EQ(escrowctl.Run("user list").status, 3);
  EXPECT_EQ(escrowctl.Run("--security on --user ANN bank list").status, 3);
  EXPECT_EQ(escrowctl.Run("--json verify").Json()["problems"][0]["table"], "USERS");
}

// A search that can find nothing says why.
TEST(CommandLine, AuditAnswersOnlyWhatALogCanAnswer) {
  const Escrowctl escrowctl;
  escrowctl.Run("init");
  escrowctl.Run(kAddBank);
  const auto audit = [&](const std::string& options) {
    return escrowctl.Run("--json --bank FNT audit " + options);
  };
  EXPECT_EQ(audit("").Json()["entries"], Json::array());
  EXPECT_NE(audit("").out.find("No entries yet"), std::string::npos);
  ASSERT_EQ(escrowctl.Run(kPost).status, 0);
  EXPECT_EQ(audit("--tx 'post check' --from 2024-03-15 --to 2024-03-15").Json()["entries"].size(), 1U);
  EXPECT_EQ(audit("--tx 'Post Wire'").Json()["entries"], Json::array());
  EXPECT_EQ(audit("--from 2024-03-16 --to 2024-03-15").status, 1);
  const RunResult unknown = audit("--tx 'Post Cheque'");
  EXPECT_EQ(unknown.status, 1);
  EXPECT_NE(unknown.err.find("There is no transaction \"Post Cheque\".  There are Account Edit, "),
            std::string::npos)
      << unknown.err;
}

// Deposits, wires and vouchers: what each command gives with --json, and that a post is never a change.
TEST(CommandLine, PostsDepositsWiresAndVouchers) {
  const Escrowctl escrowctl;
  ASSERT_EQ(escrowctl.Run("init").status, 0);
  ASSERT_EQ(escrowctl.Run(kAddBank).status, 0);
  const auto run = [&](const std::string& arguments) {
    return escrowctl.Run("--json --bank FNT " + arguments);
  };
  const std::string deposit =
      "deposit post --dated 03/15/2024 --period 3/15/2024 --item 24-0117:1,250.00:'SMITH: earnest' 24-0118:5 "
      "--wire-in 2 ";
  const Json posted = run(deposit).Json();
  EXPECT_EQ(posted["posted"], true);
  EXPECT_EQ(posted["fields"]["DEPOSRC1"], "SMITH: earnest");
  EXPECT_EQ(posted["fields"]["DEPOITMNOS"], 2);
  EXPECT_EQ(posted["fields"]["DEPOSTAT2"], "O");
  EXPECT_EQ(run(deposit).Json()["fields"]["DEPOSEQNC"], "2");
  EXPECT_EQ(run(deposit + "--seq 1").status, 1);
  // Also where the date is typed as only the screen of this user can read it.
  const std::string free_dates = escrowctl.Write(
      "free.txt", "bank FNT\nopen frmEditDepositsPost\nmenu mnuOptionsFreeFormatPostedDates\nclose\n");
  ASSERT_EQ(run("--user ANN drive '" + free_dates + "'").status, 0);
  EXPECT_EQ(run("--user ANN deposit post --dated 3/15 --seq 1 --period 3/15/2024 --item 24-9:7:OTHER")
                .Json()["error"],
            "Deposit \"3/15 1\" is posted already");
  EXPECT_EQ(run("deposit show 2024-03-15 1").Json()["fields"]["DEPOAMT1"], "1250.00");
  EXPECT_EQ(run("deposit show 03/15/2024 01").status, 0);
  EXPECT_EQ(run("deposit show 03/15/2024 3").status, 1);
  EXPECT_EQ(run("deposit clear 03/15/2024 1 1 --stmt 3/31/2024").Json()["fields"]["DEPOSTAT1"], "C");
  EXPECT_EQ(run("deposit list").Json()["deposits"].size(), 2U);

  const std::string wire =
      "wire post FED-1 --dated 03/15/2024 --payee SMITH --amount 9.50 --file 24-0117 --period 3/15/2024 ";
  EXPECT_EQ(run(wire).Json()["fields"]["WIRESTATUS"], "O");
  EXPECT_EQ(run(wire).status, 1);
  EXPECT_EQ(run("wire clear FED-1 --stmt 3/31/2024").Json()["fields"]["WIRESTATUS"], "C");
  EXPECT_EQ(run("wire show FED-1").Json()["fields"]["WIREAMOUNT"], "9.50");
  EXPECT_EQ(run("wire clear FED-1 --stmt 4/15/2024").Json()["error"], "Wire \"FED-1\" is cleared already");
  EXPECT_EQ(run("wire list --status O").Json()["wires"].size(), 0U);

  const std::string voucher =
      " --dated 03/15/2024 --payee SMITH --reason FEES --amount 5 --file 24-0117 --period 3/15/2024";
  EXPECT_EQ(run("voucher next").Json()["next"], 1);
  EXPECT_EQ(run("voucher post" + voucher).Json()["fields"]["VCHRNUMBER"], "1");
  EXPECT_EQ(run("voucher post 30" + voucher).Json()["fields"]["VCHRSTATUS"], "O");
  EXPECT_EQ(run("voucher post 30" + voucher).status, 1);
  EXPECT_EQ(run("voucher next").Json()["next"], 31);
  EXPECT_EQ(run("voucher list").Json()["vouchers"].size(), 2U);
  EXPECT_EQ(run("bank show FNT").Json()["fields"]["BANKVCHRNO"], 30);
  const Json file = run("file 24-0117").Json();
  EXPECT_EQ(file["deposits"], 2);
  EXPECT_EQ(file["wires"], 1);
  EXPECT_EQ(file["vouchers"], 2);
  EXPECT_EQ(run("verify").Json()["ok"], true);

  // Behind a reconciliation an outstanding wire can be cleared, and one that can not says why.
  for (const char* number : {"FED-2", "FED-3"})
    ASSERT_EQ(run(std::string("wire post ") + number + wire.substr(wire.find(" --dated"))).status, 0);
  ASSERT_EQ(
      run("table set ESCROW_WIRES_FNT 3 WIRESTATUS=X WIRESTMTMO=3 WIRESTMTDA=20 WIRESTMTYR=2024").status, 0);
  ASSERT_EQ(run("bank set FNT BANKRECOMO=3 BANKRECODA=20").status, 0);
  EXPECT_EQ(run("wire clear FED-2 --stmt 3/31/2024").Json()["fields"]["WIRESTATUS"], "C");
  const std::string closed = run("wire clear FED-3 --stmt 3/31/2024").Json()["messages"].dump();
  EXPECT_NE(closed.find("Statement period 3-20-2024 has been reconciled."), std::string::npos) << closed;
}

}  // namespace
}  // namespace tallwick::testing
