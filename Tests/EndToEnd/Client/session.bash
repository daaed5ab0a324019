# For the tests of the client program: a service of the test's own, private folders, and checks. A test sources this
# and gets the two programs by the environment: TARNWICK_CLIENT and TARNWICK_SERVICE.
# shellcheck shell=bash
set -euo pipefail

work=$(mktemp --directory --tmpdir tarnwick-test.XXXXXX)
service=''
clean_up() {
    if [[ -n $service ]]; then
        kill "$service" 2>/dev/null || true
        wait "$service" 2>/dev/null || true
    fi
    rm -rf "$work"
}
trap clean_up EXIT

while IFS= read -r variable; do
    [[ $variable == TARNWICK_CLIENT || $variable == TARNWICK_SERVICE ]] || unset "$variable"
done < <(compgen -v TARNWICK_)
unset http_proxy https_proxy all_proxy HTTPS_PROXY ALL_PROXY
# The session bus would lead to the developer's own keyring. With an address that leads nowhere no other is looked for,
# and the token goes to a file in the folder.
export DBUS_SESSION_BUS_ADDRESS=disabled:
export HOME=$work XDG_CONFIG_HOME=$work/config XDG_STATE_HOME=$work/state XDG_DATA_HOME=$work/data
configuration=$XDG_CONFIG_HOME/tarnwick/config.toml

fail() {
    echo "FAILED: $* (lines ${BASH_LINENO[*]})" >&2
    for stream in out err; do
        [[ ! -e $work/$stream ]] || sed "s/^/  $stream: /" "$work/$stream" >&2
    done
    exit 1
}

# wait_until COMMAND...: for what another process does; gives up after a while that is far too long.
wait_until() {
    local tries
    for ((tries = 0; tries < 1000; ++tries)); do
        ! "$@" 2>/dev/null || return 0
        kill -0 "$service" 2>/dev/null || fail "the service has ended"
        sleep 0.02
    done
    fail "never: $*"
}

# start_service OPTION...: knows ada@example.org with the password "correct horse".
start_service() {
    "$TARNWICK_SERVICE" --ca-file "$work/ca.pem" --ready-file "$work/ready" \
        --account "ada@example.org:correct horse" "$@" >/dev/null &
    service=$!
    wait_until test -e "$work/ready"
    port=$(jq .port "$work/ready")
    control=http://127.0.0.1:$(jq .control_port "$work/ready")
    mkdir -p "${configuration%/*}"
    cat >"$configuration" <<SETTINGS
host-live = "localhost:$port"   # the only environment there is
consumer-key = "tarnwick-demo-key"
consumer-secret = "tarnwick-demo-secret"
partner-id = 7
ca-file = "$work/ca.pem"
filter-general-countries-all = 12
filter-general-servers-per-country = 14
filter-general-servers-candidates-per-country = 13
filter-default-favorites = 41
SETTINGS
}

order_fault() {
    curl --silent --show-error --fail --noproxy '*' --data "$1" "$control/faults"
}

# expect STATUS COMMAND...: runs the client, and leaves its output in the files "out" and "err".
expect() {
    local expected=$1 status=0
    shift
    "$TARNWICK_CLIENT" "$@" >"$work/out" 2>"$work/err" </dev/null || status=$?
    [[ $status -eq $expected ]] || fail "exit status $status, expected $expected: tarnwick $*"
}

# in_out TEXT, in_err TEXT: the text is part of the last output.
in_out() { grep --quiet --fixed-strings -- "$1" "$work/out" || fail "not in standard output: $1"; }
in_err() { grep --quiet --fixed-strings -- "$1" "$work/err" || fail "not in standard error: $1"; }

# holds FILTER: the last output is one JSON document for which the jq filter is true.
holds() {
    [[ $(jq --slurp 'length' "$work/out") -eq 1 ]] || fail "not one JSON document"
    jq --exit-status "$1" "$work/out" >/dev/null || fail "does not hold: $1"
}

sign_in() {
    TARNWICK_PASSWORD="correct horse" expect 0 login ada@example.org
}
