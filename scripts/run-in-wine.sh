#!/bin/sh
# Runs a Windows x64 program under Debian's wine64, headless.
# Stdout, stderr and the exit status (mod 256) are the program's.
: "${WINEPREFIX:=${XDG_CACHE_HOME:-$HOME/.cache}/quavin-wine}"
: "${WINEDEBUG:=-all}"
# Disable winedbg: with it, a crashed program sometimes ends with status 0, a false pass.
WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe=d${WINEDLLOVERRIDES:+;$WINEDLLOVERRIDES}"
WINEARCH=win64
# Without a UTF-8 locale wine cannot open any non-ASCII file name.
case "${LC_ALL:-${LC_CTYPE:-$LANG}}" in *[Uu][Tt][Ff]*) ;; *) LC_ALL=C.UTF-8; export LC_ALL;; esac
export WINEPREFIX WINEDEBUG WINEDLLOVERRIDES WINEARCH
unset DISPLAY WAYLAND_DISPLAY
wine=/usr/lib/wine/wine64
mkdir -p "$WINEPREFIX"
# Start the server and its services here, detached from the caller's stdout pipe: if a test started them
# itself, they would hold that pipe open, and ctest would wait about 3 s longer for each test.
( flock 9
  {
    /usr/lib/wine/wineserver64 -p60 9>&-; first=$?           # 0: none was running yet
    if [ ! -f "$WINEPREFIX/.ready" ]; then
      "$wine" wineboot -i 9>&- && "$wine" winecfg /v win10 9>&- &&
      "$wine" reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' \
          /v Debugger /t REG_SZ /d false /f 9>&- && : > "$WINEPREFIX/.ready"
    elif [ $first = 0 ]; then
      "$wine" cmd /c exit 9>&-
    fi
  } </dev/null >/dev/null 2>&1
) 9>"$WINEPREFIX/.lock"
exec "$wine" "$@"
