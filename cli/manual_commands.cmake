# Writes the help2man include file that adds each command's own --help to quorrin-cli's manual
# page, as a section "COMMANDS" with one subsection per command, shown as printed.
# Run as: cmake -DPROGRAM=<quorrin-cli> -DOUTPUT=<file> -P manual_commands.cmake
set(commands folders scan start undo keep unkeep clear older review list)
set(text "[COMMANDS]\n")
foreach(command IN LISTS commands)
    execute_process(COMMAND ${PROGRAM} ${command} --help
        OUTPUT_VARIABLE help RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${PROGRAM} ${command} --help failed: ${status}")
    endif()
    # roff: backslashes and dashes literally, and no line read as a request.
    string(REPLACE "\\" "\\e" help "${help}")
    string(REPLACE "-" "\\-" help "${help}")
    string(REGEX REPLACE "(^|\n)([.'])" "\\1\\\\&\\2" help "${help}")
    string(APPEND text ".SS ${command}\n.nf\n${help}.fi\n")
endforeach()
file(WRITE ${OUTPUT} "${text}")
