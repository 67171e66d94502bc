# shellcheck shell=bash
# Part of scripts/mutate: the library and its test programs, with mutants in them.
# Needs `home`, the folder of all this, and `kPrograms`.
# shellcheck disable=SC2154

# Everything that no mutant touches: the finder, a copy of the sources, and the test programs' own objects.
prepare() {
    if ! command -v jq >/dev/null || [[ ! -d /usr/lib/llvm-19/include/clang || ! -d /usr/lib/llvm-19/include/llvm ]]; then
        echo 'mutate: needs the packages jq, clang-19, libclang-19-dev and llvm-19-dev.' >&2
        exit 1
    fi
    echo 'mutate: building the finder of mutants and the tests.'
    mkdir -p "$home/tree" "$home/objects" "$home/run"
    git ls-files -co --exclude-standard -z | while IFS= read -r -d '' file; do
        [[ ! -e "$file" ]] || printf '%s\0' "$file"
    done | tar --null -T - -cf - | tar -xf - -C "$home/tree"
    {
        cmake -S tests/mutation -B "$home/tool" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O1 &&
            cmake --build "$home/tool" &&
            cmake -S "$home/tree" -B "$home/build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG='-O0 -g0' &&
            cmake --build "$home/build" --target "${kPrograms[@]}"
    } >"$home/build.log" 2>&1 || { tail -n 30 "$home/build.log" >&2 && exit 1; }
    jq -r --arg sources "$home/tree/src/" '.[] | select(.file | startswith($sources)) | [(.file | ltrimstr($sources)), .command] | @tsv' \
        "$home/build/compile_commands.json" >"$home/commands"
    local program command resources flags
    for program in "${kPrograms[@]}"; do
        command=$(ninja -C "$home/build" -t commands "$program" | tail -n 1)
        command=${command%% && cd *}
        command=${command//"src/CMakeFiles/vx-clone-objects.dir/"/"$home/objects/"}
        printf '%s\n' "${command/"-o bin/"/"-o $home/run/"}"
    done >"$home/links"
    resources=$(clang-19 -print-resource-dir)
    read -ra flags <<<"-std=c++17 -I$home/tree/src -I$home/tree/include $(pkg-config --cflags jsoncpp) -resource-dir $resources"
    mapfile -t sources < <(cut -f 1 "$home/commands")
    "$home/tool/vx-mutants" find "$home/tree/src/" "${sources[@]}" -- "${flags[@]}" >"$home/mutants.jsonl"
}

# Compiles a source of the folder into objects/. The compiler's complaints go to standard error.
compile() { # the folder beside tree/, the source, more flags
    local command
    command=$(awk -F '\t' -v source="$2" '$1 == source { print $2 }' "$home/commands")
    command=${command//"$home/tree/src"/"$home/$1"}
    command=${command/"-o src/CMakeFiles/vx-clone-objects.dir/"/"-o $home/objects/"}
    (cd "$home/build" && eval "$command -w ${3:-}")
}

# The test programs from what lies in objects/.
linkPrograms() {
    local command
    while IFS= read -r command; do
        (cd "$home/build" && eval "$command")
    done <"$home/links"
}

# The ids of the mutants that the compiler's messages, in the file, are about: those on the named lines. What
# should have stayed a constant comes first, since much that is said of other lines follows from it.
complainedOf() {
    local messages
    messages=$(grep -E "non-'constexpr' function|not initialized with a constant expression" "$1" ||
        grep -E ': (error|note): ' "$1")
    sed -nE "s|^$home/woven/([^:]+):([0-9]+):.*|\1 \2|p" <<<"$messages" | sort -u |
        jq -rR --slurpfile mutants "$home/mutants.jsonl" 'split(" ") as [$file, $line] | $mutants[] |
            select(.file == $file and .line <= ($line | tonumber) and .lastLine >= ($line | tonumber)) | .id'
}

# Compiles all mutants in at once, to be chosen at run time. Those that cannot be, among them whatever has to be
# a constant for the compiler, are left out of it and stand in the file `alone`: they are compiled one by one.
weave() {
    local source before complaints
    echo 'mutate: weaving the mutants in.'
    rm -rf "$home/woven" && cp -r "$home/tree/src" "$home/woven"
    cp tests/mutation/vx_mutant.h "$home/woven/"
    jq -r 'select(.form == "alone") | .id' "$home/mutants.jsonl" >"$home/alone"
    while true; do
        before=$(wc -l <"$home/alone")
        mapfile -t leftOut <"$home/alone"
        "$home/tool/vx-mutants" all "$home/mutants.jsonl" "$home/tree/src/" "$home/woven/" "${leftOut[@]}"
        complaints=$home/complaints
        : >"$complaints"
        for source in "${sources[@]}"; do
            compile woven "$source" -fsyntax-only 2>>"$complaints" || true
        done
        grep -q ': error: ' "$complaints" || break
        { complainedOf "$complaints" && cat "$home/alone"; } | sort -nu >"$home/alone.new"
        mv "$home/alone.new" "$home/alone"
        if [[ $(wc -l <"$home/alone") -eq $before ]]; then
            cat "$complaints" >&2
            echo 'mutate: the woven sources do not compile, and no mutant is to blame.' >&2
            exit 1
        fi
    done
    for source in "${sources[@]}"; do
        compile woven "$source"
    done
    linkPrograms
    rm -rf "$home/wovenObjects" "$home/wovenRun"
    cp -r "$home/objects" "$home/wovenObjects"
    cp -r "$home/run" "$home/wovenRun"
}

# Whether the mutant, compiled by itself, gives the test programs.
compileAlone() { # the id
    local file source
    file=$(jq -r --argjson id "$1" 'select(.id == $id) | .file' "$home/mutants.jsonl")
    rm -rf "$home/single" && cp -r "$home/tree/src" "$home/single"
    "$home/tool/vx-mutants" one "$home/mutants.jsonl" "$1" "$home/tree/src/" "$home/single/" || exit 1
    cp "$home/wovenObjects/"*.o "$home/objects/"
    for source in "${sources[@]}"; do
        if [[ "$file" == *.h || "$file" == "$source" ]]; then
            compile single "$source" 2>/dev/null || return 1
        fi
    done
    linkPrograms
}
