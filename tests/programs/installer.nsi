; A real installer, 64 bit: with -DLINKS one that leaves a program and its shortcut, otherwise one that leaves nothing.
Target amd64-unicode
Unicode true
Name "Sample setup"
Caption "Sample setup"
RequestExecutionLevel user
InstallDir "$PROGRAMFILES64\Cellarix Sample"
AutoCloseWindow true
Page instfiles
Section
!ifdef LINKS
  SetShellVarContext current
  SetOutPath "$INSTDIR"
  File "${PROGRAM}"
  CreateDirectory "$SMPROGRAMS\Cellarix"
  CreateShortCut "$SMPROGRAMS\Cellarix\Sample program.lnk" "$INSTDIR\window.exe"
  CreateShortCut "$DESKTOP\Sample program.lnk" "$INSTDIR\window.exe"
  CreateShortCut "$SMSTARTUP\Sample program.lnk" "$INSTDIR\window.exe"
  WriteRegStr HKCU "Software\Classes\.smp" "" "Sample.Document"
  WriteRegStr HKCU "Software\Classes\Sample.Document\shell\open\command" "" '"$INSTDIR\window.exe" "%1"'
!endif
  Sleep 5000 ; the window is looked for once a second
SectionEnd
