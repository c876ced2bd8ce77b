# To be sourced: a screen for a machine without one.

# start_virtual_display WIDTHxHEIGHT: starts Xvfb, sets DISPLAY, and ends it with the script.
start_virtual_display() {
  local number
  exec {number}< <(exec Xvfb -displayfd 1 -screen 0 "${1}x24" -nolisten tcp 2>/dev/null)
  XVFB_PID=$!
  local shown
  read -r -t 20 -u "$number" shown || { echo "Xvfb did not start" >&2; exit 1; }
  export DISPLAY=":$shown"
  trap 'kill $(jobs -p) $XVFB_PID 2>/dev/null' EXIT
}

# keep_screenshots FILE: writes a new picture of the screen to FILE every ten seconds. One takes
# half a second of processor time.
keep_screenshots() {
  while sleep 10; do
    import -silent -window root "$1.new.png" 2>/dev/null && mv "$1.new.png" "$1"
  done
}
