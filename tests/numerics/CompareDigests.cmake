# Builds the digest program with COMPILER and FLAGS as OUTPUT, and fails unless it prints what REFERENCE prints.
# SOURCE_DIR is the root of the project.
separate_arguments(FLAGS)
set(sources
  tests/numerics/NumericsDigest.cpp
  platform/framework/AfxExceptions.cpp
  vorlane/numerics/EigenSolver.cpp
  vorlane/numerics/NumericUtils.cpp
  vorlane/numerics/QuadraticMatrix.cpp
  vorlane/numerics/RMSBestFitTools.cpp
  vorlane/numerics/Random.cpp)
execute_process(
  COMMAND ${COMPILER} -std=c++17 -ffp-contract=off ${FLAGS} -DVORLANE_DIGEST_PROGRAM -DVORLANE_DIGEST_STANDS_ALONE -I${SOURCE_DIR}
    ${sources} -o ${OUTPUT}
  WORKING_DIRECTORY ${SOURCE_DIR}
  COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${OUTPUT} OUTPUT_VARIABLE digest COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${REFERENCE} OUTPUT_VARIABLE reference COMMAND_ERROR_IS_FATAL ANY)
if(NOT digest MATCHES "eigenpairs" OR NOT digest STREQUAL reference)
  message(FATAL_ERROR "${COMPILER} ${FLAGS} computes\n${digest}but this build computes\n${reference}")
endif()
