# The fuzz targets: runs, the hour of a release, the smallest corpus, the lines reached. Sourced by ./marl.

cmd_fuzz() {
  case ${1:-} in
    agreement) fuzz_agreement "${2:-3000000}" ;;
    release) fuzz_release "${2:-60}" ;;
    minimise) fuzz_minimise "${2:-}" ;;
    coverage) fuzz_coverage ;;
    *)
      fuzz_build
      local name
      for name in $(fuzz_names "${1:-}"); do
        say "$name"
        fuzz_run "$name" "${2:-60}"
      done
      ;;
  esac
}

fuzz_build() {
  ensure_packages fuzz
  build_preset fuzz fuzzers
}

# fuzz_names [NAME]: the targets, or this one.
fuzz_names() {
  local source found=
  for source in fuzz/fuzz_${1:-*}.cpp; do
    [[ -f $source ]] || continue
    found=${source#fuzz/fuzz_}
    echo "${found%.cpp}"
  done
  [[ -n $found ]] || fail "there is no fuzz target ${1:-yet}"
}

# fuzz_run NAME SECONDS [OPTION...]: what it finds stays beside the program, its corpus in
# build/fuzz/corpus.
fuzz_run() {
  local name=$1 options=("-max_total_time=$2" -timeout=10 "-artifact_prefix=build/fuzz/$1-")
  shift 2
  mkdir -p "build/fuzz/corpus/$name" "fuzz/corpus/$name"
  if [[ -f fuzz/dictionaries/$name.dict ]]; then options+=("-dict=fuzz/dictionaries/$name.dict"); fi
  "build/fuzz/fuzz/fuzz_$name" "${options[@]}" "$@" "build/fuzz/corpus/$name" "fuzz/corpus/$name"
}

# fuzz_release MINUTES: the targets take turns until they have had so much processor time in all. What
# they did is added up in build/fuzz/release, over several runs; a find ends it.
fuzz_release() {
  local log=build/fuzz/release/runs turn=60 name used status TIMEFORMAT='%U %S'
  fuzz_build
  mkdir -p "${log%/*}"
  touch $log
  while used=$(awk '{ s += $2 } END { printf "%d", s }' $log) && ((used < $1 * 60)); do
    # The one that has had least.
    name=$({ fuzz_names | sed 's/$/ 0/'; cat $log; } |
      awk '{ s[$1] += $2 } END { for (n in s) print s[n], n }' | sort -g | sed -n '1s/.* //p')
    status=0
    { time fuzz_run "$name" $turn -print_final_stats=1 2>"${log%/*}/$name.log" || status=$?; } \
      2>"${log%/*}/time"
    awk -v name="$name" '
      FILENAME ~ /time$/ { if (NF == 2) seconds = $1 + $2; next }
      / cov: / { edges = $4 }
      /^stat::number_of_executed_units:/ { runs = $2 }
      END { print name, seconds + 0, runs + 0, edges + 0 }
    ' "${log%/*}/time" "${log%/*}/$name.log" | tee -a $log
    # The limit is one of real time: on a busy machine an input may only have had to wait.
    if ((status == 70)) && fuzz_is_quick "$name"; then status=0; fi
    ((status == 0)) || fail "$name: a find; build/fuzz/release/$name.log"
  done
  fuzz_table
}

# fuzz_is_quick NAME: runs the inputs that took too long once more, and removes them if they no longer do.
fuzz_is_quick() {
  local slow=(build/fuzz/"$1"-timeout-*)
  "build/fuzz/fuzz/fuzz_$1" -timeout=10 "${slow[@]}" 2>"build/fuzz/release/$1.slow" && rm "${slow[@]}"
}

# The release so far: per target the processor time, executions, edges reached.
fuzz_table() {
  awk '
    { time[$1] += $2; runs[$1] += $3; if ($4 > edges[$1]) edges[$1] = $4 }
    END {
      for (name in time) {
        printf "%-14s %6d s %12d runs %6d edges\n", name, time[name], runs[name], edges[name] | "sort"
        seconds += time[name]
        all += runs[name]
      }
      close("sort")
      printf "%-14s %6d s %12d runs\n", "all", seconds, all
    }
  ' build/fuzz/release/runs
}

# fuzz_minimise [NAME]: leaves in fuzz/corpus the smallest set of inputs that reaches what all inputs
# so far have reached, and the seeds, which have names.
fuzz_minimise() {
  local name kept file
  fuzz_build
  for name in $(fuzz_names "$1"); do
    mkdir -p "build/fuzz/corpus/$name"
    kept=$(mktemp -d build/fuzz/kept.XXXXXX)
    cp fuzz/corpus/"$name"/* "$kept"
    rm -f "$kept"/found-*
    # Into the seeds, so that only what they do not reach is added: lines, not how often.
    "build/fuzz/fuzz/fuzz_$name" -merge=1 -use_counters=0 -timeout=10 "$kept" "fuzz/corpus/$name" \
      "build/fuzz/corpus/$name" 2>"build/fuzz/$name.merge" || fail "$name: build/fuzz/$name.merge"
    for file in "$kept"/*; do
      # The fuzzer names an input by its hash.
      if [[ ${file##*/} =~ ^[0-9a-f]{40}$ ]]; then mv "$file" "$kept/found-${file##*/}"; fi
    done
    rm -rf "fuzz/corpus/$name"
    mv "$kept" "fuzz/corpus/$name"
    chmod 755 "fuzz/corpus/$name"
    say "$name: $(ls "fuzz/corpus/$name" | wc -l) inputs, $(cat fuzz/corpus/"$name"/* | wc -c) bytes"
  done
}

# What each target is about: the lines of these sources are counted.
declare -A FUZZ_LINES=(
  [command]='platform/DdeCommand.h'
  [commandline]='shell/modMarl.cpp'
  [decoder]='documents/modUTF8.cpp'
  [displayorder]='appearance/PanelLayout.cpp'
  [fontspec]='appearance/FontSpec.cpp'
  [numerictext]='network/ValidateNumericText.cpp'
  [olderproject]='documents/OlderProject.cpp'
  [project]='documents/clsQPRX.cpp documents/clsXMLEngine.cpp documents/clsXMLTag.cpp'
  [registry]='settings/cRegistry.cpp settings/clsRegistry.cpp'
  [servertag]='network/ServerTag.cpp network/TrackingServerClient.cpp'
  [skin]='appearance/SkinFile.cpp'
  [tags]='documents/clsXMLTag.cpp'
  [tokens]='documents/clsXMLEngine.cpp'
)

# In awk: whether a path is that of one of `sources`.
FUZZ_OF_SOURCES='
  function of(path,   all, n) {
    for (n = split(sources, all, " "); n > 0; --n) {
      if (length(path) >= length(all[n]) &&
          substr(path, length(path) - length(all[n]) + 1) == all[n]) return 1
    }
    return 0
  }
'

# fuzz_coverage: the lines that the corpus reaches, its own and what build/fuzz/corpus has, in targets
# without sanitizers. Those that are not reached are in build/fuzz-coverage/NAME.txt.
fuzz_coverage() {
  local name folder=build/fuzz-coverage program
  ensure_packages fuzz
  if [[ ! -f $folder/build.ninja || CMakePresets.json -nt $folder/build.ninja ]]; then
    cmake --preset fuzz -B $folder -DMARL_COVERAGE=ON
  fi
  cmake --build $folder --parallel "$JOBS" --target fuzzers
  printf '%-14s %8s %8s %8s\n' Target Lines Reached ''
  for name in $(fuzz_names); do
    [[ -n ${FUZZ_LINES[$name]:-} ]] || fail "no lines for $name in FUZZ_LINES (tools/fuzz.sh)"
    program=$folder/fuzz/fuzz_$name
    mkdir -p "build/fuzz/corpus/$name"
    LLVM_PROFILE_FILE=$folder/$name.raw "$program" -runs=0 "fuzz/corpus/$name" \
      "build/fuzz/corpus/$name" 2>/dev/null || fail "$name fails; ./marl fuzz $name 1 shows where"
    llvm-profdata merge -sparse "$folder/$name.raw" -o "$folder/$name.profile"
    llvm-cov show "$program" "-instr-profile=$folder/$name.profile" |
      awk -v sources="${FUZZ_LINES[$name]}" "$FUZZ_OF_SOURCES"'
        /^\/.*:$/ { wanted = of(substr($0, 1, length($0) - 1)); if (wanted) print; next }
        wanted && /^ +[0-9]+\| +0\|/' >"$folder/$name.txt"
    llvm-cov report "$program" "-instr-profile=$folder/$name.profile" |
      awk -v sources="${FUZZ_LINES[$name]}" -v name="$name" "$FUZZ_OF_SOURCES"'
        of($1) { lines += $8; missed += $9 }
        END {
          if (!lines) { print name ": no lines"; exit 1 }
          printf "%-14s %8d %8d %6.1f %%\n", name, lines, lines - missed,
            (lines - missed) * 100 / lines
        }'
  done
}

# fuzz_agreement NUMBER: the comparisons of the unit tests, optimised and with more documents.
fuzz_agreement() {
  local program
  ensure_packages bench
  build_preset bench reader_tests baseline_reader_tests plain_reader_tests
  for program in reader_tests baseline_reader_tests plain_reader_tests; do
    say "$program, $1 documents for each comparison"
    MARL_ROUNDS=$1 "build/bench/tests/unit/$program" --gtest_filter="$(
      printf '%s' '*Agree*:*TokensWithoutDecoding*:*ConcatenatedTokens*:*DecodingUndoes*:' \
        '*StopsWhen*:-*LongDocuments*')"
  done
}
