# Installs the built project into a folder of its own, builds the consumer against it and runs it.
# Given: BUILD, SOURCE, WORK; TOOLCHAIN and EMULATOR for a cross build.
file(REMOVE_RECURSE "${WORK}")
function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE said ERROR_VARIABLE said)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGV}: ${result}\n${said}")
  endif()
endfunction()

run("${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${WORK}/installed")
# The documents lie to each other as in the tree, so that their links lead somewhere.
cmake_path(SET tree NORMALIZE "${SOURCE}/../..")
foreach(document README.md docs/README.md docs/tutorial.md docs/images/head.png)
  run("${CMAKE_COMMAND}" -E compare_files "${tree}/${document}"
    "${WORK}/installed/share/doc/cxc/${document}")
endforeach()
set(options -G Ninja "-DCMAKE_PREFIX_PATH=${WORK}/installed" "-DCMAKE_BUILD_TYPE=Release")
if(TOOLCHAIN)
  list(APPEND options "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}"
    "-Dcxc_DIR=${WORK}/installed/lib/cmake/cxc")
endif()
run("${CMAKE_COMMAND}" -S "${SOURCE}" -B "${WORK}/build" ${options})
run("${CMAKE_COMMAND}" --build "${WORK}/build")
if(EMULATOR)
  # A toolchain looks for packages in its own folder only; DLLs are looked for beside the program.
  foreach(program consumer example)
    file(COPY "${WORK}/build/${program}.exe" DESTINATION "${WORK}/installed/bin")
    run("${CMAKE_COMMAND}" -E chdir "${WORK}" ${EMULATOR} "${WORK}/installed/bin/${program}.exe")
  endforeach()
else()
  run("${CMAKE_COMMAND}" -E chdir "${WORK}" "${WORK}/build/consumer")
  run("${CMAKE_COMMAND}" -E chdir "${WORK}" "${WORK}/build/example")
  # The installed program finds its libraries from where it stands.
  run("${WORK}/installed/bin/cxc" verify "${WORK}/consumer.cxc" "${WORK}/example.cxc")
endif()
