proc main {} { set s ""; set i 0; while {$i < 1000000} { append s x; incr i }; puts [string length $s] }
main
