# Runs in CPack, when the components lie in their folders. Takes out of the programs what they do not need to run.
file(GLOB programs "${CPACK_TEMPORARY_DIRECTORY}/*/usr/bin/*")
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note ${programs} COMMAND_ERROR_IS_FATAL ANY)
