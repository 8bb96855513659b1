// Makes tables for foreign readers to judge, and reads tables that foreign programs made.
//
//   judge_tables write DIR
//       GALLERY (every field type, every kind of tag) and CHURN (an index whose pages were split, merged and
//       reused); GALLERY's records go to standard output as they were meant, not read back
//   judge_tables read FILE
//       the records of any table
//   judge_tables index FILE COPY TAG=EXPRESSION...
//       a copy of a table, with tags
//
// Records are JSON, every value as text: [{"deleted": false, "CODE": "AB", "AMOUNT": "12.50", ...}].
#include <algorithm>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <numeric>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "core/encoding.h"
#include "core/text.h"
#include "store/engine/codebase.h"
#include "tests/support/engine_ports.h"

namespace tallwick::engine {
namespace {

using nlohmann::json;

constexpr FieldLayout kGalleryFields[] = {{"CODE", 'C', 12},      {"NAME", 'C', 60}, {"REASON", 'C', 240},
                                          {"DATED", 'D', 8},      {"YEAR", 'N', 4},  {"MONTH", 'N', 2},
                                          {"AMOUNT", 'N', 12, 2}, {"OPEN", 'L', 1},  {"NOTE", 'M', 10}};
constexpr TagLayout kGalleryTags[] = {{"CODE", "UPPER (Code)", ".NOT. Deleted ()", true},
                                      {"NAMECODE", "UPPER (NAME + CODE)", ".NOT. Deleted ()"},
                                      {"DATED", "DTOS(DATED) + UPPER(CODE)", ".NOT. Deleted ()"},
                                      {"PERIOD", "STR(YEAR,4,0) + STR(MONTH,2,0)", ".NOT. Deleted ()"},
                                      {"REASON", "UPPER(REASON)", ".NOT. Deleted ()"},
                                      {"OPENONES", "TRIM(NAME) + '/' + CODE", "OPEN .AND. AMOUNT > 0"},
                                      {"DEL4REUSE", "RECNO()", "DELETED()"},
                                      {"AMOUNT", "AMOUNT", "", false, true},
                                      {"DAY", "DATED", ""}};

constexpr FieldLayout kChurnFields[] = {{"WORD", 'C', 20}, {"COUNT", 'N', 8}};
constexpr TagLayout kChurnTags[] = {{"WORD", "UPPER(WORD)", ".NOT. DELETED()"},
                                    {"COUNT", "COUNT", ".NOT. DELETED()"}};

using Row = json;  // of one record

class Judged {
 public:
  Judged() {
    code4accessMode(*code_, 1);
    code4safety(*code_, 0);
  }

  json WriteGallery(const std::string& folder);
  void WriteChurn(const std::string& folder);
  json Read(const std::string& path);
  void Index(const std::string& path, const std::string& copy, std::span<char* const> tags);

 private:
  // Ends the program when an operation fails: a judge's table must be whole or not be.
  static void Demand(int code, const std::string& what) {
    if (code == kSuccess) return;
    std::cerr << what << ": " << code << " " << error4text(code) << "\n";
    std::exit(1);
  }
  Data4& Demand(Data4* data, const std::string& path) {
    if (data == nullptr) Demand(code4errorCode(*code_, 0), path);
    return *data;
  }
  static void Fill(Data4& data, const Row& row);
  static void Append(Data4& data, const Row& row);
  static Row RowOf(Data4& data);

  testing::EnginePorts ports_;
  std::unique_ptr<Code4> code_ = code4initVB(ports_.Over(SystemFiles()));
};

void Judged::Fill(Data4& data, const Row& row) {
  for (const auto& [name, value] : row.items()) {
    if (name == "deleted") continue;
    Field4& field = *d4field(data, name);
    const std::string bytes = ToWindows1252(value.get<std::string>()).value_or("?");
    Demand(f4type(field) == 'M' ? f4memoAssign(field, bytes) : f4assignNVB(field, bytes), name);
  }
}

void Judged::Append(Data4& data, const Row& row) {
  Demand(d4appendStart(data), "appendStart");
  Fill(data, row);
  Demand(d4append(data), "append");
}

Row Judged::RowOf(Data4& data) {
  Row row{{"deleted", d4deleted(data)}};
  for (int i = 1; i <= d4numFields(data); ++i) {
    Field4& field = *d4fieldJ(data, i);
    const std::string bytes = f4type(field) == 'M'
                                  ? f4memoPtr(field)
                                  : std::string(f4ptr(field), static_cast<std::size_t>(f4len(field)));
    const std::string text = FromWindows1252(bytes);
    row[f4name(field)] = f4type(field) == 'N' || f4type(field) == 'F' ? Trim(text) : TrimRight(text);
  }
  return row;
}

Row MakeRow(unsigned i, std::mt19937& random) {
  static const std::vector<std::string> kNames{"Müller & Sœhne", "müller, é",   "Ÿves Žák", "",
                                               "Smith",          "Ångström–Øre"};
  static const std::vector<std::string> kReasons{"", "Wrong payee – reissued “today”", std::string(240, 'z')};
  const bool dated = i % 9 != 0;
  const auto cents = static_cast<int>(random() % 2000000) - 500000;
  return {
      {"deleted", false},
      {"CODE", PadLeft(std::to_string(i * 7919 % 100000) + (i % 3 == 0 ? "a" : ""), 12)},
      {"NAME", kNames[random() % kNames.size()]},
      {"REASON", kReasons[random() % kReasons.size()]},
      {"DATED", dated ? "20240" + std::to_string(1 + random() % 9) + std::to_string(10 + random() % 19) : ""},
      {"YEAR", dated ? "2024" : ""},
      {"MONTH", dated ? std::to_string(1 + random() % 12) : ""},
      {"AMOUNT", Currency::FromCents(cents).ToText()},
      {"OPEN", i % 2 == 0 ? "T" : "F"},
      {"NOTE", i % 5 == 0 ? std::string(i * 13 % 3000, 'n') + "öß€" : ""}};
}

json Judged::WriteGallery(const std::string& folder) {
  Data4& data = Demand(d4create(*code_, folder + "/GALLERY", kGalleryFields, kGalleryTags), "GALLERY");
  std::mt19937 random(1);
  json rows = json::array();
  Demand(code4unitBegin(*code_), "begin");
  for (unsigned i = 0; i < 700; ++i) {
    rows.push_back(MakeRow(i, random));
    Append(data, rows.back());
  }
  Demand(code4unitCommit(*code_), "commit");
  for (unsigned i = 0; i < 700; i += 3) {
    Demand(d4goLow(data, i + 1), "go");
    if (i % 4 == 0) {
      const Row changed = MakeRow(i + 5000, random);
      Fill(data, changed);
      rows[i] = changed;
    } else {
      d4delete(data);
      rows[i]["deleted"] = true;
    }
    if (i % 21 == 0) {
      d4recall(data);
      rows[i]["deleted"] = false;
    }
    Demand(d4flush(data), "flush");
  }
  Demand(d4close(&data), "close");
  return rows;
}

// Five thousand keys in random order, all but a few taken out again, then new ones into what is left.
void Judged::WriteChurn(const std::string& folder) {
  Data4& data = Demand(d4create(*code_, folder + "/CHURN", kChurnFields, kChurnTags), "CHURN");
  std::mt19937 random(2);
  const auto append = [&](unsigned count) {
    for (unsigned i = 0; i < count; ++i) {
      const std::string number = std::to_string(random() % 90000);
      Append(data, {{"WORD", "w" + std::string(number.size(), number[0]) + number}, {"COUNT", number}});
    }
  };
  Demand(code4unitBegin(*code_), "begin");
  append(5000);
  Demand(code4unitCommit(*code_), "commit");
  std::vector<std::uint32_t> order(4900);
  std::iota(order.begin(), order.end(), 51U);
  std::shuffle(order.begin(), order.end(), random);
  Demand(code4unitBegin(*code_), "begin");
  for (const std::uint32_t record : order) {
    Demand(d4goLow(data, record), "go");
    d4delete(data);
    Demand(d4flush(data), "flush");
  }
  Demand(code4unitCommit(*code_), "commit");
  append(400);
  Demand(d4close(&data), "close");
}

json Judged::Read(const std::string& path) {
  Data4& data = Demand(d4open(*code_, path), path);
  json rows = json::array();
  for (std::uint32_t record = 1; record <= d4recCountDo(data); ++record) {
    Demand(d4goLow(data, record), "go");
    rows.push_back(RowOf(data));
  }
  Demand(code4errorCode(*code_, 0), "reading");
  Demand(d4close(&data), "close");
  return rows;
}

void Judged::Index(const std::string& path, const std::string& copy, std::span<char* const> tags) {
  Data4& from = Demand(d4open(*code_, path), path);
  std::vector<std::string> names;
  std::vector<FieldLayout> fields;
  for (int i = 1; i <= d4numFields(from); ++i) names.push_back(f4name(*d4fieldJ(from, i)));
  for (std::size_t i = 0; i < names.size(); ++i) {
    const Field4& field = *d4fieldJ(from, static_cast<int>(i) + 1);
    fields.push_back({names[i], f4type(field), f4len(field), f4decimals(field)});
  }
  std::vector<TagLayout> layouts;
  for (const std::string_view tag : tags) {
    const std::size_t sign = std::min(tag.find('='), tag.size());
    layouts.push_back({tag.substr(0, sign), tag.substr(std::min(sign + 1, tag.size())), ".NOT. Deleted ()"});
  }
  Data4& to = Demand(d4create(*code_, copy, fields, layouts), copy);
  for (std::uint32_t record = 1; record <= d4recCountDo(from); ++record) {
    Demand(d4goLow(from, record), "go");
    const Row row = RowOf(from);
    Append(to, row);
    if (row["deleted"] == true) {
      d4delete(to);
      Demand(d4flush(to), "flush");
    }
  }
  Demand(d4reindex(to), "reindex");
  Demand(d4close(&from), "close");
  Demand(d4close(&to), "close");
}

}  // namespace
}  // namespace tallwick::engine

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + 1, argv + argc);
  tallwick::engine::Judged judged;
  if (words.size() == 2 && words[0] == "write") {
    std::cout << judged.WriteGallery(words[1]) << "\n";
    judged.WriteChurn(words[1]);
  } else if (words.size() == 2 && words[0] == "read") {
    std::cout << judged.Read(words[1]) << "\n";
  } else if (words.size() > 3 && words[0] == "index") {
    judged.Index(words[1], words[2], std::span<char* const>(argv, static_cast<std::size_t>(argc)).subspan(4));
  } else {
    std::cerr << "judge_tables write DIR | read FILE | index FILE COPY TAG=EXPRESSION...\n";
    return 2;
  }
  return 0;
}
