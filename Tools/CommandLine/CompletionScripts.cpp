#include "CommandLine/Completion.hpp"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string_view>
#include <utility>

namespace CommandLine {

namespace {

// Bash takes words apart at "=" and ":" too and puts in only what follows the last of them, which is `$2`.
constexpr std::string_view bash = R"script(# bash completion of @PROGRAM@
_@FUNCTION@() {
    local IFS=$' \t\n' line=${COMP_LINE:0:COMP_POINT} words word
    COMPREPLY=()
    read -ra words <<<"$line"
    [[ $line != *[[:space:]] ]] || words+=('')
    local typed=${words[${#words[@]}-1]}
    while IFS=$'\t' read -r word _; do
        case $word in
            :files) compopt -o default ;;
            :folders) compopt -o dirnames ;;
            *) COMPREPLY+=("${word:${#typed}-${#2}}") ;;
        esac
    done < <(command @PROGRAM@ --complete "${words[@]:1}" 2>/dev/null)
}
complete -F _@FUNCTION@ @PROGRAM@
)script";

// Works both from a folder of $fpath and when sourced.
constexpr std::string_view zsh = R"script(#compdef @PROGRAM@
_@FUNCTION@() {
    local line
    local -a candidates
    for line in "${(@f)$(command @PROGRAM@ --complete "${(@Q)words[2,CURRENT-1]}" "${(Q)PREFIX}" 2>/dev/null)}"; do
        case $line in
            '') ;;
            :files) [[ $PREFIX != --*=* ]] || compset -P '*='; _files ;;
            :folders) [[ $PREFIX != --*=* ]] || compset -P '*='; _files -/ ;;
            *) candidates+=("${${line%%$'\t'*}//:/\\:}:${line#*$'\t'}") ;;
        esac
    done
    (( ! $#candidates )) || _describe @PROGRAM@ candidates
}
if [[ $funcstack[1] == _@FUNCTION@ ]]; then
    _@FUNCTION@ "$@"
else
    compdef _@FUNCTION@ @PROGRAM@
fi
)script";

constexpr std::string_view fish = R"script(# fish completion of @PROGRAM@
function __@FUNCTION@_complete
    set -l before (commandline -opc)
    set -l typed (commandline -ct)
    set -l option (string match -r -- '^--[^=]*=' "$typed")
    for line in (command @PROGRAM@ --complete $before[2..-1] "$typed" 2>/dev/null)
        switch $line
            case :files
                printf "$option%s\n" (__fish_complete_path (string replace -- "$option" '' "$typed"))
            case :folders
                printf "$option%s\n" (__fish_complete_directories (string replace -- "$option" '' "$typed") '')
            case '*'
                echo $line
        end
    end
end
complete -c @PROGRAM@ -f -a '(__@FUNCTION@_complete)'
)script";

const std::vector<std::pair<std::string, std::string_view>>& scripts() {
    static const std::vector<std::pair<std::string, std::string_view>> all{
        {"bash", bash}, {"zsh", zsh}, {"fish", fish}};
    return all;
}

/// As a shell's function may be called.
std::string identifier(std::string name) {
    std::replace_if(
        name.begin(), name.end(), [](unsigned char character) { return std::isalnum(character) == 0; }, '_');
    return name;
}

std::string replaced(std::string_view text, std::string_view what, const std::string& with) {
    std::string result;
    for (auto place = text.find(what); place != std::string_view::npos; place = text.find(what)) {
        result.append(text.substr(0, place)).append(with);
        text.remove_prefix(place + what.size());
    }
    return result.append(text);
}

}  // namespace

std::string completionScript(const std::string& shell, const std::string& program) {
    const auto script =
        std::find_if(scripts().begin(), scripts().end(), [&](const auto& each) { return each.first == shell; });
    return replaced(replaced(script->second, "@PROGRAM@", program), "@FUNCTION@", identifier(program));
}

const std::vector<std::string>& completionShells() {
    static const auto names = [] {
        std::vector<std::string> shells;
        std::transform(scripts().begin(), scripts().end(), std::back_inserter(shells),
                       [](const auto& each) { return each.first; });
        return shells;
    }();
    return names;
}

}  // namespace CommandLine
