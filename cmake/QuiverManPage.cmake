# Makes a manual page of what a program says about itself:
# cmake -DPROGRAM=path -DNAME=name -DSUMMARY=text -DVERSION=version -DOUTPUT=file -P QuiverManPage.cmake

execute_process(COMMAND "${PROGRAM}" --help OUTPUT_VARIABLE help COMMAND_ERROR_IS_FATAL ANY)
# What the formatter would take for its own: backslashes, hyphens, and dots and apostrophes that begin a line.
string(REPLACE "\\" "\\e" help "${help}")
string(REPLACE "-" "\\-" help "${help}")
string(REGEX REPLACE "\n([.'])" "\n\\\\&\\1" help "${help}")
file(WRITE "${OUTPUT}" ".TH ${NAME} 1 \"\" \"Quiver ${VERSION}\" \"User Commands\"
.SH NAME
${NAME} \\- ${SUMMARY}
.SH DESCRIPTION
.nf
${help}.fi
.SH SEE ALSO
The pages quiver_gen.md and fast_infoset.md of Quiver's documentation.
")
