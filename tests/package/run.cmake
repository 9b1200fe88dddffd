# Builds and runs the consumer project twice: against the Kelmar build tree
# (KELMAR_DIR) and against an install prefix made from that build tree.
file(REMOVE_RECURSE ${BINARY})

function(consume dir)
  execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${dir} -G ${GENERATOR} ${ARGN}
                  RESULT_VARIABLE rc)
  if(rc)
    message(FATAL_ERROR "configure failed in ${dir}")
  endif()
  execute_process(COMMAND ${CMAKE_COMMAND} --build ${dir} RESULT_VARIABLE rc)
  if(rc)
    message(FATAL_ERROR "build failed in ${dir}")
  endif()
  execute_process(COMMAND ${dir}/consumer RESULT_VARIABLE rc)
  if(rc)
    message(FATAL_ERROR "consumer failed in ${dir}")
  endif()
endfunction()

consume(${BINARY}/from-build-tree -DKelmar_DIR=${KELMAR_DIR})

set(prefix ${BINARY}/prefix)
execute_process(COMMAND ${CMAKE_COMMAND} --install ${KELMAR_DIR} --prefix ${prefix}
                OUTPUT_QUIET RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "install failed")
endif()
consume(${BINARY}/from-prefix -DCMAKE_PREFIX_PATH=${prefix})
# The package must have come from the prefix, not from the build tree.
file(STRINGS ${BINARY}/from-prefix/CMakeCache.txt found REGEX "^Kelmar_DIR:")
string(FIND "${found}" "${prefix}/" at)
if(NOT at GREATER -1)
  message(FATAL_ERROR "the consumer found ${found}, not the package in ${prefix}")
endif()

# The installed host program starts from the prefix and finds the library
# there, with no search path set from outside.
if(EXISTS ${prefix}/bin/kelmar-host)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ${prefix}/bin/kelmar-host --version
                  RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(rc)
    message(FATAL_ERROR "the installed kelmar-host does not start: ${rc} ${err}")
  endif()
else()
  message(FATAL_ERROR "kelmar-host is missing from ${prefix}/bin")
endif()
