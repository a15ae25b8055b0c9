#!/usr/bin/env bash
# sign.sh CERTIFICATES NAME PROGRAM [broken]: signs the program in place with NAME of make_certificates.sh; a
# broken one is changed behind that.
set -euo pipefail
certificates=$1 name=$2 program=$3
rm -f "$program.signed"
issuer=()
[ "$name" != quillmark ] || issuer=(-ac "$certificates/root.pem")
osslsigncode sign -h sha256 -certs "$certificates/$name.pem" -key "$certificates/$name.key" "${issuer[@]}" \
  -in "$program" -out "$program.signed" >/dev/null
# Within the text that old systems show instead of running the program.
[ "${4:-}" != broken ] || printf x | dd of="$program.signed" bs=1 seek=80 conv=notrunc status=none
mv "$program.signed" "$program"
