# Completes phone-migrate in bash.

# The first word that is neither an option nor an option's value.
_phone_migrate_command() {
    local at word
    for ((at = 1; at < COMP_CWORD; ++at)); do
        word=${COMP_WORDS[at]}
        case $word in
            --backups | --phone | --music | --log | --progress | --only | --except | --scale)
                # The value may stand behind an equals sign, which is a word of its own here.
                [ "${COMP_WORDS[at + 1]}" = = ] && ((++at))
                ((++at))
                ;;
            -*) ;;
            *)
                echo "$word"
                return
                ;;
        esac
    done
}

_phone_migrate_words() {
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$2")
}

# $1: what compgen lists, -d or -f; $2: how the name begins
_phone_migrate_paths() {
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen "$1" -- "$2")
}

# Kinds are separated by commas: completes the last of them.
_phone_migrate_kinds() {
    local kinds="contacts messages notes calendar bookmarks photos videos music voicememos"
    local last=${1##*,}
    [ "$1" = "$last" ] || compopt -o nospace
    mapfile -t COMPREPLY < <(compgen -P "${1%"$last"}" -W "$kinds" -- "$last")
}

# $1: the option before, $2: how its value begins. Answers false when that option takes no value.
_phone_migrate_value() {
    case $1 in
        --backups | --phone) _phone_migrate_paths -d "$2" ;;
        --music | --log) _phone_migrate_paths -f "$2" ;;
        --progress) _phone_migrate_words "auto bar lines none" "$2" ;;
        --only | --except) _phone_migrate_kinds "$2" ;;
        --scale) COMPREPLY=() ;;
        *) return 1 ;;
    esac
}

_phone_migrate_options() {
    local common="--backups --phone --music --json --quiet --verbose --progress --no-color --log -h --help -V --version"
    local own=
    case $1 in
        transfer) own="--only --except -n --dry-run -y --yes --again --keep-work" ;;
        restore) own="--only --except -n --dry-run -y --yes" ;;
        packet) own="--force" ;;
        sample) own="--scale" ;;
    esac
    _phone_migrate_words "$common $own" "$2"
}

# $1: the command, $2: the word before, $3: how the argument begins
_phone_migrate_argument() {
    case $1 in
        "") _phone_migrate_words "backups inspect phone transfer phone-backups restore packet sample doctor" "$3" ;;
        inspect | transfer | restore | sample) _phone_migrate_paths -d "$3" ;;
        packet)
            if [ "$2" = packet ]; then
                _phone_migrate_words "show expand pack" "$3"
            else
                _phone_migrate_paths -f "$3"
            fi
            ;;
    esac
}

_phone_migrate() {
    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    [ "$before" = = ] && before=${COMP_WORDS[COMP_CWORD - 2]}
    if [ "$current" = = ]; then
        current=
    fi
    COMPREPLY=()
    _phone_migrate_value "$before" "$current" && return
    local command
    command=$(_phone_migrate_command)
    case $current in
        -*) _phone_migrate_options "$command" "$current" ;;
        *) _phone_migrate_argument "$command" "$before" "$current" ;;
    esac
}

complete -F _phone_migrate phone-migrate
