// An empty company folder with a store on it, and a second store that plays the other workstation.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "core/system_ports.h"
#include "tables/table_base.h"
#include "tests/support/fakes.h"
#include "tests/support/temp_folder.h"

namespace tallwick::testing {

class CompanyTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(data_.InitializeCodebase());
    ASSERT_TRUE(other_data_.InitializeCodebase());
  }
  std::string Raw(TableBase& table, std::string_view field) {
    return data_.GetStringFieldRawValue(table.Handle(), field);
  }
  // Puts a value into the current record as another program would have stored it.
  void Plant(TableBase& table, std::string_view field, std::string_view value) {
    data_.SetStringFieldValue(table.Handle(), field, value);
    ASSERT_EQ(data_.WriteTheRecord(table.Handle()), 0);
  }
  bool FileThere(std::string_view name) { return SystemFileSystem().FileExists(folder_.Held(name)); }

  TempFolder folder_;
  FakeClock clock_;
  FakeWorkstation workstation_;
  ScriptedBoxes boxes_;
  ScriptedBoxes other_boxes_;
  clsKVRData data_{{clock_, workstation_, SystemFileSystem(), boxes_, engine::SystemFiles()}};
  clsKVRData other_data_{{clock_, workstation_, SystemFileSystem(), other_boxes_, engine::SystemFiles()}};
  std::vector<std::string> made_;
  TableHome home_{data_, SystemFileSystem(), boxes_, folder_.Held(),
                  [this](std::string_view table) { made_.emplace_back(table); }};
  TableHome other_home_{other_data_, SystemFileSystem(), other_boxes_, folder_.Held()};
};

}  // namespace tallwick::testing
