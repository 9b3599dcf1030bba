# Compiler and linker options shared by every target: vantrel::options.
add_library(vantrel_options INTERFACE)
add_library(vantrel::options ALIAS vantrel_options)
target_compile_options(vantrel_options INTERFACE -Wall -Wextra -Wpedantic -Werror)
target_link_libraries(vantrel_options INTERFACE Threads::Threads)
# Bounds of containers are checked in release builds as well: a programming error stops the program.
target_compile_definitions(vantrel_options INTERFACE _GLIBCXX_ASSERTIONS)

if(VANTREL_SANITIZE)
  target_compile_options(vantrel_options INTERFACE -fsanitize=${VANTREL_SANITIZE} -fno-omit-frame-pointer
                                                   -fno-sanitize-recover=all)
  target_link_options(vantrel_options INTERFACE -fsanitize=${VANTREL_SANITIZE})
endif()
