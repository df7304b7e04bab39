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
  /// What a component does when it is called; false fails with the text put into `failure`.
  using Body = std::function<bool(const Text& operation, std::vector<ComponentValue>& arguments,
                                  ComponentValue& result, Text& failure)>;
  struct CallRecord {
    Text component;
    Text operation;
    std::vector<ComponentValue> arguments;
    bool operator==(const CallRecord&) const = default;
  };

  std::map<Text, Body> registered;
  std::map<Text, Text> broken;  ///< registered ones that cannot be made, and why
  std::vector<CallRecord> calls;
  int live = 0;  ///< instances that have not been released

  std::unique_ptr<Component> Create(TextView name) override {
    const auto found = registered.find(Text(name));
    if (found == registered.end()) return nullptr;
    return std::make_unique<Instance>(*this, Text(name), found->second);
  }
  std::unique_ptr<Component> TryCreate(TextView name, Text& failure) override {
    const auto found = broken.find(Text(name));
    failure = found == broken.end() ? Text() : found->second;
    return found == broken.end() ? Create(name) : nullptr;
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
      return !body_ || body_(Text(operation), arguments, result, failure);
    }

   private:
    MemoryComponents& owner_;
    Text name_;
    Body body_;
  };
};

}  // namespace marl
