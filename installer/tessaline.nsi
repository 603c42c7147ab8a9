; Tessaline's setup program: a per-user install (no administrator, no elevation prompt) into
; %LOCALAPPDATA%\Programs\Tessaline, where the program can write setup.pref, its lists and tl_current.bmp
; beside itself. Built by scripts/package.sh:
;   makensis /DVERSION=1.2.3 /DPROGRAM=path\to\tessaline.exe /DICON=path\to\tessaline.ico /DOUTFILE=setup.exe
; /S installs silently with the default choices; /D=folder (last on the line) installs elsewhere.

!macro REQUIRE name
  !ifndef ${name}
    !error "${name} must be given with /D${name}=..."
  !endif
!macroend
!insertmacro REQUIRE VERSION
!insertmacro REQUIRE PROGRAM
!insertmacro REQUIRE ICON
!insertmacro REQUIRE OUTFILE

Unicode true
Target amd64-unicode
ManifestDPIAware true
RequestExecutionLevel user
SetCompressor /SOLID lzma

!define PRODUCT "Tessaline"
!define PUBLISHER "The Tessaline developers"
!define EXE "tessaline.exe"
!define MAIN_CLASS "TessalineMain"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\${PRODUCT}"
!define RUN_KEY "Software\Microsoft\Windows\CurrentVersion\Run"
; Sign-in starts the program in its "auto" mode: straight to the tray with the last list, without the
; panel that a start from the Start menu may show.
!define RUN_COMMAND '"$INSTDIR\${EXE}" /auto'

!include "MUI2.nsh"
!include "LogicLib.nsh"
!include "FileFunc.nsh"
!include "WinMessages.nsh"

Name "${PRODUCT} ${VERSION}"
OutFile "${OUTFILE}"
InstallDir "$LOCALAPPDATA\Programs\${PRODUCT}"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
BrandingText "${PRODUCT} ${VERSION}"

VIProductVersion "${VERSION}.0"
VIAddVersionKey /LANG=1033 "ProductName" "${PRODUCT}"
VIAddVersionKey /LANG=1033 "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=1033 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=1033 "FileDescription" "${PRODUCT} setup"
VIAddVersionKey /LANG=1033 "CompanyName" "${PUBLISHER}"
VIAddVersionKey /LANG=1033 "LegalCopyright" "Copyright (C) 2026 ${PUBLISHER}"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_NODESC
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_TEXT "Start ${PRODUCT} now"
!define MUI_FINISHPAGE_RUN_FUNCTION startInstalled

!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

Var closedRunning  ; 1 when a running copy was asked to quit and should come back after the upgrade

; A running copy of the installed program holds its file open. Each one is asked to quit the way its own
; Quit does it (WM_CLOSE to its main window: the list and setup.pref are written first), and waited for.
; Copies running from elsewhere (a portable one) are left alone. One that does not go (its list manager
; may be open with unsaved edits) is never killed: the user is asked to close it, or a silent run fails.
!macro CLOSE_RUNNING un
Function ${un}closeRunning
  StrCpy $closedRunning 0
  StrCpy $R0 0
  ${Do}
    FindWindow $R0 "${MAIN_CLASS}" "" "" $R0
    ${If} $R0 == 0
      ${Break}
    ${EndIf}
    System::Call 'user32::GetWindowThreadProcessId(p $R0, *i 0 r1) i'
    ; PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE
    System::Call 'kernel32::OpenProcess(i 0x101000, i 0, i r1) p .r2'
    ${If} $2 P<> 0
      System::Call 'kernel32::QueryFullProcessImageNameW(p r2, i 0, w .r3, *i ${NSIS_MAX_STRLEN}) i .r4'
      ${If} $4 <> 0
      ${AndIf} $3 == "$INSTDIR\${EXE}"
        DetailPrint "Asking the running ${PRODUCT} to quit"
        SendMessage $R0 ${WM_CLOSE} 0 0 /TIMEOUT=15000
        System::Call 'kernel32::WaitForSingleObject(p r2, i 20000) i'
        StrCpy $closedRunning 1
        StrCpy $R0 0  ; windows changed: search again from the first
      ${EndIf}
      System::Call 'kernel32::CloseHandle(p r2)'
    ${EndIf}
  ${Loop}
  ; Whatever still holds the program open: the manager window of our copy, or one that did not answer.
  ${Do}
    ${IfNot} ${FileExists} "$INSTDIR\${EXE}"
      ${Break}
    ${EndIf}
    ClearErrors
    FileOpen $R1 "$INSTDIR\${EXE}" a
    ${IfNot} ${Errors}
      FileClose $R1
      ${Break}
    ${EndIf}
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "${PRODUCT} is still running from $INSTDIR.$\r$\n$\r$\nClose it (Quit in its tray menu, or close its list manager), then choose Retry." /SD IDCANCEL IDRETRY retry
    SetErrorLevel 2
    Abort "${PRODUCT} is still running; nothing was changed."
    retry:
  ${Loop}
FunctionEnd
!macroend
!insertmacro CLOSE_RUNNING ""
!insertmacro CLOSE_RUNNING "un."

Function startInstalled
  Exec '${RUN_COMMAND}'
FunctionEnd

Section "${PRODUCT}" SecProgram
  SectionIn RO
  Call closeRunning
  SetOutPath "$INSTDIR"
  File "/oname=${EXE}" "${PROGRAM}"
  WriteUninstaller "$INSTDIR\uninstall.exe"

  CreateShortcut "$SMPROGRAMS\${PRODUCT}.lnk" "$INSTDIR\${EXE}" "" "$INSTDIR\${EXE}" 0 SW_SHOWNORMAL "" \
    "Wallpaper changer"
  ; The sign-in choice is made anew on each install; the section below writes it back when chosen.
  DeleteRegValue HKCU "${RUN_KEY}" "${PRODUCT}"

  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "${PRODUCT}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "${PUBLISHER}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\${EXE},0"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
  ; Our own files only: lists and pictures a user keeps in the folder are not the program's size.
  ${GetSize} "$INSTDIR" "/M=*.exe /S=0K /G=0" $0 $1 $2
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" $0
SectionEnd

Section "Start ${PRODUCT} when I sign in" SecRun
  WriteRegStr HKCU "${RUN_KEY}" "${PRODUCT}" '${RUN_COMMAND}'
SectionEnd

; The same keys the list manager's "Associate with WALL files" writes, for this user only.
Section "Open .wall lists with ${PRODUCT}" SecAssociate
  WriteRegStr HKCU "Software\Classes\.wall" "" "${PRODUCT}"
  WriteRegStr HKCU "Software\Classes\${PRODUCT}" "" "${PRODUCT} File"
  WriteRegStr HKCU "Software\Classes\${PRODUCT}\DefaultIcon" "" "$INSTDIR\${EXE},0"
  WriteRegStr HKCU "Software\Classes\${PRODUCT}\shell\open\command" "" '"$INSTDIR\${EXE}" "%1"'
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'  ; SHCNE_ASSOCCHANGED
SectionEnd

; An upgrade brings back the copy it stopped; an interactive install offers it on the last page.
Section "-restart"
  ${If} $closedRunning == 1
  ${AndIf} ${Silent}
    Exec '${RUN_COMMAND}'
  ${EndIf}
SectionEnd

Function .onInit
  SetShellVarContext current
  ; Over an earlier install, its choice of starting at sign-in is kept.
  ReadRegStr $0 HKCU "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $0 != ""
    ReadRegStr $1 HKCU "${RUN_KEY}" "${PRODUCT}"
    ${If} $1 == ""
      SectionSetFlags ${SecRun} 0
    ${EndIf}
  ${EndIf}
FunctionEnd

Function un.onInit
  SetShellVarContext current
FunctionEnd

; Removes what setup put there; the user's lists (.wall) and pictures in the folder stay, and so does the
; folder with them. setup.pref goes only when the user says so (never in a silent run).
Section "Uninstall"
  Call un.closeRunning
  Delete "$INSTDIR\${EXE}"
  Delete "$INSTDIR\tl_current.bmp"
  Delete "$SMPROGRAMS\${PRODUCT}.lnk"
  ${If} ${FileExists} "$INSTDIR\setup.pref"
    MessageBox MB_YESNO|MB_ICONQUESTION|MB_DEFBUTTON2 "Remove ${PRODUCT}'s settings (setup.pref) too?$\r$\n$\r$\nYour lists and pictures are kept either way." /SD IDNO IDNO keepSettings
    Delete "$INSTDIR\setup.pref"
    keepSettings:
  ${EndIf}

  ReadRegStr $0 HKCU "${RUN_KEY}" "${PRODUCT}"
  ${If} $0 == '${RUN_COMMAND}'
    DeleteRegValue HKCU "${RUN_KEY}" "${PRODUCT}"
  ${EndIf}
  ; .wall is left alone when another program has taken it over since.
  ReadRegStr $0 HKCU "Software\Classes\.wall" ""
  ${If} $0 == "${PRODUCT}"
    DeleteRegKey HKCU "Software\Classes\.wall"
  ${EndIf}
  DeleteRegKey HKCU "Software\Classes\${PRODUCT}"
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
  DeleteRegKey HKCU "${UNINSTALL_KEY}"

  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"  ; only when nothing of the user's is left in it
SectionEnd
