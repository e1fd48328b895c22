; The installer of the Windows package. For the whole machine; what the office has stored is never touched.
;   makensis -DVERSION=0.1.0 -DSTAGE=folder -DOUTPUT=file kaunter.nsi
Unicode true
Target amd64-unicode
!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Kaunter"

Name "Kaunter ${VERSION}"
OutFile "${OUTPUT}"
RequestExecutionLevel admin
ManifestDPIAware true
SetCompressor /SOLID lzma
InstallDir "$PROGRAMFILES64\Kaunter"
InstallDirRegKey HKLM "${KEY}" "InstallLocation"
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "Kaunter"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Kaunter, the back office of a licensed money-lending business"
VIAddVersionKey LegalCopyright ""

!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_TEXT "$(done)"
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "SimpChinese"
LangString done ${LANG_ENGLISH} "Kaunter ${VERSION} is installed. You find it in the Start menu."
LangString done ${LANG_SIMPCHINESE} "Kaunter ${VERSION} 已安装，可从开始菜单打开。"
LangString running ${LANG_ENGLISH} "Kaunter is running. Please close it on this PC, for all persons who are signed in, then try again."
LangString running ${LANG_SIMPCHINESE} "Kaunter 正在运行。请在此电脑上关闭（所有已登录的用户），然后再试。"
LangString newer ${LANG_ENGLISH} "This Windows is too old: Kaunter needs Windows 10 (version 1903) or a later one."
LangString newer ${LANG_SIMPCHINESE} "此 Windows 版本太旧：Kaunter 需要 Windows 10（1903 版）或更新版本。"
LangString stays ${LANG_ENGLISH} "The program is gone. What the office has stored stays where it lies."
LangString stays ${LANG_SIMPCHINESE} "程序已移除，公司的资料仍保留在原处。"

; A program file that runs cannot be opened for writing: half an update would be left.
!macro RefuseWhileRunning
  ${If} ${FileExists} "$INSTDIR\kaunter.exe"
    ClearErrors
    FileOpen $0 "$INSTDIR\kaunter.exe" a
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONEXCLAMATION "$(running)" /SD IDOK
      SetErrorLevel 3
      Quit
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

; Files of the package only; what an office laid beside them (own reports, settings) stays.
!macro RemoveProgram
  !include "${STAGE}.remove.nsh"
!macroend

Function .onInit
  SetRegView 64
  ReadRegStr $0 HKLM "${KEY}" "InstallLocation"
  ${If} $0 != ""
    StrCpy $INSTDIR $0
  ${EndIf}
  ReadRegStr $0 HKLM "Software\Microsoft\Windows NT\CurrentVersion" "CurrentBuildNumber"
  ${If} $0 != ""
  ${AndIf} $0 < 18362
    MessageBox MB_OK|MB_ICONSTOP "$(newer)" /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
FunctionEnd

Section
  SetShellVarContext all
  SetRegView 64
  !insertmacro RefuseWhileRunning
  SetOutPath "$INSTDIR"
  File /r "${STAGE}/*"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateDirectory "$SMPROGRAMS\Kaunter"
  CreateShortcut "$SMPROGRAMS\Kaunter\Kaunter.lnk" "$INSTDIR\kaunter.exe"
  CreateShortcut "$SMPROGRAMS\Kaunter\Uninstall Kaunter.lnk" "$INSTDIR\uninstall.exe"
  WriteRegStr HKLM "${KEY}" "DisplayName" "Kaunter"
  WriteRegStr HKLM "${KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${KEY}" "DisplayIcon" "$INSTDIR\kaunter.exe"
  WriteRegStr HKLM "${KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${KEY}" "NoRepair" 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  IntFmt $0 "0x%08X" $0
  WriteRegDWORD HKLM "${KEY}" "EstimatedSize" "$0"
SectionEnd

Section Uninstall
  SetShellVarContext all
  SetRegView 64
  !insertmacro RefuseWhileRunning
  !insertmacro RemoveProgram
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\Kaunter\Kaunter.lnk"
  Delete "$SMPROGRAMS\Kaunter\Uninstall Kaunter.lnk"
  RMDir "$SMPROGRAMS\Kaunter"
  DeleteRegKey HKLM "${KEY}"
  DetailPrint "$(stays)"
SectionEnd
