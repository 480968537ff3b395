# What is compiled for scripts/schedule: the calls that the thread sanitizer would get, for atomics alone, and without its
# library. platform/schedule answers them. The compiler's own front is asked, so that the address sanitizer goes with it.
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  message(FATAL_ERROR "NFW_BUILD_SCHEDULE needs clang: scripts/schedule builds it")
endif()
add_compile_options("SHELL:-Xclang -fsanitize=thread" "SHELL:-mllvm -tsan-instrument-memory-accesses=0"
  "SHELL:-mllvm -tsan-instrument-func-entry-exit=0" "SHELL:-mllvm -tsan-instrument-memintrinsics=0")
