#!/bin/sh
# Run by `make test`, for every change.
# Tests that packaging/abi reports changes: the lists and baselines here are those of libraries that differ from
# the one that was built in one thing each.
#
# abi_check_test.sh ABI LIST BASELINE LIBRARY...    the first library is the one that the baseline is of
set -eu

abi=$1
list=$2
baseline=$3
shift 3
driver=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/libraries"
cp "$@" "$scratch/libraries"
failures=0

# fails WHAT FILE SED_SCRIPT WORDS COMMAND...: checks that the command fails with these words after a change of FILE.
fails() {
  what=$1
  words=$4
  sed "$3" "$2" > "$scratch/changed"
  shift 4
  if cmp -s "$scratch/changed" "$list" || cmp -s "$scratch/changed" "$baseline"; then
    echo "$what: nothing to rewrite"
  elif "$@" > "$scratch/output" 2>&1; then
    echo "$what: not noticed"
  elif ! grep -qF -- "$words" "$scratch/output"; then
    echo "$what: does not say \"$words\" but"
    cat "$scratch/output"
  else
    return 0
  fi
  failures=$((failures + 1))
}

symbol() { fails "$@" "$abi" check-symbols "$scratch/changed" "$scratch/libraries"/*; }
type() { fails "$@" "$abi" check-types "$scratch/changed" "$driver"; }

within() { echo "/class-decl name='$1'/,/<.class-decl>/ { $2 }"; }

# swapped WHAT A B: exchanges two values of an attribute or name.
swapped() { echo "s/$1'$2'/$1'X'/; s/$1'$3'/$1'$2'/; s/$1'X'/$1'$3'/"; }

symbol 'A symbol of our own is gone' "$list" "/^ _ZN12CBindMessage6CreateEv@/s/.*/&\n _ZN12CBindMessage6DeleteEv@TAVRIN_DRIVER_1/" \
  '- CBindMessage::Delete()@TAVRIN_DRIVER_1'
symbol 'A symbol is new' "$list" '/^ _ZN2zq6Logger10initializeEv@/d' '+ zq::Logger::initialize()@Base'
symbol 'A symbol has another version' "$list" 's/^ _ZN12CBindMessage6CreateEv@TAVRIN_DRIVER_1/ _ZN12CBindMessage6CreateEv@TAVRIN_DRIVER_2/' \
  '- CBindMessage::Create()@TAVRIN_DRIVER_2'
symbol 'A library has another name' "$list" 's/^libtavrin_xml.so.1/libtavrin_xml.so.2/' '-libtavrin_xml.so.2'

type 'A function is gone' "$baseline" 's/_ZN12CBindMessage6CreateEv/_ZN12CBindMessage6DeleteEv/' '1 Removed function'
type 'A type has grown' "$baseline" "s/class-decl name='DriverParam' size-in-bits='/&1/" "type size changed"
type 'Fields have changed places' "$baseline" "$(within DriverParam "$(swapped 'var-decl name=' type value)")" \
  "'std::string type' offset changed"
type 'A slot that the core calls has another place' "$baseline" \
  "$(within ICmdMessage "$(swapped 'vtable-offset=' 3 4)")" 'vtable'
type 'A slot that the library calls has another place' "$baseline" \
  "$(within LevelPoint "$(swapped 'vtable-offset=' 3 4)")" 'vtable'
type 'A slot is gone' "$baseline" "$(within IVariableManager "/<member-function/,/<.member-function>/d")" \
  "'method virtual int zq::IVariableManager::GetVariableValue"

# The checks accept the output of update, which is written next to the script.
root=${abi%/packaging/abi}
mkdir "$scratch/packaging"
cp "$abi" "$root/packaging/foreign-types.abignore" "$scratch/packaging"
ln -s "$root/include" "$root/tavrin_driver" "$scratch"
"$scratch/packaging/abi" update here "$@"
if ! cmp "$scratch/packaging/exported-symbols.here" "$list" ||
  ! "$abi" check-types "$scratch/packaging/libtavrin_driver.abi.here" "$driver" ||
  ! "$abi" check-types "$baseline" "$driver"; then
  echo 'update writes another list or baseline'
  failures=$((failures + 1))
fi

exit $((failures > 0))
