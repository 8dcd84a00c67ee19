<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- The Chinese texts that differ from the sources; the build takes all others from there. -->
<TS version="2.1" language="zh_CN" sourcelanguage="zh_CN">
<context>
    <name>CaptureScreen</name>
    <message>
        <source>save image</source>
        <translation>保存图片</translation>
    </message>
    <message>
        <source>Images (*.png *.xpm *.jpg)</source>
        <translation>图片 (*.png *.xpm *.jpg)</translation>
    </message>
</context>
<context>
    <name>LanguageWindow</name>
    <message>
        <source>Form</source>
        <translation>语言</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Images (*.png *.bmp *.jpg *.tif *.GIF *.jpeg)</source>
        <translation>图片 (*.png *.bmp *.jpg *.tif *.GIF *.jpeg)</translation>
    </message>
</context>
<context>
    <name>UpgradeAppWindow</name>
    <message>
        <source>save file</source>
        <translation>保存文件</translation>
    </message>
</context>
</TS>
