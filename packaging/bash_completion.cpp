#include <sstream>

#include "packaging/pages.h"

namespace vxpages {

namespace {

// NAME is replaced by the program's name. Two functions are generated from its command line. _NAME_at sets
// `verbs`, `options`, the options with a value, and the number of arguments before a verb. _NAME_choose
// offers the values of an option or an argument. Both use the verbs in `path`.
constexpr const char* kFunctions = R"BASH(
# What the program itself lists, such as the settings of the television that the line names first.
_NAME_ask() {
    local program=${COMP_WORDS[0]} television=${television//[\\\"\']/}
    [[ -z $television ]] ||
        "${program/#\~/$HOME}" $1 "${television/#\~/$HOME}" --json 2>/dev/null |
        sed -n 's/^ *"'"$2"'": "\(.*\)",\{0,1\}$/\1/p'
}

# Another command with its arguments; $1 is the number of its word.
_NAME_command() {
    local -a rest=("${COMP_WORDS[@]:$1}")
    local last=$((COMP_CWORD - $1)) registered
    if declare -F _command_offset >/dev/null; then
        _command_offset "$1"
    elif ((last == 0)) && [[ $current != */* ]]; then
        mapfile -t COMPREPLY < <(compgen -c -- "$current")
    elif ((last > 0)) && registered=$(complete -p -- "${rest[0]##*/}" 2>/dev/null) &&
        [[ $registered =~ \ -F\ ([^ ]+)\  ]]; then
        local -a COMP_WORDS=("${rest[@]}")
        local COMP_CWORD=$last
        "${BASH_REMATCH[1]}" "${rest[0]}" "$current" "${rest[last - 1]}"
    else
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}

# Offers what _NAME_choose set. $1 stands between the last blank and what is typed: an option and its "=".
_NAME_offer() {
    local whole=${COMP_LINE:0:COMP_POINT} before= done= word
    whole=${whole##*[[:blank:]]}
    # The shell takes what stands behind a "=" or a ":" for a word of its own, and replaces that alone.
    [[ $whole == *"$current" ]] || whole=$1$current
    before=${whole%"$current"}
    whole=${whole#"$1"}
    [[ -z $several || $whole != *,* ]] || done=${whole%,*},
    [[ -z $asked ]] || words+=" $(_NAME_ask "$asked" "$member")"
    local -a list
    IFS=$' \n' read -r -d '' -a list <<<"$words"
    for word in "${list[@]}"; do
        [[ $word == "${whole#"$done"}"* ]] || continue
        word=$1$done$word
        COMPREPLY+=("${word#"$before"}")
    done
    [[ -z $folders$files ]] || compopt -o filenames 2>/dev/null
    local value=$current prefix=
    [[ -z $1 || $current != "$1"* ]] || prefix=$1 value=${current#"$1"}
    while IFS= read -r word; do
        COMPREPLY+=("$prefix$word")
    done < <([[ -z $folders ]] || compgen -d -- "$value"; [[ -z $files ]] || compgen -f -- "$value")
}

# The shell parts words at a ":", too: what follows belongs to the value or the argument before.
_NAME_rejoin() {
    if [[ -n $valued_by ]]; then
        pending=$valued_by
    elif ((operands > 0)); then
        operands=$((operands - 1))
    fi
}

_NAME() {
    local path=NAME current=$2 pending= valued_by= ended= television= before= word
    local verbs= options= valued= needed=0 operands=0 index
    local words= several= asked= member= folders= files= command=
    COMPREPLY=()
    _NAME_at
    for ((index = 1; index < COMP_CWORD; index++)); do
        word=${COMP_WORDS[index]}
        if [[ $word == = ]]; then
            continue
        elif [[ $word == :* ]]; then
            _NAME_rejoin
            continue
        fi
        valued_by=$pending
        if [[ -n $pending ]]; then
            pending=
        elif [[ -z $ended && $word == -- ]]; then
            ended=1
        elif [[ -z $ended && $word == -* ]]; then
            [[ " $valued " != *" $word "* ]] || pending=$word
        elif ((operands >= needed)) && [[ " $verbs " == *" $word "* ]]; then
            path+=" $word" operands=0
            _NAME_at
        else
            _NAME_choose "$operands"
            [[ -z $command ]] || break
            television=${television:-$word}
            operands=$((operands + 1)) words= several= asked= folders= files=
        fi
    done
    [[ ${COMP_WORDS[COMP_CWORD]} != :* ]] || _NAME_rejoin
    [[ ! $current =~ ^[:=]+$ ]] || current=
    if [[ -n $pending ]]; then
        [[ ${COMP_WORDS[COMP_CWORD]} != = && ${COMP_WORDS[COMP_CWORD - 1]} != = ]] || before=$pending=
        _NAME_choose "$pending"
    elif [[ -z $ended && -z $command && $current == --*=* ]]; then
        before=${current%%=*}=
        _NAME_choose "${before%=}"
    elif [[ -z $ended && -z $command && $current == -* ]]; then
        words=$options
    elif ((operands >= needed)) && [[ -n $verbs ]]; then
        words=$verbs
    else
        [[ -n $command ]] || _NAME_choose "$operands"
    fi
    if [[ -n $command ]]; then
        _NAME_command "$index"
    else
        _NAME_offer "$before"
    fi
}

complete -F _NAME NAME
)BASH";

/// The verbs with their paths, "vxtv fault add", the program first.
void collect(const CliVerb& verb, const std::string& path,
             std::vector<std::pair<std::string, const CliVerb*>>& all) {
    all.emplace_back(path, &verb);
    for (const CliVerb& below : verb.verbs) {
        collect(below, path + " " + below.name, all);
    }
}

void writeWordsOf(std::ostream& out, const std::string& path, const CliVerb& verb) {
    std::vector<std::string> verbs;
    std::vector<std::string> options;
    std::vector<std::string> valued;
    std::size_t needed = 0;
    for (const CliVerb& below : verb.verbs) {
        verbs.push_back(below.name);
    }
    for (const CliOption& option : verb.options) {
        options.push_back(option.longName.empty() ? option.shortName : option.longName);
        if (!option.value.empty()) {
            valued.push_back(options.back());
        }
    }
    for (const CliOption& operand : verb.operands) {
        needed += operand.required ? 1 : 0;
    }
    out << "        \"" << path << "\")\n            verbs='" << inOneLine(verbs) << "' needed=" << needed
        << "\n            options='" << inOneLine(options) << "'\n            valued='" << inOneLine(valued)
        << "' ;;\n";
}

void writeValues(std::ostream& out, const std::string& path, const std::string& what,
                 const CliChoice& choice) {
    std::string settings;
    settings += choice.words.empty() ? "" : " words='" + inOneLine(choice.words) + "'";
    settings += choice.several ? " several=1" : "";
    settings += choice.asked.empty() ? "" : " asked='" + choice.asked + "' member=" + choice.member;
    settings += choice.folders ? " folders=1" : "";
    settings += choice.files ? " files=1" : "";
    settings += choice.command ? " command=1" : "";
    if (!settings.empty()) {
        out << "        \"" << path << ' ' << what << "\")" << settings << " ;;\n";
    }
}

void writeAllValues(std::ostream& out, const std::string& path, const CliVerb& verb) {
    for (std::size_t index = 0; index < verb.operands.size(); ++index) {
        writeValues(out, path, std::to_string(index), verb.operands[index].choice);
    }
    for (const CliOption& option : verb.options) {
        writeValues(out, path, option.longName, option.choice);
    }
}

}  // namespace

std::string bashCompletion(const CliVerb& program) {
    std::vector<std::pair<std::string, const CliVerb*>> all;
    collect(program, program.name, all);
    std::ostringstream out;
    out << "# bash completion for " << program.name << "\n\n_" << program.name
        << "_at() {\n    case $path in\n";
    for (const auto& [path, verb] : all) {
        writeWordsOf(out, path, *verb);
    }
    out << "    esac\n}\n\n_" << program.name << "_choose() {\n    case \"$path $1\" in\n";
    for (const auto& [path, verb] : all) {
        writeAllValues(out, path, *verb);
    }
    out << "    esac\n}\n" << withProgramName(kFunctions, program.name);
    return out.str();
}

}  // namespace vxpages
