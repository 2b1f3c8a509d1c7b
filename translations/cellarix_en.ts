<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name>AddingTexts</name>
    <message>
        <source>添加应用</source>
        <translation>Add Program</translation>
    </message>
    <message>
        <source>运行</source>
        <translation>Run</translation>
    </message>
    <message>
        <source>本地文件</source>
        <translation>Local File</translation>
    </message>
    <message>
        <source>支持本地exe应用(exe、msi、yml)格式</source>
        <translation>Programs and installers (.exe, .msi) and manifests (.yml)</translation>
    </message>
    <message>
        <source>添加本地文件</source>
        <translation>Choose File…</translation>
    </message>
    <message>
        <source>安装程序、应用程序打包脚本(*.exe *.msi *.yml)</source>
        <translation>Installers, programs, manifests (*.exe *.msi *.yml)</translation>
    </message>
    <message>
        <source>在线文件</source>
        <translation>Online File</translation>
    </message>
    <message>
        <source>请输入在线文件下载地址</source>
        <translation>Enter the address of the file</translation>
    </message>
    <message>
        <source>绿色文件</source>
        <translation>Portable Program</translation>
    </message>
    <message>
        <source>请上传解压后的绿色软件</source>
        <translation>The folder of an unpacked portable program</translation>
    </message>
    <message>
        <source>添加本地目录</source>
        <translation>Choose Folder…</translation>
    </message>
    <message>
        <source>拖拽文件至此或</source>
        <translation>Drop it here, or</translation>
    </message>
    <message>
        <source>文件校验中，请稍等...</source>
        <translation>Checking the file, please wait...</translation>
    </message>
    <message>
        <source>该文件为有效文件</source>
        <translation>The file is valid</translation>
    </message>
    <message>
        <source>该文件解析错误，请重新选择</source>
        <translation>The file cannot be used, please choose another one</translation>
    </message>
</context>
</TS>
