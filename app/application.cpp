#include "app/application.h"

namespace tallwick {

std::unique_ptr<Application> StartApplication(const Ports& ports, const SuiteFactory& attach,
                                              ScreenOpener& opener, StartUpResult* result) {
  StartUpOutcome outcome = StartUp(ports, attach);
  if (result != nullptr) *result = outcome.result;
  if (!outcome.session) return nullptr;
  return std::make_unique<Application>(std::move(outcome.session), opener);
}

}  // namespace tallwick
