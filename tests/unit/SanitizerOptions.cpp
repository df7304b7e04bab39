// The stacks of where blocks come from, and a quarter of a gigabyte of freed blocks that are
// watched for later uses, take a quarter of the tests' time. An error is found all the same; to see
// where its block comes from, run the test again with ASAN_OPTIONS=malloc_context_size=30.
extern "C" const char* __asan_default_options() {
  return "malloc_context_size=1:quarantine_size_mb=16";
}
