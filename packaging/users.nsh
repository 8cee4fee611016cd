; Who has a file open. The Restart Manager of Windows knows every process; where it does not answer, the modules of
; the processes that this 32-bit program may look into are compared with the file's path.

Var Users ; what was found, a line for each process

!define TH32CS_SNAPPROCESS 2
!define TH32CS_SNAPMODULE 0x18
!define SIZE_OF_PROCESS 556     ; PROCESSENTRY32W
!define SIZE_OF_MODULE 1064     ; MODULEENTRY32W
!define SIZE_OF_RM_PROCESS 668  ; RM_PROCESS_INFO

; RefuseWhenInUse: takes a path from the stack and ends the program with status 4 when a process has that file open.
!macro DefineRefuseWhenInUse prefix
Function ${prefix}AskRestartManager ; $R9 the path
  System::Call 'rstrtmgr::RmStartSession(*i .R0, i 0, w .R1) i .R2'
  ${If} $R2 == 0
    System::Call '*(&w1024 R9) p .R4'
    System::Call '*(p R4) p .R3'
    System::Call 'rstrtmgr::RmRegisterResources(i R0, i 1, p R3, i 0, p 0, i 0, p 0) i .R2'
    System::Free $R3
    System::Free $R4
    ${If} $R2 == 0
      IntOp $R5 ${SIZE_OF_RM_PROCESS} * 16
      System::Alloc $R5
      Pop $R4
      StrCpy $R7 16
      System::Call 'rstrtmgr::RmGetList(i R0, *i .R6, *i R7R7, p R4, *i .R8) i .R2'
      ${If} $R2 == 0
      ${AndIf} $R7 <= 16
        StrCpy $R5 $R4
        ${While} $R7 > 0
          System::Call '*$R5(i .R6, i, i, &w256 .R8)'
          StrCpy $Users "$Users$\n$R8 (process $R6)"
          IntOp $R5 $R5 + ${SIZE_OF_RM_PROCESS}
          IntOp $R7 $R7 - 1
        ${EndWhile}
      ${EndIf}
      System::Free $R4
    ${EndIf}
    System::Call 'rstrtmgr::RmEndSession(i R0)'
  ${EndIf}
FunctionEnd

Function ${prefix}AskProcess ; $R9 the path, $R6 the process, $R8 its program
  System::Call 'kernel32::CreateToolhelp32Snapshot(i ${TH32CS_SNAPMODULE}, i R6) p .R3'
  ${If} $R3 != -1
    System::Alloc ${SIZE_OF_MODULE}
    Pop $R4
    System::Call '*$R4(i ${SIZE_OF_MODULE})'
    System::Call 'kernel32::Module32FirstW(p R3, p R4) i .R5'
    ${While} $R5 <> 0
      System::Call '*$R4(i, i, i, i, i, p, i, p, &w256, &w260 .R7)'
      ${If} $R7 == $R9
        StrCpy $Users "$Users$\n$R8 (process $R6)"
        ${Break}
      ${EndIf}
      System::Call 'kernel32::Module32NextW(p R3, p R4) i .R5'
    ${EndWhile}
    System::Free $R4
    System::Call 'kernel32::CloseHandle(p R3)'
  ${EndIf}
FunctionEnd

Function ${prefix}AskAllProcesses ; $R9 the path
  System::Call 'kernel32::CreateToolhelp32Snapshot(i ${TH32CS_SNAPPROCESS}, i 0) p .R0'
  ${If} $R0 != -1
    System::Alloc ${SIZE_OF_PROCESS}
    Pop $R1
    System::Call '*$R1(i ${SIZE_OF_PROCESS})'
    System::Call 'kernel32::Process32FirstW(p R0, p R1) i .R2'
    ${While} $R2 <> 0
      System::Call '*$R1(i, i, i .R6, p, i, i, i, i, i, &w260 .R8)'
      Call ${prefix}AskProcess
      System::Call 'kernel32::Process32NextW(p R0, p R1) i .R2'
    ${EndWhile}
    System::Free $R1
    System::Call 'kernel32::CloseHandle(p R0)'
  ${EndIf}
FunctionEnd

Function ${prefix}RefuseWhenInUse
  Pop $R9
  ${If} ${FileExists} $R9
    ; A file that a process has loaded cannot be opened for writing.
    ClearErrors
    FileOpen $R0 $R9 a
    ${If} ${Errors}
      StrCpy $Users ""
      Call ${prefix}AskRestartManager
      ${If} $Users == ""
        Call ${prefix}AskAllProcesses
      ${EndIf}
      ${If} $Users == ""
        StrCpy $Users "$\nA program that cannot be named here, or $R9 is write-protected."
      ${EndIf}
      !insertmacro Refuse "$R9 is in use. Close what uses it, and try again. Nothing was changed.$\n$Users"
    ${EndIf}
    FileClose $R0
  ${EndIf}
FunctionEnd
!macroend

; In silence the words go to the file that /Log= names, and to nobody otherwise.
!macro Refuse words
  !insertmacro Log `${words}`
  !insertmacro End 4 `${words}`
!macroend

!macro Log words
  ${GetParameters} $R1
  ClearErrors
  ${GetOptions} $R1 "/Log=" $R2
  ${IfNot} ${Errors}
    FileOpen $R1 $R2 w
    FileWriteUTF16LE /BOM $R1 `${words}`
    FileClose $R1
  ${EndIf}
!macroend
