// frmEditUsers: the users of the suite, their rights and their banks.
//
// Controls, in order:
//   lstUsers (every user; the row chosen is the one that is edited), txtLogin, txtUserName, cboGroup,
//   chkMustChange, chkDisabled, lblLastLogin, lblLastUpdated, lstRights (headings with their commands below),
//   cmdGrantAll, cmdDenyAll, lstBanks, cmdNew, cmdSave, cmdDelete, cmdForceResets, cmdClose, lblStatus
// A checked row is a right granted or a bank allowed. Checking or clearing a heading does the same to its
// commands; checking a command checks its heading.
//
// Invariants: a password is neither shown nor changed, a new user gets none and must choose one; a rights
// string keeps every character that no check mark has changed; an entry that was not saved is thrown away
// only after a question, or where the user was changed elsewhere meanwhile, which a message then tells.
#pragma once

#include <string>
#include <vector>

#include "core/form.h"
#include "shell/clsSecurity.h"
#include "shell/session.h"

namespace tallwick {

class FrmEditUsers : public Form {
 public:
  explicit FrmEditUsers(Session& session);
  // False after a message where the users cannot be read. Call it before the form is opened.
  bool OpenTables();

 protected:
  void OnOpen() override;
  void OnLeave(Control& control) override;
  void OnChoose(Control& control) override;
  void OnMark(Control& control, int row) override;
  void OnClick(Control& control) override;
  bool OnKey(std::string_view key) override;
  bool OnClose() override;

 private:
  void ReadUsers(std::string_view login_to_show);
  void ReadBanks();
  void ShowUser(const clsSecurity& user);
  void ShowRights();
  void ShowBanks();
  void StartNew();
  void ChooseUser(int row);

  // What stands on the screen.
  clsSecurity Entered();
  bool IsChanged();
  // True when nothing is lost: no change, or the user gives it up.
  bool MayLeaveEntry();
  // False after a message where the session's user may change no user.
  bool MayChange();
  // False after a refusal.
  bool IsValid(const clsSecurity& user);
  bool Save();
  void ShowTheirs();
  void RefuseSaving(const clsSecurity& user, int code);
  void Delete();
  void ForceResets();
  void MarkHeading(std::size_t heading, bool checked);
  void MarkAll(bool checked);
  bool IsOwn(const clsSecurity& user) const;
  void Say(std::string text);

  Session& session_;
  std::vector<std::string> logins_;  // of the rows of lstUsers
  std::vector<std::string> codes_;   // of the rows of lstBanks
  clsSecurity loaded_;               // as read, or a new user's
  bool is_new_ = true;
};

}  // namespace tallwick
