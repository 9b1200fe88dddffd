#!/usr/bin/env bash
# A throw-away X session for trying the wizard as a user would and taking
# screenshots of it:
#   scripts/xsession.sh start            # Xvfb on :77 (DISPLAY printed)
#   DISPLAY=:77 build-release/app/kelmar-host &
#   scripts/xsession.sh shot docs/screenshots/page.png [window-name]
#   scripts/xsession.sh stop
# Needs xvfb, xauth, x11-apps or imagemagick (import), and xdotool to click.
set -euo pipefail
display="${XSESSION_DISPLAY:-:77}"
case "${1:-}" in
  start)
    Xvfb "$display" -screen 0 1280x900x24 -nolisten tcp >/tmp/xvfb"${display#:}".log 2>&1 &
    echo $! >/tmp/xvfb"${display#:}".pid
    sleep 1
    echo "DISPLAY=$display"
    ;;
  shot)
    out="$2"
    if [ -n "${3:-}" ]; then
      id=$(DISPLAY="$display" xdotool search --name "$3" | tail -n 1)
      DISPLAY="$display" import -window "$id" "$out"
    else
      DISPLAY="$display" import -window root "$out"
    fi
    echo "$out"
    ;;
  stop)
    kill "$(cat /tmp/xvfb"${display#:}".pid)" 2>/dev/null || true
    ;;
  *)
    echo "usage: $0 start|shot FILE [window-name]|stop" >&2
    exit 2
    ;;
esac
