# Type stubs for Python's type checkers, since the modules are created at run time: those of the schema's classes are
# written by the schema compiler, those of the runtime are in script/mi/typing.

# add_python_typing(<folder>)
# Writes the modules of the package that <folder>/package.yaml describes, and of those below it. To be called after
# script/python, which says where Python packages are installed.
function(add_python_typing folder)
  set(package ${PROJECT_SOURCE_DIR}/${folder}/package.yaml)
  set(written ${PROJECT_SOURCE_DIR}/script/mi/typing)
  set(output ${PROJECT_BINARY_DIR}/generated/typing)
  file(GLOB_RECURSE inputs CONFIGURE_DEPENDS
       ${PROJECT_SOURCE_DIR}/schema/*.yaml ${PROJECT_SOURCE_DIR}/schema/compiler/*.py
       ${PROJECT_SOURCE_DIR}/schema/compiler/*.j2 ${written}/*)
  set(stamp ${output}.stamp)
  add_custom_command(OUTPUT ${stamp}
                     COMMAND ${CMAKE_COMMAND} -E env PYTHONPATH=${PROJECT_SOURCE_DIR}/schema PYTHONDONTWRITEBYTECODE=1
                             ${Python3_EXECUTABLE} -m compiler --package ${package} --typing ${output}
                     COMMAND ${CMAKE_COMMAND} -E copy_directory ${written} ${output}
                     COMMAND ${CMAKE_COMMAND} -E copy_directory ${output} ${QUAY_PYTHON_OUTPUT_DIRECTORY}
                     COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
                     DEPENDS ${inputs} COMMENT "Writing what Python's type checkers read" VERBATIM)
  add_custom_target(python_typing ALL DEPENDS ${stamp})
  if(QUAY_PYTHON_INSTALL_DIR)
    install(DIRECTORY ${output}/ DESTINATION ${QUAY_PYTHON_INSTALL_DIR})
  endif()
endfunction()
