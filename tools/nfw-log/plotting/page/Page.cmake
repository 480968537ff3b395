# The page of nfw-log plot has its charts by dygraphs and its map by Leaflet: read where Debian's packages put them, and
# embedded in the program with their licences. There is no copy of them here.
set(lPage ${CMAKE_CURRENT_LIST_DIR})
function(nfw_page_file nVariable nPackage nFile)
  find_file(${nVariable} ${nFile} PATHS ${ARGN} NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH DOC "of ${nPackage}")
  if(NOT ${nVariable})
    message(FATAL_ERROR "nfw-log: there is no ${nFile} in ${ARGN}: install ${nPackage} (scripts/setup does), or give "
      "-D${nVariable}=FILE")
  endif()
endfunction()
nfw_page_file(NFW_DYGRAPHS_SCRIPT libjs-dygraphs dygraph.min.js /usr/share/javascript/dygraphs)
nfw_page_file(NFW_DYGRAPHS_STYLE libjs-dygraphs dygraph.min.css /usr/share/javascript/dygraphs)
nfw_page_file(NFW_DYGRAPHS_LICENCE libjs-dygraphs copyright /usr/share/doc/libjs-dygraphs)
nfw_page_file(NFW_LEAFLET_SCRIPT libjs-leaflet leaflet.min.js /usr/share/javascript/leaflet)
nfw_page_file(NFW_LEAFLET_STYLE libjs-leaflet leaflet.css /usr/share/javascript/leaflet)
nfw_page_file(NFW_LEAFLET_LICENCE libjs-leaflet copyright /usr/share/doc/libjs-leaflet)

set(lParts ${CMAKE_CURRENT_BINARY_DIR}/PageParts.cpp)
add_custom_command(OUTPUT ${lParts}
  COMMAND ${CMAKE_COMMAND} -DOUTPUT=${lParts} "-DSTYLE=${NFW_LEAFLET_STYLE}|${NFW_DYGRAPHS_STYLE}|${lPage}/page.css"
    "-DSCRIPT=${NFW_LEAFLET_SCRIPT}|${NFW_DYGRAPHS_SCRIPT}|${lPage}/page.js"
    "-DLICENCES=${NFW_LEAFLET_LICENCE}|${NFW_DYGRAPHS_LICENCE}" -P ${lPage}/PageParts.cmake
  DEPENDS ${lPage}/PageParts.cmake ${lPage}/page.css ${lPage}/page.js ${NFW_DYGRAPHS_SCRIPT} ${NFW_DYGRAPHS_STYLE}
    ${NFW_DYGRAPHS_LICENCE} ${NFW_LEAFLET_SCRIPT} ${NFW_LEAFLET_STYLE} ${NFW_LEAFLET_LICENCE}
  VERBATIM)
target_sources(nfw_log_plotting PRIVATE ${lParts})
