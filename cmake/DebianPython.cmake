# Finds the Python that has the schema compiler's packages. Another interpreter may stand before Debian's on the path,
# so Debian's is tried first. Sets Python3_EXECUTABLE.

if(NOT Python3_EXECUTABLE)
  foreach(candidate /usr/bin/python3 python3)
    execute_process(COMMAND ${candidate} -c "import yaml, jinja2" RESULT_VARIABLE result OUTPUT_QUIET ERROR_QUIET)
    if(result EQUAL 0)
      find_program(Python3_EXECUTABLE ${candidate})
      break()
    endif()
  endforeach()
endif()
find_package(Python3 3.11 REQUIRED COMPONENTS Interpreter)
