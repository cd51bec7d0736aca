; The installer. It installs for the current user without administrator rights, into a writable
; folder, because the program keeps its settings, log and downloaded updates in its working folder.
; packaging/windows/build defines STAGE (the files to install), OUTPUT (identity.nsh, removals.nsh),
; FILE, ICON, TITLE (of the program's window) and SIGN (a command that gets a file).

Target amd64-unicode
SetCompressor /SOLID lzma
ManifestDPIAware true
ManifestSupportedOS Win10
RequestExecutionLevel user

!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh
!include WinVer.nsh
!include WinMessages.nsh
!addincludedir "${OUTPUT}"
!include identity.nsh

!define LIBRARY "BEYONDIOx64.dll"
!define MENU "$SMPROGRAMS\${PROGRAM}"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\LaserRallyvane"

Name "${PROGRAM}"
OutFile "${FILE}"
InstallDir "$LOCALAPPDATA\Programs\${PROGRAM}"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
BrandingText "${PROGRAM} ${VERSION}"
!uninstfinalize '"${SIGN}" "%1"' = 0

VIProductVersion "${VERSION}.0.0"
VIAddVersionKey "ProductName" "${PROGRAM}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "${PROGRAM} setup"
VIAddVersionKey "CompanyName" "${COMPANY}"
VIAddVersionKey "LegalCopyright" "${COPYRIGHT}"
; Checked by packaging/publish.
VIAddVersionKey "UpdateHost" "${UPDATE_HOST}"

; The text of the last page about the host's library, and which program that page offers to start.
Var LibraryText
Var Offer

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!define MUI_FINISHPAGE_TEXT "$LibraryText"
!define MUI_FINISHPAGE_TEXT_LARGE
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_TEXT "Start ${PROGRAM}"
!define MUI_FINISHPAGE_RUN_FUNCTION StartProgram
; The only second box that the page can have.
!define MUI_FINISHPAGE_SHOWREADME
!define MUI_FINISHPAGE_SHOWREADME_TEXT "Rehearse without a laser"
!define MUI_FINISHPAGE_SHOWREADME_FUNCTION StartRehearsal
!define MUI_FINISHPAGE_NOREBOOTSUPPORT
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_PAGE_CUSTOMFUNCTION_PRE LookForLibrary
!define MUI_PAGE_CUSTOMFUNCTION_SHOW OfferWhatCanStart
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; Sets $0 to 1 if the file cannot be written, because its program is running.
!macro LookAtFile name
    ${If} ${FileExists} "$INSTDIR\${name}"
        ClearErrors
        FileOpen $1 "$INSTDIR\${name}" a
        ${If} ${Errors}
            StrCpy $0 1
        ${Else}
            FileClose $1
        ${EndIf}
    ${EndIf}
!macroend

!macro LookForPrograms
    StrCpy $0 0
    !insertmacro LookAtFile "rallyvane.exe"
    !insertmacro LookAtFile "rehearse.exe"
    !insertmacro LookAtFile "rehearsal\rallyvane.exe"
    !insertmacro LookAtFile "rehearsal\rehearsalhost.exe"
!macroend

; Closes a running program like its operator would, so that it blanks the laser and saves its
; settings, and waits for its end. If it does not end, setup stops before changing anything.
!macro DefineEndProgram prefix
Function ${prefix}EndProgram
    !insertmacro LookForPrograms
    ${If} $0 == 0
        Return
    ${EndIf}
    MessageBox MB_OKCANCEL|MB_ICONEXCLAMATION \
        "${PROGRAM} is running. Setup will close it first." /SD IDOK IDOK close
    Abort
close:
    FindWindow $2 "" "${TITLE}"
    ${If} $2 <> 0
        SendMessage $2 ${WM_CLOSE} 0 0 /TIMEOUT=5000
    ${EndIf}
    ${For} $3 1 50
        Sleep 200
        !insertmacro LookForPrograms
        ${If} $0 == 0
            Return
        ${EndIf}
    ${Next}
    MessageBox MB_RETRYCANCEL|MB_ICONSTOP \
        "${PROGRAM} could not be closed. Please close it and its rehearsal host." /SD IDCANCEL IDRETRY close
    SetErrorLevel 3
    Quit
FunctionEnd
!macroend
!insertmacro DefineEndProgram ""
!insertmacro DefineEndProgram "un."

Function .onInit
    ${IfNot} ${AtLeastWin10}
        MessageBox MB_OK|MB_ICONSTOP "${PROGRAM} needs Windows 10 or later." /SD IDOK
        SetErrorLevel 3
        Quit
    ${EndIf}
FunctionEnd

Function StartProgram
    SetOutPath "$INSTDIR"
    Exec '"$INSTDIR\rallyvane.exe"'
FunctionEnd

Function StartRehearsal
    SetOutPath "$INSTDIR"
    Exec '"$INSTDIR\rehearse.exe"'
FunctionEnd

; Looks for the host's library where the program will: beside it, in the system's folders, and in
; those of PATH, which may be longer than a string here.
Function LookForLibrary
    System::Call 'kernel32::SearchPathW(w "$INSTDIR;$SYSDIR;$WINDIR\System;$WINDIR", \
        w "${LIBRARY}", p 0, i ${NSIS_MAX_STRLEN}, w .r1, p 0) i .r0'
    ${If} $0 == 0
        System::Alloc 65536
        Pop $2
        System::Call 'kernel32::GetEnvironmentVariableW(w "PATH", p r2, i 32768)'
        System::Call 'kernel32::SearchPathW(p r2, w "${LIBRARY}", p 0, i ${NSIS_MAX_STRLEN}, \
            w .r1, p 0) i .r0'
        System::Free $2
    ${EndIf}
    StrCpy $LibraryText "The game needs BEYOND's library, ${LIBRARY}, beside rallyvane.exe or \
elsewhere in the system's search order. It comes with BEYOND.$\r$\n$\r$\n"
    ${If} $0 == 0
        StrCpy $LibraryText "$LibraryTextIt was not found. Copy it into the program's folder, or \
rehearse without it."
        StrCpy $Offer rehearsal
    ${Else}
        StrCpy $LibraryText "$LibraryTextIt was found:$\r$\n$1"
        StrCpy $Offer game
    ${EndIf}
FunctionEnd

; Game and rehearsal cannot run at the same time in one folder, so ticking one clears the other.
!macro OnlyOneOf clicked other
    Pop $0
    ${NSD_GetState} ${clicked} $0
    ${If} $0 == ${BST_CHECKED}
        ${NSD_Uncheck} ${other}
    ${EndIf}
!macroend

Function StartClicked
    !insertmacro OnlyOneOf $mui.FinishPage.Run $mui.FinishPage.ShowReadme
FunctionEnd

Function RehearseClicked
    !insertmacro OnlyOneOf $mui.FinishPage.ShowReadme $mui.FinishPage.Run
FunctionEnd

Function OfferWhatCanStart
    ${If} $Offer == game
        ${NSD_Uncheck} $mui.FinishPage.ShowReadme
    ${Else}
        ${NSD_Uncheck} $mui.FinishPage.Run
    ${EndIf}
    ${NSD_OnClick} $mui.FinishPage.Run StartClicked
    ${NSD_OnClick} $mui.FinishPage.ShowReadme RehearseClicked
FunctionEnd

Section
    Call EndProgram
    ; Removes files that only the older version had. Settings are kept.
    ${If} ${FileExists} "$INSTDIR\uninstall.exe"
        ExecWait '"$INSTDIR\uninstall.exe" /S _?=$INSTDIR'
    ${EndIf}
    SetOutPath "$INSTDIR"
    ClearErrors
    File /r "${STAGE}/*"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    ${If} ${Errors}
        MessageBox MB_OK|MB_ICONSTOP "Some files could not be written to $INSTDIR." /SD IDOK
        SetErrorLevel 3
        Abort
    ${EndIf}

    ; A shortcut's working folder is the current output folder.
    CreateDirectory "${MENU}"
    CreateShortcut "${MENU}\${PROGRAM}.lnk" "$INSTDIR\rallyvane.exe"
    CreateShortcut "${MENU}\Rehearse without a laser.lnk" "$INSTDIR\rehearse.exe"
    CreateShortcut "${MENU}\Operator's guide.lnk" "$INSTDIR\guide\operator-guide.html"

    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "${PROGRAM}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\rallyvane.exe"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "${COMPANY}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" $0
SectionEnd

Section Uninstall
    Call un.EndProgram
    !include removals.nsh
    Delete "$INSTDIR\uninstall.exe"
    Delete "${MENU}\${PROGRAM}.lnk"
    Delete "${MENU}\Rehearse without a laser.lnk"
    Delete "${MENU}\Operator's guide.lnk"
    RMDir "${MENU}"
    DeleteRegKey HKCU "${UNINSTALL_KEY}"
    ; Fails if it contains the operator's own files.
    SetOutPath "$TEMP"
    RMDir "$INSTDIR"
SectionEnd
