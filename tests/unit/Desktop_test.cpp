#include "platform/forms/Desktop.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "platform/RuntimeError.h"
#include "platform/memory/MemoryDesktop.h"

namespace marl {
namespace {

using Message = MemoryDesktop::Message;

class Failures : public testing::Test {
 protected:
  template <typename Failure>
  void Fail(const Failure& failure) {
    desktop.Event([&] { throw failure; });
  }

  MemoryDesktop desktop;
};

TEST_F(Failures, ErrorOfTheRuntimeIsShownAndEndsTheProgram) {
  Fail(RuntimeError(53, u"File not found"));
  EXPECT_EQ(desktop.messages, (std::vector<Message>{{u"File not found", kCritical, u"Marl"}}));
  EXPECT_TRUE(desktop.ended());
  EXPECT_EQ(desktop.exitCode(), 1);
}

TEST_F(Failures, ProcessEndsOnceAfterItsMessage) {
  desktop.Event([&] {
    desktop.Event([] { throw RuntimeError(53, u"File not found"); });
    throw RuntimeError(53, u"File not found");
  });
  EXPECT_EQ(desktop.messagesAtEnd.size(), 1u);
  EXPECT_EQ(desktop.messagesAtEnd.front(), 1u);
}

TEST_F(Failures, OutOfMemoryIsShownAndEndsTheProgram) {
  Fail(std::bad_alloc());
  EXPECT_EQ(desktop.messages, (std::vector<Message>{{u"Out of memory", kCritical, u"Marl"}}));
  EXPECT_TRUE(desktop.ended());
  EXPECT_EQ(desktop.exitCode(), 1);
}

TEST_F(Failures, TextThatIsTooLongForMemoryIsOutOfMemory) {
  desktop.Event([] { Text().resize(Text().max_size() + 1); });
  EXPECT_EQ(desktop.messages, (std::vector<Message>{{u"Out of memory", kCritical, u"Marl"}}));
  EXPECT_TRUE(desktop.ended());
}

TEST_F(Failures, EndOfTheProcessIsSilentAndNothingHappensAfterIt) {
  Fail(ProcessEnd{3});
  EXPECT_TRUE(desktop.messages.empty());
  EXPECT_EQ(desktop.exitCode(), 3);
  bool happened = false;
  desktop.Event([&] { happened = true; });
  EXPECT_FALSE(happened);
}

}  // namespace
}  // namespace marl
