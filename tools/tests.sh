# The tests by their names, which are sentences. Sourced by ./marl.

# list_tests [WORD]: one line per test, "folder/source  Suite: name in words"; with WORD only the lines
# that contain it, in any case.
list_tests() {
  awk '
    function words(name) {
      gsub(/[A-Z]|[0-9]+/, " &", name)
      sub(/^ /, "", name)
      return tolower(name)
    }
    function emit(macro) {
      sub(/^[^(]*\([ ]*/, "", macro)
      sub(/\).*/, "", macro)
      split(macro, part, /,[ ]*/)
      source = FILENAME
      sub(/^tests\//, "", source)
      sub(/(_test)?\.cpp$/, "", source)
      printf "%-34s %s: %s\n", source, part[1], words(part[2])
    }
    FNR == 1 { open = "" }
    open != "" { emit(open " " $0); open = ""; next }
    /^(TYPED_)?TEST(_F|_P)?\(/ { if (/\)/) emit($0); else open = $0 }
  ' tests/{unit,contract,desktop,forms}/*.cpp | { grep -iF -e "${1:-}" || true; }
}
