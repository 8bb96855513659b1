// ESCROW_AGENT: the escrow agent's name, address and report fonts, in one record; beside it the payees of
// checks, each in a record of its own that AGENTOPEN marks with "P".
#pragma once

#include "tables/typed_table.h"

namespace tallwick {

struct AgentFont {
  std::int32_t size = 0;  // points
  std::string name;
  std::int32_t bold = 0;
  std::int32_t italic = 0;
  friend bool operator==(const AgentFont&, const AgentFont&) = default;
};

struct AgentRecord {
  std::string name;
  std::string address1;
  std::string address2;
  std::string city_state;
  std::string bank_code;
  std::string open;
  std::int32_t ledger_points = 0;
  std::int32_t report_points = 0;
  AgentFont heading;
  AgentFont detail;
  friend bool operator==(const AgentRecord&, const AgentRecord&) = default;
};

// Whether a record is a payee's, and an empty one that is.
bool IsPayee(const AgentRecord& record);
AgentRecord NewPayeeRecord();

extern const TableLayout kAgentLayout;

class AgentTable : public TypedTable<AgentRecord> {
 public:
  explicit AgentTable(const TableHome& home);
  // The agent's record; an empty one when none has been saved.
  AgentRecord Load();
  int Save(const AgentRecord& agent);

 private:
  bool ToRecord();  // onto the first live record that is no payee's
};

}  // namespace tallwick
