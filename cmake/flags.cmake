# Every compiler flag of the project, once.

# The physics goes into a shared library too.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

add_library(project_flags INTERFACE)
target_include_directories(project_flags INTERFACE ${PROJECT_SOURCE_DIR})

target_compile_options(project_flags INTERFACE
  # Results are the same on every machine: no fused multiply-add, and no
  # constant folded with another rounding than the library's.
  -ffp-contract=off
  $<$<CXX_COMPILER_ID:GNU>:-frounding-math>
  # Messages name "help/query.cpp" wherever the program was built.
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=
  -Wall -Wextra -Wconversion -Wshadow -Wdouble-promotion
  # g++ 12 sees overlaps in std::string that cannot be (its bug 105651).
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

if(ATTENUATION_WERROR)
  target_compile_options(project_flags INTERFACE -Werror)
endif()

if(ATTENUATION_FUZZ)
  # Coverage for libFuzzer in all of the code; the targets bring its main().
  target_compile_options(project_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(ATTENUATION_SANITIZE)
  target_compile_options(project_flags INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  target_link_options(project_flags INTERFACE -fsanitize=address,undefined)
elseif(CMAKE_BUILD_TYPE MATCHES "Rel")
  # Hardening: what a program that reads files and answers from others gets.
  include(CheckPIESupported)
  check_pie_supported()
  target_compile_options(project_flags INTERFACE
    -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -D_GLIBCXX_ASSERTIONS
    -fstack-protector-strong -fstack-clash-protection)
  target_link_options(project_flags INTERFACE
    LINKER:-z,relro,-z,now,-z,noexecstack)
endif()
