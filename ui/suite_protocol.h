// The words that the desktop and the suite's main program exchange over a local socket.
//
// One request, one answer, each a JSON object on a line of its own (UTF-8, "\n" at the end). A connection may
// carry any number of them, one after the other:
//   {"ask":"state"}                                  {"companyName":T,"companyNumber":T,"dataPath":T,
//                                                     "applicationPath":T,"settingsPath":T,"updatePath":T,
//                                                     "inactiveBanksPath":T,"branch":T,"securityOn":B,
//                                                     "login":T}
//   {"ask":"register","program":T,"process":N}       {"registered":true}
//   {"ask":"file","file":T}                          {"known":true|false|null}   null: no file list is kept
//   {"ask":"files"}                                  {"files":[T,...]|null}
//   {"ask":"branch","branch":T}                      {"branch":T}                the stand-in only: the
//                                                     branch that is now selected
//   {"ask":"quit"}                                   {"ended":true}              the stand-in only
//   anything else                                    {"error":T}
// Paths are in the platform's form.
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

namespace tallwick {

// Longest wait for any step of an exchange.
inline constexpr int kSuiteWaitMs = 2000;

// TALLWICK_SUITE_SOCKET from the environment, else a name of this user's own.
QString SuiteSocketName();

QByteArray LineOf(const QJsonObject& object);
// An empty object where the line is no JSON object.
QJsonObject ObjectOf(const QByteArray& line);

// Connects, asks once and waits for the answer; an empty object when nobody answers in time.
QJsonObject AskSuite(const QString& socket_name, const QJsonObject& request);

}  // namespace tallwick
