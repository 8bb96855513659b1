// The texts of the engine's result codes.
#include "store/engine/codes.h"

namespace tallwick::engine {

std::string_view error4text(int code) {
  switch (code) {
    case kSuccess:
      return "No error";
    case kAfter:
      return "The key was not found";
    case kEof:
      return "There is no record behind this one";
    case kBof:
      return "There is no record before this one";
    case kNoRecord:
      return "There is no current record";
    case kUnique:
      return "A record with this key exists already";
    case kUniqueContinue:
      return "A record with this key exists already and was left out of the tag";
    case kLocked:
      return "Another workstation is using the record or the file";
    case kStopped:
      return "The work was stopped";
    case kErrorClose:
      return "The file could not be closed";
    case kErrorCreate:
      return "The file could not be created";
    case kErrorLength:
      return "The length of the file could not be read or changed";
    case kErrorRead:
      return "The file could not be read";
    case kErrorLock:
      return "The file could not be locked";
    case kErrorOpen:
      return "The file is missing or may not be opened";
    case kErrorOpenRefused:
      return "Another workstation is using the file and exclusive access was refused";
    case kErrorExists:
      return "The file exists already";
    case kErrorRemove:
      return "The file could not be deleted";
    case kErrorRename:
      return "The file could not be renamed";
    case kErrorTooLarge:
      return "The table has reached its greatest size";
    case kErrorWrite:
      return "The file could not be written";
    case kErrorDiskFull:
      return "The disk is full";
    case kErrorDataHeader:
      return "The record count in the table's header does not fit the length of the file";
    case kErrorDataStructure:
      return "The file is not a table, or its field list is damaged";
    case kErrorFieldName:
      return "The table has no field of this name";
    case kErrorFieldValue:
      return "The value does not fit the field";
    case kErrorIndex:
      return "The index file is damaged";
    case kErrorIndexMissing:
      return "The index file is missing";
    case kErrorTagHeader:
      return "The header of an index tag is damaged";
    case kErrorTagExpression:
      return "The expression of an index tag does not fit the table";
    case kErrorTagName:
      return "The index has no tag of this name";
    case kErrorUniqueKey:
      return "Two records have the same key in a unique tag";
    case kErrorMemo:
      return "The memo file is missing or damaged";
    case kErrorExpression:
      return "The expression cannot be understood";
    case kErrorParameter:
      return "The operation was called wrongly";
    case kErrorJournal:
      return "The journal of the company folder could not be read or written";
    default:
      return "Unknown error";
  }
}

}  // namespace tallwick::engine
