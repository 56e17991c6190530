; The installer for one user, without the rights of an administrator. script/package-windows passes VERSION, SIZE (KiB),
; MARKER (the running copy's shared memory), ICON, OUTPUT, and LISTS, the folder of the lists of files and of the
; picture of the last page.
; By default the installer is a 32-bit program, which needs the 32-bit parts of Windows.
Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel user
ManifestDPIAware true
ManifestSupportedOS all
AllowSkipFiles off

!include LogicLib.nsh
!include MUI2.nsh
!include WinVer.nsh

!define ENTRY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Nubaria"
!define UNINSTALLER "desinstalar.exe"
; What a silent run ends with, beside 1 (cancelled) and 2 (failed).
!define RESULT_RUNNING 3
!define RESULT_OLD_WINDOWS 4

Name "Nubaria"
OutFile "${OUTPUT}"
BrandingText "Nubaria ${VERSION}"
InstallDir "$LOCALAPPDATA\Programs\Nubaria"
InstallDirRegKey HKCU "${ENTRY}" "InstallLocation"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
; Some of the translation's own texts have capitals or blanks in the wrong places.
SpaceTexts "Espacio requerido: " "Espacio disponible: "
!define MUI_DIRECTORYPAGE_TEXT_DESTINATION "Carpeta de destino"
!insertmacro MUI_PAGE_DIRECTORY
!define MUI_INSTFILESPAGE_FINISHHEADER_TEXT "Instalación finalizada"
!define MUI_INSTFILESPAGE_ABORTHEADER_TEXT "Instalación interrumpida"
!insertmacro MUI_PAGE_INSTFILES
!define MUI_WELCOMEFINISHPAGE_BITMAP "${LISTS}/side.bmp"
!define MUI_FINISHPAGE_TITLE "Nubaria está instalada"
!define MUI_FINISHPAGE_TEXT "Ya puede abrirla desde el menú Inicio.$\r$\n$\r$\nPresione Terminar para cerrar este asistente."
!define MUI_FINISHPAGE_RUN "$INSTDIR\nubaria.exe"
!define MUI_FINISHPAGE_RUN_TEXT "Abrir Nubaria"
!insertmacro MUI_PAGE_FINISH
!define MUI_UNCONFIRMPAGE_TEXT_TOP "Nubaria se eliminará de la siguiente carpeta. \
    Sus tareas, sus preferencias y su perfil se conservan."
!define MUI_UNCONFIRMPAGE_TEXT_LOCATION "Carpeta:"
!insertmacro MUI_UNPAGE_CONFIRM
!define MUI_INSTFILESPAGE_FINISHHEADER_TEXT "Desinstalación finalizada"
!undef MUI_INSTFILESPAGE_ABORTHEADER_TEXT ; the one text that the page does not forget by itself
!define MUI_INSTFILESPAGE_ABORTHEADER_TEXT "Desinstalación interrumpida"
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "SpanishInternational"

VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
VIAddVersionKey /LANG=${LANG_SPANISHINTERNATIONAL} "CompanyName" "Los desarrolladores de Nubaria"
VIAddVersionKey /LANG=${LANG_SPANISHINTERNATIONAL} "FileDescription" "Instalador de Nubaria"
VIAddVersionKey /LANG=${LANG_SPANISHINTERNATIONAL} "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=${LANG_SPANISHINTERNATIONAL} "LegalCopyright" "© 2026 Los desarrolladores de Nubaria"
VIAddVersionKey /LANG=${LANG_SPANISHINTERNATIONAL} "ProductName" "Nubaria"
VIAddVersionKey /LANG=${LANG_SPANISHINTERNATIONAL} "ProductVersion" "${VERSION}"

; Windows does not let go of the files of a running program.
!macro AskToClose
    ${Do}
        ; FILE_MAP_READ
        System::Call 'kernel32::OpenFileMappingW(i 4, i 0, w "${MARKER}") p .r0'
        ${If} $0 P= 0
            ${ExitDo}
        ${EndIf}
        System::Call 'kernel32::CloseHandle(p r0)'
        ${If} ${Silent}
            SetErrorLevel ${RESULT_RUNNING}
            Quit
        ${EndIf}
        MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Nubaria está abierta, quizá solo en la bandeja del sistema. \
            Para continuar, ciérrela con «Salir» del menú de su icono o con el botón de cerrar de su ventana." IDRETRY +3
        SetErrorLevel 1
        Quit
    ${Loop}
!macroend

Function .onInit
    ${IfNot} ${AtLeastWin10}
        MessageBox MB_ICONSTOP "Nubaria necesita Windows 10 o posterior." /SD IDOK
        SetErrorLevel ${RESULT_OLD_WINDOWS}
        Quit
    ${EndIf}
    !insertmacro AskToClose
FunctionEnd

Function un.onInit
    !insertmacro AskToClose
FunctionEnd

Section
    ; A version of before takes its files along, also those that this one does not have.
    ReadRegStr $1 HKCU "${ENTRY}" "InstallLocation"
    ${If} $1 != ""
    ${AndIf} ${FileExists} "$1\${UNINSTALLER}"
        ExecWait '"$1\${UNINSTALLER}" /S _?=$1' $0
        ${If} $0 <> 0
            MessageBox MB_ICONSTOP "No se pudo quitar la versión anterior de Nubaria de $1." /SD IDOK
            SetErrorLevel 2
            Abort
        ${EndIf}
        ; It cannot remove itself while it runs in its own place.
        Delete "$1\${UNINSTALLER}"
        RMDir "$1"
    ${EndIf}

    !include "${LISTS}/install.nsh"
    SetOutPath "$INSTDIR"
    WriteUninstaller "$INSTDIR\${UNINSTALLER}"
    CreateShortcut "$SMPROGRAMS\Nubaria.lnk" "$INSTDIR\nubaria.exe"

    WriteRegStr HKCU "${ENTRY}" "DisplayName" "Nubaria"
    WriteRegStr HKCU "${ENTRY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${ENTRY}" "Publisher" "Los desarrolladores de Nubaria"
    WriteRegStr HKCU "${ENTRY}" "DisplayIcon" "$INSTDIR\nubaria.exe"
    WriteRegStr HKCU "${ENTRY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${ENTRY}" "UninstallString" '"$INSTDIR\${UNINSTALLER}"'
    WriteRegStr HKCU "${ENTRY}" "QuietUninstallString" '"$INSTDIR\${UNINSTALLER}" /S'
    WriteRegDWORD HKCU "${ENTRY}" "EstimatedSize" ${SIZE}
    WriteRegDWORD HKCU "${ENTRY}" "NoModify" 1
    WriteRegDWORD HKCU "${ENTRY}" "NoRepair" 1
SectionEnd

; Tasks and preferences are the user's and stay. So does what someone else has put into the folder.
Section "Uninstall"
    SetOutPath "$TEMP"
    Delete "$SMPROGRAMS\Nubaria.lnk"
    !include "${LISTS}/uninstall.nsh"
    Delete "$INSTDIR\${UNINSTALLER}"
    RMDir "$INSTDIR"
    ; Others keep their programs there, too: it goes when it is empty.
    ${If} $INSTDIR == "$LOCALAPPDATA\Programs\Nubaria"
        RMDir "$LOCALAPPDATA\Programs"
    ${EndIf}
    DeleteRegKey HKCU "${ENTRY}"
    DeleteRegKey /ifempty HKCU "Software\Microsoft\Windows\CurrentVersion\Uninstall"
SectionEnd
