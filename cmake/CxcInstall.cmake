# What is installed and packed: the libraries with their headers, for find_package(cxc); the program
# cxc; the Python package; on Windows the sample host.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(cxc_headers "${CMAKE_INSTALL_INCLUDEDIR}/cxc")
set(cxc_package "${CMAKE_INSTALL_LIBDIR}/cmake/cxc")

set(cxc_libraries cxc)
foreach(target afx cxc_matrix cxc_commonui)
  if(TARGET ${target})
    list(APPEND cxc_libraries ${target})
  endif()
endforeach()
set_target_properties(${cxc_libraries} PROPERTIES
  VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} INSTALL_RPATH "$ORIGIN")
if(WIN32)
  # The version is in the resources; the name stays, because hosts load it by it.
  set_target_properties(${cxc_libraries} PROPERTIES VERSION "" SOVERSION "")
endif()
if(MSVC)
  list(APPEND cxc_libraries cxc_framework)  # what a host compiles with, too
endif()
install(TARGETS ${cxc_libraries} EXPORT cxcTargets
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  INCLUDES DESTINATION "${cxc_headers}" "${cxc_headers}/afx/include")
install(EXPORT cxcTargets NAMESPACE cxc:: DESTINATION "${cxc_package}")

# The headers that cxc.h reaches, and the operations beside the classes.
install(FILES cxc.h framework.h DESTINATION "${cxc_headers}")
set(cxc_folders cxcdata cxcpkg siblings/matrix)
if(WIN32)
  list(APPEND cxc_folders cxcui siblings/commonui)
endif()
foreach(folder ${cxc_folders})
  install(DIRECTORY ${folder}/ DESTINATION "${cxc_headers}/${folder}" FILES_MATCHING
    PATTERN "C*.h" PATTERN "*_api.h")
endforeach()
install(FILES cxcdata/array_exchange.h cxcdata/dataset_part.h
  DESTINATION "${cxc_headers}/cxcdata")
install(FILES cxcfile/each_pair.h cxcfile/file_commands.h cxcfile/pass_record.h
  cxcfile/text_export.h
  DESTINATION "${cxc_headers}/cxcfile")
install(FILES cxcpkg/across_datasets.h DESTINATION "${cxc_headers}/cxcpkg")
if(WIN32)
  install(FILES cxcui/still_there.h DESTINATION "${cxc_headers}/cxcui")
  install(FILES res/resource.h DESTINATION "${cxc_headers}/res")
endif()
if(TARGET afx)
  install(DIRECTORY afx/include/ DESTINATION "${cxc_headers}/afx/include")
endif()

configure_package_config_file(cmake/cxcConfig.cmake.in "${PROJECT_BINARY_DIR}/cxcConfig.cmake"
  INSTALL_DESTINATION "${cxc_package}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/cxcConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/cxcConfig.cmake" "${PROJECT_BINARY_DIR}/cxcConfigVersion.cmake"
  DESTINATION "${cxc_package}")

if(TARGET cxc_tool)
  set_target_properties(cxc_tool PROPERTIES
    INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  install(TARGETS cxc_tool RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()
if(TARGET cxc_host)
  install(TARGETS cxc_host RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()
if(MINGW)
  # The compiler's run-time DLLs, which tests have beside them, too.
  install(FILES "${PROJECT_BINARY_DIR}/bin/libgcc_s_seh-1.dll"
    "${PROJECT_BINARY_DIR}/bin/libstdc++-6.dll" "${PROJECT_BINARY_DIR}/bin/libwinpthread-1.dll"
    DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()
if(TARGET _core)
  set(modules "lib/python3/dist-packages/cxc")
  set(CXC_PYTHON_RPATH "$ORIGIN/../../../../${CMAKE_INSTALL_LIBDIR}" CACHE STRING
    "Where the installed Python package looks for the libraries")
  set_target_properties(_core PROPERTIES INSTALL_RPATH "${CXC_PYTHON_RPATH}")
  install(TARGETS _core LIBRARY DESTINATION "${modules}")
  install(DIRECTORY python/cxc/ DESTINATION "${modules}" FILES_MATCHING
    PATTERN "*.py" PATTERN "*.pyi" PATTERN "py.typed" PATTERN "*.html"
    PATTERN "*.css" PATTERN "*.js" PATTERN "__pycache__" EXCLUDE)
endif()
install(FILES README.md CHANGELOG.md DESTINATION "${CMAKE_INSTALL_DOCDIR}")
# In a folder as here: links of README.md lead there, and it has a README.md of its own.
install(DIRECTORY docs DESTINATION "${CMAKE_INSTALL_DOCDIR}" PATTERN "Doxyfile" EXCLUDE)

set(CPACK_PACKAGE_NAME cxc)
set(CPACK_PACKAGE_VENDOR "The CxC developers")
set(CPACK_PACKAGE_CONTACT "The CxC developers <cxc@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION science)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/bin")
  if(TARGET _core)
    # The extension is made for one version of Python and not found by another.
    get_directory_property(python DIRECTORY python DEFINITION PYTHON_VERSION_MAJOR)
    get_directory_property(minor DIRECTORY python DEFINITION PYTHON_VERSION_MINOR)
    math(EXPR next "${minor} + 1")
    set(CPACK_DEBIAN_PACKAGE_DEPENDS
      "python3 (>= ${python}.${minor}), python3 (<< ${python}.${next}), python3-numpy")
    set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
      "python3-mne, python3-scipy, python3-matplotlib, python3-tqdm")
  endif()
endif()
include(CPack)
