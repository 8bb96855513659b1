#include "ui/suite_client.h"

#include <QJsonArray>

#include "ui/suite_protocol.h"

namespace tallwick {
namespace {

class SocketSuite : public Suite {
 public:
  SocketSuite(QString socket_name, const FileSystem& files, QJsonObject state)
      : socket_name_(std::move(socket_name)), files_(files), state_(std::move(state)) {}

  std::string CompanyName() const override { return Text("companyName"); }
  std::string CompanyNumber() const override { return Text("companyNumber"); }
  std::string DataPath() const override { return Folder("dataPath"); }
  std::string ApplicationPath() const override { return Folder("applicationPath"); }
  std::string SettingsPath() const override { return Folder("settingsPath"); }
  std::string UpdatePath() const override { return Folder("updatePath"); }
  std::string InactiveBanksPath() const override { return Folder("inactiveBanksPath"); }
  std::string BranchName() const override {
    AskAgain();
    return Text("branch");
  }

  bool SecurityOn() const override {
    AskAgain();
    return state_["securityOn"].toBool();
  }
  std::string Login() const override {
    AskAgain();
    return Text("login");
  }
  bool RegisterProgram(std::string_view program, int process_id) override {
    const QString name = QString::fromUtf8(program.data(), static_cast<qsizetype>(program.size()));
    const QJsonObject answer =
        AskSuite(socket_name_, {{"ask", "register"}, {"program", name}, {"process", process_id}});
    return answer["registered"].toBool();
  }
  std::optional<bool> KnowsFile(std::string_view file_no) const override {
    const QString file = QString::fromUtf8(file_no.data(), static_cast<qsizetype>(file_no.size()));
    const QJsonValue known = AskSuite(socket_name_, {{"ask", "file"}, {"file", file}})["known"];
    return known.isBool() ? std::optional(known.toBool()) : std::nullopt;
  }
  std::optional<std::vector<std::string>> Files() const override {
    const QJsonValue listed = AskSuite(socket_name_, {{"ask", "files"}})["files"];
    if (!listed.isArray()) return std::nullopt;
    std::vector<std::string> files;
    for (const auto& file : listed.toArray()) files.push_back(file.toString().toStdString());
    return files;
  }

 private:
  std::string Text(const char* key) const { return state_[QLatin1String(key)].toString().toStdString(); }
  std::string Folder(const char* key) const { return files_.HeldPath(Text(key)); }
  void AskAgain() const {
    const QJsonObject now = AskSuite(socket_name_, {{"ask", "state"}});
    for (const char* key : {"securityOn", "login", "branch"}) {
      if (now.contains(QLatin1String(key))) state_[QLatin1String(key)] = now[QLatin1String(key)];
    }
  }

  QString socket_name_;
  const FileSystem& files_;
  mutable QJsonObject state_;
};

}  // namespace

std::unique_ptr<Suite> AttachToSuite(const QString& socket_name, const FileSystem& files) {
  QJsonObject state = AskSuite(socket_name, {{"ask", "state"}});
  if (!state.contains("dataPath")) return nullptr;
  return std::make_unique<SocketSuite>(socket_name, files, std::move(state));
}

}  // namespace tallwick
