# Compiler and linker options shared by every target: vantrel::options.
add_library(vantrel_options INTERFACE)
add_library(vantrel::options ALIAS vantrel_options)
target_compile_options(vantrel_options INTERFACE -Wall -Wextra -Wpedantic)
target_link_libraries(vantrel_options INTERFACE Threads::Threads)
# Bounds of containers are checked in release builds as well: a programming error stops the program.
target_compile_definitions(vantrel_options INTERFACE _GLIBCXX_ASSERTIONS)
# Where it was built says nothing of what was built: two builds of one commit are the same, byte for byte.
target_compile_options(vantrel_options INTERFACE -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)
# A unit that files are joined to includes them, and gcc minds when what is included keeps a class to itself.
target_compile_options(vantrel_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
if(VANTREL_SANITIZE)
  target_compile_options(vantrel_options INTERFACE -fsanitize=${VANTREL_SANITIZE} -fno-omit-frame-pointer
                                                   -fno-sanitize-recover=all)
  target_link_options(vantrel_options INTERFACE -fsanitize=${VANTREL_SANITIZE})
endif()

# For the programs, not for their tests: what a file manager opens comes from anywhere, and an overrun ends the
# program instead of running on.
add_library(vantrel_hardening INTERFACE)
add_library(vantrel::hardening ALIAS vantrel_hardening)
set(optimized "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")
target_compile_options(vantrel_hardening INTERFACE $<${optimized}:-fstack-protector-strong>)
# Not for every processor: the first keeps a large frame from jumping over the page that guards a stack, the second
# lets an indirect call or a return lead only to where one may begin.
include(CheckCXXCompilerFlag)
foreach(option stack-clash-protection cf-protection)
  string(REPLACE "-" "_" variable "VANTREL_HAS_${option}")
  check_cxx_compiler_flag(-f${option} ${variable})
  if(${variable})
    target_compile_options(vantrel_hardening INTERFACE $<${optimized}:-f${option}>)
  endif()
endforeach()
target_compile_definitions(vantrel_hardening INTERFACE $<${optimized}:_FORTIFY_SOURCE=2>)
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  target_link_options(vantrel_hardening INTERFACE $<${optimized}:LINKER:-z,relro,-z,now>)
endif()

if(VANTREL_WITH_FUZZERS)
  target_compile_options(vantrel_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
