#pragma once

#include <map>
#include <set>
#include <tuple>
#include <vector>

#include "platform/SettingsStore.h"
#include "platform/memory/UpperCase.h"

namespace marl {

/// Settings in memory. Every write is recorded, so that a test sees what a start has changed.
class MemorySettingsStore : public SettingsStore {
 public:
  struct Write {
    Text application;
    Text section;
    Text key;
    Text value;
    bool operator==(const Write&) const = default;
  };

  struct Setting {
    Text application;
    Text section;
    Text key;
    auto operator<=>(const Setting&) const = default;
  };

  std::vector<Write> writes;
  mutable std::set<Setting> asked;  ///< everything that was read, existing or not
  Status failure = kOk;             ///< if not kOk, the result of every write

  Text GetSetting(TextView application, TextView section, TextView key,
                  TextView default_) const override {
    asked.insert({Text(application), Text(section), Text(key)});
    const auto found = values_.find(Name(application, section, key));
    return found == values_.end() ? Text(default_) : found->second;
  }
  Status SaveSetting(TextView application, TextView section, TextView key,
                     TextView value) override {
    if (!AreNames(application, section, key)) return kInvalidParameter;
    if (failure != kOk) return failure;
    writes.push_back({Text(application), Text(section), Text(key), Text(value)});
    values_[Name(application, section, key)] = value.substr(0, value.find(u'\0'));
    return kOk;
  }

  /// Stores a value that the program has not written.
  void Put(TextView application, TextView section, TextView key, TextView value) {
    values_[Name(application, section, key)] = value;
  }
  bool Has(TextView application, TextView section, TextView key) const {
    return values_.contains(Name(application, section, key));
  }

 private:
  using Address = std::tuple<Text, Text, Text>;
  static Address Name(TextView application, TextView section, TextView key) {
    return {UpperCase(application), UpperCase(section), UpperCase(key)};
  }
  std::map<Address, Text> values_;
};

}  // namespace marl
