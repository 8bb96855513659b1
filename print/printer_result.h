// Whether a printer has taken what was drawn.
#pragma once

#include <QFile>
#include <QPrinter>

namespace tallwick {

// False when it reports a failure, or when the file that stands for paper did not get to its end: a full disk
// is not told otherwise.
inline bool HasTaken(const QPrinter& printer) {
  if (printer.printerState() == QPrinter::Error) return false;
  if (printer.outputFileName().isEmpty()) return true;
  constexpr qint64 end = 16;
  QFile file(printer.outputFileName());
  return file.open(QIODevice::ReadOnly) && file.seek(qMax(file.size() - end, qint64{0})) &&
         file.read(end).contains("%%EOF");
}

}  // namespace tallwick
