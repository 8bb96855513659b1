// Fonts need Qt's application object. A program without windows gets one for as long as it writes.
#pragma once

#include <QGuiApplication>
#include <memory>
#include <vector>

namespace tallwick {

class ApplicationInNeed {
 public:
  ApplicationInNeed();
  ~ApplicationInNeed();
  ApplicationInNeed(const ApplicationInNeed&) = delete;
  ApplicationInNeed& operator=(const ApplicationInNeed&) = delete;

 private:
  QtMessageHandler handler_ = nullptr;
  std::vector<char*> arguments_;  // Qt keeps references to both
  int count_ = 0;
  std::unique_ptr<QGuiApplication> made_;
};

}  // namespace tallwick
