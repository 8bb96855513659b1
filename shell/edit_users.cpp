#include "shell/edit_users.h"

#include <algorithm>

#include "core/encoding.h"
#include "core/text.h"
#include "shell/company_tables.h"
#include "shell/rights.h"
#include "shell/user_changes.h"

namespace tallwick {
namespace {

std::string UserLine(const clsSecurity& user) {
  std::string line = user.osLogin;
  if (!user.sUserName.empty()) line += "   " + user.sUserName;
  return user.iDisabled != 0 ? line + "   (disabled)" : line;
}

std::string Joined(const std::vector<std::string>& codes) {
  std::string text;
  for (const std::string& code : codes) text += (text.empty() ? "" : ", ") + code;
  return text.empty() ? "none" : text;
}

// A line for each setting that is another one now.
std::string WhatIsNew(const clsSecurity& before, const clsSecurity& now) {
  std::string lines;
  const auto add = [&lines](bool differs, const std::string& line) {
    if (differs) lines += "\r" + line;
  };
  add(before.sUserName != now.sUserName, "Full name: " + now.sUserName);
  add(before.sGroup != now.sGroup, "Group: " + now.sGroup);
  add(before.iDisabled != now.iDisabled,
      now.iDisabled != 0 ? "The account is disabled" : "The account is active");
  add(before.iMustChange != now.iMustChange,
      now.iMustChange != 0 ? "A new password must be chosen" : "No new password must be chosen");
  add(before.sSecurity != now.sSecurity, "The rights are others");
  add(before.sBankCodes != now.sBankCodes, "Banks: " + Joined(now.sBankCodes));
  return lines;
}

std::vector<int> RightLevels() {
  std::vector<int> levels;
  for (const Right& right : RightsCatalogue()) levels.push_back(right.kind == RightKind::kHeading ? 0 : 1);
  return levels;
}

// The place of the heading above a right in the catalogue.
std::size_t HeadingOf(std::size_t place) {
  while (place > 0 && RightsCatalogue()[place].kind != RightKind::kHeading) --place;
  return place;
}

bool Contains(const std::vector<std::string>& codes, const std::string& code) {
  return std::find(codes.begin(), codes.end(), code) != codes.end();
}

struct EntryField {
  std::string_view field;
  std::string_view control;
};

constexpr EntryField kEntryFields[] = {{"LOGIN", "txtLogin"},     {"USERNAME", "txtUserName"},
                                       {"GROUP", "cboGroup"},     {"DISABLED", "chkDisabled"},
                                       {"SECURITY", "lstRights"}, {"BANKCODE", "lstBanks"}};

// The control of a field of the users' tables; that of the full name for one without.
std::string_view ControlOf(std::string_view field) {
  const auto* entry = std::find_if(std::begin(kEntryFields), std::end(kEntryFields),
                                   [&](const EntryField& one) { return one.field == field; });
  return entry != std::end(kEntryFields) ? entry->control : "txtUserName";
}

}  // namespace

FrmEditUsers::FrmEditUsers(Session& session) : Form("frmEditUsers", session.Boxes()), session_(session) {
  SetFormCaption("Users and Rights");
  Add(ControlKind::kList, "lstUsers", "&Users:");
  Add(ControlKind::kText, "txtLogin", "&Login Name:");
  Add(ControlKind::kText, "txtUserName", "Full Na&me:");
  Add(ControlKind::kCombo, "cboGroup", "&Group:");
  Add(ControlKind::kCheck, "chkMustChange", "Must choose a new &password at the next login");
  Add(ControlKind::kCheck, "chkDisabled", "Account is d&isabled");
  Add(ControlKind::kLabel, "lblLastLogin");
  Add(ControlKind::kLabel, "lblLastUpdated");
  Add(ControlKind::kCheckList, "lstRights", "&Rights:");
  Add(ControlKind::kButton, "cmdGrantAll", "Grant &All");
  Add(ControlKind::kButton, "cmdDenyAll", "De&ny All");
  Add(ControlKind::kCheckList, "lstBanks", "&Banks:");
  Add(ControlKind::kButton, "cmdNew", "Ne&w User");
  Add(ControlKind::kButton, "cmdSave", "&Save");
  Add(ControlKind::kButton, "cmdDelete", "&Delete...");
  Add(ControlKind::kButton, "cmdForceResets", "&Force Password Resets...");
  Add(ControlKind::kButton, "cmdClose", "&Close");
  Add(ControlKind::kLabel, "lblStatus");
}

bool FrmEditUsers::OpenTables() {
  const std::string problem = clsSecurity::UsersProblem(session_.Home());
  if (!problem.empty()) Boxes().Critical(Caption(), problem);
  return problem.empty();
}

void FrmEditUsers::OnOpen() {
  SetRows("cboGroup", {std::begin(kUserGroups), std::end(kUserGroups)});
  ReadUsers(session_.Login());
  SetFocus(logins_.empty() ? "txtLogin" : "lstUsers");
}

// Shows the user with the login, or the first one; without users a new one is begun.
void FrmEditUsers::ReadUsers(std::string_view login_to_show) {
  std::vector<std::string> lines;
  int row = 0;
  logins_.clear();
  for (const clsSecurity& user : clsSecurity::AllUsers(session_.Home())) {
    lines.push_back(UserLine(user));
    logins_.push_back(user.osLogin);
    if (EqualsIgnoreCase(user.osLogin, Trim(login_to_show))) row = static_cast<int>(logins_.size());
  }
  if (row == 0 && !logins_.empty()) row = 1;
  SetRows("lstUsers", std::move(lines), row);
  row == 0 ? StartNew() : ChooseUser(row);
}

void FrmEditUsers::ChooseUser(int row) {
  const std::string& login = logins_[static_cast<std::size_t>(row) - 1];
  if (const std::optional<clsSecurity> user = clsSecurity::GetUserSecurity(session_.Home(), login)) {
    is_new_ = false;
    ShowUser(*user);
    return;
  }
  Boxes().Critical(Caption(), "The user " + Quoted(login) + " is no longer there.");
  StartNew();
}

void FrmEditUsers::StartNew() {
  is_new_ = true;
  ShowUser(clsSecurity::NewUser());
  SetSelected("lstUsers", 0);
}

void FrmEditUsers::ShowUser(const clsSecurity& user) {
  loaded_ = user;
  SetText("txtLogin", user.osLogin);
  SetEnabled("txtLogin", is_new_);
  SetText("txtUserName", user.sUserName);
  SetText("cboGroup", user.sGroup);
  SetValue("chkMustChange", user.iMustChange != 0 ? 1 : 0);
  SetValue("chkDisabled", user.iDisabled != 0 ? 1 : 0);
  SetCaption("lblLastLogin", user.sLastLogin.empty() ? "Never" : user.sLastLogin);
  SetCaption("lblLastUpdated", user.sLastUpdated.empty() ? "Not saved yet" : user.sLastUpdated);
  SetEnabled("cmdDelete", !is_new_);
  ShowRights();
  ReadBanks();
  ShowBanks();
  Say(is_new_ ? "New user: the login name is fixed once it is saved." : "");
}

void FrmEditUsers::ShowRights() {
  std::vector<std::string> rows;
  std::vector<bool> marks;
  for (const Right& right : RightsCatalogue()) {
    rows.emplace_back(right.caption);
    marks.push_back(loaded_.IsSecurityOff(right.number));
  }
  SetMarkedRows("lstRights", std::move(rows), std::move(marks), RightLevels());
}

// The company's banks, then those that only the user's record still names.
void FrmEditUsers::ReadBanks() {
  codes_.clear();
  for (const BankRecord& bank : session_.Company().banks.InNameOrder()) codes_.push_back(bank.code);
  for (const std::string& code : loaded_.sBankCodes) {
    if (!Contains(codes_, code)) codes_.push_back(code);
  }
}

void FrmEditUsers::ShowBanks() {
  std::vector<std::string> rows;
  std::vector<bool> marks;
  for (const std::string& code : codes_) {
    const std::optional<BankRecord> bank = session_.Company().banks.Find(code);
    rows.push_back((bank ? bank->name : "No longer among the banks") + "   (" + code + ")");
    marks.push_back(Contains(loaded_.sBankCodes, code));
  }
  SetMarkedRows("lstBanks", std::move(rows), std::move(marks));
}

clsSecurity FrmEditUsers::Entered() {
  clsSecurity user = loaded_;
  user.osLogin = Trim(Text("txtLogin"));
  user.sUserName = Trim(Text("txtUserName"));
  user.sGroup = Text("cboGroup");
  user.iMustChange = static_cast<std::int16_t>(At("chkMustChange").value);
  user.iDisabled = static_cast<std::int16_t>(At("chkDisabled").value);
  const std::vector<bool>& marks = At("lstRights").marks;
  for (std::size_t place = 0; place < RightsCatalogue().size(); ++place)
    user.SetRight(RightsCatalogue()[place].number, marks[place]);
  // The order of the record stays, so that an untouched entry is no change.
  const std::vector<bool>& allowed = At("lstBanks").marks;
  for (std::size_t place = 0; place < codes_.size(); ++place) {
    if (!allowed[place]) std::erase(user.sBankCodes, codes_[place]);
    if (allowed[place] && !Contains(user.sBankCodes, codes_[place])) user.sBankCodes.push_back(codes_[place]);
  }
  return user;
}

bool FrmEditUsers::IsChanged() {
  return !Entered().SameSettings(loaded_);
}

bool FrmEditUsers::MayLeaveEntry() {
  if (!IsChanged()) return true;
  const std::string who = is_new_ ? "the new user" : Quoted(loaded_.osLogin);
  return Boxes().Show({BoxIcon::kQuestion, Caption(), "The changes to " + who + " are not saved.  Drop them?",
                       BoxButtons::kYesNo, BoxAnswer::kNo}) == BoxAnswer::kYes;
}

// A combo takes whatever is typed.
void FrmEditUsers::OnLeave(Control& control) {
  if (control.name != "cboGroup") return;
  for (std::string_view group : kUserGroups) {
    if (EqualsIgnoreCase(Trim(control.text), group)) return SetText("cboGroup", std::string(group));
  }
  Refuse("Choose one of the groups Administrator, Power User and User.", "cboGroup");
}

void FrmEditUsers::OnChoose(Control& control) {
  if (control.name != "lstUsers") return;
  const int row = control.selected;
  if (!is_new_ && logins_[static_cast<std::size_t>(row) - 1] == loaded_.osLogin) return;
  if (MayLeaveEntry()) return ChooseUser(row);
  const auto shown = std::find(logins_.begin(), logins_.end(), loaded_.osLogin);
  SetSelected("lstUsers", is_new_ ? 0 : static_cast<int>(shown - logins_.begin()) + 1);
}

void FrmEditUsers::OnMark(Control& control, int row) {
  if (control.name != "lstRights") return;
  const auto place = static_cast<std::size_t>(row) - 1;
  const bool checked = control.marks[place];
  if (RightsCatalogue()[place].kind == RightKind::kHeading)
    MarkHeading(place, checked);
  else if (checked)
    SetMark("lstRights", static_cast<int>(HeadingOf(place)) + 1, true);
}

void FrmEditUsers::MarkHeading(std::size_t heading, bool checked) {
  for (std::size_t place = heading + 1; place < RightsCatalogue().size(); ++place) {
    if (RightsCatalogue()[place].kind == RightKind::kHeading) return;
    SetMark("lstRights", static_cast<int>(place) + 1, checked);
  }
}

void FrmEditUsers::MarkAll(bool checked) {
  for (std::size_t row = 1; row <= RightsCatalogue().size(); ++row)
    SetMark("lstRights", static_cast<int>(row), checked);
}

void FrmEditUsers::OnClick(Control& control) {
  Say("");
  if (control.name == "cmdGrantAll") MarkAll(true);
  if (control.name == "cmdDenyAll") MarkAll(false);
  if (control.name == "cmdSave") Save();
  if (control.name == "cmdDelete") Delete();
  if (control.name == "cmdForceResets") ForceResets();
  if (control.name == "cmdClose") Close();
  if (control.name == "cmdNew" && MayLeaveEntry()) {
    StartNew();
    SetFocus("txtLogin");
  }
}

bool FrmEditUsers::OnKey(std::string_view key) {
  if (key != "Esc") return false;
  Close();
  return true;
}

bool FrmEditUsers::OnClose() {
  return MayLeaveEntry();
}

bool FrmEditUsers::IsOwn(const clsSecurity& user) const {
  return EqualsIgnoreCase(user.osLogin, session_.Login());
}

bool FrmEditUsers::MayChange() {
  const std::string problem = UserChangeProblem(session_);
  if (!problem.empty()) Boxes().Critical(Caption(), problem);
  return problem.empty();
}

bool FrmEditUsers::IsValid(const clsSecurity& user) {
  FieldProblem problem = UserSaveProblem(session_, loaded_, user);
  if (problem.text.empty() && user.sUserName.empty())
    problem = {"USERNAME", "The full name is missing.  Type it."};
  if (!problem.text.empty()) Refuse(problem.text, ControlOf(problem.field));
  return problem.text.empty();
}

bool FrmEditUsers::Save() {
  clsSecurity user = Entered();
  if (!IsValid(user)) return false;
  if (!is_new_ && user.SameSettings(loaded_)) {
    Say("Nothing is changed that could be saved.");
    return true;
  }
  const int code = user.SaveUserSecurity(session_.Home(), session_.TheClock().Now(), &loaded_);
  if (code != engine::kSuccess) {
    code == kUserChanged && !is_new_ ? ShowTheirs() : RefuseSaving(user, code);
    return false;
  }
  if (IsOwn(user)) session_.ReloadUser();
  ReadUsers(user.osLogin);
  Say(Quoted(user.osLogin) + " is saved.");
  return true;
}

// The entry was made upon what holds no longer; the stored user takes its place.
void FrmEditUsers::ShowTheirs() {
  const std::string login = loaded_.osLogin;
  const std::optional<clsSecurity> theirs = clsSecurity::GetUserSecurity(session_.Home(), login);
  const std::string what = theirs
                               ? "changed elsewhere since it was loaded.  Nothing was saved: look at what is "
                                 "shown now, and make your change again if it is still wanted.\r" +
                                     WhatIsNew(loaded_, *theirs)
                               : "deleted elsewhere since it was loaded.  Nothing was saved.";
  Boxes().Critical(Caption(), "The user " + Quoted(login) + " was " + what);
  ReadUsers(login);
}

// Everything that was entered stays on the screen.
void FrmEditUsers::RefuseSaving(const clsSecurity& user, int code) {
  std::string why(engine::error4text(code));
  std::string_view at = "txtUserName";
  if (code == kUserChanged) {
    why = "another user has got this login name in the meantime.  Choose another one.";
    at = "txtLogin";
  }
  if (code == engine::kErrorFieldValue) {
    const FieldProblem problem = session_.Data().LastFieldProblem();
    why = problem.text;
    at = ControlOf(problem.field);
  }
  const bool enabled = At(at).enabled;
  Refuse("The user " + Quoted(user.osLogin) + " was not saved: " + why, enabled ? at : "txtUserName");
}

void FrmEditUsers::Delete() {
  if (!MayChange()) return;
  const std::string login = loaded_.osLogin;
  const bool asked = IsOwn(loaded_) ||  // the refusal comes without a question
                     Boxes().Show({BoxIcon::kQuestion, "User Delete",
                                   "Delete the user " + Quoted(login) + " with the rights and banks?",
                                   BoxButtons::kYesNo, BoxAnswer::kNo}) == BoxAnswer::kYes;
  if (!asked) return;
  const int code = clsSecurity::DeleteUserSecurity(session_.Home(), login, session_.Login());
  if (code == kOwnAccount) return;
  if (code != engine::kSuccess && code != engine::kNoRecord) {
    Boxes().Critical("User Delete", "The user " + Quoted(login) +
                                        " was not deleted: " + std::string(engine::error4text(code)) + ".");
    return;
  }
  ReadUsers("");
  Say(Quoted(login) + " is deleted.");
}

void FrmEditUsers::ForceResets() {
  if (!MayChange() || !MayLeaveEntry()) return;
  if (Boxes().Show({BoxIcon::kQuestion, "Force Password Resets",
                    "Every user must choose a new password at the next login.  Go on?", BoxButtons::kYesNo,
                    BoxAnswer::kNo}) != BoxAnswer::kYes)
    return;
  int count = 0;
  const int code = clsSecurity::ForcePasswordResets(session_.Home(), &count);
  if (code != engine::kSuccess) {
    Boxes().Critical("Force Password Resets",
                     "Nothing was changed: " + std::string(engine::error4text(code)) + ".");
    return;
  }
  ReadUsers(loaded_.osLogin);
  Say(std::to_string(count) + " users must choose a new password.");
}

void FrmEditUsers::Say(std::string text) {
  SetCaption("lblStatus", std::move(text));
}

}  // namespace tallwick
