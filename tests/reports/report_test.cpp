// Reports as documents: what the ledger prints, line by line, and the RTF that a word processor opens.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "core/print_pages.h"
#include "reports/ledger_report.h"
#include "reports/report_pages.h"
#include "reports/report_rtf.h"
#include "tests/support/temp_folder.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

const ReportOrigin kOrigin{"Mary Klein", {{2024, 3, 15}, 9, 5, 0}, "1.00.0001", "Lakeside Title"};

// A file with everything in one bank, and a deposit in another.
FileLedger Ledger() {
  BankLedger first("FNB", "First National Trust");
  CheckRecord check;
  check.number = "10452";
  check.dated = {2024, 3, 4};
  check.payee = "M\xC3\xBCller {Title}";
  check.amount = Currency::FromCents(1250'00);
  check.accounting = {3, 0, 2024};
  check.status = "O";
  check.control = "MARY K";
  check.voucher_number = "7";
  first.AddCheck(check);
  check.number = "10453";
  check.status = "S";
  check.statement = {3, 0, 2024};
  first.AddCheck(check);
  WireRecord wire;
  wire.number = "W-1";
  wire.amount = Currency::FromCents(100'00);
  wire.status = "C";
  first.AddWire(wire);
  VoucherRecord voucher;
  voucher.number = "7";
  voucher.payee = "JONES";
  voucher.reason = "TAXES";
  voucher.amount = Currency::FromCents(5'00);
  voucher.status = "C";
  voucher.check_number = "10452";
  first.AddVoucher(voucher);
  BankLedger second("SAV", "Savings");
  DepositRecord deposit;
  deposit.dated = "20240310";
  deposit.sequence = "1";
  deposit.items[11] = {"12", "24-0117", "LENDER", Currency::FromCents(1349'99), {}, "O"};
  SetWireIn(&deposit, 12, true);
  second.AddDepositItem(deposit, 12);
  FileLedger ledger("24-0117");
  ledger.AddBank(first);
  ledger.AddBank(second);
  return ledger;
}

std::vector<std::string> Lines(const ReportDocument& report) {
  std::vector<std::string> lines;
  for (const ReportTable& table : report.tables) {
    if (!table.caption.empty()) lines.push_back("[" + table.caption + "]");
    if (!table.headings.empty()) lines.push_back(table.headings);
    for (const ReportRow& row : table.rows) {
      std::string line = row.kind == ReportRow::Kind::kSubtotal ? "= " : "";
      for (const std::string& cell : row.cells) line += (&cell == row.cells.data() ? "" : "|") + cell;
      lines.push_back(line);
    }
  }
  return lines;
}

TEST(LedgerReportTest, PrintsBankByBankWithRunningSubtotals) {
  const ReportDocument report = MakeLedgerReport({Ledger(), {}, true}, kOrigin);
  EXPECT_EQ(HeadLine(report), "Escrow Ledger for File: 24-0117, prep by Mary Klein, March 15, 2024 9:05 AM");
  EXPECT_EQ(VersionLine(report), "Version: 1.00.0001");
  EXPECT_EQ(report.name, "Ledger 24-0117 2024-03-15");
  EXPECT_THAT(
      Lines(report),
      ElementsAre(
          "[First National Trust (FNB)]", "Check|Dated|Payee|Amount|Accounting|Statement|Stat|Ctl|Vchr",
          "10452|Mar 4,2024|M\xC3\xBCller {Title}|1,250.00|3-2024||Outstanding|MARY K|7",
          "10453|Mar 4,2024|M\xC3\xBCller {Title}|1,250.00|3-2024|3-2024|Stopped Payment|MARY K|7",
          "= ||Total Checks  (2)|2,500.00", "= ||less Void Checks  (1)|1,250.00", "= ||Net Checks|1,250.00",
          "Wire|Dated|Payee|Amount|Accounting|Statement|Stat|Control", "W-1|||100.00|||Cleared|",
          "= ||Total Wire Transfers  (1)|100.00", "= ||Net Disbursements|1,350.00",
          "= ||Total Deposits  (0)|0.00", "= ||less Net Disbursements|1,350.00",
          "= ||equals|-1,350.00|First National Trust Balance",
          "Voucher|Dated|Payee / Reason|Amount|Accounting||Stat|Check",
          "7||JONES / TAXES|5.00|||Cleared|10452", "= ||Total Vouchers|5.00",
          "Bank Balance|less Net Vouchers|First National Trust Adjusted Balance",
          "= -1,350.00|5.00|-1,355.00", "[Savings (SAV)]", "= ||Total Checks  (0)|0.00",
          "= ||less Void Checks  (0)|0.00", "= ||Net Checks|0.00", "= ||Total Wire Transfers  (0)|0.00",
          "= ||Net Disbursements|0.00", "Deposit|Seq #|Source|Amount|Accounting|Statement|Stat|By|WI",
          "Mar 10,2024 - 1|12|LENDER|1,349.99|||Outstanding||X", "= ||Total Deposits  (1)|1,349.99",
          "= ||less Net Disbursements|0.00", "= ||equals|1,349.99|Savings Balance", "= ||Total Vouchers|0.00",
          "Bank Balance|less Net Vouchers|Savings Adjusted Balance", "= 1,349.99|0.00|1,349.99",
          "Escrow Condition|Status|Multiple Banks|24-0117 File Balance",
          "= Over Drawn|Outstanding|Yes|-0.01"));
}

TEST(LedgerReportTest, WithoutTransactionsItSaysSoAndNothingElse) {
  const std::string none = "24-0117 does NOT have any transactions posted.";
  EXPECT_THAT(Lines(MakeLedgerReport({FileLedger("24-0117"), none, true}, kOrigin)), ElementsAre(none));
}

TEST(ReportPagesTest, SubtotalsStayWithTheRowBefore) {
  const PrintDocument document = MakePages(MakeLedgerReport({Ledger(), {}, true}, kOrigin));
  EXPECT_EQ(document.header.front().style, PrintStyle::kHeader);
  EXPECT_EQ(document.footer, "Lakeside Title");
  const PrintSection& checks = document.sections.front();
  EXPECT_EQ(checks.heading.size(), 2U);
  const std::array<bool, 5> with_next{false, true, true, true, false};
  ASSERT_EQ(checks.rows.size(), with_next.size());
  for (std::size_t i = 0; i < with_next.size(); ++i) EXPECT_EQ(checks.rows[i].with_next, with_next[i]) << i;
}

class FixedLetters : public TextMeasure {
 public:
  int Width(PrintStyle, std::string_view text) const override { return static_cast<int>(text.size()) * 80; }
  int LineHeight(PrintStyle) const override { return 240; }
};

TEST(ReportPagesTest, EveryPageOfALedgerNamesItsBank) {
  BankLedger first("FNB", "First National Trust");
  for (int i = 0; i < 150; ++i) {
    WireRecord wire;
    wire.number = "W-" + std::to_string(i);
    first.AddWire(wire);
  }
  FileLedger ledger("24-0117");
  ledger.AddBank(first);
  const PrintDocument document = MakePages(MakeLedgerReport({ledger, {}, true}, kOrigin));
  const std::vector<PrintPage> pages = LayOutPages(document, 10800, 14400, FixedLetters());
  ASSERT_GT(pages.size(), 2U);
  for (const PrintPage& page : pages) {
    const auto names_bank = [](const PlacedText& text) { return text.text == "First National Trust (FNB)"; };
    EXPECT_EQ(std::count_if(page.texts.begin(), page.texts.end(), names_bank), 1);
  }
}

TEST(RtfTest, HasHeadsRealTablesAndTheTwipsOfTheColumns) {
  const std::string rtf = MakeRtf(MakeLedgerReport({Ledger(), {}, true}, kOrigin));
  for (const char* part :
       {"{\\header\\pard\\plain\\f1\\fs24\\b Escrow Ledger for File: 24-0117, prep by Mary Klein, March 15, "
        "2024 9:05 AM\\par",
        "Version: 1.00.0001", "{\\*\\fldinst NUMPAGES}",
        "\\cellx1000\\cellx2280\\cellx5440\\cellx6880\\cellx8000\\cellx9120\\cellx9600\\cellx10220\\cellx1080"
        "0",
        "\\cellx6880\\cellx8000\\cellx9600\\cellx10220", "\\qr\\f0\\fs20 Outstanding\\cell", "\\trhdr",
        "M\\'fcller \\{Title\\}\\cell", "\\qr\\keepn\\f0\\b\\fs20 1,250.00\\cell"})
    EXPECT_THAT(rtf, HasSubstr(part));
  int depth = 0;
  for (std::size_t i = 0; i < rtf.size(); ++i) {
    if (rtf[i] == '\\') {
      ++i;
    } else {
      depth += rtf[i] == '{' ? 1 : rtf[i] == '}' ? -1 : 0;
    }
    EXPECT_TRUE(depth >= 0 && static_cast<unsigned char>(rtf[i]) < 0x80);
  }
  EXPECT_EQ(depth, 0);
  ReportDocument odd;
  odd.AddText("\xCE\xA9 \xE2\x82\xAC");  // a letter that RTF's code page lacks, and one that it has
  EXPECT_THAT(MakeRtf(odd), HasSubstr("? \\'80\\cell"));
}

// A word processor of strangers turns the RTF into pages; where it is installed.
TEST(RtfTest, OpensInAWordProcessor) {
  if (std::system("command -v soffice >/dev/null && command -v pdftotext >/dev/null") != 0)
    GTEST_SKIP() << "soffice or pdftotext is not installed";
  const testing::TempFolder folder;
  std::ofstream(folder.Platform("ledger.rtf")) << MakeRtf(MakeLedgerReport({Ledger(), {}, true}, kOrigin));
  const std::string in = "cd '" + folder.Platform() + "' && HOME='" + folder.Platform() + "' ";
  ASSERT_EQ(std::system((in + "timeout 120 soffice --headless --convert-to pdf ledger.rtf >/dev/null 2>&1 && "
                              "pdftotext -layout ledger.pdf")
                            .c_str()),
            0);
  std::stringstream text;
  text << std::ifstream(folder.Platform("ledger.txt")).rdbuf();
  for (const char* part : {"Escrow Ledger for File: 24-0117, prep by Mary Klein", "M\xC3\xBCller {Title}",
                           "Outstanding", "Over Drawn", "Page 1 of 1"})
    EXPECT_THAT(text.str(), HasSubstr(part));
  if (const char* keep = std::getenv("TALLWICK_KEEP_PDF"))
    std::filesystem::copy(folder.Platform("ledger.pdf"), keep);
}

}  // namespace
}  // namespace tallwick
