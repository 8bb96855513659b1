// Writes the seeds of every fuzz target into the folder named: fuzz/corpus in the source tree. The seeds are
// committed; run this again when a file format or the expression language grows.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <string>
#include <string_view>

#include "fuzz/sample_table.h"
#include "store/engine/journal_state.h"

namespace {

namespace fs = std::filesystem;

void Write(const fs::path& path, std::string_view bytes) {
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// Tables from empty to several index levels; a damaged copy of each file beside the whole one.
void WriteTables(const fs::path& corpus) {
  for (const std::uint32_t records : {0U, 1U, 12U, 24U, 60U}) {
    const tallwick::fuzz::SampleFiles files = tallwick::fuzz::MakeSample(records);
    const std::string name = "records-" + std::to_string(records);
    Write(corpus / "dbf" / name, files.table);
    Write(corpus / "cdx" / name, files.index);
    Write(corpus / "fpt" / name, files.memo);
    Write(corpus / "dbf" / (name + "-cut"),
          std::string_view(files.table).substr(0, files.table.size() * 2 / 3));
    Write(corpus / "cdx" / (name + "-cut"),
          std::string_view(files.index).substr(0, files.index.size() * 2 / 3));
    Write(corpus / "fpt" / (name + "-cut"),
          std::string_view(files.memo).substr(0, files.memo.size() * 2 / 3));
  }
}

constexpr const char* kExpressions[] = {
    "UPPER (NUMBER)",
    "UPPER (PAYEE + Number)",
    "DTOS(DATED) + UPPER(NUMBER)",
    "STR(YEAR,4,0) + STR(AMOUNT,12,2)",
    "STR(RATE,10,4)",
    "RECNO()",
    ".NOT. Deleted ()",
    "DELETED()",
    "PADL(ALLTRIM(NUMBER), 12) + PADR(LTRIM(PAYEE), 20)",
    "LEFT(PAYEE,3) + RIGHT(NUMBER,4) + SUBSTR(PAYEE,2,5)",
    "IIF(EMPTY(DATED), '00000000', DTOS(DATED))",
    "IIF(AMOUNT > 100 .AND. PRINTED, VAL(NUMBER), -1)",
    "CTOD('03/15/2024') - DATED",
    "STOD(\"20240229\") + 30",
    "DTOC(DATED) - LOWER(PAYEE)",
    "'TITLE' $ PAYEE .OR. SAMPLE->AMOUNT * 2 - 1 <> YEAR / 4",
    "!(DATED < DATE()) .AND. (NUMBER = [12] .OR. PAYEE # 'A')",
    "TRIM(PAYEE) + sample.number",
    "LEFT(PAYEE,3) + SUBSTR(PAYEE,1.5)",
};

constexpr std::string_view kRecord =
    "       10452"
    "20240315"
    "Harbor County Recorder        "
    "     1250.00"
    "2024"
    "T"
    "\x00\x00\x00\x00\x00\x00\xf8\x3f";

void WriteExpressions(const fs::path& corpus) {
  int number = 0;
  for (const char* expression : kExpressions) {
    std::string bytes = expression;
    bytes.push_back('\0');
    bytes.push_back(' ');
    bytes += kRecord;
    Write(corpus / "expression" / ("seed-" + std::to_string(++number)), bytes);
  }
}

// The journals that deaths leave behind while the sample table is changed, without the zeros at their end.
void WriteJournals(const fs::path& corpus) {
  using namespace tallwick::engine;
  const tallwick::fuzz::SampleFiles& sample = tallwick::fuzz::BaseSample();
  std::set<std::string> seen;
  for (int change = 1; change <= 24; ++change) {
    tallwick::testing::MemoryFiles files;
    files.Put(tallwick::fuzz::kTablePath, sample.table);
    files.Put(tallwick::fuzz::kIndexPath, sample.index);
    files.Put(tallwick::fuzz::kMemoPath, sample.memo);
    tallwick::testing::EnginePorts ports;
    const auto code = code4initVB(ports.Over(files));
    Data4* data = d4open(*code, tallwick::fuzz::kTablePath);
    if (data == nullptr) std::abort();
    files.Plan(change % 2 == 0 ? tallwick::testing::Fault::kDie : tallwick::testing::Fault::kTear, change);
    for (std::uint32_t record = 1; record <= 3; ++record) {
      d4goLow(*data, record);
      f4assignNVB(*d4field(*data, "PAYEE"), "AARDVARK " + std::to_string(record));
      if (record == 3) f4memoAssign(*d4field(*data, "NOTE"), "A longer memo than before");
      d4flush(*data);
    }
    std::string journal = files.Get("/data/" + std::string(tallwick::engine::kJournalFileName));
    journal.resize(journal.find_last_not_of('\0') + 1);
    if (seen.insert(journal).second)
      Write(corpus / "journal" / ("died-at-" + std::to_string(change)), journal);
  }
}

// Sequences of operations for the model.
void WriteOperations(const fs::path& corpus) {
  for (unsigned seed = 1; seed <= 16; ++seed) {
    std::mt19937 random(seed);
    std::string bytes;
    while (bytes.size() < std::size_t{40} * seed) bytes += static_cast<char>(random());
    Write(corpus / "model" / ("random-" + std::to_string(seed)), bytes);
  }
}

}  // namespace

int main(int count, char** words) {
  if (count != 2) {
    std::fprintf(stderr, "usage: make_corpus FOLDER\n");
    return 2;
  }
  WriteTables(words[1]);
  WriteExpressions(words[1]);
  WriteJournals(words[1]);
  WriteOperations(words[1]);
  return 0;
}
