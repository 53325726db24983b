# Completes the programs' options, which their --help names, and their input files; of qob-report the
# prefixes of results.
_qob() {
  local cur=${COMP_WORDS[COMP_CWORD]} input=prm
  [[ $1 != *qob-prepare && $1 != *qob-report ]] || input=csv
  if [[ $cur == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$("$1" --help | grep -oE -- '--[a-z-]+' | sort -u)" -- "$cur")
    return
  fi
  [[ $1 != *qob-report ]] ||
    mapfile -t COMPREPLY < <(compgen -G "$cur*F_summary.txt" | sed 's/F_summary\.txt$//')
  [ ${#COMPREPLY[@]} -gt 0 ] || _filedir "$input"
}
complete -F _qob qob qob-prepare qob-report qob-frontier
