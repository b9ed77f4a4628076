# One interface target carries the language, the warnings and Qt's strictness; every target links it.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTOUIC ON)
set(CMAKE_AUTORCC ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  # What one clone has compiled serves every other, wherever it lies and whoever runs the build.
  set(launcher "${CMAKE_COMMAND}" -E env
    "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}" CCACHE_NOHASHDIR=1 CCACHE_SLOPPINESS=locale "${CCACHE_PROGRAM}")
  set(CMAKE_CXX_COMPILER_LAUNCHER "${launcher}")
  set(CMAKE_C_COMPILER_LAUNCHER "${launcher}")
endif()

if(CMAKE_CXX_CLANG_TIDY)
  # The rules are a part of the command, so that a change of them looks at every file again.
  file(SHA256 "${CMAKE_SOURCE_DIR}/.clang-tidy" rules)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/.clang-tidy")
  list(APPEND CMAKE_CXX_CLANG_TIDY "--extra-arg=-DLARKSPAN_TIDY_RULES=${rules}")
  # What Qt's generators write is not ours to mend; clang-tidy needs one check left to run at all.
  file(GENERATE OUTPUT "${CMAKE_BINARY_DIR}/.clang-tidy"
    CONTENT "Checks: '-*,readability-misleading-indentation'\n")
endif()

add_library(larkspan_flags INTERFACE)
target_compile_definitions(larkspan_flags INTERFACE
  QT_NO_CAST_FROM_ASCII
  QT_NO_CAST_TO_ASCII
  QT_NO_CAST_FROM_BYTEARRAY
  QT_NO_URL_CAST_FROM_STRING
  QT_NO_CONTEXTLESS_CONNECT
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  QT_NO_KEYWORDS
  QT_STRICT_ITERATORS
  QT_DISABLE_DEPRECATED_BEFORE=0x060400
  LARKSPAN_VERSION="${CMAKE_PROJECT_VERSION}")
target_compile_options(larkspan_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wold-style-cast -Woverloaded-virtual -Wnon-virtual-dtor
  -Wcast-qual -Wformat=2 -Wimplicit-fallthrough
  $<$<BOOL:${LARKSPAN_WERROR}>:-Werror>)
if(LARKSPAN_SANITIZE)
  # With the sanitizers' own code in between, the compiler takes variants for uninitialised that are not.
  target_compile_options(larkspan_flags INTERFACE -Wno-maybe-uninitialized)
  target_compile_options(larkspan_flags INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(larkspan_flags INTERFACE -fsanitize=address,undefined)
endif()
