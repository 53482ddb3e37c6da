# What every target of the project is compiled with.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# An interface target, so that a project which includes this one by add_subdirectory keeps its own settings.
add_library(vorlane_settings INTERFACE)
target_include_directories(vorlane_settings INTERFACE ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/generated)
# Results are the same bits from every compiler: no fused multiply-add, no reordering.
target_compile_options(vorlane_settings INTERFACE -ffp-contract=off)
target_compile_options(vorlane_settings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # A library with unique symbols, such as the statics of inline functions of the standard library, is never unloaded.
  target_compile_options(vorlane_settings INTERFACE -fno-gnu-unique)
endif()
if(VORLANE_WARNINGS_AS_ERRORS)
  target_compile_options(vorlane_settings INTERFACE -Werror)
endif()
if(VORLANE_SANITIZE)
  target_compile_options(vorlane_settings INTERFACE
    -fsanitize=${VORLANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(vorlane_settings INTERFACE -fsanitize=${VORLANE_SANITIZE})
endif()
