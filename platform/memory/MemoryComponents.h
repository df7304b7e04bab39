#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/Components.h"

namespace marl {

/// Components that a test registers, and the calls that reached them.
class MemoryComponents : public Components {
 public:
  /// Handles a call of a component; false fails with the text in `failure`, or with the system's
  /// text if that is empty.
  using Body = std::function<bool(const Text& operation, std::vector<ComponentValue>& arguments,
                                  ComponentValue& result, Text& failure)>;
  struct CallRecord {
    Text component;
    Text operation;
    std::vector<ComponentValue> arguments;
    bool operator==(const CallRecord&) const = default;
  };

  std::map<Text, Body> registered;
  std::map<Text, Text> broken;  ///< registered ones that cannot be created, and why
  std::vector<CallRecord> calls;
  int live = 0;  ///< instances that are not released

  std::unique_ptr<Component> Create(TextView name, Text& failure) override {
    failure.clear();
    if (const auto found = broken.find(Text(name)); found != broken.end()) {
      failure = found->second;
      return nullptr;
    }
    const auto found = registered.find(Text(name));
    if (found == registered.end()) return nullptr;
    return std::make_unique<Instance>(*this, Text(name), found->second);
  }

 private:
  class Instance : public Component {
   public:
    Instance(MemoryComponents& owner, Text name, Body body)
        : owner_(owner), name_(std::move(name)), body_(std::move(body)) {
      ++owner_.live;
    }
    ~Instance() override { --owner_.live; }
    bool Call(TextView operation, std::vector<ComponentValue>& arguments, ComponentValue& result,
              Text& failure) override {
      owner_.calls.push_back({name_, Text(operation), arguments});
      if (!body_) return true;
      std::vector<ComponentValue> filled = arguments;
      ComponentValue answer;
      Text words;
      if (!body_(Text(operation), filled, answer, words)) {
        failure = words.empty() ? Text(u"Automation error") : words;
        return false;
      }
      arguments = std::move(filled);
      result = std::move(answer);
      return true;
    }

   private:
    MemoryComponents& owner_;
    Text name_;
    Body body_;
  };
};

}  // namespace marl
