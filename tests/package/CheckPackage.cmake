# Installs the library into a folder of its own, moves that folder, and builds and runs the outside project
# against it: found by CMake, then by pkg-config.

function(run)
  execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY OUTPUT_VARIABLE output ERROR_VARIABLE output)
  set(output "${output}" PARENT_SCOPE)
endfunction()

function(expect_result program)
  run(${program})
  if(NOT output MATCHES "octahedral has 6 ligands, version ${VERSION}")
    message(FATAL_ERROR "${program} printed: ${output}")
  endif()
endfunction()

file(REMOVE_RECURSE ${WORK_DIR}/prefix ${WORK_DIR}/moved ${WORK_DIR}/by_cmake)
if(KIND STREQUAL "static")
  # Unoptimised, since nothing is measured here.
  set(BUILD_DIR ${WORK_DIR}/library)
  run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${BUILD_DIR} -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${CXX}
    -DCMAKE_CXX_COMPILER_LAUNCHER=${CXX_LAUNCHER} -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0
    -DBUILD_SHARED_LIBS=OFF -DVORLANE_BUILD_TESTS=OFF -DVORLANE_BUILD_EXAMPLES=OFF)
  run(${CMAKE_COMMAND} --build ${BUILD_DIR})
endif()
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK_DIR}/prefix)
# An install can be moved: nothing in it may name the place where it was made.
file(RENAME ${WORK_DIR}/prefix ${WORK_DIR}/moved)
set(prefix ${WORK_DIR}/moved)

set(outside ${SOURCE_DIR}/tests/package/outside)
run(${CMAKE_COMMAND} -S ${outside} -B ${WORK_DIR}/by_cmake -G ${GENERATOR}
  -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_PREFIX_PATH=${prefix} -DWANTED_VERSION=${VERSION})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/by_cmake)
expect_result(${WORK_DIR}/by_cmake/outside)

if(NOT PKG_CONFIG)
  message(FATAL_ERROR "pkg-config is missing")
endif()
file(GLOB_RECURSE pc_file ${prefix}/*/VorlaneCore.pc)
get_filename_component(pc_dir ${pc_file} DIRECTORY)
get_filename_component(lib_dir ${pc_dir} DIRECTORY)
set(ENV{PKG_CONFIG_PATH} ${pc_dir})
run(${PKG_CONFIG} --cflags --libs VorlaneCore)
separate_arguments(flags UNIX_COMMAND "${output}")
run(${CXX} -std=c++17 ${outside}/main.cpp -o ${WORK_DIR}/by_pkg_config ${flags} -Wl,-rpath,${lib_dir})
expect_result(${WORK_DIR}/by_pkg_config)
