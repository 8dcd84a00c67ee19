# cmake -DTS=file.ts -P SourceTexts.cmake
#
# Makes every text of a translation file its own translation. Qt's texts are English in its sources, so this is the
# English file that a switch back from Chinese needs: without one, the Chinese texts installed before would stay.
file(READ ${TS} text)
string(REGEX REPLACE "<source>([^<]*)</source>([ \r\n]*(<comment>[^<]*</comment>[ \r\n]*)?)<translation>[^<]*</translation>"
    "<source>\\1</source>\\2<translation>\\1</translation>" text "${text}")
string(REGEX REPLACE "<source>([^<]*)</source>([ \r\n]*(<comment>[^<]*</comment>[ \r\n]*)?)<translation>[ \r\n]*<numerusform>[^<]*</numerusform>"
    "<source>\\1</source>\\2<translation><numerusform>\\1</numerusform>" text "${text}")
file(WRITE ${TS} "${text}")
