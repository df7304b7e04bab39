# Runs the tests and shows their progress. Sourced by ./marl.

# One ctest run over the three build trees, with the tests that CMake has defined there.
cmd_test() {
  local part=${1:-} filter=${2:-} preset presets=(native win32 win64) begun
  case $part in
    '') ;;
    unit) presets=(native) ;;
    contract) ;;
    desktop) presets=(win32 win64) ;;
    list) list_tests "$filter"; return ;;
    *) usage >&2; fail "unknown part: $part" ;;
  esac
  ensure_packages test
  mkdir -p build/tests
  : >build/tests/CTestTestfile.cmake
  TEST_ROWS=()
  for preset in "${presets[@]}"; do
    say "Building $preset"
    begun=$SECONDS
    build_preset "$preset" "${part:-all}${part:+_parts}"
    TEST_ROWS+=("build $preset|-|$((SECONDS - begun))|PASS")
    echo "subdirs(\"$ROOT/build/$preset\")" >>build/tests/CTestTestfile.cmake
  done
  run_tests "$part" "$filter"
}

# The tests of the real program and of the ports, under the newer Wine.
cmd_witness() {
  local filter=${1:-} preset begun
  export MARL_WITNESS=1
  wine_use witness
  ensure_packages test
  say "With $(wine_version)"
  mkdir -p build/tests
  : >build/tests/CTestTestfile.cmake
  TEST_ROWS=()
  for preset in win32 win64; do
    say "Building $preset"
    begun=$SECONDS
    build_preset "$preset" contract_parts desktop_parts
    TEST_ROWS+=("build $preset|-|$((SECONDS - begun))|PASS")
    echo "subdirs(\"$ROOT/build/$preset\")" >>build/tests/CTestTestfile.cmake
  done
  run_tests '(contract|desktop)' "$filter"
}

# run_tests PART FILTER: runs the tests that are built, and ends with a table.
run_tests() {
  local part=$1 filter=$2 name reason select=() status=0 dropped=() begun=$SECONDS row
  if [[ -n $part ]]; then select=(-L "^$part\$"); fi
  if [[ -n $filter ]]; then export GTEST_FILTER="*$filter*"; fi
  while read -r name; do
    reason=$(cannot_run "$name")
    [[ -n $reason ]] || continue
    dropped+=("$name")
    TEST_ROWS+=("$name|-|-|NOT RUN: $reason")
    # In CI, a test that cannot run is a failure.
    if [[ ${CI:-} == true ]]; then status=1; fi
  done < <(ctest --test-dir build/tests -N "${select[@]}" | sed -n 's/^  Test *#[0-9]*: //p')
  if ((${#dropped[@]})); then
    select+=(-E "^($(IFS='|'; echo "${dropped[*]//./\\.}"))\$")
  fi
  say "Testing"
  export MARL_TESTING=1
  # More at a time than there are processors: desktop tests mostly wait.
  ctest --test-dir build/tests --verbose --parallel $((JOBS + 1)) "${select[@]}" 2>&1 |
    follow_tests build/tests/last.log "$filter" || status=1
  while read -r row; do TEST_ROWS+=("$row"); done <build/tests/last.rows
  if [[ -s build/tests/last.failures ]]; then
    say "What failed"
    head -n 150 build/tests/last.failures
  fi
  say "All of it is in build/tests/last.log"
  printf '\n%-18s %6s %8s  %s\n' Part Tests Seconds Result
  printf '%s\n' "${TEST_ROWS[@]}" | awk -F'|' '{ printf "%-18s %6s %8s  %s\n", $1, $2, $3, $4 }'
  printf '%-18s %6s %8s  %s\n' all "$(awk -F'|' '{ n += $2 } END { print n + 0 }' build/tests/last.rows)" \
    $((SECONDS - begun)) "$( ((status == 0)) && echo PASS || echo FAIL)"
  return $status
}

# awk that handles each line as it arrives.
awk_by_line() {
  if [[ $(readlink -f "$(command -v awk)") == *mawk ]]; then set -- -W interactive "$@"; fi
  awk "$@"
}

# follow_tests LOG FILTER: writes ctest's output to LOG, and shows the progress of the parts,
# failures in full, and each part's last lines. Writes beside LOG one row per part,
# "name|tests|seconds|result", and the failures, and fails if a part failed or had no test to run.
follow_tests() {
  awk_by_line -v log_file="$1" -v rows="${1%.log}.rows" -v failures="${1%.log}.failures" \
    -v filter="$2" '
    function where(   line, n) {
      line = ""
      for (n = 1; n <= last; ++n) {
        if (name[n] == "" || n in ended) continue
        line = line "   " name[n] " " ran[n] + 0 (all[n] ? " of " all[n] : "")
      }
      if (line != "") { printf "%5d s%s\n", systime() - begun, line; fflush() }
      shown = systime()
    }
    function show(n) {
      if (held[n] != "") {
        printf "%s", held[n]
        printf "%s", held[n] >failures
        fflush()
      }
      held[n] = ""
    }
    BEGIN {
      begun = shown = systime()
      printf "" >rows
      printf "" >failures
    }
    { print >log_file }
    /^ +Start +[0-9]+: / {
      n = $2 + 0
      name[n] = $3
      if (n > last) last = n
      where()
      next
    }
    /^[0-9]+: / {
      n = $0 + 0
      text = substr($0, index($0, ": ") + 2)
      sub(/\r$/, "", text)
      if (text ~ /^(Test command|Working Directory|Environment variables|Test timeout [a-z ]+):/ ||
          text ~ /^ [A-Z_]+=/) next  # what ctest says in front
      if (text ~ /^\[==========\] (Running|Sharing) /) {
        if (!(n in all)) all[n] = $4  # a test may start its own program again
      } else if (text ~ /^\[       OK \]/ || text ~ /^\[  SKIPPED \].*ms\)$/) {
        ++ran[n]
        held[n] = ""
      } else if (text ~ /^\[  FAILED  \].*ms\)$/) {
        ++ran[n]
        ++failed[n]
        held[n] = held[n] name[n] ": " text "\n"
        show(n)
      } else if (text ~ /^\[==========\] .* ran\./ || text ~ /^\[  PASSED  \]/ ||
                 text ~ /^\[  FAILED  \]/) {
        print name[n] ": " text
        fflush()
        held[n] = ""
      } else if (text !~ /^\[/ || text ~ /^\[ RUN  /) {
        held[n] = held[n] name[n] ": " text "\n"
      }
      if (systime() - shown >= 5) where()
      next
    }
    match($0, /Test +#[0-9]+: /) && / sec/ {
      print
      split(substr($0, RSTART), word, /[ #:]+/)
      n = word[2] + 0
      ended[n] = 1
      passed = $0 ~ / Passed +[0-9.]+ sec/
      match($0, /[0-9.]+ sec/)
      seconds = int(substr($0, RSTART) + 0.5)
      if (!passed) show(n)
      result = passed ? "PASS" : "FAIL"
      if (!passed && failed[n]) result = result ": " failed[n] " failed"
      if (!ran[n]) {
        if (filter == "") { result = "FAIL: it ran no test"; bad = 1 }
        else if (passed) result = "none matches"
      }
      if (!passed) bad = 1
      total += ran[n]
      print name[n] "|" ran[n] + 0 "|" seconds "|" result >>rows
      fflush()
      next
    }
    /tests passed|^Total Test time|^The following tests|^\t *[0-9]+ - / { print; fflush() }
    END {
      if (!total) { print "No test ran."; bad = 1 }
      exit bad
    }
  '
}

# The locales of the locale tests, which kLocales (tests/desktop/Locale_test.cpp) lists with their
# code pages.
LOCALES=(ja_JP zh_CN zh_TW ko_KR ru_RU el_GR tr_TR he_IL ar_SA th_TH vi_VN de_DE)

# locale_data FOLDER: compiles the data of the locales that are not there yet.
locale_data() (
  local name
  mkdir -p "$1"
  flock 9
  for name in "${LOCALES[@]}"; do
    if [[ -d $1/$name.UTF-8 ]]; then continue; fi
    # It warns, with code 1.
    localedef -i "$name" -f UTF-8 "$1/$name.new" >/dev/null 2>&1 || (($? == 1))
    mv "$1/$name.new" "$1/$name.UTF-8" || fail "the locale $name could not be made"
  done
) 9>"$1.lock"

# locales PROGRAM [ARG...]: runs the locale tests of a program of desktop tests, once in each locale.
cmd_locales() {
  local name=${MARL_WINE_NAME:-locales} data=$ROOT/build/locales each lines status=0 ran=0 passed=0
  mkdir -p build/tests "$WINE_FOLDER"
  locale_data "$data" || return
  (flock 9; wine_begin desktop-96 96 9>&-) 9>"$WINE_FOLDER/desktop-96.lock" || return
  one_processor
  prefix_copy desktop-96 "$name"
  wine_begin "$name" 96
  wine_temp_in_memory
  mkdir -p "$SHOTS_FOLDER/$name"
  export MARL_SHOTS="Z:$ROOT/$SHOTS_FOLDER/$name"
  "${WINE_VIA[@]}" wine cmd /c exit >/dev/null 2>&1
  echo "[==========] Running ${#LOCALES[@]} tests."
  for each in "${LOCALES[@]}"; do
    lines=$("${WINE_VIA[@]}" env "LC_ALL=$each.UTF-8" "LOCPATH=$data" "MARL_LOCALE=$each" \
      wine "$@" --suite=Of/Locale | sed 's/\r$//; /^\[\(=\|-\|  PASSED\)/d; /^Note: /d') || true
    if [[ -n $lines ]]; then echo "$lines"; fi
    if grep -q '^\[ RUN ' <<<"$lines"; then ran=$((ran + 1)); fi
    if grep -q '^\[       OK ' <<<"$lines"; then passed=$((passed + 1)); fi
  done
  echo "[==========] $ran tests ran."
  echo "[  PASSED  ] $passed tests."
  if ((passed < ran)); then status=1; fi
  if [[ -z ${GTEST_FILTER:-} ]] && ((ran < ${#LOCALES[@]})); then
    echo "Of ${#LOCALES[@]} tests $ran ran."
    status=1
  fi
  return $status
}

# desktops PROGRAM [ARG...]: runs a program of desktop tests on several Wine desktops side by side,
# each with its own display and prefix; a free one takes the next test (TestQueue.h). CTest starts
# it; MARL_DESKTOPS sets their number.
cmd_desktops() {
  [[ $# -gt 0 ]] || fail "desktops needs a program"
  local name=${MARL_WINE_NAME:-desktop} dpi=${MARL_WINE_DPI:-96} count=${MARL_DESKTOPS:-3} queue
  mkdir -p build/tests "$WINE_FOLDER"
  queue=$(mktemp -d "$ROOT/build/tests/queue.XXXXXX")
  # What the prefixes are copies of.
  (flock 9; wine_begin "desktop-$dpi" "$dpi" 9>&-) 9>"$WINE_FOLDER/desktop-$dpi.lock" || return
  local lane status=0
  for ((lane = 1; lane <= count; ++lane)); do
    desktop_lane "$lane" "$@" 2>&1 | sed -u $'s/\r$//; s/^/'"$lane"$'\t/' &
  done | gather_lanes || status=$?
  rm -rf "$queue"
  return $status
}

# desktop_lane NUMBER PROGRAM [ARG...]: runs the program on its own desktop until all tests are
# taken. If it ends in the middle of a test, that test has failed, and the program is started again
# for the others.
desktop_lane() (
  one_processor
  prefix_copy "desktop-$dpi" "$name-$1"
  wine_begin "$name-$1" "$dpi"
  wine_temp_in_memory
  wine_small_disk "$name-$1"
  shift
  mkdir -p "$SHOTS_FOLDER/$name"
  export MARL_SHOTS="Z:$ROOT/$SHOTS_FOLDER/$name"
  local taken status
  while :; do
    # Wine's own processes must not keep the pipe open.
    "${WINE_VIA[@]}" wine cmd /c exit >/dev/null 2>&1
    taken=$(ls "$queue" | wc -l)
    status=0
    "${WINE_VIA[@]}" wine "$@" "--queue=Z:$queue" || status=$?
    echo "@ended $status"
    # 0 and 1 are the program's regular exit codes.
    if ((status <= 1)) || (($(ls "$queue" | wc -l) == taken)); then break; fi
    # Ends what it had started.
    wine_rest
  done
)

# gather_lanes: merges the output of all desktops, lines with the desktop's number and a tab in
# front. The lines of a test are printed together, once it has ended. Fails if a test failed or did
# not run.
gather_lanes() {
  awk_by_line '
    function out(line) { print line; fflush() }
    function end_of(lane, line) {
      out(block[lane] line)
      block[lane] = test[lane] = ""
      ++ran
    }
    {
      lane = $1
      text = substr($0, index($0, "\t") + 1)
    }
    text ~ /^\[==========\] Sharing / {
      if (all == "") out(text)
      all = $4
      next
    }
    text ~ /^\[ RUN  / {
      test[lane] = substr(text, 14)
      block[lane] = text "\n"
      next
    }
    text ~ /^\[       OK \]/ { ++passed; end_of(lane, text); next }
    text ~ /^\[  SKIPPED \]/ { skipped[test[lane]]; end_of(lane, text); next }
    text ~ /^\[  FAILED  \]/ { failed[test[lane]]; end_of(lane, text); next }
    text ~ /^\[----------\].* ran here/ {
      sub(/here/, "on desktop " lane, text)
      out(text)
      next
    }
    text ~ /^@ended / {
      if (test[lane] != "") {
        failed[test[lane]]
        end_of(lane, "The test program ended in the middle of it, with code " $3 + 0 ".\n" \
               "[  FAILED  ] " test[lane] " (0 ms)")
      }
      next
    }
    test[lane] != "" { block[lane] = block[lane] text "\n"; next }
    { out("desktop " lane ": " text) }
    END {
      status = 0
      out("[==========] " ran + 0 " tests ran.")
      out("[  PASSED  ] " passed + 0 " tests.")
      for (name in skipped) out("[  SKIPPED ] " name)
      for (name in failed) { out("[  FAILED  ] " name); status = 1 }
      if (all == "") { out("The test program did not start."); status = 1 }
      if (ran + 0 != all + 0) { out("Of " all + 0 " tests " ran + 0 " ran."); status = 1 }
      exit status
    }
  '
}
