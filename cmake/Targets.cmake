# The kinds of target this project has. Sources are always listed by name.

# bdc_library(NAME sources...): an internal static library.
function(bdc_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PUBLIC bdc_options)
endfunction()

# bdc_core_library(NAME sources...): logic of the module: plain C++, hidden symbols, never Qt.
function(bdc_core_library name)
  bdc_library(${name} ${ARGN})
  target_link_libraries(${name} PUBLIC bdc_api)
  target_compile_definitions(${name} PRIVATE BDC_BUILDING_MODULE)
  set_target_properties(${name} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
endfunction()

# bdc_ui_library(NAME sources...): Qt 6 Widgets over a core.
function(bdc_ui_library name)
  bdc_core_library(${name} ${ARGN})
  target_link_libraries(${name} PUBLIC Qt6::Widgets)
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
endfunction()

# What the sanitizers pass over, in the tests and in the programs that they start.
if(BDC_SANITIZE MATCHES "thread")
  set(bdc_sanitizer_options "TSAN_OPTIONS=set:suppressions=${PROJECT_SOURCE_DIR}/tests/support/races.supp")
else()
  set(bdc_sanitizer_options
    "LSAN_OPTIONS=set:suppressions=${PROJECT_SOURCE_DIR}/tests/support/leaks.supp:print_suppressions=0")
endif()

# bdc_test(NAME [ALONE] [LABEL label] SOURCES ... LIBS ...): a GoogleTest program; each of its tests is one of ctest's.
# ALONE: each has the machine for itself.
function(bdc_test name)
  cmake_parse_arguments(T "ALONE" "LABEL;TIMEOUT" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE bdc_options ${T_LIBS} GTest::gmock GTest::gtest_main)
  target_compile_definitions(${name} PRIVATE BDC_SOURCE_DIR="${PROJECT_SOURCE_DIR}" BDC_BINARY_DIR="${PROJECT_BINARY_DIR}")
  if(NOT T_TIMEOUT)
    set(T_TIMEOUT 120)
  endif()
  if(NOT T_LABEL)
    set(T_LABEL unit)
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT ${T_TIMEOUT} LABELS ${T_LABEL} RUN_SERIAL ${T_ALONE} ENVIRONMENT "QT_QPA_PLATFORM=offscreen"
      ENVIRONMENT_MODIFICATION "${bdc_sanitizer_options}")
endfunction()
