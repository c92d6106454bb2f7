# Generates the sources of all packages without compiling them.
add_custom_target(generated)

# add_schema_package(<target> PACKAGE <folder> [DEPENDS <targets>...] [PRECOMPILE <header>] [STAYS_LOADED]
#                    [SCRIPT_DOCS])
#
# Makes a shared library of the package that <folder>/package.yaml describes. The schema compiler writes its sources
# into the build tree when a YAML file or the compiler itself has changed; since it doesn't write
# files whose text is unchanged, only what really changed is compiled again. The library's public headers are the generated ones.
# PRECOMPILE names a header that nearly all of the sources include. With STAYS_LOADED the library is never unmapped.
# SCRIPT_DOCS adds a table of the docs that scripts show as help.
function(add_schema_package target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "STAYS_LOADED;SCRIPT_DOCS" "PACKAGE;PRECOMPILE" "DEPENDS")
  set(package ${PROJECT_SOURCE_DIR}/${arg_PACKAGE})
  set(compiler ${PROJECT_SOURCE_DIR}/schema/compiler)
  if(NOT EXISTS ${compiler}/__main__.py OR NOT EXISTS ${package}/package.yaml)
    return()
  endif()

  set(output ${PROJECT_BINARY_DIR}/generated/${target})
  set(command ${CMAKE_COMMAND} -E env PYTHONPATH=${PROJECT_SOURCE_DIR}/schema PYTHONDONTWRITEBYTECODE=1
              ${Python3_EXECUTABLE} -m compiler --package ${package}/package.yaml --out ${output})
  if(arg_SCRIPT_DOCS)
    list(APPEND command --script-docs)
  endif()
  file(GLOB_RECURSE inputs CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/schema/*.yaml)
  file(GLOB_RECURSE compiler_files CONFIGURE_DEPENDS ${compiler}/*.py ${compiler}/*.j2)
  list(APPEND inputs ${compiler_files})

  # The list of files depends on the content of the YAML, so configuration runs again whenever that changes.
  execute_process(COMMAND ${command} --list OUTPUT_VARIABLE listing ERROR_VARIABLE errors RESULT_VARIABLE result
                  OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "The schema compiler refuses ${arg_PACKAGE}:\n${errors}")
  endif()
  set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${inputs})
  string(REPLACE "\n" ";" files "${listing}")
  list(TRANSFORM files PREPEND ${output}/)
  set(sources ${files})
  list(FILTER sources INCLUDE REGEX "\\.cpp$")

  set(stamp ${output}.stamp)
  add_custom_command(OUTPUT ${stamp} BYPRODUCTS ${files}
                     COMMAND ${command} COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
                     DEPENDS ${inputs} COMMENT "Generating ${target} from ${arg_PACKAGE}" VERBATIM)
  add_custom_target(generate_${target} DEPENDS ${stamp})
  add_dependencies(generated generate_${target})

  add_library(${target} SHARED ${sources})
  add_dependencies(${target} generate_${target})
  set_up_library(${target} ${arg_DEPENDS})
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${output}/include>)
  if(arg_PRECOMPILE)
    target_precompile_headers(${target} PRIVATE ${arg_PRECOMPILE})
  endif()
  if(arg_STAYS_LOADED)
    target_link_options(${target} PRIVATE -Wl,-z,nodelete)
  endif()
  install(DIRECTORY ${output}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endfunction()
