# To be sourced by bash scripts that show windows where nobody sees them: a virtual display that ends with the script,
# together with the processes of the Wine prefix $WINEPREFIX, which would stay on a display that is gone. The prefix must
# be made for this: its windows do without a window manager.

xvfb=
# Ends the processes of this prefix alone.
stop_wine() {
  if [ -d "$WINEPREFIX" ]; then wineserver -k || true; fi
}

# There is no window manager on this display; Wine would wait two seconds for one whenever a window closes.
unmanage_windows() {
  scripts/wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null
}

stop_display() {
  stop_wine
  if [ -n "$xvfb" ]; then kill "$xvfb" 2>/dev/null && wait "$xvfb" || true; fi
}

# start_display WIDTHxHEIGHT: sets DISPLAY. Run from the project's folder.
start_display() {
  trap stop_display EXIT
  trap 'exit 130' INT TERM HUP
  stop_wine
  # The display is open once the server has written its number.
  local number
  number=$(mktemp -u build/display.XXXXXX)
  mkfifo "$number"
  Xvfb -displayfd 3 -screen 0 "$1x24" -nolisten tcp >build/xvfb.log 2>&1 3<>"$number" &
  xvfb=$!
  if ! read -r -t 30 DISPLAY <>"$number"; then
    rm "$number"
    cat build/xvfb.log >&2
    echo "Xvfb did not start within 30 s" >&2
    exit 1
  fi
  rm "$number"
  export DISPLAY=:$DISPLAY
}
