// Packing a table: live records, their memos and a new index, written beside the old files and then put in
// their place.
#include <array>
#include <cstring>

#include "store/engine/byte_order.h"
#include "store/engine/file_swap.h"
#include "store/engine/instance.h"
#include "store/engine/memo_reference.h"

namespace tallwick::engine {
namespace {

constexpr std::uint32_t kBlockRecords = 512;

// Writes the packed form of a table's data and memo files.
class Packer {
 public:
  Packer(Code4& code, TableFile& table, const Progress& progress)
      : code_(code), table_(table), progress_(progress) {}

  int Run() {
    int rc = OpenNew();
    const std::int64_t count = table_.RecordCount();
    if (count < 0) return kErrorRead;
    const auto length = static_cast<std::size_t>(table_.Header().record_length);
    std::vector<std::uint8_t> block(kBlockRecords * length);
    for (std::int64_t first = 1; first <= count && rc == kSuccess; first += kBlockRecords) {
      const auto wanted =
          static_cast<std::uint32_t>(std::min<std::int64_t>(kBlockRecords, count - first + 1));
      if (table_.ReadRecords(static_cast<std::uint32_t>(first), wanted, block.data()) != wanted)
        return kErrorRead;
      rc = PackBlock(block.data(), wanted);
      const auto done = static_cast<std::uint32_t>(first) + wanted - 1;
      if (rc == kSuccess && progress_ && !progress_(done, static_cast<std::uint32_t>(count))) rc = kStopped;
    }
    return rc == kSuccess ? Finish() : rc;
  }

 private:
  int OpenNew() {
    int rc = kSuccess;
    data_ = code_.setup.files.Open(NewFileName(table_.Path()), OpenMode::kCreate, &rc);
    if (!data_ || table_.Memo() == nullptr) return rc;
    auto memo = code_.setup.files.Open(NewFileName(table_.MemoPath()), OpenMode::kCreate, &rc);
    if (!memo) return rc;
    rc = MemoFile::Create(*memo);
    memo_ = std::make_unique<MemoFile>(std::move(memo));
    return rc == kSuccess ? memo_->Open() : rc;
  }

  int PackBlock(std::uint8_t* block, std::uint32_t records) {
    const auto length = static_cast<std::size_t>(table_.Header().record_length);
    std::vector<std::uint8_t> live;
    for (std::uint32_t i = 0; i < records; ++i) {
      std::uint8_t* record = block + i * length;
      if (record[0] == '*') continue;
      if (memo_) {
        if (const int rc = CopyMemos(record); rc != kSuccess) return rc;
      }
      live.insert(live.end(), record, record + length);
      ++count_;
    }
    const std::int64_t at = table_.Header().header_length +
                            static_cast<std::int64_t>(count_) * static_cast<std::int64_t>(length) -
                            static_cast<std::int64_t>(live.size());
    return live.empty() ? static_cast<int>(kSuccess) : data_->WriteAt(at, live.data(), live.size());
  }

  int CopyMemos(std::uint8_t* record) {
    for (const FieldInfo& field : table_.Header().fields) {
      if (!IsMemoReference(field)) continue;
      std::uint8_t* place = record + field.offset;
      std::string text;
      std::uint32_t block = MemoBlockAt(field, place);
      MemoFile::Kind kind = MemoFile::Kind::kText;
      int rc = table_.Memo()->Read(block, &text, &kind);
      block = 0;
      if (rc == kSuccess) rc = memo_->Write(&block, text, kind, table_.SizeLimit());
      if (rc == kSuccess) rc = WriteStagedMemo();
      if (rc != kSuccess) return rc;
      PutMemoBlock(field, place, block);
    }
    return kSuccess;
  }

  int WriteStagedMemo() {
    for (const auto& [offset, bytes] : memo_->Staged().Extents()) {
      const int rc = memo_->Staged().Raw().WriteAt(offset, bytes.data(), bytes.size());
      if (rc != kSuccess) return rc;
    }
    memo_->Staged().Discard();
    return kSuccess;
  }

  // The head is taken over as it is, so that what other programs keep in it survives.
  int Finish() {
    const auto length = static_cast<std::size_t>(table_.Header().header_length);
    std::vector<std::uint8_t> head(length);
    if (table_.Data().ReadAt(0, head.data(), length) != static_cast<std::int64_t>(length)) return kErrorRead;
    Store32(&head[4], count_);
    int rc = data_->WriteAt(0, head.data(), head.size());
    const std::int64_t end =
        static_cast<std::int64_t>(length) + static_cast<std::int64_t>(count_) * table_.Header().record_length;
    if (rc == kSuccess) rc = data_->WriteAt(end, &kEndOfFileMark, 1);
    if (rc == kSuccess) rc = data_->Flush();
    if (rc == kSuccess && memo_) rc = memo_->Staged().Raw().Flush();
    return rc;
  }

  Code4& code_;
  TableFile& table_;
  const Progress& progress_;
  std::unique_ptr<File> data_;
  std::unique_ptr<MemoFile> memo_;
  std::uint32_t count_ = 0;
};

int BuildPacked(Code4& code, TableFile& table, const Progress& progress, std::unique_ptr<TableFile>* fresh) {
  int rc = Packer(code, table, progress).Run();
  if (rc != kSuccess) return rc;
  *fresh = TableFile::Open(code.setup, NewFileName(table.Path()), {true, code.large, true}, &rc);
  if (!*fresh || table.Index() == nullptr) return rc;
  return BuildIndexLike(code, **fresh, *table.Index(), NewFileName(table.IndexPath()), progress);
}

}  // namespace

int d4pack(Data4& data, const Progress& progress) {
  Code4& code = data.code;
  TableFile& table = data.table;
  if (!table.Exclusive() || table.handles > 1 || code.unit_depth > 0) return code.Fail(kErrorOpenRefused);
  if (const int rc = WriteChanges(data); rc != kSuccess) return rc;
  QuietJournal quiet(code, table.Folder());
  int rc = quiet.Begin();
  FormatLocks locks(code, table, &data);
  if (rc == kSuccess) rc = locks.Take();
  std::vector<std::string> paths = {table.Path()};
  if (table.Index() != nullptr) paths.push_back(table.IndexPath());
  if (table.Memo() != nullptr) paths.push_back(table.MemoPath());
  data.ForgetAhead();
  std::unique_ptr<TableFile> fresh;
  if (rc == kSuccess) rc = BuildPacked(code, table, progress, &fresh);
  if (rc != kSuccess) {
    for (const std::string& path : paths) code.setup.files.Remove(NewFileName(path));
    return code.Fail(rc);
  }
  rc = SwapFiles(code.setup.files, table.Path(), paths);
  if (rc == kSuccess) rc = table.Adopt(std::move(fresh));
  if (rc != kSuccess) Lose(data);
  if (rc == kSuccess && table.Index() != nullptr) RebindTags(data);
  ShowEnd(data);
  return code.Fail(rc);
}

}  // namespace tallwick::engine
