#!/usr/bin/env bash
# Completes command lines as bash does when Tab is pressed, and compares what is offered.
#
#   completion.bash SCRIPT
set -u
source "$1"
cd "$(dirname "$0")" || exit 1
failures=0

# offers WORDS EXPECTED: what is offered for the last of WORDS, which readline has split.
offers() {
    read -r -a COMP_WORDS <<<"$1"
    [[ $1 == *' ' ]] && COMP_WORDS+=('')
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    COMPREPLY=()
    _qor_power
    local offered=${COMPREPLY[*]-}
    if [[ $offered != "$2" ]]; then
        printf '"%s" offers\n  %s\ninstead of\n  %s\n' "$1" "$offered" "$2" >&2
        failures=$((failures + 1))
    fi
}

[[ $(complete -p qor-power) == 'complete -F _qor_power qor-power' ]] || failures=1

# Commands and the tool's own options
offers 'qor-power ta' 'table'
offers 'qor-power re' 'replay report'
offers 'qor-power --v' '--version'
offers 'qor-power xyz' ''

# Options of a command
offers 'qor-power table --fo' '--format'
offers 'qor-power table check/rising.json --temp' '--temporary-cutback'
offers 'qor-power replay --f' ''
offers 'qor-power examples --' '--help --all --output --force --color'

# Values of options, separated and joined
offers 'qor-power table --format ' 'text csv json'
offers 'qor-power table --format c' 'csv'
offers 'qor-power table --format =' 'text csv json'
offers 'qor-power table --format = c' 'csv'
offers 'qor-power batch --format ' 'ndjson csv'
offers 'qor-power table --rsec 6' '6B 6LB 6HB'
offers 'qor-power table --color a' 'auto always'
offers 'qor-power table --cutback ' ''
offers 'qor-power examples --output gol' 'golden'
offers 'qor-power examples -o gol' 'golden'

# Arguments
offers 'qor-power table check/ris' 'check/rising.json'
offers 'qor-power table --format csv check/ris' 'check/rising.json'
offers 'qor-power table --format = csv check/ris' 'check/rising.json'
offers 'qor-power table check/rising.json check/ris' ''
offers 'qor-power replay check/rising.json check/ris' 'check/rising.json'
offers 'qor-power completion ' 'bash zsh fish'
offers 'qor-power completion bash ' ''
offers 'qor-power examples 13ghz-etsi-outdoor' '13ghz-etsi-outdoor1.json 13ghz-etsi-outdoor3.json'

exit $((failures > 0))
