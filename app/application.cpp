#include "app/application.h"

#include "maintenance/maintenance_run.h"

namespace tallwick {

StartUpOutcome StartUpOrUpdate(const Ports& ports, const SuiteFactory& attach) {
  StartUpOutcome outcome = StartUp(ports, attach);
  if (outcome.result != StartUpResult::kOutOfDate) return outcome;
  NoProgress progress;  // there is no window yet
  const bool updated =
      RunMaintenance(*outcome.session, MaintenanceOperation::kUpdateVersions, progress).completed;
  outcome.session.reset();
  if (updated) outcome = StartUp(ports, attach);
  if (outcome.result == StartUpResult::kOutOfDate) outcome.session.reset();
  return outcome;
}

std::unique_ptr<Application> StartApplication(const Ports& ports, const SuiteFactory& attach,
                                              ScreenOpener& opener) {
  StartUpOutcome outcome = StartUpOrUpdate(ports, attach);
  if (!outcome.session) return nullptr;
  return std::make_unique<Application>(std::move(outcome.session), opener);
}

}  // namespace tallwick
