# nd_model(TARGET FILE)
#
# Generates the classes of a metamodel into the build tree and compiles them into TARGET. FILE is the YAML file,
# relative to the current folder.
function(nd_model target file)
  set(generator "${PROJECT_SOURCE_DIR}/nd_data_adapter/model/generator")
  set(input "${CMAKE_CURRENT_SOURCE_DIR}/${file}")
  cmake_path(RELATIVE_PATH input BASE_DIRECTORY "${PROJECT_SOURCE_DIR}" OUTPUT_VARIABLE name)
  set(command "${Python3_EXECUTABLE}" -B "${generator}/generate.py" "${input}" --name "${name}")
  execute_process(COMMAND ${command} --list OUTPUT_VARIABLE listed RESULT_VARIABLE status
    OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "The metamodel ${name} can't be generated; the line above says why.")
  endif()
  string(REPLACE "\n" ";" outputs "${listed}")
  set(headers ${outputs})
  list(FILTER headers INCLUDE REGEX "\\.h$")
  set_property(GLOBAL APPEND PROPERTY ND_GENERATED_HEADERS ${headers})
  list(TRANSFORM outputs PREPEND "${PROJECT_BINARY_DIR}/generated/")
  file(GLOB rules CONFIGURE_DEPENDS "${generator}/*.py" "${generator}/templates/*.j2")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${input}" ${rules})
  add_custom_command(
    OUTPUT ${outputs}
    COMMAND ${command} --root "${PROJECT_BINARY_DIR}/generated"
    DEPENDS "${input}" ${rules}
    COMMENT "Generating the classes of ${name}"
    VERBATIM)
  # The rule belongs to this folder, the target perhaps to another: a target of its own carries it there.
  string(MAKE_C_IDENTIFIER "generate_${name}" rule)
  add_custom_target(${rule} DEPENDS ${outputs})
  add_dependencies(${target} ${rule})
  set_source_files_properties(${outputs} PROPERTIES GENERATED TRUE)
  target_sources(${target} PRIVATE ${outputs})
endfunction()
