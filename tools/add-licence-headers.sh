#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Gives every file that `reuse lint` reports as unlicensed an SPDX header in the comment
# syntax of its type, or a <file>.license beside it when the type has no comments
# (images, JSON, databases). Files that already carry SPDX lines are left alone, so the
# script can run again after every merge.
#
# Usage: tools/add-licence-headers.sh [--check]
#   --check  change nothing; list what would get a header and exit 1 if anything would
#
# Art (the image folders, the desktop icon, the AppStream metadata) is CC0-1.0, everything
# else GPL-3.0-or-later. Files of a type this script does not know are listed at the end;
# give them a header by hand or a line in .reuse/dep5.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
check=0
[ "${1:-}" = "--check" ] && check=1
command -v reuse >/dev/null || { echo "add-licence-headers: reuse is missing (Debian package reuse)" >&2; exit 2; }

holder="The tarvik authors"
# Spelled in two parts so that reuse does not read these lines as this script's own tags.
tag=SPDX
cr_tag="$tag-FileCopyrightText"
id_tag="$tag-License-Identifier"
year=$(date -u +%Y)

licence_for() {
  case "$1" in
    res/img/* | res/svg/* | res_ui/img/* | res_ui/svg/* | res/LICENSE-art.md | dist/*.svg | \
      *.metainfo.xml | *.appdata.xml) echo CC0-1.0 ;;
    *) echo GPL-3.0-or-later ;;
  esac
}

# Comment style of a file: slash, hash, xml, dash, css, roff, or sidecar (a .license file).
style_for() {
  local path=$1 base name
  base=${path##*/}
  name=${base%.in}  # configured templates keep the syntax of what they become
  case "$name" in
    *.c | *.cc | *.cpp | *.cxx | *.h | *.hh | *.hpp | *.js | *.qml | *.mjs) echo slash ;;
    *.css) echo css ;;
    *.txt | *.cmake | *.sh | *.bash | *.py | *.pl | *.desktop | *.service | *.conf | *.cfg | \
      *.ini | *.yml | *.yaml | *.toml | *.pro | *.pri | .gitignore | .gitattributes | \
      .clang-format | .clang-tidy | .editorconfig | Makefile | Dockerfile) echo hash ;;
    *.xml | *.svg | *.qrc | *.ui | *.html | *.htm | *.md | *.ts) echo xml ;;
    *.sql | *.lua) echo dash ;;
    *.[1-8]) echo roff ;;
    *.png | *.jpg | *.jpeg | *.gif | *.ico | *.webp | *.json | *.sqlite | *.db | *.qm | \
      *.nmea | *.gpx | *.gz | *.pdf) echo sidecar ;;
    *.*) echo unknown ;;
    *)
      if head -c 2 "$path" | grep -q '^#!'; then echo hash; else echo unknown; fi
      ;;
  esac
}

# Inserts the header after the first <keep> lines (a shebang, an XML declaration or DOCTYPE
# must stay in front), followed by a blank line unless the fourth argument is "tight"
# (roff reads a blank line as vertical space).
insert_header() {
  local path=$1 keep=$2 header=$3 gap=$'\n' tmp
  [ "${4:-}" = tight ] && gap=""
  tmp=$(mktemp "$path.XXXXXX")
  if [ "$keep" -gt 0 ]; then
    { head -n "$keep" "$path"; printf '%s\n' "$header"; tail -n +"$((keep + 1))" "$path"; } >"$tmp"
  else
    { printf '%s\n%s' "$header" "$gap"; cat "$path"; } >"$tmp"
  fi
  chmod --reference="$path" "$tmp"
  mv "$tmp" "$path"
}

# Lines of the XML declaration or DOCTYPE a file starts with (0 if none). Qt's D-Bus and
# resource compilers want the document to start with one of them.
xml_prolog_lines() {
  awk 'NR == 1 && !/^<(\?|!DOCTYPE)/ {print 0; exit}
       /^<(\?|!DOCTYPE)/ {open = 1}
       open && />/ {open = 0; last = NR; next}
       !open && last {print last; exit}
       END {if (!last) print 0}' "$1"
}

mapfile -t missing < <(reuse lint 2>/dev/null |
  awk '/^# MISSING COPYRIGHT AND LICENSING/ {on = 1; next} /^# / {on = 0} on && /^\* / {print substr($0, 3)}' |
  sort -u)

changed=0
unknown=()
for f in "${missing[@]}"; do
  [ -f "$f" ] || continue
  if grep -q -e "$id_tag" -e "$cr_tag" "$f" 2>/dev/null; then
    unknown+=("$f (its SPDX lines are incomplete or not accepted by reuse)")
    continue
  fi
  lic=$(licence_for "$f")
  cr="$cr_tag: $year $holder"
  id="$id_tag: $lic"
  style=$(style_for "$f")
  if [ "$style" = unknown ]; then
    unknown+=("$f")
    continue
  fi
  changed=$((changed + 1))
  if [ "$check" = 1 ]; then
    echo "needs a header: $f ($lic)"
    continue
  fi
  first=$(head -n 1 "$f")
  case "$style" in
    slash) insert_header "$f" 0 "// $cr"$'\n'"// $id" ;;
    css) insert_header "$f" 0 "/* $cr"$'\n'" * $id */" ;;
    dash) insert_header "$f" 0 "-- $cr"$'\n'"-- $id" ;;
    roff) insert_header "$f" 0 ".\\\" $cr"$'\n'".\\\" $id" tight ;;
    hash)
      if [[ $first == '#!'* ]]; then
        insert_header "$f" 1 "# $cr"$'\n'"# $id"$'\n'
      else
        insert_header "$f" 0 "# $cr"$'\n'"# $id"
      fi
      ;;
    xml)
      keep=$(xml_prolog_lines "$f")
      insert_header "$f" "$keep" "<!-- $cr -->"$'\n'"<!-- $id -->"
      ;;
    sidecar) printf '%s\n%s\n' "$cr" "$id" >"$f.license" ;;
  esac
  echo "add-licence-headers: $f ($lic)"
done

for u in "${unknown[@]}"; do
  echo "add-licence-headers: no header style for $u; add one by hand or a line in .reuse/dep5" >&2
done
if [ "$check" = 1 ] && [ $((changed + ${#unknown[@]})) -gt 0 ]; then
  exit 1
fi
[ ${#unknown[@]} -eq 0 ]
