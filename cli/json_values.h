// Values of the product as JSON: money as text, dates "YYYY-MM-DD" or "", periods with their key, records by
// field name.
#pragma once

#include <string>
#include <vector>

#include "cli/output.h"
#include "core/currency.h"
#include "core/date.h"
#include "core/period.h"
#include "store/clsKVRData.h"

namespace tallwick::cli {

std::string MoneyText(Currency amount);  // "1234.56"
std::string IsoDate(const Date& date);   // "2024-03-15" or ""
Json PeriodJson(const Period& period);

// How a record's texts are given: as they stand but for blanks at the end, or trimmed on both sides.
enum class Trimming { kRight, kBoth };

// One field of the current record: texts as text, whole numbers as numbers, other numbers as money, dates,
// logicals. A number or a date that is damaged is given as the characters that are stored.
Json FieldJson(clsKVRData& store, DataHandle data, const FieldProperties& field, Trimming trimming);
// All of them under their names.
Json RecordJson(clsKVRData& store, DataHandle data, const std::vector<FieldProperties>& fields,
                Trimming trimming);
// A field's value in a line for a person.
std::string PlainText(const Json& value);
// "NAME = value" lines of a record given by RecordJson, blank values left out.
std::string FieldLines(const Json& record);

}  // namespace tallwick::cli
