# What the compiler's standard library is like, with the flags of this build, for pkider/built_with.h.
include(CheckCXXSourceCompiles)

# Those that a project around this one gives to all of its folders are not part of CMAKE_CXX_FLAGS.
get_directory_property(directory_definitions COMPILE_DEFINITIONS)
get_directory_property(directory_options COMPILE_OPTIONS)
list(TRANSFORM directory_definitions PREPEND -D)
set(CMAKE_REQUIRED_FLAGS ${directory_definitions} ${directory_options})
list(FILTER CMAKE_REQUIRED_FLAGS INCLUDE REGEX "^(-D_GLIBCXX_|-stdlib=)")
list(JOIN CMAKE_REQUIRED_FLAGS " " CMAKE_REQUIRED_FLAGS)
set(CMAKE_REQUIRED_QUIET ON)

# pkider_check_standard_library(NAME CONDITION): sets NAME to 1 or 0.
function(pkider_check_standard_library name condition)
  unset(${name}_FOUND CACHE) # flags may have changed
  check_cxx_source_compiles("#include <cstddef>\n#if !(${condition})\n#error no\n#endif\nint main() {}" ${name}_FOUND)
  set(${name} 0 PARENT_SCOPE)
  if(${name}_FOUND)
    set(${name} 1 PARENT_SCOPE)
  endif()
endfunction()

pkider_check_standard_library(PKIDER_BUILT_WITH_LIBCXX "defined(_LIBCPP_VERSION)")
pkider_check_standard_library(PKIDER_BUILT_WITH_DEBUG "defined(_GLIBCXX_DEBUG)")
pkider_check_standard_library(PKIDER_BUILT_WITH_CXX11_ABI "_GLIBCXX_USE_CXX11_ABI + 0")
unset(CMAKE_REQUIRED_FLAGS)
unset(CMAKE_REQUIRED_QUIET)

set(PKIDER_BUILT_WITH_NAME libstdc++)
if(PKIDER_BUILT_WITH_LIBCXX)
  set(PKIDER_BUILT_WITH_NAME libc++)
endif()
set(PKIDER_BUILT_WITH_DEBUG_MODE without)
if(PKIDER_BUILT_WITH_DEBUG)
  set(PKIDER_BUILT_WITH_DEBUG_MODE with)
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/built_with.h.in ${PROJECT_BINARY_DIR}/include/pkider/built_with.h @ONLY)
