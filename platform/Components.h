#pragma once

#include <cstdint>
#include <memory>
#include <variant>
#include <vector>

#include "platform/Text.h"

namespace marl {

/// A value of a kind that components and the switchboard do not exchange: an object, a date, ...
struct ForeignValue {
  bool operator==(const ForeignValue&) const = default;
};

/// An argument or result of a component's operation: nothing, a number or a text. A component may
/// give anything else as well.
using ComponentValue = std::variant<std::monostate, std::int32_t, Text, ForeignValue>;

/// One live component of the suite; dropping it releases it.
class Component {
 public:
  virtual ~Component() = default;
  /// Calls `operation` (IDispatch::Invoke, late bound). The arguments go in by reference and come
  /// back as the component left them. False when the call failed: `failure` is then its
  /// description, or the system's text for its code where it has none, and never empty; arguments
  /// and result are untouched.
  virtual bool Call(TextView operation, std::vector<ComponentValue>& arguments,
                    ComponentValue& result, Text& failure) = 0;
};

/// The in-process components that share the suite's folder, by name ("Marl.QaComponent").
class Components {
 public:
  virtual ~Components() = default;
  /// Makes an instance (CLSIDFromProgID, CoCreateInstance). Null where it makes none: `failure` is
  /// then empty when none is registered, and the system's description when a registered one cannot
  /// be made.
  virtual std::unique_ptr<Component> Create(TextView name, Text& failure) = 0;
};

}  // namespace marl
