#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/Text.h"
#include "platform/Variant.h"

namespace marl {

/// A value of a kind that the switchboard does not use: an object, a date, ...
struct ForeignValue {
  bool operator==(const ForeignValue&) const = default;
};

/// An argument or result of a component's operation: nothing, a number or a text. A component may
/// also return anything else.
using ComponentValue = Variant<std::monostate, std::int32_t, Text, ForeignValue>;

/// A component instance; the destructor releases it.
class Component {
 public:
  virtual ~Component() = default;
  /// Calls `operation` (IDispatch::Invoke, late bound). Arguments are passed by reference, so the
  /// component can change them. False if the call failed: `failure` is then its description, or the
  /// system's text for its code if it has none, and never empty; arguments and result are
  /// unchanged.
  virtual bool Call(TextView operation, std::vector<ComponentValue>& arguments,
                    ComponentValue& result, Text& failure) = 0;
};

/// The suite's in-process components, by ProgID ("Marl.QaComponent").
class Components {
 public:
  virtual ~Components() = default;
  /// Creates an instance (CLSIDFromProgID, CoCreateInstance). Null on failure: `failure` is empty
  /// if the component is not registered, and the system's description if a registered one cannot be
  /// created.
  virtual std::unique_ptr<Component> Create(TextView name, Text& failure) = 0;
};

}  // namespace marl
