# Shell helpers for the tests that run a tree's servers as an ordinary account and look at them
# from outside. Sourced; the caller sets $work (its scratch folder) and $site (the Apache address)
# and counts failures in $failures.

fail() {
    printf 'FAIL: %s\n' "$*" >&2
    failures=$((failures + 1))
}

not() { ! "$@"; }

check() {
    local what=$1
    shift
    "$@" || fail "$what"
}

# A TCP port nobody listens on now, outside the automatic port range.
free_port() {
    local port
    for port in $(shuf -i 20000-60000 -n 50); do
        ss -Htln "sport = :$port" | grep -q . || {
            echo "$port"
            return
        }
    done
    return 1
}

# Every process whose program or working folder lies in the work folder, by PID.
stop_leftovers() {
    local proc pid
    for proc in /proc/[0-9]*; do
        pid=${proc#/proc/}
        [[ $(readlink "$proc/exe" 2>/dev/null) == "$work"/* ||
            $(readlink "$proc/cwd" 2>/dev/null) == "$work"/* ]] && kill -9 "$pid" 2>/dev/null
    done
    return 0
}

# The status code of a request; the page goes to $work/page, cookies are kept between calls.
http_code() {
    curl -s -o "$work/page" -w '%{http_code}' -b "$work/cookies" -c "$work/cookies" "$@"
}

# A zombie waits for its reaper (this machine's init), but no longer runs.
is_live() {
    local state
    state=$(awk '{ print $3 }' "/proc/$1/stat" 2>/dev/null)
    [[ -n $state && $state != Z ]]
}

# Cookie sign-in as root without a password, through the login form and its token; the page
# after it lists the database named by $1.
check_phpmyadmin_login() {
    rm -f "$work/cookies"
    check 'phpMyAdmin login page' test "$(http_code "$site/mysql/index.php")" = 200
    local token
    token=$(grep -o -m 1 'name="token" value="[^"]*"' "$work/page" | sed 's/.*value="//; s/"$//')
    check 'phpMyAdmin gives a login token' test -n "$token"
    http_code -L --data-urlencode "token=$token" -d 'pma_username=root&pma_password=&server=1&route=/' \
        "$site/mysql/index.php?route=/" >/dev/null
    check 'phpMyAdmin signs in' grep -q 'logout' "$work/page"
    check "phpMyAdmin lists the database $1" grep -q "$1" "$work/page"
}
