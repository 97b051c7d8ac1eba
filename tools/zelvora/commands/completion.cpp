#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "../application.h"
#include "../commands.h"

namespace zelvora::tool {
namespace {

constexpr const char* kBash = R"(# bash completion for zelvora: source it, or save it as
# ~/.local/share/bash-completion/completions/zelvora
_zelvora() {
  local IFS=$'\n' current="${COMP_WORDS[COMP_CWORD]}" line kind
  local -a words=()
  COMPREPLY=()
  # "=" splits words in bash; the tool takes "--option VALUE" as well.
  [[ $current == "=" ]] && current=
  while read -r line; do
    case $line in
      :files) kind=-f ;;
      :folders) kind=-d ;;
      *) words+=("$line") ;;
    esac
  done < <(zelvora complete -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
  if [[ -n ${kind:-} ]]; then
    compopt -o filenames 2>/dev/null
    COMPREPLY=($(compgen $kind -- "$current"))
  fi
  ((${#words[@]} == 0)) || COMPREPLY+=($(compgen -W "${words[*]}" -- "$current"))
}
complete -F _zelvora zelvora
)";

constexpr const char* kZsh = R"(#compdef zelvora
# zsh completion for zelvora: save it as _zelvora in a folder of $fpath
_zelvora() {
  local -a lines candidates
  local line
  lines=("${(@f)$(zelvora complete -- "${(@)words[2,CURRENT]}" 2>/dev/null)}")
  for line in $lines; do
    case $line in
      :files) _files ;;
      :folders) _files -/ ;;
      ?*) candidates+=("$line") ;;
    esac
  done
  (( ${#candidates} )) && compadd -- $candidates
}
if [ "$funcstack[1]" = "_zelvora" ]; then _zelvora "$@"; else compdef _zelvora zelvora; fi
)";

constexpr const char* kFish =
    R"(# fish completion for zelvora: save it as ~/.config/fish/completions/zelvora.fish
function __zelvora_complete
    set -l words (commandline -opc) (commandline -ct)
    for line in (zelvora complete -- $words[2..-1] 2>/dev/null)
        switch $line
            case :files
                __fish_complete_path (commandline -ct)
            case :folders
                __fish_complete_directories (commandline -ct) ''
            case '*'
                echo $line
        end
    end
end
complete -c zelvora -f -a '(__zelvora_complete)'
)";

/// A call as far as it has been typed; the last word is the one to complete.
using Words = std::vector<std::string>;

const Option* optionOf(const Command& command, const std::string& name) {
  const auto found = std::ranges::find(command.options, name, &Option::name);
  return found == command.options.end() ? nullptr : &*found;
}

/// The value that the call gives to an option, if any.
std::optional<std::string> valueIn(const Words& words, const std::string& name) {
  for (std::size_t at = 1; at + 1 < words.size(); ++at) {
    if (words[at] == name) return words[at + 1];
    if (words[at].starts_with(name + "=")) return words[at].substr(name.size() + 1);
  }
  return std::nullopt;
}

/// The identifiers of the spec that the call names, else of the example; empty without a spec.
SpecIds idsFor(const Words& words) {
  try {
    if (const auto spec = valueIn(words, "--spec")) return idsIn(specInFile(*spec));
    const auto bundle = valueIn(words, "--bundle");
    const auto resource = valueIn(words, "--resource");
    if (bundle && resource)
      return idsIn(specInFile(std::filesystem::path(*bundle) / (*resource + ".json")));
    const auto example = findExample("shop.json");
    return example ? idsIn(specInFile(*example)) : SpecIds();
  } catch (const std::exception&) {
    return {};
  }
}

Words candidatesFor(Completes kind, const Words& choices, const Words& words) {
  switch (kind) {
    case Completes::files: return {":files"};
    case Completes::folders: return {":folders"};
    case Completes::taskIds: return idsFor(words).tasks;
    case Completes::screenIds: return idsFor(words).screens;
    case Completes::nothing: break;
  }
  return choices;
}

Words candidatesInCommand(const Command& command, const Words& words) {
  const std::string& before = words[words.size() - 2];
  const Option* const open = words.size() > 2 ? optionOf(command, before) : nullptr;
  if (open && !open->value.empty()) return candidatesFor(open->completes, open->choices, words);
  const bool optionsEnded =
      std::ranges::find(words.begin() + 1, words.end() - 1, "--") != words.end() - 1;
  if (words.back().starts_with('-') && !optionsEnded) {
    Words names = {"--help"};
    for (const Option& option : command.options) names.push_back(option.name);
    return names;
  }
  return candidatesFor(command.operands.completes, command.operands.choices, words);
}

Words candidates(const std::vector<Command>& commands, const Words& words) {
  if (words.size() < 2) {
    Words names;
    for (const Command& command : commands)
      if (!command.isHidden) names.push_back(command.name);
    if (!words.empty() && words[0].starts_with('-')) names = {"--help", "--version"};
    return names;
  }
  for (const Command& command : commands)
    if (command.name == words[0]) return candidatesInCommand(command, words);
  return {};
}

}  // namespace

Command completionCommand() {
  const auto shell = std::make_shared<std::string>();
  const std::vector<std::string> shells = {"bash", "zsh", "fish"};
  Command command{
      .name = "completion",
      .summary = "print the completion script for a shell",
      .about =
          "Prints a script that completes commands, options, files, and the task and screen "
          "identifiers of the spec that the call names. For bash: `source <(zelvora "
          "completion bash)`; the scripts of zsh and fish say in their first lines where to "
          "keep them.",
      .operands = {.shown = "bash|zsh|fish",
                   .missing = "for which shell?",
                   .least = 1,
                   .most = 1,
                   .take =
                       [shell, shells](std::vector<std::string> names) {
                         if (std::ranges::find(shells, names.front()) == shells.end())
                           throw UsageError("no completion for \"" + names.front() +
                                            "\"; the nearest is " +
                                            nearestTo(names.front(), shells));
                         *shell = names.front();
                       },
                   .choices = shells}};
  command.run = [shell](Output& out) {
    out.write(*shell == "bash" ? kBash : *shell == "zsh" ? kZsh : kFish);
    return kAnswered;
  };
  return command;
}

Command completeCommand(const std::vector<Command>& commands) {
  const auto words = std::make_shared<Words>();
  Command command{
      .name = "complete",
      .summary = "what may follow the words of a call, for the completion scripts",
      .operands = {.shown = "WORD…", .take = [words](Words given) { *words = std::move(given); }},
      .isHidden = true};
  command.run = [words, commands](Output& out) {
    for (const std::string& each : candidates(commands, *words)) out.write(each + "\n");
    return kAnswered;
  };
  return command;
}

}  // namespace zelvora::tool
