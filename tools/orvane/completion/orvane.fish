# fish completion for orvane, which supplies the candidates.

function __orvane_complete
    set -l words (commandline -opc) (commandline -ct)
    for line in ($words[1] __complete $words[2..] 2>/dev/null)
        if test "$line" = :files
            __fish_complete_path (commandline -ct)
        else
            echo $line
        end
    end
end

complete -c orvane -f -a '(__orvane_complete)'
