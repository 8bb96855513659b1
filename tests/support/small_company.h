// Two tables that belong together, checks and their cross-references, as one engine instance sees them: what
// tests of faults, locks and several workstations work on.
#pragma once

#include <memory>
#include <string>

#include "store/engine/codebase.h"
#include "tests/support/engine_ports.h"

namespace tallwick::testing {

using namespace tallwick::engine;  // NOLINT: the tests speak the engine's language

inline constexpr FieldLayout kCheckFields[] = {{"CHXNUMBER", 'C', 12},
                                               {"CHXPAYEE", 'C', 60},
                                               {"CHXFILENO", 'C', 14},
                                               {"CHXAMOUNT", 'N', 12, 2},
                                               {"REMARK", 'M', 10}};
inline constexpr TagLayout kCheckTags[] = {
    {"CHXFILENO", "UPPER (CHXFILENo + CHXNUMBER)", ".NOT. Deleted ()", true, false},
    {"CHXNUMBER", "UPPER (CHXNUMBER)", ".NOT. Deleted ()", true, false},
    {"CHXPAYEE", "UPPER (CHXPAYEE)", ".NOT. Deleted ()", false, false}};
inline constexpr FieldLayout kXrefFields[] = {{"XRFSFILENO", 'C', 14}, {"XRFSTXREFN", 'C', 12}};
inline constexpr TagLayout kXrefTags[] = {
    {"XRFSFILEBK", "UPPER (XRFSFILENO + XRFSTXREFN)", ".NOT. Deleted ()", true, false}};

// The company as one engine instance sees it.
struct Company {
  explicit Company(FileLayer& files, std::string data_folder = "/data", Clock* real_clock = nullptr)
      : code(code4initVB(
            {real_clock != nullptr ? *real_clock : ports.clock, ports.workstation, ports.paths, files})),
        folder(std::move(data_folder)) {}

  bool Open(int mode = 0) {
    code4accessMode(*code, mode);
    checks = d4open(*code, folder + "/checks.dbf");
    xrefs = d4open(*code, folder + "/xrefs.dbf");
    return checks != nullptr && xrefs != nullptr;
  }
  void Make() {
    checks = d4create(*code, folder + "/checks.dbf", kCheckFields, kCheckTags);
    xrefs = d4create(*code, folder + "/xrefs.dbf", kXrefFields, kXrefTags);
  }

  static void Set(Data4* data, const char* field, const std::string& value) {
    f4assignNVB(*d4field(*data, field), value);
  }

  int AddCheckAlone(const std::string& number, const std::string& file, const std::string& remark) {
    d4appendStart(*checks);
    Set(checks, "CHXNUMBER", number);
    Set(checks, "CHXFILENO", file);
    Set(checks, "CHXPAYEE", "SMITH TITLE " + number);
    Set(checks, "CHXAMOUNT", "1250.00");
    f4memoAssign(*d4field(*checks, "REMARK"), remark + " on " + number);
    const int rc = d4append(*checks);
    if (rc != kSuccess) d4changed(*checks, 0);
    return rc;
  }

  int AddXref(const std::string& number, const std::string& file) {
    d4appendStart(*xrefs);
    Set(xrefs, "XRFSFILENO", file);
    Set(xrefs, "XRFSTXREFN", number);
    const int rc = d4append(*xrefs);
    if (rc != kSuccess) d4changed(*xrefs, 0);
    return rc;
  }

  int AddCheck(const std::string& number, const std::string& file, const std::string& remark = "Remark") {
    const int rc = AddCheckAlone(number, file, remark);
    return rc == kSuccess ? AddXref(number, file) : rc;
  }

  int Find(Data4* data, const char* tag, const std::string& key) {
    d4tagSelect(*data, d4tag(*data, tag));
    return d4seek(*data, key);
  }

  int DeleteFound(Data4* data) {
    d4lockVB(*data, d4recNoLow(*data));
    d4delete(*data);
    return d4flush(*data);
  }

  int EndUnit(int rc) {
    if (rc == kSuccess) return code4unitCommit(*code);
    code4unitRollback(*code);
    return rc;
  }

  // Every live check with what belongs to it, and every cross-reference: the whole truth of the company in
  // one text.
  std::string Picture() {
    std::string text;
    d4tagSelect(*checks, nullptr);
    for (int rc = d4top(*checks); rc == kSuccess; rc = d4skip(*checks, 1)) {
      if (d4deleted(*checks)) continue;
      text.append(f4ptr(*d4field(*checks, "CHXNUMBER")), 12 + 60 + 14 + 12);
      text.append("|").append(f4memoPtr(*d4field(*checks, "REMARK"))).append("\n");
    }
    d4tagSelect(*xrefs, nullptr);
    for (int rc = d4top(*xrefs); rc == kSuccess; rc = d4skip(*xrefs, 1)) {
      if (!d4deleted(*xrefs)) text.append(f4ptr(*d4field(*xrefs, "XRFSFILENO")), 26).append("\n");
    }
    return text;
  }

  EnginePorts ports;
  std::unique_ptr<Code4> code;
  std::string folder;
  Data4* checks = nullptr;
  Data4* xrefs = nullptr;
};

}  // namespace tallwick::testing
