#include "posting/post_wire.h"

namespace tallwick {

using Step = PostOutcome::Step;

PostOutcome PostWire(BankTables& bank, XrefTable& xrefs, std::string_view bank_code, const WireRecord& wire,
                     const PostGuard& guard) {
  const PostPiece pieces[] = {
      {Step::kItem, [&] { return bank.wires.Add(wire, true); }},
      {Step::kCrossReference,
       [&] { return AddXref(xrefs, WireXref(wire.file_number, bank_code, wire.number)); }},
  };
  return AsOneUnit(xrefs.Data(), pieces, guard);
}

PostOutcome RewriteWire(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                        const WireRecord& before, const WireRecord& after, const PostGuard& guard) {
  const XrefRecord old_xref = WireXref(before.file_number, bank_code, before.number);
  const XrefRecord new_xref = WireXref(after.file_number, bank_code, after.number);
  const bool moved = before.file_number != after.file_number;
  const PostPiece pieces[] = {
      {Step::kItem, [&] { return bank.wires.Update(after); }},
      {Step::kCrossReference, [&] { return moved ? RemoveXref(xrefs, old_xref) : engine::kSuccess; }},
      {Step::kCrossReference, [&] { return moved ? AddXref(xrefs, new_xref) : engine::kSuccess; }},
  };
  return ChangeAsOneUnit(bank.wires, bank.wires.SeekNumber(before.number), before, pieces, guard);
}

PostOutcome RemoveWire(BankTables& bank, XrefTable& xrefs, std::string_view bank_code, const WireRecord& wire,
                       const PostGuard& guard) {
  const XrefRecord xref = WireXref(wire.file_number, bank_code, wire.number);
  const PostPiece pieces[] = {
      {Step::kItem, [&] { return bank.wires.Delete(); }},
      {Step::kCrossReference, [&] { return RemoveXref(xrefs, xref); }},
  };
  return ChangeAsOneUnit(bank.wires, bank.wires.SeekNumber(wire.number), wire, pieces, guard);
}

std::string WireFailureMessage(const PostOutcome& outcome, std::string_view wire_number) {
  const std::string number(wire_number);
  if (outcome.NumberIsTaken()) {
    return "Wire " + number +
           " was posted on another workstation in the meantime.  Nothing was saved: correct the number, or "
           "look the posted wire up.";
  }
  return FailureMessage(outcome, "Wire " + number, "Failed to add wire number " + number, "wire");
}

}  // namespace tallwick
