#pragma once

#include <gtest/gtest.h>

namespace marl::desktop {

/// At a test's first failure, prints what the desktop looked like: mouse, foreground window and all
/// visible top-level windows, and saves a screenshot as "failed-SUITE.TEST".
class StateAtFailure : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo& test) override;
  void OnTestPartResult(const testing::TestPartResult& part) override;

 private:
  const testing::TestInfo* test_ = nullptr;
  bool reported_ = false;
};

}  // namespace marl::desktop
