<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>AddAppsWidget</name>
    <message>
        <source>Back to the library</source>
        <translation>返回应用列表</translation>
    </message>
    <message>
        <source>The installation that you began before has not ended yet.</source>
        <translation>先前开始的安装尚未结束。</translation>
    </message>
</context>
<context>
    <name>AddDispatcher</name>
    <message>
        <source>Waiting for the disk or the server that has the file</source>
        <translation>正在等待文件所在的磁盘或服务器响应</translation>
    </message>
    <message>
        <source>Run Several Programs</source>
        <translation>运行多个程序</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Run All</source>
        <translation>全部运行</translation>
    </message>
    <message>
        <source>This cannot be added</source>
        <translation>无法添加</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Looking at the Files</source>
        <translation>正在查看文件</translation>
    </message>
    <message>
        <source>%1 cannot be started</source>
        <translation>无法启动 %1</translation>
    </message>
    <message>
        <source>Its container %1 could not be read: %2</source>
        <translation>无法读取它所在的容器 %1：%2</translation>
    </message>
    <message>
        <source>It could not be added to its container %1: %2</source>
        <translation>无法将它添加到所在的容器 %1：%2</translation>
    </message>
    <message>
        <source>These are started one after the other:
%1</source>
        <translation>将依次启动以下程序：
%1</translation>
    </message>
    <message>
        <source>Its container %1 is not known any more.</source>
        <translation>它所在的容器 %1 已不存在。</translation>
    </message>
</context>
<context>
    <name>AddItem</name>
    <message>
        <source>Its content is not what its name says.</source>
        <translation>文件内容与文件名不符。</translation>
    </message>
    <message>
        <source>It is no manifest of an application: it needs at least a Name and a DebInfo.</source>
        <translation>这不是应用的清单文件：清单至少要有 Name 和 DebInfo。</translation>
    </message>
    <message>
        <source>Only files of this computer and addresses that begin with http:// or https:// can be added.</source>
        <translation>只能添加本机上的文件，或以 http:// 或 https:// 开头的地址。</translation>
    </message>
    <message>
        <source>It is a shortcut to %1, which is not on this computer.</source>
        <translation>它是指向 %1 的快捷方式，而该文件不在本机上。</translation>
    </message>
    <message>
        <source>It is a shortcut, but it does not lead to a program.</source>
        <translation>它是快捷方式，但没有指向程序。</translation>
    </message>
</context>
<context>
    <name>AddOnlineFileWidget</name>
    <message>
        <source>Only addresses that begin with http:// or https:// can be downloaded.</source>
        <translation>只能下载以 http:// 或 https:// 开头的地址。</translation>
    </message>
    <message>
        <source>The file is saved in %1 and checked before it can be run.</source>
        <translation>文件将保存到 %1，校验通过后才能运行。</translation>
    </message>
    <message>
        <source>A download is running. Add the other address when it has ended, or cancel it.</source>
        <translation>正在下载。请等下载结束或取消后再添加另一个地址。</translation>
    </message>
    <message>
        <source>The address is too long.</source>
        <translation>地址过长。</translation>
    </message>
    <message>
        <source>%1 is downloaded. Go on with it in &quot;Add Program&quot;.</source>
        <translation>%1 已下载完毕，请在“添加应用”中继续。</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>下载</translation>
    </message>
    <message>
        <source>%1 is downloaded. Drop it on the window of Cellarix to go on.</source>
        <translation>%1 已下载。将它拖到 Cellarix 窗口即可继续。</translation>
    </message>
</context>
<context>
    <name>AddRequest</name>
    <message>
        <source>Add one at a time, or only programs: %1</source>
        <translation>请一次添加一项，或只添加程序：%1</translation>
    </message>
    <message>
        <source>These are too many programs at once; %1 is the most: %2</source>
        <translation>一次添加的程序过多，最多 %1 个：%2</translation>
    </message>
</context>
<context>
    <name>AddingTexts</name>
    <message>
        <source>添加应用</source>
        <translation>添加应用</translation>
    </message>
    <message>
        <source>运行</source>
        <translation>运行</translation>
    </message>
    <message>
        <source>本地文件</source>
        <translation>本地文件</translation>
    </message>
    <message>
        <source>支持本地exe应用(exe、msi、yml)格式</source>
        <translation>支持本地exe应用(exe、msi、yml)格式</translation>
    </message>
    <message>
        <source>添加本地文件</source>
        <translation>添加本地文件</translation>
    </message>
    <message>
        <source>安装程序、应用程序打包脚本(*.exe *.msi *.yml)</source>
        <translation>安装程序、应用程序打包脚本(*.exe *.msi *.yml)</translation>
    </message>
    <message>
        <source>在线文件</source>
        <translation>在线文件</translation>
    </message>
    <message>
        <source>请输入在线文件下载地址</source>
        <translation>请输入在线文件下载地址</translation>
    </message>
    <message>
        <source>绿色文件</source>
        <translation>绿色文件</translation>
    </message>
    <message>
        <source>请上传解压后的绿色软件</source>
        <translation>请上传解压后的绿色软件</translation>
    </message>
    <message>
        <source>添加本地目录</source>
        <translation>添加本地目录</translation>
    </message>
    <message>
        <source>拖拽文件至此或</source>
        <translation>拖拽文件至此或</translation>
    </message>
    <message>
        <source>文件校验中，请稍等...</source>
        <translation>文件校验中，请稍等...</translation>
    </message>
    <message>
        <source>该文件为有效文件</source>
        <translation>该文件为有效文件</translation>
    </message>
    <message>
        <source>该文件解析错误，请重新选择</source>
        <translation>该文件解析错误，请重新选择</translation>
    </message>
</context>
<context>
    <name>AppConfigDialog</name>
    <message>
        <source>WeChat is a chat tool</source>
        <translation>微信是一款聊天工具</translation>
    </message>
    <message>
        <source>x86</source>
        <translation>x86</translation>
    </message>
    <message>
        <source>arm</source>
        <translation>arm</translation>
    </message>
    <message>
        <source>Application Deb Package Information</source>
        <translation>应用 Deb 包信息</translation>
    </message>
    <message>
        <source>App Name:</source>
        <translation>应用名称：</translation>
    </message>
    <message>
        <source>Shortcuts:</source>
        <translation>快捷方式：</translation>
    </message>
    <message>
        <source>Lists the shortcuts contained in the current container and generates shortcuts on the desktop after installation.</source>
        <translation>列出当前容器中包含的快捷方式，安装后会在桌面生成快捷方式。</translation>
    </message>
    <message>
        <source>App package name:</source>
        <translation>应用包名：</translation>
    </message>
    <message>
        <source>Package name rule: official website domain name + author, e.g: com.qq.weixin.lumora</source>
        <translation>包名规则：官网域名+作者，例如：com.qq.weixin.lumora</translation>
    </message>
    <message>
        <source>Package version:</source>
        <translation>包版本号：</translation>
    </message>
    <message>
        <source>Version number rule: Application version number + author + number, e.g: 3.9.7lumora9</source>
        <translation>版本号规则：应用版本号+作者+序号，例如：3.9.7lumora9</translation>
    </message>
    <message>
        <source>App Type:</source>
        <translation>应用分类：</translation>
    </message>
    <message>
        <source>App Description:</source>
        <translation>应用描述：</translation>
    </message>
    <message>
        <source>Support Architecture:</source>
        <translation>支持架构：</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Internet</source>
        <translation>网络应用</translation>
    </message>
    <message>
        <source>Chat</source>
        <translation>社交沟通</translation>
    </message>
    <message>
        <source>Music</source>
        <translation>音乐欣赏</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>视频播放</translation>
    </message>
    <message>
        <source>Graphics</source>
        <translation>图形图像</translation>
    </message>
    <message>
        <source>Game</source>
        <translation>游戏娱乐</translation>
    </message>
    <message>
        <source>Office</source>
        <translation>办公学习</translation>
    </message>
    <message>
        <source>Reading</source>
        <translation>阅读翻译</translation>
    </message>
    <message>
        <source>Development</source>
        <translation>编程开发</translation>
    </message>
    <message>
        <source>System</source>
        <translation>系统管理</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>其他</translation>
    </message>
    <message>
        <source>At least 2 characters</source>
        <translation>至少 2 个字符</translation>
    </message>
    <message>
        <source>Your input is not a valid package name</source>
        <translation>您输入的包名不合法</translation>
    </message>
    <message>
        <source>Your input is not a valid package version</source>
        <translation>您输入的版本号不合法</translation>
    </message>
    <message>
        <source>Compression:</source>
        <translation>压缩方式：</translation>
    </message>
    <message>
        <source>Maintainer:</source>
        <translation>维护者：</translation>
    </message>
    <message>
        <source>Another program&apos;s package has this name</source>
        <translation>已有其他程序的软件包使用此名称</translation>
    </message>
    <message>
        <source>The package settings cannot be saved in %1. Nothing was packed.</source>
        <translation>无法在 %1 中保存打包设置，未进行打包。</translation>
    </message>
    <message>
        <source>Debian 11 and older systems cannot install a package that is compressed with zstd.</source>
        <translation>Debian 11 及更早的系统无法安装使用 zstd 压缩的软件包。</translation>
    </message>
    <message>
        <source>Everybody who has the package can read them. Without both, the package names Cellarix.</source>
        <translation>获得该软件包的人都能看到。未同时填写两项时，软件包会注明 Cellarix。</translation>
    </message>
    <message>
        <source>A name without a dot may be that of a package of the system, which would be replaced. A name such as com.example.program is safe.</source>
        <translation>不含点的名称可能与系统中的某个软件包重名，并导致该软件包被替换。建议使用 com.example.program 这样的名称。</translation>
    </message>
    <message>
        <source>Package name and version are too long together</source>
        <translation>包名和版本号合起来过长</translation>
    </message>
</context>
<context>
    <name>AppEntryButton</name>
    <message>
        <source>is running</source>
        <translation>正在运行</translation>
    </message>
</context>
<context>
    <name>AppEntryIconEditor</name>
    <message>
        <source>Change the icon</source>
        <translation>更换图标</translation>
    </message>
</context>
<context>
    <name>AppItemWidget</name>
    <message>
        <source>Run %1</source>
        <translation>运行“%1”</translation>
    </message>
    <message>
        <source>Quit %1</source>
        <translation>退出“%1”</translation>
    </message>
    <message>
        <source>Repair %1</source>
        <translation>修复“%1”</translation>
    </message>
    <message>
        <source>%1 is running, and has no window yet.</source>
        <translation>“%1”正在运行，尚未显示窗口。</translation>
    </message>
</context>
<context>
    <name>AppItemWidgetStateManager</name>
    <message>
        <source>The rating of %1 could not be kept.</source>
        <translation>未能保存对“%1”的评分。</translation>
    </message>
</context>
<context>
    <name>AppListEmptyTipsWidget</name>
    <message>
        <source>Run a Windows program</source>
        <translation>运行 Windows 应用</translation>
    </message>
    <message>
        <source>Choose a program file or drop it here. Cellarix makes a place for it, starts it and remembers it.</source>
        <translation>选择应用文件，或将其拖放到此处。
Cellarix 会为它准备环境并启动，以后可随时在这里打开。</translation>
    </message>
    <message>
        <source>Add Program…</source>
        <translation>添加应用…</translation>
    </message>
    <message>
        <source>Restore Backup…</source>
        <translation>恢复备份…</translation>
    </message>
</context>
<context>
    <name>AppLocalView</name>
    <message>
        <source>Installed 0 apps, including unsuccessful apps</source>
        <translation>已安装 0 个应用（含未成功安装的应用）</translation>
    </message>
    <message>
        <source>Installed apps %1,including unsuccessful apps</source>
        <translation>已安装 %1 个应用（含未成功安装的应用）</translation>
    </message>
    <message>
        <source>Add Program…</source>
        <translation>添加应用…</translation>
    </message>
    <message>
        <source>Add Program</source>
        <translation>添加应用</translation>
    </message>
    <message>
        <source>Programs</source>
        <translation>应用</translation>
    </message>
    <message>
        <source>Nothing was searched</source>
        <translation>没有找到匹配的应用</translation>
    </message>
    <message>
        <source>faile to fetch application list, try again later...</source>
        <translation>无法获取应用列表，请稍后重试</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>重试</translation>
    </message>
    <message>
        <source>Windows Application Programs (*.exe *.msi *.bat)</source>
        <translation>Windows 应用程序 (*.exe *.msi *.bat)</translation>
    </message>
    <message>
        <source>Restore Backup…</source>
        <translation>恢复备份…</translation>
    </message>
</context>
<context>
    <name>AppPkgInfoWidget</name>
    <message>
        <source>Saved path: </source>
        <translation>保存路径：</translation>
    </message>
</context>
<context>
    <name>AppPropertyDlg</name>
    <message>
        <source>Edit Details</source>
        <translation>编辑详情</translation>
    </message>
    <message>
        <source>App Name</source>
        <translation>应用名称</translation>
    </message>
    <message>
        <source>File sizes</source>
        <translation>文件大小</translation>
    </message>
    <message>
        <source>install time</source>
        <translation>安装时间</translation>
    </message>
    <message>
        <source>File Paths</source>
        <translation>文件路径</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>未知</translation>
    </message>
    <message>
        <source>Open Application Icon</source>
        <translation>选择应用图标</translation>
    </message>
    <message>
        <source>Icons Files</source>
        <translation>图标文件</translation>
    </message>
</context>
<context>
    <name>AppStoreCatelogWidget</name>
    <message>
        <source>There are no applications here yet</source>
        <translation>这里还没有应用</translation>
    </message>
    <message>
        <source>All Apps</source>
        <translation>全部应用</translation>
    </message>
    <message>
        <source>Sort by</source>
        <translation>排序方式</translation>
    </message>
    <message>
        <source>No more data to fetch</source>
        <translation>没有更多数据了</translation>
    </message>
    <message>
        <source>Updated time</source>
        <translation>更新时间</translation>
    </message>
    <message>
        <source>App Installations</source>
        <translation>安装次数</translation>
    </message>
    <message>
        <source>App Ratings</source>
        <translation>应用评分</translation>
    </message>
    <message>
        <source>Show the applications of every category</source>
        <translation>显示所有类别的应用</translation>
    </message>
</context>
<context>
    <name>AppStoreItemListView</name>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>AppStoreSearchWidget</name>
    <message>
        <source>The store has no such application</source>
        <translation>商店中没有这样的应用</translation>
    </message>
    <message>
        <source>No more data to fetch</source>
        <translation>没有更多数据了</translation>
    </message>
</context>
<context>
    <name>AppStoreViewUtils</name>
    <message>
        <source>No Ratings</source>
        <translation>暂无评分</translation>
    </message>
    <message>
        <source>Cannot start after installation</source>
        <translation>安装后无法启动</translation>
    </message>
    <message>
        <source>Only startup after installation</source>
        <translation>安装后仅能启动</translation>
    </message>
    <message>
        <source>Some functions are available</source>
        <translation>部分功能可用</translation>
    </message>
    <message>
        <source>Working well</source>
        <translation>运行良好</translation>
    </message>
    <message>
        <source>Nearly perfect operation</source>
        <translation>运行近乎完美</translation>
    </message>
</context>
<context>
    <name>ApplyScoreDialog</name>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Submit</source>
        <translation>提交</translation>
    </message>
    <message>
        <source>Awful performance in Stability and smoothness, almost impossible to use, badl user experience.</source>
        <translation>稳定性和流畅度极差，几乎无法使用，用户体验很差。</translation>
    </message>
    <message>
        <source>Occasional flashing and lagging, obvious obstacles to use, poor user experience.</source>
        <translation>偶有闪烁和卡顿，使用中有明显障碍，用户体验较差。</translation>
    </message>
    <message>
        <source>Occasional flashing and lagging, occasional problems, but generally usable, average user experience.</source>
        <translation>偶有闪烁和卡顿，偶尔出现问题，但基本可用，用户体验一般。</translation>
    </message>
    <message>
        <source>Occasional flashing, most functions perform well, occasional glitches, but overall stable and reliable, good user experience.</source>
        <translation>偶有闪烁，大部分功能表现良好，偶有小故障，但整体稳定可靠，用户体验良好。</translation>
    </message>
    <message>
        <source>App runs with excellent performance, stable and reliable, no obstacles to use, excellent user experience.</source>
        <translation>应用运行表现出色，稳定可靠，使用没有任何障碍，用户体验极佳。</translation>
    </message>
    <message>
        <source>Icon of %1</source>
        <translation>%1 的图标</translation>
    </message>
    <message>
        <source>We invite you to rate the current operation state:</source>
        <translation>邀请您为当前的运行状态评分：</translation>
    </message>
    <message>
        <source>You may leave your valuable suggestions:</source>
        <translation>您可以留下宝贵的建议：</translation>
    </message>
    <message>
        <source>(0/500)</source>
        <translation>(0/500)</translation>
    </message>
    <message>
        <source>I agree to upload of application configuration is only used to
improve the success rate of the application.</source>
        <translation>我同意上传应用配置，仅用于
提高应用的运行成功率。</translation>
    </message>
    <message>
        <source>(%1/500)</source>
        <translation>(%1/500)</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>返回</translation>
    </message>
    <message>
        <source>What is sent</source>
        <translation>将发送的内容</translation>
    </message>
    <message>
        <source>Collecting what is sent…</source>
        <translation>正在收集要发送的内容…</translation>
    </message>
    <message>
        <source>Uploading the configuration…</source>
        <translation>正在上传配置…</translation>
    </message>
    <message>
        <source>Sending the rating…</source>
        <translation>正在发送评分…</translation>
    </message>
    <message>
        <source>Suggestions are sent with the configuration only</source>
        <translation>建议只随配置一起发送</translation>
    </message>
    <message>
        <source>Successfully</source>
        <translation>提交成功</translation>
    </message>
    <message>
        <source>The rating was sent, but the configuration and the suggestion could not be uploaded</source>
        <translation>评分已发送，但配置和建议未能上传</translation>
    </message>
    <message>
        <source>Failed to submit, please check your network</source>
        <translation>提交失败，请检查网络</translation>
    </message>
    <message>
        <source>Rating</source>
        <translation>评分</translation>
    </message>
    <message>
        <source>About this computer</source>
        <translation>关于此计算机</translation>
    </message>
    <message>
        <source>Suggestion</source>
        <translation>建议</translation>
    </message>
    <message>
        <source>Your rating is kept on this computer.</source>
        <translation>您的评分只保存在本机。</translation>
    </message>
    <message>
        <source>The rating was sent, but the configuration could not be uploaded</source>
        <translation>评分已发送，但配置未能上传</translation>
    </message>
    <message>
        <source>The rating was sent, but the suggestion could not be uploaded</source>
        <translation>评分已发送，但建议未能上传</translation>
    </message>
    <message>
        <source>When you press “Submit”, this goes to %1, together with the time and a signature. Files go to the storage that this service names. Names of you and of your computer are taken out of the configuration.</source>
        <translation>按下“提交”后，以下内容会连同时间和签名发送到 %1。文件会上传到该服务指定的存储位置。配置中您和您计算机的名称已被去除。</translation>
    </message>
</context>
<context>
    <name>AssociationModel</name>
    <message>
        <source>Export %1</source>
        <translation>关联“%1”</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>Icon</source>
        <translation>图标</translation>
    </message>
    <message>
        <source>Extension</source>
        <translation>扩展名</translation>
    </message>
    <message>
        <source>Application</source>
        <translation>应用</translation>
    </message>
</context>
<context>
    <name>BannerCloseConfirmDialog</name>
    <message>
        <source>Close Running</source>
        <translation>停止启动？</translation>
    </message>
    <message>
        <source>The application is starting up, this process will continue for a short while,
are you sure you want to close it now?</source>
        <translation>应用正在启动，可能还需要一点时间，
确定要停止吗？</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Keep waiting</source>
        <translation>继续等待</translation>
    </message>
    <message>
        <source>To ensure that the application runs properly,
please wait for the component download to complete!</source>
        <translation>为确保应用正常运行，
请等待组件下载完成。</translation>
    </message>
    <message>
        <source>Cancel Installation</source>
        <translation>取消安装</translation>
    </message>
    <message>
        <source>Continue Installation</source>
        <translation>继续安装</translation>
    </message>
</context>
<context>
    <name>BannerFailedPart</name>
    <message>
        <source>Debug</source>
        <translation>调试</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>修复</translation>
    </message>
    <message>
        <source>Feedback</source>
        <translation>反馈</translation>
    </message>
    <message>
        <source>View Logs</source>
        <translation>查看日志</translation>
    </message>
    <message>
        <source>You can try to repair, or use advanced debugging tools to improve the run success rate</source>
        <translation>可以尝试修复，或使用高级调试工具提高运行成功率</translation>
    </message>
    <message>
        <source>You can try to use advanced debugging tools to improve the run success rate</source>
        <translation>可以使用高级调试工具提高运行成功率</translation>
    </message>
    <message>
        <source>You can try to repair it</source>
        <translation>可以尝试修复</translation>
    </message>
    <message>
        <source>Choose File...</source>
        <translation>选择文件…</translation>
    </message>
    <message>
        <source>Take an installer that you have got in another way</source>
        <translation>使用您自行获取的安装文件</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>重试</translation>
    </message>
    <message>
        <source>You can try again, or choose the file yourself</source>
        <translation>可以重试，或自行选择安装文件</translation>
    </message>
    <message>
        <source>You can try again</source>
        <translation>可以重试</translation>
    </message>
</context>
<context>
    <name>BasicPage</name>
    <message>
        <source>Graphics</source>
        <translation>图形</translation>
    </message>
    <message>
        <source>Windows and Wine</source>
        <translation>Windows 与 Wine</translation>
    </message>
    <message>
        <source>WineD3D Rendering Method</source>
        <translation>WineD3D 渲染方式</translation>
    </message>
    <message>
        <source>If there is a black screen, you can set wineD3D rendering mode to gdi.</source>
        <translation>如果出现黑屏，可以将 wineD3D 渲染方式设为 gdi。</translation>
    </message>
    <message>
        <source>How Wine draws Direct3D: opengl suits most programs, vulkan is for dxvk and vkd3d, gdi draws without the graphics card.</source>
        <translation>Wine 绘制 Direct3D 的方式：opengl 适合大多数程序，vulkan 用于 dxvk 和 vkd3d，gdi 不使用显卡。</translation>
    </message>
    <message>
        <source>Use discrete GPU</source>
        <translation>使用独立显卡</translation>
    </message>
    <message>
        <source>CPU rendering</source>
        <translation>CPU 渲染</translation>
    </message>
    <message>
        <source>Display DPI</source>
        <translation>显示 DPI</translation>
    </message>
    <message>
        <source>Range 96-480</source>
        <translation>范围 96-480</translation>
    </message>
    <message>
        <source>How large programs draw text and windows; 96 is 100 %, 192 is 200 %.</source>
        <translation>程序绘制文字和窗口的大小：96 为 100%，192 为 200%。</translation>
    </message>
    <message>
        <source>dxvk</source>
        <translation>dxvk</translation>
    </message>
    <message>
        <source>vkd3d</source>
        <translation>vkd3d</translation>
    </message>
    <message>
        <source>Windows version</source>
        <translation>Windows 版本</translation>
    </message>
    <message>
        <source>The version of Windows that programs believe they run on.</source>
        <translation>程序所识别到的 Windows 版本。</translation>
    </message>
    <message>
        <source>Wine version</source>
        <translation>Wine 版本</translation>
    </message>
    <message>
        <source>Memory optimization</source>
        <translation>内存优化</translation>
    </message>
    <message>
        <source>Programs take less memory.</source>
        <translation>程序占用更少的内存。</translation>
    </message>
    <message>
        <source>NTSync</source>
        <translation>NTSync</translation>
    </message>
    <message>
        <source>Optimize the operational efficiency in high-concurrency scenarios such as gaming</source>
        <translation>优化游戏等高并发场景下的运行效率</translation>
    </message>
    <message>
        <source>The kernel itself does what programs wait for each other with.</source>
        <translation>由内核直接处理程序之间的等待与同步。</translation>
    </message>
    <message>
        <source>Install proton</source>
        <translation>安装 Proton</translation>
    </message>
    <message>
        <source>The kernel of this computer does not have the module ntsync</source>
        <translation>此电脑的内核没有 ntsync 模块</translation>
    </message>
    <message>
        <source>The tool modinfo, which knows the modules of the kernel, is missing</source>
        <translation>缺少工具 modinfo，无法得知内核有哪些模块</translation>
    </message>
    <message>
        <source>Looking for the module ntsync of the kernel</source>
        <translation>正在查找内核的 ntsync 模块</translation>
    </message>
    <message>
        <source>Only for the rendering method vulkan</source>
        <translation>仅用于渲染方式 vulkan</translation>
    </message>
    <message>
        <source>Only for the rendering method opengl</source>
        <translation>仅用于渲染方式 opengl</translation>
    </message>
    <message>
        <source>Always on with this Wine version</source>
        <translation>在此 Wine 版本下始终开启</translation>
    </message>
    <message>
        <source>Not for Proton</source>
        <translation>不适用于 Proton</translation>
    </message>
    <message>
        <source>Needs the Wine version lumora-ge-proton10</source>
        <translation>需要 Wine 版本 lumora-ge-proton10</translation>
    </message>
    <message>
        <source>On a computer with two graphics cards, programs run on the faster one, which takes more power.</source>
        <translation>在有两块显卡的电脑上，程序使用较快的那块运行，耗电更多。</translation>
    </message>
    <message>
        <source>Draws without the graphics card, which is slow, but right where a driver draws wrongly.</source>
        <translation>不使用显卡绘制，速度慢，但在驱动绘制有误时能正确显示。</translation>
    </message>
    <message>
        <source>Draws Direct3D 9 to 11 through a graphics driver with Vulkan, which makes games faster.</source>
        <translation>通过支持 Vulkan 的显卡驱动绘制 Direct3D 9 至 11，使游戏更快。</translation>
    </message>
    <message>
        <source>Draws Direct3D 12 through a graphics driver with Vulkan.</source>
        <translation>通过支持 Vulkan 的显卡驱动绘制 Direct3D 12。</translation>
    </message>
    <message>
        <source>The Wine that runs the programs of this container: one that fails with one version may run with another.</source>
        <translation>运行此容器中程序的 Wine：在一个版本下失败的程序，换一个版本可能就能运行。</translation>
    </message>
</context>
<context>
    <name>BottleBackupActions</name>
    <message>
        <source>Backups (*.%1)</source>
        <translation>备份文件 (*.%1)</translation>
    </message>
    <message>
        <source>This file cannot be restored.</source>
        <translation>无法恢复此文件。</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Restore Backup</source>
        <translation>恢复备份</translation>
    </message>
    <message>
        <source>Backed up on %1. It takes %2 on the disk.</source>
        <translation>备份于 %1，需占用 %2 磁盘空间。</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>恢复</translation>
    </message>
    <message>
        <source>Back Up</source>
        <translation>备份</translation>
    </message>
    <message>
        <source>Replace File</source>
        <translation>替换文件</translation>
    </message>
    <message>
        <source>%1 exists already. Replace it with the new backup?</source>
        <translation>%1 已存在。要用新的备份替换它吗？</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>替换</translation>
    </message>
    <message>
        <source>The programs come back in a container of their own. Nothing that is in the library is replaced. Restore only a file that you trust as you would trust an installer.</source>
        <translation>程序会恢复到单独的容器中，应用库中已有的内容不会被替换。请像对待安装程序一样，只恢复您信任的文件。</translation>
    </message>
    <message>
        <source>It takes %1 on the disk.</source>
        <translation>它将占用 %1 磁盘空间。</translation>
    </message>
</context>
<context>
    <name>BottleCommands</name>
    <message>
        <source>Wine Configuration</source>
        <translation>Wine 设置</translation>
    </message>
    <message>
        <source>Registry Editor</source>
        <translation>注册表编辑器</translation>
    </message>
    <message>
        <source>Add/Remove Programs</source>
        <translation>添加/删除程序</translation>
    </message>
    <message>
        <source>Internet Settings</source>
        <translation>Internet 设置</translation>
    </message>
    <message>
        <source>Open in terminal</source>
        <translation>在终端中打开</translation>
    </message>
    <message>
        <source>Task Manager</source>
        <translation>任务管理器</translation>
    </message>
    <message>
        <source>Open c-drive</source>
        <translation>打开 C 盘</translation>
    </message>
    <message>
        <source>Open folder of app</source>
        <translation>打开应用所在目录</translation>
    </message>
    <message>
        <source>Quit All Apps</source>
        <translation>退出所有应用</translation>
    </message>
    <message>
        <source>%1 could not be started: %2</source>
        <translation>无法启动 %1：%2</translation>
    </message>
    <message>
        <source>No terminal program is installed. Install xterm.</source>
        <translation>未安装终端程序，请安装 xterm。</translation>
    </message>
    <message>
        <source>The terminal could not be opened.</source>
        <translation>无法打开终端。</translation>
    </message>
</context>
<context>
    <name>BottleCopy</name>
    <message>
        <source>%1 cannot be backed up while programs run in its container.</source>
        <translation>%1 的容器中有程序正在运行，暂时无法备份。</translation>
    </message>
    <message>
        <source>Close them and try again: %1</source>
        <translation>请先关闭以下程序再重试：%1</translation>
    </message>
    <message>
        <source>%1 could not be backed up.</source>
        <translation>未能备份 %1。</translation>
    </message>
    <message>
        <source>The backup could not be restored.</source>
        <translation>未能恢复备份。</translation>
    </message>
    <message>
        <source>%1 is backed up (%2).</source>
        <translation>%1 已备份（%2）。</translation>
    </message>
    <message>
        <source>Links that lead out of the container are not in the file: %1</source>
        <translation>指向容器之外的链接未包含在备份文件中：%1</translation>
    </message>
    <message>
        <source>Back in the library: %1</source>
        <translation>已恢复到应用列表：%1</translation>
    </message>
    <message>
        <source>This machine has another Wine; the files of Windows were updated to it.</source>
        <translation>本机的 Wine 版本不同，已相应更新 Windows 文件。</translation>
    </message>
    <message>
        <source>The service stopped the work before its end.</source>
        <translation>服务在完成之前停止了这项工作。</translation>
    </message>
    <message>
        <source>%1 could not be added.</source>
        <translation>无法添加 %1。</translation>
    </message>
    <message>
        <source>%1 is copied.</source>
        <translation>%1 已复制。</translation>
    </message>
    <message>
        <source>Variables that could act on this machine were not taken over: %1</source>
        <translation>可能影响本机的变量未被采用：%1</translation>
    </message>
    <message>
        <source>Not copied, since they lead out of the folder or are no ordinary files: %1</source>
        <translation>以下内容指向文件夹之外或不是普通文件，未被复制：%1</translation>
    </message>
</context>
<context>
    <name>BottleCopyDialog</name>
    <message>
        <source>Preparing</source>
        <translation>正在准备</translation>
    </message>
    <message>
        <source>Backing Up %1</source>
        <translation>正在备份 %1</translation>
    </message>
    <message>
        <source>Restoring %1</source>
        <translation>正在恢复 %1</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Go On in Background</source>
        <translation>在后台继续</translation>
    </message>
    <message>
        <source>Finishing</source>
        <translation>正在完成</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 / %2</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>重试</translation>
    </message>
    <message>
        <source>Show File</source>
        <translation>显示文件</translation>
    </message>
    <message>
        <source>Cancelling</source>
        <translation>正在取消</translation>
    </message>
    <message>
        <source>Adding %1</source>
        <translation>正在添加 %1</translation>
    </message>
    <message>
        <source>Looking at the programs</source>
        <translation>正在查看程序</translation>
    </message>
</context>
<context>
    <name>BottlePrograms</name>
    <message>
        <source>%1 could not be added. Please try again later.</source>
        <translation>无法添加 %1，请稍后再试。</translation>
    </message>
    <message>
        <source>%1 could not be deleted: %2</source>
        <translation>无法删除 %1：%2</translation>
    </message>
    <message>
        <source>%1 could not be added: %2</source>
        <translation>无法添加 %1：%2</translation>
    </message>
</context>
<context>
    <name>BottleProgressDialog</name>
    <message>
        <source>The program is being set up for its first start.</source>
        <translation>正在为首次启动设置此程序。</translation>
    </message>
    <message>
        <source>The program is being updated. Your files and settings stay.</source>
        <translation>正在更新此程序。您的文件和设置会保留。</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>%1%</source>
        <translation>%1%</translation>
    </message>
</context>
<context>
    <name>BottleSettings</name>
    <message>
        <source>%1 could not be changed: %2</source>
        <translation>无法修改“%1”：%2</translation>
    </message>
    <message>
        <source>The bottle service has ended.</source>
        <translation>容器服务已退出。</translation>
    </message>
</context>
<context>
    <name>BottleTasks</name>
    <message>
        <source>Import registry files (*.reg)</source>
        <translation>注册表文件 (*.reg)</translation>
    </message>
</context>
<context>
    <name>BottlesConfigView</name>
    <message>
        <source>Container Configuration</source>
        <translation>容器配置</translation>
    </message>
    <message>
        <source>Basic Configuration</source>
        <translation>基本配置</translation>
    </message>
    <message>
        <source>Wine Parameter</source>
        <translation>Wine 参数</translation>
    </message>
    <message>
        <source>Debugging Tools</source>
        <translation>调试工具</translation>
    </message>
    <message>
        <source>Configuration of %1</source>
        <translation>%1 的配置</translation>
    </message>
    <message>
        <source>%1 can only be changed while nothing runs in the container. These programs have to be closed first: what has not been saved in them will be lost.</source>
        <translation>只有容器中没有程序运行时才能修改“%1”。必须先关闭以下程序，其中未保存的内容将会丢失。</translation>
    </message>
    <message>
        <source>Adding application shortcuts</source>
        <translation>添加应用快捷方式</translation>
    </message>
    <message>
        <source>Windows Application Programs (*.exe *.msi *.bat)</source>
        <translation>Windows 应用程序 (*.exe *.msi *.bat)</translation>
    </message>
    <message>
        <source>Only Windows programs (exe, msi, bat) can be added.</source>
        <translation>只能添加 Windows 程序（exe、msi、bat）。</translation>
    </message>
    <message>
        <source>DLL Override</source>
        <translation>DLL 覆盖</translation>
    </message>
    <message>
        <source>Font Replacement</source>
        <translation>字体替换</translation>
    </message>
    <message>
        <source>Component Installation</source>
        <translation>组件安装</translation>
    </message>
    <message>
        <source>The folder %1 cannot be created.</source>
        <translation>无法创建文件夹 %1。</translation>
    </message>
    <message>
        <source>The basic settings are those of a new container already.</source>
        <translation>基本设置已与新容器相同。</translation>
    </message>
    <message>
        <source>Reset to Defaults</source>
        <translation>恢复默认设置</translation>
    </message>
    <message>
        <source>These settings become those of a new container: %1. Programs and files stay as they are.</source>
        <translation>以下设置将恢复为新容器的设置：%1。程序和文件保持不变。</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>重置</translation>
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
        <source>Welcome to use Cellarix</source>
        <translation>欢迎使用 Cellarix</translation>
    </message>
    <message>
        <source>I have fully read and agree to the %1</source>
        <translation>我已阅读并同意%1</translation>
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
        <source>Cellarix is initializing envrionment</source>
        <translation>Cellarix 正在初始化环境</translation>
    </message>
    <message>
        <source>It will take a few minutes, please wait patiently.</source>
        <translation>需要几分钟时间，请耐心等待。</translation>
    </message>
</context>
<context>
    <name>CellarixService</name>
    <message>
        <source>A window session is currently in progress; unable to open a new session window. Please close the current session and try again!</source>
        <translation>已有窗口会话正在进行，无法打开新的会话窗口。请关闭当前会话后重试。</translation>
    </message>
</context>
<context>
    <name>ChooseExecutableDialog</name>
    <message>
        <source>Already in the list of applications</source>
        <translation>已在应用列表中</translation>
    </message>
    <message>
        <source>No other program has been found in this container.</source>
        <translation>在此容器中未找到其他程序。</translation>
    </message>
    <message>
        <source>The programs in this container cannot be read at the moment.</source>
        <translation>暂时无法读取此容器中的程序。</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>重试</translation>
    </message>
    <message>
        <source>Programs in this container</source>
        <translation>此容器中的程序</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Another file...</source>
        <translation>其他文件...</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>The likely one comes first. Those that you choose are added to the library.</source>
        <translation>最可能的程序排在最前面，所选程序将添加到应用库。</translation>
    </message>
    <message>
        <source>Programs that were found</source>
        <translation>找到的程序</translation>
    </message>
    <message>
        <source>Add and Run</source>
        <translation>添加并运行</translation>
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
        <translation>是否退出正在运行的旧版本？</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>退出</translation>
    </message>
</context>
<context>
    <name>ComponentDetails</name>
    <message>
        <source>Choose File</source>
        <translation>选择文件</translation>
    </message>
    <message>
        <source>Install from a file that you have downloaded yourself</source>
        <translation>使用自行下载的文件安装</translation>
    </message>
    <message>
        <source>Installed first: %1.</source>
        <translation>先安装：%1。</translation>
    </message>
    <message>
        <source>Of unknown origin: %1.</source>
        <translation>来源未知：%1。</translation>
    </message>
    <message>
        <source>From %1: %2.</source>
        <translation>来自 %1：%2。</translation>
    </message>
    <message>
        <source>Fetched already: %1.</source>
        <translation>已下载：%1。</translation>
    </message>
    <message>
        <source>The tool winetricks installs it (as &quot;%1&quot;).</source>
        <translation>由 winetricks 工具安装（名称为“%1”）。</translation>
    </message>
    <message>
        <source>Choose %1</source>
        <translation>选择 %1</translation>
    </message>
    <message>
        <source>Installers</source>
        <translation>安装文件</translation>
    </message>
    <message>
        <source>All files</source>
        <translation>所有文件</translation>
    </message>
    <message>
        <source>size unknown</source>
        <translation>大小未知</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
</context>
<context>
    <name>ComponentsItemDelegate</name>
    <message>
        <source>Install</source>
        <translation>安装</translation>
    </message>
    <message>
        <source>Reinstall</source>
        <translation>重新安装</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>ComponentsListView</name>
    <message>
        <source>Components</source>
        <translation>组件</translation>
    </message>
    <message>
        <source>Not available</source>
        <translation>不可用</translation>
    </message>
</context>
<context>
    <name>ComponentsPage</name>
    <message>
        <source>No component has been found</source>
        <translation>没有找到组件</translation>
    </message>
    <message>
        <source>The list of components is missing. Please install Cellarix again.</source>
        <translation>缺少组件列表。请重新安装 Cellarix。</translation>
    </message>
    <message>
        <source>Install the recommended system components to improve the success rate of the application.</source>
        <translation>安装推荐的系统组件，可提高应用运行的成功率。</translation>
    </message>
    <message>
        <source>Search by name, description or DLL</source>
        <translation>按名称、描述或 DLL 搜索</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>Import the components that app needed</source>
        <translation>导入应用所需的组件</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>导出</translation>
    </message>
    <message>
        <source>Export the components that installed</source>
        <translation>导出已安装的组件</translation>
    </message>
    <message>
        <source>Components can only be installed while nothing runs in the container. These programs have to be closed first: what has not been saved in them will be lost.</source>
        <translation>只有容器中没有程序运行时才能安装组件。需要先关闭以下程序，其中未保存的内容将会丢失。</translation>
    </message>
</context>
<context>
    <name>ComponentsSwitcherWidget</name>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>downloading...</source>
        <translation>正在下载...</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1%</translation>
    </message>
    <message>
        <source>Vulkan driver not installed</source>
        <translation>未安装 Vulkan 驱动</translation>
    </message>
    <message>
        <source>Your devices not support dxvk</source>
        <translation>您的设备不支持 dxvk</translation>
    </message>
    <message>
        <source>Your devices not support vkd3d</source>
        <translation>您的设备不支持 vkd3d</translation>
    </message>
    <message>
        <source>Disabled</source>
        <translation>已禁用</translation>
    </message>
    <message>
        <source>Preparing %1</source>
        <translation>正在准备 %1</translation>
    </message>
    <message>
        <source>Waiting for download %1</source>
        <translation>等待下载 %1</translation>
    </message>
    <message>
        <source>Setuping %1</source>
        <translation>正在设置 %1</translation>
    </message>
    <message>
        <source>Setup failed: %1</source>
        <translation>设置失败：%1</translation>
    </message>
</context>
<context>
    <name>CompressionChoice</name>
    <message>
        <source>Smaller file (xz)</source>
        <translation>文件更小（xz）</translation>
    </message>
    <message>
        <source>Much faster (zstd)</source>
        <translation>速度快得多（zstd）</translation>
    </message>
</context>
<context>
    <name>ConfigFoot</name>
    <message>
        <source>Debugging Runs</source>
        <translation>调试运行</translation>
    </message>
    <message>
        <source>Stop Debugging</source>
        <translation>停止调试</translation>
    </message>
    <message>
        <source>Toggle logs</source>
        <translation>显示或隐藏日志</translation>
    </message>
    <message>
        <source>There is no application in this container</source>
        <translation>此容器中没有应用</translation>
    </message>
    <message>
        <source>Ends %1</source>
        <translation>结束 %1</translation>
    </message>
</context>
<context>
    <name>ConfigPages</name>
    <message>
        <source>Setting container to improve the success rate of the application, you can debug and preview multiple times.</source>
        <translation>设置容器可以提高应用运行的成功率，您可以多次调试和预览。</translation>
    </message>
    <message>
        <source>Search settings</source>
        <translation>搜索设置</translation>
    </message>
    <message>
        <source>Advanced Debugging Tools</source>
        <translation>高级调试工具</translation>
    </message>
    <message>
        <source>Nothing has been found</source>
        <translation>未找到任何内容</translation>
    </message>
</context>
<context>
    <name>ConfigStates</name>
    <message>
        <source>The settings of this container cannot be read at the moment.</source>
        <translation>暂时无法读取此容器的设置。</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>重试</translation>
    </message>
    <message>
        <source>Initializing the wine Container, please wait…</source>
        <translation>正在初始化 Wine 容器，请稍候…</translation>
    </message>
    <message>
        <source>Loading Bottles</source>
        <translation>正在加载容器</translation>
    </message>
</context>
<context>
    <name>CustomSplitterHandle</name>
    <message>
        <source>Change the size of the parts</source>
        <translation>调整各部分的大小</translation>
    </message>
</context>
<context>
    <name>DebugRun</name>
    <message>
        <source>The launch script cannot be run. Please install Cellarix again.</source>
        <translation>无法运行启动脚本，请重新安装 Cellarix。</translation>
    </message>
    <message>
        <source>The log could not be written to %1.</source>
        <translation>无法将日志写入 %1。</translation>
    </message>
    <message>
        <source>%1 keeps the last %2 MiB of the log.</source>
        <translation>%1 保留日志的最后 %2 MiB。</translation>
    </message>
</context>
<context>
    <name>DebuggingLogsEdit</name>
    <message>
        <source>Debug Log</source>
        <translation>调试日志</translation>
    </message>
</context>
<context>
    <name>DebuggingLogsFrame</name>
    <message>
        <source>Debug Log</source>
        <translation>调试日志</translation>
    </message>
    <message>
        <source>Clear Log</source>
        <translation>清空日志</translation>
    </message>
    <message>
        <source>Open folder of log</source>
        <translation>打开日志所在目录</translation>
    </message>
    <message>
        <source>No debugging logs yet</source>
        <translation>暂无调试日志</translation>
    </message>
    <message>
        <source>Looking for hints in the log</source>
        <translation>正在日志中查找线索</translation>
    </message>
    <message>
        <source>What you can try</source>
        <translation>可以尝试的办法</translation>
    </message>
</context>
<context>
    <name>DebuggingLogsView</name>
    <message>
        <source>Hints</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>The application need .NET runtime, you can try to install it by click follow link:</source>
        <translation>该应用需要 .NET 运行环境，您可以点击以下链接尝试安装：</translation>
    </message>
    <message>
        <source>Missing Components for app:</source>
        <translation>应用缺少以下组件：</translation>
    </message>
    <message>
        <source>You can try to %1 , and setup %2 for gamming.</source>
        <translation>您可以尝试%1，并为游戏安装 %2。</translation>
    </message>
    <message>
        <source>install graphics card driver</source>
        <translation>安装显卡驱动</translation>
    </message>
    <message>
        <source>dxvk, vkd3d or proton</source>
        <translation>dxvk、vkd3d 或 proton</translation>
    </message>
    <message>
        <source>For console applications, you can run it in terminal</source>
        <translation>控制台应用可以在终端中运行</translation>
    </message>
    <message>
        <source>Killed broken steam runtime, please restart the application</source>
        <translation>已结束出错的 steam 运行环境，请重新启动应用</translation>
    </message>
    <message>
        <source>or, you can try to change the translator in Wine Parameter page</source>
        <translation>或者，您可以尝试在“Wine 参数”页面更换转译器</translation>
    </message>
    <message>
        <source>Application use some windows runtime libs that not been implemented in wine,you can try to switch Windows version to Windows 7 and relaunch</source>
        <translation>应用使用了 Wine 尚未实现的 Windows 运行库，您可以尝试将 Windows 版本切换为 Windows 7 后重新运行</translation>
    </message>
    <message>
        <source>Missing fonts has been fixed</source>
        <translation>缺少的字体已修复</translation>
    </message>
    <message>
        <source>Application is not running as expected, you can try switch wine version and relaunch in Basic Configuration page</source>
        <translation>应用未按预期运行，您可以尝试在“基本配置”页面切换 Wine 版本后重新运行</translation>
    </message>
    <message>
        <source>Missing Fonts for app: %1</source>
        <translation>应用缺少字体：%1</translation>
    </message>
    <message>
        <source>Try to fix the missing fonts</source>
        <translation>尝试修复缺少的字体</translation>
    </message>
    <message>
        <source>or, </source>
        <translation>或者，</translation>
    </message>
    <message>
        <source>open the C:\\\\Windows\\Fonts directory</source>
        <translation>打开 C:\Windows\Fonts 目录</translation>
    </message>
    <message>
        <source>, download and copy missing fonts to the font directory by yourself.</source>
        <translation>，自行下载缺少的字体并复制到字体目录。</translation>
    </message>
</context>
<context>
    <name>DependencyInstallQueue</name>
    <message>
        <source>Downloading %1: %2%</source>
        <translation>正在下载 %1：%2%</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>失败</translation>
    </message>
    <message>
        <source>Success</source>
        <translation>成功</translation>
    </message>
    <message>
        <source>Fixing</source>
        <translation>正在修复</translation>
    </message>
    <message>
        <source>Fix: install components %1</source>
        <translation>修复：安装组件 %1</translation>
    </message>
    <message>
        <source>Setup %1</source>
        <translation>安装%1</translation>
    </message>
    <message>
        <source>Setup %1, please waiting...</source>
        <translation>正在安装 %1，请稍候…</translation>
    </message>
</context>
<context>
    <name>DependencyState</name>
    <message>
        <source>Installation Failed</source>
        <translation>安装失败</translation>
    </message>
    <message>
        <source>Waiting for Download</source>
        <translation>等待下载</translation>
    </message>
    <message>
        <source>Installing</source>
        <translation>安装中</translation>
    </message>
    <message>
        <source>Installed</source>
        <translation>已安装</translation>
    </message>
</context>
<context>
    <name>DependencyWarningWidget</name>
    <message>
        <source>Ready</source>
        <translation>已就绪</translation>
    </message>
    <message>
        <source>Needs attention</source>
        <translation>需要处理</translation>
    </message>
</context>
<context>
    <name>Diagnosis</name>
    <message>
        <source>It crashed.</source>
        <translation>程序已崩溃。</translation>
    </message>
    <message>
        <source>It ended at once without showing a window (exit code %1).</source>
        <translation>程序未显示窗口便立即结束（退出码 %1）。</translation>
    </message>
    <message>
        <source>It needs %1, which is part of %2.</source>
        <translation>缺少 %1，它属于 %2。</translation>
    </message>
    <message>
        <source>It needs %1, which is missing.</source>
        <translation>缺少 %1。</translation>
    </message>
    <message>
        <source>View Logs shows what Wine said.</source>
        <translation>可在“查看日志”中查看 Wine 的输出。</translation>
    </message>
    <message>
        <source>It needs %1.</source>
        <translation>缺少 %1。</translation>
    </message>
    <message>
        <source>It looks for fonts that are missing (%1).</source>
        <translation>缺少字体（%1）。</translation>
    </message>
    <message>
        <source>It ended, and the log does not say why.</source>
        <translation>程序已结束，日志中没有说明原因。</translation>
    </message>
    <message>
        <source>It ended without showing a window.</source>
        <translation>程序未显示窗口便已结束。</translation>
    </message>
    <message>
        <source>It ended without showing a window (exit code %1).</source>
        <translation>程序未显示窗口便已结束（退出码 %1）。</translation>
    </message>
    <message>
        <source>Repair installs it.</source>
        <translation>“修复”将安装它。</translation>
    </message>
    <message>
        <source>Repair installs %1.</source>
        <translation>“修复”将安装 %1。</translation>
    </message>
    <message>
        <source>Repair installs the fonts that it misses.</source>
        <translation>“修复”将安装缺少的字体。</translation>
    </message>
    <message>
        <source>Repair installs them.</source>
        <translation>“修复”将安装这些字体。</translation>
    </message>
    <message>
        <source>Repair tries another version of Wine.</source>
        <translation>“修复”将换用另一个 Wine 版本。</translation>
    </message>
    <message>
        <source>Repair installs a Wine that can run it.</source>
        <translation>“修复”将安装可运行它的 Wine。</translation>
    </message>
    <message>
        <source>Repair renews the files of Windows and keeps your own.</source>
        <translation>“修复”将还原 Windows 文件，并保留您自己的文件。</translation>
    </message>
    <message>
        <source>Repair starts it again.</source>
        <translation>“修复”将重新启动程序。</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <extracomment>two sentences, one after the other</extracomment>
        <translation>%1%2</translation>
    </message>
    <message>
        <source>Another version of Wine may run it.</source>
        <translation>换用其他 Wine 版本也许可以运行。</translation>
    </message>
    <message>
        <source>It found no display to show a window on.</source>
        <translation>没有可用的显示器，无法显示窗口。</translation>
    </message>
    <message>
        <source>Start it from a desktop session.</source>
        <translation>请在桌面会话中启动。</translation>
    </message>
    <message>
        <source>The disk is full.</source>
        <translation>磁盘空间不足。</translation>
    </message>
    <message>
        <source>Make room and start it again.</source>
        <translation>请清理磁盘空间后重新启动。</translation>
    </message>
    <message>
        <source>Its bottle belongs to another user.</source>
        <translation>容器属于其他用户。</translation>
    </message>
    <message>
        <source>Start it as that user, without sudo.</source>
        <translation>请以该用户身份启动，不要使用 sudo。</translation>
    </message>
    <message>
        <source>Another version of Wine is still running in its bottle.</source>
        <translation>容器中仍有其他版本的 Wine 在运行。</translation>
    </message>
    <message>
        <source>End the programs of this bottle and start it again.</source>
        <translation>请结束该容器中的程序后重新启动。</translation>
    </message>
    <message>
        <source>Windows files of its bottle are missing or damaged.</source>
        <translation>容器中的 Windows 文件缺失或已损坏。</translation>
    </message>
    <message>
        <source>The bottle is damaged: %1 of Windows cannot be loaded.</source>
        <translation>容器已损坏：无法加载 Windows 文件 %1。</translation>
    </message>
    <message>
        <source>It needs more open files than this system allows.</source>
        <translation>程序打开的文件数超出了系统限制。</translation>
    </message>
    <message>
        <source>Raise the limit of open files (ulimit -n).</source>
        <translation>请提高打开文件数的上限（ulimit -n）。</translation>
    </message>
    <message>
        <source>A part of it is a 32-bit program, which this Wine cannot run.</source>
        <translation>程序的一部分是 32 位的，当前 Wine 无法运行。</translation>
    </message>
    <message>
        <source>Install 32-bit Wine (the package wine32).</source>
        <translation>请安装 32 位 Wine（软件包 wine32）。</translation>
    </message>
    <message>
        <source>Its file is damaged or made for another kind of computer.</source>
        <translation>文件已损坏，或不适用于此类计算机。</translation>
    </message>
    <message>
        <source>Download it once more.</source>
        <translation>请重新下载。</translation>
    </message>
    <message>
        <source>It ran out of memory.</source>
        <translation>内存不足。</translation>
    </message>
    <message>
        <source>Close other programs and start it again.</source>
        <translation>请关闭其他程序后重新启动。</translation>
    </message>
    <message>
        <source>It is guarded by an anti-cheat system (%1), which does not accept Wine.</source>
        <translation>程序使用的反作弊系统（%1）不支持 Wine。</translation>
    </message>
    <message>
        <source>Only its maker can change that.</source>
        <translation>只有开发商能够解决。</translation>
    </message>
    <message>
        <source>Its copy protection does not accept Wine or misses its disc or dongle.</source>
        <translation>程序的版权保护不支持 Wine，或未检测到光盘或加密锁。</translation>
    </message>
    <message>
        <source>Its copy protection (%1) does not accept Wine or misses its disc or dongle.</source>
        <translation>程序的版权保护（%1）不支持 Wine，或未检测到光盘或加密锁。</translation>
    </message>
    <message>
        <source>Insert the disc or the dongle, or ask the maker for a version without.</source>
        <translation>请插入光盘或加密锁，或向开发商索取无需它们的版本。</translation>
    </message>
    <message>
        <source>It needs the Windows driver %1, and Wine cannot load drivers.</source>
        <translation>程序需要 Windows 驱动 %1，而 Wine 无法加载驱动。</translation>
    </message>
    <message>
        <source>Look for a version that needs no driver.</source>
        <translation>请寻找不需要驱动的版本。</translation>
    </message>
    <message>
        <source>Put that file beside the program, or install the program anew.</source>
        <translation>请将该文件放到程序所在目录，或重新安装程序。</translation>
    </message>
    <message>
        <source>One of its DLLs has another version than it expects.</source>
        <translation>程序的某个 DLL 版本不符。</translation>
    </message>
    <message>
        <source>It needs another version of %1.</source>
        <translation>程序需要其他版本的 %1。</translation>
    </message>
    <message>
        <source>Install the program anew.</source>
        <translation>请重新安装程序。</translation>
    </message>
    <message>
        <source>A runtime that its manifest names is missing.</source>
        <translation>缺少程序清单中指定的运行库。</translation>
    </message>
    <message>
        <source>It needs the runtime %1, which its manifest names.</source>
        <translation>缺少程序清单中指定的运行库 %1。</translation>
    </message>
    <message>
        <source>It needs .NET.</source>
        <translation>缺少 .NET。</translation>
    </message>
    <message>
        <source>Install Wine Mono into its bottle.</source>
        <translation>请在容器中安装 Wine Mono。</translation>
    </message>
    <message>
        <source>It needs .NET Framework.</source>
        <translation>缺少 .NET Framework。</translation>
    </message>
    <message>
        <source>It needs .NET Framework %1.</source>
        <translation>缺少 .NET Framework %1。</translation>
    </message>
    <message>
        <source>Install it into its bottle.</source>
        <translation>请在容器中安装它。</translation>
    </message>
    <message>
        <source>It needs the .NET runtime.</source>
        <translation>缺少 .NET 运行时。</translation>
    </message>
    <message>
        <source>It needs the .NET %1 runtime.</source>
        <translation>缺少 .NET %1 运行时。</translation>
    </message>
    <message>
        <source>It needs Java for Windows.</source>
        <translation>缺少 Windows 版 Java。</translation>
    </message>
    <message>
        <source>Install a Java runtime for Windows into its bottle.</source>
        <translation>请在容器中安装 Windows 版 Java 运行环境。</translation>
    </message>
    <message>
        <source>It shows web pages and needs Wine Gecko for them.</source>
        <translation>程序要显示网页，但缺少 Wine Gecko。</translation>
    </message>
    <message>
        <source>It needs the WebView2 runtime.</source>
        <translation>缺少 WebView2 运行时。</translation>
    </message>
    <message>
        <source>It needs a part of Windows that this Wine lacks (%1).</source>
        <translation>当前 Wine 缺少程序所需的 Windows 组件（%1）。</translation>
    </message>
    <message>
        <source>It needs Vulkan, and this system has no driver for it.</source>
        <translation>程序需要 Vulkan，但系统没有相应的驱动。</translation>
    </message>
    <message>
        <source>Install the Vulkan driver of your graphics card.</source>
        <translation>请安装显卡的 Vulkan 驱动。</translation>
    </message>
    <message>
        <source>It needs Direct3D 12, which does not work here.</source>
        <translation>程序需要 Direct3D 12，但此系统无法使用。</translation>
    </message>
    <message>
        <source>Install the Vulkan driver of your graphics card, or let the program use Direct3D 11.</source>
        <translation>请安装显卡的 Vulkan 驱动，或让程序使用 Direct3D 11。</translation>
    </message>
    <message>
        <source>It needs 3D graphics, and OpenGL does not work on this system.</source>
        <translation>程序需要 3D 图形，但此系统的 OpenGL 无法使用。</translation>
    </message>
    <message>
        <source>Install the driver of your graphics card.</source>
        <translation>请安装显卡驱动。</translation>
    </message>
    <message>
        <source>It asks for another version of Windows.</source>
        <translation>程序要求其他版本的 Windows。</translation>
    </message>
    <message>
        <source>It asks for Windows %1.</source>
        <translation>程序要求 Windows %1。</translation>
    </message>
    <message>
        <source>It asks for administrator rights that it does not find.</source>
        <translation>程序要求管理员权限，但未能取得。</translation>
    </message>
    <message>
        <source>It says that it is already running.</source>
        <translation>程序提示自己已在运行。</translation>
    </message>
    <message>
        <source>End the other one, or all programs of its bottle, and start it again.</source>
        <translation>请结束已运行的程序或该容器中的所有程序，然后重新启动。</translation>
    </message>
    <message>
        <source>Its updater failed.</source>
        <translation>程序更新失败。</translation>
    </message>
    <message>
        <source>Download the newest version from its maker and install that.</source>
        <translation>请从官网下载最新版本并安装。</translation>
    </message>
    <message>
        <source>It did not reach its server.</source>
        <translation>程序无法连接服务器。</translation>
    </message>
    <message>
        <source>Check the network and start it again.</source>
        <translation>请检查网络后重新启动。</translation>
    </message>
    <message>
        <source>It calls a function that this Wine lacks.</source>
        <translation>程序调用了当前 Wine 没有的函数。</translation>
    </message>
    <message>
        <source>It calls a function of %1 that this Wine lacks.</source>
        <translation>程序调用了 %1 中当前 Wine 没有的函数。</translation>
    </message>
    <message>
        <source>It ended with a .NET error that it does not handle (%1).</source>
        <translation>程序因未处理的 .NET 异常而结束（%1）。</translation>
    </message>
    <message>
        <source>It may need Microsoft&apos;s .NET Framework.</source>
        <translation>可能需要微软的 .NET Framework。</translation>
    </message>
    <message>
        <source>Its installation failed.</source>
        <translation>安装失败。</translation>
    </message>
    <message>
        <source>Start it again; where it asks, leave out drivers and services.</source>
        <translation>请重新启动，安装时不要选择驱动和服务。</translation>
    </message>
    <message>
        <source>It needs a database engine of Microsoft&apos;s.</source>
        <translation>缺少微软数据库引擎。</translation>
    </message>
    <message>
        <source>It plays video or sound for which this system has no decoder.</source>
        <translation>系统缺少播放其音视频所需的解码器。</translation>
    </message>
    <message>
        <source>Install the GStreamer plugins (good, bad, ugly, libav).</source>
        <translation>请安装 GStreamer 插件（good、bad、ugly、libav）。</translation>
    </message>
    <message>
        <source>It needs secure connections, and Wine misses libgnutls for them.</source>
        <translation>程序需要安全连接，但 Wine 缺少 libgnutls。</translation>
    </message>
    <message>
        <source>Install the package libgnutls30.</source>
        <translation>请安装软件包 libgnutls30。</translation>
    </message>
    <message>
        <source>Wine cannot draw text: FreeType is missing.</source>
        <translation>缺少 FreeType，Wine 无法显示文字。</translation>
    </message>
    <message>
        <source>Install the package libfreetype6.</source>
        <translation>请安装软件包 libfreetype6。</translation>
    </message>
    <message>
        <source>The runtime around its Proton runner is broken.</source>
        <translation>Proton 的运行环境已损坏。</translation>
    </message>
    <message>
        <source>A file that it needs is in use by another program.</source>
        <translation>程序所需的文件正被其他程序占用。</translation>
    </message>
    <message>
        <source>End the other programs of its bottle and start it again.</source>
        <translation>请结束该容器中的其他程序后重新启动。</translation>
    </message>
    <message>
        <source>It was not allowed to open a file.</source>
        <translation>程序没有权限打开某个文件。</translation>
    </message>
    <message>
        <source>Move it to a folder that you may write to.</source>
        <translation>请将程序移到您有写入权限的文件夹。</translation>
    </message>
    <message>
        <source>It looks for something on a network share that is not there.</source>
        <translation>程序要访问的网络共享不存在。</translation>
    </message>
    <message>
        <source>Mount the share and open the program from there.</source>
        <translation>请挂载该共享，再从中打开程序。</translation>
    </message>
    <message>
        <source>It needs Flash Player, which is not made any more.</source>
        <translation>程序需要已停止开发的 Flash Player。</translation>
    </message>
    <message>
        <source>Ask its maker for a newer version.</source>
        <translation>请向开发商索取新版本。</translation>
    </message>
    <message>
        <source>It needs a COM class that is not registered (%1).</source>
        <translation>缺少已注册的 COM 类（%1）。</translation>
    </message>
    <message>
        <source>Install the program anew, with all its parts.</source>
        <translation>请重新安装程序及其全部组件。</translation>
    </message>
    <message>
        <source>It hangs: its threads wait for each other.</source>
        <translation>程序已停止响应。</translation>
    </message>
    <message>
        <source>Windows Installer could not be started.</source>
        <translation>无法启动 Windows Installer。</translation>
    </message>
    <message>
        <source>The installation was cancelled.</source>
        <translation>安装已取消。</translation>
    </message>
    <message>
        <source>Start it again.</source>
        <translation>请重新启动。</translation>
    </message>
    <message>
        <source>The installation failed with a serious error (1603).</source>
        <translation>安装时发生严重错误（1603）。</translation>
    </message>
    <message>
        <source>View Logs may name the step that failed.</source>
        <translation>可在“查看日志”中查找出错的步骤。</translation>
    </message>
    <message>
        <source>It wants to change a program that is not installed (1605).</source>
        <translation>要更改的程序尚未安装（1605）。</translation>
    </message>
    <message>
        <source>Install the full version first.</source>
        <translation>请先安装完整版本。</translation>
    </message>
    <message>
        <source>The installer does not find its source files (1612).</source>
        <translation>安装程序找不到源文件（1612）。</translation>
    </message>
    <message>
        <source>Keep all its files together.</source>
        <translation>请将所有安装文件放在一起。</translation>
    </message>
    <message>
        <source>Another installation is still running (1618).</source>
        <translation>另一个安装仍在进行（1618）。</translation>
    </message>
    <message>
        <source>Wait for its end and start this one again.</source>
        <translation>请等待其完成后重新启动。</translation>
    </message>
    <message>
        <source>The installer package cannot be opened (1619).</source>
        <translation>无法打开安装包（1619）。</translation>
    </message>
    <message>
        <source>The installer package is damaged (1620).</source>
        <translation>安装包已损坏（1620）。</translation>
    </message>
    <message>
        <source>The installer could not write its log (1622).</source>
        <translation>安装程序无法写入日志（1622）。</translation>
    </message>
    <message>
        <source>Make room on the disk and start it again.</source>
        <translation>请清理磁盘空间后重新启动。</translation>
    </message>
    <message>
        <source>A policy forbids the installation (1625).</source>
        <translation>策略禁止此安装（1625）。</translation>
    </message>
    <message>
        <source>The folder for temporary files is full or missing (1632).</source>
        <translation>临时文件夹已满或不存在（1632）。</translation>
    </message>
    <message>
        <source>The installer is made for another kind of computer (1633).</source>
        <translation>安装包不适用于此类计算机（1633）。</translation>
    </message>
    <message>
        <source>Get the version for 64-bit or 32-bit Windows.</source>
        <translation>请换用适用于 64 位或 32 位 Windows 的版本。</translation>
    </message>
    <message>
        <source>Another version is installed already (1638).</source>
        <translation>已安装另一个版本（1638）。</translation>
    </message>
    <message>
        <source>Remove that one first.</source>
        <translation>请先卸载该版本。</translation>
    </message>
    <message>
        <source>The installer was started with wrong arguments (1639).</source>
        <translation>安装程序的启动参数有误（1639）。</translation>
    </message>
    <message>
        <source>The installer wants Windows to restart (1641).</source>
        <translation>安装程序要求重启 Windows（1641）。</translation>
    </message>
    <message>
        <source>A step of the installation failed (1722).</source>
        <translation>安装的某个步骤失败（1722）。</translation>
    </message>
    <message>
        <source>Start it again; leave out what is optional.</source>
        <translation>请重新启动，并取消可选组件。</translation>
    </message>
    <message>
        <source>It stopped itself at a check that failed (80000003).</source>
        <translation>程序因内部检查失败而停止（80000003）。</translation>
    </message>
    <message>
        <source>It crashed on memory that it may not use (c0000005).</source>
        <translation>程序访问了无权使用的内存而崩溃（c0000005）。</translation>
    </message>
    <message>
        <source>It crashed on an instruction that this processor does not know (c000001d).</source>
        <translation>程序使用了此处理器不支持的指令而崩溃（c000001d）。</translation>
    </message>
    <message>
        <source>Look for a version for older processors.</source>
        <translation>请寻找适用于旧处理器的版本。</translation>
    </message>
    <message>
        <source>It ran out of memory (c0000017).</source>
        <translation>内存不足（c0000017）。</translation>
    </message>
    <message>
        <source>It crashed on a division by zero (c0000094).</source>
        <translation>程序因除数为零而崩溃（c0000094）。</translation>
    </message>
    <message>
        <source>It tried what only drivers may do (c0000096), as copy protections do.</source>
        <translation>程序执行了只有驱动才能执行的操作（c0000096），常见于版权保护。</translation>
    </message>
    <message>
        <source>It crashed because its stack was full (c00000fd).</source>
        <translation>程序因堆栈溢出而崩溃（c00000fd）。</translation>
    </message>
    <message>
        <source>One of its DLLs is missing (c0000135).</source>
        <translation>程序缺少某个 DLL（c0000135）。</translation>
    </message>
    <message>
        <source>One of its DLLs has another version than it expects (c0000139).</source>
        <translation>程序的某个 DLL 版本不符（c0000139）。</translation>
    </message>
    <message>
        <source>One of its DLLs could not start (c0000142).</source>
        <translation>程序的某个 DLL 无法初始化（c0000142）。</translation>
    </message>
    <message>
        <source>It crashed because its memory was damaged (c0000374).</source>
        <translation>程序因内存损坏而崩溃（c0000374）。</translation>
    </message>
    <message>
        <source>It ended itself on a serious error (c0000409).</source>
        <translation>程序因严重错误而自行结束（c0000409）。</translation>
    </message>
    <message>
        <source>One of its DLLs is missing (c06d007e).</source>
        <translation>程序缺少某个 DLL（c06d007e）。</translation>
    </message>
    <message>
        <source>One of its DLLs has another version than it expects (c06d007f).</source>
        <translation>程序的某个 DLL 版本不符（c06d007f）。</translation>
    </message>
    <message>
        <source>It crashed on a C++ error that it does not handle (e06d7363).</source>
        <translation>程序因未处理的 C++ 异常而崩溃（e06d7363）。</translation>
    </message>
    <message>
        <source>It crashed on a .NET error that it does not handle (e0434352).</source>
        <translation>程序因未处理的 .NET 异常而崩溃（e0434352）。</translation>
    </message>
    <message>
        <source>It crashed on a Delphi error that it does not handle (0eedfade).</source>
        <translation>程序因未处理的 Delphi 异常而崩溃（0eedfade）。</translation>
    </message>
    <message>
        <source>The installation failed (%1).</source>
        <translation>安装失败（%1）。</translation>
    </message>
    <message>
        <source>It needs a newer Windows than this Wine offers (%1).</source>
        <translation>程序需要比当前 Wine 更新的 Windows（%1）。</translation>
    </message>
    <message>
        <source>Remove the program and install it anew.</source>
        <translation>请卸载后重新安装。</translation>
    </message>
    <message>
        <source>No restart is needed here; start the program.</source>
        <translation>此处无需重启，直接启动程序即可。</translation>
    </message>
    <message>
        <source>A repair with %1 did not help.</source>
        <translation>已尝试用 %1 修复，但未能解决问题。</translation>
    </message>
    <message>
        <source>The installer package cannot be run (1627).</source>
        <translation>无法运行安装包（1627）。</translation>
    </message>
    <message>
        <source>It needs .NET; Repair installs Wine Mono (about %1).</source>
        <translation>缺少 .NET，“修复”将安装 Wine Mono（约 %1）。</translation>
    </message>
    <message>
        <source>%1 could not be installed.</source>
        <translation>%1 安装失败。</translation>
    </message>
</context>
<context>
    <name>DisplayCheck</name>
    <message>
        <source>Cellarix needs a graphical desktop, and there is none: neither DISPLAY nor WAYLAND_DISPLAY is set.</source>
        <translation>Cellarix 需要图形桌面，但未找到：DISPLAY 和 WAYLAND_DISPLAY 均未设置。</translation>
    </message>
    <message>
        <source>Cellarix cannot open the display &quot;%1&quot;.</source>
        <translation>Cellarix 无法打开显示“%1”。</translation>
    </message>
</context>
<context>
    <name>DllOverrideListView</name>
    <message>
        <source>dll name</source>
        <translation>DLL 名称</translation>
    </message>
    <message>
        <source>Load method</source>
        <translation>加载方式</translation>
    </message>
    <message>
        <source>DLL Override</source>
        <translation>DLL 覆盖</translation>
    </message>
    <message>
        <source>There is an override of %1 already.</source>
        <translation>已有 %1 的覆盖。</translation>
    </message>
    <message>
        <source>Set to ...</source>
        <translation>设置为……</translation>
    </message>
    <message>
        <source>Delete selected</source>
        <translation>删除所选</translation>
    </message>
    <message>
        <source>%1 is no name of a DLL or program.</source>
        <translation>%1 不是有效的 DLL 或程序名称。</translation>
    </message>
</context>
<context>
    <name>DllOverridePage</name>
    <message>
        <source>Set the way to load the dll, double click the option to edit</source>
        <translation>设置 DLL 的加载方式，双击选项可编辑</translation>
    </message>
    <message>
        <source>Add an override</source>
        <translation>添加 DLL 覆盖</translation>
    </message>
    <message>
        <source>There are no DLLs overridden</source>
        <translation>没有被覆盖的 DLL</translation>
    </message>
    <message>
        <source>Scan</source>
        <translation>扫描</translation>
    </message>
    <message>
        <source>Scan app dlls from bottles</source>
        <translation>扫描容器中应用的 DLL</translation>
    </message>
    <message>
        <source>Disable app updater</source>
        <translation>禁用应用的更新程序</translation>
    </message>
    <message>
        <source>The programs of this container cannot be scanned: %1</source>
        <translation>无法扫描此容器中的程序：%1</translation>
    </message>
    <message>
        <source>The scan has found nothing to change.</source>
        <translation>扫描未发现需要更改的内容。</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Scanning…</source>
        <translation>正在扫描…</translation>
    </message>
</context>
<context>
    <name>DoPackageDialog</name>
    <message>
        <source>Packaging application in progress ...</source>
        <translation>正在打包应用...</translation>
    </message>
    <message>
        <source>The application is not yet packed, are you sure you want to close?</source>
        <translation>应用尚未打包完成，确定要关闭吗？</translation>
    </message>
    <message>
        <source>The current file will not be saved and will need to be repacked after closing</source>
        <translation>关闭后当前文件不会保存，需要重新打包</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Something is being installed into the bottle. Try again when that is done.</source>
        <translation>正在向此容器安装组件，请在安装完成后重试。</translation>
    </message>
    <message>
        <source>Programs run in the bottle. Close them and try again.</source>
        <translation>容器中有程序正在运行，请关闭后重试。</translation>
    </message>
    <message>
        <source>There is not enough room where packages are saved: up to %1 MiB are needed.</source>
        <translation>软件包保存位置的空间不足：最多需要 %1 MiB。</translation>
    </message>
    <message>
        <source>Nothing can be saved in %1.</source>
        <translation>无法在 %1 中保存文件。</translation>
    </message>
    <message>
        <source>Two files of the package have the same place: %1</source>
        <translation>软件包中有两个文件位置相同：%1</translation>
    </message>
    <message>
        <source>The folder %1 has the bottle itself in it. Choose a smaller one.</source>
        <translation>文件夹 %1 包含容器本身，请选择更小的范围。</translation>
    </message>
    <message>
        <source>A file has a line break in its name: %1. Rename it and try again.</source>
        <translation>有文件的名称中含有换行符：%1。请重命名后重试。</translation>
    </message>
    <message>
        <source>The program takes %1 GB. A package can hold at most 10 GB.</source>
        <translation>程序占用 %1 GB，软件包最多容纳 10 GB。</translation>
    </message>
    <message>
        <source>The package could not be written. The disk may be full.</source>
        <translation>无法写入软件包，磁盘可能已满。</translation>
    </message>
    <message>
        <source>The file %1 has changed meanwhile. Close the programs of the bottle and try again.</source>
        <translation>文件 %1 在打包期间发生了变化，请关闭容器中的程序后重试。</translation>
    </message>
    <message>
        <source>Next will be saved to: </source>
        <translation>下次将保存到：</translation>
    </message>
    <message>
        <source>Another program&apos;s package is named %1. Choose another name.</source>
        <translation>已有其他程序的软件包名为 %1。请换一个名称。</translation>
    </message>
    <message>
        <source>The folder %1 is too close to the root of the disk. Choose a smaller one.</source>
        <translation>文件夹 %1 离磁盘的根目录太近。请选择更小的范围。</translation>
    </message>
    <message>
        <source>%1 cannot be read.</source>
        <translation>无法读取 %1。</translation>
    </message>
    <message>
        <source>The settings of the bottle cannot be read: %1</source>
        <translation>无法读取容器的设置：%1</translation>
    </message>
    <message>
        <source>There is no bottle named %1.</source>
        <translation>没有名为 %1 的容器。</translation>
    </message>
    <message>
        <source>%1 is not a valid package name.</source>
        <translation>%1 不是有效的包名。</translation>
    </message>
    <message>
        <source>%1 is not a valid package version.</source>
        <translation>%1 不是有效的版本号。</translation>
    </message>
    <message>
        <source>No architecture is chosen for the package.</source>
        <translation>未选择软件包支持的架构。</translation>
    </message>
    <message>
        <source>No program of the bottle is chosen for the package.</source>
        <translation>未选择要打包的程序。</translation>
    </message>
    <message>
        <source>The chosen programs are not in the bottle any more. Choose again.</source>
        <translation>所选的程序已不在容器中，请重新选择。</translation>
    </message>
    <message>
        <source>The package settings are missing. Fill in the form of the package again.</source>
        <translation>缺少打包设置，请重新填写应用 Deb 包信息。</translation>
    </message>
    <message>
        <source>The package settings are damaged. Fill in the form of the package again.</source>
        <translation>打包设置已损坏，请重新填写应用 Deb 包信息。</translation>
    </message>
    <message>
        <source>The folder %1 has keys or settings of your own. Choose another one.</source>
        <translation>文件夹 %1 中有您的密钥或个人设置，请选择其他文件夹。</translation>
    </message>
    <message>
        <source>%1 is not a Windows program.</source>
        <translation>%1 不是 Windows 程序。</translation>
    </message>
    <message>
        <source>The package could not be made because of an error in Cellarix. The log tells more.</source>
        <translation>由于 Cellarix 内部错误，无法生成软件包。详情请查看日志。</translation>
    </message>
    <message>
        <source>%1 could not be read or written.</source>
        <translation>无法读写 %1。</translation>
    </message>
    <message>
        <source>The bottle is being packed or changed already. Try again when that is done.</source>
        <translation>该容器正在打包或更新，请在完成后重试。</translation>
    </message>
    <message>
        <source>The program %1 is not installed. Install it and try again.</source>
        <translation>未安装程序 %1，请安装后重试。</translation>
    </message>
    <message>
        <source>The package&apos;s file name would be too long: %1. Choose a shorter name or version.</source>
        <translation>软件包的文件名过长：%1。请使用更短的包名或版本号。</translation>
    </message>
</context>
<context>
    <name>DriverWarning</name>
    <message>
        <source>Currently you are running a program that requires a 32-bit graphics card driver, please confirm the model and type of your current device&apos;s graphics cardand install the corresponding driver.</source>
        <translation>您正在运行的程序需要 32 位显卡驱动，请确认当前设备显卡的型号和类型，并安装相应的驱动。</translation>
    </message>
    <message>
        <source>Please refer to </source>
        <translation>请参考</translation>
    </message>
    <message>
        <source>&quot;Installing drivers of graphics cards&quot;</source>
        <translation>《安装显卡驱动》</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>DropFrame</name>
    <message>
        <source>Drop to add</source>
        <translation>松开即可添加</translation>
    </message>
</context>
<context>
    <name>EntriesColumn</name>
    <message>
        <source>Application list</source>
        <translation>应用列表</translation>
    </message>
    <message>
        <source>Apps shown in launcher (click the &quot;+&quot; buttons to add apps and shortcuts)</source>
        <translation>启动器中显示的应用（点击“+”按钮添加应用和快捷方式）</translation>
    </message>
    <message>
        <source>Add an application</source>
        <translation>添加应用</translation>
    </message>
    <message>
        <source>Show names</source>
        <translation>显示名称</translation>
    </message>
    <message>
        <source>Show icons only</source>
        <translation>只显示图标</translation>
    </message>
</context>
<context>
    <name>EntryMenu</name>
    <message>
        <source>Run in terminal</source>
        <translation>在终端中运行</translation>
    </message>
    <message>
        <source>Open folder of app</source>
        <translation>打开应用所在目录</translation>
    </message>
    <message>
        <source>Internet Settings</source>
        <translation>Internet 设置</translation>
    </message>
    <message>
        <source>Frequently Used Functions</source>
        <translation>常用功能</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>%1 is taken off the list of applications. Its files stay in the container.</source>
        <translation>将 %1 从应用列表中移除，其文件仍保留在容器中。</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>EnvInitBanner</name>
    <message>
        <source>Initializing Environment</source>
        <translation>正在初始化环境</translation>
    </message>
    <message>
        <source>Envrionment Initialization Completed</source>
        <translation>环境初始化完成</translation>
    </message>
    <message>
        <source>Setup Proton</source>
        <translation>正在安装 Proton</translation>
    </message>
    <message>
        <source>Setup Proton Completed</source>
        <translation>Proton 安装完成</translation>
    </message>
    <message>
        <source>Start Using</source>
        <translation>开始使用</translation>
    </message>
    <message>
        <source>View Logs</source>
        <translation>查看日志</translation>
    </message>
    <message>
        <source>You can now start using Cellarix</source>
        <translation>现在可以使用 Cellarix 了</translation>
    </message>
    <message>
        <source>You can now start using proton to run games</source>
        <translation>现在可以使用 Proton 运行游戏了</translation>
    </message>
    <message>
        <source>It will take a few minutes, please wait patiently.</source>
        <translation>需要几分钟时间，请耐心等待。</translation>
    </message>
    <message>
        <source>Hide Logs</source>
        <translation>隐藏日志</translation>
    </message>
    <message>
        <source>The setup did not start</source>
        <translation>初始化未能开始</translation>
    </message>
    <message>
        <source>%1 cannot be run. Please install Cellarix again.</source>
        <translation>无法运行 %1，请重新安装 Cellarix。</translation>
    </message>
    <message>
        <source>Not all of it succeeded (exit code %1)</source>
        <translation>部分步骤未能完成（退出码 %1）</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>重试</translation>
    </message>
</context>
<context>
    <name>ExeFileExecutor</name>
    <message>
        <source>App run failed, try to using lumora-wine-staging and relaunch</source>
        <translation>应用运行失败，改用 lumora-wine-staging 重新启动</translation>
    </message>
    <message>
        <source>Application is not running as expected, try to using lumora-wine-staging and relaunch</source>
        <translation>应用未能正常运行，可改用 lumora-wine-staging 重新启动</translation>
    </message>
    <message>
        <source>Choose wine version: %1</source>
        <translation>使用的 Wine 版本：%1</translation>
    </message>
    <message>
        <source>Detech crash in wine logs</source>
        <translation>Wine 日志显示应用已崩溃</translation>
    </message>
    <message>
        <source>Download failed, fallback to %1</source>
        <translation>下载失败，改用 %1</translation>
    </message>
    <message>
        <source>Downloading %1: %2%</source>
        <translation>正在下载 %1：%2%</translation>
    </message>
    <message>
        <source>Fixing</source>
        <translation>正在修复</translation>
    </message>
    <message>
        <source>Initializing Envrironment</source>
        <translation>正在初始化环境</translation>
    </message>
    <message>
        <source>Launching %1 in %2 seconds</source>
        <translation>正在启动“%1”（已用 %2 秒）</translation>
    </message>
    <message>
        <source>Launching %1</source>
        <translation>正在启动“%1”</translation>
    </message>
    <message>
        <source>Launching</source>
        <translation>正在启动</translation>
    </message>
    <message>
        <source>No any fixing applied, but seems app not crashed</source>
        <translation>未进行修复，应用似乎没有崩溃</translation>
    </message>
    <message>
        <source>No any fixing applied, launch failed</source>
        <translation>启动失败，未找到可自动修复的问题</translation>
    </message>
    <message>
        <source>Other wine error logs:</source>
        <translation>其他 Wine 错误：</translation>
    </message>
    <message>
        <source>Parsed wine error logs:</source>
        <translation>已识别的 Wine 错误：</translation>
    </message>
    <message>
        <source>Parsing wine logs and fix application</source>
        <translation>正在分析 Wine 日志并修复应用</translation>
    </message>
    <message>
        <source>Start initializing envrionment, please wait...</source>
        <translation>开始初始化环境，请稍候…</translation>
    </message>
    <message>
        <source>Switch runner success, relaunch program...</source>
        <translation>已更换 Wine 版本，正在重新启动应用…</translation>
    </message>
    <message>
        <source>This application is a console application, launch in terminal</source>
        <translation>这是命令行应用，将在终端中启动</translation>
    </message>
    <message>
        <source>This application missing fonts: %1</source>
        <translation>此应用缺少字体：%1</translation>
    </message>
    <message>
        <source>This application need .NET Framework %1.</source>
        <translation>此应用需要 .NET Framework %1。</translation>
    </message>
    <message>
        <source>Try to fix application with those components:</source>
        <translation>尝试安装以下组件来修复应用：</translation>
    </message>
    <message>
        <source>Try to install components:</source>
        <translation>尝试安装组件：</translation>
    </message>
    <message>
        <source>%1 is not installing, try to download now</source>
        <translation>尚未安装 %1，正在尝试下载</translation>
    </message>
    <message>
        <source>%1 has downloaded</source>
        <translation>%1 已下载完成</translation>
    </message>
    <message>
        <source>Something is being installed into the bottle. Try again when that is done.</source>
        <translation>正在向此容器安装组件，请在安装完成后重试。</translation>
    </message>
    <message>
        <source>The first run needs an environment, which takes about half a minute: %1%</source>
        <translation>首次运行需要准备环境，约需半分钟：%1%</translation>
    </message>
    <message>
        <source>Seems application has finished, exit code: %1</source>
        <translation>程序已结束（退出码 %1）</translation>
    </message>
    <message>
        <source>Seems application has finished, exit code: %1, and crashed</source>
        <translation>程序已崩溃（退出码 %1）</translation>
    </message>
    <message>
        <source>Seems application has finished, exit code: %1, and app not been launched</source>
        <translation>程序未能启动（退出码 %1）</translation>
    </message>
    <message>
        <source>The background service that makes containers does not answer.</source>
        <translation>创建容器的后台服务没有响应。</translation>
    </message>
    <message>
        <source>%1 is a 32-bit program, and this Wine runs only 64-bit ones. These commands add 32-bit Wine on Debian:</source>
        <translation>%1 是 32 位程序，而当前的 Wine 只能运行 64 位程序。在 Debian 上可用以下命令安装 32 位 Wine：</translation>
    </message>
    <message>
        <source>No any fixing applied, launch failed</source>
        <comment>what was repaired did not help</comment>
        <translation>修复后仍无法启动</translation>
    </message>
    <message>
        <source>The launch script cannot be started. Install Cellarix anew.</source>
        <translation>无法运行启动脚本，请重新安装 Cellarix。</translation>
    </message>
    <message>
        <source>%1 is a 32-bit program, and this Wine runs only 64-bit ones. Repair gets %2, which runs both.</source>
        <translation>%1 是 32 位程序，而当前的 Wine 只能运行 64 位程序。“修复”会改用两者都支持的 %2。</translation>
    </message>
    <message>
        <source>There is no bottle named &quot;%1&quot;.</source>
        <translation>没有名为“%1”的容器。</translation>
    </message>
    <message>
        <source>The program is not in its bottle any more. Add it to the library again.</source>
        <translation>容器中已没有此程序，请重新添加。</translation>
    </message>
    <message>
        <source>The program &quot;%1&quot; does not exist.</source>
        <translation>程序“%1”不存在。</translation>
    </message>
    <message>
        <source>The Wine of its bottle is missing: %1 is not a program.</source>
        <translation>缺少容器的 Wine：%1 不是程序。</translation>
    </message>
    <message>
        <source>Wine is not installed. Install the package wine.</source>
        <translation>未安装 Wine，请安装软件包 wine。</translation>
    </message>
    <message>
        <source>Wine cannot be started: %1</source>
        <translation>无法启动 Wine：%1</translation>
    </message>
    <message>
        <source>The program &quot;%1&quot; cannot be read.</source>
        <translation>无法读取程序“%1”。</translation>
    </message>
    <message>
        <source>Rename &quot;%2&quot; without the sign %1 which Windows does not allow in paths.</source>
        <translation>Windows 路径中不能含有字符 %1，请重命名“%2”并去掉该字符。</translation>
    </message>
    <message>
        <source>The bottle is being packed or upgraded. Try again when that is done.</source>
        <translation>此容器正在打包或升级，请在完成后重试。</translation>
    </message>
    <message>
        <source>The program&apos;s files belonged to the package %1, which has been removed. Install the package again, or remove what is left of the program.</source>
        <translation>程序的文件属于软件包 %1，该软件包已被卸载。请重新安装该软件包，或删除程序的残留内容。</translation>
    </message>
</context>
<context>
    <name>ExportYamlDialog</name>
    <message>
        <source>Export Configuration</source>
        <translation>导出配置</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Failed to fetch categories, please check your network connection</source>
        <translation>获取分类失败，请检查网络连接</translation>
    </message>
    <message>
        <source>The input contains sensitive information, please check it</source>
        <translation>输入内容含有敏感信息，请检查</translation>
    </message>
    <message>
        <source>Failed to dump manifest</source>
        <translation>导出清单失败</translation>
    </message>
    <message>
        <source>The manifest is in %1</source>
        <translation>清单位于 %1</translation>
    </message>
    <message>
        <source>Checking the texts…</source>
        <translation>正在检查文字内容…</translation>
    </message>
    <message>
        <source>Writing the manifest…</source>
        <translation>正在写入清单…</translation>
    </message>
    <message>
        <source>Please fill in all fields</source>
        <translation>请填写所有项目</translation>
    </message>
    <message>
        <source>The package size must be a number</source>
        <translation>安装包大小必须是数字</translation>
    </message>
    <message>
        <source>The email address is not complete</source>
        <translation>邮箱地址不完整</translation>
    </message>
    <message>
        <source>App name:</source>
        <translation>应用名称：</translation>
    </message>
    <message>
        <source>Please enter the name of the app</source>
        <translation>请输入应用名称</translation>
    </message>
    <message>
        <source>App logo:</source>
        <translation>应用图标：</translation>
    </message>
    <message>
        <source>App introduction:</source>
        <translation>应用简介：</translation>
    </message>
    <message>
        <source>The introduction of the app, limited to 100 characters</source>
        <translation>应用的简介，不超过 100 个字符</translation>
    </message>
    <message>
        <source>App category:</source>
        <translation>应用分类：</translation>
    </message>
    <message>
        <source>Select category</source>
        <translation>请选择分类</translation>
    </message>
    <message>
        <source>Download URL:</source>
        <translation>下载地址：</translation>
    </message>
    <message>
        <source>Download url of the app, for review your app</source>
        <translation>应用的下载地址，用于审核您的应用</translation>
    </message>
    <message>
        <source>Package size:</source>
        <translation>安装包大小：</translation>
    </message>
    <message>
        <source>The size of the app package, units: MB</source>
        <translation>应用安装包的大小，单位：MB</translation>
    </message>
    <message>
        <source>Contributor name:</source>
        <translation>贡献者名称：</translation>
    </message>
    <message>
        <source>Please enter your nickname</source>
        <translation>请输入您的昵称</translation>
    </message>
    <message>
        <source>Contributor email:</source>
        <translation>贡献者邮箱：</translation>
    </message>
    <message>
        <source>Please enter your email</source>
        <translation>请输入您的邮箱</translation>
    </message>
    <message>
        <source>This appears to be a temporary URL that may expire</source>
        <translation>这似乎是一个可能会失效的临时地址</translation>
    </message>
    <message>
        <source>The download URL must be a whole address that begins with http:// or https://</source>
        <translation>下载地址必须是以 http:// 或 https:// 开头的完整地址</translation>
    </message>
</context>
<context>
    <name>FeedBackDialog</name>
    <message>
        <source>Feedback</source>
        <translation>反馈</translation>
    </message>
    <message>
        <source>This version has no address to send reports to. Save the report to a file, and pass that on to whoever can help you.</source>
        <translation>此版本未设置反馈的接收地址。请将反馈保存为文件，再转交给能帮助您的人。</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Save Report…</source>
        <translation>保存反馈…</translation>
    </message>
    <message>
        <source>Submit</source>
        <translation>提交</translation>
    </message>
    <message>
        <source>Image upload failed, please try again</source>
        <translation>图片上传失败，请重试</translation>
    </message>
    <message>
        <source>Select Image</source>
        <translation>选择图片</translation>
    </message>
    <message>
        <source>Image Files (*.png *.jpg *.jpeg *.gif)</source>
        <translation>图片文件 (*.png *.jpg *.jpeg *.gif)</translation>
    </message>
    <message>
        <source>The image size exceeds 2M not being uploaded, please reselect the image</source>
        <translation>图片大小超过 2M，无法上传，请重新选择图片</translation>
    </message>
    <message>
        <source>“%1” is not a picture of these kinds: jpg, jpeg, png, gif</source>
        <translation>“%1”不是以下格式的图片：jpg、jpeg、png、gif</translation>
    </message>
    <message>
        <source>“%1” cannot be read</source>
        <translation>无法读取“%1”</translation>
    </message>
    <message>
        <source>Saving the report…</source>
        <translation>正在保存反馈…</translation>
    </message>
    <message>
        <source>Collecting what is sent…</source>
        <translation>正在收集要发送的内容…</translation>
    </message>
    <message>
        <source>Uploading the logs…</source>
        <translation>正在上传日志…</translation>
    </message>
    <message>
        <source>Sending the report…</source>
        <translation>正在发送反馈…</translation>
    </message>
    <message>
        <source>Please select the issue type</source>
        <translation>请选择问题类型</translation>
    </message>
    <message>
        <source>Please describe the problem</source>
        <translation>请描述问题</translation>
    </message>
    <message>
        <source>The description has more than %1 characters</source>
        <translation>问题描述超过 %1 个字符</translation>
    </message>
    <message>
        <source>The pictures are being uploaded…</source>
        <translation>图片正在上传…</translation>
    </message>
    <message>
        <source>You can save the report to a file instead</source>
        <translation>您也可以将反馈保存为文件</translation>
    </message>
    <message>
        <source>Please enter contact with valid format</source>
        <translation>请输入格式正确的联系方式</translation>
    </message>
    <message>
        <source>Successfully</source>
        <translation>提交成功</translation>
    </message>
    <message>
        <source>Failed to submit, please check your network</source>
        <translation>提交失败，请检查网络</translation>
    </message>
    <message>
        <source>Save Report</source>
        <translation>保存反馈</translation>
    </message>
    <message>
        <source>Archives (*.tar.gz)</source>
        <translation>压缩包 (*.tar.gz)</translation>
    </message>
    <message>
        <source>The report is in %1</source>
        <translation>反馈已保存到 %1</translation>
    </message>
    <message>
        <source>Back to the form</source>
        <translation>返回填写</translation>
    </message>
    <message>
        <source>What is sent</source>
        <translation>将发送的内容</translation>
    </message>
    <message>
        <source>What is saved</source>
        <translation>保存的内容</translation>
    </message>
    <message>
        <source>Uploading the logs… %1 %</source>
        <translation>正在上传日志… %1 %</translation>
    </message>
    <message>
        <source>There are no logs: they could not be collected</source>
        <translation>没有日志：无法收集日志</translation>
    </message>
    <message>
        <source>The report was sent, but the logs could not be collected or uploaded</source>
        <translation>反馈已发送，但日志未能收集或上传</translation>
    </message>
    <message>
        <source>A picture could not be uploaded. Retry, or remove it</source>
        <translation>有图片上传失败，请重试或将其移除</translation>
    </message>
    <message>
        <source>There is no room for a copy of “%1” in %2</source>
        <translation>%2 中没有空间存放“%1”的副本</translation>
    </message>
</context>
<context>
    <name>FeedbackRows</name>
    <message>
        <source>Briefly describe the problem that occurs of operation</source>
        <translation>请简要描述使用中出现的问题</translation>
    </message>
    <message>
        <source>Email or phone number</source>
        <translation>邮箱或电话号码</translation>
    </message>
    <message>
        <source>Can transfer up to 9 files, single file is less than 2M. (jpg, jpeg, png, gif)</source>
        <translation>最多可上传 9 个文件，单个文件不超过 2M。（jpg、jpeg、png、gif）</translation>
    </message>
    <message>
        <source>Problem Type:</source>
        <translation>问题类型：</translation>
    </message>
    <message>
        <source>Problem Description:</source>
        <translation>问题描述：</translation>
    </message>
    <message>
        <source>You describe the more accurately, we can more accurately locate the problem</source>
        <translation>您描述得越准确，我们就越能准确地定位问题</translation>
    </message>
    <message>
        <source>Application Name:</source>
        <translation>应用名称：</translation>
    </message>
    <message>
        <source>Version:</source>
        <translation>版本号：</translation>
    </message>
    <message>
        <source>Download URL:</source>
        <translation>下载地址：</translation>
    </message>
    <message>
        <source>Screenshot:</source>
        <translation>问题截图：</translation>
    </message>
    <message>
        <source>Contact:</source>
        <translation>联系方式：</translation>
    </message>
    <message>
        <source>A picture is uploaded as soon as you have chosen it. One that you remove stays at the service.</source>
        <translation>图片在选择后会立即上传。移除后，已上传的图片仍保留在服务端。</translation>
    </message>
</context>
<context>
    <name>Fenk::AboutDialog</name>
    <message>
        <source>About %1</source>
        <translation>关于%1</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>版本 %1</translation>
    </message>
</context>
<context>
    <name>Fenk::AbstractDialog</name>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>Fenk::SearchEdit</name>
    <message>
        <source>Search</source>
        <translation>搜索</translation>
    </message>
</context>
<context>
    <name>Fenk::Spinner</name>
    <message>
        <source>Busy</source>
        <translation>忙碌</translation>
    </message>
</context>
<context>
    <name>Fenk::TitleBar</name>
    <message>
        <source>Menu</source>
        <translation>菜单</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>最小化</translation>
    </message>
    <message>
        <source>Maximize</source>
        <translation>最大化</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>还原</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>FileAssosiationsExportDialog</name>
    <message>
        <source>Export File Associations</source>
        <translation>导出文件关联</translation>
    </message>
    <message>
        <source>Checked types will open with the applications of this container.</source>
        <translation>选中的文件类型将用此容器中的应用打开。</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>导出</translation>
    </message>
    <message>
        <source>The file associations cannot be read at the moment. Please try again later.</source>
        <translation>暂时无法读取文件关联，请稍后重试。</translation>
    </message>
    <message>
        <source>No application of this container opens files or links.</source>
        <translation>此容器中没有可打开文件或链接的应用。</translation>
    </message>
</context>
<context>
    <name>FileAssosiationsListView</name>
    <message>
        <source>File associations</source>
        <translation>文件关联</translation>
    </message>
</context>
<context>
    <name>FileSelectWidget</name>
    <message>
        <source>Drop the setup program here</source>
        <translation>将安装程序拖到此处</translation>
    </message>
    <message>
        <source>Choose File...</source>
        <translation>选择文件...</translation>
    </message>
    <message>
        <source>Choose Another File...</source>
        <translation>选择其他文件...</translation>
    </message>
    <message>
        <source>Please select the installation program</source>
        <translation>请选择安装程序</translation>
    </message>
    <message>
        <source>Windows Application Programs (*.exe *.msi)</source>
        <translation>Windows 应用程序 (*.exe *.msi)</translation>
    </message>
    <message>
        <source>This is no setup program of Windows (.exe or .msi)</source>
        <translation>这不是 Windows 安装程序（.exe 或 .msi）</translation>
    </message>
</context>
<context>
    <name>FileStateRow</name>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>FontReplaceDialog</name>
    <message>
        <source>Windows font</source>
        <translation>Windows 字体</translation>
    </message>
    <message>
        <source>Font of this machine</source>
        <translation>本机字体</translation>
    </message>
    <message>
        <source>Replace a font</source>
        <translation>替换字体</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>将</translation>
    </message>
    <message>
        <source>to</source>
        <translation>替换为</translation>
    </message>
</context>
<context>
    <name>FontReplacementListView</name>
    <message>
        <source>Windows font</source>
        <translation>Windows 字体</translation>
    </message>
    <message>
        <source>Replacement</source>
        <translation>替换字体</translation>
    </message>
    <message>
        <source>Font Replacement</source>
        <translation>字体替换</translation>
    </message>
    <message>
        <source>To...</source>
        <translation>替换为……</translation>
    </message>
    <message>
        <source>Add default replacements</source>
        <translation>添加默认替换</translation>
    </message>
    <message>
        <source>Delete selected</source>
        <translation>删除所选</translation>
    </message>
    <message>
        <source>Choose the replacement</source>
        <translation>选择替换字体</translation>
    </message>
    <message>
        <source>%1 is not among the fonts of this machine. It is used only if the container has it.</source>
        <translation>本机没有字体“%1”，仅当容器中有该字体时才会使用。</translation>
    </message>
</context>
<context>
    <name>FontReplacementPage</name>
    <message>
        <source>If windows fonts don&apos;t exist, use system fonts instead.</source>
        <translation>如果 Windows 字体不存在，则使用系统字体代替。</translation>
    </message>
    <message>
        <source>Replace a font</source>
        <translation>替换字体</translation>
    </message>
    <message>
        <source>There are no fonts replaced</source>
        <translation>没有被替换的字体</translation>
    </message>
</context>
<context>
    <name>HotLabel</name>
    <message>
        <source>Recommended</source>
        <translation>推荐</translation>
    </message>
</context>
<context>
    <name>InstallProtonDialog</name>
    <message>
        <source>Install proton</source>
        <translation>安装 Proton</translation>
    </message>
    <message>
        <source>Application Status</source>
        <translation>应用状态</translation>
    </message>
    <message>
        <source>Proton Version</source>
        <translation>Proton 版本</translation>
    </message>
    <message>
        <source>The app store cannot be opened. Choose %1 as Wine version instead: it is downloaded then.</source>
        <translation>无法打开应用商店。可以改为在“Wine 版本”中选择 %1，届时会自动下载。</translation>
    </message>
    <message>
        <source>The app store cannot be opened.</source>
        <translation>无法打开应用商店。</translation>
    </message>
</context>
<context>
    <name>InstallingTips</name>
    <message>
        <source>Downloading %1</source>
        <translation>正在下载 %1</translation>
    </message>
    <message>
        <source>Unpacking %1</source>
        <translation>正在解压 %1</translation>
    </message>
    <message>
        <source>Installing %1 with winetricks</source>
        <translation>正在用 winetricks 安装 %1</translation>
    </message>
    <message>
        <source>Installing %1</source>
        <translation>正在安装 %1</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Installing %1...</source>
        <translation>正在安装 %1……</translation>
    </message>
    <message>
        <source>%1 more waiting</source>
        <translation>另有 %1 个等待中</translation>
    </message>
</context>
<context>
    <name>IntroductionEdit</name>
    <message>
        <source>(0/%1)</source>
        <translation>(0/%1)</translation>
    </message>
    <message>
        <source>(%1/%2)</source>
        <translation>(%1/%2)</translation>
    </message>
</context>
<context>
    <name>IssueTypeChoice</name>
    <message>
        <source>Retry</source>
        <translation>重试</translation>
    </message>
    <message>
        <source>Failed to get feedback type, please check your internet connection</source>
        <translation>获取问题类型失败，请检查网络连接</translation>
    </message>
</context>
<context>
    <name>LoadMethods</name>
    <message>
        <source>Native (Windows)</source>
        <translation>原装（Windows）</translation>
    </message>
    <message>
        <source>Builtin (Wine)</source>
        <translation>内建（Wine）</translation>
    </message>
    <message>
        <source>Native then Builtin</source>
        <translation>原装先于内建</translation>
    </message>
    <message>
        <source>Builtin then Native</source>
        <translation>内建先于原装</translation>
    </message>
    <message>
        <source>Disabled</source>
        <translation>已禁用</translation>
    </message>
</context>
<context>
    <name>LoadingWidget</name>
    <message>
        <source>Loading</source>
        <translation>正在加载</translation>
    </message>
</context>
<context>
    <name>LocalAppItemMenu</name>
    <message>
        <source>Edit Details</source>
        <translation>编辑详情</translation>
    </message>
    <message>
        <source>Advanced Debugging</source>
        <translation>高级调试</translation>
    </message>
    <message>
        <source>Open in Terminal</source>
        <translation>在终端中运行</translation>
    </message>
    <message>
        <source>Open folder of app</source>
        <translation>打开应用所在文件夹</translation>
    </message>
    <message>
        <source>Open c-drive</source>
        <translation>打开 C 盘</translation>
    </message>
    <message>
        <source>File Associations</source>
        <translation>文件关联</translation>
    </message>
    <message>
        <source>Registry Editor</source>
        <translation>注册表编辑器</translation>
    </message>
    <message>
        <source>Importing the registry</source>
        <translation>导入注册表</translation>
    </message>
    <message>
        <source>Internet Settings</source>
        <translation>Internet 设置</translation>
    </message>
    <message>
        <source>Quit All Apps</source>
        <translation>退出所有应用</translation>
    </message>
    <message>
        <source>Translator</source>
        <translation>转译器</translation>
    </message>
    <message>
        <source>Packaged apps</source>
        <translation>打包应用</translation>
    </message>
    <message>
        <source>Dump Manifest</source>
        <translation>导出清单</translation>
    </message>
    <message>
        <source>Create Desktop Icon</source>
        <translation>创建桌面图标</translation>
    </message>
    <message>
        <source>Feedback</source>
        <translation>反馈</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>修复</translation>
    </message>
    <message>
        <source>Quick Tools</source>
        <translation>快捷工具</translation>
    </message>
    <message>
        <source>The program is running</source>
        <translation>应用正在运行</translation>
    </message>
    <message>
        <source>The bottle service has not answered yet. Please open the menu again.</source>
        <translation>容器服务尚未响应，请重新打开菜单。</translation>
    </message>
    <message>
        <source>Uninstall</source>
        <translation>卸载</translation>
    </message>
    <message>
        <source>Back Up…</source>
        <translation>备份…</translation>
    </message>
    <message>
        <source>Package Removed…</source>
        <translation>软件包已卸载…</translation>
    </message>
</context>
<context>
    <name>LocalAppItemWidget</name>
    <message>
        <source>Options</source>
        <translation>选项</translation>
    </message>
    <message>
        <source>Options of %1</source>
        <translation>“%1”的选项</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>正在运行</translation>
    </message>
    <message>
        <source>%1 is on the desktop now.</source>
        <translation>“%1”的图标已放到桌面。</translation>
    </message>
    <message>
        <source>No icon of %1 could be put on the desktop.</source>
        <translation>无法将“%1”的图标放到桌面。</translation>
    </message>
    <message>
        <source>%1 is in the menu of programs now.</source>
        <translation>“%1”已添加到应用菜单。</translation>
    </message>
    <message>
        <source>%1 cannot be removed now: its container cannot be found.</source>
        <translation>暂时无法移除“%1”：找不到它所在的容器。</translation>
    </message>
</context>
<context>
    <name>LogFileEdit</name>
    <message>
        <source>Please select the path to save log files</source>
        <translation>请选择日志文件的保存路径</translation>
    </message>
    <message>
        <source>Log files</source>
        <translation>日志文件</translation>
    </message>
    <message>
        <source>Choose a file</source>
        <translation>选择文件</translation>
    </message>
    <message>
        <source>Log files (*.log)</source>
        <translation>日志文件 (*.log)</translation>
    </message>
    <message>
        <source>Unnamed</source>
        <translation>未命名</translation>
    </message>
    <message>
        <source>There is no such folder</source>
        <translation>没有这个文件夹</translation>
    </message>
</context>
<context>
    <name>LogsWidget</name>
    <message>
        <source>The oldest lines were dropped: %1</source>
        <translation>已丢弃最早的行：%1</translation>
    </message>
    <message>
        <source>The log was saved to %1</source>
        <translation>日志已保存到 %1</translation>
    </message>
    <message>
        <source>The log could not be saved to %1: %2</source>
        <translation>无法将日志保存到 %1：%2</translation>
    </message>
    <message>
        <source>Save the log</source>
        <translation>保存日志</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Select all</source>
        <translation>全选</translation>
    </message>
    <message>
        <source>Save...</source>
        <translation>保存…</translation>
    </message>
</context>
<context>
    <name>Main</name>
    <message>
        <source>Cellarix</source>
        <translation>Cellarix</translation>
    </message>
    <message>
        <source>Cellarix is a tool for running/packing Windows applications. It supports running Windows applications directly and packing Windows applications into deb format.</source>
        <translation>Cellarix 用于运行和打包 Windows 应用：可以直接运行，也可以将其打包为 deb 格式。</translation>
    </message>
    <message>
        <source>Open url with bottles configure dialog for debugging</source>
        <translation>打开文件并显示容器配置窗口，以便调试</translation>
    </message>
    <message>
        <source>Fix program by installing components</source>
        <translation>安装组件以修复应用</translation>
    </message>
    <message>
        <source>Open file with specified bottles and extension</source>
        <translation>以指定的容器和扩展名打开文件</translation>
    </message>
    <message>
        <source>Update the base envrionment for all apps</source>
        <translation>更新所有应用的基础环境</translation>
    </message>
    <message>
        <source>Run as DBus service without UI</source>
        <translation>以 D-Bus 服务方式运行，不显示界面</translation>
    </message>
    <message>
        <source>Service Agreement</source>
        <translation>《服务协议》</translation>
    </message>
</context>
<context>
    <name>MaintainerFields</name>
    <message>
        <source>Your name</source>
        <translation>您的姓名</translation>
    </message>
    <message>
        <source>Your e-mail address</source>
        <translation>您的电子邮箱地址</translation>
    </message>
    <message>
        <source>Your input is not a valid e-mail address</source>
        <translation>您输入的电子邮箱地址无效</translation>
    </message>
</context>
<context>
    <name>Mainwindow</name>
    <message>
        <source>Forums</source>
        <translation>论坛</translation>
    </message>
    <message>
        <source>Feedback</source>
        <translation>反馈</translation>
    </message>
    <message>
        <source>The clipboard has no file and no address of a program.</source>
        <translation>剪贴板中没有程序文件，也没有程序的下载地址。</translation>
    </message>
</context>
<context>
    <name>ManifestCommandList</name>
    <message>
        <source>The setup runs a command in the container</source>
        <translation>安装时将在容器中运行 1 条命令</translation>
    </message>
    <message>
        <source>The setup runs %1 commands in the container</source>
        <translation>安装时将在容器中运行 %1 条命令</translation>
    </message>
</context>
<context>
    <name>MissingComponentsDialog</name>
    <message>
        <source>Components may can&apos;t be installed in offline</source>
        <translation>部分组件可能无法离线安装</translation>
    </message>
    <message>
        <source>One or more components are missing dependencies and cannot be installed in offline mode: %1</source>
        <translation>以下组件缺少依赖，无法在离线模式下安装：%1</translation>
    </message>
    <message>
        <source>Show Logs</source>
        <translation>查看日志</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>The log could not be written to %1.</source>
        <translation>无法将日志写入 %1。</translation>
    </message>
    <message>
        <source>The log is in the file %1.</source>
        <translation>日志位于文件 %1。</translation>
    </message>
</context>
<context>
    <name>NameEditor</name>
    <message>
        <source>Edit application name</source>
        <translation>修改应用名称</translation>
    </message>
    <message>
        <source>App Name</source>
        <translation>应用名称</translation>
    </message>
</context>
<context>
    <name>OfferedComponent</name>
    <message>
        <source>at least %1</source>
        <translation>至少 %1</translation>
    </message>
    <message>
        <source>size unknown</source>
        <translation>大小未知</translation>
    </message>
</context>
<context>
    <name>OfflineComponentState</name>
    <message>
        <source>Downloading %1</source>
        <translation>正在下载 %1</translation>
    </message>
    <message>
        <source>Exported</source>
        <translation>已导出</translation>
    </message>
    <message>
        <source>Imported</source>
        <translation>已导入</translation>
    </message>
    <message>
        <source>Exporting</source>
        <translation>正在导出</translation>
    </message>
    <message>
        <source>Importing</source>
        <translation>正在导入</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>失败</translation>
    </message>
</context>
<context>
    <name>OfflineComponentsDialog</name>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Offline Components</source>
        <translation>离线组件</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>重试</translation>
    </message>
    <message>
        <source>%1 is not there any more.</source>
        <translation>%1 已不存在。</translation>
    </message>
</context>
<context>
    <name>OfflineComponentsExportDialog</name>
    <message>
        <source>Export Components</source>
        <translation>导出组件</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>导出</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>No installed components to export</source>
        <translation>没有可导出的已安装组件</translation>
    </message>
    <message>
        <source>Select Save Directory</source>
        <translation>选择保存目录</translation>
    </message>
    <message>
        <source>The components are in %1.</source>
        <translation>组件已保存到 %1。</translation>
    </message>
</context>
<context>
    <name>OfflineComponentsHeaderView</name>
    <message>
        <source>Select all</source>
        <translation>全选</translation>
    </message>
    <message>
        <source>All components are selected</source>
        <translation>已选择全部组件</translation>
    </message>
    <message>
        <source>Some components are selected</source>
        <translation>已选择部分组件</translation>
    </message>
    <message>
        <source>No component is selected</source>
        <translation>未选择任何组件</translation>
    </message>
</context>
<context>
    <name>OfflineComponentsImportDialog</name>
    <message>
        <source>Import Components</source>
        <translation>导入组件</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Select Manually</source>
        <translation>手动选择</translation>
    </message>
    <message>
        <source>Please select components to import manually</source>
        <translation>请手动选择要导入的组件</translation>
    </message>
    <message>
        <source>Select Components exported</source>
        <translation>选择已导出的组件</translation>
    </message>
    <message>
        <source>Exported Components (*.tar)</source>
        <translation>已导出的组件 (*.tar)</translation>
    </message>
    <message>
        <source>Components can only be installed while nothing runs in the container. These programs have to be closed first: what has not been saved in them will be lost.</source>
        <translation>只有容器中没有程序运行时才能安装组件。必须先关闭以下程序，其中未保存的内容将会丢失。</translation>
    </message>
</context>
<context>
    <name>OfflineComponentsListView</name>
    <message>
        <source>Offline Components</source>
        <translation>离线组件</translation>
    </message>
</context>
<context>
    <name>OfflineComponentsModel</name>
    <message>
        <source>Select %1</source>
        <translation>选择 %1</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>Components Name</source>
        <translation>组件名称</translation>
    </message>
    <message>
        <source>Component is needed by %1</source>
        <translation>%1 需要此组件</translation>
    </message>
</context>
<context>
    <name>OpenRefusal</name>
    <message>
        <source>It is not a Windows program.</source>
        <translation>该文件不是 Windows 程序。</translation>
    </message>
    <message>
        <source>Cellarix runs programs and installers, such as .exe and .msi files.</source>
        <translation>Cellarix 可运行 .exe、.msi 等程序和安装包。</translation>
    </message>
    <message>
        <source>It is an archive, not a program.</source>
        <translation>该文件是压缩包，不是程序。</translation>
    </message>
    <message>
        <source>Unpack it first, then open the program inside.</source>
        <translation>请先解压，再打开其中的程序。</translation>
    </message>
    <message>
        <source>It is a web page under the name of a program: the download has failed.</source>
        <translation>该文件名为程序，内容却是网页，可能是下载失败所致。</translation>
    </message>
    <message>
        <source>Download the program again.</source>
        <translation>请重新下载该程序。</translation>
    </message>
    <message>
        <source>It is a program for Linux, not for Windows.</source>
        <translation>该文件是 Linux 程序，不是 Windows 程序。</translation>
    </message>
    <message>
        <source>Start it without Cellarix.</source>
        <translation>请直接运行，无需使用 Cellarix。</translation>
    </message>
    <message>
        <source>It is a Windows Installer package, but its name does not say so.</source>
        <translation>该文件是 Windows Installer 安装包，但扩展名不正确。</translation>
    </message>
    <message>
        <source>Rename it so that it ends in .msi (.msp for a patch), then open it again.</source>
        <translation>请将扩展名改为 .msi（补丁为 .msp），然后重新打开。</translation>
    </message>
    <message>
        <source>It is a DOS program, and Wine runs programs for Windows.</source>
        <translation>该文件是 DOS 程序，Wine 只能运行 Windows 程序。</translation>
    </message>
    <message>
        <source>Run it in an emulator such as DOSBox.</source>
        <translation>请使用 DOSBox 等模拟器运行。</translation>
    </message>
    <message>
        <source>It is a 16-bit program for old Windows versions, which 64-bit Wine does not run.</source>
        <translation>该文件是旧版 Windows 的 16 位程序，64 位 Wine 无法运行。</translation>
    </message>
    <message>
        <source>Install 32-bit Wine (the package wine32), or look for a newer version of the program.</source>
        <translation>请安装 32 位 Wine（软件包 wine32），或使用该程序的较新版本。</translation>
    </message>
    <message>
        <source>It is a program for OS/2, not for Windows.</source>
        <translation>该文件是 OS/2 程序，不是 Windows 程序。</translation>
    </message>
    <message>
        <source>Look for a version for Windows.</source>
        <translation>请获取该程序的 Windows 版本。</translation>
    </message>
    <message>
        <source>It is made for Windows on ARM, and this computer has another kind of processor.</source>
        <translation>该程序适用于 ARM 版 Windows，与本机的处理器架构不符。</translation>
    </message>
    <message>
        <source>Download the version for x64 or x86.</source>
        <translation>请下载 x64 或 x86 版本。</translation>
    </message>
    <message>
        <source>It is made for another kind of processor.</source>
        <translation>该程序适用于其他架构的处理器。</translation>
    </message>
    <message>
        <source>It is a library (DLL): a part of a program, which cannot be started by itself.</source>
        <translation>该文件是动态链接库（DLL），属于某个程序的一部分，不能单独运行。</translation>
    </message>
    <message>
        <source>Open the program that it belongs to.</source>
        <translation>请打开它所属的程序。</translation>
    </message>
    <message>
        <source>It is a driver or a part of Windows itself, which Wine cannot run.</source>
        <translation>该文件是驱动程序或 Windows 系统组件，Wine 无法运行。</translation>
    </message>
    <message>
        <source>Devices need a driver for Linux.</source>
        <translation>硬件设备需要安装 Linux 驱动程序。</translation>
    </message>
    <message>
        <source>It is a program for the computer&apos;s firmware (EFI), not for Windows.</source>
        <translation>该文件是计算机固件（EFI）程序，不是 Windows 程序。</translation>
    </message>
    <message>
        <source>The end of the file is missing: it was not downloaded or copied completely.</source>
        <translation>文件不完整，可能未下载或复制完毕。</translation>
    </message>
    <message>
        <source>Download or copy it again.</source>
        <translation>请重新下载或复制。</translation>
    </message>
    <message>
        <source>Its name or path contains a line break or another control character, which Windows does not allow.</source>
        <translation>文件名或路径中含有换行符或其他控制字符，Windows 不支持。</translation>
    </message>
    <message>
        <source>Rename the file or its folder, then open it again.</source>
        <translation>请重命名文件或其所在文件夹，然后重新打开。</translation>
    </message>
    <message>
        <source>Its name is not valid text (UTF-8).</source>
        <translation>文件名不是有效的 UTF-8 文本。</translation>
    </message>
    <message>
        <source>It is a link to a file that is not there.</source>
        <translation>该链接指向的文件不存在。</translation>
    </message>
    <message>
        <source>It may have been moved, renamed or deleted.</source>
        <translation>文件可能已被移动、重命名或删除。</translation>
    </message>
    <message>
        <source>There is no such file.</source>
        <translation>文件不存在。</translation>
    </message>
    <message>
        <source>It is a folder.</source>
        <translation>这是一个文件夹。</translation>
    </message>
    <message>
        <source>It is a device or a pipe, not a file.</source>
        <translation>这是设备或管道，不是普通文件。</translation>
    </message>
    <message>
        <source>The file is empty.</source>
        <translation>文件为空。</translation>
    </message>
    <message>
        <source>You do not have the right to read this file.</source>
        <translation>您没有读取该文件的权限。</translation>
    </message>
    <message>
        <source>Change its permissions, or have its owner copy it for you.</source>
        <translation>请修改文件权限，或请文件所有者为您复制一份。</translation>
    </message>
    <message>
        <source>Batch files are run from within Cellarix only.</source>
        <translation>批处理文件只能在 Cellarix 窗口中运行。</translation>
    </message>
    <message>
        <source>Drop the file on the window of Cellarix.</source>
        <translation>请将文件拖放到 Cellarix 窗口。</translation>
    </message>
    <message>
        <source>It is a patch for an installed program.</source>
        <translation>该文件是已安装程序的补丁。</translation>
    </message>
    <message>
        <source>Open it with &quot;cellarix --debug&quot; and run it in the window that comes up.</source>
        <translation>请使用“cellarix --debug”打开，并在弹出的窗口中运行。</translation>
    </message>
    <message>
        <source>Programs cannot be started</source>
        <translation>无法启动程序</translation>
    </message>
    <message>
        <source>Nothing can be written into %1, where Cellarix keeps its programs.</source>
        <translation>无法写入 %1，Cellarix 的程序存放于此。</translation>
    </message>
    <message>
        <source>Make this folder writable for you, then try again.</source>
        <translation>请为该文件夹添加写入权限，然后重试。</translation>
    </message>
    <message>
        <source>Rename it so that it ends in .bat, then drop it on the window of Cellarix.</source>
        <translation>请将其扩展名改为 .bat，再拖到 Cellarix 窗口中。</translation>
    </message>
    <message>
        <source>It is a shortcut of Windows, not a program.</source>
        <translation>这是 Windows 快捷方式，不是程序。</translation>
    </message>
    <message>
        <source>Open the program inside, or drop the folder on the window of Cellarix.</source>
        <translation>请打开其中的程序，或将文件夹拖放到 Cellarix 窗口。</translation>
    </message>
</context>
<context>
    <name>OrphanQuestion</name>
    <message>
        <source>%1 cannot be started: its files belonged to the package %2, which has been removed. Install the package again, or remove what is left of the program.</source>
        <translation>无法启动 %1：它的文件属于软件包 %2，该软件包已被卸载。请重新安装该软件包，或删除程序的残留内容。</translation>
    </message>
    <message>
        <source>The package %2 that %1 came with has been removed. The program can still be started, but it is not updated any more.</source>
        <translation>%1 来自软件包 %2，该软件包已被卸载。程序仍可启动，但不再更新。</translation>
    </message>
    <message>
        <source>&quot;Remove&quot; deletes its container, with what you have made in it. &quot;Keep as My Own&quot; makes it a container like any other: the package, when it is installed again, gets a new one.</source>
        <translation>“删除”会删除它的容器以及您保存在其中的内容。“保留为自己的容器”会使它成为普通容器：软件包再次安装时会使用新的容器。</translation>
    </message>
    <message>
        <source>Package Removed</source>
        <translation>软件包已卸载</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Remove…</source>
        <translation>删除…</translation>
    </message>
    <message>
        <source>Keep as My Own</source>
        <translation>保留为自己的容器</translation>
    </message>
    <message>
        <source>&quot;Remove&quot; deletes its container, with what you have made in it.</source>
        <translation>“删除”会删除它的容器以及您保存在其中的内容。</translation>
    </message>
    <message>
        <source>The container of %1 is being made your own: it gets copies of what it shared with the package %2. This can take some minutes.</source>
        <translation>正在将 %1 的容器转为您自己的容器：与软件包 %2 共用的文件正在复制到其中，可能需要几分钟。</translation>
    </message>
</context>
<context>
    <name>PackageContentsWidget</name>
    <message>
        <source>Other private files</source>
        <translation>其他私密文件</translation>
    </message>
    <message>
        <source>Passwords, keys and log-ins</source>
        <translation>密码、密钥和登录信息</translation>
    </message>
    <message>
        <source>Personal folders and recent documents</source>
        <translation>个人文件夹和最近使用的文档</translation>
    </message>
    <message>
        <source>Logs, caches and temporary files</source>
        <translation>日志、缓存和临时文件</translation>
    </message>
    <message>
        <source>Profiles of other users</source>
        <translation>其他用户的配置文件夹</translation>
    </message>
    <message>
        <source>Private values of the registry</source>
        <translation>注册表中的私密值</translation>
    </message>
    <message>
        <source>Links that lead out of the bottle</source>
        <translation>指向容器之外的链接</translation>
    </message>
    <message>
        <source>Pipes, sockets and devices</source>
        <translation>管道、套接字和设备文件</translation>
    </message>
    <message>
        <source>What goes along</source>
        <translation>打包内容</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Put away details</source>
        <translation>收起详情</translation>
    </message>
    <message>
        <source>Show details</source>
        <translation>显示详情</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>重试</translation>
    </message>
    <message>
        <source>Listing the files…</source>
        <translation>正在列出文件…</translation>
    </message>
    <message>
        <source>What goes along: %1</source>
        <translation>打包内容：%1</translation>
    </message>
    <message>
        <source>Before compression. Private entries that are left out: %1.</source>
        <translation>压缩前的大小。不会打包的私密条目：%1 个。</translation>
    </message>
    <message>
        <source>The files were not listed</source>
        <translation>未列出文件</translation>
    </message>
    <message>
        <source>Included</source>
        <translation>会打包</translation>
    </message>
    <message>
        <source>Copies from runners and templates</source>
        <translation>来自运行器和模板的副本</translation>
    </message>
    <message>
        <source>Left out</source>
        <translation>不会打包</translation>
    </message>
    <message>
        <source>Files of Wine, which each machine has</source>
        <translation>各电脑自带的 Wine 文件</translation>
    </message>
</context>
<context>
    <name>PackageEntryWidget</name>
    <message>
        <source>Only the program file</source>
        <translation>仅打包程序文件</translation>
    </message>
    <message>
        <source>Choose a folder that goes along</source>
        <translation>选择一起打包的文件夹</translation>
    </message>
    <message>
        <source>Add to the package</source>
        <translation>添加到软件包</translation>
    </message>
    <message>
        <source>Leave out of the package</source>
        <translation>不放入软件包</translation>
    </message>
    <message>
        <source>It is in the bottle</source>
        <translation>已在容器中</translation>
    </message>
    <message>
        <source>Only the program</source>
        <translation>仅打包程序</translation>
    </message>
    <message>
        <source>With the folder %1</source>
        <translation>包含文件夹 %1</translation>
    </message>
</context>
<context>
    <name>PathLink</name>
    <message>
        <source>Opens the folder of the application</source>
        <translation>打开应用所在的文件夹</translation>
    </message>
</context>
<context>
    <name>PortableCheck</name>
    <message>
        <source>There is no Windows program (.exe) in it.</source>
        <translation>其中没有 Windows 程序（.exe）。</translation>
    </message>
    <message>
        <source>It is damaged, or no zip archive.</source>
        <translation>文件已损坏，或者不是 zip 压缩包。</translation>
    </message>
    <message>
        <source>It is protected by a password. Unpack it, then add the folder.</source>
        <translation>它有密码保护。请先解压，再添加解压后的文件夹。</translation>
    </message>
    <message>
        <source>It holds more than one program: choose the program&apos;s own folder.</source>
        <translation>该目录包含的不只是一个程序，请选择程序自己的目录。</translation>
    </message>
</context>
<context>
    <name>PortableProgram</name>
    <message>
        <source>%1 was not added.</source>
        <translation>未添加 %1。</translation>
    </message>
    <message>
        <source>None of the files in it is a program that could be started.</source>
        <translation>其中没有可以启动的程序。</translation>
    </message>
    <message>
        <source>Choose Programs of %1</source>
        <translation>选择 %1 中的程序</translation>
    </message>
    <message>
        <source>%1 could not be added: %2</source>
        <translation>无法添加 %1：%2</translation>
    </message>
    <message>
        <source>In the library: %1</source>
        <translation>已添加到应用库：%1</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>The library also shows a program of %1 that was not chosen.</source>
        <translation>应用库中还显示了 %1 中一个未选择的程序。</translation>
    </message>
    <message>
        <source>It could not be removed: %1</source>
        <translation>无法将其移除：%1</translation>
    </message>
    <message>
        <source>The copy of %1 stays in the library.</source>
        <translation>%1 的副本仍保留在应用库中。</translation>
    </message>
</context>
<context>
    <name>ProblemReport</name>
    <message>
        <source>not known</source>
        <translation>未知</translation>
    </message>
    <message>
        <source>nothing</source>
        <translation>无</translation>
    </message>
    <message>
        <source>Program: %1</source>
        <translation>程序：%1</translation>
    </message>
    <message>
        <source>Diagnosis: %1</source>
        <translation>诊断：%1</translation>
    </message>
    <message>
        <source>Wine: %1 (%2)</source>
        <translation>Wine：%1（%2）</translation>
    </message>
    <message>
        <source>System: %1</source>
        <translation>系统：%1</translation>
    </message>
    <message>
        <source>Session: %1</source>
        <translation>会话：%1</translation>
    </message>
    <message>
        <source>Graphics: %1</source>
        <translation>显卡：%1</translation>
    </message>
    <message>
        <source>What was tried:</source>
        <translation>已尝试的修复：</translation>
    </message>
    <message>
        <source>Log:</source>
        <translation>日志：</translation>
    </message>
</context>
<context>
    <name>ProgramAppFixer</name>
    <message>
        <source>Cellarix</source>
        <translation>Cellarix</translation>
    </message>
    <message>
        <source>View</source>
        <translation>查看</translation>
    </message>
    <message>
        <source>The program %1 is running abnormally, you can try to fix it</source>
        <translation>应用“%1”运行异常，可以尝试修复</translation>
    </message>
</context>
<context>
    <name>ProgramDetails</name>
    <message>
        <source>The details of this application cannot be read at the moment. Please try again later.</source>
        <translation>暂时无法读取此应用的信息，请稍后重试。</translation>
    </message>
    <message>
        <source>This application has been removed meanwhile.</source>
        <translation>此应用已被移除。</translation>
    </message>
    <message>
        <source>%1 holds no picture that can serve as an icon. Please choose a picture of at most 16 MB and 4096 pixels.</source>
        <translation>“%1”不能用作图标，请选择 16 MB、4096 像素以内的图片。</translation>
    </message>
    <message>
        <source>This application has been removed meanwhile, so nothing was saved.</source>
        <translation>此应用已被移除，未保存任何更改。</translation>
    </message>
    <message>
        <source>The change could not be saved. Please try again later.</source>
        <translation>更改未能保存，请稍后重试。</translation>
    </message>
    <message>
        <source>The container of this application cannot be found.</source>
        <translation>找不到此应用的容器。</translation>
    </message>
    <message>
        <source>The folder of this application is no longer there.</source>
        <translation>此应用的文件夹已不存在。</translation>
    </message>
    <message>
        <source>The drawing %1 is too large or too intricate for an icon. Please choose another picture.</source>
        <translation>矢量图“%1”过大或过于复杂，不能用作图标。请选择其他图片。</translation>
    </message>
</context>
<context>
    <name>ProgramStarts</name>
    <message>
        <source>The launch script cannot be run. Please install Cellarix again.</source>
        <translation>无法运行启动脚本，请重新安装 Cellarix。</translation>
    </message>
    <message>
        <source>%1 could not be started: its container cannot be found.</source>
        <translation>无法启动“%1”：找不到它所在的容器。</translation>
    </message>
</context>
<context>
    <name>ProgramTrials</name>
    <message>
        <source>The parameters could not be saved: %1</source>
        <translation>无法保存参数：%1</translation>
    </message>
    <message>
        <source>The application is no longer in this container.</source>
        <translation>此容器中已没有该应用。</translation>
    </message>
</context>
<context>
    <name>ProtonItemRow</name>
    <message>
        <source>installed</source>
        <translation>已安装</translation>
    </message>
    <message>
        <source>not installed</source>
        <translation>未安装</translation>
    </message>
    <message>
        <source>View</source>
        <translation>查看</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>安装</translation>
    </message>
</context>
<context>
    <name>RefreshWidget</name>
    <message>
        <source>The applications could not be fetched from the store.</source>
        <translation>无法从商店获取应用。</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>重试</translation>
    </message>
    <message>
        <source>Check the network connection, then try again.</source>
        <translation>请检查网络连接，然后重试。</translation>
    </message>
</context>
<context>
    <name>RefusalNotice</name>
    <message>
        <source>&quot;%1&quot; cannot be opened</source>
        <translation>无法打开“%1”</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>RemovalQuestion</name>
    <message>
        <source>Uninstalling the application deletes the application container and all files and configuration information within the container!</source>
        <translation>卸载此应用会删除它的容器，以及其中的所有文件和配置信息！</translation>
    </message>
    <message>
        <source>There are multiple application shortcuts in the current application container, this operation deletes only the currently selected application shortcut!</source>
        <translation>此容器中有多个应用快捷方式，本次操作只删除所选的快捷方式！</translation>
    </message>
    <message>
        <source>Cancel Uninstall</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Cancel Delete</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Confirm Uninstall</source>
        <translation>卸载</translation>
    </message>
    <message>
        <source>Confirm Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>%1 could not be removed. It is still there.</source>
        <translation>未能移除“%1”，它仍在应用列表中。</translation>
    </message>
    <message>
        <source>%1 is removed, but its container could not be deleted.</source>
        <translation>“%1”已移除，但其容器未能删除。</translation>
    </message>
    <message>
        <source>Important Information</source>
        <comment>uninstall</comment>
        <translation>卸载“%1”？</translation>
    </message>
    <message>
        <source>Important Information</source>
        <comment>delete</comment>
        <translation>删除“%1”？</translation>
    </message>
    <message>
        <source>The program is running and will be closed.</source>
        <translation>该应用正在运行，将被关闭。</translation>
    </message>
    <message>
        <source>Your file %1 stays.</source>
        <translation>您的文件“%1”会保留。</translation>
    </message>
    <message>
        <source>The container (%1) will be deleted.</source>
        <translation>容器（%1）将被删除。</translation>
    </message>
    <message>
        <source>The container will be deleted.</source>
        <translation>容器将被删除。</translation>
    </message>
    <message numerus="yes">
        <source>The container (%1) will be deleted with its %n programs.</source>
        <translation>
            <numerusform>容器（%1）及其中的 %n 个程序将被删除。</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RenewBottleStep</name>
    <message>
        <source>Renewing the files of Windows in the container</source>
        <translation>正在修复容器中的 Windows 文件</translation>
    </message>
    <message>
        <source>The container could not be renewed: %1</source>
        <translation>容器修复失败：%1</translation>
    </message>
    <message>
        <source>Files of Windows renewed: %1</source>
        <translation>已修复的 Windows 文件：%1 个</translation>
    </message>
</context>
<context>
    <name>RepairAssistant</name>
    <message>
        <source>%1 could not be installed.</source>
        <translation>%1 安装失败。</translation>
    </message>
    <message>
        <source>%1 could not be installed: %2</source>
        <translation>%1 安装失败：%2</translation>
    </message>
    <message>
        <source>Choose %1</source>
        <translation>选择 %1</translation>
    </message>
    <message>
        <source>Installers</source>
        <translation>安装文件</translation>
    </message>
    <message>
        <source>All files</source>
        <translation>所有文件</translation>
    </message>
    <message>
        <source>Checking %1</source>
        <translation>正在检查 %1</translation>
    </message>
    <message>
        <source>%1 was chosen by hand.</source>
        <translation>已使用您选择的 %1。</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Choose Again</source>
        <translation>重新选择</translation>
    </message>
    <message>
        <source>%1 was installed.</source>
        <translation>%1 已安装。</translation>
    </message>
    <message>
        <source>This File Cannot Be Used</source>
        <translation>无法使用此文件</translation>
    </message>
</context>
<context>
    <name>RepairOffer</name>
    <message>
        <source>%1 (%2) has been fetched already.</source>
        <translation>%1（%2）已下载。</translation>
    </message>
    <message>
        <source>It is not known where %1 can be had.</source>
        <translation>未找到 %1 的下载地址。</translation>
    </message>
    <message>
        <source>%1 (%2) comes from %3.</source>
        <translation>%1（%2）将从 %3 下载。</translation>
    </message>
    <message>
        <source>%1 comes from %2; its size is not known yet.</source>
        <translation>%1 将从 %2 下载，大小未知。</translation>
    </message>
    <message>
        <source>%1 cannot be installed.</source>
        <translation>无法安装 %1。</translation>
    </message>
    <message>
        <source>Repair installs %1.</source>
        <translation>“修复”将安装 %1。</translation>
    </message>
    <message>
        <source>%1 is installed first.</source>
        <translation>将先安装 %1。</translation>
    </message>
    <message>
        <source>The tool winetricks installs it (as &quot;%1&quot;) and fetches what it needs.</source>
        <translation>由 winetricks 工具安装（%1），所需文件由该工具下载。</translation>
    </message>
    <message>
        <source>Repair puts fonts of this system in the place of %1.</source>
        <translation>“修复”将用本机字体替代 %1。</translation>
    </message>
    <message>
        <source>Repair renews Wine&apos;s own files in the bottle. Programs and files stay.</source>
        <translation>“修复”将更新容器中 Wine 自带的文件，您的应用和文件不受影响。</translation>
    </message>
    <message>
        <source>Repair starts the program once more.</source>
        <translation>“修复”将重新启动应用。</translation>
    </message>
</context>
<context>
    <name>ReportAccess</name>
    <message>
        <source>This version has no address to send to.</source>
        <translation>此版本没有设置接收地址。</translation>
    </message>
    <message>
        <source>The address of the report service is not a web address.</source>
        <translation>报告服务的地址不是网址。</translation>
    </message>
    <message>
        <source>The secret that the report service asks for is missing.</source>
        <translation>缺少报告服务所要求的密钥。</translation>
    </message>
</context>
<context>
    <name>ReportSaver</name>
    <message>
        <source>The program “tar” is missing.</source>
        <translation>缺少程序“tar”。</translation>
    </message>
    <message>
        <source>The report could not be packed.</source>
        <translation>无法打包反馈。</translation>
    </message>
    <message>
        <source>The report could not be written to %1: %2</source>
        <translation>无法将反馈写入 %1：%2</translation>
    </message>
    <message>
        <source>There is no room for the parts of the report.</source>
        <translation>磁盘空间不足，无法整理反馈的内容。</translation>
    </message>
</context>
<context>
    <name>ResettableRow</name>
    <message>
        <source>Reset</source>
        <translation>重置</translation>
    </message>
    <message>
        <source>Reset %1</source>
        <translation>重置%1</translation>
    </message>
</context>
<context>
    <name>RunStateButton</name>
    <message>
        <source> Quit</source>
        <translation> 退出</translation>
    </message>
    <message>
        <source>Installing</source>
        <translation>安装中</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>运行</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>修复</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>安装</translation>
    </message>
</context>
<context>
    <name>Runner32Step</name>
    <message>
        <source>%1 could not be downloaded: %2</source>
        <translation>%1 下载失败：%2</translation>
    </message>
    <message>
        <source>Switching the container to %1</source>
        <translation>正在将容器切换到 %1</translation>
    </message>
    <message>
        <source>The container could not be switched to %1: %2</source>
        <translation>无法将容器切换到 %1：%2</translation>
    </message>
    <message>
        <source>The background service has ended meanwhile. Try again.</source>
        <translation>后台服务已中途退出，请重试。</translation>
    </message>
</context>
<context>
    <name>RunningLogsDialog</name>
    <message>
        <source>Running Logs</source>
        <translation>运行日志</translation>
    </message>
    <message>
        <source>Copy Report</source>
        <translation>复制报告</translation>
    </message>
    <message>
        <source>The log, what was tried and what this computer runs, without your name</source>
        <translation>包含日志、已尝试的修复和本机环境，不含您的用户名</translation>
    </message>
    <message>
        <source>Save...</source>
        <translation>保存…</translation>
    </message>
    <message>
        <source>Save the log</source>
        <translation>保存日志</translation>
    </message>
    <message>
        <source>The report was copied</source>
        <translation>报告已复制</translation>
    </message>
</context>
<context>
    <name>RunningProgramsQuestion</name>
    <message>
        <source>Programs Are Running</source>
        <translation>有应用正在运行</translation>
    </message>
    <message>
        <source>The repair changes the container of %1, and these programs are running in it. They have to be closed first: what has not been saved in them will be lost.</source>
        <translation>修复需要更改“%1”的容器，而以下应用正在其中运行。继续前需要先关闭它们，未保存的内容将会丢失。</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>以及其他 %1 个</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Close them and continue</source>
        <translation>关闭并继续</translation>
    </message>
</context>
<context>
    <name>ScanDialog</name>
    <message>
        <source>These overrides would be changed:</source>
        <translation>将更改以下 DLL 覆盖：</translation>
    </message>
    <message>
        <source>All</source>
        <translation>全部</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Load method</source>
        <translation>加载方式</translation>
    </message>
    <message>
        <source>%1 → %2</source>
        <translation>%1 → %2</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>应用</translation>
    </message>
</context>
<context>
    <name>SentPage</name>
    <message>
        <source>Send the logs</source>
        <translation>发送日志</translation>
    </message>
    <message>
        <source>Save the logs</source>
        <translation>保存日志</translation>
    </message>
    <message>
        <source>Picture %1</source>
        <translation>图片 %1</translation>
    </message>
    <message>
        <source>Report</source>
        <translation>反馈</translation>
    </message>
    <message>
        <source>About this computer</source>
        <translation>关于此计算机</translation>
    </message>
    <message>
        <source>This goes into the file that you save; nothing is sent. Names of you and of your computer, and passwords in addresses, are taken out of the logs.</source>
        <translation>以下内容将写入您保存的文件，不会发送任何内容。日志中您和本机的名称以及网址中的密码已被去除。</translation>
    </message>
    <message>
        <source>“Submit” sends this to %1, with the time and a signature; the logs go to a storage that it names. Names of you and of your computer, and passwords in addresses, are taken out of the logs.</source>
        <translation>点击“提交”后，以下内容将连同时间和签名发送到 %1；日志会上传到该服务指定的存储位置。日志中您和本机的名称以及网址中的密码已被去除。</translation>
    </message>
    <message>
        <source>“Save Report…” writes report.json, the pictures and the logs into a file.</source>
        <translation>“保存反馈…”会将 report.json、图片和日志写入一个文件。</translation>
    </message>
    <message>
        <source>Sent already: “About this computer”, when the form was opened, and the pictures. One that you remove stays at the service.</source>
        <translation>已经发送：打开表单时发送的“关于此计算机”信息，以及图片。移除后，已上传的图片仍保留在服务端。</translation>
    </message>
    <message>
        <source>Sent already: “About this computer”, when the form was opened.</source>
        <translation>已经发送：打开表单时发送的“关于此计算机”信息。</translation>
    </message>
    <message>
        <source>Goes with each request: for the problem types, with the report, and for the address of each upload, which also says “wineAssist”, what it is (“image” or “attach”) and how its file&apos;s name ends. X-Wine-Ver, X-Windows-Ver and X-Simulator-Ver go with the report only.</source>
        <translation>随每个请求发送：获取问题类型、提交反馈，以及每次请求上传地址时（其中还包含“wineAssist”、内容类型（“image”或“attach”）和文件扩展名）。X-Wine-Ver、X-Windows-Ver 和 X-Simulator-Ver 仅随反馈发送。</translation>
    </message>
</context>
<context>
    <name>SentPreview</name>
    <message>
        <source>What is sent</source>
        <translation>将发送的内容</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>文本</translation>
    </message>
    <message>
        <source>Open…</source>
        <translation>打开…</translation>
    </message>
    <message>
        <source>This picture is too large to be shown here.</source>
        <translation>图片过大，无法在此显示。</translation>
    </message>
    <message>
        <source>This picture moves. Its first frame is shown here.</source>
        <translation>这是动态图片，此处显示其第一帧。</translation>
    </message>
    <message>
        <source>This file cannot be read.</source>
        <translation>无法读取此文件。</translation>
    </message>
    <message>
        <source>This file is empty.</source>
        <translation>此文件为空。</translation>
    </message>
    <message>
        <source>The first %1 lines are not shown here.</source>
        <translation>前 %1 行未在此显示。</translation>
    </message>
</context>
<context>
    <name>ServiceErrorText</name>
    <message>
        <source>The bottle service has ended unexpectedly.</source>
        <translation>容器服务意外退出。</translation>
    </message>
    <message>
        <source>The bottle service does not answer.</source>
        <translation>容器服务没有响应。</translation>
    </message>
    <message>
        <source>The bottle service cannot be started.</source>
        <translation>容器服务无法启动。</translation>
    </message>
    <message>
        <source>Programs run in the bottle: %1.</source>
        <translation>容器中有应用正在运行：%1。</translation>
    </message>
    <message>
        <source>There is no bottle &quot;%1&quot;.</source>
        <translation>容器“%1”不存在。</translation>
    </message>
    <message>
        <source>Wine is not installed on this machine. Install the packages wine and wine64.</source>
        <translation>本机未安装 Wine，请安装软件包 wine 和 wine64。</translation>
    </message>
    <message>
        <source>The Wine runner &quot;%1&quot; is not installed.</source>
        <translation>未安装 Wine 版本“%1”。</translation>
    </message>
    <message>
        <source>There is no component &quot;%1&quot;.</source>
        <translation>没有名为“%1”的组件。</translation>
    </message>
    <message>
        <source>No file is known that &quot;%1&quot; could be installed from.</source>
        <translation>没有可用于安装“%1”的文件。</translation>
    </message>
    <message>
        <source>Nothing of &quot;%1&quot; is made for the Wine of this bottle.</source>
        <translation>“%1”不适用于此容器的 Wine 版本。</translation>
    </message>
    <message>
        <source>It is not known where %1 can be had.</source>
        <translation>未找到 %1 的下载地址。</translation>
    </message>
    <message>
        <source>No checksum of %1 is known, and sources.json does not allow files without one.</source>
        <translation>没有 %1 的校验值，而 sources.json 不允许使用没有校验值的文件。</translation>
    </message>
    <message>
        <source>The tool winetricks can install it (as &quot;%1&quot;): install the package winetricks and try again.</source>
        <translation>可用 winetricks 工具安装（%1）：请安装软件包 winetricks 后重试。</translation>
    </message>
    <message>
        <source>%1 could not be fetched from %2: the server answers %3.</source>
        <translation>从 %2 下载 %1 失败：服务器返回 %3。</translation>
    </message>
    <message>
        <source>%1 could not be fetched: %2 cannot be reached.</source>
        <translation>下载 %1 失败：无法连接 %2。</translation>
    </message>
    <message>
        <source>%1 could not be fetched from %2: the server has been silent for too long.</source>
        <translation>从 %2 下载 %1 失败：服务器长时间没有响应。</translation>
    </message>
    <message>
        <source>%1 could not be fetched from %2: the connection was closed too soon.</source>
        <translation>从 %2 下载 %1 失败：连接中断。</translation>
    </message>
    <message>
        <source>%1 could not be fetched from %2: %3.</source>
        <translation>从 %2 下载 %1 失败：%3。</translation>
    </message>
    <message>
        <source>What came from %2 is not the file %1 that was expected: its checksum is another.</source>
        <translation>从 %2 得到的文件不是所需的 %1：校验值不符。</translation>
    </message>
    <message>
        <source>What came from %2 is not the file %1 that was expected: it has %3 bytes and should have %4.</source>
        <translation>从 %2 得到的文件不是所需的 %1：大小为 %3 字节，应为 %4 字节。</translation>
    </message>
    <message>
        <source>%1 from %2 is larger than it should be.</source>
        <translation>从 %2 得到的 %1 超出应有大小。</translation>
    </message>
    <message>
        <source>There is not enough room on the disk for %1.</source>
        <translation>磁盘空间不足，无法写入 %1。</translation>
    </message>
    <message>
        <source>Cannot write %1: %2.</source>
        <translation>无法写入 %1：%2。</translation>
    </message>
    <message>
        <source>%1 cannot be unpacked: %2.</source>
        <translation>无法解压 %1：%2。</translation>
    </message>
    <message>
        <source>%1 does not hold %2.</source>
        <translation>%1 中没有 %2。</translation>
    </message>
    <message>
        <source>The installer of %1 ended with code %2.</source>
        <translation>%1 的安装程序以退出码 %2 结束。</translation>
    </message>
    <message>
        <source>The installer of %1 took too long and was ended.</source>
        <translation>%1 的安装程序超时，已被终止。</translation>
    </message>
    <message>
        <source>The installer of %1 was killed or crashed.</source>
        <translation>%1 的安装程序崩溃或被终止。</translation>
    </message>
    <message>
        <source>The installer of %1 could not be started: %2.</source>
        <translation>%1 的安装程序无法启动：%2。</translation>
    </message>
    <message>
        <source>%1 is a program of 32 bits, and the Wine of this bottle runs none. Install 32-bit Wine (the package wine32), or choose another Wine version for the bottle.</source>
        <translation>%1 是 32 位程序，而此容器的 Wine 不支持 32 位程序。请安装 32 位 Wine（软件包 wine32），或为容器选择其他 Wine 版本。</translation>
    </message>
    <message>
        <source>The installation was cancelled.</source>
        <translation>安装已取消。</translation>
    </message>
    <message>
        <source>Another choice was made.</source>
        <translation>已改选其他版本。</translation>
    </message>
    <message>
        <source>Programs in the bottle could not be ended.</source>
        <translation>无法结束容器中的应用。</translation>
    </message>
    <message>
        <source>%1 is no ordinary file that can be read.</source>
        <translation>%1 不是可读取的普通文件。</translation>
    </message>
    <message>
        <source>%1 is not the file that is needed. What is needed is %2.</source>
        <translation>%1 不是所需的文件，需要的是 %2。</translation>
    </message>
    <message>
        <source>No space left on the disk that holds %1.</source>
        <translation>%1 所在的磁盘空间不足。</translation>
    </message>
    <message>
        <source>Wine could not prepare an environment: %1.</source>
        <translation>Wine 未能完成环境准备：%1。</translation>
    </message>
    <message>
        <source>The installation needs %1, which is not on this machine.</source>
        <translation>安装需要 %1，但本机没有该文件。</translation>
    </message>
    <message>
        <source>Components are being exported already. Wait until that is done.</source>
        <translation>正在导出组件，请等待完成。</translation>
    </message>
    <message>
        <source>The export was cancelled.</source>
        <translation>导出已取消。</translation>
    </message>
    <message>
        <source>Components are being imported already. Wait until that is done.</source>
        <translation>正在导入组件，请等待完成。</translation>
    </message>
    <message>
        <source>%1 is no backup, or it is damaged.</source>
        <translation>%1 不是备份文件，或已损坏。</translation>
    </message>
    <message>
        <source>%1 was made by a newer version of Cellarix.</source>
        <translation>%1 由更新版本的 Cellarix 创建。</translation>
    </message>
    <message>
        <source>Files of the bottle were changed while it was being backed up.</source>
        <translation>备份期间容器中的文件发生了变化。</translation>
    </message>
    <message>
        <source>There is not enough room: %1 are needed and %2 are free.</source>
        <translation>磁盘空间不足：需要 %1，可用 %2。</translation>
    </message>
    <message>
        <source>The file %1 is being written or read already.</source>
        <translation>文件 %1 正在写入或读取中。</translation>
    </message>
    <message>
        <source>%1 is no file of exported components, or it is damaged.</source>
        <translation>%1 不是导出的组件文件，或者已损坏。</translation>
    </message>
    <message>
        <source>These are too many components for one file. Choose fewer at a time.</source>
        <translation>一个文件容纳不下这么多组件，请每次少选一些。</translation>
    </message>
    <message>
        <source>Too many files are chosen. Choose %1 at most.</source>
        <translation>选择的文件过多，最多可选择 %1 个。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; of the manifest must be text of at most %2 characters.</source>
        <translation>清单中的“%1”必须是不超过 %2 个字符的文本。</translation>
    </message>
    <message>
        <source>The manifest needs a name.</source>
        <translation>清单需要一个名称。</translation>
    </message>
    <message>
        <source>A setting of the bottle or an answer of the form cannot be written to a manifest.</source>
        <translation>容器的某项设置或表单中的某项内容无法写入清单。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no name of a DLL or program.</source>
        <translation>“%1”不是有效的 DLL 或程序名称。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no way to load a DLL.</source>
        <translation>“%1”不是有效的 DLL 加载方式。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no name of a font.</source>
        <translation>“%1”不是有效的字体名称。</translation>
    </message>
    <message>
        <source>This Wine cannot be set to the Windows version &quot;%1&quot;: %2</source>
        <translation>无法将此 Wine 设置为 Windows 版本“%1”：%2</translation>
    </message>
    <message>
        <source>The registry of the bottle was not changed: %1</source>
        <translation>未能修改容器的注册表：%1</translation>
    </message>
    <message>
        <source>The bottle needs a file of a Wine that is no longer installed: %1.</source>
        <translation>容器需要的一个文件属于已卸载的 Wine：%1。</translation>
    </message>
    <message>
        <source>Wine is still busy in the bottle. Try again in a moment.</source>
        <translation>Wine 仍在容器中运行，请稍后再试。</translation>
    </message>
    <message>
        <source>The backup cannot lie in the bottle that it is made of: %1.</source>
        <translation>备份文件不能放在被备份的容器内：%1。</translation>
    </message>
    <message>
        <source>The bottle cannot be backed up: %1.</source>
        <translation>无法备份该容器：%1。</translation>
    </message>
    <message>
        <source>Cannot read %1: %2.</source>
        <translation>无法读取 %1：%2。</translation>
    </message>
    <message>
        <source>%1 holds no Windows program.</source>
        <translation>%1 中没有 Windows 程序。</translation>
    </message>
    <message>
        <source>%1 is protected by a password. Unpack it first, and add the folder.</source>
        <translation>%1 受密码保护。请先解压，再添加解压出的文件夹。</translation>
    </message>
    <message>
        <source>%1 cannot be copied as a program: it holds too much.</source>
        <translation>%1 无法作为程序复制：其中的内容过多。</translation>
    </message>
    <message>
        <source>There is something named &quot;%1&quot; already that is no bottle: a link, or a directory without bottle.yml.</source>
        <translation>已存在名为“%1”的内容，但它不是容器，而是链接或没有 bottle.yml 的目录。</translation>
    </message>
    <message>
        <source>There is no free name for the bottle.</source>
        <translation>没有可用的容器名称。</translation>
    </message>
    <message>
        <source>The path is too long or too deep to be copied: %1.</source>
        <translation>路径过长或层级过深，无法复制：%1。</translation>
    </message>
    <message>
        <source>The bottle has too many files for a backup.</source>
        <translation>容器中的文件过多，无法备份。</translation>
    </message>
    <message>
        <source>The backup holds no whole bottle: %1 is missing.</source>
        <translation>备份中的容器不完整：缺少 %1。</translation>
    </message>
    <message>
        <source>The bottle could not be brought to the Wine of this machine: %1</source>
        <translation>无法使容器适应本机的 Wine：%1</translation>
    </message>
    <message>
        <source>Files of the bottle could not be written: %1</source>
        <translation>无法写入容器的文件：%1</translation>
    </message>
    <message>
        <source>There is a bottle &quot;%1&quot; already, which is not replaced: %2.</source>
        <translation>已存在容器“%1”，不会将其替换。</translation>
    </message>
    <message>
        <source>The bottle &quot;%1&quot; is being set up already.</source>
        <translation>容器“%1”已在配置中。</translation>
    </message>
    <message>
        <source>The manifest cannot be used. %1</source>
        <translation>无法使用该清单。%1</translation>
    </message>
    <message>
        <source>The service is ending.</source>
        <translation>服务正在结束。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; holds no DLLs.</source>
        <translation>“%1”中没有 DLL 文件。</translation>
    </message>
    <message>
        <source>The command &quot;%1&quot; of the manifest ended with code %2.</source>
        <translation>清单中的命令“%1”已结束，返回代码为 %2。</translation>
    </message>
    <message>
        <source>The command &quot;%1&quot; of the manifest took too long and was ended.</source>
        <translation>清单中的命令“%1”耗时过长，已被终止。</translation>
    </message>
    <message>
        <source>The command &quot;%1&quot; of the manifest was killed or crashed.</source>
        <translation>清单中的命令“%1”被终止或已崩溃。</translation>
    </message>
    <message>
        <source>The command &quot;%1&quot; of the manifest could not be started: %2</source>
        <translation>无法启动清单中的命令“%1”：%2</translation>
    </message>
    <message>
        <source>The bottle is being packed. Try again when that is done.</source>
        <translation>正在打包该容器，请在打包完成后重试。</translation>
    </message>
    <message>
        <source>The bottle is being brought up to date with its package. Try again in a moment.</source>
        <translation>正在随软件包更新该容器，请稍后重试。</translation>
    </message>
    <message>
        <source>Another program is changing the bottle. Try again in a moment.</source>
        <translation>另一个程序正在修改该容器，请稍后重试。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be the name of a bottle. %2</source>
        <translation>“%1”不能用作容器名称。</translation>
    </message>
    <message>
        <source>The package of &quot;%1&quot; is installed.</source>
        <translation>“%1”的软件包已安装。</translation>
    </message>
</context>
<context>
    <name>SessionBus</name>
    <message>
        <source>There is no session bus, over which Cellarix reaches its background service. Log out and in again, or start it with &quot;dbus-run-session cellarix&quot;.</source>
        <translation>没有会话总线，Cellarix 无法连接后台服务。请注销后重新登录，或使用“dbus-run-session cellarix”启动。</translation>
    </message>
</context>
<context>
    <name>SetupAppInfoDialog</name>
    <message>
        <source>Please select the installation program</source>
        <translation>请选择安装程序</translation>
    </message>
    <message>
        <source>App Name: </source>
        <translation>应用名称：</translation>
    </message>
    <message>
        <source>App Size: </source>
        <translation>应用大小：</translation>
    </message>
    <message>
        <source>App Version: </source>
        <translation>应用版本：</translation>
    </message>
    <message>
        <source>(Using same installer version for better compatibility)</source>
        <translation>（使用相同版本的安装程序，兼容性更好）</translation>
    </message>
    <message>
        <source>App Official Site: </source>
        <translation>官方网站：</translation>
    </message>
    <message>
        <source>Software Contributors: </source>
        <translation>贡献者：</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>安装</translation>
    </message>
    <message>
        <source>&lt;b&gt;Required packages:&lt;/b&gt;&lt;br/&gt;%1</source>
        <translation>&lt;b&gt;所需软件包：&lt;/b&gt;&lt;br/&gt;%1</translation>
    </message>
    <message>
        <source>Checking the file: %1%</source>
        <translation>正在检查文件：%1%</translation>
    </message>
    <message>
        <source>Required packages and components have not installed</source>
        <translation>所需的软件包和组件尚未安装</translation>
    </message>
    <message>
        <source>%1 is not available for this computer. The Wine of this computer is used instead.</source>
        <translation>此电脑无法获取 %1，将使用本机的 Wine。</translation>
    </message>
    <message>
        <source>Required packages and components are missing for install application, please click the missing packages below to install them from App Store. After install all missing packages, click the Next button to continue.</source>
        <translation>缺少安装应用所需的软件包和组件，请点击下方缺少的软件包，从应用商店安装。全部安装后，点击“下一步”继续。</translation>
    </message>
    <message>
        <source>You need to provide the setup program of the software in Windows to install it.</source>
        <translation>您需要提供该软件的 Windows 安装程序才能安装。</translation>
    </message>
    <message>
        <source>&lt;br/&gt;You can download the setup program from %1</source>
        <translation>&lt;br/&gt;安装程序下载地址：%1</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>下一步</translation>
    </message>
    <message>
        <source>This file cannot be read</source>
        <translation>无法读取此文件</translation>
    </message>
    <message>
        <source>This is the expected file</source>
        <translation>文件与所需版本一致</translation>
    </message>
    <message>
        <source>This is another version than the expected one</source>
        <translation>此文件与所需版本不同</translation>
    </message>
    <message>
        <source>Downloading</source>
        <translation>正在下载</translation>
    </message>
    <message>
        <source>Downloading: %1%</source>
        <translation>正在下载：%1%</translation>
    </message>
    <message>
        <source>No app store could be opened. Please install %1 yourself, then click Next.</source>
        <translation>无法打开应用商店。请自行安装 %1，然后点击“下一步”。</translation>
    </message>
</context>
<context>
    <name>SetupDownload</name>
    <message>
        <source>Nothing can be saved in %1.</source>
        <translation>无法在 %1 中保存文件。</translation>
    </message>
    <message>
        <source>There is not enough room in %1.</source>
        <translation>%1 的可用空间不足。</translation>
    </message>
    <message>
        <source>The setup program is no longer at its address.</source>
        <translation>该地址已没有安装程序。</translation>
    </message>
    <message>
        <source>The setup program is too large.</source>
        <translation>安装程序过大。</translation>
    </message>
    <message>
        <source>The setup program could not be downloaded, please check your network.</source>
        <translation>无法下载安装程序，请检查网络。</translation>
    </message>
    <message>
        <source>The server has a problem, please try again later.</source>
        <translation>服务器出现问题，请稍后重试。</translation>
    </message>
    <message>
        <source>The server did not send the setup program (status %1).</source>
        <translation>服务器没有发送安装程序（状态码 %1）。</translation>
    </message>
    <message>
        <source>The server does not give the setup program to this program. Download it in a browser, then choose its file here.</source>
        <translation>服务器不允许本程序下载该安装程序。请用浏览器下载，然后在此选择下载好的文件。</translation>
    </message>
    <message>
        <source>The address leads elsewhere too often, or to a place that is not safe.</source>
        <translation>该地址跳转次数过多，或者跳转到了不安全的位置。</translation>
    </message>
    <message>
        <source>The file at the address has changed. Please start again.</source>
        <translation>该地址上的文件已更改，请重新下载。</translation>
    </message>
    <message>
        <source>The address leads to a page and not to a setup program. Download it there in a browser, then choose its file here.</source>
        <translation>该地址是一个网页，而不是安装程序。请用浏览器在该网页中下载，然后在此选择下载好的文件。</translation>
    </message>
    <message>
        <source>The address does not lead to a setup program. %1</source>
        <translation>该地址指向的不是安装程序。%1</translation>
    </message>
</context>
<context>
    <name>SetupDownloadRow</name>
    <message>
        <source>Download</source>
        <translation>下载</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>已取消</translation>
    </message>
    <message>
        <source>Saved as %1</source>
        <translation>已保存为 %1</translation>
    </message>
    <message>
        <source>It comes from %1</source>
        <translation>来自 %1</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Connecting to %1</source>
        <translation>正在连接 %1</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 / %2</translation>
    </message>
    <message>
        <source>Saved as %1. It has another size than expected.</source>
        <translation>已保存为 %1。文件大小与预期不同。</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>继续下载</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>放弃</translation>
    </message>
</context>
<context>
    <name>SetupTitle</name>
    <message>
        <source>Creating the bottle</source>
        <translation>正在创建容器</translation>
    </message>
    <message>
        <source>Installing graphics components</source>
        <translation>正在安装图形组件</translation>
    </message>
    <message>
        <source>Applying settings</source>
        <translation>正在应用设置</translation>
    </message>
    <message>
        <source>Writing files</source>
        <translation>正在写入文件</translation>
    </message>
    <message>
        <source>Running commands</source>
        <translation>正在运行命令</translation>
    </message>
    <message>
        <source>Finishing</source>
        <translation>正在完成</translation>
    </message>
    <message>
        <source>Fetching %1</source>
        <translation>正在获取 %1</translation>
    </message>
    <message>
        <source>Installing %1</source>
        <translation>正在安装 %1</translation>
    </message>
    <message>
        <source>Installing %1 with winetricks</source>
        <translation>正在使用 winetricks 安装 %1</translation>
    </message>
    <message>
        <source>Downloading %1: %2 of %3</source>
        <translation>正在下载 %1：%2 / %3</translation>
    </message>
    <message>
        <source>Downloading %1: %2</source>
        <translation>正在下载 %1：%2</translation>
    </message>
    <message>
        <source>Downloading %1</source>
        <translation>正在下载 %1</translation>
    </message>
    <message>
        <source>Unpacking %1</source>
        <translation>正在解压 %1</translation>
    </message>
    <message>
        <source>Running %1</source>
        <translation>正在运行 %1</translation>
    </message>
</context>
<context>
    <name>ShowPackageCheckerWidget</name>
    <message>
        <source>The bottle has no programs yet</source>
        <translation>容器中还没有程序</translation>
    </message>
    <message>
        <source>Choose a Folder</source>
        <translation>选择文件夹</translation>
    </message>
    <message>
        <source>Reading the programs…</source>
        <translation>正在读取程序…</translation>
    </message>
    <message>
        <source>The bottle cannot be read</source>
        <translation>无法读取容器</translation>
    </message>
    <message>
        <source>The folder %1 is too close to the root of the disk to go along whole.</source>
        <translation>文件夹 %1 太靠近磁盘根目录，不能整个打包。</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>重试</translation>
    </message>
</context>
<context>
    <name>ShowPackageDoneWidget</name>
    <message>
        <source>Change saved path</source>
        <translation>更改保存路径</translation>
    </message>
    <message>
        <source>View App</source>
        <translation>查看应用</translation>
    </message>
    <message>
        <source>Packaging is complete</source>
        <translation>打包完成</translation>
    </message>
</context>
<context>
    <name>ShowPackageFailedWidget</name>
    <message>
        <source>View Logs</source>
        <translation>查看日志</translation>
    </message>
    <message>
        <source>Application Packaging Failed</source>
        <translation>应用打包失败</translation>
    </message>
    <message>
        <source>You can try using the advanced debugging tools to improve the success rate of the run</source>
        <translation>您可以尝试使用高级调试工具提高运行成功率</translation>
    </message>
</context>
<context>
    <name>ShowPackagingProgressWidget</name>
    <message>
        <source>Packaging, please wait...</source>
        <translation>正在打包，请稍候...</translation>
    </message>
    <message>
        <source>Packaging app in progress ...%1%</source>
        <translation>正在打包应用 ...%1%</translation>
    </message>
    <message>
        <source>Put away details</source>
        <translation>收起详情</translation>
    </message>
    <message>
        <source>Show details</source>
        <translation>显示详情</translation>
    </message>
</context>
<context>
    <name>SidebarView</name>
    <message>
        <source>Pages</source>
        <translation>页面</translation>
    </message>
    <message>
        <source>My</source>
        <translation>我的</translation>
    </message>
    <message>
        <source>My Apps</source>
        <translation>我的应用</translation>
    </message>
    <message>
        <source>All Apps</source>
        <translation>全部应用</translation>
    </message>
</context>
<context>
    <name>StarRating</name>
    <message>
        <source>Rating: %1 of 5</source>
        <translation>评分：%1（满分 5 分）</translation>
    </message>
    <message>
        <source>Not rated</source>
        <translation>尚未评分</translation>
    </message>
</context>
<context>
    <name>StoreAppGridScrollView</name>
    <message>
        <source>No applications were found</source>
        <translation>没有找到应用</translation>
    </message>
</context>
<context>
    <name>StoreAppItemUI</name>
    <message>
        <source>App Version: </source>
        <translation>应用版本：</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <extracomment>the name of an application, and what its button does or says</extracomment>
        <translation>%1，%2</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <comment>button, name</comment>
        <translation>%1 %2</translation>
    </message>
</context>
<context>
    <name>TablePage</name>
    <message>
        <source>The list of this container cannot be read at the moment.</source>
        <translation>暂时无法读取此容器的列表。</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>重试</translation>
    </message>
</context>
<context>
    <name>TableSync</name>
    <message>
        <source>%1 could not be changed: %2</source>
        <translation>无法修改“%1”：%2</translation>
    </message>
</context>
<context>
    <name>TitleBarMenu</name>
    <message>
        <source>Theme</source>
        <translation>主题</translation>
    </message>
    <message>
        <source>System theme</source>
        <translation>跟随系统</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>浅色</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>深色</translation>
    </message>
    <message>
        <source>About</source>
        <translation>关于</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>Feedback</source>
        <translation>反馈</translation>
    </message>
</context>
<context>
    <name>ToolsPage</name>
    <message>
        <source>Container Operation</source>
        <translation>容器操作</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>其他</translation>
    </message>
    <message>
        <source>Importing the registry</source>
        <translation>导入注册表</translation>
    </message>
    <message>
        <source>Package…</source>
        <translation>打包…</translation>
    </message>
    <message>
        <source>Reset to Defaults…</source>
        <translation>恢复默认设置…</translation>
    </message>
</context>
<context>
    <name>UndoBar</name>
    <message>
        <source>Undo</source>
        <translation>撤销</translation>
    </message>
    <message>
        <source>%1 has been changed</source>
        <translation>已修改“%1”</translation>
    </message>
</context>
<context>
    <name>UploadedImage</name>
    <message>
        <source>Picture %1</source>
        <translation>图片 %1</translation>
    </message>
    <message>
        <source>Upload failed</source>
        <translation>上传失败</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>重试</translation>
    </message>
    <message>
        <source>Upload %1 again</source>
        <translation>重新上传 %1</translation>
    </message>
</context>
<context>
    <name>UploadedImageHoverWidget</name>
    <message>
        <source>Remove</source>
        <translation>移除</translation>
    </message>
</context>
<context>
    <name>UploadedImages</name>
    <message>
        <source>Add pictures</source>
        <translation>添加图片</translation>
    </message>
</context>
<context>
    <name>WineChannerCombobox</name>
    <message>
        <source>Basic Logs</source>
        <translation>基础日志</translation>
    </message>
    <message>
        <source>Window Logs</source>
        <translation>窗口日志</translation>
    </message>
    <message>
        <source>File Logs</source>
        <translation>文件日志</translation>
    </message>
    <message>
        <source>Font Logs</source>
        <translation>字体日志</translation>
    </message>
    <message>
        <source>Game Controls</source>
        <translation>游戏控制</translation>
    </message>
    <message>
        <source>Game Graphics</source>
        <translation>游戏图形</translation>
    </message>
    <message>
        <source>Keyboard Input</source>
        <translation>键盘输入</translation>
    </message>
    <message>
        <source>Mouse Logs</source>
        <translation>鼠标日志</translation>
    </message>
    <message>
        <source>Network Logs</source>
        <translation>网络日志</translation>
    </message>
    <message>
        <source>Sound Logs</source>
        <translation>声音日志</translation>
    </message>
</context>
<context>
    <name>WineDepsCard</name>
    <message>
        <source>Install %1</source>
        <translation>安装 %1</translation>
    </message>
</context>
<context>
    <name>WineExeLaunchBanner</name>
    <message>
        <source>A Wine App is executing</source>
        <translation>正在运行 Wine 应用</translation>
    </message>
    <message>
        <source>App Name</source>
        <translation>应用名称</translation>
    </message>
    <message>
        <source>I am a description....</source>
        <translation>这是一段描述…</translation>
    </message>
    <message>
        <source>The app fails to run</source>
        <translation>应用运行失败</translation>
    </message>
</context>
<context>
    <name>WineFileHandler</name>
    <message>
        <source>Launching %1...</source>
        <translation>正在启动“%1”…</translation>
    </message>
    <message>
        <source>Launching</source>
        <translation>正在启动</translation>
    </message>
</context>
<context>
    <name>WineParamsCfgWidget</name>
    <message>
        <source>Please enter startup parameters</source>
        <translation>请输入启动参数</translation>
    </message>
    <message>
        <source>Please enter the environment variable</source>
        <translation>请输入环境变量</translation>
    </message>
    <message>
        <source>Translator</source>
        <translation>转译器</translation>
    </message>
    <message>
        <source>This machine has no translator</source>
        <translation>本机没有转译器</translation>
    </message>
    <message>
        <source>Please select the log channel</source>
        <translation>请选择日志通道</translation>
    </message>
    <message>
        <source>Startup parameter</source>
        <translation>启动参数</translation>
    </message>
    <message>
        <source>Environment Variables</source>
        <translation>环境变量</translation>
    </message>
    <message>
        <source>Wine Log Channel</source>
        <translation>Wine 日志通道</translation>
    </message>
    <message>
        <source>What a debugging run logs</source>
        <translation>调试运行时记录的内容</translation>
    </message>
    <message>
        <source>NAME=value, separated by blanks; quotes keep blanks in a value</source>
        <translation>名称=值，以空格分隔；值中含空格时请加引号</translation>
    </message>
    <message>
        <source>Log files</source>
        <translation>日志文件</translation>
    </message>
    <message>
        <source>Where a debugging run is logged</source>
        <translation>调试运行日志的保存位置</translation>
    </message>
    <message>
        <source>“%1” is not NAME=value and is not used</source>
        <translation>“%1”不是“名称=值”的形式，未被采用</translation>
    </message>
    <message>
        <source>The last value has no closing quote</source>
        <translation>最后一个值缺少结束引号</translation>
    </message>
    <message>
        <source>A name has only letters, digits and “_”, and does not begin with a digit</source>
        <translation>名称只能包含字母、数字和“_”，且不能以数字开头</translation>
    </message>
    <message>
        <source>The translators could not be read; open this page again to retry</source>
        <translation>未能读取转译器；请重新打开此页重试</translation>
    </message>
    <message>
        <source>Runs x86 programs on this machine</source>
        <translation>用于在本机运行 x86 程序</translation>
    </message>
    <message>
        <source>What the program gets on its command line, as after its name in a terminal.</source>
        <translation>程序在命令行上得到的参数，如同在终端中写在程序名之后。</translation>
    </message>
    <message>
        <source>The parts of Wine that write into the log of a debugging run; empty stands for the usual ones.</source>
        <translation>调试运行时写入日志的 Wine 组成部分；留空表示通常的那些。</translation>
    </message>
    <message>
        <source>Variables that the program and Wine find in their environment.</source>
        <translation>程序和 Wine 在其环境中读取的变量。</translation>
    </message>
    <message>
        <source>What runs programs for x86 processors on this machine.</source>
        <translation>在此机器上运行 x86 处理器程序的转译器。</translation>
    </message>
    <message>
        <source>The file that gets the log of a debugging run; empty stands for one in the container.</source>
        <translation>保存调试运行日志的文件；留空表示容器中的默认文件。</translation>
    </message>
    <message>
        <source>The translator could not be changed: %1</source>
        <translation>无法更改转译器：%1</translation>
    </message>
</context>
<context>
    <name>YamlProgramInstaller</name>
    <message>
        <source>Preparing to installing</source>
        <translation>准备安装</translation>
    </message>
    <message>
        <source>Please wait, it may take a few minutes...</source>
        <translation>请稍候，可能需要几分钟...</translation>
    </message>
    <message>
        <source>%1 ... %2%</source>
        <translation>%1 ... %2%</translation>
    </message>
    <message>
        <source>Preparing to run</source>
        <translation>准备运行</translation>
    </message>
    <message>
        <source>waiting for application to start...</source>
        <translation>正在等待应用启动...</translation>
    </message>
    <message>
        <source>Abort by user</source>
        <translation>已被用户中止</translation>
    </message>
    <message>
        <source>Manifest file setup failed</source>
        <translation>安装清单执行失败</translation>
    </message>
    <message>
        <source>Setup installer failed</source>
        <translation>安装失败</translation>
    </message>
    <message>
        <source>Error message: %1</source>
        <translation>错误信息：%1</translation>
    </message>
</context>
<context>
    <name>YamlProgramInstallerBanner</name>
    <message>
        <source>View Logs</source>
        <translation>查看日志</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>YamlProgramInstallerSession</name>
    <message>
        <source>Failed to fetch setup manifest, the application does not exist</source>
        <translation>获取安装清单失败，应用不存在</translation>
    </message>
    <message>
        <source>%1 has been installed</source>
        <translation>%1 已安装</translation>
    </message>
    <message>
        <source>Failed to fetch setup manifest, please check your network</source>
        <translation>获取安装清单失败，请检查网络</translation>
    </message>
    <message>
        <source>The manifest cannot be read.</source>
        <translation>无法读取清单文件。</translation>
    </message>
</context>
<context>
    <name>starContainer</name>
    <message>
        <source>%1 of 5 stars</source>
        <translation>5 星中的 %1 星</translation>
    </message>
</context>
</TS>
