#!/bin/sh
# Entry of the full image: an XFCE session on a virtual display, shown by a page over a websocket.
set -eu
# shellcheck source=../site/prepare.sh
. /etc/site/prepare.sh
prepare_certificate
prepare_sign_in
count_start
# The sign-in is the web server's affair; what runs in the desktop need not know the password.
unset PASSWORD CUSTOM_USER

id desktop >/dev/null 2>&1 || useradd --uid "${PUID:-1000}" --home-dir /config --shell /bin/bash desktop
chown desktop: /config
mkdir -p /tmp/.X11-unix /run/desktop
chmod 1777 /tmp/.X11-unix
chown desktop: /run/desktop
chmod 700 /run/desktop

as_desktop() {
    setpriv --reuid=desktop --regid=desktop --clear-groups \
        env HOME=/config USER=desktop DISPLAY=:1 XDG_RUNTIME_DIR=/run/desktop LANG=C.UTF-8 "$@"
}

# Without a configuration of its own the panel would open with a question.
panel=/config/.config/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml
if [ ! -e "$panel" ]; then
    mkdir -p "$(dirname "$panel")"
    cp /etc/xdg/xfce4/panel/default.xml "$panel"
    chown -R desktop: /config/.config
fi

rm -f /tmp/.X1-lock /tmp/.X11-unix/X1
as_desktop Xtigervnc :1 -localhost -SecurityTypes None -rfbport 5901 -geometry 1280x800 -depth 24 \
    -desktop "${TITLE:-Desktop}" >/run/desktop/display.log 2>&1 &
tries=0
while [ ! -S /tmp/.X11-unix/X1 ] && [ "$tries" -lt 50 ]; do
    tries=$((tries + 1))
    sleep 0.2
done
(cd /config && as_desktop dbus-run-session -- xfce4-session >/run/desktop/session.log 2>&1) &
websockify 127.0.0.1:6900 127.0.0.1:5901 >/run/desktop/websockify.log 2>&1 &
echo "[init] serving"
exec nginx -c /etc/site/nginx.conf
