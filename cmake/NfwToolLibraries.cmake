# The libraries that tools and their tests use; the framework itself needs none of them.

# nfw_header_library(PACKAGE TARGET FOLDER): the target of an installed package. In a cross build the package is the
# host's; its folder of headers is linked into a place of its own, so that no other header of the host comes into view.
macro(nfw_header_library nPackage nTarget nFolder)
  if(CMAKE_CROSSCOMPILING)
    find_path(NFW_${nPackage}_DIR ${nFolder} REQUIRED NO_CMAKE_FIND_ROOT_PATH NO_SYSTEM_ENVIRONMENT_PATH)  # no program
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/host-headers)
    file(CREATE_LINK ${NFW_${nPackage}_DIR}/${nFolder} ${CMAKE_BINARY_DIR}/host-headers/${nFolder} SYMBOLIC)
    add_library(${nTarget} INTERFACE IMPORTED)
    target_include_directories(${nTarget} SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/host-headers)
  else()
    find_package(${nPackage} REQUIRED)
  endif()
endmacro()

nfw_header_library(CLI11 CLI11::CLI11 CLI)
nfw_header_library(nlohmann_json nlohmann_json::nlohmann_json nlohmann)
nfw_header_library(fmt fmt::fmt-header-only fmt)

# nfw_fmt: fmt, of which each file that formats would compile all, six seconds long. Of the version that is known here,
# tools/fmt does so once for them.
get_target_property(lFmt fmt::fmt-header-only INTERFACE_INCLUDE_DIRECTORIES)
file(STRINGS ${lFmt}/fmt/core.h lVersion REGEX "^#define FMT_VERSION 9[0-9][0-9][0-9][0-9]$")
if(lVersion)
  add_library(nfw_fmt STATIC ${CMAKE_CURRENT_LIST_DIR}/../tools/fmt/Format.cpp)
  target_include_directories(nfw_fmt SYSTEM PUBLIC ${lFmt})
  target_link_libraries(nfw_fmt PRIVATE nfw_options)
else()
  add_library(nfw_fmt INTERFACE)
  target_compile_definitions(nfw_fmt INTERFACE FMT_HEADER_ONLY=1)
  target_link_libraries(nfw_fmt INTERFACE fmt::fmt-header-only)
endif()
target_include_directories(nfw_fmt INTERFACE ${CMAKE_CURRENT_LIST_DIR}/../tools/fmt)

# A library for GeoPackages alone: the tools are built without where there is none.
if(NOT CMAKE_CROSSCOMPILING)
  find_package(SQLite3)
endif()
if(NOT SQLite3_FOUND)
  message(STATUS "No SQLite (Debian: libsqlite3-dev): nfw-log is built without convert --to gpkg")
endif()

# A library for the live view of nfw-drive alone: a terminal gets plain lines where there is none.
if(NOT CMAKE_CROSSCOMPILING)
  find_path(NFW_NCURSES_HEADERS NAMES curses.h)
  find_library(NFW_NCURSES NAMES ncursesw)
endif()
if(NOT NFW_NCURSES OR NOT NFW_NCURSES_HEADERS)
  unset(NFW_NCURSES CACHE)
  message(STATUS "No ncurses (Debian: libncurses-dev): nfw-drive is built without its live view")
endif()
