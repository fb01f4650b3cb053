# nd_message_catalogue(TARGET FILE HEADER)
#
# Compiles a catalogue of messages into TARGET. FILE is the YAML file with the texts; HEADER is the path under
# which the generated classes are included, for example platform/foundation/messages.h.
function(nd_message_catalogue target file header)
  set(tool "${PROJECT_SOURCE_DIR}/platform/services/catalogue/make_catalogue.py")
  set(generated "${PROJECT_BINARY_DIR}/generated")
  cmake_path(REPLACE_EXTENSION header .cpp OUTPUT_VARIABLE source)
  cmake_path(GET header PARENT_PATH folder)
  file(MAKE_DIRECTORY "${generated}/${folder}")
  add_custom_command(
    OUTPUT "${generated}/${header}" "${generated}/${source}"
    COMMAND "${Python3_EXECUTABLE}" -B "${tool}" "${CMAKE_CURRENT_SOURCE_DIR}/${file}" --header "${header}"
      --root "${generated}"
    DEPENDS "${tool}" "${CMAKE_CURRENT_SOURCE_DIR}/${file}"
    COMMENT "Compiling the messages of ${header}"
    VERBATIM)
  # The rule belongs to this folder, the target perhaps to another: a target of its own carries it there.
  string(MAKE_C_IDENTIFIER "generate_${header}" rule)
  add_custom_target(${rule} DEPENDS "${generated}/${header}" "${generated}/${source}")
  add_dependencies(${target} ${rule})
  set_source_files_properties("${generated}/${header}" "${generated}/${source}" PROPERTIES GENERATED TRUE)
  target_sources(${target} PRIVATE "${generated}/${header}" "${generated}/${source}")
  set_property(GLOBAL APPEND PROPERTY ND_GENERATED_HEADERS "${header}")
endfunction()
