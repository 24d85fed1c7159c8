#!/usr/bin/env bash
# Fetches and unpacks Debian's source package of libcsv into DIR, which then
# holds libcsv.c and csv.h, for builds whose compiler has no libcsv of its own
# (the Windows cross build). Apt works in a scratch folder, with the machine's
# mirrors turned into source lists: the machine's own apt state is left as it
# was. Needs apt-get and dpkg-source.
set -euo pipefail
dest=${1:?usage: fetch-libcsv.sh DIR}
[ -f "$dest/libcsv.c" ] && exit 0
mkdir -p "$dest"
dest=$(cd "$dest" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir -p "$scratch/parts" "$scratch/lists/partial" "$scratch/cache/archives/partial"
: >"$scratch/sources.list"
for f in /etc/apt/sources.list.d/*.sources; do
  if [ -f "$f" ]; then sed 's/^Types:.*/Types: deb-src/' "$f" >"$scratch/parts/$(basename "$f")"; fi
done
for f in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
  if [ -f "$f" ]; then sed -n 's/^deb /deb-src /p' "$f" >>"$scratch/sources.list"; fi
done
apt=(apt-get -qq -o "Dir::Etc::sourcelist=$scratch/sources.list" -o "Dir::Etc::sourceparts=$scratch/parts"
  -o "Dir::State::Lists=$scratch/lists" -o "Dir::Cache=$scratch/cache" -o "Debug::NoLocking=1")
# as root, apt would hand the download to its own user, who cannot write here
[ "$(id -u)" -ne 0 ] || apt+=(-o "APT::Sandbox::User=root")
"${apt[@]}" update
cd "$scratch"
"${apt[@]}" source libcsv >/dev/null
src=$(ls -d "$scratch"/libcsv-*/ | head -n 1)
cp -r "$src". "$dest"
