# The warnings that no code of the project may cause, and the runtime checks that a preset selects.
add_library(pkider_warnings INTERFACE)
if(MSVC)
  # And the standard, where that compiler has a dialect of its own.
  target_compile_options(pkider_warnings INTERFACE /W4 /permissive- /utf-8 /Zc:__cplusplus)
else()
  target_compile_options(pkider_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # Optimising, it takes "text" + std::string for an overlapping copy: https://gcc.gnu.org/bugzilla/show_bug.cgi?id=105651
  target_compile_options(pkider_warnings INTERFACE -Wno-restrict)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_SIZEOF_VOID_P EQUAL 4)
  # Vectors are returned by functions that are inlined, and by no other.
  target_compile_options(pkider_warnings INTERFACE -Wno-psabi)
endif()
if(PKIDER_WERROR)
  target_compile_options(pkider_warnings INTERFACE $<IF:$<BOOL:${MSVC}>,/WX,-Werror>)
endif()

if(PKIDER_SANITIZE)
  add_compile_options(-fsanitize=${PKIDER_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${PKIDER_SANITIZE})
endif()
if(PKIDER_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()
