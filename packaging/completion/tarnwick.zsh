#compdef tarnwick

_arguments \
  '--json[with --status\: answer as JSON]' \
  + '(wish)' \
  '--launch[open the window and show the desktop]' \
  '--background[start without a window]' \
  '--stop[stop the desktop]' \
  '--status[say whether the desktop runs]' \
  '--settings[open the settings]' \
  '--logs[open the logs]' \
  '--version[print the version]' \
  '--help[print the options]'
