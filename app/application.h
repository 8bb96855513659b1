// One running program: the session that start-up made, and the catalogue of its screens.
#pragma once

#include <memory>

#include "app/screen_catalogue.h"
#include "shell/start_up.h"

namespace tallwick {

class Application {
 public:
  Application(std::unique_ptr<Session> session, ScreenOpener& opener)
      : session_(std::move(session)), screens_(*session_, opener) {}

  Session& TheSession() { return *session_; }
  ScreenCatalogue& Screens() { return screens_; }

 private:
  std::unique_ptr<Session> session_;
  ScreenCatalogue screens_;
};

// StartUp; where tables lack fields and the user wants that, Update Database Versions comes in between, with
// its questions. Started, or without a session after a message.
StartUpOutcome StartUpOrUpdate(const Ports& ports, const SuiteFactory& attach);

// Starts the program in that way. Null after a message.
std::unique_ptr<Application> StartApplication(const Ports& ports, const SuiteFactory& attach,
                                              ScreenOpener& opener);

}  // namespace tallwick
