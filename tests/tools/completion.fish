#!/usr/bin/env fish
# Completes command lines as fish does when Tab is pressed, and compares what is offered.
#
#   completion.fish SCRIPT
source $argv[1]
cd (dirname (status filename))
set -g failures 0

# offers LINE EXPECTED...: what is offered that begins as the last word of LINE does, without descriptions. From its
# fourth release on fish offers what merely has the same letters as well.
function offers
    set -l word (string split ' ' $argv[1])[-1]
    set -l offered (complete -C $argv[1] | string split -f 1 \t | string match -- "$word*" | sort)
    if test "$offered" != "$argv[2..]"
        echo "\"$argv[1]\" offers" >&2
        echo "  $offered" >&2
        echo "instead of" >&2
        echo "  $argv[2..]" >&2
        set -g failures 1
    end
end

offers 'qor-power ta' table
offers 'qor-power --v' --version
offers 'qor-power table --fo' --format
offers 'qor-power table --format ' csv json text
offers 'qor-power table --format c' csv
offers 'qor-power table --format=c' --format=csv
offers 'qor-power table --rsec 6' 6B 6HB 6LB
offers 'qor-power replay --form'
offers 'qor-power table check/ris' check/rising.json
offers 'qor-power examples --output gol' golden/
offers 'qor-power completion ' bash fish zsh
offers 'qor-power examples 13ghz-etsi-outdoor' 13ghz-etsi-outdoor1.json 13ghz-etsi-outdoor3.json

exit $failures
