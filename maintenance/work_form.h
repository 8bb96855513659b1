// What screens with long work have in common: a line that says what is being done, a bar that says how far,
// and a button (or Esc) that stops it where stopping is safe, and closes the screen otherwise.
//
// Controls: lblStatus, prgProgress (a label whose value is the percentage; seen only while work runs),
// cmdCancel.
#pragma once

#include <string>
#include <string_view>

#include "core/form.h"
#include "maintenance/work_progress.h"
#include "shell/session.h"

namespace tallwick {

class WorkForm : public Form, protected WorkProgress {
 public:
  WorkForm(std::string name, Session& session);

 protected:
  void Show(std::string_view what, std::int64_t done, std::int64_t total) override;
  void Tell(std::string_view, std::string_view) override {}
  bool StopWanted() override;
  void OnClick(Control& control) override;
  bool OnKey(std::string_view key) override;

  Session& TheSession() { return session_; }
  void SayStatus(std::string status) { SetCaption("lblStatus", std::move(status)); }

  // While one lives, the form is at work.
  class AtWork {
   public:
    explicit AtWork(WorkForm& form) : form_(form) { form_.SetWorking(true); }
    ~AtWork() { form_.SetWorking(false); }
    AtWork(const AtWork&) = delete;
    AtWork& operator=(const AtWork&) = delete;

   private:
    WorkForm& form_;
  };

 private:
  void SetWorking(bool working);

  Session& session_;
  bool stopped_ = false;
};

}  // namespace tallwick
