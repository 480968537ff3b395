# One function per kind of target, so that every object is built with the same language, warnings and hardening.

include(CheckCXXCompilerFlag)
include(CheckPIESupported)
find_package(Threads REQUIRED)

find_program(NFW_CCACHE ccache)
if(NFW_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${NFW_CCACHE})
endif()

# --- What every object shares, those of others that are built here included

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
check_pie_supported(LANGUAGES CXX)
# Files are named from the top of the project on, wherever that lies: the watchdog's notices and the failures of tests
# read alike everywhere, and builds of one commit in two folders have the same bytes. Only the debugger of a Debug build
# is told where the files are. A compiler cache may give a compiler the path from the folder of the build.
file(RELATIVE_PATH lToTop ${PROJECT_BINARY_DIR} ${PROJECT_SOURCE_DIR})
string(REGEX REPLACE "([^/])$" "\\1/" lToTop "${lToTop}")
foreach(lMapping ${PROJECT_BINARY_DIR}=build ${lToTop}= ${PROJECT_SOURCE_DIR}/=)
  add_compile_options($<IF:$<CONFIG:Debug>,-fmacro-prefix-map,-ffile-prefix-map>=${lMapping})
endforeach()
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
add_compile_definitions(_FILE_OFFSET_BITS=64 _TIME_BITS=64)  # files beyond 2 GiB, dates beyond 2038
if(NFW_SANITIZE)
  add_compile_options(-fsanitize=${NFW_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${NFW_SANITIZE})
endif()
if(NFW_BUILD_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# --- What every object of ours shares

add_library(nfw_options INTERFACE)
target_compile_features(nfw_options INTERFACE cxx_std_17)
target_compile_options(nfw_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wformat=2 -Wnon-virtual-dtor -Woverloaded-virtual
  -Wcast-align -Wundef $<$<BOOL:${NFW_WARNINGS_AS_ERRORS}>:-Werror>
  $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>
  $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments>  # the test library's macros leave the last out
  -ffp-contract=off)              # both targets round alike
target_link_libraries(nfw_options INTERFACE Threads::Threads)

# Hardening. What the flags say that the build was given, those of a distribution for one, comes first.
if(NOT CMAKE_CXX_FLAGS MATCHES "-fstack-protector")
  target_compile_options(nfw_options INTERFACE -fstack-protector-strong)
endif()
check_cxx_compiler_flag(-fstack-clash-protection NFW_HAS_STACK_CLASH_PROTECTION)
if(NFW_HAS_STACK_CLASH_PROTECTION)
  target_compile_options(nfw_options INTERFACE -fstack-clash-protection)
endif()
if(CMAKE_BUILD_TYPE MATCHES "Rel" AND NOT NFW_SANITIZE AND NOT CMAKE_CXX_FLAGS MATCHES "_FORTIFY_SOURCE")
  target_compile_options(nfw_options INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
endif()
target_link_options(nfw_options INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)

# nfw_shared_library(NAME EXPORTS SOURCES...): a library of ours with a versioned soname. EXPORTS is the linker's script
# of what leaves it, and under which version.
function(nfw_shared_library nName nExports)
  add_library(${nName} SHARED ${ARGN})
  target_link_options(${nName} PRIVATE -Wl,--version-script=${nExports})
  set_property(TARGET ${nName} APPEND PROPERTY LINK_DEPENDS ${nExports})
  target_compile_features(${nName} PUBLIC cxx_std_17)
  target_link_libraries(${nName} PRIVATE $<BUILD_INTERFACE:nfw_options>)
  set_target_properties(${nName} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
    INSTALL_RPATH "$ORIGIN")
  if(NOT NFW_SANITIZE AND NOT NFW_BUILD_SCHEDULE)  # clang leaves the sanitizers' symbols to the program
    target_link_options(${nName} PRIVATE -Wl,--no-undefined)
  endif()
endfunction()

# nfw_executable(NAME SOURCES...): a program that uses the libraries as an application does
function(nfw_executable nName)
  add_executable(${nName} ${ARGN})
  target_link_libraries(${nName} PRIVATE nfw_options nfw::NaviAppFramework)
  file(RELATIVE_PATH lLib "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  set_target_properties(${nName} PROPERTIES INSTALL_RPATH "$ORIGIN/${lLib}")
endfunction()

# What the framework brings along: the platform that is installed, or for programs of nfw_use_seams the one for tests.
set(NFW_PLATFORM $<IF:$<BOOL:$<TARGET_PROPERTY:NFW_SEAMS>>,NfwPlatformSeams,NfwPlatform>)

# nfw_use_seams(NAME): gives a program the platform with the hands of tests. Its folder comes before that of the platform
# of the same name, which the framework's library was linked to.
function(nfw_use_seams nName)
  set_target_properties(${nName} PROPERTIES NFW_SEAMS ON SKIP_BUILD_RPATH ON)
  target_link_libraries(${nName} PRIVATE NfwPlatformSeams)
  target_link_options(${nName} PRIVATE
    -Wl,-rpath,${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/seams:${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
endfunction()

# nfw_inside(NAME): lets a program see what the library hides: it links the objects, not the library
function(nfw_inside nName)
  target_link_libraries(${nName} PRIVATE nfw)
endfunction()

# nfw_compile_quickly(NAME): for what need not be fast. What is tested is optimised, the tests need not be: half the time,
# and a third of it where a sanitizer writes into every line.
function(nfw_compile_quickly nName)
  if(NFW_SANITIZE)
    target_compile_options(${nName} PRIVATE -O0)
  elseif(NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
    target_compile_options(${nName} PRIVATE -O1)
  endif()
endfunction()

# nfw_test(NAME SOURCES...): a test program; what it tests is the caller's to link.
function(nfw_test nName)
  add_executable(${nName} ${ARGN})
  target_link_libraries(${nName} PRIVATE nfw_options GTest::gtest GTest::gtest_main)
  nfw_compile_quickly(${nName})
  if(NFW_TEST_EACH AND NOT CMAKE_CROSSCOMPILING)
    gtest_discover_tests(${nName} DISCOVERY_TIMEOUT 60 PROPERTIES ENVIRONMENT LOCPATH=${NFW_TEST_LOCALES})
  else()
    add_test(NAME ${nName} COMMAND ${nName})
    set_tests_properties(${nName} PROPERTIES ENVIRONMENT "LOCPATH=${NFW_TEST_LOCALES};GTEST_BRIEF=1")
  endif()
endfunction()

# nfw_benchmark(NAME SOURCES...): a program of scripts/bench
function(nfw_benchmark nName)
  add_executable(${nName} ${ARGN})
  nfw_inside(${nName})
  target_link_libraries(${nName} PRIVATE benchmark::benchmark)
endfunction()

# nfw_fuzz_program(NAME SOURCES...): a program of scripts/fuzz; its seeds are in fuzz/corpus/NAME
function(nfw_fuzz_program nName)
  add_executable(${nName} ${ARGN})
  target_link_options(${nName} PRIVATE -fsanitize=fuzzer)
  set_target_properties(${nName} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/fuzz)
endfunction()

# nfw_fuzz_target(NAME SOURCES...): one that reaches into the framework
function(nfw_fuzz_target nName)
  nfw_fuzz_program(${nName} ${ARGN})
  nfw_inside(${nName})
endfunction()

# nfw_check_headers(NAME DIRECTORY...): each header of the folders compiles by itself
function(nfw_check_headers nName)
  add_library(${nName} OBJECT)
  target_link_libraries(${nName} PRIVATE nfw_options NaviAppFramework)
  foreach(lDirectory IN LISTS ARGN)
    file(GLOB_RECURSE lHeaders CONFIGURE_DEPENDS RELATIVE ${lDirectory} ${lDirectory}/*.h)
    foreach(lHeader IN LISTS lHeaders)
      string(MAKE_C_IDENTIFIER ${lHeader} lUnit)
      file(CONFIGURE OUTPUT headers/${lUnit}.cpp CONTENT "#include \"${lHeader}\"\n" @ONLY)
      target_sources(${nName} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/headers/${lUnit}.cpp)
    endforeach()
  endforeach()
endfunction()
