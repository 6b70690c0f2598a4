proc main {} { set i 0; while {$i < 100000} { puts -nonewline "line "; puts -nonewline $i; puts -nonewline "\n"; incr i } }
main
