# shellcheck shell=sh
# Sourced by the start scripts of both images: what they share before the web server starts.

prepare_certificate() {
    mkdir -p /config/ssl
    [ -s /config/ssl/cert.pem ] && return 0
    openssl req -new -x509 -newkey rsa:2048 -nodes -days 3650 -subj "/CN=localhost" \
        -keyout /config/ssl/key.pem -out /config/ssl/cert.pem 2>/dev/null
    echo "[init] made a certificate"
}

# Basic sign-in exactly when PASSWORD is set. The password goes to openssl on standard input, so that it is on no
# command line; the file holds only its hash.
prepare_sign_in() {
    : >/run/sign-in.conf
    [ -n "${PASSWORD:-}" ] || return 0
    hash=$(printf '%s\n' "$PASSWORD" | openssl passwd -apr1 -stdin)
    printf '%s:%s\n' "${CUSTOM_USER:-abc}" "$hash" >/run/sign-in.users
    printf 'auth_basic "Login";\nauth_basic_user_file /run/sign-in.users;\n' >/run/sign-in.conf
    echo "[init] sign-in is on for user ${CUSTOM_USER:-abc}"
}

# The first start leaves a mark in the volume and every start counts one up, so that a page can prove whether the
# volume is the same one as before.
count_start() {
    [ -s /config/first-start ] || openssl rand -hex 4 >/config/first-start
    starts=$(($(cat /config/starts 2>/dev/null || echo 0) + 1))
    echo "$starts" >/config/starts
    echo "[init] start $starts of $(cat /config/first-start)"
}
