# Run by cpack when the files of the packages stand ready: adds what only Debian wants, and packs as Debian does.
# cpack has left it behind.
unset(ENV{DESTDIR})

function(gzip file)
  execute_process(COMMAND gzip -9n ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  set(root ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share)
  string(TOUPPER ${component} upper)
  set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  file(INSTALL ${CPACK_DEBIAN_FILES}/copyright ${CPACK_DEBIAN_FILES}/changelog DESTINATION ${root}/doc/${package})
  gzip(${root}/doc/${package}/changelog)
  if(EXISTS ${CPACK_DEBIAN_FILES}/${package}.lintian-overrides)
    file(
      INSTALL ${CPACK_DEBIAN_FILES}/${package}.lintian-overrides
      DESTINATION ${root}/lintian/overrides
      RENAME ${package})
  endif()
  file(GLOB pages ${root}/man/*/*.[1-8])
  foreach(page IN LISTS pages)
    gzip(${page})
  endforeach()
  # Directories have got theirs from the umask.
  file(
    CHMOD_RECURSE ${CPACK_TEMPORARY_DIRECTORY}/${component}
    DIRECTORY_PERMISSIONS
      OWNER_READ
      OWNER_WRITE
      OWNER_EXECUTE
      GROUP_READ
      GROUP_EXECUTE
      WORLD_READ
      WORLD_EXECUTE)
endforeach()
