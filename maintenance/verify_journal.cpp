#include "maintenance/verify_journal.h"

namespace tallwick {

std::vector<CompanyProblem> VerifyJournal(const TableHome& home) {
  constexpr std::string_view kName = engine::kJournalFileName;
  std::vector<CompanyProblem> problems;
  const auto add = [&](std::string text, Remedy remedy) {
    problems.push_back({std::string(kName), 0, std::move(text), std::move(remedy)});
  };
  const engine::JournalFindings journal = home.data.ExamineJournal(home.folder);
  switch (journal.state) {
    case engine::JournalState::kNone:
    case engine::JournalState::kSettled:
      break;
    case engine::JournalState::kWaiting:
      add(std::to_string(journal.waiting) +
              " finished units of work wait to be brought to the tables: their workstation stopped "
              "too early. The next program to open the company does it",
          FinishUnits());
      break;
    case engine::JournalState::kFileMissing:
      add("finished units of work wait for " + journal.missing +
              ", which is not in the folder, or is an older one than they were written for: nobody can work "
              "until the right one is brought back. Mending gives those units up; then compare the last "
              "posts "
              "with paper",
          SetJournalAside());
      break;
    case engine::JournalState::kForeign:
      add("is no journal, or its head is damaged: nobody can post until it is out of the way. It may "
          "hold posts that the tables lack; keep it, and compare the last posts with paper",
          SetJournalAside());
      break;
    case engine::JournalState::kDamaged:
      add("an entry is damaged: after a power cut the units behind it could not be done again. Have "
          "everybody leave the program; when it does not start then, compare the last posts with paper",
          SetJournalAside());
      break;
    case engine::JournalState::kUnreadable:
      add("cannot be opened or read; see to the rights on the folder and to the disk", {});
      break;
  }
  return problems;
}

}  // namespace tallwick
