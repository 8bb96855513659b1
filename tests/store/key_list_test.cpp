// Keys of a batch on their way into an index: sorted by key and record, and found again while they wait.
#include "store/engine/key_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tallwick::engine {
namespace {

// How many different texts stand behind a stem that all keys share. Few make long runs of equal keys.
struct Shape {
  int length;
  std::string stem;
  std::uint32_t texts;
};

std::string Padded(std::string text, int length) {
  text.resize(static_cast<std::size_t>(length), ' ');
  return text;
}

TEST(KeyList, SortsByKeyAndThenByRecord) {
  const std::vector<Shape> shapes = {
      {1, "", 3},           {3, "", 1000},        {8, "", 2},
      {8, "20", 100000},    {12, "", 100000},     {26, "21-000", 40},
      {26, "21-000", 5000}, {60, "COUNTY T", 12}, {240, std::string(100, 'A'), 300}};
  std::mt19937 random(11);
  for (const Shape& shape : shapes) {
    for (const std::uint32_t count : {1U, 64U, 65U, 5000U}) {
      KeyList list(KeyShape{shape.length});
      std::vector<std::pair<std::string, std::uint32_t>> expected;
      for (std::uint32_t i = 0; i < count; ++i) {
        const std::string key = Padded(shape.stem + std::to_string(random() % shape.texts), shape.length);
        const std::uint32_t record = (i * 7919U) % count + 1;  // no order of its own
        std::memcpy(list.Add(record), key.data(), key.size());
        expected.emplace_back(key, record);
      }
      list.Sort();
      std::sort(expected.begin(), expected.end());
      for (std::size_t i = 0; i < expected.size(); ++i) {
        const std::string key(reinterpret_cast<const char*>(list.Key(i)), list.KeyLength());
        ASSERT_EQ(std::make_pair(key, list.Record(i)), expected[i])
            << shape.length << " bytes, " << count << " keys, at " << i;
        ASSERT_EQ(list.Used(i), static_cast<int>(key.find_last_not_of(' ') + 1)) << '"' << key << '"';
      }
      std::set<std::string> keys;
      for (const auto& [key, record] : expected) keys.insert(key);
      EXPECT_EQ(list.HasSameKeys(), keys.size() < expected.size()) << shape.length << " bytes, " << count;
      list.KeepFirstOfSame();
      EXPECT_EQ(list.Count(), keys.size()) << shape.length << " bytes, " << count;
      EXPECT_FALSE(list.HasSameKeys());
    }
  }
}

// Bytes below the fill, and the zeros that end the keys of numbers, stand in a key's order as any others.
TEST(KeyList, SortsKeysThatEndInOrBelowTheirFill) {
  struct Case {
    std::uint8_t fill;
    std::vector<std::string> keys;
  };
  const std::string zeros(2, '\0');
  for (const Case& tag :
       {Case{' ', {"ab  ", "ab\x01 ", "ab \x01", "ab" + zeros, "    ", "ab\x1F\x1F", "abcd"}},
        Case{0, {"a" + zeros + "b", "ab" + zeros, zeros + zeros, "abc ", "ab\xFF\x01", "ab" + zeros}}}) {
    KeyList list(KeyShape{4, tag.fill});
    for (int again = 0; again < 2; ++again) {
      std::vector<std::pair<std::string, std::uint32_t>> expected;
      for (const std::string& key : tag.keys) {
        const auto record = static_cast<std::uint32_t>(tag.keys.size() - expected.size());
        std::memcpy(list.Add(record), key.data(), key.size());
        expected.emplace_back(key, record);
      }
      list.Sort();
      std::sort(expected.begin(), expected.end());
      ASSERT_EQ(list.Count(), expected.size());
      for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(std::string(reinterpret_cast<const char*>(list.Key(i)), 4), expected[i].first) << i;
        EXPECT_EQ(list.Record(i), expected[i].second) << i;
      }
      EXPECT_EQ(list.HasSameKeys(), tag.fill == 0);
      list.Clear();
      EXPECT_EQ(list.Count(), 0U);
    }
    list.Sort();
    EXPECT_EQ(list.Count(), 0U);
    EXPECT_FALSE(list.HasSameKeys());
  }
}

TEST(KeyQueue, KnowsItsKeysWhileItGrows) {
  constexpr int kLength = 10;
  std::mt19937 random(5);
  KeyQueue queue(KeyShape{kLength}, true);
  std::set<std::string> held;
  for (std::uint32_t record = 1; record <= 4000; ++record) {
    const std::string key = Padded(std::to_string(random() % 6000), kLength);
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(key.data());
    ASSERT_EQ(queue.Contains(bytes), held.contains(key)) << key << " at " << record;
    // Now and then a key comes that was not asked about.
    if (record % 5 == 0) {
      const std::string other = Padded("X" + std::to_string(record), kLength);
      queue.Add(reinterpret_cast<const std::uint8_t*>(other.data()), record);
      held.insert(other);
    } else if (held.insert(key).second) {
      queue.Add(bytes, record);
    }
  }
  for (const std::string& key : held)
    ASSERT_TRUE(queue.Contains(reinterpret_cast<const std::uint8_t*>(key.data()))) << key;
  EXPECT_EQ(queue.Sorted().Count(), held.size());
}

}  // namespace
}  // namespace tallwick::engine
