# Installs the build tree BUILD into the folder PREFIX, which is emptied first.
file(REMOVE_RECURSE ${PREFIX})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX} RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "installing failed")
endif()
