#include "ui/maintenance_pictures.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QProgressBar>
#include <QTimer>
#include <utility>

namespace tallwick {
namespace {

constexpr int kLookEveryMs = 0;  // whenever the desktop looks at its events

using Take = std::function<void(std::string_view, const QString&)>;

// Opens a screen that waits, and takes its picture from within as soon as it is ready; then it is closed, or
// its work stopped by Esc. Work may be over within one look, so each step of its progress bar is looked at.
void TakeFromWithin(Desktop& desktop, std::string_view screen, std::string_view mode, const QString& name,
                    const Take& take, const std::function<bool(Form&)>& is_ready) {
  QTimer look;
  bool looking = false;  // what makes a screen ready may look at its events itself
  const auto take_if_ready = [&](ScreenHost& host) {
    if (std::exchange(looking, true)) return;
    looking = is_ready(host.TheForm());
    if (!looking) return;
    take(screen, name);
    QCoreApplication::postEvent(&host.Window(),
                                new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier));
    QTimer::singleShot(0, &desktop, [&desktop, screen] {
      if (ScreenHost* open = desktop.Find(screen)) open->Close();
    });
  };
  const QProgressBar* watched = nullptr;
  QObject::connect(&look, &QTimer::timeout, &look, [&] {
    ScreenHost* host = desktop.Find(screen);
    if (host == nullptr) return;
    const auto* bar = host->Window().findChild<QProgressBar*>("prgProgress");
    if (bar != nullptr && watched == nullptr) {
      watched = bar;
      QObject::connect(bar, &QProgressBar::valueChanged, &look, [&, host] { take_if_ready(*host); });
    }
    take_if_ready(*host);
  });
  look.start(kLookEveryMs);
  desktop.OpenScreen(screen, mode);
}

bool HasStatus(Form& form, std::string_view start) {
  return form.Find("lblStatus")->caption.starts_with(start);
}

}  // namespace

void TakeMaintenancePictures(Desktop& desktop, std::deque<BoxAnswer>& answers, const Take& take) {
  answers = {BoxAnswer::kNo, BoxAnswer::kOk};
  TakeFromWithin(desktop, "frmMaintenance", "Rebuild & Reindex", "maintenance", take,
                 [](Form& form) { return HasStatus(form, "Processing ESCROW_VOUCHERS"); });
  answers = {BoxAnswer::kOk};
  TakeFromWithin(desktop, "frmCopyDatabases", {}, "copy-databases", take,
                 [](Form& form) { return HasStatus(form, "Copying ESCROW"); });
  TakeFromWithin(desktop, "frmCheckDatabaseVersion", {}, "database-version", take,
                 [](Form& form) { return form.Find("grdVersions")->source != nullptr; });
  TakeFromWithin(desktop, "frmCheckXReference", {}, "check-x-reference", take, [](Form& form) {
    form.Click("cmdOk");
    return true;
  });
  answers = {BoxAnswer::kNo, BoxAnswer::kOk};
  TakeFromWithin(desktop, "frmPurgeFiles", {}, "purge-files", take, [](Form& form) {
    if (!form.Find("txtThrough")->enabled || form.Find("prgProgress")->visible) return false;
    form.Change("txtThrough", "12-2030");
    form.Click("cmdFind");
    return true;
  });
  answers.clear();
}

}  // namespace tallwick
