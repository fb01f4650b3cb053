# The generators need Jinja2 and PyYAML. The distribution's interpreter is asked first, because the packages
# that scripts/install-dependencies installs belong to it; Python3_EXECUTABLE overrides the search.
function(nd_python_can_generate result interpreter)
  execute_process(COMMAND "${interpreter}" -c "import jinja2, yaml"
    RESULT_VARIABLE status OUTPUT_QUIET ERROR_QUIET)
  if(status EQUAL 0)
    set(${result} TRUE PARENT_SCOPE)
  else()
    set(${result} FALSE PARENT_SCOPE)
  endif()
endfunction()

if(NOT Python3_EXECUTABLE)
  find_program(ND_PYTHON_ON_PATH NAMES python3 python)
  foreach(candidate IN ITEMS /usr/bin/python3 "${ND_PYTHON_ON_PATH}")
    if(EXISTS "${candidate}")
      nd_python_can_generate(able "${candidate}")
      if(able)
        set(Python3_EXECUTABLE "${candidate}" CACHE FILEPATH "The Python that runs the generators")
        break()
      endif()
    endif()
  endforeach()
endif()
if(NOT Python3_EXECUTABLE)
  message(FATAL_ERROR "No Python interpreter here can import jinja2 and yaml. Install the Debian packages "
    "python3-jinja2 and python3-yaml, or name an interpreter that has both with -DPython3_EXECUTABLE=…")
endif()
