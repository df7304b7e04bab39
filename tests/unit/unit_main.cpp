// The main program of the unit tests: misuse that the memory backend reports fails the running
// test.

#include <gtest/gtest.h>

#include "platform/memory/Misuse.h"

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  marl::OnMisuse([](const std::string& what) { ADD_FAILURE() << what; });
  return RUN_ALL_TESTS();
}
