#include "tables/agent_table.h"

namespace tallwick {

namespace {

constexpr std::array kColumns = {
    Text<&AgentRecord::name>("AGENTNAME", 60),
    Text<&AgentRecord::address1>("AGENTADDR1", 60),
    Text<&AgentRecord::address2>("AGENTADDR2", 60),
    Text<&AgentRecord::city_state>("AGENTCSZ", 60),
    Text<&AgentRecord::bank_code>("AGENTBNKID", 8),
    Text<&AgentRecord::open>("AGENTOPEN", 1),
    Number<&AgentRecord::ledger_points>("AGENTLDGPS", 4),
    Number<&AgentRecord::report_points>("AGENTRPTPS", 4),
    Number<&AgentRecord::heading, &AgentFont::size>("AGENTHDRFS", 4),
    Text<&AgentRecord::heading, &AgentFont::name>("AGENTHDRFN", 60),
    Number<&AgentRecord::heading, &AgentFont::bold>("AGENTHDRFB", 4),
    Number<&AgentRecord::heading, &AgentFont::italic>("AGENTHDRFI", 4),
    Number<&AgentRecord::detail, &AgentFont::size>("AGENTDTLFS", 4),
    Text<&AgentRecord::detail, &AgentFont::name>("AGENTDTLFN", 60),
    Number<&AgentRecord::detail, &AgentFont::bold>("AGENTDTLFB", 4),
    Number<&AgentRecord::detail, &AgentFont::italic>("AGENTDTLFI", 4),
};

constexpr auto kFields = FieldsOf(kColumns);

// The name and the mark tell payees from the agent.
constexpr std::string_view kMayBeEmpty[] = {"AGENTADDR",  "AGENTCSZ", "AGENTBNKID", "AGENTLDGPS",
                                            "AGENTRPTPS", "AGENTHDR", "AGENTDTL"};

constexpr std::string_view kPayeeMark = "P";

}  // namespace

bool IsPayee(const AgentRecord& record) {
  return record.open == kPayeeMark;
}

AgentRecord NewPayeeRecord() {
  AgentRecord record;
  record.open = kPayeeMark;
  return record;
}

constexpr TableLayout kAgentLayout{"ESCROW_AGENT",
                                   false,
                                   kFields,
                                   {},
                                   {"  was not created.", "\rError Code: ", "\rDBFCreate_ESCROW_AGENT",
                                    "Create New Database", "Open Database Agent"},
                                   kMayBeEmpty};

AgentTable::AgentTable(const TableHome& home) : TypedTable(home, kAgentLayout, kColumns) {}

bool AgentTable::ToRecord() {
  bool found = Top("");
  while (found && (Data().IsRecordDeleted(Handle()) || IsPayee(Read()))) found = Skip();
  return found;
}

AgentRecord AgentTable::Load() {
  return ToRecord() ? Read() : AgentRecord();
}

int AgentTable::Save(const AgentRecord& agent) {
  return ToRecord() ? Update(agent) : Add(agent);
}

}  // namespace tallwick
