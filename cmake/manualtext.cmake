# cmake -D MANDOC=... -D PAGE=tarvolin.8 -D OUTPUT=manualtext.cpp -P manualtext.cmake: the manual page as a string of
# the program.
execute_process(COMMAND ${MANDOC} -T ascii -O width=76 ${PAGE} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
# Bold and underlined characters come as a character, a backspace and the character.
string(ASCII 8 backspace)
string(REGEX REPLACE ".${backspace}" "" text "${text}")
file(CONFIGURE OUTPUT ${OUTPUT} CONTENT [[
extern const char* const manualText;
const char* const manualText = R"manual(@text@)manual";
]] @ONLY)
