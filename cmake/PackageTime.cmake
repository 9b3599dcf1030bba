# Read by CPack at its start: what time it is in the package. Without the history, the day of the version.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND git -C ${CPACK_VANTREL_SOURCE_FOLDER} log -1 --format=%ct
                  OUTPUT_VARIABLE seconds OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(NOT seconds)
    execute_process(COMMAND date --utc --date=${CPACK_VANTREL_RELEASE_DATE} +%s OUTPUT_VARIABLE seconds
                    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  endif()
  set(ENV{SOURCE_DATE_EPOCH} ${seconds})
endif()
