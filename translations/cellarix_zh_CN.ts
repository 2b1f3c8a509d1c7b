<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>Main</name>
    <message>
        <source>Cellarix</source>
        <translation>Cellarix</translation>
    </message>
    <message>
        <source>Cellarix is a tool for running/packing Windows applications. It supports running Windows applications directly and packing Windows applications into deb format.</source>
        <translation>Cellarix 是一款运行和打包 Windows 应用的工具，既可以直接运行 Windows 应用，也可以将 Windows 应用打包为 deb 安装包。</translation>
    </message>
    <message>
        <source>Windows Software launcher via lumora-wine</source>
        <translation>基于 lumora-wine 的 Windows 软件启动器</translation>
    </message>
    <message>
        <source>url of exe files to open</source>
        <translation>要打开的 exe 文件的地址</translation>
    </message>
    <message>
        <source>Open url with bottles configure dialog for debugging</source>
        <translation>在容器配置窗口中打开，以便调试</translation>
    </message>
    <message>
        <source>Fix program by installing components</source>
        <translation>通过安装组件修复程序</translation>
    </message>
    <message>
        <source>Open file with specified bottles and extension</source>
        <translation>使用指定的容器和扩展名打开文件</translation>
    </message>
    <message>
        <source>Update the base envrionment for all apps</source>
        <translation>更新所有应用的基础环境</translation>
    </message>
    <message>
        <source>Run as DBus service without UI</source>
        <translation>作为 DBus 服务运行，不显示界面</translation>
    </message>
    <message>
        <source>Service Agreement</source>
        <translation>服务协议</translation>
    </message>
</context>
<context>
    <name>CellarixApplication</name>
    <message>
        <source>%1 is running.</source>
        <translation>“%1”正在运行。</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>Welcome to use Cellarix</source>
        <translation>欢迎使用 Cellarix</translation>
    </message>
    <message>
        <source>I have fully read and agree to the %1</source>
        <translation>我已完整阅读并同意%1</translation>
    </message>
    <message>
        <source>Service Agreement</source>
        <translation>《服务协议》</translation>
    </message>
    <message>
        <source>Disagree</source>
        <translation>不同意</translation>
    </message>
    <message>
        <source>Agree</source>
        <translation>同意</translation>
    </message>
    <message>
        <source>Cellarix has upgrade</source>
        <translation>Cellarix 已升级</translation>
    </message>
    <message>
        <source>Are you want to quit current running version?</source>
        <translation>是否退出当前正在运行的版本？</translation>
    </message>
    <message>
        <source>Cellarix is initializing envrionment</source>
        <translation>Cellarix 正在初始化环境</translation>
    </message>
    <message>
        <source>It will take a few minutes, please wait patiently.</source>
        <translation>这需要几分钟，请耐心等待。</translation>
    </message>
</context>
<context>
    <name>CommandLineHandler</name>
    <message>
        <source>Cellarix has upgrade</source>
        <translation>Cellarix 已升级</translation>
    </message>
    <message>
        <source>Are you want to quit current running version?</source>
        <translation>是否退出当前正在运行的版本？</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>Cellarix is initializing envrionment</source>
        <translation>Cellarix 正在初始化环境</translation>
    </message>
    <message>
        <source>It will take a few minutes, please wait patiently.</source>
        <translation>这需要几分钟，请耐心等待。</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
</context>
<context>
    <name>CellarixService</name>
    <message>
        <source>A window session is currently in progress; unable to open a new session window. Please close the current session and try again!</source>
        <translation>当前已有窗口会话正在进行，无法打开新的会话窗口。请关闭当前会话后重试！</translation>
    </message>
</context>
<context>
    <name>TitleBarMenu</name>
    <message>
        <source>Feedback</source>
        <translation>反馈</translation>
    </message>
    <message>
        <source>Forums</source>
        <translation>论坛</translation>
    </message>
</context>
</TS>
