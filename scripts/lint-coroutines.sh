#!/usr/bin/env bash
# Looks for coroutine forms that g++ 12 miscompiles, in the named files or in all of the project; proves itself first.
# usage: lint-coroutines.sh [FILE…]
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
files=("$@")
if [ $# -eq 0 ]; then
    cd "$here/.."
    mapfile -t files < <(git ls-files -co --exclude-standard -- '*.cpp' '*.h')
fi
python3 "$here/lint-coroutines.py" --self-test
exec python3 "$here/lint-coroutines.py" "${files[@]}"
