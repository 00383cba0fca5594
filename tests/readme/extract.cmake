# Writes the first C++ block of README to PROGRAM, and the first text block after it to OUTPUT.
file(READ ${README} text)

# take_block(LANGUAGE FILE) writes the first block of a language in `text` to FILE, and drops all up
# to the block's end from `text`.
macro(take_block language file)
    string(FIND "${text}" "\n```${language}\n" begin)
    if(begin EQUAL -1)
        message(FATAL_ERROR "no ${language} block in ${README}")
    endif()
    string(LENGTH "\n```${language}\n" opening)
    math(EXPR begin "${begin} + ${opening}")
    string(SUBSTRING "${text}" ${begin} -1 text)
    string(FIND "${text}" "```\n" end)
    string(SUBSTRING "${text}" 0 ${end} block)
    string(SUBSTRING "${text}" ${end} -1 text)
    file(WRITE ${file} "${block}")
endmacro()

take_block(cpp ${PROGRAM})
take_block(text ${OUTPUT})
