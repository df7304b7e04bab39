#pragma once

#include <type_traits>
#include <utility>
#include <variant>

namespace marl {

/// A variant whose copying may fail for want of memory. The standard library's cannot be used where
/// that matters: in libstdc++ 12, a failed copy of texts or lists destroys a value that has never
/// been made. Here a copy begins as the first alternative, which must take no memory, and is
/// assigned to.
template <typename... Types>
class Variant : public std::variant<Types...> {
 public:
  using Base = std::variant<Types...>;
  using Base::Base;
  Variant() = default;
  Variant(const Variant& other) : Base() { Base::operator=(static_cast<const Base&>(other)); }
  Variant(Variant&&) noexcept = default;
  Variant& operator=(const Variant&) = default;
  Variant& operator=(Variant&&) noexcept = default;
  template <typename Value>
  requires(!std::is_base_of_v<Base, std::remove_cvref_t<Value>>) Variant& operator=(Value&& value) {
    Base::operator=(std::forward<Value>(value));
    return *this;
  }
};

}  // namespace marl
