// The check screen with a printer and a positive-pay export that keep what they are told.
#pragma once

#include "posting/check_posting.h"
#include "tests/posting/screen_fixture.h"

namespace tallwick::testing {

struct FakePrinter : CheckPrinter {
  std::string WhyNot() override { return why_not; }
  bool Print(const CheckOnPaper& check, const BankRecord&, bool preview) override {
    printed.push_back(check.check.number + " " + check.figures + " " + check.words +
                      (preview ? " preview" : ""));
    return true;
  }
  std::string why_not;
  std::vector<std::string> printed;
};

struct FakePositivePay : PositivePayExport {
  void Issued(const CheckRecord& check, const BankRecord&) override {
    told.push_back("issued " + check.number);
  }
  void Voided(const CheckRecord& check, const BankRecord&) override {
    told.push_back("voided " + check.number);
  }
  std::vector<std::string> told;
};

class CheckScreenTest : public PostingScreenTest<FrmEditChecksPost> {
 protected:
  std::unique_ptr<FrmEditChecksPost> MakeForm() override {
    return std::make_unique<FrmEditChecksPost>(*office_.session, office_, mode_,
                                               CheckPorts{&printer_, &positive_pay_});
  }
  void OpenIn(CheckMode::Kind mode) {
    mode_ = mode;
    OpenForm();
  }
  void PostCheckOf(const std::string& number, const std::string& payee = "SMITH TITLE CO",
                   const std::string& amount = "1250", const std::string& voucher = "") {
    Set("txtCheckNumber", number);
    Set("txtCheckPayee", payee);
    Set("txtCheckAmount", amount);
    Set("txtCheckFileNumber", "24-0117");
    Set("txtCheckVoucherNumber", voucher);
    Post();
  }
  void AddVoucher(const char* number, std::int64_t cents = 1250'00, const char* file = "24-0117") {
    VoucherRecord voucher;
    voucher.number = number;
    voucher.file_number = file;
    voucher.amount = Currency::FromCents(cents);
    ASSERT_EQ(tables_->vouchers.Add(voucher), 0);
  }
  std::string VoucherCheck(const char* number) {
    return tables_->vouchers.SeekNumber(number) ? tables_->vouchers.Read().check_number : "(no voucher)";
  }
  CheckRecord Stored(std::string_view number) {
    return tables_->checks.SeekNumber(number) ? tables_->checks.Read() : CheckRecord{};
  }
  bool IsStored(std::string_view number) { return tables_->checks.SeekNumber(number); }
  bool HasXref(std::string_view file, std::string_view number) {
    return Xrefs().SeekReference(CheckXref(file, "FNB", number));
  }
  std::string Refusal(std::string_view button = "cmdOk") {
    form_->Click(button);
    const std::vector<std::string> texts = office_.TakeTexts();
    return texts.size() == 1 ? texts.front() : std::to_string(texts.size()) + " boxes";
  }
  std::vector<std::string> Numbers() {
    std::vector<std::string> numbers;
    RowSource& rows = *form_->Find("lstCheckNumbers")->source;
    for (std::size_t row = 0; row < rows.RowCount(); ++row) numbers.push_back(rows.Row(row).at(0));
    return numbers;
  }

  CheckMode::Kind mode_ = CheckMode::Kind::kPosting;
  FakePrinter printer_;
  FakePositivePay positive_pay_;
};

}  // namespace tallwick::testing
