#include "maintenance/bank_trail.h"

#include <algorithm>

#include "core/text.h"
#include "tables/bank_code.h"

namespace tallwick {
namespace {

constexpr std::string_view kTrailSwitch = "AUDITTRAIL";
constexpr std::string_view kSwitches[] = {kTrailSwitch, "CHKINVTORY", "PPUSEPP", "MDYMOSTMTS"};

bool IsSwitch(std::string_view field) {
  return std::any_of(std::begin(kSwitches), std::end(kSwitches),
                     [&](std::string_view name) { return EqualsIgnoreCase(name, field); });
}

std::string ControlOf(const std::string& field) {
  if (EqualsIgnoreCase(field, kTrailSwitch)) return "chkGenAuditTrail";
  return (IsSwitch(field) ? "chk" : "txt") + field;
}

}  // namespace

// The record as the writer of the trail looks at it.
class BankTrail::RecordForm : public Form {
 public:
  RecordForm(MessageBoxes& boxes, std::vector<FieldProperties> fields)
      : Form("frmBankRecord", boxes), fields_(std::move(fields)) {
    for (const FieldProperties& field : fields_)
      Add(IsSwitch(field.name) ? ControlKind::kCheck : ControlKind::kText, ControlOf(field.name));
  }

  void Show(clsKVRData& store, DataHandle banks) {
    for (const FieldProperties& field : fields_) {
      const std::string name = ControlOf(field.name);
      const FieldHandle handle = store.FindField(banks, field.name);
      if (IsSwitch(field.name)) {
        SetValue(name, store.GetBooleanFieldValueByPointer(banks, handle) ? 1 : 0);
      } else {
        const std::string text = field.type == 'N' ? store.GetNumberFieldRawValueByPointer(banks, handle)
                                                   : store.GetStringFieldRawValueByPointer(banks, handle);
        SetText(name, std::string(Trim(text)));
      }
    }
  }

 private:
  std::vector<FieldProperties> fields_;
};

BankTrail::BankTrail(const AuditTarget& target, MessageBoxes& boxes, clsKVRData& store, DataHandle banks)
    : target_(target),
      store_(store),
      banks_(banks),
      was_deleted_(store.IsRecordDeleted(banks)),
      form_(std::make_unique<RecordForm>(boxes, store.FieldList(banks))) {
  target_.bank_code =
      TrimmedBankCode(store_.GetStringFieldRawValueByPointer(banks_, store_.FindField(banks_, "BANKCODE")));
  form_->Show(store_, banks_);
  // A record whose trail is off is remembered too: it may be switched on.
  target_.on = true;
  WriteAuditTrail(target_, *form_, kAuditSnapshot, kAuditAccountEdit, target_.bank_code);
  target_.on = IsOn();
}

BankTrail::~BankTrail() = default;

bool BankTrail::IsOn() const {
  return store_.GetBooleanFieldValueByPointer(banks_, store_.FindField(banks_, kTrailSwitch));
}

void BankTrail::Write() {
  if (was_deleted_) return;
  target_.on = target_.on || IsOn();
  form_->Show(store_, banks_);
  WriteAuditTrail(target_, *form_, store_.IsRecordDeleted(banks_) ? kAuditDelete : kAuditSave,
                  kAuditAccountEdit, target_.bank_code);
}

}  // namespace tallwick
