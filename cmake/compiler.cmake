# Warnings are errors; sanitizers, coverage and fuzzing are switched per preset.

# clang counts sign conversions into -Wconversion, g++ does not: both are held to the same list.
add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wno-sign-conversion -Wshadow -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  add_compile_options(-Wno-restrict)  # g++ 12 sees overlaps inside std::string where there are none
endif()
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")

# Bounds of the standard containers are checked wherever speed is not what is looked at.
add_compile_definitions($<$<NOT:$<CONFIG:Release>>:_GLIBCXX_ASSERTIONS>)

if(TALLWICK_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(TALLWICK_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()
if(TALLWICK_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# ccache sees through precompiled headers only when it is told that their time stamps do not count.
find_program(TALLWICK_CCACHE ccache)
if(TALLWICK_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
      CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${TALLWICK_CCACHE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT CMAKE_DISABLE_PRECOMPILE_HEADERS)
    add_compile_options(-fpch-preprocess)
  endif()
endif()
