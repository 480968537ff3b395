# What a user does with the installed package, once with CMake and once with pkg-config.

function(run)
  execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY COMMAND_ECHO STDOUT)
endfunction()

file(REMOVE_RECURSE ${SCRATCH})
file(MAKE_DIRECTORY ${SCRATCH})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${SCRATCH}/first)
set(lPrefix ${SCRATCH}/moved)
file(RENAME ${SCRATCH}/first ${lPrefix})

file(GLOB_RECURSE lStray ${lPrefix}/include/*PlatformSeams.h)
if(lStray)
  message(FATAL_ERROR "installed, but for tests only: ${lStray}")
endif()

set(lToolchain -DCMAKE_CXX_COMPILER=${CXX})
if(TOOLCHAIN)
  set(lToolchain -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN})
endif()
run(${CMAKE_COMMAND} -S ${SOURCE} -B ${SCRATCH}/cmake -G ${GENERATOR} ${lToolchain} -DCMAKE_BUILD_TYPE=Release
    -DNaviAppFramework_ROOT=${lPrefix})
run(${CMAKE_COMMAND} --build ${SCRATCH}/cmake)
run(${EMULATOR} ${SCRATCH}/cmake/consumer)

set(ENV{PKG_CONFIG_PATH} ${lPrefix}/${LIBDIR}/pkgconfig)
execute_process(COMMAND ${PKG_CONFIG} --cflags --libs NaviAppFramework OUTPUT_VARIABLE lFlags COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(lFlags UNIX_COMMAND "${lFlags}")
run(${CXX} -std=c++17 -o ${SCRATCH}/consumer ${SOURCE}/consumer.cpp ${lFlags} -Wl,-rpath,${lPrefix}/${LIBDIR})
run(${EMULATOR} ${SCRATCH}/consumer)
