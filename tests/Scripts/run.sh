#!/usr/bin/env bash
# scripts/run.sh as people call it, in a copy of the project that consists of stand-ins: packages, tools and the
# program only write down what they are asked. Nothing is installed and nothing built.

set -euo pipefail

scripts=$(cd "$(dirname "$0")/../../scripts" && pwd)
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
mkdir -p "$place/project" "$place/tools" "$place/mail" "$place/project/samples"
cp -r "$scripts" "$place/project/scripts"
touch "$place/mail/a letter.eml" "$place/project/samples/Samples.mbox"
log=$place/log
failures=0

fail() {
    echo "FAILED: $1: $2"
    sed 's/^/    /' "$place/said" "$log"
    failures=$((failures + 1))
}
expectIn() { grep -qF -- "$3" "$2" || fail "$1" "“$3” is missing"; }
expectNot() { ! grep -qE -- "$3" "$2" || fail "$1" "“$3” is there"; }

tool() { # name, what it does after it has written down its words
    printf '#!/bin/bash\necho "%s $*" >>"%s"\n%s\n' "$1" "$log" "$2" >"$place/tools/$1"
    chmod +x "$place/tools/$1"
}
installed() { # all packages but these
    tool dpkg-query 'for word in "${@:4}"; do
    [[ " '"$*"' " == *" $word "* ]] || echo "$word install ok installed"
done'
}
program() { # preset, status
    mkdir -p "$place/project/build/$1/TesselMail"
    touch "$place/project/build/$1/build.ninja"
    printf '#!/bin/bash\nprintf "program %s <%%s>\\n" "$@" >>"%s"\nexit %s\n' "$1" "$log" "$2" \
        >"$place/project/build/$1/TesselMail/tessel-mail"
    chmod +x "$place/project/build/$1/TesselMail/tessel-mail"
}
run() { # status expected, case, words
    local expected=$1 name=$2 status=0
    shift 2
    : >"$log"
    (cd "$place/mail" && PATH="$place/tools:$PATH" "$place/project/scripts/run.sh" "$@") >"$place/said" 2>&1 || status=$?
    [[ $status == "$expected" ]] || fail "$name" "status $status instead of $expected"
}

installed
for name in apt-get sudo cmake ninja; do tool "$name" ""; done
tool dbus-run-session 'shift; exec "$@"'
tool xvfb-run 'while [[ $1 != bash ]]; do shift; done; exec "$@"'
tool import 'touch "${@: -1}"'
unset WAYLAND_DISPLAY
export DISPLAY=:none TESSEL_PICTURE_SECONDS=1

# What is there is started, and nothing else: that is what makes a second start quick.
program run 0
run 0 "a second start" "a letter.eml" ../mail "mailto:ann@tessel.example?subject=Hi" gone.eml
expectIn "a second start" "$log" "program run <$place/mail/a letter.eml>"
expectIn "a second start" "$log" "program run <$place/mail>"
expectIn "a second start" "$log" "program run <mailto:ann@tessel.example?subject=Hi>"
expectIn "a second start" "$log" "program run <$place/mail/gone.eml>"
for word in apt-get sudo cmake; do expectNot "a second start" "$log" "^$word "; done
expectNot "a second start" "$place/said" "The first time"
[[ $(grep -c '^dpkg-query' "$log") == 1 ]] || fail "a second start" "the packages are not asked for in one go"
run 0 "without words"
expectIn "without words" "$log" "program run <samples/Samples.mbox>"

program run 7
run 7 "a program that fails" "a letter.eml"
(
    unset DISPLAY
    run 7 "a program that fails without a display" "a letter.eml"
    expectIn "a program that fails without a display" "$log" "program run <$place/mail/a letter.eml>"
    expectIn "a program that fails without a display" "$place/said" "status 7"
    exit "$failures"
) || failures=$((failures + 1))

# The build of the tests serves as well.
program release 0
run 0 "after the tests" "a letter.eml"
expectIn "after the tests" "$log" "program release <"
expectNot "after the tests" "$log" "^cmake "

# The first time: said before anything is waited for.
rm -rf "$place/project/build"
mkdir "$place/project/build"
installed ninja-build
tool cmake "mkdir -p build/run/TesselMail && touch build/run/build.ninja"
tool ninja "printf '#!/bin/bash\necho \"program new\" >>$log\n' >build/run/TesselMail/tessel-mail
chmod +x build/run/TesselMail/tessel-mail"
tool sudo 'exec "$@"'
tool env 'shift; exec "$@"'
run 0 "the first time"
expectIn "the first time" "$log" "program new"
expectIn "the first time" "$log" "--no-install-recommends ninja-build"
expectNot "the first time" "$log" "^apt-get install.* (cmake|libfmt-dev)"
head -1 "$place/said" | grep -q 'first time takes about .* minutes.* GB of packages.* GB for the build' ||
    fail "the first time" "it is not said first what it takes"

((failures == 0)) && echo "run.sh does as it says"
exit $((failures > 0))
