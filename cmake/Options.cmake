# Build options and the flags that every target of this project gets (target bdc_options).

option(BDC_BUILD_TESTS "Build the test programs" ON)
option(BDC_BUILD_BENCH "Build bdc-bench" ON)
option(BDC_BUILD_FUZZ "Build the fuzz targets (needs clang)" OFF)
option(BDC_WERROR "Treat warnings as errors" ON)
option(BDC_ASSERTIONS "Check standard library preconditions" OFF)
set(BDC_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize= takes them")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
include(CheckPIESupported)
check_pie_supported(LANGUAGES C CXX)

find_program(BDC_CCACHE ccache)
if(BDC_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${BDC_CCACHE})
  set(CMAKE_C_COMPILER_LAUNCHER ${BDC_CCACHE})
endif()

add_library(bdc_options INTERFACE)
target_include_directories(bdc_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_definitions(bdc_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS
  $<$<BOOL:${BDC_ASSERTIONS}>:_GLIBCXX_ASSERTIONS>)

if(MSVC)
  target_compile_options(bdc_options INTERFACE /W4 /permissive- /utf-8 $<$<BOOL:${BDC_WERROR}>:/WX>)
else()
  target_compile_options(bdc_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor -Woverloaded-virtual
    -Wcast-align -Wformat=2 -Wundef -fno-semantic-interposition -fvisibility-inlines-hidden
    $<$<BOOL:${BDC_WERROR}>:-Werror>
    -fstack-protector-strong)
  # GCC 12 takes the assignment of a literal to a std::string for an overlapping copy (GCC bug 105329).
  target_compile_options(bdc_options INTERFACE
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>)
  # GCC's flow-based warnings see impossible paths once a sanitizer has instrumented the code.
  if(BDC_SANITIZE)
    target_compile_options(bdc_options INTERFACE
      -fsanitize=${BDC_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all
      -Wno-maybe-uninitialized -Wno-stringop-overflow -Wno-array-bounds)
    target_link_options(bdc_options INTERFACE -fsanitize=${BDC_SANITIZE})
  else()
    target_compile_options(bdc_options INTERFACE $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
  endif()
  if(NOT APPLE)
    target_link_options(bdc_options INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack,--as-needed)
  endif()
endif()
