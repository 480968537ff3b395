# cmake -DNM= -DREADELF= -DLIBRARY= -DSONAME= -DVERSION= -DMEANT= -DALL= -P exports.cmake: what the library shows to the
# world is what was meant (MEANT: a regular expression of demangled names), and stands under the version that it belongs
# to. With ALL set, no name in the file is one of the hands that only tests have.

execute_process(COMMAND ${NM} -D -C --defined-only ${LIBRARY} OUTPUT_VARIABLE lSymbols COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE ";" "," lSymbols "${lSymbols}")
string(STRIP "${lSymbols}" lSymbols)
string(REPLACE "[" "(" lSymbols "${lSymbols}")  # a list has no brackets
string(REPLACE "]" ")" lSymbols "${lSymbols}")
string(REPLACE "\n" ";" lSymbols "${lSymbols}")
set(lCount 0)
foreach(lSymbol IN LISTS lSymbols)
  string(REGEX REPLACE "^[0-9a-f]* *[A-Za-z] " "" lName "${lSymbol}")
  if(lName STREQUAL VERSION)
    continue()
  endif()
  string(REGEX REPLACE "^((vtable|VTT|typeinfo|typeinfo name|guard variable) for |(non-)?(virtual )?thunk to )" "" lName
    "${lName}")
  if(NOT lName MATCHES "^(${MEANT})@@${VERSION}$")
    message(SEND_ERROR "exported, but not meant to be: ${lName}")
  endif()
  math(EXPR lCount "${lCount} + 1")
endforeach()
if(lCount LESS 50)
  message(SEND_ERROR "only ${lCount} names are exported")
endif()

execute_process(COMMAND ${NM} -C ${LIBRARY} OUTPUT_VARIABLE lNames COMMAND_ERROR_IS_FATAL ANY)
if("${lSymbols}" MATCHES "seams::" OR (ALL AND lNames MATCHES "seams::"))
  message(SEND_ERROR "the hands of tests are in the library that is installed")
endif()

execute_process(COMMAND ${READELF} -d ${LIBRARY} OUTPUT_VARIABLE lDynamic COMMAND_ERROR_IS_FATAL ANY)
foreach(lWanted "soname: \\[${SONAME}\\]" "BIND_NOW|FLAGS.* NOW")
  if(NOT lDynamic MATCHES "${lWanted}")
    message(SEND_ERROR "the dynamic section lacks ${lWanted}")
  endif()
endforeach()
if(NOT SONAME MATCHES "^lib[A-Za-z]+\\.so\\.[0-9]+$")
  message(SEND_ERROR "${SONAME} is no versioned name")
endif()

execute_process(COMMAND ${READELF} -W -l ${LIBRARY} OUTPUT_VARIABLE lSegments COMMAND_ERROR_IS_FATAL ANY)
if(NOT lSegments MATCHES "GNU_RELRO" OR lSegments MATCHES "GNU_STACK[^\n]*E +0x")
  message(SEND_ERROR "data that is constant after loading is writable, or the stack is executable")
endif()
