# Writes the manual PAGE of a PROGRAM, which is what its --help says. The first line of the help says
# what the program is; lines that are not indented are headings.

cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND "${PROGRAM}" --help OUTPUT_VARIABLE help COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${PROGRAM}" --version OUTPUT_VARIABLE version COMMAND_ERROR_IS_FATAL ANY)
cmake_path(GET PROGRAM FILENAME name)
string(STRIP "${version}" version)
string(TOUPPER "${name}" title)

# As troff prints it and does not obey it.
string(REPLACE "\\" "\\e" help "${help}")
string(REPLACE "-" "\\-" help "${help}")
string(REGEX REPLACE "(^|\n)([.'])" "\\1\\\\&\\2" help "${help}")

string(FIND "${help}" "\n" end)
string(SUBSTRING "${help}" 0 ${end} summary)
string(SUBSTRING "${help}" ${end} -1 body)
string(REGEX REPLACE "[.] *$" "" summary "${summary}")
string(REGEX REPLACE "\n([^ \n][^\n]*):[ ]*\n" "\n.EE\n.SH \"\\1\"\n.EX\n" body "${body}")
string(REGEX REPLACE "\nUsage: ([^\n]*)\n" "\n.EE\n.SH SYNOPSIS\n.EX\n\\1\n" body "${body}")
string(REGEX REPLACE "\n+(\n[.])" "\\1" body "${body}")
string(REGEX REPLACE "^\n+[.]EE\n" "" body "${body}")
file(WRITE "${PAGE}" ".TH ${title} 1 \"\" \"${version}\"
.SH NAME
${name} \\- ${summary}
${body}.EE
")
