#pragma once

#include <cstdint>
#include <memory>
#include <variant>
#include <vector>

#include "platform/Text.h"

namespace marl {

/// An argument or result of a component's operation: nothing, a number or a text.
using ComponentValue = std::variant<std::monostate, std::int32_t, Text>;

/// One live component of the suite; dropping it releases it.
class Component {
 public:
  virtual ~Component() = default;
  /// Calls `operation` (IDispatch::Invoke, late bound). The arguments go in by reference and come
  /// back as the component left them. False when the call failed: `failure` is then its
  /// description, and arguments and result are untouched.
  virtual bool Call(TextView operation, std::vector<ComponentValue>& arguments,
                    ComponentValue& result, Text& failure) = 0;
};

/// The in-process components that share the suite's folder, by name ("Marl.QaComponent").
class Components {
 public:
  virtual ~Components() = default;
  /// Makes an instance (CLSIDFromProgID, CoCreateInstance); null when none is registered.
  virtual std::unique_ptr<Component> Create(TextView name) = 0;
  /// As `Create`. Where it makes nothing, `failure` tells why: it is empty when none is registered,
  /// and the platform's description when a registered one cannot be made.
  virtual std::unique_ptr<Component> TryCreate(TextView name, Text& failure) {
    failure.clear();
    return Create(name);
  }
};

}  // namespace marl
