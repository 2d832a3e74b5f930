#pragma once

namespace sweeply {

// What completion does in each shell. "@NAME@" stands for what the tables of commands and options say; see
// Completion.cpp.

/// Works with the Mac's own bash 3.2 too, which knows neither compopt nor mapfile.
inline constexpr const char* kBashTemplate = R"(_sweeply_cli_plain() {
    local text=$1
    case $text in
    \"*) text=${text#\"} text=${text%\"} ;;
    \'*) text=${text#\'} text=${text%\'} ;;
    *) IFS= read text <<<"$text" ;;
    esac
    [[ $text == \~/* ]] && text=$HOME/${text#\~/}
    printf %s "$text"
}

_sweeply_cli_words() {
    local line
    # Words are no files, unless files are offered beside them.
    [[ ${#COMPREPLY[@]} -eq 0 ]] && compopt +o filenames 2>/dev/null
    while IFS= read -r line; do
        COMPREPLY+=("$line")
    done < <(compgen -W "$1" -- "$2")
}

# What lies on this machine, and below the root what the Mac has at that path.
_sweeply_cli_paths() {
    local word=$1 root=$2 line name other
    if [[ -z $root || $word != /* ]]; then
        while IFS= read -r line; do
            COMPREPLY+=("$line")
        done < <(compgen -f -- "$word")
        return
    fi
    while IFS= read -r line; do
        name=${line#"$root"}
        [[ -d $line ]] && name+=/
        COMPREPLY+=("$name")
    done < <(compgen -f -- "$root$word")
    while IFS= read -r line; do
        [[ $root/ == "$line"/* || $line == "$root"/* ]] || continue
        [[ -d $line ]] && line+=/
        for other in "${COMPREPLY[@]}"; do
            [[ $other == "$line" ]] && continue 2
        done
        COMPREPLY+=("$line")
    done < <(compgen -f -- "$word")
    [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == */ ]] && compopt -o nospace 2>/dev/null
}

_sweeply_cli() {
    local typed=${COMP_WORDS[COMP_CWORD]} command= option= root= words= paths= i
    [[ $typed == = ]] && typed=
    for ((i = 1; i < COMP_CWORD; ++i)); do
        option=
        case ${COMP_WORDS[i]} in
        @OPTIONS_WITH_VALUE@)
            option=${COMP_WORDS[i]}
            [[ ${COMP_WORDS[i + 1]} == = ]] && ((++i))
            ((++i))
            [[ $option == --root && $i -lt $COMP_CWORD ]] && root=$(_sweeply_cli_plain "${COMP_WORDS[i]}")
            [[ $i -lt $COMP_CWORD ]] && option=
            ;;
        @COMMANDS@)
            command=${COMP_WORDS[i]}
            break
            ;;
        esac
    done
    [[ -z $root || $root == /* ]] || root=$PWD/$root
    root=${root%/}
    local word
    word=$(_sweeply_cli_plain "$typed")
    COMPREPLY=()
    case $option in
    --root)
        while IFS= read -r i; do
            COMPREPLY+=("$i")
        done < <(compgen -d -- "$word")
        return
        ;;
    -u | --user)
        local users=$(cd "$root/Users" 2>/dev/null && printf '%s ' */)
        _sweeply_cli_words "${users//\//}" "$word"
        return
        ;;
@OPTION_VALUES@    ?*)
        _sweeply_cli_paths "$word" "$root"
        return
        ;;
    esac
    case $command in
@COMMAND_WORDS@    *) words="@GLOBAL_WORDS@" ;;
    esac
    if [[ -n $paths && $word != -* ]]; then
        _sweeply_cli_paths "$word" "$root"
    fi
    if [[ $word != */* ]]; then
        _sweeply_cli_words "$words" "$word"
    fi
}
complete -o filenames -F _sweeply_cli sweeply-cli
)";

inline constexpr const char* kZshTemplate = R"(#compdef sweeply-cli
_sweeply_cli() {
    local command= option= root= known= paths= i
    for ((i = 2; i < CURRENT; ++i)); do
        option=
        case $words[i] in
        --root=*) root=${(Q)words[i]#--root=} ;;
        @OPTIONS_WITH_VALUE@)
            option=$words[i]
            ((++i))
            [[ $option == --root && $i -lt $CURRENT ]] && root=${(Q)words[i]}
            [[ $i -lt $CURRENT ]] && option=
            ;;
        @COMMANDS@)
            command=$words[i]
            break
            ;;
        esac
    done
    root=${root/#\~\//$HOME/}
    [[ -z $root || $root == /* ]] || root=$PWD/$root
    root=${root%/}
    case $option in
    --root) _files -/; return ;;
    --roots-from) _files; return ;;
    -u | --user) compadd -- $root/Users/*(/N:t); return ;;
@OPTION_VALUES@    esac
    case $command in
@COMMAND_WORDS@    *) known="@GLOBAL_WORDS@" ;;
    esac
    if [[ -n $option || ( -n $paths && $PREFIX != -* ) ]]; then
        # What lies on this machine, and below the root what the Mac has at that path.
        _files
        if [[ -n $root && $PREFIX == /* ]]; then
            compset -P /
            _path_files -W "$root"
        fi
    fi
    [[ -z $option && $PREFIX != */* && -z $IPREFIX ]] && compadd -- ${=known}
}
if [[ $funcstack[1] == _sweeply_cli ]]; then
    _sweeply_cli "$@"
else
    compdef _sweeply_cli sweeply-cli
fi
)";

inline constexpr const char* kFishTemplate = R"(function __sweeply_cli_root
    set -l tokens (commandline -opc)
    for at in (seq 2 (count $tokens))
        switch $tokens[$at]
            case --root
                test $at -lt (count $tokens); and string trim -r -c / -- $tokens[(math $at + 1)]
            case '--root=*'
                string trim -r -c / -- (string replace -- --root= '' $tokens[$at])
        end
    end
end
# Below the root, what the Mac has at that path; what lies on this machine fish knows itself.
function __sweeply_cli_paths
    set -l word (string unescape -- (commandline -ct))
    set -l root (__sweeply_cli_root)
    test -n "$root"; and string match -q -- '/*' $word; or return
    for path in "$root$word"*
        set -l name (string sub -s (math (string length -- $root) + 1) -- $path)
        test -d $path; and set name $name/
        echo $name
    end
end
function __sweeply_cli_users
    for home in (__sweeply_cli_root)/Users/*/
        basename $home
    end
end
complete -c sweeply-cli -a '(__sweeply_cli_paths)'
)";

} // namespace sweeply
