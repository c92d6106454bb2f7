# Installs the build into a folder of its own, then configures, builds and runs a project that uses the installation.

set(work ${BUILD_DIR}/install-test)
file(REMOVE_RECURSE ${work})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${work}/prefix
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR}/consumer -B ${work}/build -G Ninja
                        -D CMAKE_PREFIX_PATH=${work}/prefix -D CMAKE_CXX_COMPILER=${CXX}
                        -D CMAKE_BUILD_TYPE=${BUILD_TYPE}
                COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${work}/build COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${work}/build/consumer COMMAND_ERROR_IS_FATAL ANY)
