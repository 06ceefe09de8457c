#!/usr/bin/env bash
# The table of docs/performance.md about families of schemas: what generating and compiling their classes takes, and how
# fast the classes are with the largest document of each.
#   CORPUS=folder bench/families.sh [FAMILY ...]
# The corpus holds families.tsv (family, level, main schema, flags) and, for each family, xsd/ and valid/*.xml.
# All times are processor time, user and system. OPTIMIZE (-O2), JOBS (2), SECONDS_EACH (2), BUILD (a new folder).
set -euo pipefail
cd "$(dirname "$0")/.."

project=$PWD
corpus=$(realpath "${CORPUS:?set CORPUS to the folder with families.tsv}")
optimize=${OPTIMIZE:--O2}
build=${BUILD:-$(mktemp -d)}
mkdir -p "$build"
scripts/build.sh release -- quiver-gen QvXmlLib9_static >/dev/null
generator=$project/build/release/tools/quiver-gen
library=$project/build/release/quiver/libQvXmlLib9_static.a

# compile SOURCE OUTPUT: leaves the processor time and the peak memory in OUTPUT.cost.
compile()
{
    /usr/bin/time -o "$2.cost" -f '%U %S %M' \
        g++ -std=c++17 "$optimize" -I"$project" -I"$(dirname "$1")" -c "$1" -o "$2"
}
export -f compile
export optimize project

measure()
{
    local family=$1 schema=$corpus/$1/$2 folder=$build/$1 largest
    rm -rf "$folder"
    mkdir -p "$folder"
    /usr/bin/time -o "$folder/generate.cost" -f '%U %S %M' \
        "$generator" "$schema" -o "$folder/src" --factory family::CRoots >"$folder/generate.log" 2>&1
    find "$folder/src" -name '*.cpp' -print0 |
        xargs -0 -P "${JOBS:-2}" -I{} bash -c 'compile "$1" "$1.o"' compile {}
    cp "$project/bench/families/main.cpp" "$folder/main.cpp"
    g++ -std=c++17 "$optimize" -I"$project" -I"$folder/src" -c "$folder/main.cpp" -o "$folder/main.o"
    find "$folder" -name '*.o' >"$folder/objects"
    g++ @"$folder/objects" -o "$folder/family" "$library" -lexpat -lpcre -lz -lpthread
    largest=$(find "$corpus/$family/valid" -name '*.xml' -printf '%s %p\n' | sort -n | tail -1)
    local schemaLines codeLines rates
    schemaLines=$(find "$corpus/$family/xsd" -name '*.xsd' -exec cat {} + | wc -l)
    codeLines=$(cat "$folder"/src/*.h "$folder"/src/*.cpp | wc -l)
    rates=$("$folder/family" "${largest#* }" "${SECONDS_EACH:-2}")
    {
        cat "$folder/generate.cost"
        size "$folder"/src/*.o | tail -n +2 | awk '{ bytes += $1 + $2 } END { print bytes }'
        cat "$folder"/src/*.cost
    } | awk -v family="$family" -v schema="$schemaLines" -v code="$codeLines" -v rates="$rates" -v size="${largest%% *}" '
        NR == 1 { generate = $1 + $2; generator = $3; next }
        NR == 2 { bytes = $1; next }
        { all += $1 + $2 } $1 + $2 > longest { longest = $1 + $2 } $3 > memory { memory = $3 }
        END {
            split(rates, rate, " ")
            printf "| `%s` | %d | %d | %.2f | %.1f | %.0f | %.1f | %.0f | %.1f | %.1f | %s | %s |\n", family, schema, code,
                generate, generator / 1024, all, longest, memory / 1024, bytes / 1e6, size / 1024, rate[1], rate[2]
        }'
}

echo "| Family | XSD, lines | C++, lines | generate, s | its memory, MiB | compile, s | longest file, s | its memory, MiB |" \
    "object code, MB | document, KiB | read, MB/s | write, MB/s |"
echo "|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|"
while IFS=$'\t' read -r family _ schema _; do
    [[ $family == \#* ]] && continue
    [[ $# -eq 0 || " $* " == *" $family "* ]] || continue
    measure "$family" "$schema"
done <"$corpus/families.tsv"
