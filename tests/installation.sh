#!/usr/bin/env bash
# Makes the Debian package, installs from the build and from the package into folders of its own, uses
# what is there, and tries what the tools say when something stands in their way.
set -Eeuo pipefail
trap 'echo "$0: line $LINENO: $BASH_COMMAND failed"' ERR
cd "$(dirname "$0")/.."
export MANWIDTH=80 LC_ALL=C.UTF-8
tools/install_packages man-db dpkg-dev
umask 077  # must not matter to what is installed
tools/package
work=$(mktemp -d)
trap 'chmod -R u+w "$work" && rm -rf "$work"' EXIT
chmod a+rx "$work"

# Fails unless a command ends with this status and its last line holds these words.
expect() {
  local status=0
  "${@:3}" >"$work/said" 2>&1 || status=$?
  [ "$status" = "$1" ] && [[ "$(tail -1 "$work/said")" == *"$2"* ]] && return
  echo "${*:3}: expected status $1 and \"$2\", not $status and: $(cat "$work/said")"
  exit 1
}

# What is installed under $1: the programs plan an example and make its report, and for each program
# there are a page that fits 80 columns, has no faults and names all options, and a completion.
check_installed() {
  rm -rf "$work/cuvier"
  cp -r "$1/share/doc/qob/examples/cuvier" "$work"
  (cd "$work/cuvier" && expect 0 "QOB ended successfully" "$1/bin/qob" qob.prm)
  [ "$(wc -l <"$work/cuvier/QOB_qob_MatingList.txt")" = 10 ]
  (cd "$work/cuvier" && expect 0 "Report: ./QOB_report.html" "$1/bin/qob-report" ./QOB_)
  grep -q '<script type="application/json" id="data">{"format":"qob-result"' "$work/cuvier/QOB_report.html"
  for program in "$1"/bin/*; do
    name=$(basename "$program")
    man --warnings -l "$1/share/man/man1/$name".1* >"$work/page" 2>"$work/faults"
    [[ ! -s "$work/faults" && "$(wc -L <"$work/page")" -le 80 ]]
    "$program" --help | grep -oE -- '--[a-z-]+' | xargs -n 1 grep -F "$work/page" -e >/dev/null
    expect 0 --version bash -c '. "$1"; COMP_WORDS=(x --vers) COMP_CWORD=1; _qob "$2"; echo "${COMPREPLY[@]}"' \
      - "$1/share/bash-completion/completions/$name" "$program"
  done
}

for herd in examples/*/; do
  PREFIX=$work/prefix expect 0 "_report.html" tools/demo "$herd"
  grep -q "export PATH=\"$work/prefix/bin:" "$work/said"
done
check_installed "$work/prefix"
dpkg-deb -x build/qob_*.deb "$work/unpacked"
check_installed "$work/unpacked/usr"
[ -z "$(find "$work/prefix" "$work/unpacked/usr" ! -perm -a+r)" ]
gzip -t "$work"/unpacked/usr/share/man/man1/*.gz
dpkg-deb -f build/qob_*.deb Depends | grep 'libstdc++6' | grep -q libxlsxwriter
(cd "$work/cuvier" && expect 0 ./QOB_ bash -c '. "$1"; COMP_WORDS=(x ./Q) COMP_CWORD=1; _qob "$2"; echo "${COMPREPLY[@]}"' \
  - "$work/prefix/share/bash-completion/completions/qob-report" "$work/prefix/bin/qob-report")
expect 1 "these are there: cuvier" tools/demo no_herd
install -D /bin/true "$work/foreign/bin/qob"
PREFIX=$work/foreign expect 1 "bin/qob is another program" tools/demo cuvier

umask 022
# A checkout that was copied with its build folder; one that belongs to another user (whom root plays).
mkdir -p "$work/copy/build/release"
git ls-files -z | xargs -0 cp --parents -t "$work/copy"
cp build/release/CMakeCache.txt "$work/copy/build/release"
expect 0 "comes from $PWD: it is built anew" "$work/copy/tools/configure" release -DQOB_TESTS=OFF
expect 0 "" "$work/copy/tools/configure" release && [ ! -s "$work/said" ]
other=(); [ "$(id -u)" != 0 ] || other=(setpriv --reuid=65534 --regid=65534 --clear-groups)
chmod a-w "$work/copy/build/release/CMakeCache.txt"
expect 1 "and you may not write there" "${other[@]}" "$work/copy/tools/configure" release
rm -rf "$work/copy/build" && chmod a-w "$work/copy"
expect 1 "is not yours to write in" "${other[@]}" "$work/copy/tools/configure" release

# Machines on which nothing can be installed, made of stand-ins.
mkdir "$work/tools" && command -v bash dirname dpkg-query env grep sed | xargs ln -s -t "$work/tools"
stand_in() { install <(printf '#!/bin/sh\n%s\n' "$2") "$work/tools/$1"; }
cannot_install() { expect 1 "$1" env PATH="$work/tools" tools/install_packages no-such-package; }
cannot_install "there is no apt-get"
stand_in apt-get 'exit 100'
stand_in id 'echo 1000'
cannot_install "have run: apt-get install no-such-package"
stand_in sudo 'exit 1'
cannot_install "have run: apt-get install no-such-package"
stand_in id 'echo 0'
cannot_install "apt-get did not install no-such-package"
stand_in npm 'exit 1'
expect 1 "to build without pages: cmake" env PATH="$work/tools" tools/install_web
stand_in node 'exit 1'  # too old, say
stand_in dpkg-query 'exit 1'
expect 1 "apt-get did not install nodejs npm" env PATH="$work/tools" tools/configure release
echo "installed, packed and used; the tools say what stands in their way"
