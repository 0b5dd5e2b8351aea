#!/bin/bash
# usage: check_completion.sh COMPLETION_FILE
# What the bash completion offers for a table of command lines (the last
# word is the one being completed).
set -u
source "$1"
failures=0
expect() {
    local wanted=$1; shift
    COMP_WORDS=("$@"); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); COMPREPLY=()
    _kzbs
    if [[ "${COMPREPLY[*]}" != "$wanted" ]]; then
        echo "[$*] offered '${COMPREPLY[*]}', expected '$wanted'" >&2
        failures=$((failures + 1))
    fi
}
expect "is-holiday ini" kzbs i
expect "workdays workday" kzbs wo
expect "BW BY BE BB" kzbs holidays --state B
expect "A KATH" kzbs holidays --state BY --region ""
expect "BZ" kzbs workdays 2027 --state SN --region ""
expect "EIC UH WAK" kzbs is-holiday --state TH --region ""
expect "" kzbs holidays --state HH --region ""
expect "text csv json ics" kzbs holidays --format ""
expect "5 6" kzbs workdays --week ""
expect "--week" kzbs workday --state BY --w
expect "--region" kzbs holidays --r
expect "parse param" kzbs path p
expect "--symbols --symbol" kzbs path param x --sym
expect "set sections" kzbs ini s
expect "128 192 256" kzbs encrypt --bits ""
expect "--key-file --key-env" kzbs decrypt --key-
expect "help holidays" kzbs help h
expect "" kzbs help cal ""
expect "cal" kzbs c
expect "A KATH" kzbs holidays --state Bayern --region ""
expect "A KATH" kzbs is-holiday --state by --region ""
expect "EIC UH WAK" kzbs cal --state $'Th\xc3\xbcringen' --region ""
expect "EIC UH WAK" kzbs cal --state thueringen --region ""
expect "BZ" kzbs next --state = SN --region ""
expect "BZ" kzbs next --state=sachsen --region ""
expect "" kzbs next --state Sachsen-Anhalt --region ""
# --state= split at '=' (bash's default word breaks) and whole
expect "$(echo BW BY BE BB HB HH HE MV NI NW RP SL SN ST SH TH)" kzbs holidays --state =
expect "SL SN ST SH" kzbs holidays --state = S
expect "--state=SL --state=SN --state=ST --state=SH" kzbs holidays --state=S
expect "--region=KATH" kzbs holidays --state BY --region=K
expect "auto always" kzbs cal --color a
expect "text csv json" kzbs next --format ""
expect "--classic --color" kzbs cal --c
exit $((failures > 0))
