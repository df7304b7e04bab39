#pragma once

#include <exception>

#include "platform/Text.h"

namespace marl {

/// A failure by the runtime's rules (see docs/ARCHITECTURE.md), with its number and text. Nothing
/// needs to catch it: `Desktop::Event` shows the text in a message box and ends the process.
class RuntimeError : public std::exception {
 public:
  /// `number` is the runtime's error number, `text` what the user reads.
  RuntimeError(int number, const char16_t* text) : number_(number), text_(text) {}
  RuntimeError(int number, Text text) : number_(number), text_(std::move(text)) {}

  int number() const { return number_; }
  const Text& text() const { return text_; }
  const char* what() const noexcept override { return "runtime error"; }

  static RuntimeError InvalidCall() { return {5, u"Invalid procedure call or argument"}; }
  static RuntimeError Overflow() { return {6, u"Overflow"}; }
  static RuntimeError SubscriptOutOfRange() { return {9, u"Subscript out of range"}; }
  static RuntimeError DivisionByZero() { return {11, u"Division by zero"}; }
  static RuntimeError TypeMismatch() { return {13, u"Type mismatch"}; }
  static RuntimeError InvalidPropertyValue() { return {380, u"Invalid property value"}; }
  static RuntimeError DuplicateKey() {
    return {457, u"This key is already associated with an element of this collection"};
  }

 private:
  int number_;
  Text text_;
};

/// Runs `statement` and drops its failure, so that the next statement runs. Returns whether it
/// succeeded.
template <typename Statement>
bool Skip(Statement&& statement) {
  try {
    statement();
    return true;
  } catch (const RuntimeError&) {
    return false;
  }
}

}  // namespace marl
