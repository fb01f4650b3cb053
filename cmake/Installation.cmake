# What `cmake --install` lays down: the public headers below include/nd_data_adapter-1, the libraries and adapter
# modules, the command-line tool, a CMake package, pkg-config files, and what authors of adapters begin with. All of
# them find each other from where they stand, so that the whole may be moved.
set(ND_INSTALL_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/nd_data_adapter-1")

# The root calls nd_install() last, when every target is there.
function(nd_install)
  nd_install_headers()

  nd_shared_libraries_below("${PROJECT_SOURCE_DIR}/adapters" modules)
  set(libraries nd_platform nd_data_adapter ${modules})
  file(RELATIVE_PATH bin_to_lib "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  foreach(library IN LISTS libraries)
    set_target_properties(${library} PROPERTIES INSTALL_RPATH "$ORIGIN")
    nd_install_pkg_config(${library})
  endforeach()
  set_target_properties(ndx PROPERTIES INSTALL_RPATH "$ORIGIN/${bin_to_lib}")
  install(TARGETS ${libraries} nd_shipped_adapters nd_adapter_conformance EXPORT nd_data_adapterTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
  install(TARGETS ndx RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
  nd_install_cmake_package()
  # What authors of adapters begin with: pages, and projects to copy, with the paths by which the pages name them.
  set(start "${CMAKE_INSTALL_DATADIR}/nd_data_adapter")
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/first_adapter" "${PROJECT_SOURCE_DIR}/examples/adapter"
    DESTINATION "${start}/examples")
  install(FILES "${PROJECT_SOURCE_DIR}/docs/writing-an-adapter.md" "${PROJECT_SOURCE_DIR}/docs/ndx.md"
    DESTINATION "${start}/docs")
endfunction()

# The public headers by their own paths, those written by hand and those generated. Private are those in a folder
# named internal, and of an adapter all but what its users need; scripts/check_include_arrows.py goes by the same
# rule.
function(nd_install_headers)
  set(public "platform/*.h" "nd_data_adapter/*.h" "adapters/export.h" "adapters/register*.h" "adapters/*Adapter.h")
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}" ${public})
  list(FILTER headers EXCLUDE REGEX "/internal/")
  foreach(header IN LISTS headers)
    cmake_path(GET header PARENT_PATH place)
    install(FILES "${PROJECT_SOURCE_DIR}/${header}" DESTINATION "${ND_INSTALL_INCLUDEDIR}/${place}")
  endforeach()
  # By name, since the build tree keeps what earlier descriptions made.
  get_property(generated GLOBAL PROPERTY ND_GENERATED_HEADERS)
  list(FILTER generated INCLUDE REGEX "^(platform|nd_data_adapter)/")
  list(FILTER generated EXCLUDE REGEX "/internal/")
  foreach(header IN LISTS generated)
    cmake_path(GET header PARENT_PATH place)
    install(FILES "${PROJECT_BINARY_DIR}/generated/${header}" DESTINATION "${ND_INSTALL_INCLUDEDIR}/${place}")
  endforeach()
endfunction()

# nd_shared_libraries_below(FOLDER RESULT): the shared libraries that the CMake files of a folder define.
function(nd_shared_libraries_below folder result)
  get_property(targets DIRECTORY "${folder}" PROPERTY BUILDSYSTEM_TARGETS)
  set(found)
  foreach(target IN LISTS targets)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "SHARED_LIBRARY")
      list(APPEND found ${target})
    endif()
  endforeach()
  get_property(subfolders DIRECTORY "${folder}" PROPERTY SUBDIRECTORIES)
  foreach(subfolder IN LISTS subfolders)
    nd_shared_libraries_below("${subfolder}" more)
    list(APPEND found ${more})
  endforeach()
  set(${result} ${found} PARENT_SCOPE)
endfunction()

# nd_install_pkg_config(LIBRARY): a pkg-config file that requires what stands below the library.
function(nd_install_pkg_config library)
  set(pc_requires "nd_data_adapter = ${PROJECT_VERSION}")
  set(pc_description "An adapter for nd_data_adapter")
  if(library STREQUAL "nd_platform")
    set(pc_requires "")
    set(pc_description "What nd_data_adapter needs of its host: models, arrays, workspaces, services")
  elseif(library STREQUAL "nd_data_adapter")
    set(pc_requires "nd_platform = ${PROJECT_VERSION}")
    set(pc_description "${PROJECT_DESCRIPTION}")
  endif()
  get_target_property(pc_library ${library} OUTPUT_NAME)
  if(NOT pc_library)
    set(pc_library ${library})
  endif()
  set(pc_folder "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig")
  cmake_path(ABSOLUTE_PATH ND_INSTALL_INCLUDEDIR BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}" OUTPUT_VARIABLE headers)
  file(RELATIVE_PATH pc_to_prefix "${pc_folder}" "${CMAKE_INSTALL_PREFIX}")
  file(RELATIVE_PATH pc_to_headers "${pc_folder}" "${headers}")
  string(REGEX REPLACE "/$" "" pc_to_prefix "${pc_to_prefix}")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/templates/library.pc.in"
    "${PROJECT_BINARY_DIR}/installation/${library}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/installation/${library}.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endfunction()

# The package that find_package(nd_data_adapter) finds, with the targets nd_data_adapter::platform,
# nd_data_adapter::nd_data_adapter, one for each adapter, nd_data_adapter::shipped_adapters for all adapters, and
# nd_data_adapter::adapter_conformance for the checks that authors of adapters run.
function(nd_install_cmake_package)
  set(folder "${CMAKE_INSTALL_LIBDIR}/cmake/nd_data_adapter")
  set(prepared "${PROJECT_BINARY_DIR}/installation")
  configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/templates/nd_data_adapterConfig.cmake.in"
    "${prepared}/nd_data_adapterConfig.cmake" INSTALL_DESTINATION "${folder}"
    NO_SET_AND_CHECK_MACRO)
  write_basic_package_version_file("${prepared}/nd_data_adapterConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
  install(EXPORT nd_data_adapterTargets NAMESPACE nd_data_adapter:: DESTINATION "${folder}")
  install(FILES "${prepared}/nd_data_adapterConfig.cmake" "${prepared}/nd_data_adapterConfigVersion.cmake"
    DESTINATION "${folder}")
endfunction()
