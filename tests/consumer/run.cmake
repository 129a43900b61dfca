# Installs the built project into a folder of its own and packs it; both hold the same. Builds the
# consumer against the unpacked package and runs it.
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

set(unpacked "${WORK}/unpacked")
file(MAKE_DIRECTORY "${unpacked}")
set(generator DEB)
if(EMULATOR)
  set(generator ZIP)
endif()
run("${CMAKE_CPACK_COMMAND}" --config "${BUILD}/CPackConfig.cmake" -G ${generator}
  -B "${WORK}/package")
if(EMULATOR)
  file(GLOB package "${WORK}/package/*.zip")
  run("${CMAKE_COMMAND}" -E chdir "${unpacked}" "${CMAKE_COMMAND}" -E tar xf "${package}")
  file(GLOB prefix "${unpacked}/*")
else()
  file(GLOB package "${WORK}/package/*.deb")
  run(dpkg -x "${package}" "${unpacked}")
  set(prefix "${unpacked}/usr")
endif()
file(GLOB_RECURSE inPackage RELATIVE "${prefix}" "${prefix}/*")
file(GLOB_RECURSE installed RELATIVE "${WORK}/installed" "${WORK}/installed/*")
if(NOT "${inPackage}" STREQUAL "${installed}")
  message(FATAL_ERROR "installed: ${installed}\nin the package: ${inPackage}")
endif()

set(options -G Ninja "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_BUILD_TYPE=Release")
if(TOOLCHAIN)
  list(APPEND options "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}"
    "-Dcxc_DIR=${prefix}/lib/cmake/cxc")
endif()
run("${CMAKE_COMMAND}" -S "${SOURCE}" -B "${WORK}/build" ${options})
run("${CMAKE_COMMAND}" --build "${WORK}/build")
if(EMULATOR)
  # A toolchain looks for packages in its own folder only; DLLs are looked for beside the program.
  foreach(program consumer example)
    file(COPY "${WORK}/build/${program}.exe" DESTINATION "${prefix}/bin")
    run("${CMAKE_COMMAND}" -E chdir "${WORK}" ${EMULATOR} "${prefix}/bin/${program}.exe")
  endforeach()
else()
  run("${CMAKE_COMMAND}" -E chdir "${WORK}" "${WORK}/build/consumer")
  run("${CMAKE_COMMAND}" -E chdir "${WORK}" "${WORK}/build/example")
  # The installed program finds its libraries from where it stands.
  run("${prefix}/bin/cxc" verify "${WORK}/consumer.cxc" "${WORK}/example.cxc")
endif()
