#include "ui/start_time.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTextStream>
#include <algorithm>
#include <vector>

#include "core/system_ports.h"
#include "ui/desktop.h"
#include "ui/splash.h"

namespace tallwick {

int StartOnce(const FolderCompany& company) {
  PrintedBoxes boxes;
  const std::unique_ptr<QSplashScreen> splash = MakeSplash();
  splash->show();
  QApplication::processEvents();
  Desktop desktop({boxes, SystemFileSystem(), SystemClock(), SystemWorkstation()});
  if (!desktop.Start([&] { return std::make_unique<FolderSuite>(company, "TIMED"); })) return 1;
  splash->close();
  QApplication::processEvents();
  QTextStream(stdout) << "ready" << Qt::endl;
  return 0;
}

int MeasureStart(const FolderCompany& company, int runs) {
  QTextStream out(stdout);
  std::vector<qint64> times;
  for (int run = 0; run <= runs; ++run) {  // the first warms the disk's cache
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QElapsedTimer timer;
    timer.start();
    process.start(QCoreApplication::applicationFilePath(),
                  {"--start-once", "--data", company.data_path, "--company", company.name});
    if (!process.waitForReadyRead(60'000) || process.readLine().trimmed() != "ready") return 1;
    if (run > 0) times.push_back(timer.elapsed());
    process.waitForFinished();
  }
  for (const qint64 time : times) out << time << " ";
  std::sort(times.begin(), times.end());
  out << "ms, median " << times[times.size() / 2] << " ms" << Qt::endl;
  return 0;
}

}  // namespace tallwick
