# The compiler options of all targets; none of them applies to consumers.

# Floating point results are the same in every build: no contraction, and SSE2 where a 32-bit target would use the x87
# registers, which are wider than a double.
function(tavrin_compile_options target)
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow $<$<BOOL:${TAVRIN_WERROR}>:-Werror> -ffp-contract=off)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_SYSTEM_PROCESSOR MATCHES "86")
    target_compile_options(${target} PRIVATE -msse2 -mfpmath=sse)
  endif()
  # Source files have helpers of the same name in unnamed namespaces, so they are combined only where names differ.
  set_target_properties(${target} PROPERTIES
    UNITY_BUILD OFF CXX_EXTENSIONS OFF CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON POSITION_INDEPENDENT_CODE ON)
  if(TAVRIN_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=${TAVRIN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${TAVRIN_SANITIZE})
  endif()
  if(TAVRIN_FUZZERS)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

# tavrin_unoptimised(<target>): compiles the target's own code quickly. _FORTIFY_SOURCE needs the optimiser. The checks
# that are left out of it double the compile time, and AddressSanitizer reports most of what they would.
function(tavrin_unoptimised target)
  target_compile_options(${target} PRIVATE -O0 -U_FORTIFY_SOURCE $<$<CONFIG:RelWithDebInfo>:-g1>)
  if(TAVRIN_SANITIZE MATCHES "undefined")
    target_compile_options(${target} PRIVATE -fno-sanitize=alignment,null,object-size,vptr)
  endif()
endfunction()

# A level of _FORTIFY_SOURCE that the compiler or CMAKE_CXX_FLAGS define is kept.
include(CheckCXXSourceCompiles)
check_cxx_source_compiles("#ifndef _FORTIFY_SOURCE\n#error\n#endif\nint main() {}" TAVRIN_FORTIFIED)
mark_as_advanced(TAVRIN_FORTIFIED)

# tavrin_harden(<target>): adds Debian's hardening options to installed targets of optimised builds. Sanitizers replace
# these checks by stricter ones, and _FORTIFY_SOURCE needs the optimiser.
function(tavrin_harden target)
  if(TAVRIN_SANITIZE)
    return()
  endif()
  target_compile_options(${target} PRIVATE -fstack-protector-strong -fstack-clash-protection)
  # Control-flow protection, if the processor supports it.
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i[3-6]86)$")
    target_compile_options(${target} PRIVATE -fcf-protection)
  elseif(CMAKE_SYSTEM_PROCESSOR STREQUAL aarch64 AND CMAKE_SIZEOF_VOID_P EQUAL 8)  # not 32-bit ARM on a 64-bit kernel
    target_compile_options(${target} PRIVATE -mbranch-protection=standard)
  endif()
  if(NOT TAVRIN_FORTIFIED)
    target_compile_definitions(${target} PRIVATE $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:_FORTIFY_SOURCE=2>)
  endif()
  target_link_options(${target} PRIVATE -Wl,-z,relro,-z,now,-z,noexecstack)
endfunction()

# tavrin_library(<name> <exports> <sources>...): a library of the project, tavrin::<name>, in the file libtavrin_<name>.
# <exports> is the version script of the linker with the exported symbols.
function(tavrin_library name exports)
  add_library(tavrin_${name} ${ARGN})
  add_library(tavrin::${name} ALIAS tavrin_${name})
  tavrin_compile_options(tavrin_${name})
  tavrin_harden(tavrin_${name})
  if(TAVRIN_COVERAGE)
    # Static objects without guards, because tests cannot reach the branches of the guards.
    target_compile_options(tavrin_${name} PRIVATE --coverage -fprofile-update=atomic -fno-threadsafe-statics)
  endif()
  # The debug information contains all classes of the interface, including those that others implement; the check of the
  # ABI reads it.
  target_compile_options(tavrin_${name} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-femit-class-debug-always>)
  # Calls to other libraries bypass the procedure linkage table, and calls within the library cannot be interposed. This
  # makes short operations up to a fifth faster.
  target_compile_options(tavrin_${name} PRIVATE -fno-plt -fno-semantic-interposition)
  target_include_directories(tavrin_${name} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  set_target_properties(tavrin_${name} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} EXPORT_NAME ${name}
    INSTALL_RPATH $ORIGIN)
  # A shared library with a missing dependency fails here and not in a driver. Sanitizers define symbols themselves, and
  # compare types of different libraries by the addresses of their descriptions.
  if(NOT TAVRIN_SANITIZE)
    cmake_path(ABSOLUTE_PATH exports BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} NORMALIZE)
    target_link_options(tavrin_${name} PRIVATE LINKER:--no-undefined,--version-script=${exports})
    set_property(TARGET tavrin_${name} APPEND PROPERTY LINK_DEPENDS ${exports})
  endif()
endfunction()

# tavrin_constant_strings(<target> <sources>...): adds sources that define TAVRIN_CONSTANT_STRINGs, which need C++20.
function(tavrin_constant_strings target)
  target_sources(${target} PRIVATE ${ARGN})
  set_source_files_properties(${ARGN} TARGET_DIRECTORY ${target} PROPERTIES COMPILE_OPTIONS -std=c++20)
endfunction()

# tavrin_uses_log4cplus(<target>): links log4cplus, and keeps the shared object that contains the target loaded until the
# process ends. When log4cplus is unloaded, it does not wait for its threads, and a thread that has not ended yet would
# execute unmapped code.
function(tavrin_uses_log4cplus target)
  target_link_libraries(${target} PRIVATE log4cplus::log4cplus)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL SHARED_LIBRARY)
    target_link_options(${target} PRIVATE LINKER:-z,nodelete)
  else()
    target_link_options(${target} INTERFACE LINKER:-z,nodelete)
  endif()
endfunction()
