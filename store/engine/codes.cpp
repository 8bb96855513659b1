// The texts of the engine's result codes.
#include "store/engine/codes.h"

#include <algorithm>
#include <iterator>

namespace tallwick::engine {
namespace {

struct CodeText {
  int code;
  std::string_view text;
};

constexpr CodeText kTexts[] = {
    {kSuccess, "No error"},
    {kAfter, "The key was not found"},
    {kEof, "There is no record behind this one"},
    {kBof, "There is no record before this one"},
    {kNoRecord, "There is no current record"},
    {kUnique, "A record with this key exists already"},
    {kUniqueContinue, "A record with this key exists already and was left out of the tag"},
    {kLocked, "Another workstation is using the record or the file"},
    {kStopped, "The work was stopped"},
    {kErrorClose, "The file could not be closed"},
    {kErrorCreate, "The file could not be created"},
    {kErrorLength, "The length of the file could not be read or changed"},
    {kErrorRead, "The file could not be read"},
    {kErrorLock, "The file could not be locked"},
    {kErrorCopying, "Another workstation is making a copy of the data"},
    {kErrorOpen, "The file is missing or may not be opened"},
    {kErrorOpenRefused, "Another workstation is using the file and exclusive access was refused"},
    {kErrorExists, "The file exists already"},
    {kErrorRemove, "The file could not be deleted"},
    {kErrorRename, "The file could not be renamed"},
    {kErrorTooLarge, "The table has reached its greatest size"},
    {kErrorWrite, "The file could not be written: its disk may be full or write-protected"},
    {kErrorDiskFull, "The disk is full"},
    {kErrorReadOnly, "The file or its folder may only be read, not written"},
    {kErrorDataHeader, "The record count in the table's header does not fit the length of the file"},
    {kErrorDataStructure, "The file is not a table, or its field list is damaged"},
    {kErrorFieldName, "The table has no field of this name"},
    {kErrorFieldValue, "The value does not fit the field"},
    {kErrorIndex, "The index file is damaged"},
    {kErrorIndexMissing, "The index file is missing"},
    {kErrorTagHeader, "The header of an index tag is damaged"},
    {kErrorTagExpression, "The expression of an index tag does not fit the table"},
    {kErrorTagName, "The index has no tag of this name"},
    {kErrorUniqueKey, "Two records have the same key in a unique tag"},
    {kErrorMemo, "The memo file is missing or damaged"},
    {kErrorExpression, "The expression cannot be understood"},
    {kErrorParameter, "The operation was called wrongly"},
    {kErrorJournal, "The journal of the company folder could not be read or written"},
};

}  // namespace

std::string_view error4text(int code) {
  const auto* found =
      std::find_if(std::begin(kTexts), std::end(kTexts), [&](const CodeText& t) { return t.code == code; });
  return found == std::end(kTexts) ? "Unknown error" : found->text;
}

}  // namespace tallwick::engine
