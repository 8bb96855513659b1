// Readers without a lock while another workstation brings a unit to the files: each record they get is whole.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

#include "tests/support/memory_files.h"
#include "tests/support/small_company.h"
#include "tests/support/temp_folder.h"

namespace tallwick::engine {
namespace {

using tallwick::testing::EnginePorts;
using tallwick::testing::MemoryFiles;
using tallwick::testing::TempFolder;

// Two fields that always change together, far apart in the record, and a memo that repeats them.
constexpr FieldLayout kFields[] = {
    {"NUMBER", 'C', 6}, {"LEFT", 'C', 8}, {"BETWEEN", 'C', 240}, {"RIGHT", 'C', 8}, {"NOTE", 'M', 10}};
constexpr TagLayout kTags[] = {{"NUMBER", "NUMBER", "", true, false}};

// One workstation's sight of the table.
struct Pairs {
  Pairs(FileLayer& files, const std::string& folder, Clock* clock = nullptr)
      : path(folder + "/pairs.dbf"),
        code(code4initVB({clock != nullptr ? *clock : ports.clock, ports.workstation, ports.paths, files})) {}

  void Make(int records) {
    data = d4create(*code, path, kFields, kTags);
    code4unitBegin(*code);
    for (int i = 0; i < records; ++i) {
      d4appendStart(*data);
      f4assignLong(*d4field(*data, "NUMBER"), i);
      Set("0");
      d4append(*data);
    }
    code4unitCommit(*code);
  }
  void Set(const std::string& value) {
    f4assignNVB(*d4field(*data, "LEFT"), value);
    f4assignNVB(*d4field(*data, "RIGHT"), value);
  }
  // Every record in one unit of work.
  int ChangeAll(const std::string& value, bool memos) {
    code4unitBegin(*code);
    for (std::uint32_t record = 1; record <= d4recCountDo(*data); ++record) {
      d4goLow(*data, record);
      Set(value);
      if (memos) f4memoAssign(*d4field(*data, "NOTE"), std::string(100, value.back()));
      if (const int rc = d4flush(*data); rc != kSuccess) return rc;
    }
    return code4unitCommit(*code);
  }
  bool IsWhole() {
    const std::string memo = f4memoPtr(*d4field(*data, "NOTE"));
    return std::string(f4ptr(*d4field(*data, "LEFT")), 8) ==
               std::string(f4ptr(*d4field(*data, "RIGHT")), 8) &&
           memo.find_first_not_of(memo.empty() ? ' ' : memo.front()) == std::string::npos;
  }
  // Walks all records; the number of those that were torn, or a negative code.
  int CountTorn(const char* tag, bool read_ahead) {
    d4tagSelect(*data, tag == nullptr ? nullptr : d4tag(*data, tag));
    d4readAhead(*data, read_ahead);
    int torn = 0;
    int rc = d4top(*data);
    for (; rc == kSuccess; rc = d4skip(*data, 1)) torn += IsWhole() ? 0 : 1;
    d4readAhead(*data, false);
    return rc == kEof ? torn : -rc - 1;
  }

  std::string path;
  EnginePorts ports;
  std::unique_ptr<Code4> code;
  Data4* data = nullptr;
};

// Files whose reads of records and memos are cut in two, with something happening between the halves.
class CutFiles : public FileLayer {
 public:
  explicit CutFiles(FileLayer& files) : files_(files) {}
  std::function<void()> between;

  std::unique_ptr<File> Open(const std::string& path, OpenMode mode, int* code) override {
    auto file = files_.Open(path, mode, code);
    if (!file || path.find("pairs") == std::string::npos) return file;
    return std::make_unique<CutFile>(*this, std::move(file));
  }
  bool Exists(const std::string& path) override { return files_.Exists(path); }
  int Remove(const std::string& path) override { return files_.Remove(path); }
  int Rename(const std::string& from, const std::string& to) override { return files_.Rename(from, to); }
  int FlushFolder(const std::string& folder) override { return files_.FlushFolder(folder); }

 private:
  struct CutFile : File {
    CutFile(CutFiles& owner, std::unique_ptr<File> whole) : layer(owner), file(std::move(whole)) {}
    std::int64_t ReadAt(std::int64_t offset, void* buffer, std::size_t length) override {
      // Pages and heads are read under other rules.
      if (!layer.between || length < 100 || length == 512) return file->ReadAt(offset, buffer, length);
      const std::size_t half = length / 2;
      const std::int64_t first = file->ReadAt(offset, buffer, half);
      layer.between();
      if (first < static_cast<std::int64_t>(half)) return first;
      const std::int64_t second =
          file->ReadAt(offset + first, static_cast<char*>(buffer) + half, length - half);
      return second < 0 ? second : first + second;
    }
    std::int64_t Size() override { return file->Size(); }
    int WriteAt(std::int64_t offset, const void* buffer, std::size_t length) override {
      return file->WriteAt(offset, buffer, length);
    }
    int Truncate(std::int64_t size) override { return file->Truncate(size); }
    int Flush() override { return file->Flush(); }
    int Lock(std::int64_t offset, std::int64_t length, LockKind kind) override {
      return file->Lock(offset, length, kind);
    }
    int Unlock(std::int64_t offset, std::int64_t length) override { return file->Unlock(offset, length); }
    CutFiles& layer;
    std::unique_ptr<File> file;
  };
  FileLayer& files_;
};

TEST(WholeRecords, AUnitBetweenTwoHalvesOfAReadIsSeenWholeOrNotAtAll) {
  const struct {
    const char* tag;
    bool read_ahead;
  } kWalks[] = {{nullptr, false}, {nullptr, true}, {"NUMBER", false}, {"NUMBER", true}};
  MemoryFiles disk;
  Pairs writer(disk, "/data");
  writer.Make(600);  // more than a block of those read ahead
  for (const auto& walk : kWalks) {
    CutFiles cut(disk);
    Pairs reader(cut, "/data");
    ASSERT_NE(reader.data = d4open(*reader.code, reader.path), nullptr);
    int reads = 0;
    int units = 0;
    bool busy = false;
    cut.between = [&] {
      if (busy || ++reads % 7 != 1 || units == 6) return;
      busy = true;
      ++units;
      EXPECT_EQ(writer.ChangeAll(std::to_string(units), units % 3 == 0), kSuccess);
      busy = false;
    };
    EXPECT_EQ(reader.CountTorn(walk.tag, walk.read_ahead), 0) << walk.read_ahead;
    EXPECT_GT(units, 0);
  }
}

// A writer that dies on its way to the tables leaves them between two states; a reader finishes the unit
// first.
TEST(WholeRecords, AUnitThatItsWriterLeftHalfDoneIsFinishedByTheReader) {
  MemoryFiles disk;
  Pairs(disk, "/data").Make(4);
  Pairs reader(disk, "/data");
  ASSERT_NE(reader.data = d4open(*reader.code, reader.path), nullptr);
  EXPECT_EQ(reader.CountTorn(nullptr, false), 0);
  std::string journal;
  {
    Pairs writer(disk, "/data");
    writer.data = d4open(*writer.code, writer.path);
    ASSERT_EQ(writer.ChangeAll("1", false), kSuccess);
    journal = disk.Get("/data/ESCROW_UNITS.JNL");
  }
  // The journal as it was before its mark moved, and one half of a record back at its old value.
  journal.replace(16, 8, journal.substr(88, 8));
  journal.replace(8, 8, std::string("\x60\0\0\0\0\0\0\0", 8));
  std::string table = disk.Get(reader.path);
  table.replace(table.rfind("1  "), 1, "0");
  disk.Put("/data/ESCROW_UNITS.JNL", journal);
  disk.Put(reader.path, table);
  EXPECT_EQ(reader.CountTorn(nullptr, false), 0);
  ASSERT_EQ(d4goLow(*reader.data, 4), kSuccess);
  EXPECT_EQ(std::string(f4ptr(*d4field(*reader.data, "RIGHT")), 1), "1");
}

// A long unit writes to the files while it runs; readers see nothing of it.
TEST(WholeRecords, ALongUnitIsSeenByNobodyBeforeItStands) {
  MemoryFiles disk;
  Pairs writer(disk, "/data");
  writer.Make(4);
  const std::size_t before = disk.Get(writer.path).size();
  Pairs reader(disk, "/data");
  ASSERT_NE(reader.data = d4open(*reader.code, reader.path), nullptr);
  code4unitBegin(*writer.code);
  for (int i = 4; i < 20004; ++i) {
    d4appendStart(*writer.data);
    f4assignLong(*d4field(*writer.data, "NUMBER"), i);
    writer.Set("0");
    ASSERT_EQ(d4append(*writer.data), kSuccess);
  }
  EXPECT_GT(disk.Get(writer.path).size(), before);
  EXPECT_EQ(d4recCountDo(*reader.data), 4);
  EXPECT_EQ(reader.CountTorn(nullptr, true), 0);
  d4tagSelect(*writer.data, d4tag(*writer.data, "NUMBER"));
  EXPECT_EQ(d4seek(*writer.data, "     5"), kSuccess);
  EXPECT_EQ(f4long(*d4field(*writer.data, "LEFT")), 0);

  code4unitRollback(*writer.code);
  EXPECT_EQ(disk.Get(writer.path).size(), before);
  ASSERT_EQ(writer.ChangeAll("1", true), kSuccess);
  EXPECT_EQ(reader.CountTorn("NUMBER", false), 0);
}

TEST(WholeRecords, AWalkBesideAWritingProcess) {
  TempFolder folder;
  const std::string path = folder.Platform();
  {
    Pairs maker(SystemFiles(), path, &SystemClock());
    maker.Make(600);
  }
  const pid_t child = fork();
  if (child == 0) {
    Pairs writer(SystemFiles(), path, &SystemClock());
    writer.data = d4open(*writer.code, writer.path);
    int rc = writer.data == nullptr ? 1 : 0;
    for (int i = 1; i <= 60 && rc == kSuccess; ++i) rc = writer.ChangeAll(std::to_string(i % 10), false);
    SystemFiles().Open(path + "/stop", OpenMode::kCreate, &rc);
    _exit(rc);
  }
  Pairs reader(SystemFiles(), path, &SystemClock());
  ASSERT_NE(reader.data = d4open(*reader.code, reader.path), nullptr);
  int torn = 0;
  for (int walk = 0; !SystemFiles().Exists(path + "/stop") && torn == 0; ++walk)
    torn = reader.CountTorn(walk % 4 < 2 ? "NUMBER" : nullptr, walk % 8 != 0);
  EXPECT_EQ(torn, 0);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

}  // namespace
}  // namespace tallwick::engine
