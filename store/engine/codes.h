// Result codes of the engine. 0 is success, positive values are outcomes a caller expects, negative values
// errors.
#pragma once

#include <string_view>

namespace tallwick::engine {

enum Code : int {
  kSuccess = 0,
  kAfter = 2,            // seek: not found, positioned at the next greater key
  kEof = 3,              // behind the last record
  kBof = 4,              // before the first record
  kNoRecord = 5,         // no current record, or the record number is outside the table
  kUnique = 20,          // a unique tag holds the key already
  kUniqueContinue = 25,  // mode of a tag: a second key is left out of the tag silently
  kLocked = 50,          // locked by another workstation
  kStopped = 70,         // long work was stopped by the user; everything is as it was

  kErrorClose = -10,
  kErrorCreate = -20,
  kErrorLength = -30,
  kErrorRead = -40,
  kErrorLock = -50,
  kErrorCopying = -55,  // another workstation keeps every writer off while it copies the folder
  kErrorOpen = -60,     // missing, or no permission
  kErrorOpenRefused =
      -61,  // held exclusively by another workstation, or exclusive access wanted while others use it
  kErrorExists = -64,  // safety is on and the file exists
  kErrorRemove = -80,
  kErrorRename = -90,
  kErrorTooLarge =
      -100,  // the file would pass 2 GiB while large files are off, or the record count its limit
  kErrorWrite = -120,
  kErrorDiskFull = -121,
  kErrorReadOnly = -125,    // the file, its folder or its disk may only be read
  kErrorDataHeader = -200,  // the table's header is damaged: the record count does not fit the file's length
  kErrorDataStructure = -210,  // not a table, or its field list is damaged
  kErrorFieldName = -211,      // no field of this name
  kErrorFieldValue = -220,     // a value that does not fit its field; nothing was assigned
  kErrorIndex = -300,          // a damaged index page
  kErrorIndexMissing = -310,   // the table says it has an index, and there is none
  kErrorTagHeader = -330,      // a damaged tag header
  kErrorTagExpression = -340,  // a tag's expression does not fit the table
  kErrorTagName = -350,        // no tag of this name, or the index lacks a tag it must have
  kErrorUniqueKey = -360,      // a unique tag cannot be built: two records share a key
  kErrorMemo = -490,           // the memo file is missing or damaged
  kErrorExpression = -410,     // an expression cannot be understood
  kErrorParameter = -910,
  kErrorJournal = -950,  // the folder's journal cannot be read or written
};

// One sentence for a person, without a full stop: "The file is missing or may not be opened".
std::string_view error4text(int code);

}  // namespace tallwick::engine
