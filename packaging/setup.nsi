; The installer. scripts/package_installer.py calls makensis with VERSION, OUTPUT and FILES
; (files.nsh, the lists of what goes where), and with SIGN when the uninstaller is to be signed.
;
;   setup.exe [/S] [/AllUsers | /CurrentUser] [/Log=file]
;       [/Components=win32,win64,services,bench,samples,openwith] [/D=folder]
;
; Exit statuses: 0 done, 1 ended by the user, 2 failed, 3 wrong command line, 4 in use, 5 not allowed.
Unicode true
ManifestDPIAware true
RequestExecutionLevel highest
SetCompressor /SOLID lzma
SetDateSave off ; the times of the files here say nothing, and would differ from one packing to the next
InstallDir ""   ; so that a folder in .onInit is one of the command line
Name "O_Tam_id ${VERSION}"
OutFile "${OUTPUT}"
BrandingText "O_Tam_id ${VERSION}"
VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
VIAddVersionKey /LANG=1033 ProductName "O_Tam_id"
VIAddVersionKey /LANG=1033 ProductVersion "${VERSION}.0"
VIAddVersionKey /LANG=1033 FileVersion "${VERSION}.0"
VIAddVersionKey /LANG=1033 FileDescription "Setup of O_Tam_id"
VIAddVersionKey /LANG=1033 CompanyName "The developers of O_Tam_id"
VIAddVersionKey /LANG=1033 LegalCopyright "Copyright 2026 the developers of O_Tam_id"

!ifdef SIGN
  !finalize `${SIGN} "%1"`
  !uninstfinalize `${SIGN} "%1"`
!endif

!include MUI2.nsh
!include x64.nsh
!include LogicLib.nsh
!include FileFunc.nsh
!include Sections.nsh
!include WordFunc.nsh
!include "${FILES}"
!include "users.nsh"

!define APPS "Software\Microsoft\Windows\CurrentVersion\Uninstall\O_Tam_id"
!define WINDOW "Software\Classes\Applications\tamview.exe"

Var Scope      ; AllUsers or CurrentUser
Var Registered ; the DLLs that are registered, as names below $INSTDIR, each with a bar after it
Var Components ; the components that are installed, as the command line names them
Var IsListed   ; 1 when the entry in Apps is that of the folder which the uninstaller removes
Var IsReplaced ; 1 when a setup runs the uninstaller: what it cannot unregister is registered again in a moment

!define MUI_ABORTWARNING
!insertmacro MUI_PAGE_WELCOME
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE RefuseChoice
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

; Ends with a status, and says why: in a box, or in silence by the status alone.
!macro End status words
  MessageBox MB_OK|MB_ICONSTOP `${words}` /SD IDOK
  SetErrorLevel ${status}
  Quit
!macroend

; ---- who may, and for whom

; Sets $Scope to what the command line names, or "". Entries in Apps are read as 64-bit Windows has them.
!macro ReadScope
  ${GetParameters} $0
  StrCpy $Scope ""
  ClearErrors
  ${GetOptions} $0 "/AllUsers" $1
  ${IfNot} ${Errors}
    StrCpy $Scope AllUsers
  ${EndIf}
  ClearErrors
  ${GetOptions} $0 "/CurrentUser" $1
  ${IfNot} ${Errors}
    StrCpy $Scope CurrentUser
  ${EndIf}
  ${If} ${RunningX64}
    SetRegView 64
  ${EndIf}
!macroend

; Ends when $Scope is not for this user; words say what he can do.
!macro TakeScope words
  UserInfo::GetAccountType
  Pop $1
  ${If} $Scope == AllUsers
  ${AndIf} $1 != "Admin"
    !insertmacro End 5 "${words}"
  ${EndIf}
  ${If} $Scope == AllUsers
    SetShellVarContext all
  ${Else}
    SetShellVarContext current
  ${EndIf}
!macroend

; ---- registering: each kind's own regsvr32, for everybody or for this user

; Sets $0 to the program's status. kind is win32 or win64, undo "" or "/u ".
!macro RunRegistrar kind dll undo
  ${If} "${kind}" == win64
    StrCpy $1 "$WINDIR\Sysnative\regsvr32.exe" ; System32 would be the 32-bit one for this program
  ${Else}
    StrCpy $1 "$SYSDIR\regsvr32.exe"
  ${EndIf}
  ${If} $Scope == AllUsers
    ExecWait '"$1" /s ${undo}"$INSTDIR\${kind}\${dll}"' $0
  ${Else}
    ExecWait '"$1" /s ${undo}/n /i:user "$INSTDIR\${kind}\${dll}"' $0
  ${EndIf}
!macroend

!macro Register kind dll
  !insertmacro RunRegistrar ${kind} ${dll} ""
  ${If} $0 <> 0
    !insertmacro End 2 "$INSTDIR\${kind}\${dll} could not be registered (regsvr32 ended with $0)."
  ${EndIf}
  StrCpy $Registered "$Registered${kind}\${dll}|"
!macroend

!macro Unregister kind dll
  ; A list that has the name is another one without it.
  ${WordReplace} "|$Registered" "|${kind}\${dll}|" "|" "+" $0
  ${If} $0 != "|$Registered"
  ${AndIf} ${FileExists} "$INSTDIR\${kind}\${dll}"
    !insertmacro RunRegistrar ${kind} ${dll} "/u "
    ${If} $0 <> 0
    ${AndIfNot} $IsReplaced == 1
      ; What is in the registry would be left behind for good: nothing could take it away any more.
      !insertmacro End 2 "$INSTDIR\${kind}\${dll} could not be unregistered (regsvr32 ended with $0). No file was \
        removed. If the file is damaged, run the setup again, which repairs it, and uninstall then."
    ${EndIf}
  ${EndIf}
!macroend

; RefuseAnyInUse of the lists has one for each binary.
!macro InUse prefix name
  Push "$INSTDIR\${name}"
  Call ${prefix}RefuseWhenInUse
!macroend

!insertmacro DefineRefuseWhenInUse ""
!insertmacro DefineRefuseWhenInUse "un."

; Sets $R0 to 1 when place is $INSTDIR, which must be there. A folder has several names: a file of one is in the other.
!macro IsThisFolder place
  StrCpy $R0 0
  ${If} "${place}" == $INSTDIR
    StrCpy $R0 1
  ${ElseIf} "${place}" != ""
    ClearErrors
    GetTempFileName $R1 "$INSTDIR"
    ${IfNot} ${Errors}
      ${GetFileName} $R1 $R2
      ${If} ${FileExists} "${place}\$R2"
        StrCpy $R0 1
      ${EndIf}
      Delete $R1
    ${EndIf}
  ${EndIf}
!macroend

; Takes an installation away by its own uninstaller: what a new version no longer has would stay otherwise.
Function TakeAway ; $R3 the folder, $R4 AllUsers or CurrentUser
  ${If} ${FileExists} "$R3\uninstall.exe"
    InitPluginsDir
    CopyFiles /SILENT "$R3\uninstall.exe" "$PLUGINSDIR\old.exe"
    ExecWait '"$PLUGINSDIR\old.exe" /S /$R4 /Replaced _?=$R3' $0
    ${If} $0 = 5
      !insertmacro End 5 "$R3 has an installation for all users. An administrator has to remove it."
    ${ElseIf} $0 <> 0
      !insertmacro End 2 "The version in $R3 could not be removed (its uninstaller ended with $0)."
    ${EndIf}
  ${EndIf}
FunctionEnd

; Sets $9 to the topmost folder that is made for $INSTDIR besides itself, or "".
!macro FindMadeFolder
  StrCpy $9 ""
  StrCpy $1 $INSTDIR
  ${Do}
    ${GetParent} $1 $1
    ${If} $1 == ""
    ${OrIf} ${FileExists} "$1\*.*"
      ${ExitDo}
    ${EndIf}
    StrCpy $9 $1
  ${Loop}
!macroend

; Removes the folders above $INSTDIR up to the one in $9, as long as they are empty.
!macro RemoveMadeFolders
  StrLen $0 "$9\"
  StrCpy $1 $INSTDIR $0
  ${If} $9 != ""
  ${AndIf} $1 == "$9\"
    StrCpy $1 $INSTDIR
    ${Do}
      ${GetParent} $1 $1
      RMDir $1
      StrLen $0 $1
      StrLen $2 $9
    ${LoopUntil} $0 <= $2
  ${EndIf}
!macroend

; Ends when no file can be made in $INSTDIR, and leaves everything as it was.
Function RefuseUnwritable
  !insertmacro FindMadeFolder
  StrCpy $R5 0
  ${IfNot} ${FileExists} "$INSTDIR\*.*"
    StrCpy $R5 1
    CreateDirectory "$INSTDIR"
  ${EndIf}
  ClearErrors
  GetTempFileName $R1 "$INSTDIR"
  StrCpy $R6 0
  ${If} ${Errors}
    StrCpy $R6 1
  ${Else}
    Delete $R1
  ${EndIf}
  ${If} $R5 = 1
    RMDir "$INSTDIR"
    !insertmacro RemoveMadeFolders
  ${EndIf}
  ${If} $R6 = 1
    UserInfo::GetAccountType
    Pop $R5
    ${If} $R5 != "Admin"
    ${AndIf} ${FileExists} "$INSTDIR\uninstall.exe"
      !insertmacro End 5 "$INSTDIR has an installation for all users. An administrator has to remove it."
    ${EndIf}
    !insertmacro End 2 "No file can be written into $INSTDIR. Nothing was changed."
  ${EndIf}
FunctionEnd

; ---- sections

Section "-Before" SecBefore
  ; All that can refuse, before anything is taken away.
  !insertmacro RefuseAnyInUse ""
  ReadRegStr $8 SHCTX "${APPS}" InstallLocation
  ${If} $8 != ""
    StrCpy $7 $INSTDIR
    StrCpy $INSTDIR $8
    !insertmacro RefuseAnyInUse ""
    StrCpy $INSTDIR $7
  ${EndIf}
  Call RefuseUnwritable
  ; What is in this folder: for others than before when their entry names it.
  ${If} ${FileExists} "$INSTDIR\uninstall.exe"
    StrCpy $R3 $INSTDIR
    ${If} $Scope == AllUsers
      ReadRegStr $8 HKCU "${APPS}" InstallLocation
      StrCpy $R4 CurrentUser
    ${Else}
      ReadRegStr $8 HKLM "${APPS}" InstallLocation
      StrCpy $R4 AllUsers
    ${EndIf}
    !insertmacro IsThisFolder $8
    ${If} $R0 = 0
      StrCpy $R4 $Scope
    ${EndIf}
    Call TakeAway
  ${EndIf}
  ; Then the installation of before, wherever it is: the entry in Apps is its own, and gone when it was in this folder.
  ReadRegStr $8 SHCTX "${APPS}" InstallLocation
  ${If} $8 != ""
    StrCpy $R3 $8
    StrCpy $R4 $Scope
    Call TakeAway
  ${EndIf}
  !insertmacro FindMadeFolder
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe" ; first, so that a part of an installation can be removed
  WriteRegStr SHCTX "${APPS}" InstallLocation "$INSTDIR"
  WriteRegStr SHCTX "${APPS}" UninstallString '"$INSTDIR\uninstall.exe" /$Scope'
  WriteRegStr SHCTX "${APPS}" QuietUninstallString '"$INSTDIR\uninstall.exe" /$Scope /S'
  WriteRegStr SHCTX "${APPS}" DisplayName "O_Tam_id"
  WriteRegStr SHCTX "${APPS}" DisplayVersion "${VERSION}"
  WriteRegStr SHCTX "${APPS}" Publisher "O_Tam_id project"
  WriteRegDWORD SHCTX "${APPS}" NoModify 1
  WriteRegDWORD SHCTX "${APPS}" NoRepair 1
  WriteRegStr SHCTX "${APPS}" MadeFolder $9
  !insertmacro InstallCommon
SectionEnd

Section "Component, 32 bits" SecWin32
  !insertmacro InstallWin32
SectionEnd

Section "Component, 64 bits" SecWin64
  !insertmacro InstallWin64
SectionEnd

Section "Host services" SecServices
SectionEnd

Section "Bench and window" SecBench
  StrCpy $0 ""
  ${If} ${SectionIsSelected} ${SecWin32}
    !insertmacro InstallBench32
    StrCpy $0 win32
  ${EndIf}
  ${If} ${SectionIsSelected} ${SecWin64}
    !insertmacro InstallBench64
    StrCpy $0 win64
  ${EndIf}
  ${If} $0 != ""
    SetOutPath "$INSTDIR\$0" ; where the program starts
    CreateShortcut "$SMPROGRAMS\O_Tam_id.lnk" "$INSTDIR\$0\tamview.exe"
  ${EndIf}
SectionEnd

Section "Samples and script clients" SecSamples
  !insertmacro InstallSamples
SectionEnd

; Offers the window and takes nothing over: who opens .xml today still does.
Section /o "$\"Open with$\" for .xml" SecOpenWith
  StrCpy $0 win32
  ${If} ${SectionIsSelected} ${SecWin64}
    StrCpy $0 win64
  ${EndIf}
  WriteRegStr SHCTX "${WINDOW}" FriendlyAppName "O_Tam_id"
  WriteRegStr SHCTX "${WINDOW}\SupportedTypes" .xml ""
  WriteRegStr SHCTX "${WINDOW}\shell\open\command" "" '"$INSTDIR\$0\tamview.exe" "%1"'
SectionEnd

!macro RegisterKind section kind
  ${If} ${SectionIsSelected} ${section}
    !insertmacro Register ${kind} O_Tam_id.dll
    ${If} ${SectionIsSelected} ${SecServices}
      !insertmacro Register ${kind} OrvHost.dll
    ${EndIf}
    WriteRegStr SHCTX "${APPS}" Registered $Registered
    StrCpy $Components "$Components,${kind}"
    WriteRegStr SHCTX "${APPS}" DisplayIcon "$INSTDIR\${kind}\O_Tam_id.ico"
  ${EndIf}
!macroend

Section "-After"
  WriteRegStr SHCTX "${APPS}" DisplayIcon "$INSTDIR\uninstall.exe"
  StrCpy $Registered ""
  StrCpy $Components ""
  !insertmacro RegisterKind ${SecWin32} win32
  !insertmacro RegisterKind ${SecWin64} win64
  ${If} ${SectionIsSelected} ${SecServices}
    StrCpy $Components "$Components,services"
  ${EndIf}
  ${If} ${SectionIsSelected} ${SecBench}
    StrCpy $Components "$Components,bench"
  ${EndIf}
  ${If} ${SectionIsSelected} ${SecSamples}
    StrCpy $Components "$Components,samples"
  ${EndIf}
  ${If} ${SectionIsSelected} ${SecOpenWith}
    StrCpy $Components "$Components,openwith"
  ${EndIf}
  WriteRegStr SHCTX "${APPS}" Components $Components
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD SHCTX "${APPS}" EstimatedSize $0
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${SecWin32} "For hosts and scripts of 32 bits."
  !insertmacro MUI_DESCRIPTION_TEXT ${SecWin64} "For hosts and scripts of 64 bits."
  !insertmacro MUI_DESCRIPTION_TEXT ${SecServices} "Registers the host services, for a machine without a host. Names that a host has stay with it."
  !insertmacro MUI_DESCRIPTION_TEXT ${SecBench} "tambench.exe, a host without a drawing on the command line, and tamview.exe, a module in a window."
  !insertmacro MUI_DESCRIPTION_TEXT ${SecSamples} "Device streams, the catalogue, and clients in VBScript, PowerShell and Python."
  !insertmacro MUI_DESCRIPTION_TEXT ${SecOpenWith} "The Explorer offers tamview.exe for .xml files; what opens them stays."
!insertmacro MUI_FUNCTION_DESCRIPTION_END

; ---- what is chosen

; Selects a section when the list in $2 names it.
!macro Choose section name
  ${WordReplace} ",$2," ",${name}," "," "+" $3
  ${If} $3 != ",$2,"
    !insertmacro SelectSection ${section}
  ${Else}
    !insertmacro UnselectSection ${section}
  ${EndIf}
!macroend

; Takes a name out of the list in $4, which has commas around each.
!macro CrossOut name
  ${WordReplace} $4 ",${name}," "," "+" $4
!macroend

Function .onInit
  !insertmacro ReadScope
  ${If} $Scope == ""
    ; For whom it is installed already; else for all, by who may do that.
    UserInfo::GetAccountType
    Pop $1
    ReadRegStr $2 HKCU "${APPS}" InstallLocation
    ${If} $2 == ""
    ${AndIf} $1 == "Admin"
      StrCpy $Scope AllUsers
    ${Else}
      StrCpy $Scope CurrentUser
    ${EndIf}
  ${EndIf}
  !insertmacro TakeScope "An installation for all users takes an administrator. /CurrentUser installs for you alone."
  ${If} $INSTDIR == ""
    ; A folder that cannot be is passed over, as if /D= were not there.
    System::Call "kernel32::GetCommandLine() t.r1"
    ${WordReplace} $1 " /D=" "" "+" $2
    ${If} $1 != $2
      !insertmacro End 3 "/D= names no folder that can be made."
    ${EndIf}
    ReadRegStr $INSTDIR SHCTX "${APPS}" InstallLocation
  ${EndIf}
  ${If} $INSTDIR == ""
    ${If} $Scope == CurrentUser
      StrCpy $INSTDIR "$LOCALAPPDATA\Programs\O_Tam_id"
    ${ElseIf} ${RunningX64}
      StrCpy $INSTDIR "$PROGRAMFILES64\O_Tam_id"
    ${Else}
      StrCpy $INSTDIR "$PROGRAMFILES32\O_Tam_id"
    ${EndIf}
  ${EndIf}
  ; Those of the command line, those that an older version has, or all.
  ReadRegStr $2 SHCTX "${APPS}" Components
  ClearErrors
  ${GetOptions} $0 "/Components=" $3
  ${IfNot} ${Errors}
    StrCpy $2 $3
    StrCpy $4 ",$3,"
    !insertmacro CrossOut win32
    !insertmacro CrossOut win64
    !insertmacro CrossOut services
    !insertmacro CrossOut bench
    !insertmacro CrossOut samples
    !insertmacro CrossOut openwith
    ${If} $2 == ""
    ${OrIf} $4 != ","
      !insertmacro End 3 "/Components= names win32, win64, services, bench, samples, openwith, with commas between them."
    ${EndIf}
  ${EndIf}
  ${If} $2 != ""
    !insertmacro Choose ${SecWin32} win32
    !insertmacro Choose ${SecWin64} win64
    !insertmacro Choose ${SecServices} services
    !insertmacro Choose ${SecBench} bench
    !insertmacro Choose ${SecSamples} samples
    !insertmacro Choose ${SecOpenWith} openwith
  ${EndIf}
  ${IfNot} ${RunningX64}
    !insertmacro UnselectSection ${SecWin64}
    !insertmacro SetSectionFlag ${SecWin64} ${SF_RO}
  ${EndIf}
  Call LookAtChoice
  ${If} $0 != ""
    !insertmacro End 3 "$0"
  ${EndIf}
  !insertmacro RefuseAnyInUse ""
FunctionEnd

Function LookAtChoice ; sets $0 to what is wrong with it, or ""
  StrCpy $0 ""
  ${IfNot} ${SectionIsSelected} ${SecWin32}
  ${AndIfNot} ${SectionIsSelected} ${SecWin64}
    StrCpy $0 "Choose the component for 32 bits (win32), for 64 bits (win64) or for both."
  ${EndIf}
  ${If} ${SectionIsSelected} ${SecOpenWith}
  ${AndIfNot} ${SectionIsSelected} ${SecBench}
    StrCpy $0 "$\"Open with$\" for .xml (openwith) takes bench and window (bench)."
  ${EndIf}
FunctionEnd

Function RefuseChoice
  Call LookAtChoice
  ${If} $0 != ""
    MessageBox MB_OK|MB_ICONEXCLAMATION $0
    Abort
  ${EndIf}
FunctionEnd

; ---- taking it away

; Sets $R5 to scope when its entry in Apps names this folder. Where two do, the command line is right.
!macro FindOwner scope hive
  ReadRegStr $8 ${hive} "${APPS}" InstallLocation
  !insertmacro IsThisFolder $8
  ${If} $R0 = 1
    ${If} $R5 == ""
    ${OrIf} $R5 != $Scope
      StrCpy $R5 ${scope}
    ${EndIf}
  ${EndIf}
!macroend

Function un.onInit
  !insertmacro ReadScope
  StrCpy $R5 ""
  !insertmacro FindOwner CurrentUser HKCU
  !insertmacro FindOwner AllUsers HKLM
  ; Without a word of whom: those whose entry it is. The registry of others would still name what is gone from here.
  ${If} $Scope == ""
    StrCpy $Scope $R5
    ${If} $Scope == ""
      StrCpy $Scope CurrentUser
    ${EndIf}
  ${ElseIf} $R5 != ""
  ${AndIf} $R5 != $Scope
    !insertmacro End 3 "What is in $INSTDIR was installed with /$R5. Nothing was removed."
  ${EndIf}
  !insertmacro TakeScope "What is in $INSTDIR was installed for all users. An administrator has to remove it."
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/Replaced" $1
  ${IfNot} ${Errors}
    StrCpy $IsReplaced 1
  ${EndIf}
  !insertmacro RefuseAnyInUse "un."
FunctionEnd

Section "Uninstall"
  ; The entry in Apps can be that of another folder, where the component was installed since.
  ReadRegStr $8 SHCTX "${APPS}" InstallLocation
  !insertmacro IsThisFolder $8
  StrCpy $IsListed $R0
  ${If} $IsListed = 1
    ReadRegStr $Registered SHCTX "${APPS}" Registered
    ReadRegStr $9 SHCTX "${APPS}" MadeFolder
  ${Else}
    StrCpy $Registered ""
    StrCpy $9 ""
  ${EndIf}
  !insertmacro Unregister win32 OrvHost.dll
  !insertmacro Unregister win32 O_Tam_id.dll
  !insertmacro Unregister win64 OrvHost.dll
  !insertmacro Unregister win64 O_Tam_id.dll
  ; Only what the installer brought: what the user put beside it stays.
  SetOutPath "$TEMP"
  !insertmacro RemoveFiles
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  !insertmacro RemoveMadeFolders
  ${If} $IsListed = 1
    Delete "$SMPROGRAMS\O_Tam_id.lnk"
    ReadRegStr $0 SHCTX "${APPS}" Components
    ${WordReplace} "$0," ",openwith," "" "+" $1
    ${If} $1 != "$0,"
      DeleteRegKey SHCTX "${WINDOW}"
      DeleteRegKey /ifempty SHCTX "Software\Classes\Applications"
    ${EndIf}
    DeleteRegKey SHCTX "${APPS}"
  ${EndIf}
  ${If} $Scope == "CurrentUser"
    ; A user who installed nothing else had no list.
    DeleteRegKey /ifempty HKCU "Software\Microsoft\Windows\CurrentVersion\Uninstall"
  ${EndIf}
SectionEnd
