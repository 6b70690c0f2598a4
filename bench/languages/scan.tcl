proc main {} {
  set s "a line of text that is not too long\n"
  while {[string length $s] < 4194304} { append s $s }
  set i 0; set n 0; set size [string length $s]
  while {$i < $size} { if {[string range $s $i $i] eq "\n"} { incr n }; incr i }
  puts $n
}
main
