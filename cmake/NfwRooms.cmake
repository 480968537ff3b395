# Rooms: a folder is a target, and sees its own headers and those of the rooms that it may use, no other. An include of a
# room above does not compile. A house is all rooms of a library or of a tool; its list of rooms is its map.

# nfw_house(HOUSE LIBRARY...): begins a house; every room of it links the libraries.
function(nfw_house nHouse)
  add_library(${nHouse} INTERFACE)
  add_library(${nHouse}_ground INTERFACE)
  target_link_libraries(${nHouse}_ground INTERFACE ${ARGN})
endfunction()

# nfw_room(HOUSE ROOM [FOLDER DIR] [USES ROOM...]): the sources of a folder. What a room's headers include comes with it.
function(nfw_room nHouse nRoom)
  cmake_parse_arguments(PARSE_ARGV 2 l "" "FOLDER" "USES")
  if(NOT l_FOLDER)
    set(l_FOLDER ${nRoom})
  endif()
  get_filename_component(lFolder ${l_FOLDER} ABSOLUTE)
  set(lRoom ${nHouse}_${nRoom})

  add_library(${lRoom}_headers INTERFACE)
  target_include_directories(${lRoom}_headers INTERFACE ${lFolder})
  target_link_libraries(${lRoom}_headers INTERFACE ${nHouse}_ground)
  foreach(lUsed IN LISTS l_USES)
    target_link_libraries(${lRoom}_headers INTERFACE ${nHouse}_${lUsed}_headers)
  endforeach()

  file(GLOB lSources CONFIGURE_DEPENDS ${lFolder}/*.cpp)
  list(FILTER lSources EXCLUDE REGEX "/main\\.cpp$")
  file(GLOB lHeaders CONFIGURE_DEPENDS ${lFolder}/*.h)
  foreach(lHeader IN LISTS lHeaders)  # one without a source is compiled by itself
    get_filename_component(lName ${lHeader} NAME_WE)
    if(NOT EXISTS ${lFolder}/${lName}.cpp)
      file(CONFIGURE OUTPUT ${lRoom}/${lName}.cpp CONTENT "#include \"${lName}.h\"\n" @ONLY)
      list(APPEND lSources ${CMAKE_CURRENT_BINARY_DIR}/${lRoom}/${lName}.cpp)
    endif()
  endforeach()
  add_library(${lRoom} OBJECT ${lSources})
  target_link_libraries(${lRoom} PRIVATE ${lRoom}_headers)
  set_target_properties(${lRoom} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)

  # Who links the house gets every room's objects and sees every header.
  target_sources(${nHouse} INTERFACE $<TARGET_OBJECTS:${lRoom}>)
  target_link_libraries(${nHouse} INTERFACE ${lRoom}_headers)
endfunction()

# nfw_lend(HOUSE ROOM HEADER...): single headers of the uppermost room that rooms below it may use, as a room of their own.
function(nfw_lend nHouse nRoom)
  set(lFolder ${CMAKE_CURRENT_BINARY_DIR}/${nHouse}_${nRoom})
  foreach(lHeader IN LISTS ARGN)
    get_filename_component(lName ${lHeader} NAME)
    get_filename_component(lPath ${lHeader} ABSOLUTE)
    file(CONFIGURE OUTPUT ${lFolder}/${lName} CONTENT "#include \"${lPath}\"\n" @ONLY)
  endforeach()
  add_library(${nHouse}_${nRoom}_headers INTERFACE)
  target_include_directories(${nHouse}_${nRoom}_headers INTERFACE ${lFolder})
  target_link_libraries(${nHouse}_${nRoom}_headers INTERFACE ${nHouse}_ground)
endfunction()

# nfw_test_upward(ROOM HEADER): a test that a source in the room cannot include the header of a room above
function(nfw_test_upward nRoom nHeader)
  file(GLOB_RECURSE lFound ${PROJECT_SOURCE_DIR}/src/*/${nHeader} ${PROJECT_SOURCE_DIR}/tools/*/${nHeader})
  if(NOT lFound)
    message(FATAL_ERROR "nfw_test_upward(${nRoom}): there is no ${nHeader}")
  endif()
  set(lSource ${CMAKE_CURRENT_BINARY_DIR}/upward/${nRoom}.cpp)
  file(CONFIGURE OUTPUT ${lSource} CONTENT "#include \"${nHeader}\"\n" @ONLY)
  add_test(NAME upward_include_${nRoom} COMMAND ${CMAKE_CXX_COMPILER} -std=c++17 -fsyntax-only
    "-I$<JOIN:$<TARGET_PROPERTY:${nRoom},INCLUDE_DIRECTORIES>,;-I>" ${lSource} COMMAND_EXPAND_LISTS)
  set_tests_properties(upward_include_${nRoom} PROPERTIES
    PASS_REGULAR_EXPRESSION "${nHeader}: No such file|'${nHeader}' file not found")
endfunction()
