@echo off
rem Gives each user of this computer profiles and settings of his own, as the installer does.
rem
rem qxterm keeps them in qxterm.ini. Without this script the file is in the Windows folder, where ordinary users
rem may not write: their profiles would not be kept. With it Windows leads the file's name to each user's own
rem part of the registry, HKEY_CURRENT_USER\Software\qxterm. Profiles that stand in the file already stay there.
rem One entry of the registry does all of it, for the whole computer. To write it takes an administrator.
setlocal
set registry=%SystemRoot%\System32\reg.exe
set key=HKLM\SOFTWARE\Microsoft\Windows NT\CurrentVersion\IniFileMapping\qxterm.ini

if /i "%~1"=="on" goto on
if /i "%~1"=="off" goto off
if /i "%~1"=="status" goto status
echo Usage: per-user-settings.cmd on       each user has settings of his own
echo        per-user-settings.cmd off      one file for all, %SystemRoot%\qxterm.ini
echo        per-user-settings.cmd status   says which of the two it is
exit /b 2

:on
"%registry%" add "%key%" /ve /t REG_SZ /d "USR:Software\qxterm" /f >nul 2>&1
if errorlevel 1 goto refused
echo Each user now has settings of his own, in HKEY_CURRENT_USER\Software\qxterm.
goto again

:off
"%registry%" query "%key%" >nul 2>&1
if errorlevel 1 goto shared
"%registry%" delete "%key%" /f >nul 2>&1
if errorlevel 1 goto refused
echo All users now share %SystemRoot%\qxterm.ini. What users had of their own stays in the registry.
goto again

:status
"%registry%" query "%key%" /ve 2>nul | find "USR:" >nul
if errorlevel 1 goto shared
echo Each user has settings of his own, in HKEY_CURRENT_USER\Software\qxterm.
exit /b 0

:shared
echo All users share %SystemRoot%\qxterm.ini.
exit /b 0

:again
echo Close qxterm, and start Windows again: until then it may still use the former place.
exit /b 0

:refused
echo This could not be changed. Run the script as an administrator: right-click "Command Prompt" in the start
echo menu, choose "Run as administrator", and enter: "%~f0" %1
exit /b 1
