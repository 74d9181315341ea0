#!/usr/bin/env bash
# The agent behind a real tray icon, on a display of its own: a click on the icon shows the window, "Close" hides it
# again, and "Exit" in the icon's menu ends the agent. Skipped (77) where the tools are missing.
# Usage: tray_test.sh PROGRAM
set -euo pipefail

for tool in Xvfb openbox trayer xdotool; do
  command -v "$tool" >/dev/null || { echo "skipped: $tool is missing"; exit 77; }
done
program=$1
folder=$(mktemp -d "${TMPDIR:-/tmp}/qndr-tray.XXXXXX")
trap 'kill $(jobs -p) 2>/dev/null || true; wait 2>/dev/null || true; rm -rf "$folder"' EXIT

# until_true SECONDS COMMAND...
until_true() {
  local end=$((SECONDS + $1))
  shift
  until "$@"; do
    if [ "$SECONDS" -ge "$end" ]; then
      echo "failed: not so: $*" >&2
      exit 1
    fi
    sleep 0.1
  done
}
windows() { timeout 5 xdotool search --onlyvisible --name "$1" 2>/dev/null || true; }
shown() { [ -n "$(windows '^QNDR Roaming Workstation Sync$')" ]; }
hidden() { ! shown; }
ended() { ! kill -0 "$agent" 2>/dev/null; }
manager_is_there() { timeout 5 xdotool get_num_desktops >/dev/null 2>&1; }
host_is_there() { [ -n "$(windows '^panel$')" ]; }
# The host is as wide as its icons.
icon_is_there() {
  local WIDTH=0
  eval "$(timeout 5 xdotool getwindowgeometry --shell "$(windows '^panel$' | head -1)" 2>/dev/null)"
  [ "$WIDTH" -ge 20 ]
}
click_icon() { timeout 5 xdotool mousemove 788 16 click "$1"; }
# Keys reach what has the focus, and that comes in its own time: pressed until it helps.
close_window() {
  hidden || timeout 5 xdotool key alt+c || true
  hidden
}
# A menu that is open closes with the click for the next one.
exit_by_menu() {
  ended || { click_icon 3 && sleep 1 && timeout 5 xdotool key x; } || true
  ended
}

Xvfb -displayfd 1 -screen 0 800x600x24 >"$folder/display" 2>/dev/null &
until_true 60 test -s "$folder/display"
export DISPLAY=:$(cat "$folder/display")
openbox >/dev/null 2>&1 &
until_true 60 manager_is_there
trayer --edge top --align right --widthtype request --height 32 >/dev/null 2>&1 &
until_true 60 host_is_there

# It must not find the session bus, which may offer a tray of its own. What desktop libraries leave behind is not ours.
ASAN_OPTIONS=detect_leaks=0 env -u DBUS_SESSION_BUS_ADDRESS QNDR_HOME="$folder/computer" "$program" &
agent=$!
until_true 60 test -e "$folder/computer/registry.db"
until_true 60 icon_is_there
hidden || { echo "failed: the window shows itself although there is a tray" >&2; exit 1; }

click_icon 1
until_true 60 shown
until_true 60 close_window
click_icon 1
until_true 60 shown
until_true 60 close_window
until_true 60 exit_by_menu
wait "$agent"
