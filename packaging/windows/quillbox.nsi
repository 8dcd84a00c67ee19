; The set-up of the client, for one person and without elevation.
;   makensis -DVERSION=1.0.0 -DFOLDER=… -DLIST=… -DPORT=… -DPUBLISHER=… -DCOPYRIGHT=… -DOUTPUT=… quillbox.nsi
; FOLDER is what is installed; LIST names each file of it but quillbox.exe, and what the set-up adds, one a line; PORT is
; the internal name in the version of the client's own portio.dll.
;
;   /S        asks nothing
;   /WAIT=n   waits n seconds for a running client to close, instead of 30
;   /LANG=n   speaks 1033, English, or 2052, Chinese, and not the language of the desktop
;   /D=path   installs there (last, without quotes)
;
; Ends with 0, or with another code and everything as it was. New files are unpacked beside the old ones and swapped by
; renaming, so neither a full disk nor a file in use leaves half of each. The program goes away first and comes last: once
; it is away nobody can start it, and once nobody holds it nobody uses the rest.

Unicode true
!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh
!include TextFunc.nsh
!include WinVer.nsh

!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Quillbox"
!define PROGRAM "quillbox.exe"
!define OLD "$INSTDIR\old~"
!define NEW "$INSTDIR\new~"
; Both stand in app/close_request_win.cpp as well.
!define REQUEST "Quillbox.Close"
!define MUTEX "Local\Quillbox.SetUp"

Name "$(product)"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Quillbox"
InstallDirRegKey HKCU "${KEY}" "InstallLocation"
RequestExecutionLevel user
SetCompressor /SOLID lzma
CRCCheck force
ManifestDPIAware true
ManifestSupportedOS all
BrandingText " "
ShowInstDetails nevershow
ShowUninstDetails nevershow

Var wait    ; seconds
Var waited  ; half seconds
Var failed  ; a file could not be moved
Var mutex
Var size    ; KiB of what is installed

!define MUI_ICON "quillbox.ico"
!define MUI_UNICON "quillbox.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "set_up.bmp"
!define MUI_ABORTWARNING
!define MUI_FINISHPAGE_RUN "$INSTDIR\${PROGRAM}"
!define MUI_WELCOMEPAGE_TEXT "$(welcome)"
!insertmacro MUI_PAGE_WELCOME
!define MUI_PAGE_CUSTOMFUNCTION_PRE skipIfInstalled
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
; The first is for desktops in any other language.
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "SimpChinese"

LangString product ${LANG_ENGLISH} "Quillbox"
LangString product ${LANG_SIMPCHINESE} "羽毛盒"
LangString welcome ${LANG_ENGLISH} "Version ${VERSION} is installed for you alone, which takes no administrator.$\r$\n$\r$\nAn older version is replaced. If it is running, it closes by itself and keeps the page that you were writing.$\r$\n$\r$\n$_CLICK"
LangString welcome ${LANG_SIMPCHINESE} "版本 ${VERSION} 只为当前用户安装，无需管理员权限。$\r$\n$\r$\n旧版本会被替换。如果羽毛盒正在运行，它会自动关闭，正在编辑的页面会保留。$\r$\n$\r$\n$_CLICK"
LangString waiting ${LANG_ENGLISH} "Quillbox is closing. It keeps the page that you were writing…"
LangString waiting ${LANG_SIMPCHINESE} "正在关闭羽毛盒，正在编辑的页面会保留…"
LangString inUse ${LANG_ENGLISH} "Quillbox is still running.$\r$\n$\r$\nIf one of its dialogs is open or a page is printing, finish that, and close Quillbox. The page that you were writing is kept. Then choose Retry."
LangString inUse ${LANG_SIMPCHINESE} "羽毛盒仍在运行。$\r$\n$\r$\n如有打开的对话框或正在打印的页面，请先完成，再关闭羽毛盒。正在编辑的页面会保留。然后点击“重试”。"
LangString unchanged ${LANG_ENGLISH} "Quillbox is in use, so nothing was changed."
LangString unchanged ${LANG_SIMPCHINESE} "羽毛盒正在使用中，未作任何更改。"
LangString notWritten ${LANG_ENGLISH} "The files cannot be written to $INSTDIR. Nothing was changed. Make room on the disk, or choose another folder, and start the set-up again."
LangString notWritten ${LANG_SIMPCHINESE} "无法将文件写入 $INSTDIR，未作任何更改。请清理磁盘空间或选择其他文件夹，然后重新运行安装程序。"
LangString another ${LANG_ENGLISH} "Another set-up of Quillbox is running. Let it finish first."
LangString another ${LANG_SIMPCHINESE} "羽毛盒的另一个安装程序正在运行，请先等待其完成。"
LangString tooOld ${LANG_ENGLISH} "Quillbox needs Windows 7 or newer."
LangString tooOld ${LANG_SIMPCHINESE} "羽毛盒需要 Windows 7 或更高版本。"

!macro VERSION_TEXTS language product
    VIAddVersionKey /LANG=${language} "ProductName" "${product}"
    VIAddVersionKey /LANG=${language} "ProductVersion" "${VERSION}"
    VIAddVersionKey /LANG=${language} "CompanyName" "${PUBLISHER}"
    VIAddVersionKey /LANG=${language} "LegalCopyright" "${COPYRIGHT}"
    VIAddVersionKey /LANG=${language} "FileVersion" "${VERSION}"
!macroend
VIProductVersion "${VERSION}.0"
!insertmacro VERSION_TEXTS ${LANG_ENGLISH} "Quillbox"
VIAddVersionKey /LANG=${LANG_ENGLISH} "FileDescription" "Quillbox set-up"
!insertmacro VERSION_TEXTS ${LANG_SIMPCHINESE} "羽毛盒"
VIAddVersionKey /LANG=${LANG_SIMPCHINESE} "FileDescription" "羽毛盒安装程序"

; Calls a function for each file of the list but the program, with its name in $R0.
!macro EACH function
    FileOpen $R1 "$PLUGINSDIR\list.txt" r
    ${Do}
        ClearErrors
        FileRead $R1 $R0
        ${If} ${Errors}
            ${ExitDo}
        ${EndIf}
        ${TrimNewLines} $R0 $R0
        ${If} $R0 != ""
            Call ${function}
        ${EndIf}
    ${Loop}
    FileClose $R1
!macroend

; Moves $R0 from one folder to another, with the folder within that it lies in.
!macro MOVE from to
    ${GetParent} $R0 $R2
    CreateDirectory "${to}\$R2"
    ClearErrors
    Rename "${from}\$R0" "${to}\$R0"
    ${If} ${Errors}
        StrCpy $failed 1
    ${EndIf}
!macroend

; What set-up and uninstaller both do; functions of the latter have to begin with "un.".
!macro SHARED un
    Function ${un}readSwitches
        SetSilent normal
        StrCpy $wait 30
        ${GetParameters} $0
        ClearErrors
        ${GetOptions} $0 "/S" $1
        ${IfNot} ${Errors}
            SetSilent silent
        ${EndIf}
        ClearErrors
        ${GetOptions} $0 "/WAIT=" $1
        ${IfNot} ${Errors}
            StrCpy $wait $1
        ${EndIf}
        ClearErrors
        ${GetOptions} $0 "/LANG=" $1
        ${IfNot} ${Errors}
            StrCpy $LANGUAGE $1
        ${EndIf}
    FunctionEnd

    Function ${un}fail
        ${If} $R9 != "$(unchanged)" ; has been asked about
            MessageBox MB_OK|MB_ICONEXCLAMATION $R9 /SD IDOK
        ${EndIf}
        System::Call 'kernel32::CloseHandle(p $mutex)'
        SetErrorLevel 2
        Abort $R9
    FunctionEnd

    ; Two set-ups at a time would swap each other's files; clients look at it as well, whether somebody still waits.
    Function ${un}begin
        System::Call 'kernel32::CreateMutex(p 0, i 0, t "${MUTEX}")p.r0 ?e'
        Pop $1
        StrCpy $mutex $0
        ${If} $1 = 183
            StrCpy $R9 "$(another)"
            Call ${un}fail
        ${EndIf}
        InitPluginsDir
        SetOutPath "$PLUGINSDIR"
        File "/oname=list.txt" "${LIST}"
    FunctionEnd

    ; $R3 = whether the portio.dll in the folder is another one than the client's own.
    Function ${un}lookAtPort
        StrCpy $R3 0
        ${IfNot} ${FileExists} "$INSTDIR\portio.dll"
            Return
        ${EndIf}
        StrCpy $6 ""
        System::Call 'version::GetFileVersionInfoSize(t "$INSTDIR\portio.dll", p 0)i.r1'
        ${If} $1 > 0
            System::Alloc $1
            Pop $2
            System::Call 'version::GetFileVersionInfo(t "$INSTDIR\portio.dll", i 0, i r1, p r2)i.r3'
            System::Call 'version::VerQueryValue(p r2, t "\StringFileInfo\040904B0\InternalName", *p.r4, *i.r5)i.r3'
            ${If} $3 <> 0
                System::Call 'kernel32::lstrcpyn(t.r6, p r4, i 100)'
            ${EndIf}
            System::Free $2
        ${EndIf}
        ${If} $6 != "${PORT}"
            StrCpy $R3 1
        ${EndIf}
    FunctionEnd

    ; $R4 = whether nobody runs $R5, or has it open.
    Function ${un}lookIfFree
        StrCpy $R4 1
        ${If} ${FileExists} $R5
            System::Call 'kernel32::CreateFile(t R5, i 0x40000000, i 0, p 0, i 3, i 0, p 0)p.r0'
            ${If} $0 = -1
                StrCpy $R4 0
            ${Else}
                System::Call 'kernel32::CloseHandle(p r0)'
            ${EndIf}
        ${EndIf}
    FunctionEnd

    Function ${un}putAside
        ${If} $R0 == "portio.dll"
            Call ${un}lookAtPort
            ${If} $R3 = 1
                Return
            ${EndIf}
        ${EndIf}
        ${If} $failed = 0
        ${AndIf} ${FileExists} "$INSTDIR\$R0"
            !insertmacro MOVE "$INSTDIR" "${OLD}"
        ${EndIf}
    FunctionEnd

    Function ${un}bringBack
        ${If} ${FileExists} "${OLD}\$R0"
            Delete "$INSTDIR\$R0"
            !insertmacro MOVE "${OLD}" "$INSTDIR"
        ${EndIf}
    FunctionEnd

    Function ${un}removeEmptyFolder
        ${GetParent} $R0 $R2
        ${If} $R2 != ""
            RMDir "$INSTDIR\$R2"
        ${EndIf}
    FunctionEnd

    Function ${un}bringAllBack
        !insertmacro EACH ${un}bringBack
        StrCpy $R0 ${PROGRAM}
        Call ${un}bringBack
        RMDir /r "${OLD}"
    FunctionEnd

    ; $failed = 0: all files are in the folder for the old ones. Else they are where they were.
    Function ${un}putAllAside
        StrCpy $failed 0
        StrCpy $R5 "$INSTDIR\${PROGRAM}"
        Call ${un}lookIfFree
        ${If} $R4 = 0
            StrCpy $failed 1
            Return
        ${EndIf}
        StrCpy $R0 ${PROGRAM}
        Call ${un}putAside
        ; Somebody may have started it since.
        StrCpy $R5 "${OLD}\${PROGRAM}"
        Call ${un}lookIfFree
        ${If} $R4 = 0
            StrCpy $failed 1
        ${Else}
            !insertmacro EACH ${un}putAside
        ${EndIf}
        ${If} $failed = 1
            Call ${un}bringAllBack
            StrCpy $failed 1
        ${EndIf}
    FunctionEnd

    ; Asks running clients to close until the files can be put aside, or ends the set-up.
    Function ${un}putAsideWhenClosed
        System::Call 'user32::RegisterWindowMessage(t "${REQUEST}")i.R7'
        StrCpy $waited 0
        ${Do}
            Call ${un}putAllAside
            ${If} $failed = 0
                Return
            ${EndIf}
            ${If} $waited = 0
                DetailPrint "$(waiting)"
            ${EndIf}
            IntOp $R8 $waited / 2
            ${If} $R8 >= $wait
                ${If} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(inUse)" /SD IDCANCEL IDCANCEL`
                    StrCpy $R9 "$(unchanged)"
                    Return
                ${EndIf}
                StrCpy $waited 0
            ${EndIf}
            System::Call 'user32::PostMessage(p 0xffff, i R7, p 0, p 0)'
            Sleep 500
            IntOp $waited $waited + 1
        ${Loop}
    FunctionEnd
!macroend
!insertmacro SHARED ""
!insertmacro SHARED "un."

Function .onInit
    Call readSwitches
    ${IfNot} ${AtLeastWin7}
        MessageBox MB_OK|MB_ICONSTOP "$(tooOld)" /SD IDOK
        SetErrorLevel 2
        Quit
    ${EndIf}
FunctionEnd

Function un.onInit
    Call un.readSwitches
FunctionEnd

Function skipIfInstalled
    ${If} ${FileExists} "$INSTDIR\${PROGRAM}"
        Abort
    ${EndIf}
FunctionEnd

; Lengthens the list by that of the version before, in the folder $R3.
Function joinList
    ${If} ${FileExists} "$R3\installed.txt"
        FileOpen $R1 "$R3\installed.txt" r
        FileOpen $R2 "$PLUGINSDIR\list.txt" a
        FileSeek $R2 0 END
        ${Do}
            ClearErrors
            FileRead $R1 $R0
            ${If} ${Errors}
                ${ExitDo}
            ${EndIf}
            FileWrite $R2 $R0
        ${Loop}
        FileClose $R1
        FileClose $R2
    ${EndIf}
FunctionEnd

Function removeNew
    SetOutPath "$PLUGINSDIR"
    RMDir /r "${NEW}"
    !insertmacro EACH removeEmptyFolder
    RMDir "$INSTDIR"
    RMDir "$LOCALAPPDATA\Programs"
FunctionEnd

; What is in place while the old files are put aside is new, but for a port that is not the client's.
Function removePlaced
    ${If} $R0 == "portio.dll"
        Call lookAtPort
        ${If} $R3 = 1
            Return
        ${EndIf}
    ${EndIf}
    Delete "$INSTDIR\$R0"
FunctionEnd

Function place
    ${If} $R0 == "portio.dll"
    ${AndIf} ${FileExists} "$INSTDIR\portio.dll"
        Return
    ${EndIf}
    ${If} $failed = 0
    ${AndIf} ${FileExists} "${NEW}\$R0"
        !insertmacro MOVE "${NEW}" "$INSTDIR"
    ${EndIf}
FunctionEnd

Function register
    CreateShortCut "$SMPROGRAMS\Quillbox.lnk" "$INSTDIR\${PROGRAM}"
    WriteRegStr HKCU "${KEY}" "DisplayName" "Quillbox"
    WriteRegStr HKCU "${KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${KEY}" "DisplayIcon" "$INSTDIR\${PROGRAM}"
    WriteRegStr HKCU "${KEY}" "Publisher" "${PUBLISHER}"
    WriteRegStr HKCU "${KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKCU "${KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKCU "${KEY}" "EstimatedSize" $size
    WriteRegDWORD HKCU "${KEY}" "NoModify" 1
    WriteRegDWORD HKCU "${KEY}" "NoRepair" 1
FunctionEnd

Section
    Call begin
    StrCpy $R3 "$INSTDIR"
    Call joinList
    StrCpy $R3 "${OLD}"
    Call joinList
    ${If} ${FileExists} "${OLD}\*.*" ; a set-up was cut off between its steps
        Call bringAllBack
    ${EndIf}
    RMDir /r "${NEW}"

    ClearErrors
    SetOutPath "${NEW}"
    SetOverwrite try
    File /r "${FOLDER}/*"
    File "/oname=installed.txt" "${LIST}"
    WriteUninstaller "${NEW}\uninstall.exe"
    ${If} ${Errors}
        Call removeNew
        StrCpy $R9 "$(notWritten)"
        Call fail
    ${EndIf}
    ${GetSize} "${NEW}" "/S=0K" $0 $1 $2
    StrCpy $size $0
    SetOutPath "$PLUGINSDIR"

    Call putAsideWhenClosed
    ${If} $failed = 1
        Call removeNew
        Call fail
    ${EndIf}
    !insertmacro EACH place
    StrCpy $R0 ${PROGRAM}
    Call place
    ${If} $failed = 1
        !insertmacro EACH removePlaced
        Call bringAllBack
        Call removeNew
        StrCpy $R9 "$(notWritten)"
        Call fail
    ${EndIf}
    RMDir /r "${OLD}"
    RMDir /r "${NEW}"
    !insertmacro EACH removeEmptyFolder
    SetOutPath "$INSTDIR" ; where the shortcut and the finish page start the client
    Call register
    System::Call 'kernel32::CloseHandle(p $mutex)'
SectionEnd

; Files could not be unpacked, or the person has cancelled.
Function .onInstFailed
    ${If} ${FileExists} "${NEW}\*.*"
        Call removeNew
    ${EndIf}
FunctionEnd

Section Uninstall
    Call un.begin
    Call un.putAsideWhenClosed
    ${If} $failed = 1
        Call un.fail
    ${EndIf}
    RMDir /r "${OLD}"
    Delete "$SMPROGRAMS\Quillbox.lnk"
    DeleteRegKey HKCU "${KEY}"
    !insertmacro EACH un.removeEmptyFolder
    SetOutPath "$TEMP"
    RMDir "$INSTDIR"
    RMDir "$LOCALAPPDATA\Programs"
SectionEnd
