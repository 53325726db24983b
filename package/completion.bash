# Completes the programs' options, which their --help names, and their input files.
_qob() {
  local cur=${COMP_WORDS[COMP_CWORD]} input=prm
  [[ $1 != *qob-prepare ]] || input=csv
  if [[ $cur == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$("$1" --help | grep -oE -- '--[a-z-]+')" -- "$cur")
  else
    _filedir "$input"
  fi
}
complete -F _qob qob qob-prepare
