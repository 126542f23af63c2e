#!/usr/bin/env bash
#
# Start to the first HTTP 200 of phpinfo: the portable folder of bundle.sh against the linked
# tree it was made from, each copied to a scratch folder, ROUNDS starts each (median), one after
# the other on the same port, with the same kovixctl. Prints the two medians and their ratio.
#
#   bundle_start_bench.sh TREE BUNDLE [ROUNDS]
#
set -euo pipefail

tree=$(realpath "$1")
bundle=$(realpath "$2")
rounds=${3:-15}
work=$(mktemp -d)
chmod 755 "$work"
export KOVIX_PROCESS_SCOPE=$work
current=''
trap '[[ -n $current ]] && "$current/kovixctl" stop apache >/dev/null 2>&1; rm -rf "$work"' EXIT

port=$(shuf -i 20000-60000 -n 1)

now() { date +%s.%N; }

# Seconds from "kovixctl start apache" to the first 200 of phpinfo.
one_start() {
    local folder=$1 begin
    begin=$(now)
    "$folder/kovixctl" start apache >/dev/null
    until [[ $(curl -s -o /dev/null -w '%{http_code}' "http://127.0.0.1:$port/kovix/phpinfo.php") == 200 ]]; do
        sleep 0.002
    done
    echo "$(now) - $begin" | bc
    "$folder/kovixctl" stop apache >/dev/null
}

median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

measure() {
    local name=$1 source=$2 folder="$work/$1"
    cp -a "$source" "$folder"
    # The same kovixctl for both (a linked tree may have none of its own).
    [[ $name == tree ]] && cp "$bundle/kovixctl" "$folder/kovixctl"
    "$folder/kovixctl" port "$port" >/dev/null
    current=$folder
    one_start "$folder" >/dev/null # warm the page cache
    for ((i = 0; i < rounds; i++)); do one_start "$folder"; done | median
    current=''
}

linked=$(measure tree "$tree")
portable=$(measure bundle "$bundle")
printf 'start to phpinfo 200 (median of %d): linked tree %.3f s, portable folder %.3f s (%.2fx)\n' \
    "$rounds" "$linked" "$portable" "$(echo "$portable / $linked" | bc -l)"
