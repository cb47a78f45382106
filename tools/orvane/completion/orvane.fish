# fish completion for orvane

set -l commands info get set watch command latency drive record replay config dump
set -l actions once begin end hold observe

function __orvane_in
    set -l words (commandline -opc)
    for word in $argv
        contains -- $word $words; or return 1
    end
end

complete -c orvane -f
complete -c orvane -l host -x -a '(__fish_print_hostnames)' -d 'Where the simulator runs'
complete -c orvane -l port -x -d 'The port of the server'
complete -c orvane -l timeout -x -d 'Seconds to wait for an answer'
complete -c orvane -l json -d 'A JSON object per line'
complete -c orvane -l csv -d 'Comma-separated records'
complete -c orvane -s h -l help -d 'Print the options and examples'

set -l none "not __fish_seen_subcommand_from $commands"
complete -c orvane -n $none -a info -d 'Tell whether the plugin is there'
complete -c orvane -n $none -a get -d 'Print the values of datarefs'
complete -c orvane -n $none -a set -d 'Write datarefs'
complete -c orvane -n $none -a watch -d 'Show datarefs as they change'
complete -c orvane -n $none -a command -d 'Run and observe commands'
complete -c orvane -n $none -a latency -d 'Measure round trips and the frame rate'
complete -c orvane -n $none -a drive -d 'Play a session that a profile describes'
complete -c orvane -n $none -a record -d 'Write the values of datarefs to a file'
complete -c orvane -n $none -a replay -d 'Write recorded values back'
complete -c orvane -n $none -a config -d 'Look after the configuration file of the plugin'
complete -c orvane -n $none -a dump -d 'Tell what a packet capture holds'

complete -c orvane -n '__orvane_in watch' -s n -l count -x -d 'End after so many readings'
complete -c orvane -n '__orvane_in watch' -s T -l seconds -x -d 'End after so many seconds'
complete -c orvane -n '__orvane_in watch' -s i -l interval -x -d 'Seconds between readings'
complete -c orvane -n '__orvane_in watch' -l first -x -d 'The first row to show where not all fit'
complete -c orvane -n '__orvane_in watch' -l udp -x -d 'Also send each reading as a datagram of JSON'

set -l no_action "__orvane_in command; and not __fish_seen_subcommand_from $actions"
complete -c orvane -n $no_action -a once -d 'Run commands, one after the other'
complete -c orvane -n $no_action -a begin -d 'Press commands and leave them down'
complete -c orvane -n $no_action -a end -d 'Release commands'
complete -c orvane -n $no_action -a hold -d 'Hold commands down for a time'
complete -c orvane -n $no_action -a observe -d 'Print when commands are pressed'
complete -c orvane -n '__orvane_in command hold' -s T -l seconds -x -d 'How long'
complete -c orvane -n '__orvane_in command observe' -s n -l count -x -d 'End after so many presses'
complete -c orvane -n '__orvane_in command observe' -s T -l seconds -x -d 'End after so many seconds'
complete -c orvane -n '__orvane_in command observe' -s i -l interval -x -d 'Seconds between questions'

complete -c orvane -n '__orvane_in latency' -s T -l seconds -x -d 'How long to measure'

complete -c orvane -n '__orvane_in drive' -F
complete -c orvane -n '__orvane_in drive' -l check -d 'Only say whether the profile is valid'
complete -c orvane -n '__orvane_in drive' -l input -r -a 'sine triangle square sweep -' -d 'What to send'
complete -c orvane -n '__orvane_in drive' -l period -x -d 'Seconds of a period of the waveform'
complete -c orvane -n '__orvane_in drive' -l amplitude -x -d 'Amplitude of the waveform'
complete -c orvane -n '__orvane_in drive' -l rate -x -d 'Exchanges per second'
complete -c orvane -n '__orvane_in drive' -s n -l count -x -d 'End after so many exchanges'
complete -c orvane -n '__orvane_in drive' -s T -l seconds -x -d 'End after so many seconds'
complete -c orvane -n '__orvane_in drive' -s o -l output -r -F -d 'Write the outputs to a file'
complete -c orvane -n '__orvane_in drive' -l force -d 'Overwrite that file'
complete -c orvane -n '__orvane_in drive' -l reconnect -d 'Wait for the simulator when it goes away'
complete -c orvane -n '__orvane_in drive' -l strict -d 'Send nothing if the simulator lacks a name'
complete -c orvane -n '__orvane_in drive' -l plain -d 'Print lines on a terminal, too'
complete -c orvane -n '__orvane_in drive' -l summary -d 'Say at the end what the session was like'

complete -c orvane -n '__orvane_in record' -s o -l output -r -F -d 'The file'
complete -c orvane -n '__orvane_in record' -l force -d 'Overwrite the file'
complete -c orvane -n '__orvane_in record' -l rate -x -d 'Rows per second'
complete -c orvane -n '__orvane_in record' -s n -l count -x -d 'End after so many rows'
complete -c orvane -n '__orvane_in record' -s T -l seconds -x -d 'End after so many seconds'

complete -c orvane -n '__orvane_in replay' -F
complete -c orvane -n '__orvane_in replay' -l speed -x -d 'How many times as fast'
complete -c orvane -n '__orvane_in replay' -l loop -d 'Begin again at the end'

complete -c orvane -n '__orvane_in config; and not __orvane_in check' -a check -d 'Say what the plugin would register'
complete -c orvane -n '__orvane_in config check' -F

complete -c orvane -n '__orvane_in dump' -F
complete -c orvane -n '__orvane_in dump' -l absolute -d 'Times of day instead of seconds'
