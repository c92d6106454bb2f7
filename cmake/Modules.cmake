# Modules: the folders that hold the sources, each with its public headers in include/ and its sources in src/.

# link_present(<target> <libraries>...)
# Links to those of the libraries that contain any module so far.
function(link_present target)
  foreach(library IN LISTS ARGN)
    if(TARGET ${library})
      target_link_libraries(${target} PUBLIC ${library})
    endif()
  endforeach()
endfunction()

# set_up_library(<target> <libraries>...)
# Sets the properties that all libraries of this project share.
function(set_up_library target)
  target_link_libraries(${target} PRIVATE project_flags)
  target_compile_features(${target} PUBLIC cxx_std_20)
  link_present(${target} ${ARGN})
  set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  install(TARGETS ${target} EXPORT vw_modelref_info-targets
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  add_library(vw_modelref_info::${target} ALIAS ${target})
endfunction()

# add_module(<folder> LIBRARY <target> [DEPENDS <targets>...])
# Adds a module to a shared library, which is created for its first module. A module may have no sources or no headers;
# for a folder that doesn't exist, nothing is added.
function(add_module folder)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "LIBRARY" "DEPENDS")
  set(directory ${PROJECT_SOURCE_DIR}/${folder})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${directory}/src/*.cpp)
  if(NOT TARGET ${arg_LIBRARY})
    if(NOT sources)
      return()
    endif()
    add_library(${arg_LIBRARY} SHARED)
    set_up_library(${arg_LIBRARY} ${arg_DEPENDS})
  endif()
  target_sources(${arg_LIBRARY} PRIVATE ${sources})
  if(EXISTS ${directory}/include)
    target_include_directories(${arg_LIBRARY} PUBLIC $<BUILD_INTERFACE:${directory}/include>)
    install(DIRECTORY ${directory}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  endif()
endfunction()

# add_subdirectory_if_present(<folder> [<folder in the build tree>])
function(add_subdirectory_if_present folder)
  if(EXISTS ${PROJECT_SOURCE_DIR}/${folder}/CMakeLists.txt)
    add_subdirectory(${folder} ${ARGN})
  endif()
endfunction()

# add_programs(<libraries>...)
# Makes each source of the current folder a program of its own in bin/, named after it. Programs whose libraries don't
# exist are left out.
function(add_programs)
  foreach(library IN LISTS ARGN)
    if(NOT TARGET ${library})
      return()
    endif()
  endforeach()
  file(GLOB sources CONFIGURE_DEPENDS *.cpp)
  foreach(source IN LISTS sources)
    cmake_path(GET source STEM name)
    add_executable(${name} ${source})
    target_link_libraries(${name} PRIVATE project_flags ${ARGN})
  endforeach()
endfunction()
