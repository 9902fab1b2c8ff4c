@echo off
rem Registra las DLL donde estan, o las quita del registro. Uso: instalar.cmd [/maquina] [/callado]
rem Termina con 0 si queda hecho, 1 si otro programa o otra carpeta lo impide, y 2 si no se puede.
setlocal EnableExtensions DisableDelayedExpansion
set "aqui=%~dp0"
set "aqui=%aqui:~0,-1%"
set "quitar="
set "callado="
set "rama=HKCU"
set "modo=/n /i:user"
set "para=su cuenta de Windows"
set "palabra="
set "mal_dicho="
set "fin=0"
set "sistema=%SystemRoot%\System32"
rem Lo que ve en su lugar un programa de 32 bits que ejecute esto.
if exist "%SystemRoot%\Sysnative\reg.exe" set "sistema=%SystemRoot%\Sysnative"

:leer
if "%~1"=="" goto leido
set "uso=1"
if /i "%~1"=="/quitar" set "quitar=1"
if /i "%~1"=="/quitar" set "uso="
if /i "%~1"=="/callado" set "callado=1"
if /i "%~1"=="/callado" set "uso="
if /i "%~1"=="/maquina" set "rama=HKLM"
if /i "%~1"=="/maquina" set "modo="
if /i "%~1"=="/maquina" set "palabra= /maquina"
if /i "%~1"=="/maquina" set "para=todas las cuentas"
if /i "%~1"=="/maquina" set "uso="
if defined uso set "mal_dicho=1"
shift
goto leer

:leido
if defined mal_dicho goto uso
set "faltan="
for %%f in (ZVConfiguracion.dll ZVDatos.dll zvconf.exe) do if not exist "%aqui%\%%f" set "faltan=1"
if defined faltan goto faltan
set "clave=%rama%\Software\Microsoft\Windows\CurrentVersion\Uninstall\ZVConfiguracion"
set "antes="
for /f "tokens=2,*" %%a in ('%sistema%\reg.exe query "%clave%" /v InstallLocation 2^>nul') do if "%%a"=="REG_SZ" set "antes=%%b"
rem Si aquella carpeta se ha movido, ya no hay otra.
set "otra="
if defined antes if exist "%antes%\quitar.cmd" set "otra=%antes%"
if /i "%otra%"=="%aqui%" set "otra="
if defined quitar goto quitar

rem La version de otra carpeta se quita con sus propias DLL, que saben lo que registraron.
if not defined otra goto registrar
set "mal="
set "donde=%otra%"
for %%d in (ZVConfiguracion ZVDatos) do if exist "%otra%\%%d.dll" call :desregistrar_una %%d
if defined mal goto no_quitado
:registrar
%sistema%\regsvr32.exe /s %modo% "%aqui%\ZVConfiguracion.dll"
set "codigo=%errorlevel%"
if not "%codigo%"=="0" goto deshacer
%sistema%\regsvr32.exe /s %modo% "%aqui%\ZVDatos.dll"
set "codigo=%errorlevel%"
if not "%codigo%"=="0" goto deshacer
%sistema%\reg.exe add "%clave%" /f /v InstallLocation /d "%aqui%" >nul
set "codigo=%errorlevel%"
if not "%codigo%"=="0" goto deshacer
%sistema%\reg.exe add "%clave%" /f /v DisplayName /d "ZVConfiguracion" >nul
%sistema%\reg.exe add "%clave%" /f /v DisplayVersion /d "@VERSION@" >nul
%sistema%\reg.exe add "%clave%" /f /v Publisher /d "ZVConfiguracion" >nul
rem Entre las comillas de dentro, para cmd no hay comillas.
set "orden=%aqui:&=^&%\quitar.cmd"
%sistema%\reg.exe add "%clave%" /f /v UninstallString /d "\"%orden%\"%palabra%" >nul
%sistema%\reg.exe add "%clave%" /f /v QuietUninstallString /d "\"%orden%\"%palabra% /callado" >nul
%sistema%\reg.exe add "%clave%" /f /v NoModify /t REG_DWORD /d 1 >nul
%sistema%\reg.exe add "%clave%" /f /v NoRepair /t REG_DWORD /d 1 >nul
if defined otra echo Antes estaba en "%otra%": esa carpeta ya se puede borrar.
echo Instalado para %para%, en "%aqui%".
echo No mueva la carpeta. Si la mueve, ejecute otra vez su instalar.cmd.
goto fin

:deshacer
for %%d in (ZVConfiguracion ZVDatos) do %sistema%\regsvr32.exe /s /u %modo% "%aqui%\%%d.dll"
call :olvidar
set "fin=2"
echo No se ha podido registrar: no queda nada instalado. El programa que registra termina con %codigo%.
if "%codigo%"=="3" echo La DLL no se puede cargar: o no es la del ZIP, o este Windows no es de 64 bits.
if "%rama%"=="HKLM" goto administrador
goto fin

:quitar
if not defined otra goto comprobar
echo Lo instalado para %para% es otra carpeta: ejecute "%otra%\quitar.cmd"%palabra%
set "fin=1"
goto fin
:comprobar
rem Una DLL cargada no se deja abrir para escribir. Donde no se puede escribir, eso no dice nada.
set "abierto="
call :abrir LEAME.txt 2>nul
if defined ocupado goto desregistrar
for %%f in (ZVConfiguracion.dll ZVDatos.dll zvconf.exe) do call :mirar %%f
if defined abierto goto abierto
:desregistrar
set "mal="
set "donde=%aqui%"
for %%d in (ZVConfiguracion ZVDatos) do call :desregistrar_una %%d
if defined mal goto no_quitado
call :olvidar
rem Lo que las ventanas recuerdan de esta cuenta.
%sistema%\reg.exe delete "HKCU\Software\ZVConfiguracion" /f >nul 2>nul
if not defined antes echo No estaba instalado para %para%.
if defined antes echo Quitado para %para%. La carpeta "%aqui%" ya se puede borrar.
echo Los colegios y la clave de las enfermedades siguen donde estaban.
goto fin

:abierto
echo No se quita nada: cierre los programas que lo usan y repita.
set "fin=1"
goto fin

:no_quitado
echo No se ha podido quitar del registro de Windows lo de "%donde%".
if not defined quitar echo Cierre los programas que lo usan, o borre esa carpeta, y repita.
set "fin=2"
if "%rama%"=="HKLM" goto administrador
goto fin

:administrador
echo Para todas las cuentas hay que ser administrador: abra con "Ejecutar como administrador".
goto fin

:faltan
echo Faltan ficheros al lado de este: descomprima antes el ZIP entero en una carpeta.
set "fin=2"
goto fin

:uso
echo Uso: instalar.cmd [/maquina] [/callado]
echo      quitar.cmd   [/maquina] [/callado]
echo   /maquina  para todas las cuentas del ordenador, como administrador; si no, para la suya
echo   /callado  sin esperar una tecla al final
set "fin=2"

:fin
if not defined callado pause
exit /b %fin%

:abrir
set "ocupado=1"
set "ocupado=">>"%aqui%\%~1"
goto :eof

:mirar
call :abrir %~1 2>nul
if not defined ocupado goto :eof
set "abierto=1"
echo Un programa tiene abierto %~1.
goto :eof

:desregistrar_una
%sistema%\regsvr32.exe /s /u %modo% "%donde%\%~1.dll"
if not "%errorlevel%"=="0" set "mal=1"
goto :eof

rem Una cuenta tiene la clave de encima desde lo primero que se instala para ella sola.
:olvidar
%sistema%\reg.exe delete "%clave%" /f >nul 2>nul
if "%rama%"=="HKLM" goto :eof
set "otros="
for /f "delims=" %%k in ('%sistema%\reg.exe query "%clave:\ZVConfiguracion=%" 2^>nul') do set "otros=1"
if not defined otros %sistema%\reg.exe delete "%clave:\ZVConfiguracion=%" /f >nul 2>nul
goto :eof
