# The tests that `make memcheck` runs under valgrind, through `ctest -T memcheck`: each program of the library's tests and
# each fuzz target as a whole, because valgrind needs seconds to start. Other runs of ctest do not list them.
#
# Excluded are the programs with these labels (see tests/CMakeLists.txt).
set(unsuitable huge memory processes)

foreach(directory tests/driver tests/platform tests/testing fuzz)
  get_property(targets DIRECTORY ${directory} PROPERTY BUILDSYSTEM_TARGETS)
  list(FILTER targets INCLUDE REGEX "_(test|fuzz)$")
  list(FILTER targets EXCLUDE REGEX "^OtherPlatform")  # consist of tests of other programs
  foreach(target IN LISTS targets)
    get_target_property(label ${target} LABELS)
    if(label IN_LIST unsuitable)
      continue()
    endif()
    set(arguments --gtest_brief)
    if(target MATCHES "(.*)_fuzz$")
      set(arguments ${PROJECT_SOURCE_DIR}/fuzz/corpora/${CMAKE_MATCH_1} ${PROJECT_SOURCE_DIR}/fuzz/seeds/${CMAKE_MATCH_1})
    endif()
    add_test(NAME Memcheck.${target} CONFIGURATIONS Memcheck COMMAND ${target} ${arguments})
    set_tests_properties(Memcheck.${target} PROPERTIES LABELS memcheck TIMEOUT 1800)
  endforeach()
endforeach()

# The programs that a test starts are checked, too, except those of the system. The synonyms keep the tests' own allocators.
set(MEMORYCHECK_COMMAND_OPTIONS "--leak-check=full --error-exitcode=99 --soname-synonyms=somalloc=nouserintercepts \
--trace-children=yes --trace-children-skip=/bin/*,/usr/*")
set(MEMORYCHECK_SUPPRESSIONS_FILE ${PROJECT_SOURCE_DIR}/scripts/memcheck.suppressions)

# Writes the settings of ctest, without the targets for dashboards.
set_property(GLOBAL PROPERTY CTEST_TARGETS_ADDED TRUE)
include(CTest)
