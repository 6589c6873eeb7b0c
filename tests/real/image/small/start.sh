#!/bin/sh
# Entry of the small image: a page in place of a desktop, with the ports, certificate and sign-in of a real one.
set -eu
# shellcheck source=../site/prepare.sh
. /etc/site/prepare.sh
prepare_certificate
prepare_sign_in
count_start
mkdir -p /run/www
sed -e "s/@FIRST@/$(cat /config/first-start)/" -e "s/@STARTS@/$(cat /config/starts)/" \
    -e "s/@TITLE@/${TITLE:-}/" -e "s|@TZ@|${TZ:-}|" /etc/site/index.html >/run/www/index.html
echo "[init] serving"
exec nginx -c /etc/site/nginx.conf
