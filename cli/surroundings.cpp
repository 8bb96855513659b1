#include "cli/surroundings.h"

#include <filesystem>

#include "core/portable_file_system.h"
#include "core/text.h"

namespace tallwick::cli {

void CommandLineClock::Hold(const std::optional<Date>& day, const std::optional<DateTime>& time) {
  if (!day && !time) return;
  DateTime held = time ? *time : DateTime{{}, 12, 0, 0};
  held.date = day ? *day : system_.Now().date;
  fixed_ = held;
}

std::string CommandLineSuite::SettingsPath() const {
  return options_.settings.empty() ? DataPath() : Held(options_.settings);
}

std::string CommandLineSuite::Held(const std::string& platform_path) const {
  if (platform_path.empty()) return {};
  std::error_code ignored;
  const std::filesystem::path whole = std::filesystem::absolute(PathOfUtf8(platform_path), ignored);
  return files_.HeldPath(whole.empty() ? platform_path : Utf8OfPath(whole.lexically_normal()));
}

namespace {

// -1 for what is no number.
int Digits(std::string_view text) {
  return SmallNumber(text).value_or(-1);
}

}  // namespace

std::optional<Date> ParseIsoDate(std::string_view text) {
  if (text.size() != 10 || text[4] != '-' || text[7] != '-') return std::nullopt;
  const Date date{Digits(text.substr(0, 4)), Digits(text.substr(5, 2)), Digits(text.substr(8, 2))};
  return IsValidDate(date) ? std::optional(date) : std::nullopt;
}

std::optional<DateTime> ParseTimeOfDay(std::string_view text) {
  const bool seconds = text.size() == 8;
  if ((!seconds && text.size() != 5) || text[2] != ':' || (seconds && text[5] != ':')) return std::nullopt;
  const int hour = Digits(text.substr(0, 2));
  const int minute = Digits(text.substr(3, 2));
  const int second = seconds ? Digits(text.substr(6, 2)) : 0;
  if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) return std::nullopt;
  return DateTime{{}, hour, minute, second};
}

}  // namespace tallwick::cli
