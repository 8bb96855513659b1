// Lets the windows draw while long work runs in the one thread there is, and sees whether the person asks to
// stop: Esc, or a click on the button with the property "stops". Everything else that is typed or clicked
// meanwhile is dropped, so that nothing runs within the work.
#pragma once

#include <QElapsedTimer>

namespace tallwick {

class StopWatch {
 public:
  // Cheap enough to be called for every record; looks up every few hundredths of a second.
  bool StopAsked();

 private:
  QElapsedTimer since_last_;
};

}  // namespace tallwick
