# What every target of the project shares: language level, warnings, visibility, instrumentation.

# The four folders of the public headers, from the source tree and once installed.
set(KVO_HEADER_DIRS render generic readgen import/generic)

function(kvo_configure_target target)
  target_compile_features(${target} PUBLIC cxx_std_11 PRIVATE cxx_std_17)
  set_target_properties(${target} PROPERTIES CXX_STANDARD 17 CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF
                                             CXX_VISIBILITY_PRESET hidden POSITION_INDEPENDENT_CODE ON)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic $<$<BOOL:${KVO_WERROR}>:-Werror>)
  if(KVO_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${KVO_SANITIZE} -fno-omit-frame-pointer
                                             -fno-sanitize-recover=undefined)
    target_link_options(${target} PRIVATE -fsanitize=${KVO_SANITIZE})
    # Checks of every access through a pointer take g++ a third of its time, and the address sanitizer finds most of what
    # they find.
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
      target_compile_options(${target} PRIVATE
        -fno-sanitize=null,alignment,object-size,vptr,pointer-overflow,bool,enum,nonnull-attribute,returns-nonnull-attribute)
    endif()
  endif()
  if(KVO_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage)
    target_link_options(${target} PRIVATE --coverage)
  endif()
endfunction()

# Where KVO_PRECOMPILED_HEADERS says so, a target of many sources has the standard library's headers, and others that are
# named, read once for all.
set(KVO_COMMON_HEADERS <algorithm> <array> <cmath> <cstdint> <cstdio> <cstring> <filesystem> <fstream> <functional> <map>
                       <memory> <optional> <set> <sstream> <stdexcept> <string> <unordered_map> <utility> <vector>)
function(kvo_precompile_headers target)
  if(KVO_PRECOMPILED_HEADERS)
    target_precompile_headers(${target} PRIVATE ${KVO_COMMON_HEADERS} ${ARGN})
  endif()
endfunction()

# What the shared libraries consist of keeps its types where there is debugging information at all: package.abi reads them.
function(kvo_keep_types target)
  target_compile_options(${target} PRIVATE $<$<CONFIG:RelWithDebInfo>:-g>)
endfunction()

# A shared library NAME -> libNAME.so.1 (its SONAME too), exported as kvorender::ALIAS.
function(kvo_add_shared_library target alias)
  add_library(${target} SHARED ${ARGN})
  add_library(kvorender::${alias} ALIAS ${target})
  kvo_configure_target(${target})
  kvo_keep_types(${target})
  set_target_properties(${target} PROPERTIES VERSION 1 SOVERSION 1 EXPORT_NAME ${alias} INSTALL_RPATH "$ORIGIN"
                                             LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
  target_link_options(${target} PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map)
  foreach(dir IN LISTS KVO_HEADER_DIRS)
    target_include_directories(${target} PUBLIC
      $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/${dir}>
      $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/kvorender/${dir}>)
  endforeach()
endfunction()
