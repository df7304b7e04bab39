// The program of the unit tests: what the memory backend has to complain of fails the running test.

#include <gtest/gtest.h>

#include "platform/memory/Misuse.h"

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  marl::OnMisuse([](const std::string& what) { ADD_FAILURE() << what; });
  return RUN_ALL_TESTS();
}
