# A copy of PLUGIN in FOLDER for each name that the program NAMES prints, and no others.

execute_process(COMMAND ${NAMES} OUTPUT_VARIABLE names COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" names "${names}")
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
foreach(name IN LISTS names)
    configure_file(${PLUGIN} ${FOLDER}/${name}.so COPYONLY)
endforeach()
