# Completes tessarok's commands, options and values in fish.

set -l commands type explain learned replay terminal on off pause quit layout status x11 report check-data
set -l none "not __fish_seen_subcommand_from $commands"

# The words are anything that was typed once.
function __tessarok_learned
    tessarok learned 2>/dev/null | string match -r '^.*?(?=: )'
end

# What follows -- in a terminal is a command line of its own.
function __tessarok_program
    set -l before (commandline -opc)
    set -l at (contains -i -- -- $before); or return
    set -l program (string escape -- $before[(math $at + 1)..-1]) (commandline -ct)
    complete -C (string join ' ' -- $program)
end

complete -c tessarok -f
complete -c tessarok -s h -l help -d 'Describe the program or the command'
complete -c tessarok -l resources -x -a '(__fish_complete_directories)' -d 'Take the word data from a directory'
complete -c tessarok -n $none -l version -d 'Print the version'

complete -c tessarok -n $none -a type -d 'Type a text and print the screen'
complete -c tessarok -n $none -a explain -d 'Say what is decided for a word, and why'
complete -c tessarok -n $none -a learned -d 'List the words that are left alone because you took their correction back'
complete -c tessarok -n $none -a replay -d 'Run a script on the virtual desktop'
complete -c tessarok -n $none -a terminal -d 'Correct what is typed into a program in this terminal'
complete -c tessarok -n $none -a on -d 'Switch the correction on'
complete -c tessarok -n $none -a off -d 'Switch the correction off'
complete -c tessarok -n $none -a pause -d 'Pause the correction for five seconds'
complete -c tessarok -n $none -a quit -d 'End the running desktop'
complete -c tessarok -n $none -a layout -d 'Switch the own layout of this terminal'
complete -c tessarok -n $none -a status -d 'Say what is corrected, and what is not and why'
complete -c tessarok -n $none -a x11 -d 'Correct in every application of the display'
complete -c tessarok -n $none -a report -d 'Write what a problem report needs'
complete -c tessarok -n $none -a check-data -d 'Validate the data files'

complete -c tessarok -n '__fish_seen_subcommand_from type' -l from -x -a 'en ru' -d 'The layout selected at the start'
complete -c tessarok -n '__fish_seen_subcommand_from type explain' -l no-lists -d 'Without your dictionary, the learned lists and the packs'
complete -c tessarok -n '__fish_seen_subcommand_from explain learned status' -l json -d 'JSON objects, for programs'
complete -c tessarok -n '__fish_seen_subcommand_from explain' -l ru-streak -x -d 'Russian words before it'
complete -c tessarok -n '__fish_seen_subcommand_from explain' -l en-streak -x -d 'English words before it'
complete -c tessarok -n '__fish_seen_subcommand_from learned; and not __fish_seen_subcommand_from forget' -a forget -d 'Take words back, also in running programs'
complete -c tessarok -n '__fish_seen_subcommand_from learned; and __fish_seen_subcommand_from forget' -a '(__tessarok_learned)'
complete -c tessarok -n '__fish_seen_subcommand_from replay' -l home -x -a '(__fish_complete_directories)' -d 'An existing directory used as home'
complete -c tessarok -n '__fish_seen_subcommand_from x11' -l autostart -d 'As a session starts it'
complete -c tessarok -n '__fish_seen_subcommand_from replay report' -F
complete -c tessarok -n '__fish_seen_subcommand_from check-data' -a '(__fish_complete_directories)'
complete -c tessarok -n '__fish_seen_subcommand_from terminal' -a '(__tessarok_program)'
