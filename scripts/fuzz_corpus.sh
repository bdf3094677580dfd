#!/usr/bin/env bash
# Grows the kept fuzz corpora and minimises them (make fuzz-corpus).
#   scripts/fuzz_corpus.sh FUZZ_BUILD [TEST_BUILD] [SECONDS] [TARGET...]
# Each target runs SECONDS on one core from fuzz/corpus/<target>/ and seeds
# made from the writers' documents (samples/, and the reliability documents
# of TEST_BUILD when built); then `-merge=1` keeps the smallest set of inputs
# with the same coverage in fuzz/corpus/<target>/. A crash stops with the
# input kept as crash-* in the current folder.
set -euo pipefail
fuzz_build=${1:?usage: fuzz_corpus.sh FUZZ_BUILD [TEST_BUILD] [SECONDS] [TARGET...]}
test_build=${2:-build/test}
seconds=${3:-90}
shift $(( $# < 3 ? $# : 3 ))
here=$(cd "$(dirname "$0")/.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The writers' documents, and what the targets that take parts of them want.
docs=$work/docs
mkdir -p "$docs"
cp "$here"/samples/*.* "$docs"/ && rm -f "$docs"/*.md
documents="$test_build/tests/reliability/reliability_documents"
[ -x "$documents" ] && "$documents" "$docs"
seeds() {  # seeds TARGET DIR: fills DIR with the seeds of TARGET
    local target=$1 dir=$2 f
    mkdir -p "$dir"
    for f in "$docs"/*; do
        local magic base
        magic=$(head -c 4 "$f")
        base=$(basename "$f")
        case "$target:$magic" in
            fuzz_getinst:RIFF|fuzz_getinst:PK*|fuzz_riff:RIFF|fuzz_zip:PK*|fuzz_container:PK*)
                cp "$f" "$dir/$base" ;;
            fuzz_archive:JMV*|fuzz_archive:RIFF|fuzz_getinst:JMV*)
                cp "$f" "$dir/$base" ;;
            fuzz_fill:PK*)
                { printf '\001'; cat "$f"; } > "$dir/$base"
                if unzip -p "$f" content/fill.xml > "$work/part" 2>/dev/null && [ -s "$work/part" ]; then
                    { printf '\000'; cat "$work/part"; } > "$dir/$base.xml"
                fi ;;
            fuzz_metadata:PK*)
                for m in META-INF/metadata.xml metadata/metadata.xml META-INF/textinfo.xml metadata/textinfo.xml; do
                    unzip -p "$f" "$m" > "$dir/$base-${m//\//-}" 2>/dev/null || true
                done ;;
            fuzz_image:PK*)
                unzip -Z1 "$f" 2>/dev/null | grep -Ei '\.(png|bmp|jpe?g|tiff?)$' | head -4 | while read -r m; do
                    unzip -p "$f" "$m" > "$dir/$base-${m//\//-}"
                done ;;
        esac
    done
    case "$target" in
        fuzz_mo) for po in "$here"/resources/po/*.po; do msgfmt -o "$dir/$(basename "$po" .po).mo" "$po"; done ;;
        fuzz_codepage) printf '\000Gr\303\274\303\237e' > "$dir/utf8"; printf '\001caf\351' > "$dir/1252"; printf '\202\202\237' > "$dir/cp" ;;
    esac
    find "$dir" -type f -empty -delete
}

targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
    for t in "$fuzz_build"/fuzz/fuzz_*; do [ -x "$t" ] && targets+=("$(basename "$t")"); done
fi
for target in "${targets[@]}"; do
    bin="$fuzz_build/fuzz/$target"
    corpus="$here/fuzz/corpus/$target"
    mkdir -p "$corpus" "$work/$target/grown" "$work/$target/merged"
    seeds "$target" "$work/$target/seeds"
    echo "== $target: $(ls "$corpus" | wc -l) kept, $(ls "$work/$target/seeds" | wc -l) seeds, ${seconds}s"
    "$bin" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=262144 -print_final_stats=1 \
        "$work/$target/grown" "$corpus" "$work/$target/seeds" 2>&1 | grep -E '^(#|stat::number_of_executed|==|SUMMARY|artifact)' | tail -4
    "$bin" -merge=1 -timeout=10 -rss_limit_mb=2048 "$work/$target/merged" "$corpus" "$work/$target/grown" \
        "$work/$target/seeds" > "$work/$target/merge.log" 2>&1 || { tail -20 "$work/$target/merge.log"; exit 1; }
    rm -rf "$corpus" && mv "$work/$target/merged" "$corpus"
    echo "   kept $(ls "$corpus" | wc -l) inputs, $(du -sk "$corpus" | cut -f1) KiB"
done
