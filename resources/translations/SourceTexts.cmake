# cmake -DTS=file.ts -P SourceTexts.cmake
#
# Makes every text of a translation file its own translation: for the language that the sources are written in, whose
# file has to say every text again. Without it the texts of another language, installed before, would stay.
file(READ ${TS} text)
set(source "<source>([^<]*)</source>([ \r\n]*(<comment>[^<]*</comment>[ \r\n]*)?)")
set(attribute "( type=\"unfinished\")?")
string(REGEX REPLACE "${source}<translation${attribute}>[^<]*</translation>"
    "<source>\\1</source>\\2<translation>\\1</translation>" text "${text}")
string(REGEX REPLACE "${source}<translation${attribute}>[ \r\n]*<numerusform>[^<]*</numerusform>"
    "<source>\\1</source>\\2<translation><numerusform>\\1</numerusform>" text "${text}")
file(WRITE ${TS} "${text}")
