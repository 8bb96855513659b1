// One escrow file of the demo company as a story: what came in, what went out, and when.
// Invariant: over a whole story the money in equals the money out, except in the few files that are meant to
// keep funds or to be overdrawn. Days after "today" belong to the story but have not happened.
#pragma once

#include <string>
#include <vector>

#include "cli/demo/names.h"
#include "cli/demo/random.h"
#include "core/currency.h"
#include "core/date.h"

namespace tallwick::cli {

struct MoneyIn {
  Date date;
  std::string source;
  Currency amount;
  bool wire = false;  // a wire coming in
  int bank = 0;       // place in the demo's list of banks
};

struct MoneyOut {
  Date date;
  Payee payee;
  Currency amount;
  std::string reason;
  bool wire = false;
  int bank = 0;
  Date vouchered;  // the day of its voucher, empty when there is none
};

struct Closing {
  std::string file_no;
  Date opened;
  Date closes;
  std::vector<MoneyIn> in;
  std::vector<MoneyOut> out;
  std::string note;  // "" for most files
};

// The next day that is no Saturday or Sunday, the day itself included.
Date BusinessDay(Date date);
Date DaysLater(const Date& date, int days);

// A file opened on a day. Banks are numbered from 0; the last one holds earnest money of some files of the
// others.
Closing MakeClosing(Random& random, std::string file_no, const Date& opened, int banks);

}  // namespace tallwick::cli
