#!/usr/bin/env bash
# Runs every test: the native unit tests of the portable core (with sanitizers), then the Win32 tests
# under Wine on their own Xvfb display and WINEPREFIX. Exits non-zero on any failure.
# Extra arguments are passed to the Wine tests (for example --gtest_filter=StartUp.*).
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

"$root/scripts/setup.sh" || exit 1
"$root/scripts/build.sh" || exit 1

status=0
echo "== Native unit tests =="
./build/native/unit_tests --gtest_brief=1 || status=1

echo "== Win32 tests under Wine =="
# shellcheck source=lib/wine-session.sh
source "$root/scripts/lib/wine-session.sh"
trap wine_session_stop EXIT
wine_session_start
wine ./build/windows/win_tests.exe --gtest_brief=1 "$@" || status=1

if [ $status -eq 0 ]; then
    echo "All tests passed."
else
    echo "Some tests FAILED."
fi
exit $status
