#!/usr/bin/env bash
# make_certificates.sh FOLDER: the certificates that sample programs are signed with, each NAME.pem with its key
# NAME.key: "quillmark", issued by a root of its own (root.pem, and root.cer for the sample machine), and
# "northlight", which nobody issued. They are made anew with each build folder and are of no use elsewhere.
set -euo pipefail
mkdir -p "$1"
cd "$1"
signing=(-addext basicConstraints=critical,CA:FALSE -addext keyUsage=critical,digitalSignature
         -addext extendedKeyUsage=codeSigning)
request=(openssl req -x509 -newkey rsa:2048 -nodes -sha256 -days 7300)

"${request[@]}" -keyout root.key -out root.pem -subj "/O=Quillmark/CN=Quillmark Sample Root" \
  -addext basicConstraints=critical,CA:TRUE -addext keyUsage=critical,keyCertSign 2>/dev/null
openssl x509 -in root.pem -outform der -out root.cer
"${request[@]}" -keyout northlight.key -out northlight.pem -subj "/O=Northlight Audio Ltd./CN=Northlight Audio Ltd." \
  "${signing[@]}" 2>/dev/null
openssl req -new -newkey rsa:2048 -nodes -sha256 -keyout quillmark.key -out quillmark.csr \
  -subj "/O=Quillmark/CN=Quillmark Programs" 2>/dev/null
printf '%s\n' basicConstraints=critical,CA:FALSE keyUsage=critical,digitalSignature extendedKeyUsage=codeSigning >quillmark.ext
openssl x509 -req -in quillmark.csr -CA root.pem -CAkey root.key -CAcreateserial -days 7300 -sha256 \
  -extfile quillmark.ext -out quillmark.pem 2>/dev/null
