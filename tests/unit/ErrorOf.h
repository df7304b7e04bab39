#pragma once

#include "platform/RuntimeError.h"

namespace marl {

/// The number of the failure that `call` throws; 0 if it succeeds.
template <typename Call>
int ErrorOf(Call&& call) {
  try {
    static_cast<void>(call());
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

constexpr int kInvalidCall = 5;
constexpr int kOverflow = 6;

}  // namespace marl
