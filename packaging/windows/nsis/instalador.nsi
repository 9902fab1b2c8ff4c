; What the ZIP holds, put into a folder of the person's by a program: tools/windows-zip makes it where there is makensis.
; NOT TRIED ON WINDOWS. Given are VERSION, TREE (the folder that goes into the ZIP), FILES (what of it is taken away
; again, each by its name: a school may lie beside) and OUT.
Unicode true
Target amd64-unicode
!include LogicLib.nsh
SetCompressor /SOLID lzma
SetDateSave off
Name "ZVConfiguracion ${VERSION}"
OutFile "${OUT}"
Caption "ZVConfiguracion ${VERSION}: instalador SIN PROBAR en Windows"
BrandingText "ZVConfiguracion ${VERSION}, instalador sin probar en Windows"
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\ZVConfiguracion"
InstallDirRegKey HKCU "Software\Microsoft\Windows\CurrentVersion\Uninstall\ZVConfiguracion" InstallLocation
LoadLanguageFile "${NSISDIR}/Contrib/Language files/Spanish.nlf"
ShowInstDetails nevershow
ShowUninstDetails nevershow

Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

; With nobody in front of it nothing is asked: the status tells, as of the scripts.
!macro end why status
  MessageBox MB_OK|MB_ICONSTOP "${why}" /SD IDOK
  SetErrorLevel ${status}
  Quit
!macroend

Section
  SetShellVarContext current
  ${If} ${FileExists} "$INSTDIR\desinstalar.exe"
    ; It takes away what is no longer of this version, and waits since it is not copied elsewhere first.
    ExecWait '"$INSTDIR\desinstalar.exe" /S _?=$INSTDIR' $0
    ${If} $0 != 0
      !insertmacro end "No se puede quitar la versión anterior. Cierre los programas que la usan y repita; si sigue, el porqué lo dice su quitar.cmd." $0
    ${EndIf}
  ${EndIf}
  SetOutPath "$INSTDIR"
  ClearErrors
  File /r "${TREE}/*"
  WriteUninstaller "$INSTDIR\desinstalar.exe"
  ${If} ${Errors}
    !insertmacro end "No se puede escribir en esa carpeta." 2
  ${EndIf}
  nsExec::Exec '"$SYSDIR\cmd.exe" /c ""$INSTDIR\instalar.cmd" /callado"'
  Pop $0
  ${If} $0 != 0
    !insertmacro end "Los ficheros están en su carpeta, pero Windows no los ha registrado: ejecute instalar.cmd, que dice por qué." 2
  ${EndIf}
  ; What the script has noted among the installed applications takes the files away too.
  WriteRegStr HKCU "Software\Microsoft\Windows\CurrentVersion\Uninstall\ZVConfiguracion" UninstallString '"$INSTDIR\desinstalar.exe"'
  WriteRegStr HKCU "Software\Microsoft\Windows\CurrentVersion\Uninstall\ZVConfiguracion" QuietUninstallString '"$INSTDIR\desinstalar.exe" /S'
SectionEnd

Section Uninstall
  SetShellVarContext current
  nsExec::Exec '"$SYSDIR\cmd.exe" /c ""$INSTDIR\quitar.cmd" /callado"'
  Pop $0
  ${If} $0 != 0
    !insertmacro end "No se quita nada. Cierre los programas que lo usan y repita; si sigue, el porqué lo dice quitar.cmd." 1
  ${EndIf}
  SetOutPath "$TEMP"
  !include "${FILES}"
  Delete "$INSTDIR\desinstalar.exe"
  RMDir "$INSTDIR"
SectionEnd
