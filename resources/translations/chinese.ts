<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- The Chinese texts that differ from the sources; the build takes all others from there. -->
<TS version="2.1" language="zh_CN" sourcelanguage="zh_CN">
<context>
    <name>UpgradeAppWindow</name>
    <message>
        <source>save file</source>
        <translation>保存文件</translation>
    </message>
</context>
</TS>
