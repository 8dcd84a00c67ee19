# cmake -DLUPDATE=… -DSOURCE_DIR=… -DTS=file.ts -P UpdateTexts.cmake
#
# Brings a translation file up to the texts in the sources, whose language is Chinese. Without lupdate's guesses, which
# are right sometimes and have to be read each time.
execute_process(
    COMMAND ${LUPDATE} -silent -no-obsolete -locations none -source-language zh_CN -disable-heuristic sametext
            -disable-heuristic similartext -disable-heuristic number -I . app cloud content device demo update -ts ${TS}
    WORKING_DIRECTORY ${SOURCE_DIR}
    COMMAND_ERROR_IS_FATAL ANY)
