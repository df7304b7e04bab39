#!/usr/bin/env bash
# format.sh [--check]: formats all sources with clang-format, or lists those that are not formatted
# and fails. It must be version 14: others apply the same rules differently. CLANG_FORMAT names
# another program.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
program=${CLANG_FORMAT:-clang-format}
version=$($program --version) || { echo "format: clang-format (14) is missing" >&2; exit 1; }
[[ $version =~ version\ 14\. ]] || { echo "format: version 14 is needed, this is: $version" >&2; exit 1; }
how=(-i)
if [[ ${1:-} == --check ]]; then how=(--dry-run --Werror); fi
# shellcheck disable=SC2086
git ls-files -z '*.cpp' '*.h' | xargs -0 -n 40 -P "$(nproc)" $program --style=file "${how[@]}"
