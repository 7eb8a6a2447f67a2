# Installs the build tree BUILD and moves the installed tree to the folder PREFIX: a package may be moved.
set(first ${PREFIX}.installed)
file(REMOVE_RECURSE ${PREFIX} ${first})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${first} RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "installing failed")
endif()
file(RENAME ${first} ${PREFIX})
