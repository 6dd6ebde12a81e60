# Protection of what is shipped, both forms of the library, the C interface and the program, against faults that no test
# has found. The archives have it too: a host's program is marked for CET only if all of its objects are.
#
# An option is used where compiler and linker know it. tests/link/check_hardening reads the results.
include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)
include(CheckPIESupported)

if(MSVC)
  # Its linker marks DLLs by itself.
  set(hardening_candidates)
  set(hardening_link_candidates)
elseif(WIN32)
  # Stack protector and _FORTIFY_SOURCE would need a DLL of their own.
  set(hardening_candidates)
  set(hardening_link_candidates
      -Wl,--dynamicbase
      -Wl,--nxcompat
      -Wl,--high-entropy-va)
else()
  set(hardening_candidates
      -fstack-protector-strong      # a value before each return address, compared before the return
      -fstack-clash-protection      # no step over the guard page below the stack
      -fcf-protection=full          # x86, CET: jumps arrive at marks only, returns go where the call came from
      -mbranch-protection=standard) # ARM: the same by BTI and PAC
  set(hardening_link_candidates
      -Wl,-z,relro,-z,now           # addresses of functions are read-only after loading
      -Wl,-z,noexecstack)
endif()

set(hardening_options)
foreach(option IN LISTS hardening_candidates)
  string(MAKE_C_IDENTIFIER "PKIDER_HAS${option}" known)
  check_cxx_compiler_flag(${option} ${known})
  if(${known})
    list(APPEND hardening_options ${option})
  endif()
endforeach()
if(NOT WIN32)
  # Calls that copy into memory of a known size are checked. It needs an optimising compiler.
  list(APPEND hardening_options
       "$<$<CONFIG:${optimised_configurations},MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
endif()
if(PKIDER_HAS_fcf_protection_full)
  # Files that the C library adds to every program return as they should and lack the mark.
  list(APPEND hardening_link_candidates -Wl,-z,shstk)
endif()

set(hardening_link_options)
foreach(option IN LISTS hardening_link_candidates)
  string(MAKE_C_IDENTIFIER "PKIDER_LINKS${option}" known)
  check_linker_flag(CXX ${option} ${known})
  if(${known})
    list(APPEND hardening_link_options ${option})
  endif()
endforeach()

check_pie_supported(LANGUAGES CXX)

# A program is loaded at any address, and so are the archives that it is made of.
function(pkider_harden)
  foreach(target IN LISTS ARGV)
    if(PKIDER_HARDEN AND NOT PKIDER_SANITIZE AND NOT PKIDER_COVERAGE)
      target_compile_options(${target} PRIVATE ${hardening_options})
      target_link_options(${target} PRIVATE ${hardening_link_options})
      set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    endif()
  endforeach()
endfunction()
