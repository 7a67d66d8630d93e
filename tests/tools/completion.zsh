#!/usr/bin/env zsh
# Completes command lines in a zsh of its own, on a terminal of its own, and compares what is offered.
#
#   completion.zsh SCRIPT
zmodload zsh/zpty || exit 77
script=${1:A}
cd ${0:A:h}
failures=0

# The shell under test prints every match between marks instead of showing a menu. The marks are written
# in two halves: what a busy machine's terminal echoes of these lines must not be taken for a mark.
zpty shell zsh -f -i
zpty -w shell "PROMPT=; stty -echo; autoload -U compinit; compinit -u -D; source ${(q)script}"
zpty -w shell '
compadd() {
    if [[ ${@[1,(i)(-|--)]} == *-(O|A|D)\ * ]]; then
        builtin compadd "$@"
        return
    fi
    local -a __hits
    builtin compadd -A __hits "$@"
    (( $#__hits )) && print -l -- "match="${^__hits}
}
bindkey "^I" complete-word
zstyle ":completion:*" list-grouped false
null-line() { print -- "be""gin"; zle complete-word; print -- "fin""ish"; zle kill-whole-line }
zle -C complete-word .complete-word _main_complete
zle -N null-line
bindkey "^T" null-line
print rea""dy'
zpty -r shell output $'*ready*' || exit 1

# offers LINE EXPECTED...
offers() {
    local line=$1 output
    shift
    zpty -n -w shell "$line"$'\C-T'
    zpty -r shell output $'*begin*finish*'
    local -a offered=(${(ou)${(M)${(f)${output//$'\r'/}}:#match=*}#match=})
    if [[ "$offered" != "$*" ]]; then
        print -r -u 2 -- "\"$line\" offers"$'\n'"  $offered"$'\n'"instead of"$'\n'"  $*"
        failures=1
    fi
}

offers 'qor-power ta' table
offers 'qor-power table --fo' --format
offers 'qor-power table --format ' csv json text
offers 'qor-power table --format=c' csv
offers 'qor-power table --rsec 6' 6B 6HB 6LB
offers 'qor-power table check/ris' rising.json
offers 'qor-power completion ' bash fish zsh

zpty -d shell
exit $failures
