; An installer that leaves shortcuts, an updater, a library and a file type behind.
Unicode true
Target amd64-unicode
Name x
OutFile setup.exe
SilentInstall silent
RequestExecutionLevel user
InstallDir "$PROGRAMFILES64\应用 程序"
Section
SetOutPath $INSTDIR
File window64.exe
File /oname=主程序.exe window64.exe
File /oname=AppUpdater.exe window64.exe
File /oname=Own.dll window64.exe
File /oname=a=b.dll window64.exe
WriteUninstaller $INSTDIR\uninst.exe
CreateShortCut "$DESKTOP\主程序.lnk" "$INSTDIR\主程序.exe" '--mode "a b"'
CreateDirectory $SMPROGRAMS\App
CreateShortCut $SMPROGRAMS\App\主程序.lnk $INSTDIR\主程序.exe '--mode "a b"'
CreateShortCut $SMPROGRAMS\App\Uninstall.lnk $INSTDIR\uninst.exe
WriteRegStr HKCU Software\Classes\.cxt '' Cx.Doc
WriteRegStr HKCU Software\Classes\Cx.Doc '' '文档'
WriteRegStr HKLM Software\Classes\Cx.Doc\shell\open\command '' '"$INSTDIR\主程序.exe" "%1"'
SectionEnd
Section Uninstall
SectionEnd
