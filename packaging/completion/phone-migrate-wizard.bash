# Completes phone-migrate-wizard in bash.

_phone_migrate_wizard() {
    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    [ "$before" = = ] && before=${COMP_WORDS[COMP_CWORD - 2]}
    if [ "$current" = = ]; then
        current=
    fi
    case $before in
        --backups | --phone)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -d -- "$current")
            ;;
        --music | --log)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            ;;
        *)
            local options="--backups --phone --music --log --restore -h --help --help-all -v --version"
            mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
            ;;
    esac
}

complete -F _phone_migrate_wizard phone-migrate-wizard
