# OVERLAYEDITOR_SOURCE_DATE: the day of the sources, in seconds since 1970, which stands for today in all that is built,
# so that the same sources give the same bytes: SOURCE_DATE_EPOCH of the environment, else the time of the last commit,
# else that of the changelog.
set(OVERLAYEDITOR_SOURCE_DATE "$ENV{SOURCE_DATE_EPOCH}")
if(NOT OVERLAYEDITOR_SOURCE_DATE)
  execute_process(
    COMMAND git log -1 --format=%ct
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    OUTPUT_VARIABLE OVERLAYEDITOR_SOURCE_DATE
    OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
if(NOT OVERLAYEDITOR_SOURCE_DATE)
  file(TIMESTAMP ${PROJECT_SOURCE_DIR}/CHANGELOG.md OVERLAYEDITOR_SOURCE_DATE "%s" UTC)
endif()
